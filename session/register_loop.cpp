/* SPDX-License-Identifier: Apache-2.0 */
/* The register task: takes configurations into force, and keeps enabled platforms registered. */
#include "core/core.h"
#include "core/log.h"
#include "core/platform_table.h"
#include "core/text.h"
#include "session/session.h"
#include "session/timers.h"

namespace
{

constexpr u32 c_passMs = 1000;
constexpr const char* c_pchName = "PubSecStackRegisterThread";

/* Loops started so far. The stack may be ended and started again before a loop comes round: the newest one stays. */
u32 s_dwLoops;

/*
 * Set while a loop makes its pass. Were two made at once, one could take a configuration into force while the other
 * still registers with the former. A loop that finds it set tries again after its delay.
 */
u32 s_bInPass;

template <size_t Size> bool IsSameText(const char (&achLeft)[Size], const char (&achRight)[Size])
{
    const u32 dwLength = PubSecTextLength(achLeft, Size);
    return dwLength == PubSecTextLength(achRight, Size) && AppMemcmp(achLeft, achRight, dwLength) == 0;
}

/* What makes the server see another device, or the device another server. */
bool IsSameIdentity(const TPubSecPlatRegInfo& tLeft, const TPubSecPlatRegInfo& tRight)
{
    return IsSameText(tLeft.achDeviceID, tRight.achDeviceID) && IsSameText(tLeft.achServerIP, tRight.achServerIP) &&
           tLeft.dwServerPort == tRight.dwServerPort && IsSameText(tLeft.achUserName, tRight.achUserName) &&
           IsSameText(tLeft.achPassword, tRight.achPassword) && tLeft.dwHttpsEnable == tRight.dwHttpsEnable &&
           tLeft.dwEnable == tRight.dwEnable;
}

/* Takes the pending record into force, whole. */
void TakeIntoForce(u32 dwPlatform)
{
    const bool bLocked = PubSecLockTake();
    PubSecTableWrite(dwPlatform, &g_atPubSecStackGlobalCommon_New[dwPlatform]);
    PubSecLockGive(bLocked);
}

/* A changed period alone re-arms its timer; a timer that was never armed stays so. */
void ApplyPeriods(u32 dwPlatform, const TPubSecPlatRegInfo& tInForce, const TPubSecPlatRegInfo& tPending)
{
    if (tPending.dwKeepaliveSec != tInForce.dwKeepaliveSec && PubSecTimerOf(c_tKeepaliveTimer, dwPlatform) != nullptr)
    {
        PubSecTimerArm(c_tKeepaliveTimer, dwPlatform, PUBSEC_TIMER_START_MS, c_pchName);
    }
    if (tPending.dwSyncTimeMin != tInForce.dwSyncTimeMin && PubSecTimerOf(c_tSyncTimeTimer, dwPlatform) != nullptr)
    {
        if (tPending.dwSyncTimeMin != 0)
        {
            PubSecTimerArm(c_tSyncTimeTimer, dwPlatform, PUBSEC_TIMER_START_MS, c_pchName);
        }
        else
        {
            PubSecTimerClear(c_tSyncTimeTimer, dwPlatform);
        }
    }
}

void Leave(u32 dwPlatform)
{
    PubSecTimerClear(c_tKeepaliveTimer, dwPlatform);
    PubSecTimerClear(c_tSyncTimeTimer, dwPlatform);
    PUBSEC_INF_AS(c_pchName, "config change,start unreg.");
    if (PubSecPostUserUnRegisterMsg(dwPlatform) != PUBSEC_OK)
    {
        PUBSEC_ERR_AS(c_pchName, "UnRegister failed!");
    }
    else
    {
        PUBSEC_INF_AS(c_pchName, "UnRegister Success!");
    }
    TakeIntoForce(dwPlatform);
}

/* A registered platform: only its periods may change under it; anything else ends the session. */
void FollowChange(u32 dwPlatform)
{
    TPubSecPlatRegInfo tInForce;
    PubSecTableRead(dwPlatform, &tInForce);
    const bool bLocked = PubSecLockTake();
    const TPubSecPlatRegInfo tPending = g_atPubSecStackGlobalCommon_New[dwPlatform];
    const bool bSameServer = IsSameIdentity(tInForce, tPending);
    if (bSameServer &&
        (tPending.dwKeepaliveSec != tInForce.dwKeepaliveSec || tPending.dwSyncTimeMin != tInForce.dwSyncTimeMin))
    {
        TPubSecPlatRegInfo tNext = tInForce;
        tNext.dwKeepaliveSec = tPending.dwKeepaliveSec;
        tNext.dwSyncTimeMin = tPending.dwSyncTimeMin;
        PubSecTableWrite(dwPlatform, &tNext);
    }
    PubSecLockGive(bLocked);
    if (bSameServer)
    {
        ApplyPeriods(dwPlatform, tInForce, tPending);
    }
    else
    {
        Leave(dwPlatform);
    }
}

/* An unregistered platform: whatever is pending is taken into force. */
void TakePending(u32 dwPlatform)
{
    TPubSecPlatRegInfo tInForce;
    PubSecTableRead(dwPlatform, &tInForce);
    const bool bLocked = PubSecLockTake();
    if (AppMemcmp(&tInForce, &g_atPubSecStackGlobalCommon_New[dwPlatform], sizeof(tInForce)) != 0)
    {
        PubSecTableWrite(dwPlatform, &g_atPubSecStackGlobalCommon_New[dwPlatform]);
    }
    PubSecLockGive(bLocked);
}

void Register(u32 dwPlatform)
{
    TPubSecPlatRegInfo tInfo;
    PubSecTableRead(dwPlatform, &tInfo);
    if (PubSecIsRegistered(dwPlatform) || tInfo.dwEnable == 0)
    {
        return;
    }
    PubSecStackPostRegister(static_cast<s32>(dwPlatform), &tInfo);
    if (!PubSecIsRegistered(dwPlatform))
    {
        return;
    }
    PubSecStore(g_adwPubSecStackPlatIndex[dwPlatform], dwPlatform);
    PubSecTimerArm(c_tKeepaliveTimer, dwPlatform, PUBSEC_TIMER_START_MS, c_pchName);
    if (tInfo.dwSyncTimeMin != 0)
    {
        PubSecTimerArm(c_tSyncTimeTimer, dwPlatform, PUBSEC_TIMER_START_MS, c_pchName);
    }
    else
    {
        /* One that a direct unregistration has left. */
        PubSecTimerClear(c_tSyncTimeTimer, dwPlatform);
    }
}

void Pass(u32 dwPlatform)
{
    if (PubSecIsRegistered(dwPlatform))
    {
        FollowChange(dwPlatform);
    }
    if (!PubSecIsRegistered(dwPlatform))
    {
        TakePending(dwPlatform);
    }
    Register(dwPlatform);
}

void PassAll()
{
    for (u32 dwPlatform = 0; dwPlatform < PUBSEC_PLATFORM_NUM; dwPlatform++)
    {
        Pass(dwPlatform);
    }
}

} // namespace

void PubSecStackRegisterThread(TAppTaskHandle, u32, const void*)
{
    const u32 dwOwn = __atomic_add_fetch(&s_dwLoops, 1u, __ATOMIC_ACQ_REL);
    while (PubSecLoad(g_bPubSecInit) != 0 && PubSecLoad(s_dwLoops) == dwOwn)
    {
        if (PubSecReplace(s_bInPass, 0u, 1u))
        {
            PassAll();
            PubSecStore(s_bInPass, 0u);
        }
        AppDelay(c_passMs);
    }
}
