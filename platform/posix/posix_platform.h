/* SPDX-License-Identifier: Apache-2.0 */
/* What the files of the POSIX platform share. */
#ifndef PUBSEC_POSIX_PLATFORM_H
#define PUBSEC_POSIX_PLATFORM_H

#include <pthread.h>
#include <signal.h>
#include <time.h>

#include <pubsecplatform.h>

/*
 * Every function of the host interface is defined weak: a program's own definition of any single one takes its place,
 * and the rest still comes from the archive. It is visible even so, because the shared library of the stack binds to
 * it.
 */
#define PLATFORM_FUNCTION __attribute__((weak, visibility("default")))

namespace posix_platform
{

/* Failures of the functions whose success is 0. The numbers are only ever printed. */
enum Failure : u32
{
    kDone = 0,
    kBadArgument = 1,
    kNoMemory = 2,
    kFull = 3,
    kTimedOut = 4,
    kNotOwner = 5,
    kStopping = 6,
    kNoThread = 7
};

constexpr u64 kNanosecondsPerMillisecond = 1000000u;
constexpr u64 kNanosecondsPerSecond = 1000000000u;

inline u64 monotonicNanoseconds()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<u64>(now.tv_sec) * kNanosecondsPerSecond + static_cast<u64>(now.tv_nsec);
}

inline timespec toTimespec(u64 nanoseconds)
{
    timespec result;
    result.tv_sec = static_cast<time_t>(nanoseconds / kNanosecondsPerSecond);
    result.tv_nsec = static_cast<long>(nanoseconds % kNanosecondsPerSecond);
    return result;
}

/* Makes a condition whose timed waits follow the monotonic clock. */
inline bool initMonotonicCondition(pthread_cond_t* condition)
{
    pthread_condattr_t attributes;
    if (pthread_condattr_init(&attributes) != 0)
    {
        return false;
    }
    const bool made =
        pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC) == 0 && pthread_cond_init(condition, &attributes) == 0;
    pthread_condattr_destroy(&attributes);
    return made;
}

class MutexGuard
{
  public:
    explicit MutexGuard(pthread_mutex_t& mutex) : mutex_(mutex)
    {
        pthread_mutex_lock(&mutex_);
    }
    ~MutexGuard()
    {
        pthread_mutex_unlock(&mutex_);
    }
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;

  private:
    pthread_mutex_t& mutex_;
};

/* Starts a thread that no signal is delivered to: signals belong to the threads of the program. */
inline bool startThread(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const bool started = pthread_create(thread, attributes, run, argument) == 0;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return started;
}

/* Releases a block and counts it as given back; pool.cpp. */
void releaseBlock(void* block);

} // namespace posix_platform

#endif
