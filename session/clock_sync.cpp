/* SPDX-License-Identifier: Apache-2.0 */
/* The server's time: asking for it, reading it, setting the device's clock by it. */
#include <stdlib.h>

#include <cjson/cJSON.h>

#include "core/core.h"
#include "core/log.h"
#include "core/platform_table.h"
#include "core/text.h"
#include "session/query.h"
#include "session/session.h"
#include "session/timers.h"

namespace
{

constexpr u32 c_firstTimeSource = 8; /* platform 0 sets the clock as source 8, platform 1 as source 9 */
constexpr const char* c_pchQuery = "PubSecGetSystemTimeMsg";
constexpr const char* c_pchHandler = "_PubSecStackGetPlatformTimeTimerHandle";

/* A failed transfer is only logged; without a status it ends as any unexpected one. */
u32 ReadOutcome(const TPubSecQueryOutcome& tOutcome, TPubSecSystemTime* ptTime)
{
    if (!PubSecIsAccepted(tOutcome.nStatus))
    {
        PUBSEC_ERR_AS(c_pchQuery, "RetCode:%d", tOutcome.nStatus);
        return PUBSEC_ERR_TIME_QUERY;
    }
    if (_PubSecSystemTimeParseJson(tOutcome.tAnswer.pchBuf, ptTime) == 0)
    {
        PUBSEC_ERR_AS(c_pchQuery, "_PubSecSystemTimeParseJson Fail ");
        return PUBSEC_ERR_FAILED;
    }
    return tOutcome.bCompleted ? u32{PUBSEC_OK} : u32{PUBSEC_ERR_TRANSFER};
}

/* The number in count characters of a text, from a position counted from 0; 0 where there is none. */
s32 Digits(const char (&achText)[32], u32 dwFrom, u32 dwCount)
{
    char achDigits[5];
    PubSecCopyText(achDigits, sizeof(achDigits), achText + dwFrom, dwCount);
    return atoi(achDigits);
}

/* Sets the device's clock to YYYYMMDDhhmmss, whatever the digits say. */
void SetClock(u32 dwPlatform, const char (&achLocalTime)[32])
{
    TNvrSysTime tTime = {};
    tTime.wYear = static_cast<u16>(Digits(achLocalTime, 0, 4));
    tTime.byMonth = static_cast<u8>(Digits(achLocalTime, 4, 2));
    tTime.byDay = static_cast<u8>(Digits(achLocalTime, 6, 2));
    tTime.byHour = static_cast<u8>(Digits(achLocalTime, 8, 2));
    tTime.byMinute = static_cast<u8>(Digits(achLocalTime, 10, 2));
    tTime.bySecond = static_cast<u8>(Digits(achLocalTime, 12, 2));
    PUBSEC_INF_AS(c_pchHandler, "PlatNum:%d |RegStatus:%d | Time[%d-%d-%d %d:%d:%d]", static_cast<s32>(dwPlatform),
                  static_cast<s32>(PubSecLoad(g_bPubSecRegStatus[dwPlatform])), tTime.wYear, tTime.byMonth, tTime.byDay,
                  tTime.byHour, tTime.byMinute, tTime.bySecond);
    if (NvrSysTimeSwitch(0, &tTime) != NVR_SYS_OK)
    {
        PUBSEC_ERR_AS(c_pchHandler, "NvrSysTimeSwitch is fail!");
        return;
    }
    const u32 dwRet = NvrSysSetSystemTime(&tTime, c_firstTimeSource + dwPlatform);
    if (dwRet == NVR_SYS_OK)
    {
        PUBSEC_INF_AS(c_pchHandler, "NvrSysSetSystemTime success.");
    }
    /* Written after a success too. */
    PUBSEC_ERR_AS(c_pchHandler, "NvrSysSetSystemTime is fail!eNvrRet:%d", static_cast<s32>(dwRet));
}

/* One required member of the answer. */
struct TPubSecTimeKey
{
    const char* pchKey;
    const char* pchMissing;
    char* pchOut;
    u32 dwSize;
    const char* pchLogged; /* format of the value's line, or null for none */
};

bool ReadKey(const cJSON* ptObject, const TPubSecTimeKey& tKey, const char* pchFunction)
{
    const cJSON* ptValue = cJSON_GetObjectItem(ptObject, tKey.pchKey);
    if (ptValue == nullptr)
    {
        PUBSEC_ERR_AS(pchFunction, "%s", tKey.pchMissing);
        return false;
    }
    if (cJSON_IsString(ptValue))
    {
        PubSecCopyText(tKey.pchOut, tKey.dwSize, ptValue->valuestring, tKey.dwSize);
    }
    if (tKey.pchLogged != nullptr)
    {
        PUBSEC_INF_AS(pchFunction, "%s:%s", tKey.pchLogged, tKey.pchOut);
    }
    return true;
}

} // namespace

