/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/fake_platform.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
#include <mutex>
#include <thread>

/* A test can bring its own version of any function. */
#ifndef FAKE_FUNCTION
#define FAKE_FUNCTION __attribute__((weak))
#endif

namespace fake_platform
{

namespace
{

constexpr u32 kTimerElapsed = 4;
constexpr u32 kFirstTick = 12345; /* not 0, which an unset tick would be */
constexpr u32 kDelayLimit = 100000;
constexpr u32 kTimerLimit = 1000000;

struct Script
{
    u32 pass = 0;
    u32 fail = 0;
    u32 result = 0;
};

struct WaitingHook
{
    u32 atDelay;
    std::function<void()> run;
};

struct Block
{
    size_t size;
    std::string function;
};

/* What a reset puts back. */
struct State
{
    Script scripts[static_cast<size_t>(Function::kCount)];
    u32 calls[static_cast<size_t>(Function::kCount)] = {};
    std::vector<std::string> journal;
    std::vector<std::string> faults;

    u64 now = 0;
    u32 tickAtZero = kFirstTick;
    u32 tickLength = 1;
    std::vector<u32> delays;
    u32 delayLimit = kDelayLimit;
    std::function<void(u32, u32)> delayHook;
    std::vector<WaitingHook> waitingHooks;

    std::vector<TaskManager> taskManagers;
    std::vector<Task> tasks;
    std::vector<Event> pendingEvents;
    std::vector<Timer> timers;
    std::multimap<u64, size_t> armed; /* due time to index; equal times stay in the order of arming */
    std::vector<TAppTimerHandle> cancels;
    bool timersRun = false; /* a timer's handler is running */
    u32 timersFired = 0;

    u32 lockTakes = 0;
    u32 lockGives = 0;
    std::function<void(u32)> lockHook;

    std::vector<std::string> logLines;
    std::vector<Command> commands;

    std::vector<PoolCreation> pools;
    std::map<void*, Block> blocks;
    std::vector<size_t> allocations;
    std::vector<BlockRelease> releases;

    std::vector<ClockSet> clockSets;
    std::vector<TimeSwitch> timeSwitches;
    std::vector<SecondsSwitch> secondsSwitches;
    std::function<void(TNvrSysTime&)> timeSwitchHook;
    s32 zoneOffset = 0;
};

/* What outlives a reset. */
struct World
{
    std::mutex mutex; /* guards all but the locks' own mutexes; free while a hook or a handler runs */
    State state;
    uintptr_t lastHandle = 0x1000; /* handles are numbers that are never given twice */
    u32 locksHeld = 0;
};

/* Made by whoever comes first, a library constructor perhaps, and never destroyed. */
World& world()
{
    static World* const only = new World;
    return *only;
}

State& state()
{
    return world().state;
}

using Guard = std::lock_guard<std::mutex>;

/* The caller of the following functions holds the mutex. */

template <typename Handle> Handle newHandle()
{
    return reinterpret_cast<Handle>(++world().lastHandle);
}

/* Counts a call; true and the result when its script says that it fails. */
bool failsNow(Function function, u32* result = nullptr)
{
    const size_t index = static_cast<size_t>(function);
    ++state().calls[index];
    Script& script = state().scripts[index];
    if (script.pass > 0)
    {
        --script.pass;
        return false;
    }
    if (script.fail == 0)
    {
        return false;
    }
    --script.fail;
    if (result != nullptr)
    {
        *result = script.result;
    }
    return true;
}

void note(const std::string& entry)
{
    state().journal.push_back(entry);
}

void fault(const std::string& text)
{
    state().faults.push_back(text);
}

std::string textOf(const char* text)
{
    return text != nullptr ? text : "(null)";
}

template <typename Value> std::vector<Value> copyOf(const std::vector<Value>& values)
{
    const Guard guard(world().mutex);
    return values;
}

[[noreturn]] void giveUp(const char* reason)
{
    std::fprintf(stderr, "fake platform: %s\n", reason);
    std::abort();
}

} // namespace

/* ------------------------------------------------------------------------------------------------------- scripts */

void reset()
{
    const Guard guard(world().mutex);
    state() = State();
}

void fail(Function function, u32 result, u32 times, u32 afterCalls)
{
    const Guard guard(world().mutex);
    state().scripts[static_cast<size_t>(function)] = {afterCalls, times, result};
}

void stopFailing(Function function)
{
    const Guard guard(world().mutex);
    state().scripts[static_cast<size_t>(function)] = Script();
}

u32 calls(Function function)
{
    const Guard guard(world().mutex);
    return state().calls[static_cast<size_t>(function)];
}

std::vector<std::string> journal()
{
    return copyOf(state().journal);
}

std::vector<std::string> faults()
{
    return copyOf(state().faults);
}

/* --------------------------------------------------------------------------------------------------------- locks */

} // namespace fake_platform

