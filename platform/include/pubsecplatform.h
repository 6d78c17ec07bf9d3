/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's side of the stack: what a device's firmware supplies so that the stack can run on it.
 *
 * Every function here is called by the stack and implemented by the host; platform/posix is an implementation on
 * pthreads, docs/porting.md a guide to making another. The functions have C linkage. Unless a function says otherwise
 * it is called from any thread, several at a time, must not call back into the stack, and must not block longer than
 * the work it names. AppLockCreate, AppLockTakeByTime and AppLockGive are needed while the library is being loaded; all
 * others only once the host has called the stack, which may be before PubSecStackInit.
 *
 * Result convention of the families below: 0 is success, any other value a failure whose number the stack only prints.
 * The system service has a convention of its own: 1000 is success.
 *
 * What the stack passes is never null unless a function says so. Texts that are passed in (names, help, functions for
 * tracing) are constants that stay as long as the library is loaded.
 */
#ifndef PUBSECPLATFORM_H
#define PUBSECPLATFORM_H

#include <stdarg.h>

#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/* Handles are pointer-sized and opaque; null is "none". */
typedef struct TAppMemPool* TAppMemPoolHandle;
typedef struct TAppTaskMgr* TAppTaskMgrHandle;
typedef struct TAppTask* TAppTaskHandle;
typedef struct TAppTimer* TAppTimerHandle;
typedef struct TAppLock* TAppLockHandle;

/* ------------------------------------------------------------------------------------------------- log sink */

/*
 * Prints one log line. nArg1 is always 1 and nArg2 always 0; the rest is as in printf. The format carries its own line
 * end, and one call is one line: lines of two threads must not be mixed. Called from every thread of the stack and from
 * the host's threads that are inside it, never under a lock; a line may be up to 16 MiB when the log level is 2 or
 * more, because answers are logged whole, so the sink cuts what it cannot take. Nothing is printed at log level 0 but
 * by file uploads. A sink that blocks holds the stack up.
 */
#if defined(__GNUC__)
__attribute__((format(printf, 3, 4)))
#endif
void TlxPrintf(s32 nArg1, s32 nArg2, const char* pchFormat, ...);

/* ------------------------------------------------------------------------------------------ tasks and timers */

/* What a task runs for a posted event. */
typedef void (*PFAppEvent)(TAppTaskHandle hTask, u32 dwEvent, const void* pvContext);

/* What a task runs when a timer is due. dwEvent is 4 for an elapsed timer; handlers ignore every other code. */
typedef void (*PFAppTimer)(TAppTaskHandle hTask, u32 dwEvent, const void* pvContext);

/*
 * Prepares the host's base library, whatever that means to it: the first call of PubSecStackInit. 0 = done, 102 = had
 * been done before, by the stack or by others; both are taken as success.
 */
u32 AppBaseInit(void);

/*
 * Creates the owner of tasks and stores its handle. dwTaskCapacity is the largest number of tasks that it will be asked
 * for: the stack passes 32 and creates three. PubSecStackInit after PubSecStackUnInit creates another manager and
 * another three tasks; the former ones are never released by the stack.
 */
u32 AppTaskMgrCreate(TAppMemPoolHandle hPool, u32 dwTaskCapacity, TAppTaskMgrHandle* phTaskMgr);

/*
 * Creates a named task and stores its handle: a thread with a queue of events and timers that it runs one after the
 * other, in the order in which they were sent or became due. dwQueueSize, 1024, is how many events may wait, and
 * dwStackSize, 0x100000, the bytes of the thread's stack; the two options are 0. The handlers make HTTP exchanges and
 * may block for a minute or more, and the register task's first event runs until PubSecStackUnInit, so each task needs
 * a thread of its own. Names are up to 19 characters; a host that has less room cuts them.
 */
u32 AppTaskMgrNewTask(TAppTaskMgrHandle hTaskMgr, const char* pchName, u32 dwQueueSize, u32 dwStackSize, u32 dwOption1,
                      u32 dwOption2, TAppTaskHandle* phTask);

