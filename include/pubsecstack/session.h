/* SPDX-License-Identifier: Apache-2.0 */
/* Session calls that the host makes itself. Registration, keepalive and clock run without it (config.h). */
#ifndef PUBSECSTACK_SESSION_H
#define PUBSECSTACK_SESSION_H

#include <pubsecstack/config.h>

PUBSEC_C_BEGIN

/* A server's answer about its clock. Values that are not JSON strings leave their field as it was. */
typedef struct
{
    char achVIIDServerID[32]; /* "VIIDServerID" */
    char achTimeMode[4];      /* "TimeMode", not applied by the stack */
    char achLocalTime[32];    /* "LocalTime", YYYYMMDDhhmmss */
    char achTimeZone[64];     /* "TimeZone", not applied by the stack */
    char achReserved[68];     /* never read or written */
} TPubSecSystemTime;

/*
 * Asks a platform's server for its time (GET /VIID/System/Time). The platform need not be registered.
 *
 * dwPlatform  0 or 1
 * ptTime      receives the answer; zeroed by the caller; not null
 *
 * Returns PUBSEC_OK; PUBSEC_ERR_TIME_QUERY for an answer other than 200 or 201, for a failed transfer (in practice)
 * and, with nothing sent, for a number that is no platform; PUBSEC_ERR_FAILED for an answer that cannot be read or a
 * null ptTime; PUBSEC_ERR_TRANSFER for one that was read whole before its transfer failed; PUBSEC_ERR_CURL_INIT;
 * PUBSEC_ERR_HEADERS. Blocks for one exchange, 30 seconds at most. Any thread.
 */
PUBSEC_API u32 PubSecGetSystemTimeMsg(u32 dwPlatform, TPubSecSystemTime* ptTime);

/*
 * Unregisters a platform (POST /VIID/System/UnRegister). The status becomes 0 and the callbacks are called before the
 * server is told; what the server answers changes nothing. Its timers run out by themselves. An enabled platform is
 * registered again by the register loop on its next pass: to stay unregistered, hand over a configuration with
 * dwEnable 0 instead.
 *
 * Returns PUBSEC_OK when an answer arrived, whatever it was; PUBSEC_ERR_NOT_REGISTERED for a platform that is not
 * registered or no platform (nothing is sent); PUBSEC_ERR_FAILED, PUBSEC_ERR_HEADERS or PUBSEC_ERR_CURL_INIT when the
 * request could not be made; PUBSEC_ERR_TRANSFER when the server could not be reached.
 * Blocks for one exchange or, when the first is refused, two: 30 seconds each at most. Any thread.
 */
PUBSEC_API u32 PubSecPostUserUnRegisterMsg(u32 dwPlatform);

/*
 * Registers at the server that the record describes, to try a configuration before it is applied. Redirects are
 * followed. The stack's own session, status and callbacks are not touched.
 *
 * Returns 1 when the server accepted, 0 when it did not, could not be reached, or ptParam is null; the cause is in the
 * log. Blocks for two exchanges at most, 30 seconds each. Any thread.
 */
PUBSEC_API u32 PubSecStackPostRegisterExt(const TPubSecRegParam* ptParam);

/*
 * Unregisters at the server that the record describes. The stack's own session is not touched.
 *
 * Returns as PubSecPostUserUnRegisterMsg, without PUBSEC_ERR_NOT_REGISTERED; PUBSEC_ERR_NULL_RECORD for a null ptParam.
 */
PUBSEC_API u32 PubSecPostUserUnRegisterMsgExt(const TPubSecRegParam* ptParam);

/*
 * Tries a server: registers and, when that was accepted, unregisters at once.
 *
 * Returns PUBSEC_OK when the server accepted the registration, PUBSEC_ERR_FAILED when it did not or ptParam is null.
 * Blocks for four exchanges at most, 30 seconds each. Any thread.
 */
PUBSEC_API u32 PubSecStackTestRegister(const TPubSecRegParam* ptParam);

PUBSEC_C_END

#endif
