/* SPDX-License-Identifier: Apache-2.0 */
/* Configurations, callbacks, the status, the console command. */
#include <pubsecstack/config.h>

#include <climits>
#include <thread>

#include "core/log.h"
#include "tests/support/stack_test.h"

using fake_platform::Function;
using log_lines::info;
using log_lines::IsError;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

/* Numbers that are no platform. */
const s32 kNoPlatforms[] = {2, 3, 255, 256, INT_MAX, -1, -2, INT_MIN};

class ConfigTest : public StackTest
{
  protected:
    /* Whether everything that a configuration could reach is still empty. */
    static bool nothingIsConfigured()
    {
        static const TPubSecPlatRegInfo empty[PUBSEC_PLATFORM_NUM] = {};
        return std::memcmp(g_atPubSecStackGlobalCommon, empty, sizeof(empty)) == 0 &&
               std::memcmp(g_atPubSecStackGlobalCommon_New, empty, sizeof(empty)) == 0;
    }
};

TEST_F(ConfigTest, AConfigurationIsCopiedWholeIntoThePendingTable)
{
    TPubSecPlatRegInfo whole;
    std::memset(&whole, 0xA5, sizeof(whole));
    EXPECT_EQ(PubSecStackUpdateRegisterInfo(1, &whole), 50u);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon_New[1], &whole, sizeof(whole)), 0);
    const TPubSecPlatRegInfo empty = {};
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon_New[0], &empty, sizeof(empty)), 0);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon[0], &empty, sizeof(empty)), 0);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon[1], &empty, sizeof(empty)), 0);
}

TEST_F(ConfigTest, AConfigurationIsCopiedUnderTheLock)
{
    const TPubSecPlatRegInfo one = stack::configuration("10.0.0.1", 80);
    EXPECT_EQ(PubSecStackUpdateRegisterInfo(0, &one), 50u);
    EXPECT_EQ(fake_platform::lockTakes(), 1u);
    EXPECT_EQ(fake_platform::lockGives(), 1u);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon_New[0], &one, sizeof(one)), 0);
}

TEST_F(ConfigTest, AConfigurationWaitsForTheLock)
{
    const TPubSecPlatRegInfo one = stack::configuration("10.0.0.1", 80);
    ASSERT_EQ(AppLockTakeByTime(g_hPubSecStackCommonLock, 0), 0u);
    std::thread host([&] { PubSecStackUpdateRegisterInfo(0, &one); });
    while (fake_platform::lockTakes() < 2)
    {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(g_atPubSecStackGlobalCommon_New[0].dwServerPort, 0u);
    EXPECT_EQ(AppLockGive(g_hPubSecStackCommonLock), 0u);
    host.join();
    EXPECT_EQ(g_atPubSecStackGlobalCommon_New[0].dwServerPort, 80u);
}

TEST_F(ConfigTest, ALockThatCannotBeTakenIsDoneWithout)
{
    const TPubSecPlatRegInfo one = stack::configuration("10.0.0.1", 80);
    fake_platform::fail(Function::kLockTake, 1);
    EXPECT_EQ(PubSecStackUpdateRegisterInfo(0, &one), 50u);
    EXPECT_EQ(fake_platform::calls(Function::kLockTake), 1u);
    EXPECT_EQ(fake_platform::lockGives(), 0u);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon_New[0], &one, sizeof(one)), 0);
}

/* Where none could be made when the library was loaded, the first call that wants it tries again. */
TEST_F(ConfigTest, ALockThatCouldNotBeMadeIsMadeLater)
{
    const TPubSecPlatRegInfo one = stack::configuration("10.0.0.1", 80);
    static TAppLockHandle madeAtLoad; /* a lock cannot be given back: the new one stays in its place */
    madeAtLoad = g_hPubSecStackCommonLock;
    g_hPubSecStackCommonLock = nullptr;
    fake_platform::fail(Function::kLockCreate, 0);
    EXPECT_EQ(PubSecStackUpdateRegisterInfo(0, &one), 50u);
    EXPECT_EQ(fake_platform::lockTakes(), 0u);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon_New[0], &one, sizeof(one)), 0);
    EXPECT_EQ(g_hPubSecStackCommonLock, nullptr);

    EXPECT_EQ(PubSecStackUpdateRegisterInfo(1, &one), 50u);
    EXPECT_NE(g_hPubSecStackCommonLock, nullptr);
    EXPECT_NE(g_hPubSecStackCommonLock, madeAtLoad);
    EXPECT_EQ(fake_platform::lockTakes(), 1u);
    EXPECT_EQ(fake_platform::lockGives(), 1u);
}

TEST_F(ConfigTest, TheLastConfigurationCounts)
{
    const TPubSecPlatRegInfo first = stack::configuration("10.0.0.1", 80);
    const TPubSecPlatRegInfo second = stack::configuration("10.0.0.2", 81);
    PubSecStackUpdateRegisterInfo(0, &first);
    PubSecStackUpdateRegisterInfo(0, &second);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon_New[0], &second, sizeof(second)), 0);
}

