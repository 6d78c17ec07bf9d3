/* SPDX-License-Identifier: Apache-2.0 */
/* What a log line of the stack looks like, and the lines that the fake platform kept. */
#ifndef PUBSEC_TESTS_LOG_LINES_H
#define PUBSEC_TESTS_LOG_LINES_H

#include <cctype>
#include <string>

#include <gmock/gmock.h>

#include "tests/support/fake_platform.h"

namespace log_lines
{

/* Whether a line is "[PubSecStack ERR] function:<any source line> " and then exactly this. */
inline bool matchesError(const std::string& line, const std::string& function, const std::string& rest)
{
    const std::string head = "[PubSecStack ERR] " + function + ":";
    size_t at = head.size();
    if (line.compare(0, at, head) != 0)
    {
        return false;
    }
    while (at < line.size() && std::isdigit(static_cast<unsigned char>(line[at])) != 0)
    {
        ++at;
    }
    return at > head.size() && line.substr(at) == " " + rest;
}

MATCHER_P2(IsError, function, text, "is an error line of " + std::string(function) + ": " + std::string(text))
{
    return matchesError(arg, function, std::string(text) + "\n");
}

/* An error line that ends without a line end. */
MATCHER_P2(IsOpenError, function, text, "is an open error line of " + std::string(function) + ": " + std::string(text))
{
    return matchesError(arg, function, text);
}

inline std::string info(const std::string& function, const std::string& text)
{
    return "[PubSecStack INF] " + function + ": " + text + "\n";
}

inline std::string debug(const std::string& function, const std::string& text)
{
    return "[PubSecStack DBG] " + function + ": " + text + "\n";
}

} // namespace log_lines

#endif
