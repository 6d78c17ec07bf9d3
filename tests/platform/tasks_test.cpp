/* SPDX-License-Identifier: Apache-2.0 */
/* Tasks and timers of the POSIX platform. */
#include <gmock/gmock.h>
#include <pubsecplatform_posix.h>

#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr u32 kFarAway = 3600 * 1000;

/* What handlers tell, and a way to wait until they have told so many things. */
class Diary
{
  public:
    void add(const std::string& entry)
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        entries_.push_back(entry);
        grown_.notify_all();
    }

    bool waitFor(size_t count)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        return grown_.wait_for(lock, std::chrono::seconds(20), [&] { return entries_.size() >= count; });
    }

    std::vector<std::string> entries()
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        return entries_;
    }

    void clear()
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        entries_.clear();
    }

  private:
    std::mutex mutex_;
    std::condition_variable grown_;
    std::vector<std::string> entries_;
};

Diary g_diary;

void tell(TAppTaskHandle, u32 event, const void* context)
{
    g_diary.add(std::string(static_cast<const char*>(context)) + std::to_string(event));
}

/* A gate that keeps a task busy until the test opens it. */
struct Gate
{
    std::atomic<bool> entered{false};
    std::atomic<bool> open{false};
};

void waitAtGate(TAppTaskHandle, u32, const void* context)
{
    Gate* gate = static_cast<Gate*>(const_cast<void*>(context));
    gate->entered = true;
    while (!gate->open)
    {
        AppDelay(1);
    }
}

class PosixTasks : public testing::Test
{
  protected:
    void SetUp() override
    {
        g_diary.clear();
        ASSERT_EQ(AppTaskMgrCreate(nullptr, 32, &manager_), 0u);
        task_ = newTask("worker");
        ASSERT_NE(task_, nullptr);
    }

    void TearDown() override
    {
        gate_.open = true;
        EXPECT_EQ(PosixPlatformStop(), 0u);
    }

    TAppTaskHandle newTask(const char* name, u32 queueSize = 1024)
    {
        TAppTaskHandle task = nullptr;
        EXPECT_EQ(AppTaskMgrNewTask(manager_, name, queueSize, 0x100000, 0, 0, &task), 0u);
        return task;
    }

    /* Busy until the gate is opened, so that what is queued meanwhile starts together. */
    void holdTask()
    {
        ASSERT_EQ(AppTaskSendEvent(task_, 0, waitAtGate, &gate_), 0u);
        while (!gate_.entered)
        {
            AppDelay(1);
        }
    }

    TAppTaskMgrHandle manager_ = nullptr;
    TAppTaskHandle task_ = nullptr;
    Gate gate_; /* outlives the tasks */
};

TEST_F(PosixTasks, EventsRunInTheOrderOfSending)
{
    EXPECT_EQ(AppTaskSendEvent(task_, 0, tell, "a"), 0u);
    EXPECT_EQ(AppTaskSendEvent(task_, 7, tell, "b"), 0u);
    EXPECT_EQ(AppTaskSendEvent(task_, 1, tell, "c"), 0u);
    ASSERT_TRUE(g_diary.waitFor(3));
    EXPECT_THAT(g_diary.entries(), ElementsAre("a0", "b7", "c1"));
}

TEST_F(PosixTasks, HandlersGetTheirTask)
{
    static std::atomic<TAppTaskHandle> seen;
    seen = nullptr;
    AppTaskSendEvent(
        task_, 0,
        [](TAppTaskHandle task, u32, const void*) {
            seen = task;
            g_diary.add("done");
        },
        nullptr);
    ASSERT_TRUE(g_diary.waitFor(1));
    EXPECT_EQ(seen.load(), task_);
}

TEST_F(PosixTasks, TimersRunInDueOrderWithCode4)
{
    holdTask();
    EXPECT_NE(AppTaskSetTimer(task_, 400, tell, "d"), nullptr);
    EXPECT_NE(AppTaskSetTimer(task_, 100, tell, "b"), nullptr);
    EXPECT_NE(AppTaskSetTimer(task_, 250, tell, "c"), nullptr);
    EXPECT_NE(AppTaskSetTimer(task_, 0, tell, "a"), nullptr);
    gate_.open = true;
    ASSERT_TRUE(g_diary.waitFor(4));
    EXPECT_THAT(g_diary.entries(), ElementsAre("a4", "b4", "c4", "d4"));
}