/*
 * Queues pfHandler(hTask, dwEvent, pvContext) on the task and returns at once; fails when the queue is full. No lock of
 * the host may be held while the handler runs, since it arms and cancels timers itself.
 */
u32 AppTaskSendEvent(TAppTaskHandle hTask, u32 dwEvent, PFAppEvent pfHandler, const void* pvContext);

/*
 * Arms a one-shot timer: after dwMilliseconds, by a clock that setting the time does not move, the task runs
 * pfHandler(hTask, 4, pvContext), never early, and timers of the same instant in the order of arming. Every value is
 * possible, from 0, which is due at once, to 0xFFFFFFFF, some 49 days. Returns the timer's handle, or null when it
 * cannot be armed, which stops the activity until the platform registers anew. Called from any thread, from handlers
 * too; the timer may run before the call returns. At most eight timers are armed at a time. A handle stays valid as an
 * argument of AppTaskCancelTimer for ever: it must not be re-used for another timer while a caller may still hold it. A
 * pointer to memory that is released when the timer has run won't do; a counter, or the number of a slot together with
 * how often the slot has been used, will.
 */
TAppTimerHandle AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler, const void* pvContext);

/*
 * Disarms a timer that its task has not taken up yet. Does nothing for null and for a timer that fired or was cancelled
 * before; does not wait for a handler that is running or about to (it is called from handlers, from the timer's own
 * too). The result is not looked at.
 */
u32 AppTaskCancelTimer(TAppTimerHandle hTimer);

/* ------------------------------------------------------------------------------------------------------ pool */

/* Creates a memory pool and stores its handle; the stack passes 0, 1, 0 and never releases it. */
u32 AppMemPoolCreate(u32 dwOption1, u32 dwOption2, u32 dwOption3, TAppMemPoolHandle* phPool);

/*
 * Takes dwSize bytes from the pool, aligned for any type; null when there are none. The pool holds the copies that the
 * record duplicators make, which the host releases: up to 256 sub-images and their texts for a record, megabytes with
 * pictures in them. hPool is null when a record is copied before PubSecStackInit. The name and line are for tracing.
 */
void* AppMemPoolMallocEx(TAppMemPoolHandle hPool, size_t dwSize, const char* pchFunction, u32 dwLine);

/*
 * Gives a block back, on any thread. A null block is ignored. hPool may be null when a record is released before
 * PubSecStackInit, and differs from the block's own after a restart of the stack: release by the block alone.
 */
void AppMemPoolFreeEx(TAppMemPoolHandle hPool, void* pvBlock, const char* pchFunction, u32 dwLine);

/* ----------------------------------------------------------------------------------------------------- locks */

/*
 * Creates a lock that one thread holds at a time. Called while the library is being loaded, before main and before the
 * constructors of the host have run, so it must not rest on anything that these or AppBaseInit prepare. A few locks are
 * made in all; they are never released. Null when that cannot be done.
 */
TAppLockHandle AppLockCreate(void);

/*
 * Takes the lock; dwMilliseconds 0, which is all that the stack passes, waits until it is free, any other value at most
 * that long. Returns 0 when taken. The stack never takes it twice, and never holds it across an exchange, a delay or a
 * callback.
 */
u32 AppLockTakeByTime(TAppLockHandle hLock, u32 dwMilliseconds);

/* Gives the lock back; called by the thread that took it. */
u32 AppLockGive(TAppLockHandle hLock);

/* ----------------------------------------------------------------------------------------- ticks and delays */

/* Sleeps for at least dwMilliseconds: 1000 between two passes of the register loop, 1 after a block of an upload. */
void AppDelay(u32 dwMilliseconds);

/* The current tick of a clock that setting the time does not move; it wraps. A tick may last as long as the host likes.
 */
u32 AppGetTick(void);

