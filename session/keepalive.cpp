/* SPDX-License-Identifier: Apache-2.0 */
/* The keepalive exchange and the timer that makes it. */
#include <cjson/cJSON.h>

#include "core/core.h"
#include "core/log.h"
#include "core/platform_table.h"
#include "session/query.h"
#include "session/redirect.h"
#include "session/session.h"
#include "session/timers.h"

namespace
{

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

u32 ReadOutcome(u32 dwPlatform, const TPubSecQueryOutcome& tOutcome)
{
    if (!tOutcome.bCompleted)
    {
        return PUBSEC_ERR_TRANSFER;
    }
    if (!PubSecIsAccepted(tOutcome.nStatus))
    {
        return PUBSEC_ERR_FAILED;
    }
    return ReadAnswer(dwPlatform, tOutcome.tAnswer.pchBuf, tOutcome.nStatus);
}

/*
 * Three failures in a row: the session is over, and the register loop starts another. The timers and the record
 * are the ones from before the status changed, so that those of the next session stay.
 */
void DropSession(u32 dwPlatform)
{
    PUBSEC_ERR_AS(c_pchHandler, "plat[%d] keepalive timeout.", static_cast<s32>(dwPlatform));
    const TAppTimerHandle hKeepalive = PubSecTimerOf(c_tKeepaliveTimer, dwPlatform);
    const TAppTimerHandle hSyncTime = PubSecTimerOf(c_tSyncTimeTimer, dwPlatform);
    TPubSecPlatRegInfo tInfo;
    PubSecTableRead(dwPlatform, &tInfo);
    PubSecStore(abyKeepalivFailTimes[dwPlatform], 0);
    const bool bWasRegistered = PubSecExchange(g_bPubSecRegStatus[dwPlatform], 0u) != 0;
    PubSecTimerDisarm(c_tKeepaliveTimer, dwPlatform, hKeepalive);
    PubSecTimerDisarm(c_tSyncTimeTimer, dwPlatform, hSyncTime);
    if (bWasRegistered)
    {
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
    char achUrl[PUBSEC_QUERY_URL_SIZE];
    TPubSecTarget tTarget;
    PubSecTargetInForce(dwPlatform, &tTarget);
    PubSecFormatUrl(achUrl, sizeof(achUrl), &tTarget, "/VIID/System/Keepalive");
    PUBSEC_DBG("achURLMessage: %s", achUrl);
    char* pchBody = _PubSecUserKeepaliveJson(tTarget.achDeviceID);
    if (pchBody == nullptr)
    {
        return PUBSEC_OK;
    }
    /* A missing handle counts as success: a device short of memory does not drop its session for it. */
    const TPubSecQuery tQuery = {c_pchName, &tTarget, achUrl, pchBody, PUBSEC_OK};
    TPubSecQueryOutcome tOutcome;
    u32 dwRet = PubSecQueryRun(&tQuery, &tOutcome);
    if (tOutcome.bMade)
    {
        dwRet = ReadOutcome(dwPlatform, tOutcome);
    }
    PubSecSinkClose(&tOutcome.tAnswer);
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
