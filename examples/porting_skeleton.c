/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A host platform to begin a port from: all of pubsecplatform.h in one file, with fixed tables and no heap but for the
 * pool. It runs as it stands, on POSIX threads; what a port exchanges is marked PORT. docs/porting.md tells the rules.
 *
 *     porting_skeleton                                          starts the stack, shows that it runs, and ends it
 *     porting_skeleton ADDRESS PORT DEVICE-ID USER PASSWORD     and registers at a server for ten seconds
 */
#define _POSIX_C_SOURCE 200809L

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include <pubsecplatform.h>
#include <pubsecstack/pubsecstack.h>

enum
{
    FAILED = 1,
    BASE_DONE_BEFORE = 102,
    TIMER_ELAPSED = 4,
    MAX_TASKS = 8,
    MAX_WORK = 64, /* events and timers that wait, of all tasks: a power of two */
    MAX_LOCKS = 8,
    MAX_COMMANDS = 8,
    LOG_LINE_SIZE = 1024
};

/* ---------------------------------------------------------------------------------- PORT: the operating system */

typedef pthread_mutex_t TOsMutex;
typedef pthread_cond_t TOsSignal;

#define OS_MUTEX_INIT PTHREAD_MUTEX_INITIALIZER /* usable without a call: the library is loaded before main */

static void OsTake(TOsMutex* ptMutex)
{
    pthread_mutex_lock(ptMutex);
}

static void OsGive(TOsMutex* ptMutex)
{
    pthread_mutex_unlock(ptMutex);
}

/* Milliseconds of a clock that setting the time does not move. */
static u64 OsUptime(void)
{
    struct timespec tNow;
    clock_gettime(CLOCK_MONOTONIC, &tNow);
    return (u64)tNow.tv_sec * 1000u + (u64)tNow.tv_nsec / 1000000u;
}

static void OsSleep(u32 dwMilliseconds)
{
    struct timespec tRest = {(time_t)(dwMilliseconds / 1000u), (long)(dwMilliseconds % 1000u) * 1000000};
    while (nanosleep(&tRest, &tRest) != 0)
    {
    }
}

static int OsSignalInit(TOsSignal* ptSignal)
{
    pthread_condattr_t tAttributes;
    pthread_condattr_init(&tAttributes);
    pthread_condattr_setclock(&tAttributes, CLOCK_MONOTONIC);
    const int nResult = pthread_cond_init(ptSignal, &tAttributes);
    pthread_condattr_destroy(&tAttributes);
    return nResult == 0;
}

static void OsSignal(TOsSignal* ptSignal)
{
    pthread_cond_signal(ptSignal);
}

/* Gives the mutex back until the signal comes or the uptime is reached, and takes it again. May end early. */
static void OsWait(TOsSignal* ptSignal, TOsMutex* ptMutex, u64 qwUntil)
{
    const struct timespec tUntil = {(time_t)(qwUntil / 1000u), (long)(qwUntil % 1000u) * 1000000};
    pthread_cond_timedwait(ptSignal, ptMutex, &tUntil);
}

static int OsStartThread(void* (*pfRun)(void*), void* pvArgument, u32 dwStackSize)
{
    pthread_t tThread;
    pthread_attr_t tAttributes;
    pthread_attr_init(&tAttributes);
    pthread_attr_setstacksize(&tAttributes, dwStackSize);
    pthread_attr_setdetachstate(&tAttributes, PTHREAD_CREATE_DETACHED);
    const int nResult = pthread_create(&tThread, &tAttributes, pfRun, pvArgument);
    pthread_attr_destroy(&tAttributes);
    return nResult == 0;
}

/* ---------------------------------------------------------------------------------------------------- log sink */

static TOsMutex s_tLogMutex = OS_MUTEX_INIT;

/* PORT: where the device's log goes. */
void TlxPrintf(s32 nArg1, s32 nArg2, const char* pchFormat, ...)
{
    static char s_achLine[LOG_LINE_SIZE];
    va_list tArguments;
    (void)nArg1;
    (void)nArg2;
    OsTake(&s_tLogMutex);
    va_start(tArguments, pchFormat);
    vsnprintf(s_achLine, sizeof(s_achLine), pchFormat, tArguments); /* cuts what is longer */
    va_end(tArguments);
    fputs(s_achLine, stderr);
    OsGive(&s_tLogMutex);
}

