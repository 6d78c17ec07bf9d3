/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tasks and timers. Each task is a thread with one list of work: events, due when they were sent, and timers. It runs
 * them in the order of their due times, and those of the same time in the order in which they came. One mutex guards
 * everything here; it is free while a handler runs.
 */
#include "platform/posix/posix_platform.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "platform/posix/handle_table.h"
#include "platform/posix/include/pubsecplatform_posix.h"

using namespace posix_platform;

namespace
{

constexpr u32 kTimerElapsed = 4;
constexpr u32 kBaseInitDoneBefore = 102;

struct Work
{
    u64 due; /* nanoseconds of the monotonic clock */
    Work* previous;
    Work* next;
    PFAppEvent handler; /* timers have the same shape of handler */
    const void* context;
    u32 event;
    uintptr_t timer; /* 0 for an event */
    struct Task* task;
};

struct Manager
{
    u32 capacity;
    u32 tasks;
};

struct Task
{
    pthread_t thread;
    pthread_cond_t wake;
    uintptr_t handle;
    Work* first;
    Work* last;
    u32 events;
    u32 eventLimit;
    bool stop;
    char name[16]; /* the longest that a thread can have */
};

pthread_mutex_t g_mutex = PTHREAD_MUTEX_INITIALIZER;
HandleTable g_handles = {nullptr, 0, 0, 0};
bool g_baseReady = false;
bool g_stopping = false;

template <typename Object> Object* find(HandleKind kind, const void* handle)
{
    return static_cast<Object*>(findHandle(g_handles, kind, reinterpret_cast<uintptr_t>(handle)));
}

/* ------------------------------------------------------------------------------------------------ work lists */

/* Walks from the end: work is mostly due later than what is there, and behind others of the same time. */
void insertWork(Task& task, Work* work)
{
    Work* before = task.last;
    while (before != nullptr && before->due > work->due)
    {
        before = before->previous;
    }
    work->task = &task;
    work->previous = before;
    work->next = before != nullptr ? before->next : task.first;
    (before != nullptr ? before->next : task.first) = work;
    (work->next != nullptr ? work->next->previous : task.last) = work;
    if (task.first == work)
    {
        pthread_cond_signal(&task.wake);
    }
}

/* Takes work off its task's list and voids its handle. */
void removeWork(Work* work)
{
    Task& task = *work->task;
    (work->previous != nullptr ? work->previous->next : task.first) = work->next;
    (work->next != nullptr ? work->next->previous : task.last) = work->previous;
    if (work->timer != 0)
    {
        dropHandle(g_handles, work->timer);
    }
    else
    {
        --task.events;
    }
}

/* Waits for the first work of the task to be due and takes it; null when the task is to end. */
Work* takeDueWork(Task& task)
{
    MutexGuard guard(g_mutex);
    while (!task.stop)
    {
        Work* work = task.first;
        if (work == nullptr)
        {
            pthread_cond_wait(&task.wake, &g_mutex);
        }
        /* NOLINTNEXTLINE(clang-analyzer-unix.Malloc): work that was released had been taken off the list */
        else if (work->due > monotonicNanoseconds())
        {
            const timespec due = toTimespec(work->due);
            pthread_cond_timedwait(&task.wake, &g_mutex, &due);
        }
        else
        {
            removeWork(work);
            return work;
        }
    }
    return nullptr;
}

void* runTask(void* argument)
{
    Task& task = *static_cast<Task*>(argument);
    pthread_setname_np(pthread_self(), task.name);
    while (Work* work = takeDueWork(task))
    {
        work->handler(reinterpret_cast<TAppTaskHandle>(task.handle), work->event, work->context);
        free(work);
    }
    return nullptr;
}

/* ----------------------------------------------------------------------------------------- starting and ending */

bool startTaskThread(Task& task, u32 stackSize)
{
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0)
    {
        return false;
    }
    /* A size that the system refuses leaves its own default, which is larger. */
    pthread_attr_setstacksize(&attributes, stackSize);
    const bool started = startThread(&task.thread, &attributes, runTask, &task);
    pthread_attr_destroy(&attributes);
    return started;
}

/* Releases a task whose thread has ended or never ran. */
void destroyTask(Task* task)
{
    while (Work* work = task->first)
    {
        task->first = work->next;
        dropHandle(g_handles, work->timer);
        free(work);
    }
    dropHandle(g_handles, task->handle);
    pthread_cond_destroy(&task->wake);
    free(task);
}

Task* createTask(const char* name, u32 queueSize)
{
    Task* task = static_cast<Task*>(calloc(1, sizeof(Task)));
    if (task == nullptr)
    {
        return nullptr;
    }
    if (!initMonotonicCondition(&task->wake))
    {
        free(task);
        return nullptr;
    }
    task->eventLimit = queueSize;
    if (name != nullptr)
    {
        strncpy(task->name, name, sizeof(task->name) - 1);
    }
    task->handle = addHandle(g_handles, HandleKind::kTask, task);
    if (task->handle == 0)
    {
        destroyTask(task);
        return nullptr;
    }
    return task;
}

/* The objects of one kind are visited by their slots, as the table may grow when the mutex is free for a moment. */
void* objectAt(u32 index, HandleKind kind)
{
    const HandleSlot& slot = g_handles.slots[index];
    return slot.kind == kind ? slot.object : nullptr;
}

bool isTaskThread(pthread_t thread)
{
    for (u32 index = 0; index < g_handles.size; ++index)
    {
        const Task* task = static_cast<Task*>(objectAt(index, HandleKind::kTask));
        if (task != nullptr && pthread_equal(task->thread, thread))
        {
            return true;
        }
    }
    return false;
}

