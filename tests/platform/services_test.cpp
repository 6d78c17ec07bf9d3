/* SPDX-License-Identifier: Apache-2.0 */
/* Pool, strings and system service of the POSIX platform. */
#include <gtest/gtest.h>
#include <pubsecplatform_posix.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <thread>

/* Stands in the way of the C library's: no test ever sets the machine's clock. */
static int g_machineClockSets;
static timespec g_machineClockSet;
static int g_machineClockResult;

extern "C" int clock_settime(clockid_t clock, const timespec* time) noexcept
{
    EXPECT_EQ(clock, CLOCK_REALTIME);
    ++g_machineClockSets;
    g_machineClockSet = *time;
    errno = EPERM;
    return g_machineClockResult;
}

namespace
{

/* ---------------------------------------------------------------------------------------------------------- pool */

TEST(PosixPool, CountsWhatIsOutWhicheverWayItComesBack)
{
    TAppMemPoolHandle pool = nullptr;
    ASSERT_EQ(AppMemPoolCreate(0, 1, 0, &pool), 0u);
    ASSERT_NE(pool, nullptr);
    const int64_t blocks = PosixPlatformPoolBlocks();
    const int64_t bytes = PosixPlatformPoolBytes();

    void* first = AppMemPoolMallocEx(pool, 100, "f", 1);
    void* second = AppMemPoolMallocEx(pool, 200, "f", 2);
    ASSERT_NE(first, nullptr);
    std::memset(first, 1, 100);
    std::memset(second, 2, 200);
    EXPECT_EQ(PosixPlatformPoolBlocks(), blocks + 2);
    EXPECT_GE(PosixPlatformPoolBytes(), bytes + 300);

    AppMemPoolFreeEx(nullptr, first, "f", 3);
    EXPECT_EQ(PosixPlatformPoolBlocks(), blocks + 1);
    NvrSrvFree(second, "f", 4);
    EXPECT_EQ(PosixPlatformPoolBlocks(), blocks);
    EXPECT_EQ(PosixPlatformPoolBytes(), bytes);
}

TEST(PosixPool, IsTheProcessHeap)
{
    const int64_t blocks = PosixPlatformPoolBlocks();
    AppMemPoolFreeEx(nullptr, std::malloc(10), "f", 1);
    NvrSrvFree(std::malloc(10), "f", 1);
    EXPECT_EQ(PosixPlatformPoolBlocks(), blocks - 2);
    std::free(AppMemPoolMallocEx(nullptr, 10, "f", 1));
    std::free(AppMemPoolMallocEx(nullptr, 10, "f", 1));
    EXPECT_EQ(PosixPlatformPoolBlocks(), blocks);
}

TEST(PosixPool, NothingAndTooMuch)
{
    const int64_t blocks = PosixPlatformPoolBlocks();
    AppMemPoolFreeEx(nullptr, nullptr, "f", 1);
    NvrSrvFree(nullptr, "f", 1);
    EXPECT_EQ(PosixPlatformPoolBlocks(), blocks);
    void* empty = AppMemPoolMallocEx(nullptr, 0, "f", 1);
    EXPECT_NE(empty, nullptr);
    AppMemPoolFreeEx(nullptr, empty, "f", 1);
    EXPECT_NE(AppMemPoolCreate(0, 1, 0, nullptr), 0u);
}

TEST(PosixPool, CountsFromSeveralThreads)
{
    const int64_t blocks = PosixPlatformPoolBlocks();
    auto work = [] {
        for (int i = 0; i < 2000; ++i)
        {
            AppMemPoolFreeEx(nullptr, AppMemPoolMallocEx(nullptr, 16, "f", 1), "f", 2);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(PosixPlatformPoolBlocks(), blocks);
}

/* ------------------------------------------------------------------------------------------------------- strings */

TEST(PosixStrings, AreThoseOfTheCLibrary)
{
    EXPECT_EQ(AppStrcmp("ab", "ab"), 0);
    EXPECT_LT(AppStrcmp("ab", "ac"), 0);
    EXPECT_GT(AppStrcmp("b", "ab"), 0);

    const char* text = "host:80/path";
    EXPECT_EQ(AppStrstr(text, "80/"), text + 5);
    EXPECT_EQ(AppStrstr(text, "81"), nullptr);
    EXPECT_EQ(AppStrchr(text, ':'), text + 4);
    EXPECT_EQ(AppStrchr(text, '?'), nullptr);
    EXPECT_EQ(AppStrlen(text), 12u);
    EXPECT_EQ(AppStrlen(""), 0u);
}

TEST(PosixStrings, CopiesPadAndDoNotTerminateAFullOne)
{
    char field[6] = {'x', 'x', 'x', 'x', 'x', 'x'};
    EXPECT_EQ(AppStrncpy(field, "ab", 5), field);
    EXPECT_EQ(std::memcmp(field, "ab\0\0\0x", 6), 0);
    AppStrncpy(field, "abcdefgh", 5);
    EXPECT_EQ(std::memcmp(field, "abcdex", 6), 0);
}

TEST(PosixStrings, PrintingIsBounded)
{
    char text[6] = "";
    EXPECT_EQ(AppSnprintf(text, sizeof(text), "%s-%05u", "a", 42u), 7);
    EXPECT_STREQ(text, "a-000");
}

TEST(PosixStrings, Memory)
{
    char left[4] = {1, 2, 3, 4};
    char right[4] = {0, 0, 0, 9};
    EXPECT_EQ(AppMemcpy(right, left, 3), right);
    EXPECT_EQ(AppMemcmp(left, right, 3), 0);
    EXPECT_LT(AppMemcmp(left, right, 4), 0);
    AppMemzero(left, 2);
    EXPECT_EQ(std::memcmp(left, "\0\0\3\4", 4), 0);
    AppMemcpy(nullptr, nullptr, 0);
    EXPECT_EQ(AppMemcmp(nullptr, nullptr, 0), 0);
    AppMemzero(nullptr, 0);
}

/* ------------------------------------------------------------------------------------------------ system service */

std::string text(const TNvrSysTime& time)
{
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%04u-%02u-%02u %02u:%02u:%02u", time.wYear, time.byMonth, time.byDay,
                  time.byHour, time.byMinute, time.bySecond);
    return buffer;
}

class PosixClock : public testing::Test
{
  protected:
    void SetUp() override
    {
        g_machineClockSets = 0;
        g_machineClockResult = 0;
        setZone("UTC0");
    }

    void TearDown() override
    {
        PosixPlatformAllowMachineClock(0);
        setZone("UTC0");
    }

    static void setZone(const char* zone)
    {
        setenv("TZ", zone, 1);
        tzset();
    }

    /* Seconds since 1970 of the device's clock. */
    static int64_t deviceSeconds()
    {
        return PosixPlatformDeviceClockMs() / 1000;
    }

    /* The clock goes on while a test looks at it. */
    static void expectAbout(int64_t seconds)
    {
        EXPECT_GE(deviceSeconds(), seconds);
        EXPECT_LE(deviceSeconds(), seconds + 5);
    }
};

TEST_F(PosixClock, SettingKeepsAnOffsetAndLeavesTheMachineAlone)
{
    const std::time_t machine = std::time(nullptr);
    const TNvrSysTime time = {2024, 2, 29, 23, 59, 10, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&time, 8), 1000u);
    expectAbout(1709251150);
    TNvrSysTime shown;
    std::memset(&shown, 0xFF, sizeof(shown));
    PosixPlatformDeviceTime(&shown);
    EXPECT_EQ(text(shown).substr(0, 17), "2024-02-29 23:59:");
    EXPECT_EQ(std::memcmp(shown.abyReserved, "\0\0\0\0\0\0\0\0\0\0\0\0\0", 13), 0);
    EXPECT_EQ(g_machineClockSets, 0);
    EXPECT_LT(std::time(nullptr) - machine, 5);
}

TEST_F(PosixClock, TheDeviceClockGoesOn)
{
    const TNvrSysTime time = {2024, 2, 29, 23, 59, 59, {}};
    ASSERT_EQ(NvrSysSetSystemTime(&time, 9), 1000u);
    const int64_t before = PosixPlatformDeviceClockMs();
    AppDelay(50);
    const int64_t passed = PosixPlatformDeviceClockMs() - before;
    EXPECT_GE(passed, 49);
    EXPECT_LT(passed, 5000);
}

TEST_F(PosixClock, FieldsThatAreNoTimeCarryOver)
{
    const TNvrSysTime leapSecond = {2024, 2, 29, 23, 59, 60, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&leapSecond, 8), 1000u);
    expectAbout(1709251200); /* 2024-03-01 00:00:00 */
    const TNvrSysTime nothing = {2024, 0, 0, 0, 0, 0, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&nothing, 8), 1000u);
    expectAbout(1701302400); /* 2023-11-30 00:00:00 */
    const TNvrSysTime wild = {2024, 13, 32, 25, 61, 61, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&wild, 8), 1000u);
    expectAbout(1738461721); /* 2025-02-02 02:02:01 */
    const TNvrSysTime last = {65535, 255, 255, 255, 255, 255, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&last, 8), 1000u);
    const TNvrSysTime beforeEpoch = {1969, 12, 31, 23, 59, 59, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&beforeEpoch, 8), 1000u);
    TNvrSysTime shown;
    PosixPlatformDeviceTime(&shown);
    EXPECT_TRUE(text(shown) == "1969-12-31 23:59:59" || text(shown).substr(0, 17) == "1970-01-01 00:00:")
        << text(shown);
    EXPECT_NE(NvrSysSetSystemTime(nullptr, 8), 1000u);
    PosixPlatformDeviceTime(nullptr);
}

