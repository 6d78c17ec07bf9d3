/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The loop, the timers' handlers and the host at the same time. What one of them does while another waits for a server
 * is done by the server itself, in the middle of that request; so each order is the same in every run. However they
 * meet, a platform ends with one keepalive chain and, with a period, one clock chain.
 */
#include <atomic>
#include <functional>
#include <future>
#include <map>
#include <random>
#include <thread>

#include "tests/support/session_fixture.h"

using fake_platform::Function;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using viewlib::Answer;

namespace
{

/* Run once, at the end of the next AppTaskSetTimer, before its caller has the handle. */
std::function<void()> g_afterSetTimer;

/* False after ten seconds: then it never comes. */
bool comes(std::promise<void>& what)
{
    return what.get_future().wait_for(std::chrono::seconds(10)) == std::future_status::ready;
}

} // namespace

extern "C"
{
    TAppTimerHandle __real_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);
    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);

    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext)
    {
        const TAppTimerHandle timer = __real_AppTaskSetTimer(hTask, dwMilliseconds, pfHandler, pvContext);
        const std::function<void()> hook = std::move(g_afterSetTimer);
        g_afterSetTimer = nullptr;
        if (hook)
        {
            hook();
        }
        return timer;
    }
}

namespace
{

class Interleaving : public SessionTest
{
  protected:
    viewlib::Config serverConfig() const override
    {
        viewlib::Config config;
        config.registrationLifetime = std::chrono::milliseconds(0);
        config.observer = [this](const viewlib::Exchange& exchange) { meanwhile(exchange); };
        return config;
    }

    void SetUp() override
    {
        SessionTest::SetUp();
        listen();
    }

    void TearDown() override
    {
        EXPECT_THAT(m_hooks, IsEmpty()) << "something was not done";
        EXPECT_EQ(g_afterSetTimer, nullptr);
        SessionTest::TearDown();
    }

    /* Done once, on a thread of the server, while the request of that path has its answer coming. */
    void during(const std::string& path, std::function<void()> what)
    {
        const std::lock_guard<std::mutex> lock(m_hookMutex);
        m_hooks[path] = std::move(what);
    }

    TPubSecPlatRegInfo info(u32 syncTimeMin = 5) const
    {
        TPubSecPlatRegInfo made = recordFor(server->port());
        made.dwKeepaliveSec = 10;
        made.dwSyncTimeMin = syncTimeMin;
        return made;
    }

    /* The same server by another name. */
    TPubSecPlatRegInfo otherIdentity(u32 syncTimeMin = 5) const
    {
        TPubSecPlatRegInfo made = info(syncTimeMin);
        setText(made.achServerIP, "localhost");
        return made;
    }

    /* A pass of the loop on the calling thread, while timers are run by another. */
    void passMeanwhile(const TPubSecPlatRegInfo& pending)
    {
        configure(0, pending);
        passes(1);
    }

    static void elapse(PFAppTimer handler)
    {
        handler(g_hAppTaskDelay, 4, &g_adwPubSecStackPlatIndex[0]);
    }

    static void expectAtMostOneChain(u32 platform)
    {
        EXPECT_LE(keepaliveTimers(platform).size(), 1u);
        EXPECT_LE(clockTimers(platform).size(), 1u);
    }

    /* What every order of events has to come to once nothing disturbs any more: one chain each, at its pace. */
    void expectSessionGoesOn(u32 clockChains = 1)
    {
        expectAtMostOneChain(0);
        passes(2);
        ASSERT_EQ(PubSecGetRegisterStatus(0), 1u);
        ASSERT_THAT(keepaliveTimers(), SizeIs(1));
        ASSERT_THAT(clockTimers(), SizeIs(clockChains));
        EXPECT_EQ(keepaliveTimers()[0].handle, g_ahKeepaliveTimer[0]);
        EXPECT_EQ(g_ahSyncTimeTimer[0], clockChains == 0 ? nullptr : clockTimers()[0].handle);
        EXPECT_LE(keepaliveTimers()[0].due, fake_platform::now() + 10000);
        server->clearExchanges();
        passes(600);
        EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 60u);
        EXPECT_EQ(server->exchangesOf(kTime).size(), 2u * clockChains);
        EXPECT_EQ(server->exchanges().size(), 60u + 2u * clockChains);
    }

