/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The storm on threads whose steps are pulled apart: every call of the library into its host, every callback and every
 * transfer waits for a random time, first or afterwards, and the stack is ended and started again. The loops, the delay
 * task, two hosts and the servers are real threads; time is virtual and runs a few hundred times as fast as on a device.
 * Whatever the order was, each platform ends registered, with one keepalive chain that goes on.
 *
 * Each test is a seed. PUBSEC_SHAKES=N in the environment makes N tests of it, PUBSEC_SHAKES_FROM=S lets the first seed
 * be S: the same waits come again, though the threads are never scheduled quite the same way.
 */
#include <atomic>
#include <cstdio>
#include <random>
#include <thread>

#include "core/platform_table.h"
#include "tests/support/environment.h"
#include "tests/support/session_fixture.h"
#include "tests/support/session_storm.h"
#include "tests/torture/silence.h"

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::Le;
using testing::SizeIs;

namespace
{

std::atomic<bool> g_shakes{false};
std::atomic<u32> g_seed;
std::atomic<u32> g_threads;
thread_local int t_locks; /* that this thread holds */

/* Each thread has numbers of its own that follow from the seed. */
u32 draw()
{
    thread_local u32 s_seed = 0;
    thread_local std::mt19937 s_random;
    if (s_seed != g_seed)
    {
        s_seed = g_seed;
        s_random.seed(s_seed * 1000 + g_threads++);
    }
    return static_cast<u32>(s_random());
}

/* Half of the calls go on at once, a few wait for longer than a transfer takes. */
void shake(u32 longestUs = 4000)
{
    if (!g_shakes)
    {
        return;
    }
    const u32 drawn = draw();
    switch (drawn % 16)
    {
    case 0:
    case 1:
        return std::this_thread::sleep_for(microseconds((drawn >> 4) % longestUs));
    case 2:
    case 3:
        return std::this_thread::sleep_for(microseconds((drawn >> 4) % 300));
    case 4:
    case 5:
    case 6:
    case 7:
        return std::this_thread::yield();
    default:
        return;
    }
}

/* The threads of the register tasks, one for each start of the stack. */
std::mutex g_loopMutex;
std::vector<std::thread> g_loops;

void startLoop()
{
    const std::lock_guard<std::mutex> lock(g_loopMutex);
    g_loops.emplace_back([] { fake_platform::runEvents(); });
}

} // namespace

extern "C"
{
    u32 __real_AppTaskSendEvent(TAppTaskHandle hTask, u32 dwEvent, PFAppEvent pfHandler, const void* pvContext);
    TAppTimerHandle __real_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);
    u32 __real_AppTaskCancelTimer(TAppTimerHandle hTimer);
    u32 __real_AppLockTakeByTime(TAppLockHandle hLock, u32 dwMilliseconds);
    u32 __real_AppLockGive(TAppLockHandle hLock);
    void __real_AppDelay(u32 dwMilliseconds);
    CURLcode __real_curl_easy_perform(CURL* handle);

    u32 __wrap_AppTaskSendEvent(TAppTaskHandle hTask, u32 dwEvent, PFAppEvent pfHandler, const void* pvContext);
    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);
    u32 __wrap_AppTaskCancelTimer(TAppTimerHandle hTimer);
    u32 __wrap_AppLockTakeByTime(TAppLockHandle hLock, u32 dwMilliseconds);
    u32 __wrap_AppLockGive(TAppLockHandle hLock);
    void __wrap_AppDelay(u32 dwMilliseconds);
    CURLcode __wrap_curl_easy_perform(CURL* handle);
    void __wrap_TlxPrintf(s32 nArg1, s32 nArg2, const char* pchFormat, ...);

    u32 __wrap_AppTaskSendEvent(TAppTaskHandle hTask, u32 dwEvent, PFAppEvent pfHandler, const void* pvContext)
    {
        shake();
        const u32 result = __real_AppTaskSendEvent(hTask, dwEvent, pfHandler, pvContext);
        if (g_shakes)
        {
            startLoop();
        }
        return result;
    }

    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext)
    {
        shake();
        const TAppTimerHandle timer = __real_AppTaskSetTimer(hTask, dwMilliseconds, pfHandler, pvContext);
        shake(12000); /* it may be due, and much else be done, before its handle is known */
        return timer;
    }

    u32 __wrap_AppTaskCancelTimer(TAppTimerHandle hTimer)
    {
        shake();
        const u32 result = __real_AppTaskCancelTimer(hTimer);
        shake();
        return result;
    }

    u32 __wrap_AppLockTakeByTime(TAppLockHandle hLock, u32 dwMilliseconds)
    {
        shake();
        const u32 result = __real_AppLockTakeByTime(hLock, dwMilliseconds);
        t_locks += result == 0 ? 1 : 0;
        shake();
        return result;
    }

    u32 __wrap_AppLockGive(TAppLockHandle hLock)
    {
        shake();
        const u32 result = __real_AppLockGive(hLock);
        --t_locks;
        shake();
        return result;
    }

    /* The delay task lets the time pass, so that its timers run on no other thread. */
    void __wrap_AppDelay(u32 dwMilliseconds)
    {
        if (!g_shakes)
        {
            return __real_AppDelay(dwMilliseconds);
        }
        EXPECT_EQ(t_locks, 0);
        std::this_thread::sleep_for(microseconds(2 * dwMilliseconds));
        shake();
    }

    CURLcode __wrap_curl_easy_perform(CURL* handle)
    {
        EXPECT_EQ(t_locks, 0);
        shake();
        const CURLcode result = __real_curl_easy_perform(handle);
        shake();
        return result;
    }

    /* Nobody reads the lines; what they are made of is looked at. */
    void __wrap_TlxPrintf(s32, s32, const char* pchFormat, ...)
    {
        EXPECT_EQ(t_locks, 0);
        char line[512];
        va_list arguments;
        va_start(arguments, pchFormat);
        std::vsnprintf(line, sizeof(line), pchFormat, arguments);
        va_end(arguments);
        if (g_shakes && draw() % 8 == 0)
        {
            shake();
        }
    }
}

