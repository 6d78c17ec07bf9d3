/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/transfer_files.h"

#include <cstdlib>
#include <stdexcept>

#include <gtest/gtest.h>
#include <unistd.h>

std::string mixedBytes(size_t size)
{
    std::string bytes(size, '\0');
    std::uint32_t state = 2463534242u;
    for (char& byte : bytes)
    {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

TransferFile::TransferFile(const std::string& content) : TransferFile(content.size(), content)
{
}

TransferFile::TransferFile(std::uint64_t size, const std::string& tail) : m_path(testing::TempDir() + "uploadXXXXXX")
{
    const int fd = mkstemp(m_path.data());
    const off_t at = static_cast<off_t>(size - tail.size());
    const bool made = fd >= 0 && ftruncate(fd, static_cast<off_t>(size)) == 0 &&
                      pwrite(fd, tail.data(), tail.size(), at) == static_cast<ssize_t>(tail.size());
    if (fd >= 0)
    {
        close(fd);
    }
    if (!made)
    {
        throw std::runtime_error("cannot make " + m_path);
    }
}

TransferFile::~TransferFile()
{
    unlink(m_path.c_str());
}
