/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/curl_shim.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>
#include <mutex>
#include <set>

#include "core/http.h"
#include "post/file_upload.h"

/* libcurl's prototypes end with an enumeration before the variable arguments. */
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wvarargs"
#endif

#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace
{

/* What the library set on a handle, as far as an answer of the shim needs it. */
struct Handle
{
    std::map<CURLoption, void*> pointers;
    bool answered = false;
    curl_shim::Answer answer;
};

struct State
{
    std::vector<std::string> calls;
    std::vector<std::string> sentBodies;
    std::deque<curl_shim::Answer> answers;
    std::vector<curl_shim::Answer> always; /* none or one */
    std::deque<CURLcode> globalInitFailures;
    unsigned easyInitFailures = 0;
    unsigned appendPasses = 0;
    unsigned appendFailures = 0;
    std::set<CURLoption> refusals;
    void (*performHook)(unsigned) = nullptr;
    unsigned performs = 0;
    void (*appendHook)(unsigned) = nullptr;
    unsigned appends = 0;
    std::map<CURL*, Handle> handles;
    std::set<curl_slist*> lists;
};

/* The mutex is free while libcurl works. libcurl's own calls of its functions come here too; they are not the
 * library's.
 */
std::mutex s_mutex;
thread_local unsigned t_insideCurl = 0;

struct InsideCurl
{
    InsideCurl()
    {
        ++t_insideCurl;
    }
    ~InsideCurl()
    {
        --t_insideCurl;
    }
};

State s_state;

using Guard = std::lock_guard<std::mutex>;

void callAppendHook()
{
    void (*hook)(unsigned) = nullptr;
    unsigned number = 0;
    {
        const Guard guard(s_mutex);
        hook = s_state.appendHook;
        number = ++s_state.appends;
    }
    if (hook != nullptr)
    {
        hook(number);
    }
}

template <typename Function> Function* real(const char* name)
{
    void* found = dlsym(RTLD_NEXT, name);
    if (found == nullptr)
    {
        std::fprintf(stderr, "curl shim: no %s behind the program's own\n", name);
        std::abort();
    }
    return reinterpret_cast<Function*>(found);
}

const char* nameOf(CURLoption option)
{
    static const std::map<CURLoption, const char*> names = {
        {CURLOPT_HTTPHEADER, "HTTPHEADER"},
        {CURLOPT_IPRESOLVE, "IPRESOLVE"},
        {CURLOPT_URL, "URL"},
        {CURLOPT_POST, "POST"},
        {CURLOPT_HTTPGET, "HTTPGET"},
        {CURLOPT_SSL_VERIFYPEER, "SSL_VERIFYPEER"},
        {CURLOPT_SSL_VERIFYHOST, "SSL_VERIFYHOST"},
        {CURLOPT_VERBOSE, "VERBOSE"},
        {CURLOPT_CONNECTTIMEOUT, "CONNECTTIMEOUT"},
        {CURLOPT_TIMEOUT, "TIMEOUT"},
        {CURLOPT_READFUNCTION, "READFUNCTION"},
        {CURLOPT_READDATA, "READDATA"},
        {CURLOPT_WRITEFUNCTION, "WRITEFUNCTION"},
        {CURLOPT_WRITEDATA, "WRITEDATA"},
        {CURLOPT_POSTFIELDSIZE, "POSTFIELDSIZE"},
        {CURLOPT_POSTFIELDSIZE_LARGE, "POSTFIELDSIZE_LARGE"},
        {CURLOPT_POSTFIELDS, "POSTFIELDS"},
        {CURLOPT_NOSIGNAL, "NOSIGNAL"},
        {CURLOPT_HTTPAUTH, "HTTPAUTH"},
        {CURLOPT_USERNAME, "USERNAME"},
        {CURLOPT_PASSWORD, "PASSWORD"},
        {CURLOPT_FOLLOWLOCATION, "FOLLOWLOCATION"},
        {CURLOPT_UPLOAD, "UPLOAD"},
        {CURLOPT_INFILESIZE, "INFILESIZE"},
        {CURLOPT_INFILESIZE_LARGE, "INFILESIZE_LARGE"},
        {CURLOPT_NOPROGRESS, "NOPROGRESS"},
        {CURLOPT_XFERINFODATA, "XFERINFODATA"},
        {CURLOPT_XFERINFOFUNCTION, "XFERINFOFUNCTION"},
    };
    const auto found = names.find(option);
    return found != names.end() ? found->second : "another";
}

std::string linesOf(const curl_slist* list)
{
    std::string lines;
    for (; list != nullptr; list = list->next)
    {
        lines += (lines.empty() ? "" : "|") + std::string(list->data);
    }
    return lines;
}

template <typename Function> bool is(const void* pointer, Function* function)
{
    return pointer == reinterpret_cast<const void*>(function);
}

std::string functionOf(const void* pointer)
{
    return is(pointer, PubSecReadCB)     ? "PubSecReadCB"
           : is(pointer, _PubSecWriteCB) ? "_PubSecWriteCB"
           : is(pointer, read_callback)  ? "read_callback"
           : is(pointer, ProcCBEx)       ? "ProcCBEx"
                                         : "pointer";
}

/* `before` is what the handle has been given so far. */
std::string valueOf(CURLoption option, const void* pointer, const std::map<CURLoption, void*>& before)
{
    if (pointer == nullptr)
    {
        return "null";
    }
    switch (option)
    {
    case CURLOPT_URL:
    case CURLOPT_USERNAME:
    case CURLOPT_PASSWORD:
    case CURLOPT_POSTFIELDS:
        return static_cast<const char*>(pointer);
    case CURLOPT_HTTPHEADER:
        return linesOf(static_cast<const curl_slist*>(pointer));
    case CURLOPT_XFERINFODATA:
        return std::to_string(reinterpret_cast<uintptr_t>(pointer));
    case CURLOPT_READDATA: {
        const auto reader = before.find(CURLOPT_READFUNCTION);
        if (reader != before.end() && is(reader->second, read_callback))
        {
            return "file";
        }
        const TPubSecReqBody* body = static_cast<const TPubSecReqBody*>(pointer);
        return std::string(body->pchData, body->dwLeft);
    }
    case CURLOPT_WRITEDATA: {
        const TPubSecRespBuf* sink = static_cast<const TPubSecRespBuf*>(pointer);
        return sink->pchBuf != nullptr && sink->pchBuf[0] == '\0' && sink->dwLen == 0 ? "sink"
                                                                                      : "a sink that is not empty";
    }
    default:
        return functionOf(pointer);
    }
}

void note(const std::string& call)
{
    s_state.calls.push_back(call);
}

/* Takes the body as libcurl would: the fields, or the read callback until there is enough. */
std::string drain(const Handle& handle)
{
    const auto fields = handle.pointers.find(CURLOPT_POSTFIELDS);
    if (fields != handle.pointers.end())
    {
        return static_cast<const char*>(fields->second);
    }
    const auto function = handle.pointers.find(CURLOPT_READFUNCTION);
    const auto data = handle.pointers.find(CURLOPT_READDATA);
    if (function == handle.pointers.end() || data == handle.pointers.end())
    {
        return "";
    }
    const auto read = reinterpret_cast<size_t (*)(char*, size_t, size_t, void*)>(function->second);
    std::string body;
    char block[7];
    for (size_t count = read(block, 1, sizeof(block), data->second); count > 0;
         count = read(block, 1, sizeof(block), data->second))
    {
        body.append(block, count);
    }
    return body;
}

/* Gives the answer's body to the write callback; false when it is not taken. */
bool deliver(const Handle& handle, const std::string& body)
{
    const auto function = handle.pointers.find(CURLOPT_WRITEFUNCTION);
    const auto data = handle.pointers.find(CURLOPT_WRITEDATA);
    if (function == handle.pointers.end() || data == handle.pointers.end() || body.empty())
    {
        return true;
    }
    const auto write = reinterpret_cast<size_t (*)(const char*, size_t, size_t, void*)>(function->second);
    return write(body.data(), 1, body.size(), data->second) == body.size();
}

} // namespace

