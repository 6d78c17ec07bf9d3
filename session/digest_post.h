/* SPDX-License-Identifier: Apache-2.0 */
/* What registration, unregistration and the direct calls share: a POST with digest credentials and its second try. */
#ifndef PUBSEC_SESSION_DIGEST_POST_H
#define PUBSEC_SESSION_DIGEST_POST_H

#include "core/http.h"

/* Room for the URL of these requests. */
constexpr u32 PUBSEC_DIGEST_URL_SIZE = 256;

/* Sets every option of such a request. pchBody and the texts of ptTarget outlive the handle's transfers. */
void PubSecSetDigestOptions(CURL* ptHandle, struct curl_slist* ptHeaders, const char* pchUrl,
                            const TPubSecTarget* ptTarget, const char* pchBody, bool bFollow, const char* pchFunction);

/* Sends the request once more without authentication, as some servers want it; returns and logs the HTTP status. */
s32 PubSecPerformNoAuth(CURL* ptHandle, const char* pchFunction);

#endif
