/* SPDX-License-Identifier: Apache-2.0 */
/* The memory pool: the process heap, with what is given out and back counted. */
#include "platform/posix/posix_platform.h"

#include <malloc.h>
#include <stdlib.h>

#include "platform/posix/include/pubsecplatform_posix.h"

using namespace posix_platform;

namespace
{

/* Words as wide as a pointer, which every processor changes in one step. */
struct Account
{
    intptr_t blocks;
    intptr_t bytes;
};

Account g_account = {0, 0};

void count(intptr_t blocks, intptr_t bytes)
{
    __atomic_add_fetch(&g_account.blocks, blocks, __ATOMIC_RELAXED);
    __atomic_add_fetch(&g_account.bytes, bytes, __ATOMIC_RELAXED);
}

} // namespace

void posix_platform::releaseBlock(void* block)
{
    if (block != nullptr)
    {
        count(-1, -static_cast<intptr_t>(malloc_usable_size(block)));
        free(block);
    }
}

/* There is one pool, so every call gives the same handle and none has to be released. */
PLATFORM_FUNCTION u32 AppMemPoolCreate(u32, u32, u32, TAppMemPoolHandle* phPool)
{
    if (phPool == nullptr)
    {
        return kBadArgument;
    }
    *phPool = reinterpret_cast<TAppMemPoolHandle>(&g_account);
    return kDone;
}

PLATFORM_FUNCTION void* AppMemPoolMallocEx(TAppMemPoolHandle, size_t dwSize, const char*, u32)
{
    void* block = malloc(dwSize == 0 ? 1 : dwSize);
    if (block != nullptr)
    {
        count(1, static_cast<intptr_t>(malloc_usable_size(block)));
    }
    return block;
}

PLATFORM_FUNCTION void AppMemPoolFreeEx(TAppMemPoolHandle, void* pvBlock, const char*, u32)
{
    releaseBlock(pvBlock);
}

int64_t PosixPlatformPoolBlocks(void)
{
    return __atomic_load_n(&g_account.blocks, __ATOMIC_RELAXED);
}

int64_t PosixPlatformPoolBytes(void)
{
    return __atomic_load_n(&g_account.bytes, __ATOMIC_RELAXED);
}
