/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_BENCH_CLOCKS_H
#define PUBSEC_BENCH_CLOCKS_H

#include <time.h>

namespace bench
{

inline long long nanoseconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return static_cast<long long>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

inline long long wallNanoseconds()
{
    return nanoseconds(CLOCK_MONOTONIC);
}

/* Processor time of the calling thread. */
inline long long threadNanoseconds()
{
    return nanoseconds(CLOCK_THREAD_CPUTIME_ID);
}

/* Processor time of the whole process. */
inline long long processNanoseconds()
{
    return nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
}

} // namespace bench

#endif
