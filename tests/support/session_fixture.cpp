/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/session_fixture.h"

#include <chrono>

namespace
{

/* Callbacks are plain functions, so what they hear is kept here. */
std::mutex g_toldMutex;
std::vector<Told> g_told;
const viewlib::Server* g_firstServer;

void hear(u32 slot, u32 platform, u32 status, const TPubSecPlatRegInfo* info)
{
    const size_t requests = g_firstServer != nullptr ? g_firstServer->exchanges().size() : 0;
    const std::lock_guard<std::mutex> lock(g_toldMutex);
    g_told.push_back({slot, platform, status, *info, fake_platform::now(), requests});
}

void hearFirst(u32 platform, u32 status, const TPubSecPlatRegInfo* info)
{
    hear(0, platform, status, info);
}

void hearSecond(u32 platform, u32 status, const TPubSecPlatRegInfo* info)
{
    hear(1, platform, status, info);
}

/* 2024-03-01 00:00:00 UTC is the virtual 0. */
std::chrono::system_clock::time_point virtualClock()
{
    return std::chrono::system_clock::time_point(std::chrono::seconds(1709251200)) +
           std::chrono::milliseconds(fake_platform::now());
}

std::vector<fake_platform::Timer> timersOf(PFAppTimer handler, u32 platform)
{
    std::vector<fake_platform::Timer> found;
    for (const fake_platform::Timer& timer : fake_platform::armedTimers())
    {
        if (timer.handler == handler && timer.context == &g_adwPubSecStackPlatIndex[platform])
        {
            found.push_back(timer);
        }
    }
    return found;
}

} // namespace

void clearTold()
{
    const std::lock_guard<std::mutex> lock(g_toldMutex);
    g_told.clear();
}

std::string shortForm(const Told& told)
{
    return std::to_string(told.slot) + ":" + std::to_string(told.platform) + "->" + std::to_string(told.status);
}

SessionTest::SessionTest() = default;

viewlib::Config SessionTest::serverConfig() const
{
    return {};
}

std::unique_ptr<viewlib::Server> SessionTest::newServer(viewlib::Config config)
{
    config.clock = virtualClock;
    auto made = std::make_unique<viewlib::Server>(std::move(config));
    made->start();
    return made;
}

void SessionTest::seen(const viewlib::Exchange& exchange)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_times[exchange.number] = fake_platform::now();
}

void SessionTest::SetUp()
{
    FakePlatformTest::SetUp();
    resetStack();
    clearTold();
    viewlib::Config config = serverConfig();
    const auto further = config.observer;
    config.observer = [this, further](const viewlib::Exchange& exchange) {
        seen(exchange);
        if (further)
        {
            further(exchange);
        }
    };
    server = newServer(config);
    g_firstServer = server.get();
    _SetPubSecStaLogLvl(3);
    ASSERT_EQ(PubSecStackInit(), 50u);
}

void SessionTest::TearDown()
{
    g_firstServer = nullptr;
    server.reset();
    resetStack();
    FakePlatformTest::TearDown();
}

void SessionTest::listen()
{
    PubSecStackRegisterCB(hearFirst);
    PubSecStackRegisterCB(hearSecond);
}

std::vector<Told> SessionTest::told() const
{
    const std::lock_guard<std::mutex> lock(g_toldMutex);
    return g_told;
}

std::vector<std::string> SessionTest::toldShort() const
{
    std::vector<std::string> texts;
    for (const Told& one : told())
    {
        texts.push_back(shortForm(one));
    }
    return texts;
}

void SessionTest::configure(u32 platform, const TPubSecPlatRegInfo& info)
{
    ASSERT_EQ(PubSecStackUpdateRegisterInfo(static_cast<s32>(platform), &info), 50u);
}

void SessionTest::passes(u32 count)
{
    g_bPubSecInit = 1;
    fake_platform::afterDelays(count, [] { PubSecStackUnInit(); });
    PubSecStackRegisterThread(g_hAppTaskRegister, 0, nullptr);
}

void SessionTest::passThen(const std::function<void()>& atEnd)
{
    fake_platform::setDelayHook([&atEnd](u32, u32) {
        fake_platform::setDelayHook(nullptr);
        atEnd();
    });
    passes(1);
}

void SessionTest::registerPlatform(const TPubSecPlatRegInfo& info, u32 platform)
{
    configure(platform, info);
    bool registered = false;
    passThen([&] { registered = PubSecGetRegisterStatus(static_cast<s32>(platform)) == 1; });
    ASSERT_TRUE(registered);
}

std::vector<std::string> SessionTest::requestsOf(const viewlib::Server& from)
{
    std::vector<std::string> texts;
    for (const viewlib::Exchange& exchange : from.exchanges())
    {
        texts.push_back(exchange.path.substr(exchange.path.rfind('/') + 1) + " " + std::to_string(exchange.status));
    }
    return texts;
}

std::vector<std::string> SessionTest::requests() const
{
    return requestsOf(*server);
}

std::vector<u64> SessionTest::timesOf(const std::string& path) const
{
    std::vector<u64> times;
    for (const viewlib::Exchange& exchange : server->exchangesOf(path))
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        times.push_back(m_times.at(exchange.number));
    }
    return times;
}

std::vector<fake_platform::Timer> SessionTest::keepaliveTimers(u32 platform)
{
    return timersOf(_PubSecStackKeepaliveTimerHandle, platform);
}

std::vector<fake_platform::Timer> SessionTest::clockTimers(u32 platform)
{
    return timersOf(_PubSecStackGetPlatformTimeTimerHandle, platform);
}

std::vector<std::string> SessionTest::newLines()
{
    std::vector<std::string> lines = fake_platform::logLines();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(m_linesRead));
    m_linesRead += lines.size();
    return lines;
}
