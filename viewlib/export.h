/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "exchange_log.h"
#include "json.h"
#include "store.h"

#include <string>

namespace viewlib
{

/* An exchange with headers, bodies and timing, as the control API shows it and a line of JSON lines has it. */
Json detailsOf(const LoggedExchange& exchange);

/* Takes the body of a stored document from where it is kept. */
void fetchBody(LoggedExchange& exchange, const Store& store, std::size_t most);

/* An export takes no more than this of exchanges, and of the bytes of their bodies. */
constexpr std::size_t mostExported = 10000;
constexpr std::size_t mostExportedBytes = std::size_t(64) << 20;

/* HAR 1.2, the oldest exchange first. scheme is "http" or "https". */
std::string exportHar(const ExchangeLog& log, const Store& store, ExchangeFilter filter, const std::string& scheme);
/* A line of JSON for each, the oldest first. */
std::string exportLines(const ExchangeLog& log, const Store& store, ExchangeFilter filter);

} // namespace viewlib
