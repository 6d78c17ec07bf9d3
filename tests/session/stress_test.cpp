/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Everything at once, on the platform's real threads: posts, configurations, callbacks, log levels, direct calls,
 * redirects, lost keepalives. Passes and timers come ten to fifty times as fast as on a device. It is made for the
 * sanitizers; by itself it shows that nothing hangs and that one chain per platform is left.
 *
 * PUBSEC_STORM_SECONDS in the environment is how long it lasts, else three seconds.
 */
#include <atomic>
#include <cstdio>
#include <thread>

#include <pubsecplatform_posix.h>

#include "tests/support/environment.h"
#include "tests/support/session_real.h"
#include "tests/support/session_storm.h"

using std::chrono::milliseconds;
using std::chrono::seconds;

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

    static seconds duration()
    {
        return seconds(numberFromEnvironment("PUBSEC_STORM_SECONDS", 3));
    }

    static void changeLevel(u32 random)
    {
        char achReply[64];
        PosixPlatformConsoleExecute(("pbsklog " + std::to_string(random % 6)).c_str(), achReply, sizeof(achReply));
    }

    void start(SessionStorm& storm)
    {
        for (int i = 0; i < 2; ++i)
        {
            storm.repeat([&storm](u32 random) { storm.post(random); }, milliseconds(3));
            storm.repeat([&storm](u32 random) { storm.callDirectly(random); }, milliseconds(15));
        }
        storm.repeat([&storm](u32 random) { storm.configure(random); }, milliseconds(30));
        storm.repeat([&storm](u32 random) { storm.misbehave(random); }, milliseconds(60));
        storm.repeat([](u32 random) { PubSecStackRegisterCB((random & 1) != 0 ? countCall<1> : countCall<2>); },
                     milliseconds(10));
        storm.repeat(changeLevel, milliseconds(5));
        storm.repeat([](u32) { EXPECT_EQ(PubSecStackInit(), 52u); }, milliseconds(20));
    }

    std::unique_ptr<viewlib::Server> first;
    std::unique_ptr<viewlib::Server> second;
};

TEST_F(SessionStress, EndsWithOneChainEach)
{
    {
        SessionStorm storm(*first, *second, 1);
        start(storm);
        std::this_thread::sleep_for(duration());
        storm.end();
        EXPECT_GT(storm.posted(), 10u);
        EXPECT_GT(g_calls, 10u);
        std::printf("\nstorm: %ld seconds, %u posts\n", static_cast<long>(duration().count()), storm.posted());
    }
    ASSERT_TRUE(waitFor([&] {
        /* again and again: a redirect that was under way may have been written over it */
        configure(0, SessionStorm::recordOf(0, *first));
        configure(1, SessionStorm::recordOf(1, *second));
        return PubSecGetRegisterStatus(0) == 1 && PubSecGetRegisterStatus(1) == 1 &&
               first->registered(SessionStorm::deviceOf(0)) && second->registered(SessionStorm::deviceOf(1));
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