    /* The platform is off: nothing is armed after the last timer has run out, nothing is sent. */
    void expectSessionIsOver()
    {
        fake_platform::runFor(600000);
        EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
        EXPECT_THAT(fake_platform::armedTimers(), IsEmpty());
        EXPECT_EQ(g_ahKeepaliveTimer[0], nullptr);
        EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
        server->clearExchanges();
        passes(600);
        EXPECT_THAT(requests(), IsEmpty());
    }

  private:
    void meanwhile(const viewlib::Exchange& exchange) const
    {
        std::function<void()> hook;
        {
            const std::lock_guard<std::mutex> lock(m_hookMutex);
            const auto found = m_hooks.find(exchange.path);
            if (found == m_hooks.end() || exchange.status == 401)
            {
                return;
            }
            hook = std::move(found->second);
            m_hooks.erase(found);
        }
        hook();
    }

    mutable std::mutex m_hookMutex;
    mutable std::map<std::string, std::function<void()>> m_hooks;
};

TEST_F(Interleaving, HostUnregistersDuringAKeepalive)
{
    u32 result = 0;
    during(kKeepalive, [&] { result = PubSecPostUserUnRegisterMsg(0); });
    configure(0, info());
    passes(1);
    EXPECT_EQ(result, 50u);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    expectSessionGoesOn();
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
}

TEST_F(Interleaving, HostUnregistersDuringAClockQuery)
{
    u32 result = 0;
    during(kTime, [&] { result = PubSecPostUserUnRegisterMsg(0); });
    configure(0, info());
    passes(1);
    EXPECT_EQ(result, 50u);
    expectSessionGoesOn();
}

TEST_F(Interleaving, HostUnregistersDuringTheRegistration)
{
    u32 result = 0;
    during(kRegister, [&] { result = PubSecPostUserUnRegisterMsg(0); });
    configure(0, info());
    passes(1);
    EXPECT_EQ(result, 54u);
    expectSessionGoesOn();
}

/* The callback of a registration ends it: no timer is armed, the next pass registers again. */
TEST_F(Interleaving, CallbackUnregisters)
{
    static std::atomic<u32> s_calls;
    s_calls = 0;
    resetStack();
    g_bPubSecInit = 1;
    PubSecStackRegisterCB([](u32 platform, u32 status, const TPubSecPlatRegInfo*) {
        if (status == 1 && s_calls++ == 0)
        {
            EXPECT_EQ(PubSecPostUserUnRegisterMsg(platform), 50u);
        }
    });
    configure(0, info());
    passThen([] {
        EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
        EXPECT_THAT(fake_platform::armedTimers(), IsEmpty());
    });
    expectSessionGoesOn();
}

TEST_F(Interleaving, TwoHostThreadsUnregister)
{
    for (int round = 0; round < 20; ++round)
    {
        configure(0, info());
        passes(1);
        u32 results[2] = {0, 0};
        std::thread first([&] { results[0] = PubSecPostUserUnRegisterMsg(0); });
        std::thread second([&] { results[1] = PubSecPostUserUnRegisterMsg(0); });
        first.join();
        second.join();
        EXPECT_EQ(results[0] + results[1], 50u + 54u);
    }
    EXPECT_THAT(told(), SizeIs(20 * 4));
}

TEST_F(Interleaving, IdentityChangesDuringAKeepalive)
{
    during(kKeepalive, [&] { passMeanwhile(otherIdentity()); });
    configure(0, info());
    passes(1);
    EXPECT_STREQ(g_atPubSecStackGlobalCommon[0].achServerIP, "localhost");
    expectSessionGoesOn();
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
}

