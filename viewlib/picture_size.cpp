/* SPDX-License-Identifier: Apache-2.0 */
#include "viewlib/picture_size.h"

#include <cstddef>

namespace viewlib
{

namespace
{

int byteAt(const std::string& bytes, std::size_t at)
{
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : -1;
}

int wordAt(const std::string& bytes, std::size_t at)
{
    return at + 1 < bytes.size() ? byteAt(bytes, at) * 256 + byteAt(bytes, at + 1) : 0;
}

/* C0 to CF start a frame, but for the tables and the reserved code among them. */
bool startsFrame(int marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

} // namespace

std::optional<PictureSize> jpegSize(const std::string& bytes)
{
    if (byteAt(bytes, 0) != 0xFF || byteAt(bytes, 1) != 0xD8)
    {
        return std::nullopt;
    }
    std::size_t at = 2;
    while (byteAt(bytes, at) == 0xFF)
    {
        const int marker = byteAt(bytes, at + 1);
        const int length = wordAt(bytes, at + 2);
        if (startsFrame(marker))
        {
            const PictureSize size = {wordAt(bytes, at + 7), wordAt(bytes, at + 5)};
            return size.width > 0 && size.height > 0 ? std::optional<PictureSize>(size) : std::nullopt;
        }
        if (marker == 0xFF) /* padding */
        {
            ++at;
            continue;
        }
        if (length < 2 || marker == 0xDA)
        {
            break;
        }
        at += 2 + static_cast<std::size_t>(length);
    }
    return std::nullopt;
}

/* The header's chunk comes first, with width and height at its beginning. */
static std::optional<PictureSize> pngSize(const std::string& bytes)
{
    static constexpr char start[] = "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR";
    if (bytes.compare(0, sizeof start - 1, start, sizeof start - 1) != 0 || wordAt(bytes, 16) != 0 ||
        wordAt(bytes, 20) != 0)
    {
        return std::nullopt;
    }
    const PictureSize size = {wordAt(bytes, 18), wordAt(bytes, 22)};
    return size.width > 0 && size.height > 0 ? std::optional<PictureSize>(size) : std::nullopt;
}

std::optional<PictureSize> pictureSize(const std::string& bytes)
{
    const std::optional<PictureSize> size = jpegSize(bytes);
    return size ? size : pngSize(bytes);
}

} // namespace viewlib
