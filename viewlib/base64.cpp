/* SPDX-License-Identifier: Apache-2.0 */
#include "base64.h"

namespace viewlib
{

static int valueOf(char c)
{
    if (c >= 'A' && c <= 'Z')
    {
        return c - 'A';
    }
    if (c >= 'a' && c <= 'z')
    {
        return c - 'a' + 26;
    }
    if (c >= '0' && c <= '9')
    {
        return c - '0' + 52;
    }
    return c == '+' ? 62 : c == '/' ? 63 : -1;
}

std::optional<std::string> decodeBase64(std::string_view text, bool allowLineBreaks)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    unsigned bits = 0; /* those not yet written, at the low end */
    unsigned characters = 0;
    unsigned padding = 0;
    for (const char c : text)
    {
        if (allowLineBreaks && (c == '\r' || c == '\n'))
        {
            continue;
        }
        const int value = c == '=' ? 0 : valueOf(c);
        if (value < 0 || (padding != 0 && c != '='))
        {
            return std::nullopt;
        }
        padding += c == '=' ? 1U : 0U;
        bits = bits << 6 | static_cast<unsigned>(value);
        if (++characters % 4 == 0)
        {
            bytes += static_cast<char>(bits >> 16 & 0xFF);
            bytes += static_cast<char>(bits >> 8 & 0xFF);
            bytes += static_cast<char>(bits & 0xFF);
            const unsigned stray = padding == 1 ? 0xFFU : padding == 2 ? 0xFFFFU : 0U;
            if ((bits & stray) != 0)
            {
                return std::nullopt;
            }
            bits = 0;
        }
    }
    if (characters % 4 != 0 || padding > 2)
    {
        return std::nullopt;
    }
    bytes.resize(bytes.size() - padding);
    return bytes;
}

std::string encodeBase64(std::string_view bytes)
{
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3)
    {
        const auto at = [&](std::size_t k) {
            return i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U;
        };
        const unsigned group = at(0) << 16 | at(1) << 8 | at(2);
        text += letters[group >> 18];
        text += letters[group >> 12 & 63];
        text += i + 1 < bytes.size() ? letters[group >> 6 & 63] : '=';
        text += i + 2 < bytes.size() ? letters[group & 63] : '=';
    }
    return text;
}

} // namespace viewlib
