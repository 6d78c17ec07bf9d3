/* SPDX-License-Identifier: Apache-2.0 */
/* Files to upload. */
#ifndef PUBSEC_TESTS_TRANSFER_FILES_H
#define PUBSEC_TESTS_TRANSFER_FILES_H

#include <cstdint>
#include <string>

/* Bytes that repeat nowhere near themselves, so that a block in the wrong place shows. */
std::string mixedBytes(size_t size);

/* A file that goes away with its object. */
class TransferFile
{
  public:
    explicit TransferFile(const std::string& content);

    /* A sparse file of this size whose last bytes are given. */
    TransferFile(std::uint64_t size, const std::string& tail);
    ~TransferFile();
    TransferFile(const TransferFile&) = delete;
    TransferFile& operator=(const TransferFile&) = delete;

    const char* path() const
    {
        return m_path.c_str();
    }

  private:
    std::string m_path;
};

#endif
