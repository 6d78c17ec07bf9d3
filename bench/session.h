/* SPDX-License-Identifier: Apache-2.0 */
/* The stack, registered at a sink server. */
#ifndef PUBSEC_BENCH_SESSION_H
#define PUBSEC_BENCH_SESSION_H

#include <pubsecstack/pubsecstack.h>

#include "sink_server.h"

namespace bench
{

TPubSecPlatRegInfo configuration(const SinkServer& server, u32 keepaliveSeconds);

/* Starts the stack and waits until platform 0 is registered. Log lines are dropped. */
void startRegistered(const SinkServer& server, u32 keepaliveSeconds = 3600);

/* Ends the stack and its tasks. */
void stopStack();

} // namespace bench

#endif
