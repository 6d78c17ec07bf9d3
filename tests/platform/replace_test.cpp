/* SPDX-License-Identifier: Apache-2.0 */
/* A program that brings four functions of its own and takes the rest from the POSIX platform. */
#include <gtest/gtest.h>
#include <pubsecplatform_posix.h>

#include <atomic>
#include <cstdio>
#include <string>

static std::string g_line;
static u32 g_delay;
static u32 g_timer;
static u32 g_source;

void TlxPrintf(s32, s32, const char* pchFormat, ...)
{
    char line[100];
    va_list arguments;
    va_start(arguments, pchFormat);
    std::vsnprintf(line, sizeof(line), pchFormat, arguments);
    va_end(arguments);
    g_line = line;
}

void AppDelay(u32 dwMilliseconds)
{
    g_delay = dwMilliseconds;
}

TAppTimerHandle AppTaskSetTimer(TAppTaskHandle, u32 dwMilliseconds, PFAppTimer, const void*)
{
    g_timer = dwMilliseconds;
    return reinterpret_cast<TAppTimerHandle>(static_cast<uintptr_t>(1));
}

u32 NvrSysSetSystemTime(const TNvrSysTime*, u32 dwSource)
{
    g_source = dwSource;
    return 1000;
}

namespace
{

TEST(PosixReplaced, TheProgramsFunctionsAreCalled)
{
    TlxPrintf(1, 0, "%d\n", 3);
    EXPECT_EQ(g_line, "3\n");
    AppDelay(4000000);
    EXPECT_EQ(g_delay, 4000000u);
    EXPECT_NE(AppTaskSetTimer(nullptr, 5, nullptr, nullptr), nullptr);
    EXPECT_EQ(g_timer, 5u);
    const TNvrSysTime time = {2024, 1, 1, 0, 0, 0, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&time, 9), 1000u);
    EXPECT_EQ(g_source, 9u);
}

/* One of each family, and where the family has a replaced function, its neighbours in the same object file. */
TEST(PosixReplaced, TheRestIsThePlatforms)
{
    PosixPlatformSetLogFile(nullptr);
    EXPECT_NE(AppTickDiff(0, AppGetTick()), 0u);
    TNvrSysTime time = {2024, 1, 1, 0, 0, 0, {}};
    EXPECT_EQ(NvrSysTimeSwitch(0, &time), 1000u);
    EXPECT_GT(PosixPlatformDeviceClockMs(), 1600000000000);
    EXPECT_EQ(AppTaskCancelTimer(reinterpret_cast<TAppTimerHandle>(static_cast<uintptr_t>(1))), 0u);

    static std::atomic<bool> ran{false};
    TAppMemPoolHandle pool = nullptr;
    TAppTaskMgrHandle manager = nullptr;
    TAppTaskHandle task = nullptr;
    ASSERT_EQ(AppMemPoolCreate(0, 1, 0, &pool), 0u);
    ASSERT_EQ(AppTaskMgrCreate(pool, 32, &manager), 0u);
    ASSERT_EQ(AppTaskMgrNewTask(manager, "task", 8, 0x100000, 0, 0, &task), 0u);
    ASSERT_EQ(AppTaskSendEvent(
                  task, 0, [](TAppTaskHandle, u32, const void*) { ran = true; }, nullptr),
              0u);
    while (!ran)
    {
    }
    EXPECT_EQ(PosixPlatformStop(), 0u);
    static const TAppLockHandle lock = AppLockCreate();
    EXPECT_EQ(AppLockTakeByTime(lock, 0), 0u);
    EXPECT_EQ(AppLockGive(lock), 0u);
    EXPECT_EQ(AppStrlen("abc"), 3u);
    EXPECT_EQ(AppRegCommand(
                  "c", [](s32 n) { return n; }, ""),
              0u);
}

} // namespace