TEST_F(Interleaving, IdentityChangesDuringAClockQuery)
{
    during(kTime, [&] { passMeanwhile(otherIdentity()); });
    configure(0, info());
    passes(1);
    expectSessionGoesOn();
}

TEST_F(Interleaving, ClockPeriodEndsWithTheIdentityDuringAClockQuery)
{
    during(kTime, [&] { passMeanwhile(otherIdentity(0)); });
    configure(0, info());
    passes(1);
    EXPECT_THAT(clockTimers(), IsEmpty());
    expectSessionGoesOn(0);
}

TEST_F(Interleaving, PeriodsChangeDuringAKeepalive)
{
    during(kKeepalive, [&] {
        TPubSecPlatRegInfo next = info();
        next.dwKeepaliveSec = 20;
        passMeanwhile(next);
        next.dwKeepaliveSec = 10;
        passMeanwhile(next);
    });
    configure(0, info());
    passes(1);
    expectSessionGoesOn();
    EXPECT_THAT(told(), SizeIs(2));
}

TEST_F(Interleaving, PeriodsChangeDuringAClockQuery)
{
    during(kTime, [&] {
        TPubSecPlatRegInfo next = info(7);
        passMeanwhile(next);
        passMeanwhile(info());
    });
    configure(0, info());
    passes(1);
    expectSessionGoesOn();
}

TEST_F(Interleaving, ClockPeriodGoesToZeroDuringAClockQuery)
{
    during(kTime, [&] { passMeanwhile(info(0)); });
    configure(0, info());
    passes(1);
    EXPECT_THAT(clockTimers(), IsEmpty());
    EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
    expectSessionGoesOn(0);
}

TEST_F(Interleaving, DisabledDuringAKeepalive)
{
    during(kKeepalive, [&] {
        TPubSecPlatRegInfo off = info();
        off.dwEnable = 0;
        passMeanwhile(off);
    });
    configure(0, info());
    passes(1);
    expectSessionIsOver();
}

TEST_F(Interleaving, DisabledDuringAClockQuery)
{
    during(kTime, [&] {
        TPubSecPlatRegInfo off = info();
        off.dwEnable = 0;
        passMeanwhile(off);
    });
    configure(0, info());
    passes(1);
    EXPECT_THAT(clockTimers(), IsEmpty());
    expectSessionIsOver();
}

/* The third failure arrives when the session that it belongs to is over: the present one pays, and is made anew. */
TEST_F(Interleaving, IdentityChangesDuringTheThirdFailure)
{
    server->script(kKeepalive, Answer(500));
    server->script(kKeepalive, Answer(500));
    configure(0, info());
    passes(12);
    EXPECT_EQ(abyKeepalivFailTimes[0], 2u);
    server->script(kKeepalive, Answer(500));
    during(kKeepalive, [&] { passMeanwhile(otherIdentity()); });
    fake_platform::runFor(10000);
    EXPECT_EQ(abyKeepalivFailTimes[0], 0u);
    expectSessionGoesOn();
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1", "0:0->0", "1:0->0",
                                         "0:0->1", "1:0->1"));
}

/* The host ended the session already, so its loss is not told once more. */
TEST_F(Interleaving, HostUnregistersDuringTheThirdFailure)
{
    server->script(kKeepalive, Answer(500));
    server->script(kKeepalive, Answer(500));
    configure(0, info());
    passes(12);
    server->script(kKeepalive, Answer(500));
    during(kKeepalive, [&] { PubSecPostUserUnRegisterMsg(0); });
    fake_platform::runFor(9000);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0"));
    EXPECT_EQ(abyKeepalivFailTimes[0], 0u);
    EXPECT_THAT(fake_platform::armedTimers(), IsEmpty());
    expectSessionGoesOn();
}

