/* SPDX-License-Identifier: Apache-2.0 */
/* Unregistration: the platform's, and the exchange that the direct call shares with it. */
#include "session/unregistration.h"

#include <cjson/cJSON.h>

#include "core/core.h"
#include "core/log.h"
#include "core/platform_table.h"
#include "session/digest_post.h"
#include "session/session.h"

namespace
{

/* A refusal is answered with a second try whose outcome no longer matters: the device has left either way. */
u32 Perform(CURL* ptHandle, curl_slist* ptHeaders, const char* pchName)
{
    const CURLcode eResult = curl_easy_perform(ptHandle);
    if (!PubSecIsCompleted(eResult))
    {
        PUBSEC_ERR_AS(pchName, "curl_easy_perform() failed: %s", curl_easy_strerror(eResult));
        curl_slist_free_all(ptHeaders);
        return PUBSEC_ERR_TRANSFER;
    }
    const s32 nStatus = PubSecHttpStatus(ptHandle);
    if (!PubSecIsAccepted(nStatus))
    {
        PUBSEC_ERR_AS(pchName, "unreg RetCode=%d", nStatus);
        PubSecPerformNoAuth(ptHandle, pchName);
    }
    curl_slist_free_all(ptHeaders);
    return PUBSEC_OK;
}

u32 Exchange(const TPubSecUnregistration* ptUnregistration, const char* pchUrl, const char* pchBody)
{
    const char* pchName = ptUnregistration->pchName;
    const CURLcode eResult = PubSecCurlGlobalInit();
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR_AS(pchName, "curl_global_init() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_CURL_INIT;
    }
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        PUBSEC_ERR_AS(pchName, "curl_easy_init() failed");
        return PUBSEC_ERR_CURL_INIT;
    }
    u32 dwRet = PUBSEC_ERR_HEADERS;
    curl_slist* ptHeaders = nullptr;
    _PubSecHttpFillCurlHeadMsgInfoExt1(&ptHeaders, ptHandle, ptUnregistration->ptTarget->achDeviceID);
    if (ptHeaders == nullptr)
    {
        PUBSEC_ERR_HEAD_AS(pchName);
    }
    else
    {
        PubSecSetDigestOptions(ptHandle, ptHeaders, pchUrl, ptUnregistration->ptTarget, pchBody, true, pchName);
        dwRet = Perform(ptHandle, ptHeaders, pchName);
    }
    curl_easy_cleanup(ptHandle);
    return dwRet;
}

} // namespace

u32 PubSecUnregisterOnce(const TPubSecUnregistration* ptUnregistration)
{
    char achUrl[PUBSEC_DIGEST_URL_SIZE];
    PubSecFormatUrl(achUrl, sizeof(achUrl), ptUnregistration->ptTarget, "/VIID/System/UnRegister");
    char* pchBody = _PubSecUserUnRegisterJson(ptUnregistration->ptTarget->achDeviceID);
    if (pchBody == nullptr)
    {
        PUBSEC_ERR_AS(ptUnregistration->pchName, "ptUnRegJson is null");
        return PUBSEC_ERR_FAILED;
    }
    const u32 dwRet = Exchange(ptUnregistration, achUrl, pchBody);
    cJSON_free(pchBody);
    return dwRet;
}

u32 PubSecPostUserUnRegisterMsg(u32 dwPlatform)
{
    if (!PubSecIsPlatform(dwPlatform))
    {
        return PUBSEC_ERR_NOT_REGISTERED;
    }
    /* The session's own record: once the status is 0 the loop may take another into force. */
    TPubSecPlatRegInfo tInfo;
    TPubSecTarget tTarget;
    PubSecTableRead(dwPlatform, &tInfo);
    PubSecTargetOfInfo(&tInfo, &tTarget);
    /* The host is told before the server is. Of two callers at once, one finds the platform registered. */
    if (PubSecExchange(g_bPubSecRegStatus[dwPlatform], 0u) == 0)
    {
        return PUBSEC_ERR_NOT_REGISTERED;
    }
    PubSecNotifyRegStatus(dwPlatform, 0, &tInfo);
    const TPubSecUnregistration tUnregistration = {__func__, &tTarget};
    return PubSecUnregisterOnce(&tUnregistration);
}
