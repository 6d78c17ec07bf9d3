/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/torture/faults.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>

#include <cjson/cJSON.h>
#include <curl/curl.h>

#include <pubsecplatform.h>

#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace
{

struct State
{
    size_t points = 0;
    size_t failing = 0;
    faults::Mode mode = faults::Mode::once;
    std::string failed;
    std::map<void*, const char*> blocks;
};

/* The mutex guards the blocks: another thread may give one back. The rest belongs to the thread that runs. */
std::mutex s_mutex;
long s_timeoutMs = 0;
thread_local bool t_tracks = false; /* inside run */
thread_local bool t_counts = false; /* and not paused */

/* Never destroyed: blocks are released until the very end. */
State& state()
{
    static State* const only = new State;
    return *only;
}

enum class Kind
{
    memory,
    call
};

bool fails(Kind kind, const char* function)
{
    if (!t_counts)
    {
        return false;
    }
    const size_t point = ++state().points;
    if (state().failing == 0 || point < state().failing)
    {
        return false;
    }
    if (point > state().failing && (state().mode == faults::Mode::once || kind == Kind::call))
    {
        return false;
    }
    if (state().failed.empty())
    {
        state().failed = function;
    }
    return true;
}

bool lacksMemory(const char* function)
{
    return fails(Kind::memory, function);
}

bool refuses(const char* function)
{
    return fails(Kind::call, function);
}

void* noted(void* block, const char* allocator)
{
    if (t_tracks && block != nullptr)
    {
        const std::lock_guard<std::mutex> guard(s_mutex);
        state().blocks[block] = allocator;
    }
    return block;
}

void forget(void* block)
{
    if (block != nullptr)
    {
        const std::lock_guard<std::mutex> guard(s_mutex);
        state().blocks.erase(block);
    }
}

std::string leaks()
{
    std::map<std::string, size_t> counts;
    const std::lock_guard<std::mutex> guard(s_mutex);
    for (const auto& entry : state().blocks)
    {
        ++counts[entry.second];
    }
    std::string text;
    for (const auto& entry : counts)
    {
        text += (text.empty() ? "" : ", ") + std::to_string(entry.second) + " of " + entry.first;
    }
    return text;
}

/* An option that takes no memory and whose loss libcurl itself rules out (see the header). */
bool cannotBeRefused(CURLoption option)
{
    switch (option)
    {
    case CURLOPT_READFUNCTION:
    case CURLOPT_READDATA:
    case CURLOPT_WRITEFUNCTION:
    case CURLOPT_WRITEDATA:
    case CURLOPT_POSTFIELDS:
    case CURLOPT_XFERINFOFUNCTION:
    case CURLOPT_XFERINFODATA:
        return true;
    default:
        return false;
    }
}

} // namespace

