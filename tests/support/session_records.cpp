/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/session_records.h"

#include <cstring>

#include "core/state.h"

TPubSecPlatRegInfo recordFor(u16 port)
{
    TPubSecPlatRegInfo info = {};
    info.dwEnable = 1;
    setText(info.achDeviceID, kDevice);
    setText(info.achServerIP, "127.0.0.1");
    info.dwServerPort = port;
    setText(info.achUserName, "admin");
    setText(info.achPassword, "viewlib");
    info.dwKeepaliveSec = 60;
    return info;
}

TPubSecRegParam paramFor(u16 port)
{
    TPubSecRegParam param = {};
    setText(param.achDeviceID, kDevice);
    setText(param.achServerIP, "127.0.0.1");
    param.dwServerPort = port;
    setText(param.achUserName, "admin");
    setText(param.achPassword, "viewlib");
    return param;
}

bool sameRecord(const TPubSecPlatRegInfo& left, const TPubSecPlatRegInfo& right)
{
    return std::memcmp(&left, &right, sizeof(left)) == 0;
}

void resetStack()
{
    for (u32 platform = 0; platform < PUBSEC_PLATFORM_NUM; ++platform)
    {
        g_atPubSecStackGlobalCommon[platform] = {};
        g_atPubSecStackGlobalCommon_New[platform] = {};
        g_tFirstRegMess[platform] = {};
        g_bPubSecRegStatus[platform] = 0;
        g_adwPubSecStackPlatIndex[platform] = 0;
        g_ahKeepaliveTimer[platform] = nullptr;
        g_ahSyncTimeTimer[platform] = nullptr;
        abyKeepalivFailTimes[platform] = 0;
        g_pfRegStatus[platform] = nullptr;
    }
    g_bPubSecInit = 0;
    g_ePubSecStackLogLevel = 0;
}