u32 _PubSecSystemTimeParseJson(const char* pchText, TPubSecSystemTime* ptOut)
{
    const TPubSecTimeKey atKeys[] = {
        {"VIIDServerID", "cannot find VIIDServerID !Please Check Again !", ptOut->achVIIDServerID,
         sizeof(ptOut->achVIIDServerID), nullptr},
        {"TimeMode", "cannot find TimeMode! Please Check Again !", ptOut->achTimeMode, sizeof(ptOut->achTimeMode),
         "TimeMode"},
        {"LocalTime", "cannot find LocalTime !Please Check Again !", ptOut->achLocalTime, sizeof(ptOut->achLocalTime),
         "LocalTime"},
        {"TimeZone", "cannot find string TimeZone!Please Check Again !", ptOut->achTimeZone, sizeof(ptOut->achTimeZone),
         "TimeZone"},
    };
    cJSON* ptRoot = PubSecParseAnswer(pchText, __func__);
    const cJSON* ptObject = cJSON_GetObjectItem(ptRoot, "SystemTimeObject");
    bool bRead = ptObject != nullptr;
    for (const TPubSecTimeKey& tKey : atKeys)
    {
        bRead = bRead && ReadKey(ptObject, tKey, __func__);
    }
    cJSON_Delete(ptRoot);
    return bRead ? 1 : 0;
}

u32 PubSecGetSystemTimeMsg(u32 dwPlatform, TPubSecSystemTime* ptTime)
{
    if (!PubSecIsPlatform(dwPlatform))
    {
        return PUBSEC_ERR_TIME_QUERY;
    }
    if (ptTime == nullptr)
    {
        return PUBSEC_ERR_FAILED;
    }
    char achUrl[PUBSEC_QUERY_URL_SIZE];
    TPubSecTarget tTarget;
    PubSecTargetInForce(dwPlatform, &tTarget);
    PubSecFormatUrl(achUrl, sizeof(achUrl), &tTarget, "/VIID/System/Time");
    const TPubSecQuery tQuery = {c_pchQuery, &tTarget, achUrl, nullptr, PUBSEC_ERR_CURL_INIT};
    TPubSecQueryOutcome tOutcome;
    u32 dwRet = PubSecQueryRun(&tQuery, &tOutcome);
    if (tOutcome.bMade)
    {
        dwRet = ReadOutcome(tOutcome, ptTime);
    }
    PubSecSinkClose(&tOutcome.tAnswer);
    return dwRet;
}

void _PubSecStackGetPlatformTimeTimerHandle(TAppTaskHandle, u32 dwEvent, const void* pvContext)
{
    /* Written on entry, before anything is done. */
    PUBSEC_INF("NvrSysSetSystemTime success.");
    u32 dwPlatform = 0;
    if (!PubSecTimerIsDue(dwEvent, pvContext, __func__, &dwPlatform))
    {
        return;
    }
    const TAppTimerHandle hOwn = PubSecTimerOf(c_tSyncTimeTimer, dwPlatform);
    if (!PubSecIsRegistered(dwPlatform))
    {
        PUBSEC_ERR("plat[%d] is unregister.", static_cast<s32>(dwPlatform));
        PubSecTimerDisarm(c_tSyncTimeTimer, dwPlatform, hOwn);
        return;
    }
    TPubSecSystemTime tAnswer = {};
    const u32 dwRet = PubSecGetSystemTimeMsg(dwPlatform, &tAnswer);
    if (dwRet == PUBSEC_OK)
    {
        SetClock(dwPlatform, tAnswer.achLocalTime);
    }
    else
    {
        PUBSEC_ERR("plat[%d] PubSecGetSystemTimeMsg fail{%d}!", static_cast<s32>(dwPlatform), static_cast<s32>(dwRet));
    }
    TPubSecPlatRegInfo tInfo;
    PubSecTableRead(dwPlatform, &tInfo);
    if (tInfo.dwSyncTimeMin != 0)
    {
        PubSecTimerRearm(c_tSyncTimeTimer, dwPlatform, hOwn, PubSecPeriod(tInfo.dwSyncTimeMin, 60000), __func__);
    }
    else
    {
        PubSecTimerDisarm(c_tSyncTimeTimer, dwPlatform, hOwn);
    }
}