extern "C"
{
    void* __real_malloc(size_t size);
    void* __real_calloc(size_t count, size_t size);
    void* __real_realloc(void* block, size_t size);
    void __real_free(void* block);
    FILE* __real_fopen64(const char* path, const char* mode);
    int __real_fseeko64(FILE* file, off_t offset, int whence);
    off_t __real_ftello64(FILE* file);
    size_t __real_fread(void* block, size_t size, size_t count, FILE* file);
    int __real_inet_pton(int family, const char* text, void* out);
    CURLcode __real_curl_global_init(long flags);
    CURL* __real_curl_easy_init(void);
    CURLcode __real_curl_easy_setopt(CURL* handle, CURLoption option, ...);
    CURLcode __real_curl_easy_perform(CURL* handle);
    CURLcode __real_curl_easy_getinfo(CURL* handle, CURLINFO info, ...);
    curl_slist* __real_curl_slist_append(curl_slist* list, const char* text);

    void* __wrap_malloc(size_t size)
    {
        return lacksMemory("malloc") ? nullptr : noted(__real_malloc(size), "malloc");
    }

    void* __wrap_calloc(size_t count, size_t size)
    {
        return lacksMemory("calloc") ? nullptr : noted(__real_calloc(count, size), "calloc");
    }

    void* __wrap_realloc(void* block, size_t size)
    {
        if (lacksMemory("realloc"))
        {
            return nullptr;
        }
        void* const grown = __real_realloc(block, size);
        if (grown != nullptr)
        {
            forget(block);
        }
        return noted(grown, "realloc");
    }

    void __wrap_free(void* block)
    {
        forget(block);
        __real_free(block);
    }

    FILE* __wrap_fopen64(const char* path, const char* mode)
    {
        return refuses("fopen") ? nullptr : __real_fopen64(path, mode);
    }

    int __wrap_fseeko64(FILE* file, off_t offset, int whence)
    {
        return refuses("fseeko") ? -1 : __real_fseeko64(file, offset, whence);
    }

    off_t __wrap_ftello64(FILE* file)
    {
        return refuses("ftello") ? -1 : __real_ftello64(file);
    }

    size_t __wrap_fread(void* block, size_t size, size_t count, FILE* file)
    {
        return refuses("fread") ? 0 : __real_fread(block, size, count, file);
    }

    int __wrap_inet_pton(int family, const char* text, void* out)
    {
        return refuses("inet_pton") ? -1 : __real_inet_pton(family, text, out);
    }

    CURLcode __wrap_curl_global_init(long flags)
    {
        return refuses("curl_global_init") ? CURLE_OUT_OF_MEMORY : __real_curl_global_init(flags);
    }

    CURL* __wrap_curl_easy_init(void)
    {
        return refuses("curl_easy_init") ? nullptr : __real_curl_easy_init();
    }

    CURLcode __wrap_curl_easy_setopt(CURL* handle, int which, ...)
    {
        const CURLoption option = static_cast<CURLoption>(which);
        va_list arguments;
        va_start(arguments, which);
        const bool number = option < CURLOPTTYPE_OBJECTPOINT;
        const bool offset = option >= CURLOPTTYPE_OFF_T && option < CURLOPTTYPE_BLOB;
        const long small = number ? va_arg(arguments, long) : 0;
        const curl_off_t large = offset ? va_arg(arguments, curl_off_t) : 0;
        void* const pointer = number || offset ? nullptr : va_arg(arguments, void*);
        va_end(arguments);
        if (!cannotBeRefused(option) && refuses("curl_easy_setopt"))
        {
            return CURLE_UNKNOWN_OPTION;
        }
        if (option == CURLOPT_TIMEOUT && s_timeoutMs > 0)
        {
            return __real_curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, s_timeoutMs);
        }
        return number   ? __real_curl_easy_setopt(handle, option, small)
               : offset ? __real_curl_easy_setopt(handle, option, large)
                        : __real_curl_easy_setopt(handle, option, pointer);
    }

    CURLcode __wrap_curl_easy_perform(CURL* handle)
    {
        return refuses("curl_easy_perform") ? CURLE_SEND_ERROR : __real_curl_easy_perform(handle);
    }

    CURLcode __wrap_curl_easy_getinfo(CURL* handle, int which, ...)
    {
        const CURLINFO info = static_cast<CURLINFO>(which);
        va_list arguments;
        va_start(arguments, which);
        void* const out = va_arg(arguments, void*);
        va_end(arguments);
        return refuses("curl_easy_getinfo") ? CURLE_UNKNOWN_OPTION : __real_curl_easy_getinfo(handle, info, out);
    }

    curl_slist* __wrap_curl_slist_append(curl_slist* list, const char* text)
    {
        return refuses("curl_slist_append") ? nullptr : __real_curl_slist_append(list, text);
    }
}

/* The host's platform. A refusal is a null handle or block, or a number that is no success in any family. */
namespace
{

constexpr u32 kRefused = 7;

} // namespace

