/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <optional>
#include <string>

namespace viewlib
{

struct PictureSize
{
    int width = 0;
    int height = 0;
};

/* Width and height as a JPEG's frame header tells them; none when the bytes are no JPEG. */
std::optional<PictureSize> jpegSize(const std::string& bytes);

/* Of a JPEG or a PNG. */
std::optional<PictureSize> pictureSize(const std::string& bytes);

} // namespace viewlib
