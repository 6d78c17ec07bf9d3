/* SPDX-License-Identifier: Apache-2.0 */
/* Address and port out of a redirect target of the form scheme://host:port/VIID... */
#include <string.h>

#include "core/http.h"
#include "core/log.h"
#include "core/text.h"

namespace
{

/* Past the user information in the authority, if there is any: libcurl puts the request's credentials there. */
const char* SkipUserInfo(const char* pchAuthority)
{
    const size_t length = strcspn(pchAuthority, "/?#");
    for (size_t at = length; at > 0; at--)
    {
        if (pchAuthority[at - 1] == '@')
        {
            return pchAuthority + at;
        }
    }
    return pchAuthority;
}

/* As atoi, but a number that does not fit stays the largest that does. */
u32 PortValue(const char* pchText)
{
    pchText += strspn(pchText, " \t\n\v\f\r");
    const bool bMinus = *pchText == '-';
    if (*pchText == '-' || *pchText == '+')
    {
        pchText++;
    }
    u64 qwValue = 0;
    for (; *pchText >= '0' && *pchText <= '9' && qwValue <= UINT32_MAX; pchText++)
    {
        qwValue = qwValue * 10 + static_cast<u64>(*pchText - '0');
    }
    const u32 dwValue = qwValue > UINT32_MAX ? UINT32_MAX : static_cast<u32>(qwValue);
    return bMinus ? 0u - dwValue : dwValue;
}

} // namespace

void PubSecStripUserInfo(const char* pchUrl, char* pchOut, u32 dwSize)
{
    const char* pchMark = AppStrstr(pchUrl, "//");
    const char* pchAuthority = pchMark == nullptr ? pchUrl : pchMark + 2;
    AppSnprintf(pchOut, dwSize, "%.*s%s", static_cast<int>(pchAuthority - pchUrl), pchUrl, SkipUserInfo(pchAuthority));
}

u32 PubSecStackGetLocation(const char* pchUrl, char* pchIp, u32* pdwPort)
{
    char achWork[PUBSEC_ADDR_SIZE] = {};
    const char* pchMark = pchUrl == nullptr ? nullptr : AppStrstr(pchUrl, "//");
    if (pchMark == nullptr)
    {
        PUBSEC_ERR("NO http:// ");
        return 0;
    }
    const char* pchEnd = AppStrstr(pchMark + 2, "/VIID");
    if (pchEnd == nullptr)
    {
        PUBSEC_ERR("NO /VIID ");
        return 0;
    }
    if (pchEnd == pchMark + 2)
    {
        PUBSEC_ERR("Location Url Err ");
        return 0;
    }
    const char* pchHost = SkipUserInfo(pchMark + 2);
    const size_t length = static_cast<size_t>(pchEnd - pchHost);
    if (length >= sizeof(achWork))
    {
        PUBSEC_ERR("Location of %zu characters is longer than %zu", length, sizeof(achWork) - 1);
        return 0;
    }
    AppMemcpy(achWork, pchHost, length);
    char* pchColon = AppStrchr(achWork, ':');
    if (pchColon == nullptr)
    {
        PUBSEC_ERR("NO port");
        return 0;
    }
    const u32 dwPort = PortValue(pchColon + 1);
    if (dwPort != 0)
    {
        *pdwPort = dwPort;
        PUBSEC_INF("Port:%d", static_cast<s32>(dwPort));
    }
    *pchColon = '\0';
    if (achWork[0] != '\0')
    {
        PubSecCopyText(pchIp, PUBSEC_ADDR_SIZE, achWork, sizeof(achWork));
        PUBSEC_INF("IP:%s", pchIp);
    }
    return 1;
}
