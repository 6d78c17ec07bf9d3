/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "exchange_log.h"
#include "json.h"

#include <cstdint>
#include <optional>
#include <string>

namespace viewlib
{

/* An exchange as lists and the feed show it. */
Json summaryOf(const LoggedExchange& exchange);

/* The first status in an answer's envelope: code and text, where it has them. */
struct AnswerStatus
{
    std::optional<std::int64_t> code;
    std::string text;
};
AnswerStatus statusOf(const std::string& answer);

} // namespace viewlib