/* -------------------------------------------------------------------------------------------- tasks and timers */

/* An event or a timer that waits. */
typedef struct
{
    u32 bUsed;
    uintptr_t dwUses; /* how often the entry was used: the upper part of a timer's handle */
    u64 qwDue;        /* uptime */
    u64 qwSerial;     /* order among those of the same time */
    struct TAppTask* ptTask;
    PFAppEvent pfHandler;
    u32 dwEvent;
    const void* pvContext;
} TWork;

struct TAppTask
{
    TOsSignal tWake;
    u32 bUsed;
};

struct TAppTaskMgr
{
    u32 dwTasks;
};

static TOsMutex s_tTaskMutex = OS_MUTEX_INIT;
static struct TAppTask s_atTasks[MAX_TASKS];
static struct TAppTaskMgr s_tTaskMgr;
static TWork s_atWork[MAX_WORK];
static u64 s_qwSerial;
static u32 s_bBaseDone;

/* The task's work that is due first, or null. The mutex is taken. */
static TWork* FirstWork(const struct TAppTask* ptTask)
{
    TWork* ptFirst = NULL;
    for (u32 i = 0; i < MAX_WORK; ++i)
    {
        TWork* ptWork = &s_atWork[i];
        if (ptWork->bUsed && ptWork->ptTask == ptTask &&
            (ptFirst == NULL || ptWork->qwDue < ptFirst->qwDue ||
             (ptWork->qwDue == ptFirst->qwDue && ptWork->qwSerial < ptFirst->qwSerial)))
        {
            ptFirst = ptWork;
        }
    }
    return ptFirst;
}

/* Waits for work to be due and takes it; the mutex is free when its handler runs. */
static TWork TakeWork(struct TAppTask* ptTask)
{
    OsTake(&s_tTaskMutex);
    for (;;)
    {
        TWork* ptWork = FirstWork(ptTask);
        const u64 qwNow = OsUptime();
        if (ptWork != NULL && ptWork->qwDue <= qwNow)
        {
            const TWork tTaken = *ptWork;
            ptWork->bUsed = 0;
            OsGive(&s_tTaskMutex);
            return tTaken;
        }
        OsWait(&ptTask->tWake, &s_tTaskMutex, ptWork != NULL ? ptWork->qwDue : qwNow + 3600000u);
    }
}

static void* RunTask(void* pvTask)
{
    for (;;)
    {
        const TWork tWork = TakeWork((struct TAppTask*)pvTask);
        tWork.pfHandler(tWork.ptTask, tWork.dwEvent, tWork.pvContext);
    }
    return NULL;
}

/* Puts work on the list and returns its handle, 0 when there is no room and never else, as uses are counted from 1. */
static uintptr_t AddWork(struct TAppTask* ptTask, u32 dwMilliseconds, PFAppEvent pfHandler, u32 dwEvent,
                         const void* pvContext)
{
    uintptr_t dwHandle = 0;
    OsTake(&s_tTaskMutex);
    for (u32 i = 0; i < MAX_WORK && dwHandle == 0; ++i)
    {
        TWork* ptWork = &s_atWork[i];
        if (!ptWork->bUsed)
        {
            const TWork tNew = {1,
                                ptWork->dwUses % (UINTPTR_MAX / MAX_WORK) + 1,
                                OsUptime() + dwMilliseconds,
                                ++s_qwSerial,
                                ptTask,
                                pfHandler,
                                dwEvent,
                                pvContext};
            *ptWork = tNew;
            dwHandle = tNew.dwUses * MAX_WORK + i;
            OsSignal(&ptTask->tWake);
        }
    }
    OsGive(&s_tTaskMutex);
    return dwHandle;
}

u32 AppBaseInit(void)
{
    OsTake(&s_tTaskMutex);
    const u32 dwResult = s_bBaseDone ? BASE_DONE_BEFORE : 0;
    s_bBaseDone = 1;
    OsGive(&s_tTaskMutex);
    return dwResult;
}

u32 AppTaskMgrCreate(TAppMemPoolHandle hPool, u32 dwTaskCapacity, TAppTaskMgrHandle* phTaskMgr)
{
    (void)hPool;
    (void)dwTaskCapacity; /* there is one manager, and its room is MAX_TASKS */
    *phTaskMgr = &s_tTaskMgr;
    return 0;
}

