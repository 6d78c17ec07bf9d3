/* SPDX-License-Identifier: Apache-2.0 */
/* Following a redirect, and going back to where it came from. */
#include "session/redirect.h"

#include "core/log.h"
#include "core/platform_table.h"

namespace
{

/* Points the pending record at another address, a whole field; everything else is as in force. */
void PointAt(u32 dwPlatform, const char (&achIp)[PUBSEC_ADDR_SIZE], u32 dwPort)
{
    TPubSecPlatRegInfo tInfo;
    PubSecTableRead(dwPlatform, &tInfo);
    static_assert(sizeof(tInfo.achServerIP) == sizeof(achIp), "the field is copied as it is, terminated or not");
    AppMemcpy(tInfo.achServerIP, achIp, sizeof(achIp));
    tInfo.dwServerPort = dwPort;
    PubSecStackUpdateRegisterInfo(static_cast<s32>(dwPlatform), &tInfo);
}

} // namespace

void PubSecFollowRedirect(u32 dwPlatform, CURL* ptHandle, const char* pchFunction)
{
    char* pchTarget = nullptr;
    char achIp[PUBSEC_ADDR_SIZE] = {};
    u32 dwPort = 0;
    curl_easy_getinfo(ptHandle, CURLINFO_REDIRECT_URL, &pchTarget);
    if (PubSecStackGetLocation(pchTarget, achIp, &dwPort) == 0)
    {
        return;
    }
    char achShown[512];
    PubSecStripUserInfo(pchTarget, achShown, sizeof(achShown));
    PUBSEC_DBG_AS(pchFunction, "http pchLocation=%s.", achShown);

    TPubSecPlatRegInfo tInfo;
    TPubSecFirstRegMess tMemory = {};
    PubSecTableRead(dwPlatform, &tInfo);
    AppMemcpy(tMemory.achFirstIP, tInfo.achServerIP, sizeof(tMemory.achFirstIP));
    tMemory.dwFirstPort = tInfo.dwServerPort;
    PubSecBracketHost(achIp, tMemory.achLocationIP, sizeof(tMemory.achLocationIP));
    tMemory.dwLocationPort = dwPort;
    const bool bLocked = PubSecLockTake();
    g_tFirstRegMess[dwPlatform] = tMemory;
    PubSecLockGive(bLocked);

    PointAt(dwPlatform, achIp, dwPort);
}

void PubSecReturnFromRedirect(u32 dwPlatform)
{
    const bool bLocked = PubSecLockTake();
    const TPubSecFirstRegMess tMemory = g_tFirstRegMess[dwPlatform];
    PubSecLockGive(bLocked);
    if (tMemory.achFirstIP[0] != '\0')
    {
        PointAt(dwPlatform, tMemory.achFirstIP, tMemory.dwFirstPort);
    }
}