/* Configured while the registration of the former record is under way: that one is left at the next pass. */
TEST_F(Interleaving, IdentityChangesDuringTheRegistration)
{
    during(kRegister, [&] { configure(0, otherIdentity()); });
    configure(0, info());
    passes(2);
    EXPECT_STREQ(g_atPubSecStackGlobalCommon[0].achServerIP, "localhost");
    expectSessionGoesOn();
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
}

/* A redirect is written over what the host has configured meanwhile. */
TEST_F(Interleaving, RedirectOverwritesAConfigurationOfTheMeantime)
{
    server->script(kRegister, Answer::redirect(302, "http://10.2.2.2:9000/VIID/System/Register"));
    during(kRegister, [&] { configure(0, otherIdentity()); });
    configure(0, info());
    passes(1);
    EXPECT_STREQ(g_atPubSecStackGlobalCommon_New[0].achServerIP, "10.2.2.2");
}

/* A pending change that arrives during the unregistration is taken with it. */
TEST_F(Interleaving, IdentityChangesDuringTheUnregistration)
{
    configure(0, info());
    passes(1);
    during(kUnRegister, [&] { configure(0, info(7)); });
    configure(0, otherIdentity());
    passes(1);
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], info(7)));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
}

TEST_F(Interleaving, KeepaliveElapsesDuringTheUnregistration)
{
    configure(0, info());
    passes(1);
    during(kUnRegister, [] {
        elapse(_PubSecStackKeepaliveTimerHandle);
        elapse(_PubSecStackGetPlatformTimeTimerHandle);
    });
    configure(0, otherIdentity());
    passes(1);
    expectSessionGoesOn();
}

TEST_F(Interleaving, StaleTimersElapseDuringTheRegistration)
{
    configure(0, info());
    passes(1);
    PubSecPostUserUnRegisterMsg(0);
    during(kRegister, [] {
        elapse(_PubSecStackKeepaliveTimerHandle);
        elapse(_PubSecStackGetPlatformTimeTimerHandle);
    });
    passes(1);
    expectSessionGoesOn();
}

/* Elapsed before they were cancelled, run after the next session's timers were armed. */
TEST_F(Interleaving, StaleTimersElapseAfterAReregistration)
{
    configure(0, info());
    passes(1);
    configure(0, otherIdentity());
    passThen([] {
        elapse(_PubSecStackKeepaliveTimerHandle);
        elapse(_PubSecStackGetPlatformTimeTimerHandle);
        expectAtMostOneChain(0);
    });
    expectSessionGoesOn();
}

/* The timer is due before the register task has its handle. */
TEST_F(Interleaving, KeepaliveElapsesBeforeItsHandleIsStored)
{
    configure(0, info(0));
    g_afterSetTimer = [] { fake_platform::runFor(500); };
    passes(1);
    expectSessionGoesOn(0);
}

TEST_F(Interleaving, KeepaliveElapsesBeforeItsHandleIsStoredAgain)
{
    configure(0, info(0));
    passes(1);
    TPubSecPlatRegInfo next = info(0);
    next.dwKeepaliveSec = 20;
    configure(0, next);
    g_afterSetTimer = [] { fake_platform::runFor(500); };
    passes(1);
    configure(0, info(0));
    passes(1);
    expectSessionGoesOn(0);
}

/* A late handler of the former session runs between the cancelling of its timer and the storing of the next. */
TEST_F(Interleaving, StaleKeepaliveElapsesWhileTheNextIsArmed)
{
    configure(0, info(0));
    g_afterSetTimer = [] { elapse(_PubSecStackKeepaliveTimerHandle); };
    passThen([] { EXPECT_THAT(keepaliveTimers(), SizeIs(1)); });
    expectSessionGoesOn(0);
}

