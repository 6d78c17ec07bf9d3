/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's tick in real time, for the watchdog of uploads: the fake platform's own clock moves in AppDelay alone. Half
 * a minute takes a third of a second unless REAL_TIMEOUTS are wanted.
 */
#include <chrono>

#include <pubsecplatform.h>

namespace
{

#ifdef REAL_TIMEOUTS
constexpr u32 kHurry = 1;
#else
constexpr u32 kHurry = 100;
#endif

} // namespace

extern "C" u32 AppGetTick(void)
{
    using namespace std::chrono;
    const auto now = duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
    return static_cast<u32>(now.count()) * kHurry;
}