u32 AppTaskMgrNewTask(TAppTaskMgrHandle hTaskMgr, const char* pchName, u32 dwQueueSize, u32 dwStackSize, u32 dwOption1,
                      u32 dwOption2, TAppTaskHandle* phTask)
{
    struct TAppTask* ptTask = NULL;
    (void)pchName; /* PORT: the thread's name, where it has one */
    (void)dwQueueSize;
    (void)dwOption1;
    (void)dwOption2;
    OsTake(&s_tTaskMutex);
    if (hTaskMgr->dwTasks < MAX_TASKS)
    {
        ptTask = &s_atTasks[hTaskMgr->dwTasks++];
        ptTask->bUsed = 1;
    }
    OsGive(&s_tTaskMutex);
    if (ptTask == NULL || !OsSignalInit(&ptTask->tWake) || !OsStartThread(RunTask, ptTask, dwStackSize))
    {
        return FAILED;
    }
    *phTask = ptTask;
    return 0;
}

u32 AppTaskSendEvent(TAppTaskHandle hTask, u32 dwEvent, PFAppEvent pfHandler, const void* pvContext)
{
    return hTask != NULL && AddWork(hTask, 0, pfHandler, dwEvent, pvContext) != 0 ? 0 : FAILED;
}

TAppTimerHandle AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler, const void* pvContext)
{
    return hTask != NULL ? (TAppTimerHandle)AddWork(hTask, dwMilliseconds, pfHandler, TIMER_ELAPSED, pvContext) : NULL;
}

/* The entry may serve another timer by now; that one's number of uses differs. */
u32 AppTaskCancelTimer(TAppTimerHandle hTimer)
{
    const uintptr_t dwHandle = (uintptr_t)hTimer;
    TWork* ptWork = &s_atWork[dwHandle % MAX_WORK];
    OsTake(&s_tTaskMutex);
    if (ptWork->bUsed && ptWork->dwUses * MAX_WORK + dwHandle % MAX_WORK == dwHandle)
    {
        ptWork->bUsed = 0;
    }
    OsGive(&s_tTaskMutex);
    return 0;
}

/* -------------------------------------------------------------------------------------------------------- pool */

/* PORT: a pool of the device's, if it has one. */
struct TAppMemPool
{
    u32 dwUnused;
};

static struct TAppMemPool s_tPool;

u32 AppMemPoolCreate(u32 dwOption1, u32 dwOption2, u32 dwOption3, TAppMemPoolHandle* phPool)
{
    (void)dwOption1;
    (void)dwOption2;
    (void)dwOption3;
    *phPool = &s_tPool;
    return 0;
}

void* AppMemPoolMallocEx(TAppMemPoolHandle hPool, size_t dwSize, const char* pchFunction, u32 dwLine)
{
    (void)hPool;
    (void)pchFunction;
    (void)dwLine;
    return malloc(dwSize);
}

void AppMemPoolFreeEx(TAppMemPoolHandle hPool, void* pvBlock, const char* pchFunction, u32 dwLine)
{
    (void)hPool;
    (void)pchFunction;
    (void)dwLine;
    free(pvBlock);
}

/* ------------------------------------------------------------------------------------------------------- locks */

struct TAppLock
{
    TOsMutex tMutex;
};

static TOsMutex s_tLocksMutex = OS_MUTEX_INIT;
static struct TAppLock s_atLocks[MAX_LOCKS];
static u32 s_dwLocks;

/* Called before main: rests on nothing but what is initialised at compile time. */
TAppLockHandle AppLockCreate(void)
{
    TAppLockHandle hLock = NULL;
    OsTake(&s_tLocksMutex);
    if (s_dwLocks < MAX_LOCKS && pthread_mutex_init(&s_atLocks[s_dwLocks].tMutex, NULL) == 0) /* PORT */
    {
        hLock = &s_atLocks[s_dwLocks++];
    }
    OsGive(&s_tLocksMutex);
    return hLock;
}

u32 AppLockTakeByTime(TAppLockHandle hLock, u32 dwMilliseconds)
{
    (void)dwMilliseconds; /* the stack passes nothing but 0: wait until the lock is free */
    if (hLock == NULL)
    {
        return FAILED;
    }
    OsTake(&hLock->tMutex);
    return 0;
}