TEST_F(PosixClock, FieldsAreInTheZoneOfTheDevice)
{
    setZone("CST-8");
    const TNvrSysTime time = {2024, 3, 1, 8, 0, 0, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&time, 8), 1000u);
    expectAbout(1709251200); /* 2024-03-01 00:00:00 UTC */
    TNvrSysTime shown;
    PosixPlatformDeviceTime(&shown);
    EXPECT_EQ(text(shown).substr(0, 17), "2024-03-01 08:00:");
}

TEST_F(PosixClock, SetsTheMachineOnlyWhenAllowed)
{
    const TNvrSysTime time = {2024, 3, 1, 0, 0, 0, {}};
    PosixPlatformAllowMachineClock(1);
    EXPECT_EQ(NvrSysSetSystemTime(&time, 8), 1000u);
    EXPECT_EQ(g_machineClockSets, 1);
    EXPECT_EQ(g_machineClockSet.tv_sec, 1709251200);
    PosixPlatformAllowMachineClock(0);
    EXPECT_EQ(NvrSysSetSystemTime(&time, 8), 1000u);
    EXPECT_EQ(g_machineClockSets, 1);
}

TEST_F(PosixClock, ARefusedMachineClockIsAFailure)
{
    const TNvrSysTime before = {2010, 1, 1, 0, 0, 0, {}};
    ASSERT_EQ(NvrSysSetSystemTime(&before, 8), 1000u);
    PosixPlatformAllowMachineClock(1);
    g_machineClockResult = -1;
    const TNvrSysTime time = {2024, 3, 1, 0, 0, 0, {}};
    EXPECT_NE(NvrSysSetSystemTime(&time, 8), 1000u);
    EXPECT_EQ(g_machineClockSets, 1);
    expectAbout(1262304000); /* stays in 2010 */
}