TEST_F(PosixTasks, EventsAndTimersShareOneOrder)
{
    holdTask();
    AppTaskSetTimer(task_, 1, tell, "t");
    AppDelay(5);
    AppTaskSendEvent(task_, 9, tell, "e");
    AppTaskSetTimer(task_, 0, tell, "u");
    gate_.open = true;
    ASSERT_TRUE(g_diary.waitFor(3));
    EXPECT_THAT(g_diary.entries(), ElementsAre("t4", "e9", "u4"));
}

TEST_F(PosixTasks, ATimerIsNeverEarly)
{
    static steady_clock::time_point ran;
    const steady_clock::time_point armed = steady_clock::now();
    AppTaskSetTimer(
        task_, 80,
        [](TAppTaskHandle, u32, const void*) {
            ran = steady_clock::now();
            g_diary.add("ran");
        },
        nullptr);
    ASSERT_TRUE(g_diary.waitFor(1));
    EXPECT_GE(ran - armed, milliseconds(80));
}

TEST_F(PosixTasks, AnEarlierTimerOvertakesAWait)
{
    AppTaskSetTimer(task_, kFarAway, tell, "never");
    AppDelay(20); /* the task waits for the first by now */
    AppTaskSetTimer(task_, 10, tell, "soon");
    ASSERT_TRUE(g_diary.waitFor(1));
    EXPECT_THAT(g_diary.entries(), ElementsAre("soon4"));
}

TEST_F(PosixTasks, SettingTheDeviceClockMovesNoTimer)
{
    const TNvrSysTime future = {2099, 1, 1, 0, 0, 0, {}};
    const TNvrSysTime past = {1999, 1, 1, 0, 0, 0, {}};
    AppTaskSetTimer(task_, kFarAway, tell, "far");
    AppTaskSetTimer(task_, 300, tell, "near");
    ASSERT_EQ(NvrSysSetSystemTime(&future, 8), 1000u);
    AppDelay(10);
    EXPECT_THAT(g_diary.entries(), IsEmpty());
    ASSERT_EQ(NvrSysSetSystemTime(&past, 8), 1000u);
    ASSERT_TRUE(g_diary.waitFor(1));
    EXPECT_THAT(g_diary.entries(), ElementsAre("near4"));
}

TEST_F(PosixTasks, TasksRunBesideEachOther)
{
    holdTask();
    const TAppTaskHandle other = newTask("other");
    AppTaskSendEvent(other, 1, tell, "free");
    EXPECT_TRUE(g_diary.waitFor(1));
    gate_.open = true;
}

TEST_F(PosixTasks, AThreadBearsTheTasksNameAndTakesNoSignal)
{
    static bool blocked;
    blocked = false;
    const TAppTaskHandle named = newTask("pubsecstack_nodelay");
    AppTaskSendEvent(
        named, 0,
        [](TAppTaskHandle, u32, const void*) {
            char name[16] = "";
            pthread_getname_np(pthread_self(), name, sizeof(name));
            sigset_t mask;
            pthread_sigmask(SIG_SETMASK, nullptr, &mask);
            blocked = sigismember(&mask, SIGINT) == 1 && sigismember(&mask, SIGPIPE) == 1;
            g_diary.add(name);
        },
        nullptr);
    ASSERT_TRUE(g_diary.waitFor(1));
    EXPECT_THAT(g_diary.entries(), ElementsAre("pubsecstack_nod"));
    EXPECT_TRUE(blocked);
}

TEST_F(PosixTasks, ACancelledTimerNeverRuns)
{
    holdTask();
    const TAppTimerHandle cancelled = AppTaskSetTimer(task_, 0, tell, "cancelled");
    AppTaskSetTimer(task_, 0, tell, "kept");
    EXPECT_EQ(AppTaskCancelTimer(cancelled), 0u);
    gate_.open = true;
    ASSERT_TRUE(g_diary.waitFor(1));
    EXPECT_THAT(g_diary.entries(), ElementsAre("kept4"));
}

