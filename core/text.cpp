/* SPDX-License-Identifier: Apache-2.0 */
#include "core/text.h"

void PubSecCopyText(char* pchDest, u32 dwDestSize, const char* pchSrc, u32 dwSrcCapacity)
{
    const u32 dwLimit = dwDestSize - 1;
    const u32 dwLength = PubSecTextLength(pchSrc, dwSrcCapacity < dwLimit ? dwSrcCapacity : dwLimit);
    AppMemcpy(pchDest, pchSrc, dwLength);
    pchDest[dwLength] = '\0';
}