TEST_F(PosixClock, SwitchPassesTheTimeThrough)
{
    TNvrSysTime time = {2024, 2, 29, 23, 59, 60, {}};
    EXPECT_EQ(NvrSysTimeSwitch(0, &time), 1000u);
    EXPECT_EQ(text(time), "2024-02-29 23:59:60");
    EXPECT_NE(NvrSysTimeSwitch(0, nullptr), 1000u);
}

TEST_F(PosixClock, SecondsMoveToTheZoneInMode1Only)
{
    setZone("CST-8");
    u32 seconds = 1709251200;
    EXPECT_EQ(NvrSysTimeSecSwitch(0, &seconds), 1000u);
    EXPECT_EQ(seconds, 1709251200u);
    EXPECT_EQ(NvrSysTimeSecSwitch(2, &seconds), 1000u);
    EXPECT_EQ(seconds, 1709251200u);
    EXPECT_EQ(NvrSysTimeSecSwitch(1, &seconds), 1000u);
    EXPECT_EQ(seconds, 1709280000u);
    setZone("EST5EDT,M3.2.0,M11.1.0");
    u32 winter = 1704067200; /* 2024-01-01, 5 hours behind */
    u32 summer = 1719792000; /* 2024-07-01, 4 hours behind */
    NvrSysTimeSecSwitch(1, &winter);
    NvrSysTimeSecSwitch(1, &summer);
    EXPECT_EQ(winter, 1704049200u);
    EXPECT_EQ(summer, 1719777600u);
    EXPECT_NE(NvrSysTimeSecSwitch(1, nullptr), 1000u);
}

} // namespace
