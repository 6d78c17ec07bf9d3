/* SPDX-License-Identifier: Apache-2.0 */
#include "files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace viewlib
{

FileContent readFile(const std::string& path)
{
    FileContent content;
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    char block[16384];
    ssize_t size = fd < 0 ? -1 : read(fd, block, sizeof block);
    while (size > 0 || (fd >= 0 && size < 0 && errno == EINTR))
    {
        content.bytes.append(block, size > 0 ? static_cast<std::size_t>(size) : 0);
        size = read(fd, block, sizeof block);
    }
    content.error = size < 0 ? errno : 0;
    if (fd >= 0)
    {
        close(fd);
    }
    return content;
}

} // namespace viewlib
