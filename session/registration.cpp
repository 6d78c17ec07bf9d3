/* SPDX-License-Identifier: Apache-2.0 */
/* Registration: the register task's, and the exchange that the direct call shares with it. */
#include "session/registration.h"

#include <cjson/cJSON.h>

#include "core/core.h"
#include "core/log.h"
#include "core/platform_table.h"
#include "session/digest_post.h"
#include "session/redirect.h"
#include "session/session.h"

namespace
{

bool IsRedirect(s32 nStatus)
{
    return nStatus == 301 || nStatus == 302;
}

void FillHeaders(const TPubSecRegistration* ptRegistration, curl_slist** pptHeaders, CURL* ptHandle)
{
    if (ptRegistration->nPlatform == PUBSEC_DIRECT)
    {
        _PubSecHttpFillCurlHeadMsgInfoExt1(pptHeaders, ptHandle, ptRegistration->pchDeviceID);
    }
    else
    {
        _PubSecHttpFillCurlHeadMsgInfoex(pptHeaders, ptHandle, static_cast<u32>(ptRegistration->nPlatform));
    }
    if (*pptHeaders == nullptr)
    {
        PUBSEC_ERR_HEAD_AS(ptRegistration->pchName);
    }
}

/* Sends the request and, unless it was accepted or redirected, once more without authentication. */
bool Perform(const TPubSecRegistration* ptRegistration, CURL* ptHandle)
{
    const CURLcode eResult = curl_easy_perform(ptHandle);
    if (!PubSecIsCompleted(eResult))
    {
        PUBSEC_ERR_AS(ptRegistration->pchName, "curl_easy_perform Ret:%d,failed: %s", static_cast<s32>(eResult),
                      curl_easy_strerror(eResult));
    }
    const s32 nStatus = PubSecHttpStatus(ptHandle);
    PUBSEC_DBG_AS(ptRegistration->pchName, "http code=%d.", nStatus);
    if (PubSecIsAccepted(nStatus))
    {
        return true;
    }
    if (ptRegistration->nPlatform != PUBSEC_DIRECT && IsRedirect(nStatus))
    {
        PubSecFollowRedirect(static_cast<u32>(ptRegistration->nPlatform), ptHandle, ptRegistration->pchName);
        return false;
    }
    return PubSecIsAccepted(PubSecPerformNoAuth(ptHandle, ptRegistration->pchName));
}

bool Exchange(const TPubSecRegistration* ptRegistration, const char* pchUrl, const char* pchBody)
{
    const char* pchName = ptRegistration->pchName;
    const CURLcode eResult = PubSecCurlGlobalInit();
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR_AS(pchName, "curl_global_init() failed: %s", curl_easy_strerror(eResult));
    }
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        PUBSEC_ERR_AS(pchName, "curl_easy_init failed().");
        return false;
    }
    curl_slist* ptHeaders = nullptr;
    FillHeaders(ptRegistration, &ptHeaders, ptHandle);
    PubSecSetDigestOptions(ptHandle, ptHeaders, pchUrl, ptRegistration->ptTarget, pchBody,
                           ptRegistration->nPlatform == PUBSEC_DIRECT, pchName);
    const bool bAccepted = Perform(ptRegistration, ptHandle);
    curl_slist_free_all(ptHeaders);
    curl_easy_cleanup(ptHandle);
    return bAccepted;
}

} // namespace

bool PubSecRegisterOnce(const TPubSecRegistration* ptRegistration)
{
    char achUrl[PUBSEC_DIGEST_URL_SIZE];
    PubSecFormatBracketedUrl(achUrl, sizeof(achUrl), ptRegistration->ptTarget, "/VIID/System/Register");
    if (ptRegistration->nPlatform == PUBSEC_DIRECT)
    {
        PUBSEC_INF_AS(ptRegistration->pchName, "URL:%s", achUrl);
    }
    else
    {
        PUBSEC_INF_AS(ptRegistration->pchName, "dwPlatIndex:%d,URL:%s", ptRegistration->nPlatform, achUrl);
    }
    char* pchBody = _PubSecUserRegisterJson(ptRegistration->pchDeviceID);
    if (pchBody == nullptr)
    {
        PUBSEC_ERR_AS(ptRegistration->pchName, "_PubSecUserRegisterJson failed().");
        return false;
    }
    PUBSEC_INF_AS(ptRegistration->pchName, "achRegJson:%s", pchBody);
    const bool bAccepted = Exchange(ptRegistration, achUrl, pchBody);
    cJSON_free(pchBody);
    return bAccepted;
}

void PubSecStackPostRegister(s32 nPlatform, const TPubSecPlatRegInfo* ptInfo)
{
    const u32 dwPlatform = static_cast<u32>(nPlatform);
    if (!PubSecIsPlatform(dwPlatform) || ptInfo == nullptr)
    {
        return;
    }
    /* Address and credentials are the caller's; the identifier is the one in force. */
    TPubSecTarget tTarget;
    TPubSecTarget tInForce;
    PubSecTargetOfInfo(ptInfo, &tTarget);
    PubSecTargetInForce(dwPlatform, &tInForce);
    const TPubSecRegistration tRegistration = {__func__, &tTarget, tInForce.achDeviceID, nPlatform};
    if (PubSecRegisterOnce(&tRegistration))
    {
        PubSecStore(g_bPubSecRegStatus[dwPlatform], 1u);
    }
    if (PubSecIsRegistered(dwPlatform))
    {
        PubSecNotifyRegStatus(dwPlatform, 1, ptInfo);
    }
}
