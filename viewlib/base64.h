/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace viewlib
{

/* Strict: the standard alphabet, padded, no stray bits; line ends (CR, LF) only where they are allowed. */
std::optional<std::string> decodeBase64(std::string_view text, bool allowLineBreaks);

std::string encodeBase64(std::string_view bytes);

} // namespace viewlib
