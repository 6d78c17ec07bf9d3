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

/* The length of the character that begins with this byte; 0 when none does. */
static std::size_t utf8Length(unsigned char first)
{
    return first < 0x80                    ? 1
           : first >= 0xC2 && first < 0xE0 ? 2
           : first >= 0xE0 && first < 0xF0 ? 3
           : first >= 0xF0 && first < 0xF5 ? 4
                                           : 0;
}

std::string cutUtf8(std::string text)
{
    std::size_t begin = text.size();
    for (std::size_t back = 0; begin > 0 && back < 4; ++back)
    {
        --begin;
        if ((static_cast<unsigned char>(text[begin]) & 0xC0) != 0x80)
        {
            break;
        }
    }
    if (begin < text.size() && utf8Length(static_cast<unsigned char>(text[begin])) > text.size() - begin)
    {
        text.resize(begin);
    }
    return text;
}

std::string shorten(std::string text)
{
    constexpr std::size_t longest = 400;
    if (text.size() > longest)
    {
        text.resize(longest);
        return cutUtf8(std::move(text)) + "...";
    }
    return text;
}

bool isUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();)
    {
        const auto first = static_cast<unsigned char>(text[i]);
        const std::size_t length = utf8Length(first);
        if (length == 0 || length > text.size() - i)
        {
            return false;
        }
        for (std::size_t k = 1; k < length; ++k)
        {
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
            {
                return false;
            }
        }
        const auto second = length > 1 ? static_cast<unsigned char>(text[i + 1]) : 0;
        if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) || (first == 0xF0 && second < 0x90) ||
            (first == 0xF4 && second > 0x8F))
        {
            return false;
        }
        i += length;
    }
    return true;
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

std::optional<std::chrono::system_clock::time_point> parseLocalTime(const std::string& text)
{
    std::tm parts{};
    const char* end = strptime(text.c_str(), "%Y%m%d%H%M%S", &parts);
    if (text.size() != 14 || end == nullptr || *end != '\0')
    {
        return std::nullopt;
    }
    parts.tm_isdst = -1;
    const std::time_t seconds = std::mktime(&parts);
    return seconds == -1
               ? std::nullopt
               : std::optional<std::chrono::system_clock::time_point>(std::chrono::system_clock::from_time_t(seconds));
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
