/* SPDX-License-Identifier: Apache-2.0 */
#include "core/platform_table.h"

/*
 * A sequence counter beside the table: odd while a writer is at work, moved on by two when it is done. The record is
 * copied word by word with atomic accesses, so a reader that races a writer reads defined values, sees the counter move
 * and reads again. The order of the accesses comes from the acquire loads and release stores of the words themselves.
 */
namespace
{

constexpr size_t c_words = sizeof(TPubSecPlatRegInfo) / sizeof(u32);
static_assert(sizeof(TPubSecPlatRegInfo) % sizeof(u32) == 0 && alignof(TPubSecPlatRegInfo) == alignof(u32),
              "the record is copied in words");

/* Words that may be part of any field. */
typedef u32 __attribute__((may_alias)) Word;

constexpr u32 c_roundsInARow = 1000; /* a write takes less than one */

u32 s_adwVersion[PUBSEC_PLATFORM_NUM];

Word* WordsOf(TPubSecPlatRegInfo* ptInfo)
{
    return reinterpret_cast<Word*>(ptInfo);
}

} // namespace

u32 PubSecTableRead(u32 dwPlatform, TPubSecPlatRegInfo* ptInfo)
{
    const Word* pdwFrom = WordsOf(&g_atPubSecStackGlobalCommon[dwPlatform]);
    Word* pdwTo = WordsOf(ptInfo);
    for (u32 dwRound = 1;; dwRound++)
    {
        const u32 dwVersion = PubSecLoad(s_adwVersion[dwPlatform]);
        for (size_t word = 0; word < c_words; word++)
        {
            pdwTo[word] = __atomic_load_n(&pdwFrom[word], __ATOMIC_ACQUIRE);
        }
        if (dwVersion % 2 == 0 && PubSecTableIsAt(dwPlatform, dwVersion))
        {
            return dwVersion;
        }
        /* On a single processor a writer of lower priority has to be let run. */
        if (dwRound % c_roundsInARow == 0)
        {
            AppDelay(1);
        }
    }
}

bool PubSecTableIsAt(u32 dwPlatform, u32 dwVersion)
{
    return PubSecLoad(s_adwVersion[dwPlatform]) == dwVersion;
}

void PubSecTableWrite(u32 dwPlatform, const TPubSecPlatRegInfo* ptInfo)
{
    const Word* pdwFrom = reinterpret_cast<const Word*>(ptInfo);
    Word* pdwTo = WordsOf(&g_atPubSecStackGlobalCommon[dwPlatform]);
    u32 dwVersion = 0;
    do
    {
        dwVersion = PubSecLoad(s_adwVersion[dwPlatform]) & ~1u;
    } while (!PubSecReplace(s_adwVersion[dwPlatform], dwVersion, dwVersion + 1));
    for (size_t word = 0; word < c_words; word++)
    {
        __atomic_store_n(&pdwTo[word], pdwFrom[word], __ATOMIC_RELEASE);
    }
    PubSecStore(s_adwVersion[dwPlatform], dwVersion + 2);
}
