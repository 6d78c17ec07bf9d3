/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Not a sample: the library's own loop and keepalive handler run on threads that stop at each timer that is armed or
 * cancelled, each transfer, delay and callback of a registration, and where marked below at readings of the table and
 * of the keepalive's slot; one at a time goes on. What a host does is one step. All ways to choose are gone through;
 * where they lead to a situation that was met before, what follows is known and left out. Whenever nothing is under
 * way, a registered platform is enabled and has its one keepalive timer, and another has at most one.
 *
 * PUBSEC_ORDERS=N in the environment lets N more timers run out. Under the thread sanitizer, which makes each turn slow
 * and has little to say where threads take turns, only one does.
 */
#include <sched.h>

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <curl/curl.h>
#include <gmock/gmock.h>

#include "core/core.h"
#include "core/platform_table.h"
#include "session/session.h"
#include "session/timers.h"
#include "tests/support/environment.h"
#include "tests/support/fake_platform_fixture.h"
#include "tests/support/session_records.h"

namespace
{

/* A thread of the device. It goes on when it is given the turn, as far as to its next point. */
struct Actor
{
    std::string name;
    std::function<void()> act;
    bool isTask = false; /* acts whenever a timer has run out; others act once */
    u32 passes = 0;      /* of a loop */

    std::thread thread;
    std::condition_variable turn;
    bool hasTurn = true;

    bool rests = false; /* a task without a handler to run, another that is through */
    std::string at;     /* what it does when it goes on, or has just done */
    u32 points = 0;     /* that it has come by */
    u32 begun = 0;      /* its place in the order of beginning, 0 before */
    u32 passesLeft = 0;

    /* The timers that it knows. */
    TAppTimerHandle made = nullptr;
    TAppTimerHandle seen = nullptr;       /* in the slot, when it read that */
    TAppTimerHandle seenArming = nullptr; /* in the slot, when it armed */
    TAppTimerHandle cancelling = nullptr;

    void forgetTimers()
    {
        made = seen = seenArming = cancelling = nullptr;
    }
};

struct World
{
    std::mutex mutex;
    std::condition_variable back;
    std::deque<Actor> actors;
    bool isOver = false;

    std::set<TAppTimerHandle> armed;
    uintptr_t handles = 0;
    u32 timersLeft = 0; /* how many may still run out */
    u32 begun = 0;
    bool keepaliveFails = false;
    u32 registrations = 0;
    u32 keepalives = 0;
};

constexpr const char* kBegins = "begins";
constexpr const char* kHasPassed = "has passed";
constexpr const char* kWaits = "waits";

World g_world; /* whoever has the turn reads and writes it */
thread_local Actor* t_actor;

/* Gives the turn back and waits for it. */
void awaitTurn(Actor& self)
{
    std::unique_lock<std::mutex> lock(g_world.mutex);
    self.hasTurn = false;
    g_world.back.notify_one();
    self.turn.wait(lock, [&self] { return self.hasTurn; });
}

void point(const std::string& what)
{
    if (t_actor != nullptr)
    {
        t_actor->at = what;
        ++t_actor->points;
        awaitTurn(*t_actor);
    }
}

} // namespace

