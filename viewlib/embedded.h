/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <cstddef>

namespace viewlib
{

/* What cmake/EmbedFiles.cmake writes of the files in viewlib/page/. */
struct EmbeddedFile
{
    const char* name;
    const unsigned char* bytes;
    std::size_t length;
};

extern const EmbeddedFile embeddedFiles[];
extern const std::size_t embeddedFileCount;

} // namespace viewlib
