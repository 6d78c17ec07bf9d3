/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace viewlib
{

bool sameNoCase(std::string_view left, std::string_view right);
std::string toHex(const unsigned char* bytes, std::size_t length);

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
std::string timeZone(std::chrono::system_clock::time_point time);

} // namespace viewlib