u32 AppLockGive(TAppLockHandle hLock)
{
    if (hLock == NULL)
    {
        return FAILED;
    }
    OsGive(&hLock->tMutex);
    return 0;
}

/* -------------------------------------------------------------------------------------------- ticks and delays */

void AppDelay(u32 dwMilliseconds)
{
    OsSleep(dwMilliseconds);
}

u32 AppGetTick(void)
{
    return (u32)OsUptime();
}

u32 AppTickDiff(u32 dwStart, u32 dwEnd)
{
    return dwEnd - dwStart;
}

u32 AppConvertTickToMS(u32 dwTicks)
{
    return dwTicks;
}

static u32 DaysOfYear(u32 dwYear)
{
    return (dwYear % 4 == 0 && dwYear % 100 != 0) || dwYear % 400 == 0 ? 366 : 365;
}

static u32 DaysOfMonth(u32 dwYear, u32 dwMonth)
{
    static const u8 s_abyDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return dwMonth == 2 && DaysOfYear(dwYear) == 366 ? 29 : s_abyDays[dwMonth - 1];
}

void AppConvertU32ToTime(u32 dwSeconds, TAppTime* ptTime)
{
    u32 dwDays = dwSeconds / 86400u;
    u32 dwYear = 1970;
    u32 dwMonth = 1;
    for (; dwDays >= DaysOfYear(dwYear); ++dwYear)
    {
        dwDays -= DaysOfYear(dwYear);
    }
    for (; dwDays >= DaysOfMonth(dwYear, dwMonth); ++dwMonth)
    {
        dwDays -= DaysOfMonth(dwYear, dwMonth);
    }
    ptTime->wYear = (u16)dwYear;
    ptTime->byMonth = (u8)dwMonth;
    ptTime->byDay = (u8)(dwDays + 1);
    ptTime->byHour = (u8)(dwSeconds / 3600u % 24u);
    ptTime->byMinute = (u8)(dwSeconds / 60u % 60u);
    ptTime->bySecond = (u8)(dwSeconds % 60u);
}

/* ----------------------------------------------------------------------------------------------------- console */

typedef struct
{
    const char* pchName;
    PFAppCommand pfCommand;
    const char* pchHelp;
} TCommand;

static TOsMutex s_tCommandMutex = OS_MUTEX_INIT;
static TCommand s_atCommands[MAX_COMMANDS];

/* PORT: hands the command to the device's console, if it has one. */
u32 AppRegCommand(const char* pchName, PFAppCommand pfCommand, const char* pchHelp)
{
    u32 dwResult = FAILED;
    OsTake(&s_tCommandMutex);
    for (u32 i = 0; i < MAX_COMMANDS && dwResult != 0; ++i)
    {
        TCommand* ptCommand = &s_atCommands[i];
        if (ptCommand->pchName == NULL || strcmp(ptCommand->pchName, pchName) == 0)
        {
            ptCommand->pchName = pchName;
            ptCommand->pfCommand = pfCommand;
            ptCommand->pchHelp = pchHelp;
            dwResult = 0;
        }
    }
    OsGive(&s_tCommandMutex);
    return dwResult;
}

/* What the device's console does with the line "NAME NUMBER". */
static s32 RunCommand(const char* pchName, s32 nArgument)
{
    for (u32 i = 0; i < MAX_COMMANDS && s_atCommands[i].pchName != NULL; ++i)
    {
        if (strcmp(s_atCommands[i].pchName, pchName) == 0)
        {
            return s_atCommands[i].pfCommand(nArgument);
        }
    }
    return -1;
}

/* ------------------------------------------------------------------------------------------ strings and memory */

s32 AppStrcmp(const char* pchLeft, const char* pchRight)
{
    return strcmp(pchLeft, pchRight);
}

char* AppStrncpy(char* pchDest, const char* pchSrc, size_t size)
{
    return strncpy(pchDest, pchSrc, size);
}

char* AppStrstr(const char* pchText, const char* pchPart)
{
    return strstr(pchText, pchPart);
}

char* AppStrchr(const char* pchText, s32 nChar)
{
    return strchr(pchText, nChar);
}

size_t AppStrlen(const char* pchText)
{
    return strlen(pchText);
}

s32 AppSnprintf(char* pchDest, size_t size, const char* pchFormat, ...)
{
    va_list tArguments;
    va_start(tArguments, pchFormat);
    const s32 nLength = vsnprintf(pchDest, size, pchFormat, tArguments);
    va_end(tArguments);
    return nLength;
}

