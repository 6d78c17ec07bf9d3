/* SPDX-License-Identifier: Apache-2.0 */
#include "session/query.h"

#include "core/log.h"

namespace
{

void SetOptions(const TPubSecQuery* ptQuery, CURL* ptHandle, curl_slist* ptHeaders, TPubSecReqBody* ptBody,
                TPubSecRespBuf* ptAnswer)
{
    const bool bPost = ptQuery->pchBody != nullptr;
    const char* pchName = ptQuery->pchName;
    PubSecSetBaseOptions(ptHandle, ptHeaders, ptQuery->pchUrl, bPost ? PUBSEC_POST : PUBSEC_GET, true, pchName);
    PubSecSetReader(ptHandle, bPost ? ptBody : nullptr, pchName);
    if (bPost)
    {
        PubSecSetOption(ptHandle, CURLOPT_POSTFIELDSIZE, static_cast<long>(ptBody->dwLeft), pchName);
    }
    PubSecSetWriter(ptHandle, ptAnswer, pchName);
    if (!bPost)
    {
        PubSecSetOption(ptHandle, CURLOPT_NOSIGNAL, 1L, pchName);
    }
}

void Perform(const TPubSecQuery* ptQuery, CURL* ptHandle, curl_slist* ptHeaders, TPubSecQueryOutcome* ptOutcome)
{
    TPubSecReqBody tBody = {ptQuery->pchBody, ptQuery->pchBody != nullptr ? AppStrlen(ptQuery->pchBody) : 0};
    PubSecSinkOpen(&ptOutcome->tAnswer);
    SetOptions(ptQuery, ptHandle, ptHeaders, &tBody, &ptOutcome->tAnswer);
    const CURLcode eResult = curl_easy_perform(ptHandle);
    curl_slist_free_all(ptHeaders);
    ptOutcome->bMade = true;
    ptOutcome->bCompleted = PubSecIsCompleted(eResult);
    if (!ptOutcome->bCompleted)
    {
        PUBSEC_ERR_AS(ptQuery->pchName, "curl_easy_perform() failed: %s", curl_easy_strerror(eResult));
    }
    ptOutcome->nStatus = PubSecHttpStatus(ptHandle);
}

} // namespace

u32 PubSecQueryRun(const TPubSecQuery* ptQuery, TPubSecQueryOutcome* ptOutcome)
{
    *ptOutcome = {};
    const CURLcode eResult = PubSecCurlGlobalInit();
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR_AS(ptQuery->pchName, "curl_global_init() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_CURL_INIT;
    }
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        return ptQuery->dwEasyInitCode;
    }
    u32 dwRet = PUBSEC_ERR_HEADERS;
    curl_slist* ptHeaders = nullptr;
    _PubSecHttpFillCurlHeadMsgInfoExt1(&ptHeaders, ptHandle, ptQuery->ptTarget->achDeviceID);
    if (ptHeaders == nullptr)
    {
        PUBSEC_ERR_HEAD_AS(ptQuery->pchName);
    }
    else
    {
        Perform(ptQuery, ptHandle, ptHeaders, ptOutcome);
        dwRet = PUBSEC_OK;
    }
    curl_easy_cleanup(ptHandle);
    return dwRet;
}
