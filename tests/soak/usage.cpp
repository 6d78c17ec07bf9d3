/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/soak/usage.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace
{

size_t entriesOf(const char* folder)
{
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        static_cast<void>(entry);
        ++count;
    }
    return count;
}

size_t residentBytes()
{
    size_t all = 0;
    size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

Usage Usage::now()
{
    const struct mallinfo2 heap = mallinfo2();
    Usage usage;
    usage.heap = heap.uordblks + heap.hblkhd;
    usage.resident = residentBytes();
    usage.descriptors = entriesOf("/proc/self/fd");
    usage.threads = entriesOf("/proc/self/task");
    return usage;
}

Usage Usage::least(const Usage& other) const
{
    Usage usage;
    usage.heap = std::min(heap, other.heap);
    usage.resident = std::min(resident, other.resident);
    usage.descriptors = std::min(descriptors, other.descriptors);
    usage.threads = std::min(threads, other.threads);
    return usage;
}

std::string Usage::text() const
{
    return "heap " + std::to_string(heap / 1024) + " KiB, resident " + std::to_string(resident / 1024) +
           " KiB, descriptors " + std::to_string(descriptors) + ", threads " + std::to_string(threads);
}
