/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/allocations.h"

#include <cstdlib>
#include <mutex>
#include <set>

#include <cjson/cJSON.h>

#include <pubsecstack/types.h>

namespace
{

std::mutex s_mutex;
bool s_watches = false;
size_t s_taken = 0;
unsigned s_cjsonPasses = 0;
unsigned s_cjsonFailures = 0;

/* Never destroyed: blocks are released until the very end. */
std::set<void*>& blocks()
{
    static std::set<void*>* const only = new std::set<void*>;
    return *only;
}

void* noted(void* block)
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    if (s_watches && block != nullptr)
    {
        ++s_taken;
        blocks().insert(block);
    }
    return block;
}

void forget(void* block)
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    blocks().erase(block);
}

bool cjsonFails()
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    if (s_cjsonPasses > 0)
    {
        --s_cjsonPasses;
        return false;
    }
    if (s_cjsonFailures > 0)
    {
        --s_cjsonFailures;
        return true;
    }
    return false;
}

} // namespace

PUBSEC_C_BEGIN

void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);

void* __wrap_malloc(size_t size)
{
    return noted(__real_malloc(size));
}

void* __wrap_calloc(size_t count, size_t size)
{
    return noted(__real_calloc(count, size));
}

void* __wrap_realloc(void* block, size_t size)
{
    void* const grown = __real_realloc(block, size);
    if (grown != nullptr)
    {
        forget(block);
    }
    return noted(grown);
}

void __wrap_free(void* block)
{
    forget(block);
    __real_free(block);
}

PUBSEC_C_END

namespace
{

void* cjsonMalloc(size_t size)
{
    return cjsonFails() ? nullptr : noted(__real_malloc(size));
}

void cjsonFree(void* block)
{
    forget(block);
    __real_free(block);
}

} // namespace

namespace allocations
{

void watch()
{
    {
        const std::lock_guard<std::mutex> guard(s_mutex);
        blocks().clear();
        s_taken = 0;
        s_cjsonPasses = 0;
        s_cjsonFailures = 0;
        s_watches = true;
    }
    cJSON_Hooks hooks = {cjsonMalloc, cjsonFree};
    cJSON_InitHooks(&hooks);
}

void unwatch()
{
    cJSON_InitHooks(nullptr);
    const std::lock_guard<std::mutex> guard(s_mutex);
    s_watches = false;
    s_cjsonFailures = 0;
}

size_t open()
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    return blocks().size();
}

size_t taken()
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    return s_taken;
}

void failCjson(unsigned pass, unsigned times)
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    s_cjsonPasses = pass;
    s_cjsonFailures = times;
}

} // namespace allocations