struct TAppLock
{
    std::timed_mutex mutex;
    std::atomic<std::thread::id> owner;
};

namespace fake_platform
{

namespace
{

/* Locks that this thread holds. */
thread_local u32 t_locksHeld = 0;

void checkNoLock(const char* function)
{
    if (t_locksHeld > 0)
    {
        fault(std::string(function) + " under a lock");
    }
}

bool takeMutex(TAppLock& lock, u32 milliseconds)
{
    if (milliseconds == 0)
    {
        lock.mutex.lock();
        return true;
    }
    return lock.mutex.try_lock_for(std::chrono::milliseconds(milliseconds));
}

} // namespace

u32 lockTakes()
{
    const Guard guard(world().mutex);
    return state().lockTakes;
}

u32 lockGives()
{
    const Guard guard(world().mutex);
    return state().lockGives;
}

u32 locksHeld()
{
    const Guard guard(world().mutex);
    return world().locksHeld;
}

void setLockHook(std::function<void(u32)> hook)
{
    const Guard guard(world().mutex);
    state().lockHook = std::move(hook);
}

/* --------------------------------------------------------------------------------------------------------- clock */

namespace
{

/* Takes the first timer that is due by `until` and sets the clock to it; false when there is none. */
bool takeTimer(u64 until, Timer* taken)
{
    const Guard guard(world().mutex);
    const auto first = state().armed.begin();
    if (first == state().armed.end() || first->first > until)
    {
        return false;
    }
    if (++state().timersFired > kTimerLimit)
    {
        giveUp("timers re-arm each other without end");
    }
    Timer& timer = state().timers[first->second];
    state().armed.erase(first);
    timer.state = TimerState::kFired;
    state().now = std::max(state().now, timer.due);
    *taken = timer;
    return true;
}

/* Whoever gets true runs the timers; a handler that delays, or another thread, only lets time pass. */
bool claimTimers()
{
    const Guard guard(world().mutex);
    const bool claimed = !state().timersRun;
    state().timersRun = true;
    return claimed;
}

void passTime(u64 milliseconds)
{
    u64 until = now() + milliseconds;
    if (claimTimers())
    {
        Timer timer;
        while (takeTimer(until, &timer))
        {
            timer.handler(timer.task, kTimerElapsed, timer.context);
        }
        const Guard guard(world().mutex);
        state().timersRun = false;
    }
    const Guard guard(world().mutex);
    state().now = std::max(state().now, until);
}

/* The hooks whose turn has come, taken off the list. */
std::vector<WaitingHook> takeHooks()
{
    const Guard guard(world().mutex);
    std::vector<WaitingHook>& waiting = state().waitingHooks;
    const u32 done = static_cast<u32>(state().delays.size());
    const auto ripe = std::stable_partition(waiting.begin(), waiting.end(),
                                            [done](const WaitingHook& hook) { return hook.atDelay > done; });
    std::vector<WaitingHook> taken(ripe, waiting.end());
    waiting.erase(ripe, waiting.end());
    return taken;
}

} // namespace

u64 now()
{
    const Guard guard(world().mutex);
    return state().now;
}

void setTick(u32 tick)
{
    const Guard guard(world().mutex);
    state().tickAtZero = tick - static_cast<u32>(state().now / state().tickLength);
}

void setTickLength(u32 milliseconds)
{
    const Guard guard(world().mutex);
    state().tickLength = milliseconds;
}

void runFor(u64 milliseconds)
{
    passTime(milliseconds);
}

void advance(u64 milliseconds)
{
    const Guard guard(world().mutex);
    state().now += milliseconds;
}

std::vector<u32> delays()
{
    return copyOf(state().delays);
}

void setDelayHook(std::function<void(u32, u32)> hook)
{
    const Guard guard(world().mutex);
    state().delayHook = std::move(hook);
}

void afterDelays(u32 count, std::function<void()> hook)
{
    const Guard guard(world().mutex);
    state().waitingHooks.push_back({static_cast<u32>(state().delays.size()) + count, std::move(hook)});
}

void setDelayLimit(u32 count)
{
    const Guard guard(world().mutex);
    state().delayLimit = count;
}

/* ----------------------------------------------------------------------------------------------- tasks and timers */

namespace
{

bool takeEvent(TAppTaskHandle task, Event* taken)
{
    const Guard guard(world().mutex);
    std::vector<Event>& events = state().pendingEvents;
    const auto event = std::find_if(events.begin(), events.end(), [task](const Event& candidate) {
        return task == nullptr || candidate.task == task;
    });
    if (event == events.end())
    {
        return false;
    }
    *taken = *event;
    events.erase(event);
    return true;
}

} // namespace

std::vector<TaskManager> taskManagers()
{
    return copyOf(state().taskManagers);
}

std::vector<Task> tasks()
{
    return copyOf(state().tasks);
}

std::vector<Event> pendingEvents()
{
    return copyOf(state().pendingEvents);
}

u32 runEvents(TAppTaskHandle task)
{
    u32 count = 0;
    for (Event event; takeEvent(task, &event); ++count)
    {
        event.handler(event.task, event.code, event.context);
    }
    return count;
}

std::vector<Timer> timers()
{
    return copyOf(state().timers);
}

std::vector<Timer> armedTimers()
{
    const Guard guard(world().mutex);
    std::vector<Timer> armed;
    for (const auto& entry : state().armed)
    {
        armed.push_back(state().timers[entry.second]);
    }
    return armed;
}

std::vector<TAppTimerHandle> cancels()
{
    return copyOf(state().cancels);
}

/* ------------------------------------------------------------------------------------------------ log and console */

std::vector<std::string> logLines()
{
    return copyOf(state().logLines);
}

std::vector<std::string> logLinesWith(const std::string& text)
{
    std::vector<std::string> lines = logLines();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [&text](const std::string& line) { return line.find(text) == std::string::npos; }),
                lines.end());
    return lines;
}