TEST_F(ConfigTest, ANumberThatIsNoPlatformIsSaidToBeDoneAndWritesNothing)
{
    const TPubSecPlatRegInfo one = stack::configuration("10.0.0.1", 80);
    for (const s32 number : kNoPlatforms)
    {
        EXPECT_EQ(PubSecStackUpdateRegisterInfo(number, &one), 50u) << number;
        EXPECT_TRUE(nothingIsConfigured()) << number;
    }
}

TEST_F(ConfigTest, ANullConfigurationIsSaidToBeDoneAndWritesNothing)
{
    EXPECT_EQ(PubSecStackUpdateRegisterInfo(0, nullptr), 50u);
    EXPECT_EQ(PubSecStackUpdateRegisterInfo(2, nullptr), 50u);
    EXPECT_TRUE(nothingIsConfigured());
}

TEST_F(ConfigTest, NothingIsInForceUntilTheLoopsNextPass)
{
    const TPubSecPlatRegInfo one = stack::configuration("10.0.0.1", 80);
    TPubSecPlatRegInfo disabled = one;
    disabled.dwEnable = 0;
    ASSERT_EQ(PubSecStackInit(), 50u);
    fake_platform::setDelayHook([&](u32 number, u32) {
        if (number == 1)
        {
            EXPECT_EQ(PubSecStackUpdateRegisterInfo(0, &disabled), 50u);
            EXPECT_TRUE(std::string(g_atPubSecStackGlobalCommon[0].achServerIP).empty());
        }
    });
    fake_platform::afterDelays(2, PubSecStackUnInit);
    fake_platform::runEvents();
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon[0], &disabled, sizeof(disabled)), 0);
}

TEST_F(ConfigTest, TheStatusIsTheFlagOfThePlatform)
{
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    g_bPubSecRegStatus[1] = 1;
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_EQ(PubSecGetRegisterStatus(1), 1u);
    g_bPubSecRegStatus[0] = 1;
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

TEST_F(ConfigTest, TheStatusOfNoPlatformIsZero)
{
    g_bPubSecRegStatus[0] = 1;
    g_bPubSecRegStatus[1] = 1;
    for (const s32 number : kNoPlatforms)
    {
        EXPECT_EQ(PubSecGetRegisterStatus(number), 0u) << number;
    }
}

/* ------------------------------------------------------------------------------------------------------ callbacks */

struct Call
{
    int callback;
    u32 platform;
    u32 status;
    const TPubSecPlatRegInfo* info;

    bool operator==(const Call& other) const
    {
        return callback == other.callback && platform == other.platform && status == other.status && info == other.info;
    }
};

void PrintTo(const Call& call, std::ostream* out)
{
    *out << "callback " << call.callback << "(" << call.platform << ", " << call.status << ")";
}

std::vector<Call> s_calls;

template <int Number> void callback(u32 platform, u32 status, const TPubSecPlatRegInfo* ptInfo)
{
    s_calls.push_back({Number, platform, status, ptInfo});
}

class CallbackTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        s_calls.clear();
    }
};

TEST_F(CallbackTest, TheFirstTwoAreKeptAndTheThirdIsDropped)
{
    logAt(3);
    PubSecStackRegisterCB(callback<1>);
    PubSecStackRegisterCB(callback<2>);
    PubSecStackRegisterCB(callback<3>);
    EXPECT_TRUE(g_pfRegStatus[0] == callback<1>);
    EXPECT_TRUE(g_pfRegStatus[1] == callback<2>);
    const std::string line = info("PubSecStackRegisterCB", "RegStatus CB!");
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(line, line, line));
}

TEST_F(CallbackTest, TheSameFunctionMayBeStoredTwice)
{
    PubSecStackRegisterCB(callback<1>);
    PubSecStackRegisterCB(callback<1>);
    PubSecNotifyRegStatus(0, 1, nullptr);
    EXPECT_THAT(s_calls, ElementsAre(Call{1, 0, 1, nullptr}, Call{1, 0, 1, nullptr}));
}

TEST_F(CallbackTest, ANullCallbackIsComplainedOf)
{
    logAt(3);
    PubSecStackRegisterCB(nullptr);
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError("PubSecStackRegisterCB", "pfRegStatus is NULL!")));
    EXPECT_TRUE(g_pfRegStatus[0] == nullptr);
    PubSecStackRegisterCB(callback<1>);
    PubSecStackRegisterCB(nullptr);
    EXPECT_TRUE(g_pfRegStatus[0] == callback<1>);
    EXPECT_TRUE(g_pfRegStatus[1] == nullptr);
}

