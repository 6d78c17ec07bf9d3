/* SPDX-License-Identifier: Apache-2.0 */
/* What kind of address a server text is. */
#include <arpa/inet.h>

#include "core/http.h"
#include "core/log.h"

s32 _PubSecCheckIpAddr(const char* pchText)
{
    u8 abyAddress[sizeof(struct in6_addr)];
    if (pchText == nullptr)
    {
        return PUBSEC_ADDR_NONE;
    }
    if (AppStrcmp(pchText, "255.255.255.255") == 0)
    {
        PUBSEC_ERR("your IP is 255.255.255.255 or IpV6,IP:%s", pchText);
        return PUBSEC_ADDR_IPV4;
    }
    if (AppStrstr(pchText, "::") != nullptr)
    {
        PUBSEC_ERR_RAW("your IP is IpV6,IP:%s", pchText);
        return PUBSEC_ADDR_IPV6;
    }
    const s32 nRet = inet_pton(AF_INET, pchText, abyAddress);
    if (nRet == 1)
    {
        PUBSEC_INF("dwIpAddr:%d ", nRet);
        return PUBSEC_ADDR_IPV4;
    }
    PUBSEC_ERR("Not Ipv4,check Ipv6");
    return inet_pton(AF_INET6, pchText, abyAddress) == 1 ? PUBSEC_ADDR_IPV6 : PUBSEC_ADDR_NONE;
}