std::vector<Command> commands()
{
    return copyOf(state().commands);
}

/* ---------------------------------------------------------------------------------------------------------- pool */

namespace
{

void release(Release by, TAppMemPoolHandle pool, void* block, const char* function)
{
    const Guard guard(world().mutex);
    failsNow(by == Release::kPool ? Function::kMemPoolFree : Function::kSrvFree);
    const bool fromPool = state().blocks.erase(block) > 0;
    state().releases.push_back({by, pool, block, fromPool, textOf(function)});
    std::free(block);
}

} // namespace

std::vector<PoolCreation> pools()
{
    return copyOf(state().pools);
}

size_t outstandingBlocks()
{
    const Guard guard(world().mutex);
    return state().blocks.size();
}

size_t outstandingBytes()
{
    const Guard guard(world().mutex);
    size_t bytes = 0;
    for (const auto& entry : state().blocks)
    {
        bytes += entry.second.size;
    }
    return bytes;
}

std::vector<size_t> allocations()
{
    return copyOf(state().allocations);
}

std::vector<BlockRelease> releases()
{
    return copyOf(state().releases);
}

/* ------------------------------------------------------------------------------------------------ system service */

std::vector<ClockSet> clockSets()
{
    return copyOf(state().clockSets);
}

std::vector<TimeSwitch> timeSwitches()
{
    return copyOf(state().timeSwitches);
}

std::vector<SecondsSwitch> secondsSwitches()
{
    return copyOf(state().secondsSwitches);
}

void setTimeSwitchHook(std::function<void(TNvrSysTime&)> hook)
{
    const Guard guard(world().mutex);
    state().timeSwitchHook = std::move(hook);
}

void setZoneOffset(s32 seconds)
{
    const Guard guard(world().mutex);
    state().zoneOffset = seconds;
}

} // namespace fake_platform

/* --------------------------------------------------------------------------------- the functions of the host interface
 */

using namespace fake_platform;

