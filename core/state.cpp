/* SPDX-License-Identifier: Apache-2.0 */
#include "core/state.h"

TPubSecPlatRegInfo g_atPubSecStackGlobalCommon[PUBSEC_PLATFORM_NUM];
TPubSecPlatRegInfo g_atPubSecStackGlobalCommon_New[PUBSEC_PLATFORM_NUM];
TPubSecFirstRegMess g_tFirstRegMess[PUBSEC_PLATFORM_NUM];
u32 g_bPubSecRegStatus[PUBSEC_PLATFORM_NUM];
u32 g_adwPubSecStackPlatIndex[PUBSEC_PLATFORM_NUM];
TAppTimerHandle g_ahKeepaliveTimer[PUBSEC_PLATFORM_NUM];
TAppTimerHandle g_ahSyncTimeTimer[PUBSEC_PLATFORM_NUM];
u8 abyKeepalivFailTimes[PUBSEC_PLATFORM_NUM];
PFPubSecRegStatus g_pfRegStatus[2];
u32 g_bPubSecInit;
u32 g_bPubSecUnRegFlag;
TAppLockHandle g_hPubSecStackCommonLock;
TAppMemPoolHandle g_hMemPool;
TAppTaskMgrHandle g_hTaskMgr;
TAppTaskHandle g_hAppTaskNoDelay;
TAppTaskHandle g_hAppTaskDelay;
TAppTaskHandle g_hAppTaskRegister;
u32 g_ePubSecStackLogLevel;
const char* g_pchPubSecConfFileDef = "NULL";

namespace
{

/* The host may configure the stack before it starts it, so the lock is there from the moment the library is loaded. */
__attribute__((constructor)) void CreateLock()
{
    PubSecLockMade(g_hPubSecStackCommonLock);
}

} // namespace

TAppLockHandle PubSecLockMade(TAppLockHandle& hSlot)
{
    const TAppLockHandle hLock = PubSecLoad(hSlot);
    if (hLock != nullptr)
    {
        return hLock;
    }
    /* Of two first callers, the slot holds the lock of one; locks cannot be destroyed, so the other's stays unused. */
    PubSecReplace(hSlot, TAppLockHandle{nullptr}, AppLockCreate());
    return PubSecLoad(hSlot);
}

bool PubSecLockTake(TAppLockHandle& hSlot)
{
    const TAppLockHandle hLock = PubSecLockMade(hSlot);
    return hLock != nullptr && AppLockTakeByTime(hLock, 0) == 0;
}

void PubSecLockGive(bool bTaken, TAppLockHandle& hSlot)
{
    if (bTaken)
    {
        AppLockGive(PubSecLoad(hSlot));
    }
}
