/* SPDX-License-Identifier: Apache-2.0 */
/* The fake platform itself: what it records and does is what other tests rest on. */
#include "tests/support/fake_platform_fixture.h"

#include <cstring>
#include <thread>

namespace
{

namespace fake = fake_platform;
using fake::Function;
using testing::ElementsAre;
using testing::IsEmpty;

class FakePlatform : public FakePlatformTest
{
};

/* What the handlers saw: "name@time". */
std::vector<std::string> g_ran;

void record(TAppTaskHandle, u32 event, const void* context)
{
    EXPECT_EQ(event, 4u);
    g_ran.push_back(static_cast<const char*>(context) + std::string("@") + std::to_string(fake::now()));
}

void rearm(TAppTaskHandle task, u32 event, const void* context)
{
    record(task, event, context);
    AppTaskSetTimer(task, 1000, rearm, context);
}

void delayInside(TAppTaskHandle task, u32 event, const void* context)
{
    record(task, event, context);
    AppDelay(100);
    g_ran.push_back("done@" + std::to_string(fake::now()));
}

TEST_F(FakePlatform, RunsTimersInDueOrderAtTheirDueTimes)
{
    g_ran.clear();
    const u32 tick = AppGetTick();
    AppTaskSetTimer(nullptr, 30, record, "c");
    AppTaskSetTimer(nullptr, 10, record, "a");
    AppTaskSetTimer(nullptr, 10, record, "b");
    AppTaskSetTimer(nullptr, 51, record, "late");
    AppDelay(50);
    EXPECT_THAT(g_ran, ElementsAre("a@10", "b@10", "c@30"));
    EXPECT_EQ(fake::now(), 50u);
    EXPECT_EQ(AppTickDiff(tick, AppGetTick()), 50u);
    ASSERT_EQ(fake::armedTimers().size(), 1u);
    EXPECT_EQ(fake::armedTimers()[0].due, 51u);
    EXPECT_THAT(fake::delays(), ElementsAre(50u));
}

TEST_F(FakePlatform, ATimerThatRearmsRunsAsOftenAsItIsDue)
{
    g_ran.clear();
    AppTaskSetTimer(nullptr, 500, rearm, "k");
    fake::runFor(3000);
    EXPECT_THAT(g_ran, ElementsAre("k@500", "k@1500", "k@2500"));
    EXPECT_THAT(fake::delays(), IsEmpty());
}

TEST_F(FakePlatform, ADelayInsideAHandlerHoldsOtherTimersUp)
{
    g_ran.clear();
    AppTaskSetTimer(nullptr, 10, delayInside, "slow");
    AppTaskSetTimer(nullptr, 20, record, "next");
    fake::runFor(50);
    EXPECT_THAT(g_ran, ElementsAre("slow@10", "done@110", "next@110"));
}

TEST_F(FakePlatform, CancelsWhatIsArmedAndRecordsEveryCancel)
{
    g_ran.clear();
    const TAppTimerHandle first = AppTaskSetTimer(nullptr, 10, record, "a");
    const TAppTimerHandle second = AppTaskSetTimer(nullptr, 10, record, "b");
    ASSERT_NE(first, nullptr);
    ASSERT_NE(first, second);
    EXPECT_EQ(AppTaskCancelTimer(first), 0u);
    AppDelay(10);
    EXPECT_EQ(AppTaskCancelTimer(second), 0u);
    EXPECT_EQ(AppTaskCancelTimer(nullptr), 0u);
    EXPECT_THAT(g_ran, ElementsAre("b@10"));
    EXPECT_THAT(fake::cancels(), ElementsAre(first, second, nullptr));
    EXPECT_EQ(fake::timers()[0].state, fake::TimerState::kCancelled);
    EXPECT_EQ(fake::timers()[1].state, fake::TimerState::kFired);
}

TEST_F(FakePlatform, HooksEndALoop)
{
    bool running = true;
    std::vector<std::pair<u32, u32>> seen;
    fake::setDelayHook([&](u32 number, u32 milliseconds) { seen.emplace_back(number, milliseconds); });
    fake::afterDelays(3, [&] { running = false; });
    while (running)
    {
        AppDelay(1000);
    }
    EXPECT_THAT(seen, ElementsAre(std::pair(1u, 1000u), std::pair(2u, 1000u), std::pair(3u, 1000u)));
    EXPECT_EQ(fake::now(), 3000u);
}

TEST_F(FakePlatform, EventsWaitUntilTheyAreRun)
{
    static int runs;
    runs = 0;
    static int context;
    const PFAppEvent handler = [](TAppTaskHandle, u32 event, const void* given) {
        EXPECT_EQ(event, 7u);
        EXPECT_EQ(given, &context);
        ++runs;
    };
    TAppTaskMgrHandle manager = nullptr;
    TAppTaskHandle task = nullptr;
    ASSERT_EQ(AppTaskMgrCreate(nullptr, 32, &manager), 0u);
    ASSERT_EQ(AppTaskMgrNewTask(manager, "worker", 1, 2, 3, 4, &task), 0u);
    EXPECT_EQ(AppTaskSendEvent(task, 7, handler, &context), 0u);
    EXPECT_EQ(runs, 0);
    ASSERT_EQ(fake::pendingEvents().size(), 1u);
    EXPECT_EQ(fake::pendingEvents()[0].task, task);
    EXPECT_EQ(fake::runEvents(), 1u);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(fake::runEvents(), 0u);

    const fake::Task made = fake::tasks().at(0);
    EXPECT_EQ(made.name, "worker");
    EXPECT_EQ(made.manager, manager);
    EXPECT_EQ(made.queueSize, 1u);
    EXPECT_EQ(made.stackSize, 2u);
    EXPECT_EQ(made.option1, 3u);
    EXPECT_EQ(made.option2, 4u);
    EXPECT_THAT(fake::journal(),
                ElementsAre("AppTaskMgrCreate(32)", "AppTaskMgrNewTask(worker)", "AppTaskSendEvent(7)"));
}

TEST_F(FakePlatform, FailsAsScripted)
{
    fake::fail(Function::kTaskSetTimer, 0, 1, 1);
    EXPECT_NE(AppTaskSetTimer(nullptr, 1, record, "a"), nullptr);
    EXPECT_EQ(AppTaskSetTimer(nullptr, 1, record, "a"), nullptr);
    EXPECT_NE(AppTaskSetTimer(nullptr, 1, record, "a"), nullptr);
    EXPECT_EQ(fake::calls(Function::kTaskSetTimer), 3u);

    fake::fail(Function::kBaseInit, 102);
    EXPECT_EQ(AppBaseInit(), 102u);
    EXPECT_EQ(AppBaseInit(), 0u);

    fake::fail(Function::kSetSystemTime, 1003, 2);
    const TNvrSysTime time = {2024, 2, 29, 23, 59, 60, {}};
    EXPECT_EQ(NvrSysSetSystemTime(&time, 8), 1003u);
    EXPECT_EQ(NvrSysSetSystemTime(&time, 9), 1003u);
    EXPECT_EQ(NvrSysSetSystemTime(&time, 9), 1000u);
    ASSERT_EQ(fake::clockSets().size(), 3u);
    EXPECT_EQ(fake::clockSets()[0].source, 8u);
    EXPECT_EQ(fake::clockSets()[0].time.bySecond, 60);

    fake::fail(Function::kMemPoolMalloc, 0);
    EXPECT_EQ(AppMemPoolMallocEx(nullptr, 10, "f", 1), nullptr);
}

TEST_F(FakePlatform, CountsBlocksOfThePool)
{
    void* first = AppMemPoolMallocEx(nullptr, 10, "f", 1);
    void* second = AppMemPoolMallocEx(nullptr, 20, "g", 2);
    EXPECT_EQ(fake::outstandingBlocks(), 2u);
    EXPECT_EQ(fake::outstandingBytes(), 30u);
    AppMemPoolFreeEx(nullptr, first, "h", 3);
    EXPECT_EQ(fake::outstandingBytes(), 20u);
    NvrSrvFree(second, "i", 4);
    EXPECT_EQ(fake::outstandingBlocks(), 0u);
    NvrSrvFree(std::malloc(1), "j", 5);
    const auto releases = fake::releases();
    ASSERT_EQ(releases.size(), 3u);
    EXPECT_EQ(releases[1].by, fake::Release::kService);
    EXPECT_TRUE(releases[1].fromPool);
    EXPECT_EQ(releases[1].function, "i");
    EXPECT_FALSE(releases[2].fromPool);
}

TEST_F(FakePlatform, WatchesTheLock)
{
    static TAppLockHandle lock = AppLockCreate();
    u32 hooked = 0;
    fake::setLockHook([&](u32 number) {
        hooked = number;
        EXPECT_EQ(fake::locksHeld(), 0u);
    });
    EXPECT_EQ(AppLockTakeByTime(lock, 0), 0u);
    EXPECT_EQ(hooked, 1u);
    EXPECT_EQ(fake::locksHeld(), 1u);
    EXPECT_NE(AppLockTakeByTime(lock, 0), 0u);
    AppDelay(1);
    TlxPrintf(1, 0, "under it\n");
    EXPECT_EQ(AppLockGive(lock), 0u);
    EXPECT_NE(AppLockGive(lock), 0u);
    TlxPrintf(0, 1, "odd\n");
    EXPECT_EQ(fake::lockTakes(), 2u);
    EXPECT_EQ(fake::lockGives(), 2u);
    EXPECT_THAT(fake::faults(), ElementsAre("a lock taken twice", "AppDelay under a lock", "TlxPrintf under a lock",
                                            "a lock given that this thread does not hold", "TlxPrintf with 0, 1"));
    fake::reset();
}

TEST_F(FakePlatform, TheLockHoldsBetweenThreads)
{
    static TAppLockHandle lock = AppLockCreate();
    int counter = 0;
    auto work = [&] {
        for (int i = 0; i < 1000; ++i)
        {
            AppLockTakeByTime(lock, 0);
            ++counter;
            AppLockGive(lock);
            TlxPrintf(1, 0, "%d\n", i);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(counter, 2000);
    EXPECT_EQ(fake::logLines().size(), 2000u);
}

TEST_F(FakePlatform, CapturesLogLinesAndCommands)
{
    TlxPrintf(1, 0, "[PubSecStack ERR] %s:%d x\n", "f", 12);
    TlxPrintf(1, 0, "[PubSecStack INF] %s: y\n", "f");
    EXPECT_THAT(fake::logLines(), ElementsAre("[PubSecStack ERR] f:12 x\n", "[PubSecStack INF] f: y\n"));
    EXPECT_THAT(fake::logLinesWith("INF"), ElementsAre("[PubSecStack INF] f: y\n"));
    AppRegCommand(
        "name", [](s32 n) { return n + 1; }, "help");
    ASSERT_EQ(fake::commands().size(), 1u);
    EXPECT_EQ(fake::commands()[0].name, "name");
    EXPECT_EQ(fake::commands()[0].help, "help");
    EXPECT_EQ(fake::commands()[0].run(4), 5);
}

TEST_F(FakePlatform, TicksWrapAndHaveALength)
{
    fake::setTick(0xFFFFFFFE);
    const u32 before = AppGetTick();
    EXPECT_EQ(before, 0xFFFFFFFEu);
    fake::advance(5);
    EXPECT_EQ(AppGetTick(), 3u);
    EXPECT_EQ(AppConvertTickToMS(AppTickDiff(before, AppGetTick())), 5u);
    fake::setTickLength(10);
    EXPECT_EQ(AppConvertTickToMS(7), 70u);
}

TEST_F(FakePlatform, ConvertsTimesAsTold)
{
    u32 seconds = 1000000;
    fake::setZoneOffset(8 * 3600);
    EXPECT_EQ(NvrSysTimeSecSwitch(0, &seconds), 1000u);
    EXPECT_EQ(seconds, 1000000u);
    EXPECT_EQ(NvrSysTimeSecSwitch(1, &seconds), 1000u);
    EXPECT_EQ(seconds, 1028800u);
    ASSERT_EQ(fake::secondsSwitches().size(), 2u);

    TNvrSysTime time = {2024, 1, 1, 0, 0, 0, {}};
    fake::setTimeSwitchHook([](TNvrSysTime& given) { given.byHour = 8; });
    EXPECT_EQ(NvrSysTimeSwitch(0, &time), 1000u);
    EXPECT_EQ(time.byHour, 8);
    EXPECT_EQ(fake::timeSwitches().at(0).time.byHour, 0);
}

TEST_F(FakePlatform, AnEndlessLoopIsAborted)
{
    const auto loop = [] {
        fake::setDelayLimit(10);
        for (;;)
        {
            AppDelay(1);
        }
    };
    EXPECT_DEATH(loop(), "nothing ends the loop");
}

} // namespace
