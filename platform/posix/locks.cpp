/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Locks. A mutex guards the owner's word only, a condition wakes who waits for it: so a wait can end by the monotonic
 * clock everywhere, and a wrong give or a second take is refused instead of undefined.
 */
#include "platform/posix/posix_platform.h"

#include <errno.h>
#include <stdlib.h>

using namespace posix_platform;

struct TAppLock
{
    pthread_mutex_t mutex;
    pthread_cond_t given;
    bool taken;
    pthread_t owner; /* meaningful while taken */
};

PLATFORM_FUNCTION TAppLockHandle AppLockCreate(void)
{
    TAppLock* lock = static_cast<TAppLock*>(calloc(1, sizeof(TAppLock)));
    if (lock == nullptr)
    {
        return nullptr;
    }
    if (pthread_mutex_init(&lock->mutex, nullptr) != 0)
    {
        free(lock);
        return nullptr;
    }
    if (!initMonotonicCondition(&lock->given))
    {
        pthread_mutex_destroy(&lock->mutex);
        free(lock);
        return nullptr;
    }
    return lock;
}

PLATFORM_FUNCTION u32 AppLockTakeByTime(TAppLockHandle hLock, u32 dwMilliseconds)
{
    if (hLock == nullptr)
    {
        return kBadArgument;
    }
    const timespec until = toTimespec(monotonicNanoseconds() + dwMilliseconds * kNanosecondsPerMillisecond);
    const pthread_t self = pthread_self();
    MutexGuard guard(hLock->mutex);
    if (hLock->taken && pthread_equal(hLock->owner, self))
    {
        return kNotOwner;
    }
    while (hLock->taken)
    {
        const int result = dwMilliseconds == 0 ? pthread_cond_wait(&hLock->given, &hLock->mutex)
                                               : pthread_cond_timedwait(&hLock->given, &hLock->mutex, &until);
        if (result == ETIMEDOUT && hLock->taken)
        {
            return kTimedOut;
        }
    }
    hLock->taken = true;
    hLock->owner = self;
    return kDone;
}

PLATFORM_FUNCTION u32 AppLockGive(TAppLockHandle hLock)
{
    if (hLock == nullptr)
    {
        return kBadArgument;
    }
    MutexGuard guard(hLock->mutex);
    if (!hLock->taken || !pthread_equal(hLock->owner, pthread_self()))
    {
        return kNotOwner;
    }
    hLock->taken = false;
    pthread_cond_signal(&hLock->given);
    return kDone;
}
