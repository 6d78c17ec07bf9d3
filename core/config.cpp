/* SPDX-License-Identifier: Apache-2.0 */
/* What the host configures: platforms, callbacks, the log level. */
#include <pubsecstack/config.h>

#include "core/core.h"
#include "core/log.h"
#include "core/state.h"

u32 PubSecStackUpdateRegisterInfo(s32 nPlatform, const TPubSecPlatRegInfo* ptInfo)
{
    const u32 dwPlatform = static_cast<u32>(nPlatform);
    if (PubSecIsPlatform(dwPlatform) && ptInfo != nullptr)
    {
        const bool bLocked = PubSecLockTake();
        AppMemcpy(&g_atPubSecStackGlobalCommon_New[dwPlatform], ptInfo, sizeof(*ptInfo));
        PubSecLockGive(bLocked);
    }
    return PUBSEC_OK;
}

void PubSecStackRegisterCB(PFPubSecRegStatus pfCallback)
{
    if (pfCallback == nullptr)
    {
        PUBSEC_ERR("pfRegStatus is NULL!");
        return;
    }
    for (PFPubSecRegStatus& pfSlot : g_pfRegStatus)
    {
        if (PubSecReplace(pfSlot, PFPubSecRegStatus{nullptr}, pfCallback))
        {
            break;
        }
    }
    PUBSEC_INF("RegStatus CB!");
}

u32 PubSecGetRegisterStatus(s32 nPlatform)
{
    const u32 dwPlatform = static_cast<u32>(nPlatform);
    return PubSecIsPlatform(dwPlatform) ? PubSecLoad(g_bPubSecRegStatus[dwPlatform]) : 0;
}

void PubSecNotifyRegStatus(u32 dwPlatform, u32 dwStatus, const TPubSecPlatRegInfo* ptInfo)
{
    for (const PFPubSecRegStatus& pfSlot : g_pfRegStatus)
    {
        const PFPubSecRegStatus pfCallback = PubSecLoad(pfSlot);
        if (pfCallback != nullptr)
        {
            pfCallback(dwPlatform, dwStatus, ptInfo);
        }
    }
}

s32 _SetPubSecStaLogLvl(s32 nLevel)
{
    /* Level 4 is taken although it is not advertised; it prints what level 3 prints. */
    if (nLevel >= 0 && nLevel <= 4)
    {
        PubSecStore(g_ePubSecStackLogLevel, nLevel);
        return nLevel;
    }
    const u32 dwLevel = PubSecLoad(g_ePubSecStackLogLevel);
    PUBSEC_ERR("cur level %d, valid range [%d, %d]", static_cast<s32>(dwLevel), 0, 3);
    return 1;
}