namespace curl_shim
{

void reset()
{
    const Guard guard(s_mutex);
    s_state = State();
}

void answer(const Answer& answer)
{
    const Guard guard(s_mutex);
    s_state.answers.push_back(answer);
}

void answerAlways(const Answer& answer)
{
    const Guard guard(s_mutex);
    s_state.always = {answer};
}

void failGlobalInit(CURLcode result)
{
    const Guard guard(s_mutex);
    s_state.globalInitFailures.push_back(result);
}

void failEasyInit()
{
    const Guard guard(s_mutex);
    ++s_state.easyInitFailures;
}

void failAppend(unsigned pass, unsigned times)
{
    const Guard guard(s_mutex);
    s_state.appendPasses = pass;
    s_state.appendFailures = times;
}

void refuse(CURLoption option)
{
    const Guard guard(s_mutex);
    s_state.refusals.insert(option);
}

void setPerformHook(void (*hook)(unsigned))
{
    const Guard guard(s_mutex);
    s_state.performHook = hook;
}

void setAppendHook(void (*hook)(unsigned))
{
    const Guard guard(s_mutex);
    s_state.appendHook = hook;
}

std::vector<std::string> calls()
{
    const Guard guard(s_mutex);
    return s_state.calls;
}

std::vector<std::string> callsOf(const std::string& beginning)
{
    std::vector<std::string> found = calls();
    found.erase(
        std::remove_if(found.begin(), found.end(),
                       [&](const std::string& call) { return call.compare(0, beginning.size(), beginning) != 0; }),
        found.end());
    return found;
}

std::vector<std::string> sentBodies()
{
    const Guard guard(s_mutex);
    return s_state.sentBodies;
}

size_t openHandles()
{
    const Guard guard(s_mutex);
    return s_state.handles.size();
}

size_t openLists()
{
    const Guard guard(s_mutex);
    return s_state.lists.size();
}

void cleanUp()
{
    std::map<CURL*, Handle> handles;
    {
        const Guard guard(s_mutex);
        handles.swap(s_state.handles);
    }
    for (const auto& entry : handles)
    {
        const InsideCurl inside;
        real<void(CURL*)>("curl_easy_cleanup")(entry.first);
    }
}

} // namespace curl_shim

