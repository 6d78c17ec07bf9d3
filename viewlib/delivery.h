/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"

#include <microhttpd.h>

namespace viewlib
{

class Listener;

/* Sends the answer, delays, throttle and cuts included; what it returns goes back to the HTTP server as it stands. */
MHD_Result deliver(Listener& listener, MHD_Connection* connection, const Answer& answer);

} // namespace viewlib
