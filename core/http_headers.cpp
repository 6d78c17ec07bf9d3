/* SPDX-License-Identifier: Apache-2.0 */
/* The request header lists. */
#include "core/http.h"
#include "core/platform_table.h"
#include "core/text.h"

namespace
{

/* The first line is sent as it stands: a header named "localhost". The last one suppresses the 100-continue handshake.
 */
constexpr const char* c_apchFixedLines[] = {
    "localhost:8080",
    "Accept:application/json,application/VIID+JSON",
    "Content-Type:application/VIID+JSON;charset=UTF-8",
    "Connection:Keep-alive",
    "Expect:",
};

void Append(curl_slist** pptList, const char* pchLine)
{
    curl_slist* ptLonger = curl_slist_append(*pptList, pchLine);
    if (ptLonger != nullptr)
    {
        *pptList = ptLonger;
    }
}

void AppendFixedLines(curl_slist** pptList)
{
    for (const char* pchLine : c_apchFixedLines)
    {
        Append(pptList, pchLine);
    }
}

void AppendIdentity(curl_slist** pptList, const char* pchDeviceID)
{
    char achLine[64];
    AppSnprintf(achLine, sizeof(achLine), "User-Identify:%.*s", static_cast<int>(PUBSEC_DEVICE_ID_LEN), pchDeviceID);
    Append(pptList, achLine);
}

void AppendPlatformIdentity(curl_slist** pptList, u32 dwPlatform)
{
    TPubSecPlatRegInfo tInfo = {};
    if (PubSecIsPlatform(dwPlatform))
    {
        PubSecTableRead(dwPlatform, &tInfo);
    }
    AppendIdentity(pptList, tInfo.achDeviceID);
}

} // namespace

void _PubSecHttpFillCurlHeadMsgInfo(curl_slist** pptList, CURL*, u32 dwPlatform, const char* pchToken)
{
    AppendFixedLines(pptList);
    if (pchToken != nullptr)
    {
        char achLine[128];
        AppSnprintf(achLine, sizeof(achLine), "token:%s", pchToken);
        Append(pptList, achLine);
    }
    AppendPlatformIdentity(pptList, dwPlatform);
}

void _PubSecHttpFillCurlHeadMsgInfoex(curl_slist** pptList, CURL*, u32 dwPlatform)
{
    AppendFixedLines(pptList);
    AppendPlatformIdentity(pptList, dwPlatform);
}

void _PubSecHttpFillCurlHeadMsgInfoExt1(curl_slist** pptList, CURL*, const char* pchDeviceID)
{
    AppendFixedLines(pptList);
    if (pchDeviceID != nullptr)
    {
        AppendIdentity(pptList, pchDeviceID);
    }
}
