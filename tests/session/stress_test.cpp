/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Everything at once, on the platform's real threads: posts, configurations, callbacks, log levels, direct calls, lost
 * keepalives. Passes and timers come ten to fifty times as fast as on a device. It is made for the sanitizers; by itself
 * it shows that nothing hangs and that one chain per platform is left.
 */
#include <algorithm>
#include <atomic>
#include <functional>
#include <random>
#include <thread>

#include <pubsecplatform_posix.h>

#include "tests/support/session_real.h"

using std::chrono::milliseconds;
using std::chrono::seconds;
using viewlib::Answer;

extern "C"
{
    TAppTimerHandle __real_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);
    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);

    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext)
    {
        return __real_AppTaskSetTimer(hTask, dwMilliseconds / 10, pfHandler, pvContext);
    }

    void __wrap_AppDelay(u32 dwMilliseconds);

    void __wrap_AppDelay(u32 dwMilliseconds)
    {
        std::this_thread::sleep_for(milliseconds(dwMilliseconds / 50));
    }
}

namespace
{

std::atomic<u32> g_calls;

template <int Number> void countCall(u32 platform, u32, const TPubSecPlatRegInfo*)
{
    g_calls += PubSecGetRegisterStatus(static_cast<s32>(platform)) + Number;
}

class SessionStress : public RealSession
{
  protected:
    void SetUp() override
    {
        RealSession::SetUp();
        PosixPlatformSetLogCallback([](void*, const char*, size_t) {}, nullptr);
        first = newServer();
        second = newServer();
    }

    /* Repeats a step on a thread of its own until the time is over. */
    void repeat(std::function<void(u32 random)> step, milliseconds pause)
    {
        const u32 seed = static_cast<u32>(m_threads.size() + 1);
        m_threads.emplace_back([this, step, pause, seed] {
            std::minstd_rand random(seed);
            while (!m_over)
            {
                step(static_cast<u32>(random()));
                std::this_thread::sleep_for(pause);
            }
        });
    }

    void runFor(milliseconds time)
    {
        std::this_thread::sleep_for(time);
        m_over = true;
        for (std::thread& thread : m_threads)
        {
            thread.join();
        }
    }

    TPubSecPlatRegInfo recordOf(u32 platform, const viewlib::Server& server) const
    {
        TPubSecPlatRegInfo info = recordAt(server);
        setText(info.achDeviceID, "4401000000119000000" + std::to_string(platform));
        info.dwSyncTimeMin = 1;
        return info;
    }

    void configureAnyhow(u32 random)
    {
        const u32 platform = random & 1;
        TPubSecPlatRegInfo info = recordOf(platform, (random & 2) != 0 ? *first : *second);
        info.dwEnable = (random & 0x1c) != 0 ? 1 : 0;
        info.dwKeepaliveSec = (random & 0x20) != 0 ? 1 : 2;
        info.dwSyncTimeMin = (random >> 6) & 1;
        info.achReserved[0] = static_cast<char>(random >> 7);
        configure(platform, info);
    }

    void misbehave(u32 random)
    {
        viewlib::Server& server = (random & 1) != 0 ? *first : *second;
        switch ((random >> 1) % 4)
        {
        case 0:
            return server.always(kKeepalive, Answer(500));
        case 1:
            return server.script(
                kRegister, Answer::redirect(302, (random & 8) != 0 ? first->url(kRegister) : second->url(kRegister)));
        case 2:
            return server.script(kKeepalive, Answer(200, "{\"ResponseStatusObject\":{\"StatusCode\":10}}"));
        default:
            return server.clearScripts();
        }
    }

    void callDirectly(u32 random) const
    {
        TPubSecRegParam param = paramFor(first->port());
        TPubSecSystemTime time = {};
        switch (random % 4)
        {
        case 0:
            PubSecPostUserUnRegisterMsg((random >> 2) & 1);
            return;
        case 1:
            PubSecStackTestRegister(&param);
            return;
        case 2:
            PubSecGetSystemTimeMsg((random >> 2) & 1, &time);
            return;
        default:
            PubSecGetRegisterStatus(static_cast<s32>((random >> 2) & 1));
        }
    }

    std::unique_ptr<viewlib::Server> first;
    std::unique_ptr<viewlib::Server> second;

  private:
    std::atomic<bool> m_over{false};
    std::vector<std::thread> m_threads;
};

TEST_F(SessionStress, EndsWithOneChainEach)
{
    std::atomic<u32> posted{0};
    for (int i = 0; i < 2; ++i)
    {
        repeat(
            [&](u32 random) {
                static const TPubSecIntelliPicObj s_tPicture = {};
                char achStatus[PUBSEC_STATUS_SIZE] = "";
                posted += PubSecPostImage(random & 1, &s_tPicture, achStatus) == 50 ? 1u : 0u;
            },
            milliseconds(3));
    }
    repeat([this](u32 random) { configureAnyhow(random); }, milliseconds(30));
    repeat([](u32 random) { PubSecStackRegisterCB((random & 1) != 0 ? countCall<1> : countCall<2>); },
           milliseconds(10));
    repeat(
        [](u32 random) {
            char achReply[64];
            PosixPlatformConsoleExecute(("pbsklog " + std::to_string(random % 6)).c_str(), achReply, sizeof(achReply));
        },
        milliseconds(5));
    repeat([this](u32 random) { callDirectly(random); }, milliseconds(15));
    repeat([this](u32 random) { misbehave(random); }, milliseconds(60));
    runFor(seconds(3));
    EXPECT_GT(posted, 10u);
    EXPECT_GT(g_calls, 10u);

    first->clearScripts();
    second->clearScripts();
    configure(0, recordOf(0, *first));
    configure(1, recordOf(1, *second));
    ASSERT_TRUE(waitFor([&] {
        return PubSecGetRegisterStatus(0) == 1 && PubSecGetRegisterStatus(1) == 1 &&
               first->registered("44010000001190000000") && second->registered("44010000001190000001");
    }));
    std::this_thread::sleep_for(milliseconds(300)); /* what was under way has ended */
    for (viewlib::Server* server : {first.get(), second.get()})
    {
        server->clearExchanges();
        ASSERT_TRUE(server->waitFor(kKeepalive, 10));
        const std::vector<viewlib::Exchange> alive = server->exchangesOf(kKeepalive);
        EXPECT_GE(alive[9].arrived - alive[0].arrived, milliseconds(800)); /* nine tenths of a second for one chain */
        EXPECT_EQ(server->exchangesOf(kRegister).size(), 0u);
    }
}

} // namespace
