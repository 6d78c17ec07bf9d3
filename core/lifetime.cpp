/* SPDX-License-Identifier: Apache-2.0 */
/* Start and end of the stack. */
#include "core/core.h"
#include "core/log.h"
#include "core/state.h"

namespace
{

/* AppBaseInit says this when another library of the host got there first. */
constexpr u32 c_baseInitedBefore = 102;
constexpr u32 c_taskCapacity = 32;
constexpr u32 c_taskQueueSize = 1024;
constexpr u32 c_taskStackSize = 0x100000;

bool StartTask(const char* pchName, TAppTaskHandle& hSlot)
{
    TAppTaskHandle hTask = nullptr;
    const u32 dwRet =
        AppTaskMgrNewTask(PubSecLoad(g_hTaskMgr), pchName, c_taskQueueSize, c_taskStackSize, 0, 0, &hTask);
    if (dwRet != 0)
    {
        PUBSEC_ERR_AS("PubSecStackInit", "AppTaskMgrNewTask failed %d", static_cast<s32>(dwRet));
        return false;
    }
    PubSecStore(hSlot, hTask);
    return true;
}

/* The pool, the task manager and the three tasks. */
bool StartFacilities()
{
    const char* pchName = "PubSecStackInit";
    u32 dwRet = AppBaseInit();
    if (dwRet != 0 && dwRet != c_baseInitedBefore)
    {
        PUBSEC_ERR_AS(pchName, "AppBaseInit err:%d", static_cast<s32>(dwRet));
        return false;
    }
    TAppMemPoolHandle hPool = nullptr;
    dwRet = AppMemPoolCreate(0, 1, 0, &hPool);
    if (dwRet != 0)
    {
        PUBSEC_ERR_AS(pchName, "AppMemPoolCreate failed %d", static_cast<s32>(dwRet));
        return false;
    }
    PubSecStore(g_hMemPool, hPool);
    TAppTaskMgrHandle hTaskMgr = nullptr;
    dwRet = AppTaskMgrCreate(hPool, c_taskCapacity, &hTaskMgr);
    if (dwRet != 0)
    {
        PUBSEC_ERR_AS(pchName, "AppTaskMgrCreate failed %d", static_cast<s32>(dwRet));
        return false;
    }
    PubSecStore(g_hTaskMgr, hTaskMgr);
    return StartTask("pubsecstack_nodelay", g_hAppTaskNoDelay) && StartTask("pubsecstack_delay", g_hAppTaskDelay) &&
           StartTask("pubsecstack_reg", g_hAppTaskRegister);
}

} // namespace

u32 PubSecStackInit(void)
{
    /* Claimed before anything else, so a failed start also has to be ended before the next. */
    if (!PubSecReplace(g_bPubSecInit, 0u, 1u))
    {
        return PUBSEC_ERR_ALREADY_INIT;
    }
    if (!StartFacilities())
    {
        return PUBSEC_ERR_FAILED;
    }
    const u32 dwRet = AppTaskSendEvent(PubSecLoad(g_hAppTaskRegister), 0, PubSecStackRegisterThread, nullptr);
    if (dwRet != 0)
    {
        PUBSEC_ERR("AppTaskSendEvent pubsec_rfid failed %d", static_cast<s32>(dwRet));
        return PUBSEC_ERR_FAILED;
    }
    AppRegCommand("pbsklog", _SetPubSecStaLogLvl, "pubsecstacklog TelLvl StdIoLvl FileLvl");
    return PUBSEC_OK;
}

void PubSecStackUnInit(void)
{
    PubSecStore(g_bPubSecInit, 0u);
}
