/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_SESSION_UNREGISTRATION_H
#define PUBSEC_SESSION_UNREGISTRATION_H

#include "core/http.h"

/* The platform's unregistration, or the direct one. */
struct TPubSecUnregistration
{
    const char* pchName; /* in whose name lines are logged */
    const TPubSecTarget* ptTarget;
};

/* Makes the whole exchange: 50 answered, 51, 60, 75 or 76 otherwise. */
u32 PubSecUnregisterOnce(const TPubSecUnregistration* ptUnregistration);

#endif