FAKE_FUNCTION void TlxPrintf(s32 nArg1, s32 nArg2, const char* pchFormat, ...)
{
    va_list arguments;
    va_start(arguments, pchFormat);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, pchFormat, arguments);
    va_end(arguments);
    std::string line(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(line.data(), line.size(), pchFormat, again);
    va_end(again);
    line.pop_back();

    const Guard guard(world().mutex);
    failsNow(Function::kPrintf);
    if (nArg1 != 1 || nArg2 != 0)
    {
        fault("TlxPrintf with " + std::to_string(nArg1) + ", " + std::to_string(nArg2));
    }
    checkNoLock("TlxPrintf");
    state().logLines.push_back(line);
}

FAKE_FUNCTION u32 AppBaseInit(void)
{
    const Guard guard(world().mutex);
    note("AppBaseInit()");
    u32 result = 0;
    failsNow(Function::kBaseInit, &result);
    return result;
}

FAKE_FUNCTION u32 AppTaskMgrCreate(TAppMemPoolHandle hPool, u32 dwTaskCapacity, TAppTaskMgrHandle* phTaskMgr)
{
    const Guard guard(world().mutex);
    note("AppTaskMgrCreate(" + std::to_string(dwTaskCapacity) + ")");
    u32 result = 0;
    if (!failsNow(Function::kTaskMgrCreate, &result))
    {
        *phTaskMgr = newHandle<TAppTaskMgrHandle>();
        state().taskManagers.push_back({*phTaskMgr, hPool, dwTaskCapacity});
    }
    return result;
}

FAKE_FUNCTION u32 AppTaskMgrNewTask(TAppTaskMgrHandle hTaskMgr, const char* pchName, u32 dwQueueSize, u32 dwStackSize,
                                    u32 dwOption1, u32 dwOption2, TAppTaskHandle* phTask)
{
    const Guard guard(world().mutex);
    note("AppTaskMgrNewTask(" + textOf(pchName) + ")");
    u32 result = 0;
    if (!failsNow(Function::kTaskMgrNewTask, &result))
    {
        *phTask = newHandle<TAppTaskHandle>();
        state().tasks.push_back({*phTask, hTaskMgr, textOf(pchName), dwQueueSize, dwStackSize, dwOption1, dwOption2});
    }
    return result;
}

FAKE_FUNCTION u32 AppTaskSendEvent(TAppTaskHandle hTask, u32 dwEvent, PFAppEvent pfHandler, const void* pvContext)
{
    const Guard guard(world().mutex);
    note("AppTaskSendEvent(" + std::to_string(dwEvent) + ")");
    u32 result = 0;
    if (!failsNow(Function::kTaskSendEvent, &result))
    {
        state().pendingEvents.push_back({hTask, dwEvent, pfHandler, pvContext});
    }
    return result;
}

FAKE_FUNCTION TAppTimerHandle AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                              const void* pvContext)
{
    const Guard guard(world().mutex);
    note("AppTaskSetTimer(" + std::to_string(dwMilliseconds) + ")");
    if (failsNow(Function::kTaskSetTimer))
    {
        return nullptr;
    }
    State& s = state();
    s.armed.emplace(s.now + dwMilliseconds, s.timers.size());
    s.timers.push_back({newHandle<TAppTimerHandle>(), hTask, dwMilliseconds, s.now, s.now + dwMilliseconds, pfHandler,
                        pvContext, TimerState::kArmed});
    return s.timers.back().handle;
}

FAKE_FUNCTION u32 AppTaskCancelTimer(TAppTimerHandle hTimer)
{
    const Guard guard(world().mutex);
    note("AppTaskCancelTimer()");
    state().cancels.push_back(hTimer);
    u32 result = 0;
    if (failsNow(Function::kTaskCancelTimer, &result))
    {
        return result;
    }
    for (auto entry = state().armed.begin(); entry != state().armed.end(); ++entry)
    {
        Timer& timer = state().timers[entry->second];
        if (timer.handle == hTimer)
        {
            timer.state = TimerState::kCancelled;
            state().armed.erase(entry);
            break;
        }
    }
    return 0;
}

FAKE_FUNCTION u32 AppMemPoolCreate(u32 dwOption1, u32 dwOption2, u32 dwOption3, TAppMemPoolHandle* phPool)
{
    const Guard guard(world().mutex);
    note("AppMemPoolCreate(" + std::to_string(dwOption1) + ", " + std::to_string(dwOption2) + ", " +
         std::to_string(dwOption3) + ")");
    u32 result = 0;
    if (!failsNow(Function::kMemPoolCreate, &result))
    {
        *phPool = newHandle<TAppMemPoolHandle>();
        state().pools.push_back({dwOption1, dwOption2, dwOption3, *phPool});
    }
    return result;
}

