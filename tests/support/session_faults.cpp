/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/session_faults.h"

#include <atomic>
#include <cstddef>

#include <cjson/cJSON.h>
#include <curl/curl.h>

namespace
{

std::atomic<bool> g_noGlobalInit{false};
std::atomic<bool> g_noHandle{false};
std::atomic<bool> g_noHeaders{false};

void* noMemory(size_t)
{
    return nullptr;
}

} // namespace

extern "C"
{
    CURLcode __real_curl_global_init(long flags);
    CURL* __real_curl_easy_init(void);
    curl_slist* __real_curl_slist_append(curl_slist* list, const char* text);
    CURLcode __wrap_curl_global_init(long flags);
    CURL* __wrap_curl_easy_init(void);
    curl_slist* __wrap_curl_slist_append(curl_slist* list, const char* text);

    CURLcode __wrap_curl_global_init(long flags)
    {
        return g_noGlobalInit ? CURLE_FAILED_INIT : __real_curl_global_init(flags);
    }

    CURL* __wrap_curl_easy_init(void)
    {
        return g_noHandle ? nullptr : __real_curl_easy_init();
    }

    curl_slist* __wrap_curl_slist_append(curl_slist* list, const char* text)
    {
        return g_noHeaders ? nullptr : __real_curl_slist_append(list, text);
    }
}

namespace session_faults
{

NoGlobalInit::NoGlobalInit()
{
    g_noGlobalInit = true;
}

NoGlobalInit::~NoGlobalInit()
{
    g_noGlobalInit = false;
}

NoHandle::NoHandle()
{
    g_noHandle = true;
}

NoHandle::~NoHandle()
{
    g_noHandle = false;
}

NoHeaders::NoHeaders()
{
    g_noHeaders = true;
}

NoHeaders::~NoHeaders()
{
    g_noHeaders = false;
}

NoDocuments::NoDocuments()
{
    cJSON_Hooks hooks = {noMemory, nullptr};
    cJSON_InitHooks(&hooks);
}

NoDocuments::~NoDocuments()
{
    cJSON_InitHooks(nullptr);
}

} // namespace session_faults
