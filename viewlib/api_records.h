/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "api.h"
#include "exchange_log.h"
#include "store.h"
#include "uploads.h"

namespace viewlib
{

/* What the endpoints show; all of it outlives them. */
struct Records
{
    const Store& store;
    const Uploads& uploads;
    const ExchangeLog& log;
    const char* scheme; /* "http" or "https" */
};

/* Objects, uploads, exchanges and their exports. */
void addRecordEndpoints(Api& api, const Records& records);

} // namespace viewlib