TEST_F(PosixTasks, AHandlerCancelsATimerOfTheSameInstant)
{
    static TAppTimerHandle second;
    holdTask();
    AppTaskSetTimer(
        task_, 0,
        [](TAppTaskHandle, u32, const void*) {
            AppTaskCancelTimer(second);
            g_diary.add("first");
        },
        nullptr);
    second = AppTaskSetTimer(task_, 0, tell, "second");
    AppTaskSetTimer(task_, 0, tell, "third");
    gate_.open = true;
    ASSERT_TRUE(g_diary.waitFor(2));
    EXPECT_THAT(g_diary.entries(), ElementsAre("first", "third4"));
}

TEST_F(PosixTasks, AHandlerMayCancelItselfAndArmTheNext)
{
    static std::atomic<TAppTimerHandle> own;
    static PFAppTimer again;
    static int runs;
    runs = 0;
    again = [](TAppTaskHandle task, u32, const void*) {
        EXPECT_EQ(AppTaskCancelTimer(own), 0u);
        g_diary.add("run");
        if (++runs < 3)
        {
            own = AppTaskSetTimer(task, 1, again, nullptr);
        }
    };
    holdTask();
    own = AppTaskSetTimer(task_, 0, again, nullptr);
    gate_.open = true;
    ASSERT_TRUE(g_diary.waitFor(3));
    EXPECT_EQ(g_diary.entries().size(), 3u);
}

TEST_F(PosixTasks, CancellingDoesNotWaitForARunningHandler)
{
    const TAppTimerHandle timer = AppTaskSetTimer(task_, 0, waitAtGate, &gate_);
    while (!gate_.entered)
    {
        AppDelay(1);
    }
    EXPECT_EQ(AppTaskCancelTimer(timer), 0u); /* would hang if it waited, as the gate is closed */
    gate_.open = true;
}

TEST_F(PosixTasks, HandlesThatAreGoneOrForeignDoNothing)
{
    const TAppTimerHandle fired = AppTaskSetTimer(task_, 0, tell, "fired");
    ASSERT_TRUE(g_diary.waitFor(1));
    const TAppTimerHandle cancelled = AppTaskSetTimer(task_, kFarAway, tell, "cancelled");
    AppTaskCancelTimer(cancelled);

    holdTask();
    /* More timers than the table has slots at first, so that those of the two are used again. */
    for (int i = 0; i < 200; ++i)
    {
        ASSERT_NE(AppTaskSetTimer(task_, 0, tell, "x"), nullptr);
    }
    EXPECT_EQ(AppTaskCancelTimer(fired), 0u);
    EXPECT_EQ(AppTaskCancelTimer(cancelled), 0u);
    EXPECT_EQ(AppTaskCancelTimer(nullptr), 0u);
    EXPECT_EQ(AppTaskCancelTimer(reinterpret_cast<TAppTimerHandle>(task_)), 0u);
    EXPECT_EQ(AppTaskCancelTimer(reinterpret_cast<TAppTimerHandle>(~static_cast<uintptr_t>(0))), 0u);
    EXPECT_EQ(AppTaskCancelTimer(reinterpret_cast<TAppTimerHandle>(static_cast<uintptr_t>(1))), 0u);
    gate_.open = true;
    EXPECT_TRUE(g_diary.waitFor(201));
}

TEST_F(PosixTasks, HandlesAreNeverGivenTwice)
{
    std::vector<TAppTimerHandle> handles;
    for (int i = 0; i < 100000; ++i)
    {
        handles.push_back(AppTaskSetTimer(task_, kFarAway, tell, "x"));
        AppTaskCancelTimer(handles.back());
    }
    std::sort(handles.begin(), handles.end());
    EXPECT_EQ(std::adjacent_find(handles.begin(), handles.end()), handles.end());
    EXPECT_NE(handles.front(), nullptr);
}

TEST_F(PosixTasks, TimersAreBoundedAndComeBack)
{
    std::vector<TAppTimerHandle> handles;
    while (const TAppTimerHandle handle = AppTaskSetTimer(task_, kFarAway, tell, "x"))
    {
        handles.push_back(handle);
        ASSERT_LE(handles.size(), 65535u);
    }
    EXPECT_GT(handles.size(), 4000u);
    AppTaskCancelTimer(handles.front());
    EXPECT_NE(AppTaskSetTimer(task_, 0, tell, "again"), nullptr);
    EXPECT_TRUE(g_diary.waitFor(1));
}