TEST_F(CallbackTest, SlotZeroIsCalledFirstAndAnEmptySlotIsPassedOver)
{
    const TPubSecPlatRegInfo one = stack::configuration("10.0.0.1", 80);
    PubSecNotifyRegStatus(1, 1, &one);
    EXPECT_THAT(s_calls, IsEmpty());
    g_pfRegStatus[1] = callback<2>;
    PubSecNotifyRegStatus(1, 0, &one);
    EXPECT_THAT(s_calls, ElementsAre(Call{2, 1, 0, &one}));
    s_calls.clear();
    g_pfRegStatus[0] = callback<1>;
    PubSecNotifyRegStatus(0, 1, &one);
    EXPECT_THAT(s_calls, ElementsAre(Call{1, 0, 1, &one}, Call{2, 0, 1, &one}));
}

TEST_F(CallbackTest, AnEmptyFirstSlotIsFilledFirst)
{
    g_pfRegStatus[1] = callback<2>;
    PubSecStackRegisterCB(callback<1>);
    EXPECT_TRUE(g_pfRegStatus[0] == callback<1>);
    EXPECT_TRUE(g_pfRegStatus[1] == callback<2>);
}

TEST_F(CallbackTest, TwoThreadsAtOnceLoseNone)
{
    for (int round = 0; round < 200; ++round)
    {
        g_pfRegStatus[0] = nullptr;
        g_pfRegStatus[1] = nullptr;
        std::thread first([] { PubSecStackRegisterCB(callback<1>); });
        std::thread second([] { PubSecStackRegisterCB(callback<2>); });
        first.join();
        second.join();
        ASSERT_TRUE((g_pfRegStatus[0] == callback<1> && g_pfRegStatus[1] == callback<2>) ||
                    (g_pfRegStatus[0] == callback<2> && g_pfRegStatus[1] == callback<1>));
    }
}

/* -------------------------------------------------------------------------------------------- console and log level */

using LogLevelTest = StackTest;

/* One line of each kind at the current level, as a function of the library writes them. */
std::vector<std::string> Speak()
{
    const size_t before = fake_platform::logLines().size();
    PUBSEC_ERR("number %d", -1);
    PUBSEC_INF("text %s", "a");
    PUBSEC_DBG("nothing");
    const auto lines = fake_platform::logLines();
    return {lines.begin() + static_cast<std::ptrdiff_t>(before), lines.end()};
}

TEST_F(LogLevelTest, TheStackIsSilentAtLoad)
{
    EXPECT_EQ(g_ePubSecStackLogLevel, 0u);
    EXPECT_THAT(Speak(), IsEmpty());
}

TEST_F(LogLevelTest, EachLevelAddsAKindOfLine)
{
    EXPECT_EQ(_SetPubSecStaLogLvl(0), 0);
    EXPECT_THAT(Speak(), IsEmpty());
    EXPECT_EQ(_SetPubSecStaLogLvl(1), 1);
    EXPECT_THAT(Speak(), ElementsAre(IsError("Speak", "number -1")));
    EXPECT_EQ(_SetPubSecStaLogLvl(2), 2);
    EXPECT_THAT(Speak(), ElementsAre(IsError("Speak", "number -1"), "[PubSecStack INF] Speak: text a\n"));
    EXPECT_EQ(_SetPubSecStaLogLvl(3), 3);
    const auto all = Speak();
    EXPECT_THAT(all, ElementsAre(IsError("Speak", "number -1"), "[PubSecStack INF] Speak: text a\n",
                                 "[PubSecStack DBG] Speak: nothing\n"));
    EXPECT_EQ(_SetPubSecStaLogLvl(4), 4);
    EXPECT_EQ(g_ePubSecStackLogLevel, 4u);
    EXPECT_THAT(Speak(), ElementsAreArray(all));
}

TEST_F(LogLevelTest, AnErrorNamesItsSourceLine)
{
    logAt(1);
    const int line = __LINE__ + 1;
    PUBSEC_ERR("here");
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre("[PubSecStack ERR] TestBody:" + std::to_string(line) + " here\n"));
}

TEST_F(LogLevelTest, OtherLevelsAreRefusedInTheNameOfTheAdvertisedRange)
{
    for (const s32 level : {5, 6, 255, INT_MAX, -1, INT_MIN})
    {
        fake_platform::reset();
        logAt(4);
        EXPECT_EQ(_SetPubSecStaLogLvl(level), 1) << level;
        EXPECT_EQ(g_ePubSecStackLogLevel, 4u) << level;
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsError("_SetPubSecStaLogLvl", "cur level 4, valid range [0, 3]")));
    }
    fake_platform::reset();
    logAt(1);
    EXPECT_EQ(_SetPubSecStaLogLvl(5), 1);
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError("_SetPubSecStaLogLvl", "cur level 1, valid range [0, 3]")));
}

TEST_F(LogLevelTest, ARefusalAtLevelZeroPrintsNothing)
{
    EXPECT_EQ(_SetPubSecStaLogLvl(5), 1);
    EXPECT_EQ(_SetPubSecStaLogLvl(-1), 1);
    EXPECT_EQ(g_ePubSecStackLogLevel, 0u);
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
}

} // namespace