/* Ticks from dwStart to dwEnd, across a wrap. */
u32 AppTickDiff(u32 dwStart, u32 dwEnd);

/* Ticks in milliseconds. */
u32 AppConvertTickToMS(u32 dwTicks);

/* A broken-down time as AppConvertU32ToTime fills it; the same layout as TPubSecTime. */
typedef struct
{
    u16 wYear;
    u8 byMonth;
    u8 byDay;
    u8 byHour;
    u8 byMinute;
    u8 bySecond;
} TAppTime;

/* Breaks seconds since 1970-01-01 00:00:00 down (month and day from 1), with no time-zone rule of its own. */
void AppConvertU32ToTime(u32 dwSeconds, TAppTime* ptTime);

/* -------------------------------------------------------------------------------------------------- console */

/* A console command takes the first number of its command line and returns what the console shows. */
typedef s32 (*PFAppCommand)(s32 nArgument);

/*
 * Makes pchName callable from the host's console; pchHelp is shown on request. A name that is registered again, as
 * after a restart of the stack, takes the place of the former. The result is not looked at.
 */
u32 AppRegCommand(const char* pchName, PFAppCommand pfCommand, const char* pchHelp);

/* --------------------------------------------------------------------------------------- strings and memory */

/*
 * As strcmp, strncpy (pads, and does not terminate a full copy), strstr, strchr, strlen, snprintf, memcpy, memcmp, and
 * memset with zeros. A size of 0 does nothing, whatever the pointers are. Used before PubSecStackInit too.
 */
s32 AppStrcmp(const char* pchLeft, const char* pchRight);
char* AppStrncpy(char* pchDest, const char* pchSrc, size_t size);
char* AppStrstr(const char* pchText, const char* pchPart);
char* AppStrchr(const char* pchText, s32 nChar);
size_t AppStrlen(const char* pchText);
#if defined(__GNUC__)
__attribute__((format(printf, 3, 4)))
#endif
s32 AppSnprintf(char* pchDest, size_t size, const char* pchFormat, ...);
void* AppMemcpy(void* pvDest, const void* pvSrc, size_t size);
s32 AppMemcmp(const void* pvLeft, const void* pvRight, size_t size);
void AppMemzero(void* pvDest, size_t size);

/* -------------------------------------------------------------------------------------------- system service */

/* A wall-clock time handed to the system service: 20 bytes, those after bySecond are zero. */
typedef struct
{
    u16 wYear;
    u8 byMonth;
    u8 byDay;
    u8 byHour;
    u8 byMinute;
    u8 bySecond;
    u8 abyReserved[13];
} TNvrSysTime;

/* What the system service returns on success. */
#define NVR_SYS_OK 1000u

/*
 * Converts ptTime in place before it is set. The stack passes mode 0: from the server's time, the local time that its
 * clock answer carries, to what NvrSysSetSystemTime of this host wants. Any result but 1000 keeps the time from being
 * set.
 */
u32 NvrSysTimeSwitch(u32 dwMode, TNvrSysTime* ptTime);

/*
 * Sets the device's clock. dwSource says who asks: 8 for platform 0, 9 for platform 1. Fields are not range-checked:
 * they are what digits the server sent, second 60 or month 0 included, so the host refuses or carries over. Must move
 * neither timers nor ticks nor delays. Called from the delay task.
 */
u32 NvrSysSetSystemTime(const TNvrSysTime* ptTime, u32 dwSource);

/*
 * Moves seconds since 1970 in place. Mode 1, all that the stack passes: from UTC to the time zone that the device
 * shows, for AppConvertU32ToTime to break down. The result is not looked at.
 */
u32 NvrSysTimeSecSwitch(u32 dwMode, u32* pdwSeconds);

/*
 * Releases a block that the host's system service had given and the host put into a record, when the record is released
 * with mode 2. A null block is ignored. The name and line are for tracing.
 */
void NvrSrvFree(void* pvBlock, const char* pchFunction, u32 dwLine);

PUBSEC_C_END

#endif
