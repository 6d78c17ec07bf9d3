/* SPDX-License-Identifier: Apache-2.0 */
/* Locks, ticks and delays of the POSIX platform. */
#include <gtest/gtest.h>
#include <pubsecplatform.h>

#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/* Everything has to work for constructors of libraries, which run before those of C++ objects. */
TAppLockHandle g_earlyLock;
u32 g_earlyResults[2];

__attribute__((constructor(101))) void useEarly()
{
    g_earlyLock = AppLockCreate();
    g_earlyResults[0] = AppLockTakeByTime(g_earlyLock, 0);
    g_earlyResults[1] = AppLockGive(g_earlyLock);
}

TEST(PosixLocks, WorkBeforeMain)
{
    ASSERT_NE(g_earlyLock, nullptr);
    EXPECT_EQ(g_earlyResults[0], 0u);
    EXPECT_EQ(g_earlyResults[1], 0u);
    EXPECT_EQ(AppLockTakeByTime(g_earlyLock, 0), 0u);
    EXPECT_EQ(AppLockGive(g_earlyLock), 0u);
}

TEST(PosixLocks, OneThreadAtATime)
{
    static TAppLockHandle lock = AppLockCreate();
    long counter = 0;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread)
    {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 2000; ++i)
            {
                ASSERT_EQ(AppLockTakeByTime(lock, thread % 2 == 0 ? 0 : 60000), 0u);
                ++counter;
                ASSERT_EQ(AppLockGive(lock), 0u);
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(counter, 8000);
}

TEST(PosixLocks, ZeroWaitsUntilTheLockIsFree)
{
    static TAppLockHandle lock = AppLockCreate();
    ASSERT_EQ(AppLockTakeByTime(lock, 0), 0u);
    std::atomic<bool> given{false};
    std::thread waiter([&] {
        EXPECT_EQ(AppLockTakeByTime(lock, 0), 0u);
        EXPECT_TRUE(given);
        EXPECT_EQ(AppLockGive(lock), 0u);
    });
    AppDelay(60);
    given = true;
    EXPECT_EQ(AppLockGive(lock), 0u);
    waiter.join();
}

TEST(PosixLocks, AWaitEndsAtItsTime)
{
    static TAppLockHandle lock = AppLockCreate();
    ASSERT_EQ(AppLockTakeByTime(lock, 0), 0u);
    std::thread waiter([] {
        const auto start = steady_clock::now();
        EXPECT_NE(AppLockTakeByTime(lock, 60), 0u);
        EXPECT_GE(steady_clock::now() - start, milliseconds(60));
        EXPECT_NE(AppLockGive(lock), 0u);
    });
    waiter.join();
    EXPECT_EQ(AppLockGive(lock), 0u);
}

TEST(PosixLocks, MisuseIsRefused)
{
    static TAppLockHandle lock = AppLockCreate();
    EXPECT_NE(AppLockTakeByTime(nullptr, 0), 0u);
    EXPECT_NE(AppLockGive(nullptr), 0u);
    EXPECT_NE(AppLockGive(lock), 0u);
    ASSERT_EQ(AppLockTakeByTime(lock, 0), 0u);
    EXPECT_NE(AppLockTakeByTime(lock, 0), 0u);
    EXPECT_NE(AppLockTakeByTime(lock, 10), 0u);
    EXPECT_EQ(AppLockGive(lock), 0u);
    EXPECT_NE(AppLockGive(lock), 0u);
}

TEST(PosixTicks, ATickIsAMillisecond)
{
    const u32 start = AppGetTick();
    const auto before = steady_clock::now();
    AppDelay(50);
    const u32 elapsed = AppConvertTickToMS(AppTickDiff(start, AppGetTick()));
    const auto bound = std::chrono::duration_cast<milliseconds>(steady_clock::now() - before).count() + 1;
    EXPECT_GE(elapsed, 49u); /* both ends are cut to whole ticks */
    EXPECT_LE(elapsed, static_cast<u32>(bound));
}

TEST(PosixTicks, ADifferenceCrossesTheWrap)
{
    EXPECT_EQ(AppTickDiff(10, 25), 15u);
    EXPECT_EQ(AppTickDiff(0xFFFFFFF0u, 0x10u), 0x20u);
    EXPECT_EQ(AppConvertTickToMS(30000), 30000u);
}

TEST(PosixTicks, ADelayGoesOnAfterASignal)
{
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &before);
    std::atomic<bool> started{false};
    milliseconds took{0};
    std::thread sleeper([&] {
        const auto start = steady_clock::now();
        started = true;
        AppDelay(100);
        took = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
    });
    while (!started)
    {
        std::this_thread::yield();
    }
    for (int i = 0; i < 3; ++i)
    {
        std::this_thread::sleep_for(milliseconds(10));
        pthread_kill(sleeper.native_handle(), SIGUSR1);
    }
    sleeper.join();
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_GE(took.count(), 100);
}

struct BrokenDown
{
    u32 seconds;
    TAppTime time;
};

TEST(PosixTicks, SecondsAreBrokenDown)
{
    const BrokenDown cases[] = {
        {0, {1970, 1, 1, 0, 0, 0}},
        {86399, {1970, 1, 1, 23, 59, 59}},
        {68169600, {1972, 2, 29, 0, 0, 0}},
        {951782399, {2000, 2, 28, 23, 59, 59}},
        {951868800, {2000, 3, 1, 0, 0, 0}},
        {1000000000, {2001, 9, 9, 1, 46, 40}},
        {1709251199, {2024, 2, 29, 23, 59, 59}},
        {1735689599, {2024, 12, 31, 23, 59, 59}},
        {2147483648, {2038, 1, 19, 3, 14, 8}},
        {4107542400, {2100, 3, 1, 0, 0, 0}}, /* 2100 has no leap day */
        {4294967295, {2106, 2, 7, 6, 28, 15}},
    };
    for (const BrokenDown& expected : cases)
    {
        SCOPED_TRACE(expected.seconds);
        TAppTime time = {};
        AppConvertU32ToTime(expected.seconds, &time);
        EXPECT_EQ(time.wYear, expected.time.wYear);
        EXPECT_EQ(time.byMonth, expected.time.byMonth);
        EXPECT_EQ(time.byDay, expected.time.byDay);
        EXPECT_EQ(time.byHour, expected.time.byHour);
        EXPECT_EQ(time.byMinute, expected.time.byMinute);
        EXPECT_EQ(time.bySecond, expected.time.bySecond);
    }
    AppConvertU32ToTime(0, nullptr);
}

} // namespace
