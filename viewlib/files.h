/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <string>

namespace viewlib
{

struct FileContent
{
    std::string bytes;
    int error = 0; /* of errno, when it could not be read */
};

FileContent readFile(const std::string& path);

} // namespace viewlib