extern "C"
{
    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);
    u32 __wrap_AppTaskCancelTimer(TAppTimerHandle hTimer);
    void __wrap_AppDelay(u32 dwMilliseconds);
    CURLcode __wrap_curl_easy_perform(CURL* handle);
    s32 __wrap__Z16PubSecHttpStatusPv(CURL* handle);
    u32 __real__Z15PubSecTableReadjP18TPubSecPlatRegInfo(u32 dwPlatform, TPubSecPlatRegInfo* ptInfo);
    u32 __wrap__Z15PubSecTableReadjP18TPubSecPlatRegInfo(u32 dwPlatform, TPubSecPlatRegInfo* ptInfo);
    TAppTimerHandle __real__Z13PubSecTimerOfRK16TPubSecTimerKindj(const TPubSecTimerKind& tKind, u32 dwPlatform);
    TAppTimerHandle __wrap__Z13PubSecTimerOfRK16TPubSecTimerKindj(const TPubSecTimerKind& tKind, u32 dwPlatform);

    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle, u32, PFAppTimer, const void*)
    {
        const auto made = reinterpret_cast<TAppTimerHandle>(++g_world.handles);
        g_world.armed.insert(made);
        t_actor->made = made;
        t_actor->seenArming = PubSecLoad(g_ahKeepaliveTimer[0]);
        point("has armed");
        return made;
    }

    u32 __wrap_AppTaskCancelTimer(TAppTimerHandle hTimer)
    {
        t_actor->cancelling = hTimer;
        point(hTimer == t_actor->made ? "cancels what it armed" : "cancels");
        t_actor->cancelling = nullptr;
        g_world.armed.erase(hTimer);
        return 0;
    }

    /* A loop that has come by no point waits for another's pass. After its own it makes the next, or ends the stack. */
    void __wrap_AppDelay(u32)
    {
        const bool waits = t_actor->points == 0;
        point(waits ? kWaits : kHasPassed);
        t_actor->points = 0;
        t_actor->forgetTimers();
        if (!waits && --t_actor->passesLeft == 0)
        {
            PubSecStore(g_bPubSecInit, 0u);
        }
    }

    CURLcode __wrap_curl_easy_perform(CURL*)
    {
        if (t_actor->passes > 0 || t_actor->isTask)
        {
            t_actor->forgetTimers(); /* what it has armed is stored or cancelled by now */
            point("asks");
        }
        g_world.keepalives += t_actor->isTask ? 1 : 0;
        return CURLE_OK;
    }

    s32 __wrap__Z16PubSecHttpStatusPv(CURL*)
    {
        return t_actor->isTask && g_world.keepaliveFails ? 500 : 200;
    }

    u32 __wrap__Z15PubSecTableReadjP18TPubSecPlatRegInfo(u32 dwPlatform, TPubSecPlatRegInfo* ptInfo)
    {
        if (dwPlatform == 0 && t_actor != nullptr && t_actor->passes > 0)
        {
            /* Which of the readings it is says what the loop has found before. */
            point("reads the table " + std::to_string(reinterpret_cast<uintptr_t>(__builtin_return_address(0))));
        }
        return __real__Z15PubSecTableReadjP18TPubSecPlatRegInfo(dwPlatform, ptInfo);
    }

    TAppTimerHandle __wrap__Z13PubSecTimerOfRK16TPubSecTimerKindj(const TPubSecTimerKind& tKind, u32 dwPlatform)
    {
        if (tKind.phSlots != g_ahKeepaliveTimer)
        {
            return __real__Z13PubSecTimerOfRK16TPubSecTimerKindj(tKind, dwPlatform);
        }
        point("reads the slot");
        t_actor->seen = __real__Z13PubSecTimerOfRK16TPubSecTimerKindj(tKind, dwPlatform);
        const TAppTimerHandle seen = t_actor->seen;
        point("has read the slot");
        return seen;
    }
}

namespace
{

void hear(u32, u32 status, const TPubSecPlatRegInfo*)
{
    if (status == 1)
    {
        ++g_world.registrations;
        point("tells");
    }
}

/* One thing that can happen next: an actor goes on, with a timer that has run out where it is a task at rest. */
struct Step
{
    Actor* actor;
    TAppTimerHandle timer;
};

class Orders : public FakePlatformTest
{
  protected:
    /* On one processor: giving the turn to another, which may be asleep, takes ten times as long. */
    void SetUp() override
    {
        FakePlatformTest::SetUp();
        g_world.registrations = g_world.keepalives = 0;
        sched_getaffinity(0, sizeof(m_processors), &m_processors);
        const int current = sched_getcpu();
        if (current >= 0)
        {
            cpu_set_t one;
            CPU_ZERO(&one);
            CPU_SET(static_cast<size_t>(current), &one);
            sched_setaffinity(0, sizeof(one), &one);
        }
    }

    void TearDown() override
    {
        sched_setaffinity(0, sizeof(m_processors), &m_processors);
        g_world.isOver = true;
        for (Actor& actor : g_world.actors)
        {
            giveTurn(actor);
            actor.thread.join();
        }
        g_world.actors.clear();
        g_world.isOver = false;
        resetStack();
        FakePlatformTest::TearDown();
    }

    /* The cast. */

    void loop(u32 passes)
    {
        cast("loop", false, passes, [] {
            PubSecStore(g_bPubSecInit, 1u);
            PubSecStackRegisterThread(nullptr, 0, nullptr);
        });
    }

    void delayTask()
    {
        cast("delay task", true, 0,
             [] { _PubSecStackKeepaliveTimerHandle(nullptr, 4, &g_adwPubSecStackPlatIndex[0]); });
    }

    void unregistration()
    {
        cast("unregistration", false, 0, [] { PubSecPostUserUnRegisterMsg(0); });
    }

    void configuration(const TPubSecPlatRegInfo& info)
    {
        cast("configuration", false, 0, [info] { PubSecStackUpdateRegisterInfo(0, &info); });
    }

    static TPubSecPlatRegInfo info(const char* address = "127.0.0.1", u32 keepaliveSec = 1)
    {
        TPubSecPlatRegInfo made = recordFor(8000);
        setText(made.achServerIP, address);
        made.dwKeepaliveSec = keepaliveSec;
        made.dwSyncTimeMin = 0;
        return made;
    }

