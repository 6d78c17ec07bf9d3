/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/documents/allocations.h"

#include <cstdlib>
#include <utility>

#include <cjson/cJSON.h>

namespace
{

Allocations::Hook s_hook;
int s_made;
int s_outstanding;

void* allocate(size_t size)
{
    ++s_made;
    if (!s_hook(s_made))
    {
        return nullptr;
    }
    ++s_outstanding;
    return std::malloc(size);
}

void release(void* block)
{
    s_outstanding -= block != nullptr ? 1 : 0;
    std::free(block);
}

} // namespace

Allocations::Allocations(Hook hook)
{
    s_hook = std::move(hook);
    s_made = 0;
    s_outstanding = 0;
    cJSON_Hooks hooks = {allocate, release};
    cJSON_InitHooks(&hooks);
}

Allocations::~Allocations()
{
    cJSON_InitHooks(nullptr);
}

int Allocations::made()
{
    return s_made;
}

int Allocations::outstanding()
{
    return s_outstanding;
}