struct Shot
{
    std::atomic<int> runs{0};
    std::atomic<TAppTimerHandle> handle{nullptr};
};

void countShot(TAppTaskHandle, u32, const void* context)
{
    static_cast<Shot*>(const_cast<void*>(context))->runs++;
}

TEST_F(PosixTasks, CancelRacesWithFiringUnharmed)
{
    constexpr int kShots = 4000;
    std::vector<Shot> shots(kShots);
    std::atomic<int> armed{0};
    std::thread armer([&] {
        for (int i = 0; i < kShots; ++i)
        {
            shots[static_cast<size_t>(i)].handle =
                AppTaskSetTimer(task_, static_cast<u32>(i % 3), countShot, &shots[static_cast<size_t>(i)]);
            armed = i + 1;
        }
    });
    auto cancelAll = [&] {
        for (int i = 0; i < kShots; ++i)
        {
            while (armed <= i)
            {
                std::this_thread::yield();
            }
            AppTaskCancelTimer(shots[static_cast<size_t>(i)].handle);
        }
    };
    std::thread first(cancelAll);
    std::thread second(cancelAll);
    armer.join();
    first.join();
    second.join();
    AppTaskSendEvent(task_, 0, tell, "after");
    ASSERT_TRUE(g_diary.waitFor(1));
    const int before =
        static_cast<int>(std::count_if(shots.begin(), shots.end(), [](const Shot& shot) { return shot.runs == 1; }));
    EXPECT_TRUE(std::all_of(shots.begin(), shots.end(), [](const Shot& shot) { return shot.runs <= 1; }));
    AppDelay(20);
    const int after =
        static_cast<int>(std::count_if(shots.begin(), shots.end(), [](const Shot& shot) { return shot.runs == 1; }));
    EXPECT_EQ(before, after); /* all that had not run were cancelled */
}

TEST_F(PosixTasks, AFullQueueRefusesEvents)
{
    const TAppTaskHandle small = newTask("small", 2);
    ASSERT_EQ(AppTaskSendEvent(small, 0, waitAtGate, &gate_), 0u);
    while (!gate_.entered)
    {
        AppDelay(1);
    }
    EXPECT_EQ(AppTaskSendEvent(small, 1, tell, "a"), 0u);
    EXPECT_EQ(AppTaskSendEvent(small, 2, tell, "b"), 0u);
    EXPECT_NE(AppTaskSendEvent(small, 3, tell, "c"), 0u);
    EXPECT_NE(AppTaskSetTimer(small, 0, tell, "t"), nullptr); /* timers take no room in it */
    gate_.open = true;
    ASSERT_TRUE(g_diary.waitFor(3));
    EXPECT_EQ(AppTaskSendEvent(small, 4, tell, "d"), 0u);
    ASSERT_TRUE(g_diary.waitFor(4));
    EXPECT_THAT(g_diary.entries(), ElementsAre("a1", "b2", "t4", "d4"));
}

TEST_F(PosixTasks, AManagerHoldsAsManyTasksAsItWasMadeFor)
{
    TAppTaskMgrHandle small = nullptr;
    TAppTaskHandle task = nullptr;
    ASSERT_EQ(AppTaskMgrCreate(nullptr, 1, &small), 0u);
    EXPECT_EQ(AppTaskMgrNewTask(small, "one", 1, 0x100000, 0, 0, &task), 0u);
    const TAppTaskHandle first = task;
    EXPECT_NE(AppTaskMgrNewTask(small, "two", 1, 0x100000, 0, 0, &task), 0u);
    EXPECT_EQ(task, first);
}