FAKE_FUNCTION void* AppMemPoolMallocEx(TAppMemPoolHandle, size_t dwSize, const char* pchFunction, u32)
{
    const Guard guard(world().mutex);
    state().allocations.push_back(dwSize);
    if (failsNow(Function::kMemPoolMalloc))
    {
        return nullptr;
    }
    void* block = std::malloc(dwSize == 0 ? 1 : dwSize);
    if (block != nullptr)
    {
        state().blocks[block] = {dwSize, textOf(pchFunction)};
    }
    return block;
}

FAKE_FUNCTION void AppMemPoolFreeEx(TAppMemPoolHandle hPool, void* pvBlock, const char* pchFunction, u32)
{
    release(Release::kPool, hPool, pvBlock, pchFunction);
}

FAKE_FUNCTION void NvrSrvFree(void* pvBlock, const char* pchFunction, u32)
{
    release(Release::kService, nullptr, pvBlock, pchFunction);
}

FAKE_FUNCTION TAppLockHandle AppLockCreate(void)
{
    const Guard guard(world().mutex);
    return failsNow(Function::kLockCreate) ? nullptr : new TAppLock();
}

FAKE_FUNCTION u32 AppLockTakeByTime(TAppLockHandle hLock, u32 dwMilliseconds)
{
    std::function<void(u32)> hook;
    u32 number = 0;
    u32 result = 0;
    {
        const Guard guard(world().mutex);
        number = ++state().lockTakes;
        hook = state().lockHook;
        if (failsNow(Function::kLockTake, &result))
        {
            return result;
        }
        if (hLock == nullptr || hLock->owner == std::this_thread::get_id())
        {
            fault(hLock == nullptr ? "no lock to take" : "a lock taken twice");
            return 1;
        }
    }
    if (hook)
    {
        hook(number);
    }
    if (!takeMutex(*hLock, dwMilliseconds))
    {
        return 1;
    }
    hLock->owner = std::this_thread::get_id();
    ++t_locksHeld;
    const Guard guard(world().mutex);
    ++world().locksHeld;
    return 0;
}

FAKE_FUNCTION u32 AppLockGive(TAppLockHandle hLock)
{
    {
        const Guard guard(world().mutex);
        ++state().lockGives;
        failsNow(Function::kLockGive);
        if (hLock == nullptr || hLock->owner != std::this_thread::get_id())
        {
            fault("a lock given that this thread does not hold");
            return 1;
        }
        --world().locksHeld;
    }
    --t_locksHeld;
    hLock->owner = std::thread::id();
    hLock->mutex.unlock();
    return 0;
}

FAKE_FUNCTION void AppDelay(u32 dwMilliseconds)
{
    std::function<void(u32, u32)> hook;
    u32 number = 0;
    {
        const Guard guard(world().mutex);
        failsNow(Function::kDelay);
        checkNoLock("AppDelay");
        state().delays.push_back(dwMilliseconds);
        number = static_cast<u32>(state().delays.size());
        if (number > state().delayLimit)
        {
            giveUp("too many calls of AppDelay: nothing ends the loop");
        }
        hook = state().delayHook;
    }
    if (hook)
    {
        hook(number, dwMilliseconds);
    }
    passTime(dwMilliseconds);
    for (const WaitingHook& ripe : takeHooks())
    {
        ripe.run();
    }
}

FAKE_FUNCTION u32 AppGetTick(void)
{
    const Guard guard(world().mutex);
    failsNow(Function::kGetTick);
    return state().tickAtZero + static_cast<u32>(state().now / state().tickLength);
}

FAKE_FUNCTION u32 AppTickDiff(u32 dwStart, u32 dwEnd)
{
    return dwEnd - dwStart;
}

FAKE_FUNCTION u32 AppConvertTickToMS(u32 dwTicks)
{
    const Guard guard(world().mutex);
    return dwTicks * state().tickLength;
}

