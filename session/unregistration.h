/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_SESSION_UNREGISTRATION_H
#define PUBSEC_SESSION_UNREGISTRATION_H

#include "core/http.h"

/* Where the platform's unregistration and the direct one differ. */
struct TPubSecUnregistration
{
    const char* pchName; /* in whose name lines are logged */
    const TPubSecTarget* ptTarget;
    void (*pfFillHeaders)(const TPubSecUnregistration* ptUnregistration, struct curl_slist** pptHeaders,
                          CURL* ptHandle);
    u32 dwPlatform; /* not used by the direct one */
};

/* Makes the whole exchange: 50 answered, 51, 60, 75 or 76 otherwise. */
u32 PubSecUnregisterOnce(const TPubSecUnregistration* ptUnregistration);

#endif