extern "C"
{
    void* __real_AppMemPoolMallocEx(TAppMemPoolHandle pool, size_t size, const char* function, u32 line);
    u32 __real_AppBaseInit(void);
    u32 __real_AppMemPoolCreate(u32 option1, u32 option2, u32 option3, TAppMemPoolHandle* pool);
    u32 __real_AppTaskMgrCreate(TAppMemPoolHandle pool, u32 capacity, TAppTaskMgrHandle* manager);
    u32 __real_AppTaskMgrNewTask(TAppTaskMgrHandle manager, const char* name, u32 queue, u32 stack, u32 option1,
                                 u32 option2, TAppTaskHandle* task);
    u32 __real_AppTaskSendEvent(TAppTaskHandle task, u32 event, PFAppEvent handler, const void* context);
    TAppTimerHandle __real_AppTaskSetTimer(TAppTaskHandle task, u32 milliseconds, PFAppTimer handler,
                                           const void* context);
    u32 __real_AppTaskCancelTimer(TAppTimerHandle timer);
    TAppLockHandle __real_AppLockCreate(void);
    u32 __real_AppLockTakeByTime(TAppLockHandle lock, u32 milliseconds);
    u32 __real_AppRegCommand(const char* name, PFAppCommand command, const char* help);
    u32 __real_NvrSysTimeSwitch(u32 mode, TNvrSysTime* time);
    u32 __real_NvrSysSetSystemTime(const TNvrSysTime* time, u32 source);
    u32 __real_NvrSysTimeSecSwitch(u32 mode, u32* seconds);

    void* __wrap_AppMemPoolMallocEx(TAppMemPoolHandle pool, size_t size, const char* function, u32 line)
    {
        if (lacksMemory("AppMemPoolMallocEx"))
        {
            return nullptr;
        }
        const faults::Pause itsOwn;
        return __real_AppMemPoolMallocEx(pool, size, function, line);
    }

    u32 __wrap_AppBaseInit(void)
    {
        return refuses("AppBaseInit") ? kRefused : __real_AppBaseInit();
    }

    u32 __wrap_AppMemPoolCreate(u32 option1, u32 option2, u32 option3, TAppMemPoolHandle* pool)
    {
        return refuses("AppMemPoolCreate") ? kRefused : __real_AppMemPoolCreate(option1, option2, option3, pool);
    }

    u32 __wrap_AppTaskMgrCreate(TAppMemPoolHandle pool, u32 capacity, TAppTaskMgrHandle* manager)
    {
        return refuses("AppTaskMgrCreate") ? kRefused : __real_AppTaskMgrCreate(pool, capacity, manager);
    }

    u32 __wrap_AppTaskMgrNewTask(TAppTaskMgrHandle manager, const char* name, u32 queue, u32 stack, u32 option1,
                                 u32 option2, TAppTaskHandle* task)
    {
        return refuses("AppTaskMgrNewTask")
                   ? kRefused
                   : __real_AppTaskMgrNewTask(manager, name, queue, stack, option1, option2, task);
    }

    u32 __wrap_AppTaskSendEvent(TAppTaskHandle task, u32 event, PFAppEvent handler, const void* context)
    {
        return refuses("AppTaskSendEvent") ? kRefused : __real_AppTaskSendEvent(task, event, handler, context);
    }

    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle task, u32 milliseconds, PFAppTimer handler,
                                           const void* context)
    {
        return refuses("AppTaskSetTimer") ? nullptr : __real_AppTaskSetTimer(task, milliseconds, handler, context);
    }

    u32 __wrap_AppTaskCancelTimer(TAppTimerHandle timer)
    {
        return refuses("AppTaskCancelTimer") ? kRefused : __real_AppTaskCancelTimer(timer);
    }

    TAppLockHandle __wrap_AppLockCreate(void)
    {
        return refuses("AppLockCreate") ? nullptr : __real_AppLockCreate();
    }

    u32 __wrap_AppLockTakeByTime(TAppLockHandle lock, u32 milliseconds)
    {
        return refuses("AppLockTakeByTime") ? kRefused : __real_AppLockTakeByTime(lock, milliseconds);
    }

    u32 __wrap_AppRegCommand(const char* name, PFAppCommand command, const char* help)
    {
        return refuses("AppRegCommand") ? kRefused : __real_AppRegCommand(name, command, help);
    }

    u32 __wrap_NvrSysTimeSwitch(u32 mode, TNvrSysTime* time)
    {
        return refuses("NvrSysTimeSwitch") ? kRefused : __real_NvrSysTimeSwitch(mode, time);
    }

    u32 __wrap_NvrSysSetSystemTime(const TNvrSysTime* time, u32 source)
    {
        return refuses("NvrSysSetSystemTime") ? kRefused : __real_NvrSysSetSystemTime(time, source);
    }

    u32 __wrap_NvrSysTimeSecSwitch(u32 mode, u32* seconds)
    {
        return refuses("NvrSysTimeSecSwitch") ? kRefused : __real_NvrSysTimeSecSwitch(mode, seconds);
    }
}

/* The allocators of libcurl and cJSON. */
namespace
{

void* curlMalloc(size_t size)
{
    return lacksMemory("libcurl's malloc") ? nullptr : noted(__real_malloc(size), "libcurl");
}

void* curlCalloc(size_t count, size_t size)
{
    return lacksMemory("libcurl's calloc") ? nullptr : noted(__real_calloc(count, size), "libcurl");
}

void* curlRealloc(void* block, size_t size)
{
    if (lacksMemory("libcurl's realloc"))
    {
        return nullptr;
    }
    void* const grown = __real_realloc(block, size);
    if (grown != nullptr)
    {
        forget(block);
    }
    return noted(grown, "libcurl");
}

char* curlStrdup(const char* text)
{
    char* const copy = static_cast<char*>(curlMalloc(std::strlen(text) + 1));
    return copy == nullptr ? nullptr : std::strcpy(copy, text);
}

void* cjsonMalloc(size_t size)
{
    return lacksMemory("cJSON's malloc") ? nullptr : noted(__real_malloc(size), "cJSON");
}

void giveBack(void* block)
{
    forget(block);
    __real_free(block);
}

} // namespace

namespace faults
{

void install()
{
    static const bool once = [] {
        cJSON_Hooks hooks = {cjsonMalloc, giveBack};
        cJSON_InitHooks(&hooks);
        return curl_global_init_mem(CURL_GLOBAL_ALL, curlMalloc, giveBack, curlRealloc, curlStrdup, curlCalloc) ==
               CURLE_OK;
    }();
    if (!once)
    {
        std::fprintf(stderr, "torture: libcurl cannot be initialised\n");
        std::abort();
    }
}

Result run(size_t failing, Mode mode, const std::function<void()>& call)
{
    {
        const std::lock_guard<std::mutex> guard(s_mutex);
        state() = State();
        state().failing = failing;
        state().mode = mode;
    }
    t_tracks = t_counts = true;
    call();
    t_tracks = t_counts = false;
    return {state().points, state().failed, leaks()};
}

void shortenTimeouts(long milliseconds)
{
    s_timeoutMs = milliseconds;
}

Pause::Pause() : m_wasCounting(t_counts)
{
    t_counts = false;
}

Pause::~Pause()
{
    t_counts = m_wasCounting;
}

} // namespace faults
