/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "json.h"
#include "viewlib/exchange.h"

namespace viewlib
{

/* An exchange as lists and the feed show it. */
Json summaryOf(const Exchange& exchange);

} // namespace viewlib
