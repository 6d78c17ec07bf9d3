/* SPDX-License-Identifier: Apache-2.0 */
#include "session/timers.h"

#include "core/log.h"
#include "session/session.h"

namespace
{

constexpr u32 c_timerElapsed = 4;

TAppTimerHandle Start(const TPubSecTimerKind& tKind, u32 dwPlatform, u32 dwMilliseconds, const char* pchFunction)
{
    const TAppTimerHandle hTimer = AppTaskSetTimer(PubSecLoad(g_hAppTaskDelay), dwMilliseconds, tKind.pfHandler,
                                                   &g_adwPubSecStackPlatIndex[dwPlatform]);
    if (hTimer == nullptr)
    {
        PUBSEC_ERR_AS(pchFunction, "AppTaskSetTimer set %s failed.", tKind.pchSlots);
    }
    return hTimer;
}

void Cancel(TAppTimerHandle hTimer)
{
    if (hTimer != nullptr)
    {
        AppTaskCancelTimer(hTimer);
    }
}

} // namespace

const TPubSecTimerKind c_tKeepaliveTimer = {g_ahKeepaliveTimer, _PubSecStackKeepaliveTimerHandle, "g_ahKeepaliveTimer"};
const TPubSecTimerKind c_tSyncTimeTimer = {g_ahSyncTimeTimer, _PubSecStackGetPlatformTimeTimerHandle,
                                           "g_ahSyncTimeTimer"};

u32 PubSecPeriod(u32 dwPeriod, u32 dwUnitMs)
{
    return dwPeriod > UINT32_MAX / dwUnitMs ? UINT32_MAX : dwPeriod * dwUnitMs;
}

TAppTimerHandle PubSecTimerOf(const TPubSecTimerKind& tKind, u32 dwPlatform)
{
    return PubSecLoad(tKind.phSlots[dwPlatform]);
}

void PubSecTimerArm(const TPubSecTimerKind& tKind, u32 dwPlatform, u32 dwMilliseconds, const char* pchFunction)
{
    PubSecTimerClear(tKind, dwPlatform);
    PubSecTimerRearm(tKind, dwPlatform, nullptr, dwMilliseconds, pchFunction);
}

void PubSecTimerRearm(const TPubSecTimerKind& tKind, u32 dwPlatform, TAppTimerHandle hOwn, u32 dwMilliseconds,
                      const char* pchFunction)
{
    TAppTimerHandle hTimer = Start(tKind, dwPlatform, dwMilliseconds, pchFunction);
    while (!PubSecReplace(tKind.phSlots[dwPlatform], hOwn, hTimer))
    {
        Cancel(hTimer);
        /* A timer stored meanwhile may have run out before it was stored, as the handler's own may: it is replaced. */
        hOwn = PubSecTimerOf(tKind, dwPlatform);
        hTimer = hOwn != nullptr ? Start(tKind, dwPlatform, PUBSEC_TIMER_START_MS, pchFunction) : nullptr;
        if (hTimer == nullptr)
        {
            return;
        }
    }
    Cancel(hOwn);
}

void PubSecTimerClear(const TPubSecTimerKind& tKind, u32 dwPlatform)
{
    Cancel(PubSecExchange(tKind.phSlots[dwPlatform], nullptr));
}

void PubSecTimerDisarm(const TPubSecTimerKind& tKind, u32 dwPlatform, TAppTimerHandle hTimer)
{
    if (hTimer != nullptr)
    {
        PubSecReplace(tKind.phSlots[dwPlatform], hTimer, nullptr);
        Cancel(hTimer);
    }
}

bool PubSecTimerIsDue(u32 dwEvent, const void* pvContext, const char* pchFunction, u32* pdwPlatform)
{
    if (pvContext == nullptr)
    {
        PUBSEC_ERR_AS(pchFunction, "pvContext is null.");
        return false;
    }
    *pdwPlatform = PubSecLoad(*static_cast<const u32*>(pvContext));
    if (!PubSecIsPlatform(*pdwPlatform))
    {
        PUBSEC_ERR_AS(pchFunction, "PlatIndex=%d is overflow.", static_cast<s32>(*pdwPlatform));
        return false;
    }
    return dwEvent == c_timerElapsed;
}