namespace
{

/* Takes its time, and sometimes leaves the session that it is told of. */
void hearShaken(u32 platform, u32 status, const TPubSecPlatRegInfo*)
{
    EXPECT_EQ(t_locks, 0);
    shake();
    if (status == 1 && g_shakes && draw() % 8 == 0)
    {
        PubSecPostUserUnRegisterMsg(platform);
    }
}

class SessionShaken : public SessionTest, public testing::WithParamInterface<u32>
{
  protected:
    viewlib::Config serverConfig() const override
    {
        return configOf(0);
    }

    void SetUp() override
    {
        SessionTest::SetUp();
        PubSecStackRegisterCB(hearShaken);
        second = newServer(configOf(1));
        g_seed = GetParam();
        g_threads = 0;
    }

    void TearDown() override
    {
        rest();
        SessionTest::TearDown();
    }

    /* Lets the loop, if the stack was started, and the delay task run. */
    void run()
    {
        g_shakes = true;
        startLoop();
        m_delayTask = std::thread([] {
            while (g_shakes)
            {
                fake_platform::runFor(draw() % 400);
                std::this_thread::sleep_for(microseconds(200));
            }
        });
    }

    /* Nothing runs any more; what was under way has ended. */
    void rest()
    {
        PubSecStackUnInit();
        g_shakes = false;
        for (std::thread& loop : g_loops)
        {
            loop.join();
        }
        g_loops.clear();
        if (m_delayTask.joinable())
        {
            m_delayTask.join();
        }
    }

    /* One of all that hosts do. */
    static void hostStep(SessionStorm& storm, u32 random)
    {
        const u32 drawn = random >> 4;
        switch (random % 16)
        {
        case 0:
            PubSecStackUnInit();
            PubSecStackInit();
            return;
        case 1:
            PubSecStackInit();
            return;
        case 2:
            return PubSecStackRegisterCB(hearShaken);
        case 3:
            _SetPubSecStaLogLvl(static_cast<s32>(drawn % 6));
            return;
        case 4:
        case 5:
        case 6:
            return storm.post(drawn);
        case 7:
        case 8:
        case 9:
            return storm.configure(drawn);
        default:
            return storm.callDirectly(drawn);
        }
    }

    void storm(milliseconds time)
    {
        SessionStorm storm(*server, *second, GetParam());
        const milliseconds pause(2 * (GetParam() % 4)); /* sessions of all ages are met */
        for (int host = 0; host < 2; ++host)
        {
            storm.repeat([&storm](u32 random) { hostStep(storm, random); }, pause);
        }
        storm.repeat([&storm](u32 random) { storm.misbehave(random); }, milliseconds(20));
        std::this_thread::sleep_for(time);
        storm.end();
    }

