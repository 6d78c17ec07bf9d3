/* SPDX-License-Identifier: Apache-2.0 */
/* What the keepalive and the clock query share: one exchange with the platform in force whose answer is captured. */
#ifndef PUBSEC_SESSION_QUERY_H
#define PUBSEC_SESSION_QUERY_H

#include "core/http.h"

/* Room for the URL of these requests. */
constexpr u32 PUBSEC_QUERY_URL_SIZE = 64;

struct TPubSecQuery
{
    const char* pchName; /* in whose name lines are logged */
    const TPubSecTarget* ptTarget;
    const char* pchUrl;
    const char* pchBody; /* posted; null asks with GET */
    u32 dwEasyInitCode;  /* result when there is no transfer handle */
};

/* How the exchange went. */
struct TPubSecQueryOutcome
{
    bool bMade; /* the request went out, or tried to */
    bool bCompleted;
    s32 nStatus; /* HTTP status, 0 when none came */
    TPubSecRespBuf tAnswer;
};

/*
 * Makes the exchange. Where it cannot be made, the result says why: 60, 75 or dwEasyInitCode. The caller closes the
 * outcome's answer with PubSecSinkClose in any case.
 */
u32 PubSecQueryRun(const TPubSecQuery* ptQuery, TPubSecQueryOutcome* ptOutcome);

#endif