PUBSEC_C_BEGIN

CURLcode curl_global_init(long flags)
{
    {
        const Guard guard(s_mutex);
        note("global_init(" + std::to_string(flags) + ")");
        if (!s_state.globalInitFailures.empty())
        {
            const CURLcode result = s_state.globalInitFailures.front();
            s_state.globalInitFailures.pop_front();
            return result;
        }
    }
    const InsideCurl inside;
    return real<CURLcode(long)>("curl_global_init")(flags);
}

CURL* curl_easy_init(void)
{
    if (t_insideCurl > 0)
    {
        return real<CURL*()>("curl_easy_init")();
    }
    {
        const Guard guard(s_mutex);
        note("easy_init()");
        if (s_state.easyInitFailures > 0)
        {
            --s_state.easyInitFailures;
            return nullptr;
        }
    }
    CURL* handle = real<CURL*()>("curl_easy_init")();
    const Guard guard(s_mutex);
    s_state.handles[handle] = Handle();
    return handle;
}

void curl_easy_cleanup(CURL* handle)
{
    if (t_insideCurl == 0)
    {
        const Guard guard(s_mutex);
        note(s_state.handles.erase(handle) == 1 ? "cleanup()" : "cleanup of what is no handle");
    }
    const InsideCurl inside;
    real<void(CURL*)>("curl_easy_cleanup")(handle);
}

curl_slist* curl_slist_append(curl_slist* list, const char* text)
{
    if (t_insideCurl > 0)
    {
        return real<curl_slist*(curl_slist*, const char*)>("curl_slist_append")(list, text);
    }
    callAppendHook();
    {
        const Guard guard(s_mutex);
        note("append(" + std::string(text) + ")");
        if (s_state.appendPasses > 0)
        {
            --s_state.appendPasses;
        }
        else if (s_state.appendFailures > 0)
        {
            --s_state.appendFailures;
            return nullptr;
        }
    }
    curl_slist* longer = real<curl_slist*(curl_slist*, const char*)>("curl_slist_append")(list, text);
    const Guard guard(s_mutex);
    s_state.lists.insert(longer);
    return longer;
}

