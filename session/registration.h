/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_SESSION_REGISTRATION_H
#define PUBSEC_SESSION_REGISTRATION_H

#include "core/http.h"

/* Where the registration by the register task and the direct one differ. */
struct TPubSecRegistration
{
    const char* pchName;           /* in whose name lines are logged */
    const TPubSecTarget* ptTarget; /* address and credentials */
    const char* pchDeviceID;       /* who registers */
    s32 nPlatform;                 /* the platform, or PUBSEC_DIRECT */
};

/* A server that the caller describes: its redirects are libcurl's to follow, no state of the stack is touched. */
constexpr s32 PUBSEC_DIRECT = -1;

/* Makes the whole exchange; true when the server accepted the device. */
bool PubSecRegisterOnce(const TPubSecRegistration* ptRegistration);

#endif
