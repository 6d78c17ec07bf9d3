/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/helpers.h>

/* With this many bytes the length of the text still fits an s32, in every step of its computation. */
constexpr u32 PUBSEC_BASE64_MAX_SOURCE = 0x3FFFFFFE;

static constexpr char c_achAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/* Character dwIndex of the four that stand for 24 bits. */
static inline char Digit(u32 dwBits, u32 dwIndex)
{
    return c_achAlphabet[dwBits >> (18 - 6 * dwIndex) & 63];
}

char* xt_base64_encode(char* pchDst, s32 nDstLen, const u8* pbySrc, u32 dwSrcLen)
{
    if (dwSrcLen > PUBSEC_BASE64_MAX_SOURCE || nDstLen < static_cast<s32>(PUBSEC_BASE64_SIZE(dwSrcLen)) ||
        pchDst == nullptr || (pbySrc == nullptr && dwSrcLen != 0))
    {
        return nullptr;
    }
    char* pchOut = pchDst;
    u32 dwLeft = dwSrcLen;
    for (; dwLeft >= 3; dwLeft -= 3, pbySrc += 3, pchOut += 4)
    {
        const u32 dwBits = static_cast<u32>(pbySrc[0]) << 16 | static_cast<u32>(pbySrc[1]) << 8 | pbySrc[2];
        pchOut[0] = Digit(dwBits, 0);
        pchOut[1] = Digit(dwBits, 1);
        pchOut[2] = Digit(dwBits, 2);
        pchOut[3] = Digit(dwBits, 3);
    }
    if (dwLeft != 0)
    {
        const u32 dwBits = static_cast<u32>(pbySrc[0]) << 16 | (dwLeft == 2 ? static_cast<u32>(pbySrc[1]) << 8 : 0);
        pchOut[0] = Digit(dwBits, 0);
        pchOut[1] = Digit(dwBits, 1);
        pchOut[2] = dwLeft == 2 ? Digit(dwBits, 2) : '=';
        pchOut[3] = '=';
        pchOut += 4;
    }
    *pchOut = '\0';
    return pchDst;
}

u32 PubSecStackBase64Encode(const u8* pbySrc, u32 dwSrcLen, char* pchDst, u32 dwDstLen)
{
    if (pbySrc == nullptr)
    {
        return PUBSEC_ERR_FAILED;
    }
    /* A length of 2^31 or more turns negative here and is refused as too small. */
    const char* pchText = xt_base64_encode(pchDst, static_cast<s32>(dwDstLen), pbySrc, dwSrcLen);
    return pchText == nullptr ? PUBSEC_ERR_FAILED : PUBSEC_OK;
}