void* AppMemcpy(void* pvDest, const void* pvSrc, size_t size)
{
    return size == 0 ? pvDest : memcpy(pvDest, pvSrc, size);
}

s32 AppMemcmp(const void* pvLeft, const void* pvRight, size_t size)
{
    return size == 0 ? 0 : memcmp(pvLeft, pvRight, size);
}

void AppMemzero(void* pvDest, size_t size)
{
    if (size != 0)
    {
        memset(pvDest, 0, size);
    }
}

/* ---------------------------------------------------------------------------------------------- system service */

/* PORT: the time zone in the device's settings, seconds east of UTC. */
static const s32 s_nZoneSeconds = 8 * 3600;

u32 NvrSysTimeSwitch(u32 dwMode, TNvrSysTime* ptTime)
{
    (void)dwMode;
    (void)ptTime; /* the server's time is local, and so is the one that is set here */
    return NVR_SYS_OK;
}

/* PORT: sets the device's clock. Second 60 or month 0 may come in: check, or carry over. */
u32 NvrSysSetSystemTime(const TNvrSysTime* ptTime, u32 dwSource)
{
    fprintf(stderr, "platform %u sets the clock to %04u-%02u-%02u %02u:%02u:%02u\n", dwSource - 8u, ptTime->wYear,
            ptTime->byMonth, ptTime->byDay, ptTime->byHour, ptTime->byMinute, ptTime->bySecond);
    return NVR_SYS_OK;
}

u32 NvrSysTimeSecSwitch(u32 dwMode, u32* pdwSeconds)
{
    if (dwMode == 1)
    {
        *pdwSeconds += (u32)s_nZoneSeconds;
    }
    return NVR_SYS_OK;
}

/* PORT: the counterpart of whatever gives the blocks that the host puts into records. */
void NvrSrvFree(void* pvBlock, const char* pchFunction, u32 dwLine)
{
    (void)pchFunction;
    (void)dwLine;
    free(pvBlock);
}

/* --------------------------------------------------------------------------------------- a host that uses all this */

static void Configure(char** ppchArguments)
{
    TPubSecPlatRegInfo tInfo;
    memset(&tInfo, 0, sizeof(tInfo));
    tInfo.dwEnable = 1;
    tInfo.dwKeepaliveSec = 3;
    tInfo.dwSyncTimeMin = 1;
    tInfo.dwServerPort = (u32)strtoul(ppchArguments[2], NULL, 10);
    snprintf(tInfo.achServerIP, sizeof(tInfo.achServerIP), "%s", ppchArguments[1]);
    snprintf(tInfo.achDeviceID, sizeof(tInfo.achDeviceID), "%s", ppchArguments[3]);
    snprintf(tInfo.achUserName, sizeof(tInfo.achUserName), "%s", ppchArguments[4]);
    snprintf(tInfo.achPassword, sizeof(tInfo.achPassword), "%s", ppchArguments[5]);
    PubSecStackUpdateRegisterInfo(0, &tInfo);
}

static void ShowStatus(u32 dwPlatform, u32 dwStatus, const TPubSecPlatRegInfo* ptInfo)
{
    fprintf(stderr, "platform %u at %s: %s\n", dwPlatform, ptInfo->achServerIP, dwStatus ? "registered" : "lost");
}

int main(int nArguments, char** ppchArguments)
{
    if (nArguments != 1 && nArguments != 6)
    {
        fprintf(stderr, "usage: %s [ADDRESS PORT DEVICE-ID USER PASSWORD]\n", ppchArguments[0]);
        return 2;
    }
    const u32 dwResult = PubSecStackInit();
    if (dwResult != PUBSEC_OK)
    {
        fprintf(stderr, "PubSecStackInit: %u\n", dwResult);
        return 1;
    }
    const s32 nLevel = RunCommand("pbsklog", 2);
    PubSecStackRegisterCB(ShowStatus);
    if (nArguments == 6)
    {
        Configure(ppchArguments);
        OsSleep(10000);
    }
    PubSecStackUnInit();
    OsSleep(1100); /* the register loop has made its last pass */
    fprintf(stderr, "ended, log level %d\n", nLevel);
    return nLevel == 2 ? 0 : 1;
}
