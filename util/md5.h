/* SPDX-License-Identifier: Apache-2.0 */
/* The MD5 message digest of RFC 1321: start, take bytes in any pieces, finish. */
#ifndef PUBSEC_UTIL_MD5_H
#define PUBSEC_UTIL_MD5_H

#include <pubsecstack/types.h>

constexpr size_t PUBSEC_MD5_BLOCK = 64;
constexpr size_t PUBSEC_MD5_LEN = 16;

struct TPubSecMd5
{
    u32 adwState[4];
    u64 qwLength;                  /* bytes taken */
    u8 abyBlock[PUBSEC_MD5_BLOCK]; /* those of them that do not fill a block yet */
};

void PubSecMd5Init(TPubSecMd5* ptMd5);
void PubSecMd5Update(TPubSecMd5* ptMd5, const u8* pbyData, size_t size);
void PubSecMd5Final(TPubSecMd5* ptMd5, u8 (&abyDigest)[PUBSEC_MD5_LEN]);

/* Finishes with 32 lower-case hexadecimal digits and a NUL: 33 bytes. */
void PubSecMd5FinalText(TPubSecMd5* ptMd5, char* pchText);

#endif