    viewlib::Server& serverOf(u32 platform) const
    {
        return platform == 0 ? *server : *second;
    }

    /* Registered at its server, where three keepalives after each other went well. */
    bool isAlive(u32 platform) const
    {
        TPubSecPlatRegInfo inForce;
        PubSecTableRead(platform, &inForce);
        return PubSecGetRegisterStatus(static_cast<s32>(platform)) == 1 &&
               inForce.dwServerPort == serverOf(platform).port() && m_keptAlive[platform] >= 3;
    }

    /* Until both platforms have the session that they are configured for. */
    bool recover()
    {
        m_keptAlive[0] = m_keptAlive[1] = 0;
        PubSecStackInit();
        const auto end = steady_clock::now() + seconds(20);
        while (steady_clock::now() < end)
        {
            for (u32 platform = 0; platform < PUBSEC_PLATFORM_NUM; ++platform)
            {
                /* again and again: a redirect that was under way may have been written over it */
                configure(platform, SessionStorm::recordOf(platform, serverOf(platform)));
            }
            std::this_thread::sleep_for(milliseconds(4));
            if (isAlive(0) && isAlive(1))
            {
                return true;
            }
        }
        return false;
    }

    /* Of each kind one timer at most, and that in its slot; a registered platform has a keepalive, and is enabled. */
    static void expectChains(u32 platform)
    {
        const auto keepalive = keepaliveTimers(platform);
        const auto clock = clockTimers(platform);
        EXPECT_THAT(keepalive, SizeIs(Le(1u)));
        EXPECT_THAT(clock, SizeIs(Le(1u)));
        EXPECT_TRUE(keepalive.empty() || keepalive[0].handle == g_ahKeepaliveTimer[platform]);
        EXPECT_TRUE(clock.empty() || clock[0].handle == g_ahSyncTimeTimer[platform]);
        EXPECT_GE(keepalive.size(), g_bPubSecRegStatus[platform]);
        EXPECT_LE(g_bPubSecRegStatus[platform], g_atPubSecStackGlobalCommon[platform].dwEnable);
    }

    /* Passes of a minute: the session sends what one chain sends. A clock period of 0 may have started without one. */
    void expectSessionGoesOn(u32 platform) const
    {
        const viewlib::Server& at = serverOf(platform);
        expectChains(platform);
        EXPECT_EQ(g_bPubSecRegStatus[platform], 1u);
        EXPECT_TRUE(at.registered(SessionStorm::deviceOf(platform)));
        EXPECT_EQ(at.exchangesOf(kKeepalive).size(), 60u);
        EXPECT_EQ(at.exchangesOf(kTime).size(), clockTimers(platform).size());
        EXPECT_EQ(at.exchanges().size(), 60u + clockTimers(platform).size());
    }

    std::unique_ptr<viewlib::Server> second;

  private:
    viewlib::Config configOf(u32 platform) const
    {
        viewlib::Config config;
        config.registrationLifetime = milliseconds(0);
        config.observer = [this, platform](const viewlib::Exchange& exchange) {
            shake();
            if (exchange.path == kKeepalive)
            {
                m_keptAlive[platform] = exchange.status == 200 ? m_keptAlive[platform] + 1 : 0;
            }
        };
        return config;
    }

    mutable std::atomic<u32> m_keptAlive[PUBSEC_PLATFORM_NUM] = {}; /* in a row, by server */
    std::thread m_delayTask;
};

TEST_P(SessionShaken, EndsWithOneChainEach)
{
    {
        const Silence noBodies;
        run();
        storm(milliseconds(400));
        rest();
    }
    expectChains(0);
    expectChains(1);

    bool recovered = false;
    {
        const Silence noBodies;
        run();
        recovered = recover();
        rest();
    }
    ASSERT_TRUE(recovered);
    passes(2); /* what is due is done, from here on everything is on time */
    server->clearExchanges();
    second->clearExchanges();
    passes(60);
    expectSessionGoesOn(0);
    expectSessionGoesOn(1);
}

INSTANTIATE_TEST_SUITE_P(Seed, SessionShaken,
                         testing::Range(numberFromEnvironment("PUBSEC_SHAKES_FROM", 1),
                                        numberFromEnvironment("PUBSEC_SHAKES_FROM", 1) +
                                            numberFromEnvironment("PUBSEC_SHAKES", 4)),
                         [](const auto& parameter) { return std::to_string(parameter.param); });

} // namespace