TEST_F(PosixTasks, BadArgumentsAreRefused)
{
    TAppTaskHandle task = nullptr;
    EXPECT_NE(AppTaskMgrCreate(nullptr, 32, nullptr), 0u);
    EXPECT_NE(AppTaskMgrNewTask(nullptr, "x", 1, 0x100000, 0, 0, &task), 0u);
    EXPECT_NE(AppTaskMgrNewTask(manager_, "x", 1, 0x100000, 0, 0, nullptr), 0u);
    EXPECT_NE(AppTaskSendEvent(nullptr, 0, tell, "x"), 0u);
    EXPECT_NE(AppTaskSendEvent(task_, 0, nullptr, "x"), 0u);
    EXPECT_EQ(AppTaskSetTimer(nullptr, 0, tell, "x"), nullptr);
    EXPECT_EQ(AppTaskSetTimer(task_, 0, nullptr, "x"), nullptr);
    EXPECT_EQ(AppTaskSetTimer(reinterpret_cast<TAppTaskHandle>(manager_), 0, tell, "x"), nullptr);
}

TEST_F(PosixTasks, ASmallStackSizeStillMakesATask)
{
    TAppTaskHandle task = nullptr;
    EXPECT_EQ(AppTaskMgrNewTask(manager_, nullptr, 1, 1, 0, 0, &task), 0u);
    AppTaskSendEvent(task, 1, tell, "ran");
    EXPECT_TRUE(g_diary.waitFor(1));
}

TEST_F(PosixTasks, StopWaitsForTheRunningHandlerAndDropsTheRest)
{
    holdTask();
    AppTaskSendEvent(task_, 0, tell, "queued");
    const TAppTimerHandle timer = AppTaskSetTimer(task_, 0, tell, "due");
    std::thread opener([&] {
        AppDelay(50);
        g_diary.add("opened");
        gate_.open = true;
    });
    EXPECT_EQ(PosixPlatformStop(), 0u);
    EXPECT_THAT(g_diary.entries(), ElementsAre("opened"));
    opener.join();

    EXPECT_NE(AppTaskSendEvent(task_, 0, tell, "x"), 0u);
    EXPECT_EQ(AppTaskSetTimer(task_, 0, tell, "x"), nullptr);
    EXPECT_EQ(AppTaskCancelTimer(timer), 0u);
    TAppTaskHandle task = nullptr;
    EXPECT_NE(AppTaskMgrNewTask(manager_, "x", 1, 0x100000, 0, 0, &task), 0u);
}

TEST_F(PosixTasks, ThingsStartAgainAfterStop)
{
    const TAppTaskHandle before = task_;
    ASSERT_EQ(PosixPlatformStop(), 0u);
    ASSERT_EQ(AppTaskMgrCreate(nullptr, 32, &manager_), 0u);
    task_ = newTask("again");
    EXPECT_NE(task_, before);
    AppTaskSendEvent(task_, 1, tell, "again");
    EXPECT_TRUE(g_diary.waitFor(1));
}

TEST_F(PosixTasks, StopIsRefusedToAHandler)
{
    AppTaskSendEvent(
        task_, 0, [](TAppTaskHandle, u32, const void*) { g_diary.add(PosixPlatformStop() != 0 ? "refused" : "done"); },
        nullptr);
    ASSERT_TRUE(g_diary.waitFor(1));
    EXPECT_THAT(g_diary.entries(), ElementsAre("refused"));
}

TEST_F(PosixTasks, StopHoldsAgainstThreadsThatGoOnUsingTheTask)
{
    std::atomic<bool> done{false};
    auto use = [&] {
        while (!done)
        {
            AppTaskSendEvent(
                task_, 0, [](TAppTaskHandle, u32, const void*) {}, nullptr);
            AppTaskCancelTimer(AppTaskSetTimer(
                task_, 1, [](TAppTaskHandle, u32, const void*) {}, nullptr));
        }
    };
    std::thread first(use);
    std::thread second(use);
    AppDelay(20);
    EXPECT_EQ(PosixPlatformStop(), 0u);
    done = true;
    first.join();
    second.join();
}

TEST_F(PosixTasks, BaseInitSaysWhetherItHadBeenDone)
{
    EXPECT_EQ(AppBaseInit(), 0u);
    EXPECT_EQ(AppBaseInit(), 102u);
    EXPECT_EQ(PosixPlatformStop(), 0u);
    EXPECT_EQ(AppBaseInit(), 0u);
}

} // namespace
