/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/session_real.h"

#include <algorithm>
#include <mutex>
#include <thread>

#include <pubsecplatform_posix.h>

#include "core/core.h"
#include "core/state.h"

namespace
{

std::mutex g_mutex;
std::vector<std::string> g_told;
std::vector<std::string> g_lines;

void hear(u32 platform, u32 status, const TPubSecPlatRegInfo*)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_told.push_back(std::to_string(platform) + "->" + std::to_string(status));
}

void keepLine(void*, const char* line, size_t length)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_lines.emplace_back(line, length);
}

} // namespace

void RealSession::SetUp()
{
    resetStack();
    {
        const std::lock_guard<std::mutex> lock(g_mutex);
        g_told.clear();
        g_lines.clear();
    }
    PosixPlatformSetLogCallback(keepLine, nullptr);
    _SetPubSecStaLogLvl(3);
    PubSecStackRegisterCB(hear);
    ASSERT_EQ(PubSecStackInit(), 50u);
}

void RealSession::TearDown()
{
    PubSecStackUnInit();
    EXPECT_EQ(PosixPlatformStop(), 0u);
    EXPECT_EQ(PosixPlatformPoolBlocks(), 0);
    PosixPlatformSetLogCallback(nullptr, nullptr);
    if (HasFailure())
    {
        for (const std::string& line : g_lines)
        {
            fputs(line.c_str(), stderr);
        }
    }
    resetStack();
}

std::unique_ptr<viewlib::Server> RealSession::newServer(viewlib::Config config)
{
    auto made = std::make_unique<viewlib::Server>(std::move(config));
    made->start();
    return made;
}

TPubSecPlatRegInfo RealSession::recordAt(const viewlib::Server& server)
{
    TPubSecPlatRegInfo info = recordFor(server.port());
    info.dwKeepaliveSec = 1;
    return info;
}

void RealSession::configure(u32 platform, const TPubSecPlatRegInfo& info)
{
    ASSERT_EQ(PubSecStackUpdateRegisterInfo(static_cast<s32>(platform), &info), 50u);
}

bool RealSession::waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > end)
        {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool RealSession::waitForStatus(u32 platform, u32 status)
{
    return waitFor([=] { return PubSecGetRegisterStatus(static_cast<s32>(platform)) == status; });
}

std::vector<std::string> RealSession::told()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return g_told;
}

size_t RealSession::linesWith(const std::string& text)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return static_cast<size_t>(std::count_if(
        g_lines.begin(), g_lines.end(), [&](const std::string& line) { return line.find(text) != std::string::npos; }));
}

std::vector<std::string> RealSession::requestsOf(const viewlib::Server& server)
{
    std::vector<std::string> texts;
    for (const viewlib::Exchange& exchange : server.exchanges())
    {
        texts.push_back(exchange.path.substr(exchange.path.rfind('/') + 1) + " " + std::to_string(exchange.status));
    }
    return texts;
}
