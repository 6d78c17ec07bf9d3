/* SPDX-License-Identifier: Apache-2.0 */
#include "heap_meter.h"

#include <malloc.h>

#include <atomic>
#include <cerrno>

extern "C"
{
    void* __libc_malloc(size_t size);
    void* __libc_calloc(size_t count, size_t size);
    void* __libc_realloc(void* block, size_t size);
    void* __libc_memalign(size_t alignment, size_t size);
    void __libc_free(void* block);
}

namespace
{

std::atomic<size_t> s_allocations{0};
std::atomic<long long> s_held{0};
std::atomic<long long> s_peak{0};
std::atomic<long long> s_start{0};

long long sizeOf(void* block)
{
    return static_cast<long long>(malloc_usable_size(block));
}

void* counted(void* block)
{
    if (block != nullptr)
    {
        const long long held = s_held += sizeOf(block);
        ++s_allocations;
        long long peak = s_peak;
        while (held > peak && !s_peak.compare_exchange_weak(peak, held))
        {
        }
    }
    return block;
}

} // namespace

extern "C"
{
    void* malloc(size_t size)
    {
        return counted(__libc_malloc(size));
    }

    void* calloc(size_t count, size_t size)
    {
        return counted(__libc_calloc(count, size));
    }

    void* realloc(void* block, size_t size)
    {
        const long long before = block != nullptr ? sizeOf(block) : 0;
        void* const grown = __libc_realloc(block, size);
        if (grown != nullptr || size == 0)
        {
            s_held -= before;
        }
        return counted(grown);
    }

    void* memalign(size_t alignment, size_t size)
    {
        return counted(__libc_memalign(alignment, size));
    }

    void* aligned_alloc(size_t alignment, size_t size)
    {
        return memalign(alignment, size);
    }

    int posix_memalign(void** place, size_t alignment, size_t size)
    {
        *place = memalign(alignment, size);
        return *place != nullptr ? 0 : ENOMEM;
    }

    void free(void* block)
    {
        if (block != nullptr)
        {
            s_held -= sizeOf(block);
            __libc_free(block);
        }
    }
}

namespace heap
{

void begin()
{
    s_allocations = 0;
    s_start = s_held.load();
    s_peak = s_held.load();
}

size_t allocations()
{
    return s_allocations;
}

size_t peakBytes()
{
    return static_cast<size_t>(s_peak - s_start);
}

} // namespace heap