    /* The platform begins with a session and its timer. */
    bool beginsRegistered = false;

    /* The next keepalive that fails is the third. */
    bool keepaliveFails = false;

    /* All orders in which at most so many timers run out, and more if the environment says so. */
    void explore(u32 timers)
    {
        timers += numberFromEnvironment("PUBSEC_ORDERS", 0);
#ifdef __SANITIZE_THREAD__
        timers = 1;
#endif
        size_t orders = 0;
        do
        {
            begin(timers);
            play();
            ++orders;
        } while (!HasFailure() && chooseAnew());
        s_orders += orders;
        std::printf("%zu orders, %zu situations\n", orders, m_known.size());
        EXPECT_GT(g_world.registrations, 100u);
        EXPECT_GT(g_world.keepalives, 100u);
    }

    static void TearDownTestSuite()
    {
        std::printf("%zu orders in all\n", s_orders);
    }

  private:
    using Situation = std::vector<uintptr_t>;

    static void giveTurn(Actor& actor)
    {
        std::unique_lock<std::mutex> lock(g_world.mutex);
        actor.hasTurn = true;
        actor.turn.notify_one();
        if (!g_world.isOver)
        {
            g_world.back.wait(lock, [&actor] { return !actor.hasTurn; });
        }
    }

    static void live(Actor& self)
    {
        t_actor = &self;
        for (awaitTurn(self); !g_world.isOver; awaitTurn(self))
        {
            self.rests = false;
            self.begun = ++g_world.begun;
            self.act();
            self.rests = true;
            self.points = 0;
            self.forgetTimers();
            self.at = "rests";
        }
    }

    static void cast(const char* name, bool isTask, u32 passes, std::function<void()> act)
    {
        Actor& actor = g_world.actors.emplace_back();
        actor.name = name;
        actor.act = std::move(act);
        actor.isTask = isTask;
        actor.passes = passes;
        actor.thread = std::thread([&actor] { live(actor); });
        std::unique_lock<std::mutex> lock(g_world.mutex);
        g_world.back.wait(lock, [&actor] { return !actor.hasTurn; });
    }

    void begin(u32 timers)
    {
        resetStack();
        PubSecStackRegisterCB(hear);
        const TPubSecPlatRegInfo first = info();
        g_atPubSecStackGlobalCommon_New[0] = first;
        PubSecTableWrite(0, &first);
        abyKeepalivFailTimes[0] = keepaliveFails ? 2 : 0;
        g_world.armed.clear();
        g_world.handles = 0;
        g_world.timersLeft = timers;
        g_world.begun = 0;
        g_world.keepaliveFails = keepaliveFails;
        if (beginsRegistered)
        {
            g_bPubSecRegStatus[0] = 1;
            g_ahKeepaliveTimer[0] = reinterpret_cast<TAppTimerHandle>(++g_world.handles);
            g_world.armed.insert(g_ahKeepaliveTimer[0]);
        }
        for (Actor& actor : g_world.actors)
        {
            actor.rests = actor.isTask;
            actor.at = kBegins;
            actor.points = actor.begun = 0;
            actor.passesLeft = actor.passes;
            actor.forgetTimers();
        }
    }

    static bool isPassUnderWay()
    {
        return std::any_of(g_world.actors.begin(), g_world.actors.end(), [](const Actor& actor) {
            return actor.passes > 0 && !actor.rests && actor.at != kBegins && actor.at != kHasPassed &&
                   actor.at != kWaits;
        });
    }

    static std::vector<Step> possible()
    {
        std::vector<Step> steps;
        for (Actor& actor : g_world.actors)
        {
            if (!actor.rests)
            {
                if (actor.at != kWaits || !isPassUnderWay())
                {
                    steps.push_back({&actor, nullptr});
                }
            }
            else if (actor.isTask && g_world.timersLeft > 0)
            {
                for (const TAppTimerHandle timer : g_world.armed)
                {
                    steps.push_back({&actor, timer});
                }
            }
        }
        return steps;
    }

    void take(const Step& step)
    {
        if (step.timer != nullptr)
        {
            g_world.armed.erase(step.timer);
            --g_world.timersLeft;
        }
        m_story +=
            "  " + step.actor->name + " " + (step.timer != nullptr ? "has a timer run out" : step.actor->at) + "\n";
        giveTurn(*step.actor);
    }

    /* From the beginning by what was chosen before, then by the first of what is possible, to the end. */
    void play()
    {
        m_story.clear();
        bool isKnown = false;
        size_t depth = 0;
        for (std::vector<Step> steps = possible(); !steps.empty(); steps = possible(), ++depth)
        {
            if (depth == m_choices.size() && !isKnown)
            {
                isKnown = !m_known.insert(situation()).second;
                if (!isKnown)
                {
                    m_choices.push_back({0, steps.size()});
                }
            }
            take(steps[depth < m_choices.size() ? m_choices[depth].first : 0]);
            expectOneChain();
        }
    }