/* Due before its handle is stored, and still asking the server when it is. */
TEST_F(Interleaving, ClockElapsesBeforeItsHandleIsStored)
{
    std::promise<void> asked;
    std::promise<void> stored;
    std::thread delayTask;
    during(kTime, [&] {
        asked.set_value();
        stored.get_future().wait();
    });
    const auto elapseElsewhere = [&] {
        delayTask = std::thread([] { fake_platform::runFor(500); });
        asked.get_future().wait();
    };
    g_afterSetTimer = [&] { g_afterSetTimer = elapseElsewhere; }; /* the clock's timer is the second */
    configure(0, info());
    passes(1);
    stored.set_value();
    delayTask.join();
    expectSessionGoesOn();
}

/*
 * The stack was started again, so timers come due on two delay tasks. The next keepalive is due on one of them before
 * the other, which armed it, has stored its handle: both find the timer that was due first.
 */
TEST_F(Interleaving, TwoDelayTasksArmAndTheStoredTimerHasRunOut)
{
    const auto runsOut = [] {
        for (const fake_platform::Timer& timer : keepaliveTimers())
        {
            AppTaskCancelTimer(timer.handle); /* what has run out is armed no more; its handler comes next */
        }
    };
    std::promise<void> armed;
    std::promise<void> stored;
    std::thread otherTask;
    configure(0, info(0));
    passes(1);
    runsOut();
    g_afterSetTimer = [&] {
        runsOut();
        g_afterSetTimer = [&] {
            armed.set_value();
            EXPECT_TRUE(comes(stored));
        };
        otherTask = std::thread([] { elapse(_PubSecStackKeepaliveTimerHandle); });
        EXPECT_TRUE(comes(armed));
    };
    elapse(_PubSecStackKeepaliveTimerHandle);
    stored.set_value();
    otherTask.join();
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
    expectSessionGoesOn(0);
}

/* Armed anew while a handler arms the next, which then cannot be armed: what the loop has armed stays. */
TEST_F(Interleaving, PeriodChangesWhileAKeepaliveCannotBeArmed)
{
    TPubSecPlatRegInfo next = info(0);
    next.dwKeepaliveSec = 20;
    configure(0, info(0));
    passes(1);
    g_afterSetTimer = [&] {
        passMeanwhile(next);
        fake_platform::fail(Function::kTaskSetTimer, 0, 1);
    };
    elapse(_PubSecStackKeepaliveTimerHandle);
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
    configure(0, info(0));
    passes(1);
    expectSessionGoesOn(0);
}

TEST_F(Interleaving, LoopEndsDuringARegistration)
{
    during(kRegister, [] { PubSecStackUnInit(); });
    configure(0, info());
    g_bPubSecInit = 1;
    PubSecStackRegisterThread(g_hAppTaskRegister, 0, nullptr);
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1000u)); /* the pass was gone through to its end */
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    expectSessionGoesOn();
}

/* The stack is ended and started again in the middle of a pass, whose requests are for the former configuration. */
class Restart : public Interleaving
{
  protected:
    /* Until the new loop has come to its first delay. */
    void restart()
    {
        PubSecStackUnInit();
        fake_platform::setDelayHook([this](u32, u32) {
            fake_platform::setDelayHook(nullptr);
            m_delays.set_value();
        });
        PubSecStore(g_bPubSecInit, 1u);
        m_newLoop = std::thread([] { PubSecStackRegisterThread(g_hAppTaskRegister, 0, nullptr); });
        EXPECT_TRUE(comes(m_delays));
    }

    TPubSecPlatRegInfo off() const
    {
        TPubSecPlatRegInfo made = info();
        made.dwEnable = 0;
        return made;
    }

    void TearDown() override
    {
        if (m_newLoop.joinable())
        {
            m_newLoop.join();
        }
        passes(1);
        expectSessionIsOver();
        Interleaving::TearDown();
    }

  private:
    std::promise<void> m_delays;
    std::thread m_newLoop;
};

