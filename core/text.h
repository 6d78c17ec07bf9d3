/* SPDX-License-Identifier: Apache-2.0 */
/* Texts in fields of fixed size: what lacks its terminator ends with its field. */
#ifndef PUBSEC_CORE_TEXT_H
#define PUBSEC_CORE_TEXT_H

#include <string.h>

#include <pubsecplatform.h>

/* Only this many characters of a device identifier are ever sent. */
constexpr u32 PUBSEC_DEVICE_ID_LEN = 20;

/* Characters in a field of dwCapacity bytes. */
inline u32 PubSecTextLength(const char* pchText, u32 dwCapacity)
{
    const void* pvEnd = memchr(pchText, '\0', dwCapacity);
    return pvEnd == nullptr ? dwCapacity : static_cast<u32>(static_cast<const char*>(pvEnd) - pchText);
}

/*
 * Copies what fits of a text that ends at its terminator or after dwSrcCapacity bytes; the copy is terminated. A
 * destination has a byte at least.
 */
void PubSecCopyText(char* pchDest, u32 dwDestSize, const char* pchSrc, u32 dwSrcCapacity);

template <size_t DestSize, size_t SrcSize>
void PubSecCopyField(char (&achDest)[DestSize], const char (&achSrc)[SrcSize])
{
    PubSecCopyText(achDest, DestSize, achSrc, SrcSize);
}

#endif
