/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/util/host.h"

#include <stdarg.h>
#include <stdlib.h>
#include <string.h>

#include "core/state.h"

namespace host
{

State state;

namespace
{

void release(Allocator allocator, void* block, const char* function)
{
    state.releases.push_back({allocator, block, function});
    if (block != nullptr && state.blocks.erase(block) != 1)
    {
        ADD_FAILURE() << "released what is not outstanding";
        abort();
    }
}

} // namespace

void* block(size_t size)
{
    void* taken = malloc(size);
    memset(taken, 0, size);
    state.blocks.insert(taken);
    return taken;
}

char* text(const std::string& content)
{
    char* taken = static_cast<char*>(block(content.size() + 1));
    memcpy(taken, content.c_str(), content.size() + 1);
    return taken;
}

Test::Test()
{
    state = State();
    g_ePubSecStackLogLevel = 0;
    g_hMemPool = nullptr;
}

Test::~Test()
{
    const std::set<void*> left = std::move(state.blocks);
    state = State();
    for (void* block : left)
    {
        free(block);
    }
}

void Test::logAt(u32 level)
{
    g_ePubSecStackLogLevel = level;
}

testing::Matcher<const std::string&> isError(const std::string& function, const std::string& text)
{
    const std::string start = "[PubSecStack ERR] " + function + ":";
    return testing::Truly([start, text](const std::string& line) {
        if (line.compare(0, start.size(), start) != 0)
        {
            return false;
        }
        const size_t after = line.find_first_not_of("0123456789", start.size());
        return after != std::string::npos && after > start.size() && line.substr(after) == " " + text + "\n";
    });
}

std::string debugLine(const std::string& function, const std::string& text)
{
    return "[PubSecStack DBG] " + function + ": " + text + "\n";
}

} // namespace host

using host::Allocator;
using host::state;

extern "C"
{
    void TlxPrintf(s32 nArg1, s32 nArg2, const char* pchFormat, ...)
    {
        char line[1024];
        va_list arguments;
        va_start(arguments, pchFormat);
        vsnprintf(line, sizeof(line), pchFormat, arguments);
        va_end(arguments);
        EXPECT_EQ(nArg1, 1);
        EXPECT_EQ(nArg2, 0);
        state.lines.emplace_back(line);
    }

    u32 NvrSysTimeSwitch(u32, TNvrSysTime*)
    {
        return NVR_SYS_OK;
    }

    u32 NvrSysSetSystemTime(const TNvrSysTime*, u32)
    {
        return NVR_SYS_OK;
    }

    u32 NvrSysTimeSecSwitch(u32 dwMode, u32* pdwSeconds)
    {
        state.switchCalls++;
        state.switchMode = dwMode;
        *pdwSeconds += state.switchAdds;
        return NVR_SYS_OK;
    }

    void NvrSrvFree(void* pvBlock, const char* pchFunction, u32 dwLine)
    {
        EXPECT_GT(dwLine, 0u);
        host::release(Allocator::service, pvBlock, pchFunction);
        free(pvBlock);
    }

    u32 AppMemPoolCreate(u32, u32, u32, TAppMemPoolHandle* phPool)
    {
        *phPool = nullptr;
        return 0;
    }

    void* AppMemPoolMallocEx(TAppMemPoolHandle hPool, size_t dwSize, const char* pchFunction, u32 dwLine)
    {
        EXPECT_GT(dwLine, 0u);
        const bool fails = static_cast<int>(state.sizesAsked.size()) == state.poolFailsAt;
        state.poolsAsked.push_back(hPool);
        state.sizesAsked.push_back(dwSize);
        state.functionsAsked.emplace_back(pchFunction);
        if (fails)
        {
            return nullptr;
        }
        void* taken = host::block(dwSize);
        memset(taken, 0xA5, dwSize);
        return taken;
    }

    void AppMemPoolFreeEx(TAppMemPoolHandle hPool, void* pvBlock, const char* pchFunction, u32 dwLine)
    {
        EXPECT_GT(dwLine, 0u);
        EXPECT_EQ(hPool, g_hMemPool);
        host::release(Allocator::pool, pvBlock, pchFunction);
        free(pvBlock);
    }

    /* The linker sends every call of free in the stack and in this program here. */
    void __real_free(void* pvBlock);
    void __wrap_free(void* pvBlock);
    void __wrap_free(void* pvBlock)
    {
        if (state.blocks.count(pvBlock) != 0)
        {
            host::release(Allocator::heap, pvBlock, "");
        }
        __real_free(pvBlock);
    }
}
