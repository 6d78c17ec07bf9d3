/* SPDX-License-Identifier: Apache-2.0 */
#include "util/md5.h"

#include <string.h>

#include <utility>

static constexpr u32 c_adwSine[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391,
};

/* By round: how far the four steps rotate, and which word of the block step n of the round takes (factor * n + start).
 */
static constexpr u32 c_adwShift[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
static constexpr u32 c_adwWordFactor[4] = {1, 5, 3, 7};
static constexpr u32 c_adwWordStart[4] = {0, 1, 5, 0};

/* Compilers make one load of this where the machine is little-endian. */
[[gnu::always_inline]] static inline u32 LoadWord(const u8* pbyData)
{
    return static_cast<u32>(pbyData[0]) | static_cast<u32>(pbyData[1]) << 8 | static_cast<u32>(pbyData[2]) << 16 |
           static_cast<u32>(pbyData[3]) << 24;
}

static void StoreWord(u8* pbyData, u32 dwWord)
{
    for (u32 i = 0; i < 4; i++)
    {
        pbyData[i] = static_cast<u8>(dwWord >> (8 * i));
    }
}

template <u32 Step> [[gnu::always_inline]] static inline void DoStep(u32 (&adwState)[4], const u8* pbyBlock)
{
    constexpr u32 dwRound = Step / 16;
    constexpr size_t wordAt = size_t{4} * ((c_adwWordFactor[dwRound] * Step + c_adwWordStart[dwRound]) % 16);
    constexpr u32 dwShift = c_adwShift[dwRound][Step % 4];
    u32& dwA = adwState[(64 - Step) % 4];
    const u32 dwB = adwState[(65 - Step) % 4];
    const u32 dwC = adwState[(66 - Step) % 4];
    const u32 dwD = adwState[(67 - Step) % 4];

    u32 dwSum = dwA + LoadWord(pbyBlock + wordAt) + c_adwSine[Step];
    if constexpr (dwRound == 0)
    {
        dwSum += dwD ^ (dwB & (dwC ^ dwD));
    }
    else if constexpr (dwRound == 1)
    {
        /* Two sums instead of an "or": the half without the newest word, B, is ready earlier. */
        dwSum += dwC & ~dwD;
        dwSum += dwB & dwD;
    }
    else if constexpr (dwRound == 2)
    {
        dwSum += dwB ^ (dwC ^ dwD);
    }
    else
    {
        dwSum += dwC ^ (dwB | ~dwD);
    }
    dwA = dwB + (dwSum << dwShift | dwSum >> (32 - dwShift));
}

template <u32... Steps>
[[gnu::always_inline]] static inline void DoSteps(u32 (&adwState)[4], const u8* pbyBlock,
                                                  std::integer_sequence<u32, Steps...>)
{
    (DoStep<Steps>(adwState, pbyBlock), ...);
}

static void DigestBlocks(TPubSecMd5* ptMd5, const u8* pbyData, size_t blocks)
{
    u32 adwState[4] = {ptMd5->adwState[0], ptMd5->adwState[1], ptMd5->adwState[2], ptMd5->adwState[3]};
    for (; blocks != 0; blocks--, pbyData += PUBSEC_MD5_BLOCK)
    {
        const u32 adwBefore[4] = {adwState[0], adwState[1], adwState[2], adwState[3]};
        DoSteps(adwState, pbyData, std::make_integer_sequence<u32, 64>());
        for (u32 i = 0; i < 4; i++)
        {
            adwState[i] += adwBefore[i];
        }
    }
    memcpy(ptMd5->adwState, adwState, sizeof(adwState));
}

void PubSecMd5Init(TPubSecMd5* ptMd5)
{
    *ptMd5 = {{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476}, 0, {}};
}

void PubSecMd5Update(TPubSecMd5* ptMd5, const u8* pbyData, size_t size)
{
    if (size == 0)
    {
        return;
    }
    const size_t held = ptMd5->qwLength % PUBSEC_MD5_BLOCK;
    ptMd5->qwLength += size;
    if (held != 0)
    {
        const size_t wanted = PUBSEC_MD5_BLOCK - held;
        const size_t taken = size < wanted ? size : wanted;
        memcpy(ptMd5->abyBlock + held, pbyData, taken);
        if (taken < wanted)
        {
            return;
        }
        DigestBlocks(ptMd5, ptMd5->abyBlock, 1);
        pbyData += taken;
        size -= taken;
    }
    const size_t rest = size % PUBSEC_MD5_BLOCK;
    DigestBlocks(ptMd5, pbyData, size / PUBSEC_MD5_BLOCK);
    memcpy(ptMd5->abyBlock, pbyData + (size - rest), rest);
}

void PubSecMd5Final(TPubSecMd5* ptMd5, u8 (&abyDigest)[PUBSEC_MD5_LEN])
{
    static constexpr u8 c_abyPadding[PUBSEC_MD5_BLOCK] = {0x80};
    constexpr size_t lengthAt = PUBSEC_MD5_BLOCK - 8;

    const u64 qwBits = ptMd5->qwLength * 8;
    u8 abyBits[8];
    StoreWord(abyBits, static_cast<u32>(qwBits));
    StoreWord(abyBits + 4, static_cast<u32>(qwBits >> 32));

    const size_t held = ptMd5->qwLength % PUBSEC_MD5_BLOCK;
    PubSecMd5Update(ptMd5, c_abyPadding, (held < lengthAt ? lengthAt : lengthAt + PUBSEC_MD5_BLOCK) - held);
    PubSecMd5Update(ptMd5, abyBits, sizeof(abyBits));
    for (u32 i = 0; i < 4; i++)
    {
        StoreWord(abyDigest + size_t{4} * i, ptMd5->adwState[i]);
    }
}

void PubSecMd5FinalText(TPubSecMd5* ptMd5, char* pchText)
{
    static constexpr char c_achDigits[] = "0123456789abcdef";

    u8 abyDigest[PUBSEC_MD5_LEN];
    PubSecMd5Final(ptMd5, abyDigest);
    for (const u8 byValue : abyDigest)
    {
        *pchText++ = c_achDigits[byValue >> 4];
        *pchText++ = c_achDigits[byValue & 15];
    }
    *pchText = '\0';
}
