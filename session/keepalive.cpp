/* SPDX-License-Identifier: Apache-2.0 */
/* The keepalive exchange and the timer that makes it. */
#include <cjson/cJSON.h>

#include "core/core.h"
#include "core/http.h"
#include "core/log.h"
#include "core/platform_table.h"
#include "session/redirect.h"
#include "session/session.h"
#include "session/timers.h"

namespace
{

constexpr u32 c_urlSize = 64;
constexpr u8 c_failuresTolerated = 2;
constexpr const char* c_pchName = "_PubSecPostUserKeepAliveMsg";
constexpr const char* c_pchHandler = "_PubSecStackKeepaliveTimerHandle";

/* What the status code of an accepted keepalive means; an answer without one is as good as any. */
u32 ReadAnswer(u32 dwPlatform, const char* pchAnswer, s32 nStatus)
{
    char achCode[PUBSEC_CODE_TEXT_SIZE] = {};
    if (_PubSecKeepAliveParseJson(pchAnswer, achCode) == 0 || AppStrcmp(achCode, "0") == 0)
    {
        return PUBSEC_OK;
    }
    const bool bGone = AppStrcmp(achCode, "10") == 0;
    if (bGone)
    {
        PubSecReturnFromRedirect(dwPlatform);
    }
    PUBSEC_ERR_AS(c_pchName, "statu code:%d", nStatus);
    return bGone ? PUBSEC_ERR_REFUSED : PUBSEC_ERR_FAILED;
}

u32 Perform(u32 dwPlatform, CURL* ptHandle, const TPubSecRespBuf* ptSink, curl_slist* ptHeaders)
{
    const CURLcode eResult = curl_easy_perform(ptHandle);
    curl_slist_free_all(ptHeaders);
    if (!PubSecIsCompleted(eResult))
    {
        PUBSEC_ERR_AS(c_pchName, "curl_easy_perform() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_TRANSFER;
    }
    const s32 nStatus = PubSecHttpStatus(ptHandle);
    if (!PubSecIsAccepted(nStatus))
    {
        return PUBSEC_ERR_FAILED;
    }
    return ReadAnswer(dwPlatform, ptSink->pchBuf, nStatus);
}

u32 Exchange(u32 dwPlatform, const char* pchUrl, const char* pchBody, TPubSecRespBuf* ptSink)
{
    const CURLcode eResult = PubSecCurlGlobalInit();
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR_AS(c_pchName, "curl_global_init() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_CURL_INIT;
    }
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        return PUBSEC_OK; /* reported as success: a device short of memory does not drop its session for it */
    }
    u32 dwRet = PUBSEC_ERR_HEADERS;
    curl_slist* ptHeaders = nullptr;
    _PubSecHttpFillCurlHeadMsgInfoex(&ptHeaders, ptHandle, dwPlatform);
    if (ptHeaders == nullptr)
    {
        PUBSEC_ERR_HEAD_AS(c_pchName);
    }
    else
    {
        TPubSecReqBody tBody = {pchBody, AppStrlen(pchBody)};
        PubSecSetBaseOptions(ptHandle, ptHeaders, pchUrl, PUBSEC_POST, true, c_pchName);
        PubSecSetReader(ptHandle, &tBody, c_pchName);
        PubSecSetOption(ptHandle, CURLOPT_POSTFIELDSIZE, static_cast<long>(tBody.dwLeft), c_pchName);
        PubSecSetWriter(ptHandle, ptSink, c_pchName);
        dwRet = Perform(dwPlatform, ptHandle, ptSink, ptHeaders);
    }
    curl_easy_cleanup(ptHandle);
    return dwRet;
}

/*
 * Three failures in a row: the session is over, and the register loop starts another. The timers are the ones from
 * before the status changed, so that those of the next session stay.
 */
void DropSession(u32 dwPlatform)
{
    PUBSEC_ERR_AS(c_pchHandler, "plat[%d] keepalive timeout.", static_cast<s32>(dwPlatform));
    const TAppTimerHandle hKeepalive = PubSecTimerOf(c_tKeepaliveTimer, dwPlatform);
    const TAppTimerHandle hSyncTime = PubSecTimerOf(c_tSyncTimeTimer, dwPlatform);
    PubSecStore(abyKeepalivFailTimes[dwPlatform], 0);
    const bool bWasRegistered = PubSecExchange(g_bPubSecRegStatus[dwPlatform], 0u) != 0;
    PubSecTimerDisarm(c_tKeepaliveTimer, dwPlatform, hKeepalive);
    PubSecTimerDisarm(c_tSyncTimeTimer, dwPlatform, hSyncTime);
    if (bWasRegistered)
    {
        TPubSecPlatRegInfo tInfo;
        PubSecTableRead(dwPlatform, &tInfo);
        PubSecNotifyRegStatus(dwPlatform, 0, &tInfo);
    }
}

} // namespace

u32 _PubSecPostUserKeepAliveMsg(u32 dwPlatform)
{
    if (!PubSecIsPlatform(dwPlatform))
    {
        return PUBSEC_ERR_NOT_REGISTERED;
    }
    char achUrl[c_urlSize];
    TPubSecTarget tTarget;
    PubSecTargetInForce(dwPlatform, &tTarget);
    PubSecFormatUrl(achUrl, sizeof(achUrl), &tTarget, "/VIID/System/Keepalive");
    PUBSEC_DBG("achURLMessage: %s", achUrl);
    char* pchBody = _PubSecUserKeepaliveJson(tTarget.achDeviceID);
    if (pchBody == nullptr)
    {
        return PUBSEC_OK;
    }
    TPubSecRespBuf tSink;
    PubSecSinkOpen(&tSink);
    const u32 dwRet = Exchange(dwPlatform, achUrl, pchBody, &tSink);
    PubSecSinkClose(&tSink);
    cJSON_free(pchBody);
    return dwRet;
}

void _PubSecStackKeepaliveTimerHandle(TAppTaskHandle, u32 dwEvent, const void* pvContext)
{
    u32 dwPlatform = 0;
    if (!PubSecTimerIsDue(dwEvent, pvContext, __func__, &dwPlatform))
    {
        return;
    }
    const TAppTimerHandle hOwn = PubSecTimerOf(c_tKeepaliveTimer, dwPlatform);
    if (!PubSecIsRegistered(dwPlatform))
    {
        PUBSEC_ERR("plat[%d] is unregister.", static_cast<s32>(dwPlatform));
        PubSecTimerDisarm(c_tKeepaliveTimer, dwPlatform, hOwn);
        return;
    }
    TPubSecPlatRegInfo tInfo;
    PubSecTableRead(dwPlatform, &tInfo);
    PubSecTimerRearm(c_tKeepaliveTimer, dwPlatform, hOwn, PubSecPeriod(tInfo.dwKeepaliveSec, 1000), __func__);

    if (_PubSecPostUserKeepAliveMsg(dwPlatform) == PUBSEC_OK)
    {
        PubSecStore(abyKeepalivFailTimes[dwPlatform], 0);
        return;
    }
    const u8 byFailures = __atomic_add_fetch(&abyKeepalivFailTimes[dwPlatform], u8{1}, __ATOMIC_ACQ_REL);
    if (byFailures > c_failuresTolerated)
    {
        DropSession(dwPlatform);
    }
}
