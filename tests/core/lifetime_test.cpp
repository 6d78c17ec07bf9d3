/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/config.h>

#include "tests/support/stack_test.h"

using fake_platform::Function;
using log_lines::IsError;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

namespace
{

using LifetimeTest = StackTest;

/* What a host gets to see of a start, in order. */
const std::vector<std::string> kWholeStart = {
    "AppBaseInit()",
    "AppMemPoolCreate(0, 1, 0)",
    "AppTaskMgrCreate(32)",
    "AppTaskMgrNewTask(pubsecstack_nodelay)",
    "AppTaskMgrNewTask(pubsecstack_delay)",
    "AppTaskMgrNewTask(pubsecstack_reg)",
    "AppTaskSendEvent(0)",
    "AppRegCommand(pbsklog)",
};

TEST_F(LifetimeTest, InitTakesItsStepsInOrder)
{
    EXPECT_EQ(PubSecStackInit(), 50u);
    EXPECT_EQ(fake_platform::journal(), kWholeStart);
    EXPECT_EQ(g_bPubSecInit, 1u);
}

TEST_F(LifetimeTest, ThePoolAndTheTaskManagerAreWhatTheTasksAreMadeWith)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    const auto pools = fake_platform::pools();
    ASSERT_EQ(pools.size(), 1u);
    EXPECT_EQ(pools[0].option1, 0u);
    EXPECT_EQ(pools[0].option2, 1u);
    EXPECT_EQ(pools[0].option3, 0u);
    EXPECT_EQ(g_hMemPool, pools[0].handle);
    const auto managers = fake_platform::taskManagers();
    ASSERT_EQ(managers.size(), 1u);
    EXPECT_EQ(managers[0].pool, g_hMemPool);
    EXPECT_EQ(managers[0].capacity, 32u);
    EXPECT_EQ(managers[0].handle, g_hTaskMgr);
}

TEST_F(LifetimeTest, EachTaskGetsItsSizesAndItsSlot)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    const auto tasks = fake_platform::tasks();
    ASSERT_EQ(tasks.size(), 3u);
    for (const fake_platform::Task& task : tasks)
    {
        EXPECT_EQ(task.manager, g_hTaskMgr) << task.name;
        EXPECT_EQ(task.queueSize, 1024u) << task.name;
        EXPECT_EQ(task.stackSize, 1048576u) << task.name;
        EXPECT_EQ(task.option1, 0u) << task.name;
        EXPECT_EQ(task.option2, 0u) << task.name;
    }
    EXPECT_EQ(tasks[0].name, "pubsecstack_nodelay");
    EXPECT_EQ(tasks[0].handle, g_hAppTaskNoDelay);
    EXPECT_EQ(tasks[1].name, "pubsecstack_delay");
    EXPECT_EQ(tasks[1].handle, g_hAppTaskDelay);
    EXPECT_EQ(tasks[2].name, "pubsecstack_reg");
    EXPECT_EQ(tasks[2].handle, g_hAppTaskRegister);
}

TEST_F(LifetimeTest, TheRegisterLoopIsSentToTheRegisterTask)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    const auto events = fake_platform::pendingEvents();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].task, g_hAppTaskRegister);
    EXPECT_EQ(events[0].code, 0u);
    EXPECT_TRUE(events[0].handler == PubSecStackRegisterThread);
}

TEST_F(LifetimeTest, TheConsoleCommandIsTheLogLevel)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    const auto commands = fake_platform::commands();
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands[0].name, "pbsklog");
    EXPECT_EQ(commands[0].help, "pubsecstacklog TelLvl StdIoLvl FileLvl");
    EXPECT_TRUE(commands[0].run == _SetPubSecStaLogLvl);
    EXPECT_EQ(commands[0].run(2), 2);
    EXPECT_EQ(g_ePubSecStackLogLevel, 2u);
}

TEST_F(LifetimeTest, ASecondInitIsRefusedAndDoesNothing)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    EXPECT_EQ(PubSecStackInit(), 52u);
    EXPECT_EQ(fake_platform::journal(), kWholeStart);
}

TEST_F(LifetimeTest, ABaseThatWasPreparedBeforeIsAsGood)
{
    fake_platform::fail(Function::kBaseInit, 102);
    EXPECT_EQ(PubSecStackInit(), 50u);
    EXPECT_EQ(fake_platform::journal(), kWholeStart);
}

TEST_F(LifetimeTest, AFailedRegistrationOfTheCommandIsNotAFailedStart)
{
    fake_platform::fail(Function::kRegCommand, 3);
    EXPECT_EQ(PubSecStackInit(), 50u);
}

TEST_F(LifetimeTest, TheStartIsSilentAtLevelZero)
{
    fake_platform::fail(Function::kBaseInit, 7);
    EXPECT_EQ(PubSecStackInit(), 51u);
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
}

