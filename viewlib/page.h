/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <string_view>

namespace viewlib
{

/* A file of the page to look at, as it lies in the program. */
struct PageFile
{
    const char* contentType;
    std::string_view bytes;
};

/* "/" is the page itself, its other files are "/page/NAME"; nullptr: there is no such file. */
const PageFile* pageFile(std::string_view path);

} // namespace viewlib
