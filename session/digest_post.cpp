/* SPDX-License-Identifier: Apache-2.0 */
#include "session/digest_post.h"

void PubSecSetDigestOptions(CURL* ptHandle, curl_slist* ptHeaders, const char* pchUrl, const TPubSecTarget* ptTarget,
                            const char* pchBody, bool bFollow, const char* pchFunction)
{
    PubSecSetBaseOptions(ptHandle, ptHeaders, pchUrl, PUBSEC_POST, true, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_POSTFIELDSIZE, static_cast<long>(AppStrlen(pchBody)), pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_POSTFIELDS, pchBody, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_DIGEST), pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_USERNAME, ptTarget->achUserName, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_PASSWORD, ptTarget->achPassword, pchFunction);
    if (bFollow)
    {
        PubSecSetOption(ptHandle, CURLOPT_FOLLOWLOCATION, 1L, pchFunction);
    }
}

s32 PubSecPerformNoAuth(CURL* ptHandle, const char* pchFunction)
{
    PubSecSetOption(ptHandle, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_NONE), pchFunction);
    const CURLcode eResult = curl_easy_perform(ptHandle);
    if (!PubSecIsCompleted(eResult))
    {
        PUBSEC_ERR_AS(pchFunction, "curl_easy_perform no auth Ret:%d,failed: %s", static_cast<s32>(eResult),
                      curl_easy_strerror(eResult));
    }
    const s32 nStatus = PubSecHttpStatus(ptHandle);
    PUBSEC_DBG_AS(pchFunction, "http code=%d.", nStatus);
    return nStatus;
}