TEST_F(Restart, WaitsForTheRegistrationThatIsUnderWay)
{
    during(kRegister, [&] {
        configure(0, off());
        restart();
    });
    configure(0, info());
    passes(1);
    EXPECT_EQ(server->exchangesOf(kRegister).size(), 2u);
}

TEST_F(Restart, WaitsForTheUnregistrationThatIsUnderWay)
{
    configure(0, info());
    passes(1);
    during(kUnRegister, [&] {
        restart();
        configure(0, off());
    });
    configure(0, otherIdentity());
    passes(1);
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], off()));
    EXPECT_EQ(server->exchangesOf(kRegister).size(), 2u);
}

/* The first callback takes so long that the loop has registered anew before the second is told of the loss. */
TEST_F(Interleaving, ChangesOnTwoThreadsAreToldInAnyOrder)
{
    static std::vector<std::string> s_told;
    static std::function<void()> s_duringLoss;
    s_told.clear();
    resetStack();
    PubSecStackRegisterCB([](u32, u32 status, const TPubSecPlatRegInfo*) {
        s_told.push_back("first " + std::to_string(status));
        const std::function<void()> hook = status == 0 ? std::move(s_duringLoss) : nullptr;
        if (hook)
        {
            hook();
        }
    });
    PubSecStackRegisterCB(
        [](u32, u32 status, const TPubSecPlatRegInfo*) { s_told.push_back("second " + std::to_string(status)); });
    s_duringLoss = [this] { passes(1); };
    configure(0, info(0));
    passes(1);
    server->always(kKeepalive, Answer(500));
    fake_platform::runFor(30000);
    server->clearScripts();
    EXPECT_THAT(s_told, ElementsAre("first 1", "second 1", "first 0", "first 1", "second 1", "second 0"));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    expectSessionGoesOn(0);
}

/* ------------------------------------------------------------------------------------------------------- any order */

class RandomOrder : public Interleaving, public testing::WithParamInterface<u32>
{
  protected:
    /* One step of the loop, of time, of a late handler, of the host or of the server. */
    void step(u32 kind)
    {
        switch (kind)
        {
        case 0:
            return passes(1);
        case 1:
            return fake_platform::runFor(any(20000));
        case 2:
            return elapse(_PubSecStackKeepaliveTimerHandle);
        case 3:
            return elapse(_PubSecStackGetPlatformTimeTimerHandle);
        case 4:
            PubSecPostUserUnRegisterMsg(0);
            return;
        case 5:
            return configure(0, any(2) == 0 ? info(any(3)) : otherIdentity(any(3)));
        case 6:
            return server->script(any(2) == 0 ? kKeepalive : kRegister, Answer(500));
        default:
            return fake_platform::fail(Function::kTaskSetTimer, 0, any(2), any(3));
        }
    }

    /* A number below the limit. */
    u32 any(u32 limit)
    {
        return static_cast<u32>(m_random() % limit);
    }

  private:
    std::minstd_rand m_random{GetParam()};
};

TEST_P(RandomOrder, NeverMakesASecondChain)
{
    _SetPubSecStaLogLvl(0);
    for (int i = 0; i < 150; ++i)
    {
        step(any(8));
        ASSERT_LE(keepaliveTimers().size(), 1u);
        ASSERT_LE(clockTimers().size(), 1u);
        ASSERT_TRUE(keepaliveTimers().empty() || keepaliveTimers()[0].handle == g_ahKeepaliveTimer[0]);
        ASSERT_TRUE(clockTimers().empty() || clockTimers()[0].handle == g_ahSyncTimeTimer[0]);
    }
    server->clearScripts();
    fake_platform::stopFailing(Function::kTaskSetTimer);
    TPubSecPlatRegInfo last = info();
    last.dwEnable = 0;
    configure(0, last);
    passes(1);
    configure(0, info());
    passes(1);
    expectSessionGoesOn();
}

INSTANTIATE_TEST_SUITE_P(Seed, RandomOrder, testing::Range(1u, 21u));

} // namespace
