/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace viewlib
{

bool sameNoCase(std::string_view left, std::string_view right);
std::string toHex(const unsigned char* bytes, std::size_t length);

/* Without a character at the end that was cut within. */
std::string cutUtf8(std::string text);
/* A sentence with something of a client's in it, cut where that is long. */
std::string shorten(std::string text);
bool isUtf8(std::string_view text);

/* Whether a path fits "*", "/some/beginning*" or an exact path. */
bool pathFits(std::string_view pattern, std::string_view path);

/* By the first bytes, since what a sender calls a format is not to be trusted with the name of a file. */
struct ImageType
{
    const char* extension;
    const char* mediaType;
    std::string_view start;
};
const ImageType& imageTypeOf(std::string_view bytes);

/* YYYYMMDDhhmmss in the local zone, and that zone as "UTC+8" or "UTC-3:30". */
std::string localTime(std::chrono::system_clock::time_point time);
/* The instant of such a text; nothing when it is none. */
std::optional<std::chrono::system_clock::time_point> parseLocalTime(const std::string& text);
std::string timeZone(std::chrono::system_clock::time_point time);

} // namespace viewlib