FAKE_FUNCTION void AppConvertU32ToTime(u32 dwSeconds, TAppTime* ptTime)
{
    const std::time_t seconds = static_cast<std::time_t>(dwSeconds);
    std::tm fields;
    gmtime_r(&seconds, &fields);
    ptTime->wYear = static_cast<u16>(fields.tm_year + 1900);
    ptTime->byMonth = static_cast<u8>(fields.tm_mon + 1);
    ptTime->byDay = static_cast<u8>(fields.tm_mday);
    ptTime->byHour = static_cast<u8>(fields.tm_hour);
    ptTime->byMinute = static_cast<u8>(fields.tm_min);
    ptTime->bySecond = static_cast<u8>(fields.tm_sec);
}

FAKE_FUNCTION u32 AppRegCommand(const char* pchName, PFAppCommand pfCommand, const char* pchHelp)
{
    const Guard guard(world().mutex);
    note("AppRegCommand(" + textOf(pchName) + ")");
    u32 result = 0;
    if (!failsNow(Function::kRegCommand, &result))
    {
        state().commands.push_back({textOf(pchName), pfCommand, textOf(pchHelp)});
    }
    return result;
}

FAKE_FUNCTION u32 NvrSysTimeSwitch(u32 dwMode, TNvrSysTime* ptTime)
{
    std::function<void(TNvrSysTime&)> hook;
    {
        const Guard guard(world().mutex);
        note("NvrSysTimeSwitch(" + std::to_string(dwMode) + ")");
        state().timeSwitches.push_back({dwMode, *ptTime});
        u32 result = NVR_SYS_OK;
        if (failsNow(Function::kTimeSwitch, &result))
        {
            return result;
        }
        hook = state().timeSwitchHook;
    }
    if (hook)
    {
        hook(*ptTime);
    }
    return NVR_SYS_OK;
}

FAKE_FUNCTION u32 NvrSysSetSystemTime(const TNvrSysTime* ptTime, u32 dwSource)
{
    const Guard guard(world().mutex);
    note("NvrSysSetSystemTime(" + std::to_string(dwSource) + ")");
    state().clockSets.push_back({*ptTime, dwSource});
    u32 result = NVR_SYS_OK;
    failsNow(Function::kSetSystemTime, &result);
    return result;
}

FAKE_FUNCTION u32 NvrSysTimeSecSwitch(u32 dwMode, u32* pdwSeconds)
{
    const Guard guard(world().mutex);
    note("NvrSysTimeSecSwitch(" + std::to_string(dwMode) + ")");
    state().secondsSwitches.push_back({dwMode, *pdwSeconds});
    u32 result = NVR_SYS_OK;
    if (!failsNow(Function::kTimeSecSwitch, &result) && dwMode == 1)
    {
        *pdwSeconds += static_cast<u32>(state().zoneOffset);
    }
    return result;
}

FAKE_FUNCTION s32 AppStrcmp(const char* pchLeft, const char* pchRight)
{
    return std::strcmp(pchLeft, pchRight);
}

FAKE_FUNCTION char* AppStrncpy(char* pchDest, const char* pchSrc, size_t size)
{
    return std::strncpy(pchDest, pchSrc, size);
}

FAKE_FUNCTION char* AppStrstr(const char* pchText, const char* pchPart)
{
    return const_cast<char*>(std::strstr(pchText, pchPart));
}

FAKE_FUNCTION char* AppStrchr(const char* pchText, s32 nChar)
{
    return const_cast<char*>(std::strchr(pchText, nChar));
}

FAKE_FUNCTION size_t AppStrlen(const char* pchText)
{
    return std::strlen(pchText);
}

FAKE_FUNCTION s32 AppSnprintf(char* pchDest, size_t size, const char* pchFormat, ...)
{
    va_list arguments;
    va_start(arguments, pchFormat);
    const s32 length = std::vsnprintf(pchDest, size, pchFormat, arguments);
    va_end(arguments);
    return length;
}

FAKE_FUNCTION void* AppMemcpy(void* pvDest, const void* pvSrc, size_t size)
{
    return size == 0 ? pvDest : std::memcpy(pvDest, pvSrc, size);
}

FAKE_FUNCTION s32 AppMemcmp(const void* pvLeft, const void* pvRight, size_t size)
{
    return size == 0 ? 0 : std::memcmp(pvLeft, pvRight, size);
}

FAKE_FUNCTION void AppMemzero(void* pvDest, size_t size)
{
    if (size != 0)
    {
        std::memset(pvDest, 0, size);
    }
}