void tellTasksToStop()
{
    for (u32 index = 0; index < g_handles.size; ++index)
    {
        Task* task = static_cast<Task*>(objectAt(index, HandleKind::kTask));
        if (task != nullptr)
        {
            task->stop = true;
            pthread_cond_signal(&task->wake);
        }
    }
}

/* Joins each task with the mutex free, then releases it and the managers. */
void collectTasks()
{
    for (u32 index = 0; index < g_handles.size; ++index)
    {
        Task* task = static_cast<Task*>(objectAt(index, HandleKind::kTask));
        if (task != nullptr)
        {
            pthread_mutex_unlock(&g_mutex);
            pthread_join(task->thread, nullptr);
            pthread_mutex_lock(&g_mutex);
            destroyTask(task);
        }
    }
    for (u32 index = 0; index < g_handles.size; ++index)
    {
        Manager* manager = static_cast<Manager*>(objectAt(index, HandleKind::kManager));
        if (manager != nullptr)
        {
            const HandleSlot& slot = g_handles.slots[index];
            dropHandle(g_handles, slot.generation << kSlotBits | (index + 1));
            free(manager);
        }
    }
}

/* --------------------------------------------------------------------------------------------- queueing of work */

Work* createWork(u32 milliseconds, u32 event, PFAppEvent handler, const void* context)
{
    Work* work = static_cast<Work*>(calloc(1, sizeof(Work)));
    if (work != nullptr)
    {
        work->due = monotonicNanoseconds() + milliseconds * kNanosecondsPerMillisecond;
        work->event = event;
        work->handler = handler;
        work->context = context;
    }
    return work;
}

} // namespace

PLATFORM_FUNCTION u32 AppBaseInit(void)
{
    MutexGuard guard(g_mutex);
    const u32 result = g_baseReady ? kBaseInitDoneBefore : kDone;
    g_baseReady = true;
    return result;
}

PLATFORM_FUNCTION u32 AppTaskMgrCreate(TAppMemPoolHandle, u32 dwTaskCapacity, TAppTaskMgrHandle* phTaskMgr)
{
    if (phTaskMgr == nullptr)
    {
        return kBadArgument;
    }
    MutexGuard guard(g_mutex);
    if (g_stopping)
    {
        return kStopping;
    }
    Manager* manager = static_cast<Manager*>(calloc(1, sizeof(Manager)));
    const uintptr_t handle = manager != nullptr ? addHandle(g_handles, HandleKind::kManager, manager) : 0;
    if (handle == 0)
    {
        free(manager);
        return kNoMemory;
    }
    manager->capacity = dwTaskCapacity;
    *phTaskMgr = reinterpret_cast<TAppTaskMgrHandle>(handle);
    return kDone;
}

PLATFORM_FUNCTION u32 AppTaskMgrNewTask(TAppTaskMgrHandle hTaskMgr, const char* pchName, u32 dwQueueSize,
                                        u32 dwStackSize, u32, u32, TAppTaskHandle* phTask)
{
    MutexGuard guard(g_mutex);
    Manager* manager = find<Manager>(HandleKind::kManager, hTaskMgr);
    if (manager == nullptr || phTask == nullptr)
    {
        return kBadArgument;
    }
    if (g_stopping)
    {
        return kStopping;
    }
    if (manager->tasks >= manager->capacity)
    {
        return kFull;
    }
    Task* task = createTask(pchName, dwQueueSize);
    if (task == nullptr)
    {
        return kNoMemory;
    }
    if (!startTaskThread(*task, dwStackSize))
    {
        destroyTask(task);
        return kNoThread;
    }
    ++manager->tasks;
    *phTask = reinterpret_cast<TAppTaskHandle>(task->handle);
    return kDone;
}

PLATFORM_FUNCTION u32 AppTaskSendEvent(TAppTaskHandle hTask, u32 dwEvent, PFAppEvent pfHandler, const void* pvContext)
{
    MutexGuard guard(g_mutex);
    Task* task = find<Task>(HandleKind::kTask, hTask);
    if (task == nullptr || pfHandler == nullptr)
    {
        return kBadArgument;
    }
    if (task->stop)
    {
        return kStopping;
    }
    if (task->events >= task->eventLimit)
    {
        return kFull;
    }
    Work* work = createWork(0, dwEvent, pfHandler, pvContext);
    if (work == nullptr)
    {
        return kNoMemory;
    }
    ++task->events;
    insertWork(*task, work);
    return kDone;
}

PLATFORM_FUNCTION TAppTimerHandle AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                                  const void* pvContext)
{
    MutexGuard guard(g_mutex);
    Task* task = find<Task>(HandleKind::kTask, hTask);
    if (task == nullptr || pfHandler == nullptr || task->stop)
    {
        return nullptr;
    }
    Work* work = createWork(dwMilliseconds, kTimerElapsed, pfHandler, pvContext);
    if (work == nullptr)
    {
        return nullptr;
    }
    work->timer = addHandle(g_handles, HandleKind::kTimer, work);
    if (work->timer == 0)
    {
        free(work);
        return nullptr;
    }
    insertWork(*task, work);
    return reinterpret_cast<TAppTimerHandle>(work->timer);
}

PLATFORM_FUNCTION u32 AppTaskCancelTimer(TAppTimerHandle hTimer)
{
    MutexGuard guard(g_mutex);
    Work* work = find<Work>(HandleKind::kTimer, hTimer);
    if (work != nullptr)
    {
        removeWork(work);
        free(work);
    }
    return kDone;
}

u32 PosixPlatformStop(void)
{
    MutexGuard guard(g_mutex);
    if (g_stopping || isTaskThread(pthread_self()))
    {
        return kStopping;
    }
    g_stopping = true;
    tellTasksToStop();
    collectTasks();
    g_baseReady = false;
    g_stopping = false;
    return kDone;
}
