/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Everything that lives for the whole life of the library. The objects are plain; threads reach them as follows:
 *
 * - the pending table under the lock;
 * - the table in force through PubSecTableRead and PubSecTableWrite (core/platform_table.h);
 * - everything else, one word at a time, through PubSecLoad, PubSecStore and PubSecExchange.
 */
#ifndef PUBSEC_CORE_STATE_H
#define PUBSEC_CORE_STATE_H

#include <pubsecplatform.h>
#include <pubsecstack/config.h>

/* What is remembered of a redirect. An empty achFirstIP says that none has been followed. */
typedef struct
{
    char achFirstIP[64]; /* address and port in force when the redirect was followed */
    u32 dwFirstPort;
    char achLocationIP[64]; /* address and port that it named */
    u32 dwLocationPort;
} TPubSecFirstRegMess;

PUBSEC_C_BEGIN

extern TPubSecPlatRegInfo g_atPubSecStackGlobalCommon[PUBSEC_PLATFORM_NUM];     /* configuration in force */
extern TPubSecPlatRegInfo g_atPubSecStackGlobalCommon_New[PUBSEC_PLATFORM_NUM]; /* pending configuration */
extern TPubSecFirstRegMess g_tFirstRegMess[PUBSEC_PLATFORM_NUM];
extern u32 g_bPubSecRegStatus[PUBSEC_PLATFORM_NUM];
extern u32 g_adwPubSecStackPlatIndex[PUBSEC_PLATFORM_NUM]; /* what the timers' contexts point at */
extern TAppTimerHandle g_ahKeepaliveTimer[PUBSEC_PLATFORM_NUM];
extern TAppTimerHandle g_ahSyncTimeTimer[PUBSEC_PLATFORM_NUM];
extern u8 abyKeepalivFailTimes[PUBSEC_PLATFORM_NUM];
extern PFPubSecRegStatus g_pfRegStatus[2];
extern u32 g_bPubSecInit;
extern u32 g_bPubSecUnRegFlag;
extern TAppLockHandle g_hPubSecStackCommonLock; /* guards the two tables; never held across network or callbacks */
extern TAppMemPoolHandle g_hMemPool;
extern TAppTaskMgrHandle g_hTaskMgr;
extern TAppTaskHandle g_hAppTaskNoDelay;
extern TAppTaskHandle g_hAppTaskDelay;
extern TAppTaskHandle g_hAppTaskRegister;
extern u32 g_ePubSecStackLogLevel;
extern const char* g_pchPubSecConfFileDef;

PUBSEC_C_END

template <typename Word> Word PubSecLoad(const Word& tWord)
{
    return __atomic_load_n(&tWord, __ATOMIC_ACQUIRE);
}

template <typename Word, typename Value> void PubSecStore(Word& tWord, Value tValue)
{
    __atomic_store_n(&tWord, static_cast<Word>(tValue), __ATOMIC_RELEASE);
}

template <typename Word, typename Value> Word PubSecExchange(Word& tWord, Value tValue)
{
    return __atomic_exchange_n(&tWord, static_cast<Word>(tValue), __ATOMIC_ACQ_REL);
}

/* Stores tValue where tExpected still stands; says whether it did. */
template <typename Word, typename Value> bool PubSecReplace(Word& tWord, Word tExpected, Value tValue)
{
    return __atomic_compare_exchange_n(&tWord, &tExpected, static_cast<Word>(tValue), false, __ATOMIC_ACQ_REL,
                                       __ATOMIC_ACQUIRE);
}

inline bool PubSecIsPlatform(u32 dwPlatform)
{
    return dwPlatform < PUBSEC_PLATFORM_NUM;
}

inline bool PubSecIsRegistered(u32 dwPlatform)
{
    return PubSecIsPlatform(dwPlatform) && PubSecLoad(g_bPubSecRegStatus[dwPlatform]) != 0;
}

/*
 * The lock of a slot, made here where it does not stand yet: a constructor of the host's may call before the library's
 * own have run.
 */
TAppLockHandle PubSecLockMade(TAppLockHandle& hSlot);

/*
 * Takes a lock, that of the tables unless another is named, and says whether it was taken: only then is it given. A host
 * that cannot take its lock leaves the work unguarded; giving what is not held would harm whoever holds it.
 */
bool PubSecLockTake(TAppLockHandle& hSlot = g_hPubSecStackCommonLock);
void PubSecLockGive(bool bTaken, TAppLockHandle& hSlot = g_hPubSecStackCommonLock);

#endif