TEST_F(LifetimeTest, UnInitClearsTheFlagAndNothingElse)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    const TPubSecPlatRegInfo info = stack::configuration("10.0.0.1", 80);
    PubSecStackUpdateRegisterInfo(1, &info);
    g_atPubSecStackGlobalCommon[0] = info;
    g_bPubSecRegStatus[0] = 1;
    g_ePubSecStackLogLevel = 2;
    const auto pool = g_hMemPool;
    const auto manager = g_hTaskMgr;
    const auto noDelay = g_hAppTaskNoDelay;
    const auto delay = g_hAppTaskDelay;
    const auto loop = g_hAppTaskRegister;
    PubSecStackUnInit();
    EXPECT_EQ(g_bPubSecInit, 0u);
    EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon[0], &info, sizeof(info)), 0);
    EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon_New[1], &info, sizeof(info)), 0);
    EXPECT_EQ(g_ePubSecStackLogLevel, 2u);
    EXPECT_EQ(g_hMemPool, pool);
    EXPECT_EQ(g_hTaskMgr, manager);
    EXPECT_EQ(g_hAppTaskNoDelay, noDelay);
    EXPECT_EQ(g_hAppTaskDelay, delay);
    EXPECT_EQ(g_hAppTaskRegister, loop);
    EXPECT_EQ(fake_platform::journal(), kWholeStart);
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
}

TEST_F(LifetimeTest, AfterUnInitAnotherStartMakesEverythingAnew)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    const auto firstPool = g_hMemPool;
    PubSecStackUnInit();
    EXPECT_EQ(PubSecStackInit(), 50u);
    EXPECT_EQ(fake_platform::pools().size(), 2u);
    EXPECT_EQ(fake_platform::taskManagers().size(), 2u);
    EXPECT_EQ(fake_platform::tasks().size(), 6u);
    EXPECT_NE(g_hMemPool, firstPool);
    EXPECT_EQ(g_hMemPool, fake_platform::pools()[1].handle);
}

TEST_F(LifetimeTest, UnInitWithoutAStartIsHarmless)
{
    PubSecStackUnInit();
    EXPECT_EQ(g_bPubSecInit, 0u);
    EXPECT_EQ(PubSecStackInit(), 50u);
}

TEST_F(LifetimeTest, TheLoopEndsAtThePassAfterUnInit)
{
    ASSERT_EQ(PubSecStackInit(), 50u);
    fake_platform::afterDelays(3, PubSecStackUnInit);
    EXPECT_EQ(fake_platform::runEvents(), 1u);
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1000u, 1000u, 1000u));
}

/* A facility that fails: at which of its calls, with which result, and what is then said. */
struct Failure
{
    Function function;
    u32 afterCalls;
    u32 result;
    const char* message;
    size_t steps; /* of the whole start that were tried */
};

void PrintTo(const Failure& failure, std::ostream* out)
{
    *out << failure.message << " at step " << failure.steps;
}

class FailedStartTest : public LifetimeTest, public testing::WithParamInterface<Failure>
{
};

TEST_P(FailedStartTest, EndsWith51ItsMessageAndTheFlagSet)
{
    logAt(1);
    fake_platform::fail(GetParam().function, GetParam().result, 1, GetParam().afterCalls);
    EXPECT_EQ(PubSecStackInit(), 51u);
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError("PubSecStackInit", GetParam().message)));
    const std::vector<std::string> tried(kWholeStart.begin(),
                                         kWholeStart.begin() + static_cast<std::ptrdiff_t>(GetParam().steps));
    EXPECT_EQ(fake_platform::journal(), tried);
    EXPECT_EQ(g_bPubSecInit, 1u);

    EXPECT_EQ(PubSecStackInit(), 52u);
    EXPECT_EQ(fake_platform::journal(), tried);
    PubSecStackUnInit();
    EXPECT_EQ(PubSecStackInit(), 50u);
}

INSTANTIATE_TEST_SUITE_P(Facilities, FailedStartTest,
                         testing::Values(Failure{Function::kBaseInit, 0, 7, "AppBaseInit err:7", 1},
                                         Failure{Function::kBaseInit, 0, 101, "AppBaseInit err:101", 1},
                                         Failure{Function::kBaseInit, 0, 103, "AppBaseInit err:103", 1},
                                         Failure{Function::kMemPoolCreate, 0, 4, "AppMemPoolCreate failed 4", 2},
                                         Failure{Function::kTaskMgrCreate, 0, 5, "AppTaskMgrCreate failed 5", 3},
                                         Failure{Function::kTaskMgrNewTask, 0, 6, "AppTaskMgrNewTask failed 6", 4},
                                         Failure{Function::kTaskMgrNewTask, 1, 8, "AppTaskMgrNewTask failed 8", 5},
                                         Failure{Function::kTaskMgrNewTask, 2, 9, "AppTaskMgrNewTask failed 9", 6},
                                         Failure{Function::kTaskSendEvent, 0, 4294967295u,
                                                 "AppTaskSendEvent pubsec_rfid failed -1", 7}));

TEST_F(LifetimeTest, TheStateAtLoadIsEmptyButForTheLockAndOneText)
{
    EXPECT_NE(g_hPubSecStackCommonLock, nullptr);
    EXPECT_THAT(g_pchPubSecConfFileDef, StrEq("NULL"));
    EXPECT_EQ(g_bPubSecUnRegFlag, 0u);
}

} // namespace