void curl_slist_free_all(curl_slist* list)
{
    if (t_insideCurl == 0)
    {
        const Guard guard(s_mutex);
        const bool known = list == nullptr || s_state.lists.erase(list) == 1;
        note(!known ? "free of what is no list" : list == nullptr ? "free(null)" : "free(list)");
    }
    real<void(curl_slist*)>("curl_slist_free_all")(list);
}

CURLcode curl_easy_setopt(CURL* handle, CURLoption option, ...)
{
    va_list arguments;
    va_start(arguments, option);
    const bool number = option < CURLOPTTYPE_OBJECTPOINT;
    const bool offset = option >= CURLOPTTYPE_OFF_T && option < CURLOPTTYPE_BLOB;
    const long small = number ? va_arg(arguments, long) : 0;
    const curl_off_t large = offset ? va_arg(arguments, curl_off_t) : 0;
    void* const pointer = number || offset ? nullptr : va_arg(arguments, void*);
    va_end(arguments);
    if (t_insideCurl == 0)
    {
        const Guard guard(s_mutex);
        const std::string value = number   ? std::to_string(small)
                                  : offset ? std::to_string(large)
                                           : valueOf(option, pointer, s_state.handles[handle].pointers);
        note("setopt(" + std::string(nameOf(option)) + "=" + value + ")");
        if (s_state.refusals.count(option) != 0)
        {
            return CURLE_UNKNOWN_OPTION;
        }
        s_state.handles[handle].pointers[option] = pointer;
    }
    const auto forward = real<CURLcode(CURL*, CURLoption, ...)>("curl_easy_setopt");
    return number   ? forward(handle, option, small)
           : offset ? forward(handle, option, large)
                    : forward(handle, option, pointer);
}

CURLcode curl_easy_perform(CURL* handle)
{
    Handle known;
    void (*hook)(unsigned) = nullptr;
    unsigned number = 0;
    {
        const Guard guard(s_mutex);
        note("perform()");
        Handle& entry = s_state.handles[handle];
        entry.answered = !s_state.answers.empty() || !s_state.always.empty();
        if (!s_state.answers.empty())
        {
            entry.answer = s_state.answers.front();
            s_state.answers.pop_front();
        }
        else if (entry.answered)
        {
            entry.answer = s_state.always.front();
        }
        known = entry;
        hook = s_state.performHook;
        number = ++s_state.performs;
    }
    if (hook != nullptr)
    {
        hook(number);
    }
    if (!known.answered)
    {
        const InsideCurl inside;
        return real<CURLcode(CURL*)>("curl_easy_perform")(handle);
    }
    const std::string sent = drain(known);
    const bool taken = deliver(known, known.answer.body);
    const Guard guard(s_mutex);
    s_state.sentBodies.push_back(sent);
    return taken ? known.answer.result : CURLE_WRITE_ERROR;
}

CURLcode curl_easy_getinfo(CURL* handle, CURLINFO info, ...)
{
    va_list arguments;
    va_start(arguments, info);
    void* const out = va_arg(arguments, void*);
    va_end(arguments);
    if (t_insideCurl == 0)
    {
        const Guard guard(s_mutex);
        Handle& entry = s_state.handles[handle];
        if (entry.answered && info == CURLINFO_RESPONSE_CODE)
        {
            *static_cast<long*>(out) = entry.answer.status;
            return CURLE_OK;
        }
        if (entry.answered && info == CURLINFO_REDIRECT_URL)
        {
            *static_cast<char**>(out) = entry.answer.redirect.empty() ? nullptr : entry.answer.redirect.data();
            return CURLE_OK;
        }
    }
    return real<CURLcode(CURL*, CURLINFO, ...)>("curl_easy_getinfo")(handle, info, out);
}

PUBSEC_C_END
