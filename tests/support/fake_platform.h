/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A host platform for tests: every function of pubsecplatform.h, in one thread, with a clock of its own. Time passes
 * only in AppDelay and when the test says so, and timers run inside AppDelay, so an hour of keepalives takes no time.
 *
 *     fake_platform::reset();
 *     fake_platform::afterDelays(3, [] { g_bPubSecInit = 0; });   // ends the register loop at its third AppDelay
 *     PubSecStackInit();
 *     fake_platform::runEvents();                                 // runs the loop
 *     EXPECT_THAT(fake_platform::delays(), ElementsAre(1000, 1000, 1000));
 *
 * Everything may be called from several threads; timers run on the thread whose AppDelay or runFor reached them.
 */
#ifndef PUBSEC_FAKE_PLATFORM_H
#define PUBSEC_FAKE_PLATFORM_H

#include <functional>
#include <string>
#include <vector>

#include <pubsecplatform.h>

namespace fake_platform
{

/* Functions that can be counted and made to fail. */
enum class Function
{
    kBaseInit,
    kMemPoolCreate,
    kMemPoolMalloc,
    kMemPoolFree,
    kTaskMgrCreate,
    kTaskMgrNewTask,
    kTaskSendEvent,
    kTaskSetTimer,
    kTaskCancelTimer,
    kLockCreate,
    kLockTake,
    kLockGive,
    kDelay,
    kGetTick,
    kRegCommand,
    kTimeSwitch,
    kSetSystemTime,
    kTimeSecSwitch,
    kSrvFree,
    kPrintf,
    kCount
};

/* Back to the state at start: no records, no scripts, no hooks, clock 0. Locks that were created stay usable. */
void reset();

/* ------------------------------------------------------------------------------------------------------- scripts */

/*
 * After afterCalls more calls that pass, the next `times` calls of the function fail: they return `result` (a null
 * handle or block where the function returns one) and do nothing else. One script a function; a new one replaces it.
 */
void fail(Function function, u32 result, u32 times = 1, u32 afterCalls = 0);

/* Takes the script of the function away. */
void stopFailing(Function function);

/* Calls of the function since the reset, failed ones included. */
u32 calls(Function function);

/*
 * The calls that set something up or act on the device, in order, as text: "AppMemPoolCreate(0, 1, 0)",
 * "AppTaskMgrNewTask(pubsecstack_delay)", "AppTaskSetTimer(500)". Without logs, locks, ticks, pool blocks and strings.
 */
std::vector<std::string> journal();

/* Breaches of the host interface: a lock taken twice, AppDelay or a log line under a lock... Empty is good. */
std::vector<std::string> faults();

/* --------------------------------------------------------------------------------------------------------- clock */

/* Milliseconds since the reset. */
u64 now();

/* What AppGetTick shows at this moment; time goes on from there. */
void setTick(u32 tick);

/* Milliseconds that a tick lasts; 1 at start. */
void setTickLength(u32 milliseconds);

/* Lets time pass and runs every timer that becomes due, in order, at its own due time. */
void runFor(u64 milliseconds);

/* Lets time pass and runs nothing, as a handler or an exchange that takes this long does. */
void advance(u64 milliseconds);

/* The arguments of AppDelay so far. */
std::vector<u32> delays();

/* Called at the start of each AppDelay with its number, from 1, and its argument. */
void setDelayHook(std::function<void(u32 number, u32 milliseconds)> hook);

/* Called once, at the end of the count-th AppDelay from here on, after the timers. Several can wait at a time. */
void afterDelays(u32 count, std::function<void()> hook);

/* A test that never ends its loop is aborted after so many calls of AppDelay; 100000 at start. */
void setDelayLimit(u32 count);

/* ----------------------------------------------------------------------------------------------- tasks and timers */

struct TaskManager
{
    TAppTaskMgrHandle handle;
    TAppMemPoolHandle pool;
    u32 capacity;
};

struct Task
{
    TAppTaskHandle handle;
    TAppTaskMgrHandle manager;
    std::string name;
    u32 queueSize;
    u32 stackSize;
    u32 option1;
    u32 option2;
};

struct Event
{
    TAppTaskHandle task;
    u32 code;
    PFAppEvent handler;
    const void* context;
};

enum class TimerState
{
    kArmed,
    kFired,
    kCancelled
};

struct Timer
{
    TAppTimerHandle handle;
    TAppTaskHandle task;
    u32 milliseconds;
    u64 armedAt;
    u64 due;
    PFAppTimer handler;
    const void* context;
    TimerState state;
};

std::vector<TaskManager> taskManagers();
std::vector<Task> tasks();

/* Events that were sent and not yet run. */
std::vector<Event> pendingEvents();

/* Runs pending events, those that they send included, until there is none; says how many. Null is every task. */
u32 runEvents(TAppTaskHandle task = nullptr);

/* Every timer since the reset in the order of arming, and those that are armed now in the order of their due times. */
std::vector<Timer> timers();
std::vector<Timer> armedTimers();

/* What AppTaskCancelTimer was called with, in order: null and handles of timers that are gone included. */
std::vector<TAppTimerHandle> cancels();

/* --------------------------------------------------------------------------------------------------------- locks */

u32 lockTakes();
u32 lockGives();

/* Locks that are held at this moment by any thread. */
u32 locksHeld();

/* Called before each AppLockTakeByTime takes its lock, with the call's number from 1. */
void setLockHook(std::function<void(u32 number)> hook);

/* ------------------------------------------------------------------------------------------------ log and console */

/* Log lines as printed, their ends included, in order. */
std::vector<std::string> logLines();

/* Those that contain a text, for example "[PubSecStack ERR]". */
std::vector<std::string> logLinesWith(const std::string& text);

struct Command
{
    std::string name;
    PFAppCommand run;
    std::string help;
};

std::vector<Command> commands();

/* ---------------------------------------------------------------------------------------------------------- pool */

struct PoolCreation
{
    u32 option1;
    u32 option2;
    u32 option3;
    TAppMemPoolHandle handle;
};

enum class Release
{
    kPool,
    kService
};

struct BlockRelease
{
    Release by;
    TAppMemPoolHandle pool; /* null for the service */
    void* block;            /* may be null: such calls are recorded too */
    bool fromPool;          /* whether AppMemPoolMallocEx had given the block */
    std::string function;
};

std::vector<PoolCreation> pools();

/* Blocks, and bytes asked for, that AppMemPoolMallocEx gave and neither release function took back. */
size_t outstandingBlocks();
size_t outstandingBytes();

/* The sizes asked of AppMemPoolMallocEx, failed calls included. */
std::vector<size_t> allocations();
std::vector<BlockRelease> releases();

/* ------------------------------------------------------------------------------------------------ system service */

struct ClockSet
{
    TNvrSysTime time;
    u32 source;
};

struct TimeSwitch
{
    u32 mode;
    TNvrSysTime time; /* as passed in */
};

struct SecondsSwitch
{
    u32 mode;
    u32 seconds; /* as passed in */
};

/* Calls of the three functions in order, failed ones included. */
std::vector<ClockSet> clockSets();
std::vector<TimeSwitch> timeSwitches();
std::vector<SecondsSwitch> secondsSwitches();

/* What NvrSysTimeSwitch makes of a time; nothing at start. */
void setTimeSwitchHook(std::function<void(TNvrSysTime& time)> hook);

/* What NvrSysTimeSecSwitch adds in mode 1; 0 at start. */
void setZoneOffset(s32 seconds);

} // namespace fake_platform

#endif
