/* SPDX-License-Identifier: Apache-2.0 */
#include "text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>

namespace viewlib
{

bool sameNoCase(std::string_view left, std::string_view right)
{
    const auto equal = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(), equal);
}

std::string toHex(const unsigned char* bytes, std::size_t length)
{
    static const char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(length * 2);
    for (std::size_t i = 0; i < length; ++i)
    {
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

bool pathFits(std::string_view pattern, std::string_view path)
{
    if (pattern.empty() || pattern.back() != '*')
    {
        return pattern == path;
    }
    pattern.remove_suffix(1);
    return path.substr(0, pattern.size()) == pattern;
}

const ImageType& imageTypeOf(std::string_view bytes)
{
    static constexpr ImageType types[] = {{".jpg", "image/jpeg", "\xFF\xD8\xFF"},
                                          {".png", "image/png", "\x89PNG"},
                                          {".gif", "image/gif", "GIF8"},
                                          {".bmp", "image/bmp", "BM"},
                                          {".bin", "application/octet-stream", ""}};
    return *std::find_if(std::begin(types), std::end(types),
                         [&](const ImageType& type) { return bytes.substr(0, type.start.size()) == type.start; });
}

static std::tm calendar(std::chrono::system_clock::time_point time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return parts;
}

std::string localTime(std::chrono::system_clock::time_point time)
{
    const std::tm parts = calendar(time);
    char text[32];
    const std::size_t length = std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &parts);
    return std::string(text, length);
}

std::string timeZone(std::chrono::system_clock::time_point time)
{
    const long minutes = calendar(time).tm_gmtoff / 60;
    char text[32];
    const int written = std::snprintf(text, sizeof text, "UTC%c%ld", minutes < 0 ? '-' : '+', std::labs(minutes) / 60);
    if (minutes % 60 != 0)
    {
        std::snprintf(text + written, sizeof text - static_cast<std::size_t>(written), ":%02ld",
                      std::labs(minutes) % 60);
    }
    return text;
}

} // namespace viewlib
