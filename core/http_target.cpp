/* SPDX-License-Identifier: Apache-2.0 */
/* Who is addressed, and the URL form. */
#include "core/http.h"
#include "core/platform_table.h"
#include "core/text.h"

static_assert(offsetof(TPubSecPlatRegInfo, achDeviceID) == sizeof(u32) &&
                  offsetof(TPubSecPlatRegInfo, dwSyncTimeMin) ==
                      sizeof(u32) + offsetof(TPubSecRegParam, dwSyncTimeMin) &&
                  sizeof(TPubSecPlatRegInfo) == sizeof(u32) + sizeof(TPubSecRegParam),
              "a platform's record is an enable flag followed by a one-shot record");

namespace
{

void FormatUrl(char* pchUrl, u32 dwSize, const TPubSecTarget* ptTarget, const char* pchHost, const char* pchPath)
{
    AppSnprintf(pchUrl, dwSize, "%s%s%s%d%s", ptTarget->dwHttpsEnable == 1 ? "https://" : "http://", pchHost, ":",
                static_cast<s32>(ptTarget->dwServerPort), pchPath);
}

} // namespace

void PubSecTargetOf(const TPubSecRegParam* ptParam, TPubSecTarget* ptTarget)
{
    PubSecCopyField(ptTarget->achDeviceID, ptParam->achDeviceID);
    PubSecCopyField(ptTarget->achServerIP, ptParam->achServerIP);
    PubSecCopyField(ptTarget->achUserName, ptParam->achUserName);
    PubSecCopyField(ptTarget->achPassword, ptParam->achPassword);
    ptTarget->dwServerPort = ptParam->dwServerPort;
    ptTarget->dwHttpsEnable = ptParam->dwHttpsEnable;
}

void PubSecTargetOfInfo(const TPubSecPlatRegInfo* ptInfo, TPubSecTarget* ptTarget)
{
    TPubSecRegParam tParam;
    AppMemcpy(&tParam, reinterpret_cast<const u8*>(ptInfo) + sizeof(u32), sizeof(tParam));
    PubSecTargetOf(&tParam, ptTarget);
}

u32 PubSecTargetInForce(u32 dwPlatform, TPubSecTarget* ptTarget)
{
    TPubSecPlatRegInfo tInfo;
    const u32 dwVersion = PubSecTableRead(dwPlatform, &tInfo);
    PubSecTargetOfInfo(&tInfo, ptTarget);
    return dwVersion;
}

void PubSecFormatUrl(char* pchUrl, u32 dwSize, const TPubSecTarget* ptTarget, const char* pchPath)
{
    FormatUrl(pchUrl, dwSize, ptTarget, ptTarget->achServerIP, pchPath);
}

void PubSecFormatBracketedUrl(char* pchUrl, u32 dwSize, const TPubSecTarget* ptTarget, const char* pchPath)
{
    char achHost[PUBSEC_ADDR_SIZE + 1];
    PubSecBracketHost(ptTarget->achServerIP, achHost, sizeof(achHost));
    FormatUrl(pchUrl, dwSize, ptTarget, achHost, pchPath);
}

void PubSecBracketHost(const char* pchAddress, char* pchOut, u32 dwSize)
{
    const bool bBrackets = _PubSecCheckIpAddr(pchAddress) == PUBSEC_ADDR_IPV6;
    AppSnprintf(pchOut, dwSize, bBrackets ? "[%s]" : "%s", pchAddress);
}