    /* The last choice that leaves another one; false when there is none. */
    bool chooseAnew()
    {
        while (!m_choices.empty() && m_choices.back().first + 1 == m_choices.back().second)
        {
            m_choices.pop_back();
        }
        if (!m_choices.empty())
        {
            ++m_choices.back().first;
        }
        return !m_choices.empty();
    }

    void expectOneChain() const
    {
        for (const Actor& actor : g_world.actors)
        {
            if (!actor.rests)
            {
                return;
            }
        }
        const std::set<TAppTimerHandle>& armed = g_world.armed;
        EXPECT_LE(armed.size(), 1u) << m_story;
        EXPECT_GE(armed.size(), g_bPubSecRegStatus[0]) << m_story;
        EXPECT_TRUE(armed.empty() || *armed.begin() == g_ahKeepaliveTimer[0]) << m_story;
        EXPECT_LE(g_bPubSecRegStatus[0], g_atPubSecStackGlobalCommon[0].dwEnable) << m_story;
    }

    /*
     * All that what follows can depend on. Timers have numbers by where they stand, and actors of a kind change places,
     * for only what they are at matters.
     */
    Situation situation()
    {
        std::map<TAppTimerHandle, uintptr_t> numbers{{nullptr, 0}};
        const auto number = [&numbers](TAppTimerHandle timer) {
            return numbers.emplace(timer, numbers.size()).first->second * 2 + g_world.armed.count(timer);
        };
        Situation now{g_bPubSecRegStatus[0],
                      g_bPubSecInit,
                      abyKeepalivFailTimes[0],
                      g_world.timersLeft,
                      g_world.armed.size(),
                      number(g_ahKeepaliveTimer[0]),
                      isFirst(g_atPubSecStackGlobalCommon[0]),
                      isFirst(g_atPubSecStackGlobalCommon_New[0])};
        std::vector<const Actor*> actors;
        for (const Actor& actor : g_world.actors)
        {
            actors.push_back(&actor);
        }
        std::stable_sort(actors.begin(), actors.end(), [](const Actor* left, const Actor* right) {
            return std::tie(left->name, left->at, left->points) < std::tie(right->name, right->at, right->points);
        });
        for (const Actor* actor : actors)
        {
            const uintptr_t place = m_places.emplace(actor->at, m_places.size()).first->second;
            const u32 begun = actor->isTask ? 0 : actor->begun;
            now.insert(now.end(), {actor->rests, place, actor->points, begun, actor->passesLeft, number(actor->made),
                                   number(actor->seen), number(actor->seenArming), number(actor->cancelling)});
        }
        return now;
    }

    bool isFirst(const TPubSecPlatRegInfo& record) const
    {
        return sameRecord(record, info());
    }

    static inline size_t s_orders = 0;

    cpu_set_t m_processors;

    std::set<Situation> m_known;
    std::map<std::string, uintptr_t> m_places;
    std::vector<std::pair<size_t, size_t>> m_choices; /* which, out of how many */
    std::string m_story;
};

TEST_F(Orders, LoopTimerAndHost)
{
    loop(2);
    delayTask();
    unregistration();
    explore(2);
}

TEST_F(Orders, TwoLoops)
{
    loop(1);
    loop(1);
    delayTask();
    unregistration();
    explore(1);
}

TEST_F(Orders, TwoDelayTasks)
{
    beginsRegistered = true;
    loop(1);
    delayTask();
    delayTask();
    unregistration();
    explore(2);
}

TEST_F(Orders, OtherServer)
{
    beginsRegistered = true;
    loop(2);
    delayTask();
    configuration(info("127.0.0.2"));
    explore(2);
}

TEST_F(Orders, OtherServerAndTwoDelayTasks)
{
    beginsRegistered = true;
    loop(1);
    delayTask();
    delayTask();
    configuration(info("127.0.0.2"));
    explore(2);
}

TEST_F(Orders, OtherPeriod)
{
    beginsRegistered = true;
    loop(2);
    delayTask();
    unregistration();
    configuration(info("127.0.0.1", 2));
    explore(1);
}

TEST_F(Orders, SwitchedOffAndRestarted)
{
    TPubSecPlatRegInfo off = info();
    off.dwEnable = 0;
    loop(1);
    loop(2);
    delayTask();
    configuration(off);
    explore(1);
}

TEST_F(Orders, LostSession)
{
    beginsRegistered = true;
    keepaliveFails = true;
    loop(2);
    delayTask();
    unregistration();
    explore(2);
}

} // namespace
