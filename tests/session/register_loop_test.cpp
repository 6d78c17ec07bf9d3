/* SPDX-License-Identifier: Apache-2.0 */
/* The register loop: what a changed configuration does to a session, and how often a lost one is tried again. */
#include <functional>

#include "tests/support/session_fixture.h"

using fake_platform::Function;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using viewlib::Answer;

namespace
{

constexpr const char* kFunction = "PubSecStackRegisterThread";

class RegisterLoop : public SessionTest
{
  protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        listen();
    }

    /* Platform 0 registered at virtual 0, its first keepalive done, the clock at 1000. */
    TPubSecPlatRegInfo registered(u32 keepaliveSec = 60, u32 syncTimeMin = 0)
    {
        TPubSecPlatRegInfo info = recordFor(server->port());
        info.dwKeepaliveSec = keepaliveSec;
        info.dwSyncTimeMin = syncTimeMin;
        registerPlatform(info);
        newLines();
        return info;
    }

    /* One pass; what stands and was logged at its end, before time passes. */
    void passAndLook(const std::function<void()>& look)
    {
        passThen([&] {
            lines = newLines();
            look();
        });
    }

    std::vector<std::string> lines;
};

TEST_F(RegisterLoop, TakesAConfigurationAtItsNextPassOnly)
{
    const TPubSecPlatRegInfo info = recordFor(server->port());
    configure(0, info);
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], TPubSecPlatRegInfo{}));
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon_New[0], info));
    EXPECT_THAT(requests(), IsEmpty());
    passes(1);
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], info));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

TEST_F(RegisterLoop, RunsFromInitToUnInit)
{
    ASSERT_EQ(fake_platform::pendingEvents().size(), 1u);
    EXPECT_EQ(fake_platform::pendingEvents()[0].task, g_hAppTaskRegister);
    EXPECT_EQ(fake_platform::pendingEvents()[0].handler, PubSecStackRegisterThread);
    fake_platform::afterDelays(3, [] { PubSecStackUnInit(); });
    EXPECT_EQ(fake_platform::runEvents(), 1u);
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1000u, 1000u, 1000u));
}

TEST_F(RegisterLoop, UnInitLeavesSessionAndTimers)
{
    registered();
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
    EXPECT_THAT(fake_platform::cancels(), Each(Not(keepaliveTimers()[0].handle)));
    fake_platform::runFor(60000);
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u, 60500u));
    EXPECT_EQ(server->exchangesOf(kUnRegister).size(), 0u);
}

TEST_F(RegisterLoop, DisabledPlatformIsLeftAlone)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    info.dwEnable = 0;
    configure(0, info);
    passes(5);
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], info));
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
}

TEST_F(RegisterLoop, AnyEnableFlagButZeroRegisters)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    info.dwEnable = 0x80000000u;
    registerPlatform(info);
}

TEST_F(RegisterLoop, RetriesOncePerPassUntilItSucceeds)
{
    server->always(kRegister, Answer(500));
    configure(0, recordFor(server->port()));
    passes(5);
    EXPECT_THAT(timesOf(kRegister), ElementsAre(0u, 0u, 1000u, 1000u, 2000u, 2000u, 3000u, 3000u, 4000u, 4000u));
    EXPECT_THAT(told(), IsEmpty());
    server->clearScripts();
    passes(1);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1"));
}

TEST_F(RegisterLoop, UnregisteredPlatformTakesAnyChange)
{
    server->always(kRegister, Answer(500));
    TPubSecPlatRegInfo info = recordFor(server->port());
    configure(0, info);
    passes(1);
    setText(info.achReserved, "the host's own");
    configure(0, info);
    passes(1);
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], info));
}

TEST_F(RegisterLoop, PlatformZeroComesFirst)
{
    TPubSecPlatRegInfo other = recordFor(server->port());
    setText(other.achDeviceID, "44010000001190000002");
    configure(1, other);
    configure(0, recordFor(server->port()));
    passThen([&] {
        const std::vector<viewlib::Exchange> sent = server->exchanges();
        ASSERT_EQ(sent.size(), 4u);
        EXPECT_EQ(sent[1].device(), kDevice);
        EXPECT_EQ(sent[3].device(), "44010000001190000002");
    });
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:1->1", "1:1->1"));
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 2u);
}

TEST_F(RegisterLoop, ArmsBothTimersOfANewSession)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    info.dwSyncTimeMin = 5;
    configure(1, info);
    passThen([&] {
        EXPECT_EQ(g_adwPubSecStackPlatIndex[1], 1u);
        ASSERT_THAT(keepaliveTimers(1), SizeIs(1));
        ASSERT_THAT(clockTimers(1), SizeIs(1));
        EXPECT_EQ(keepaliveTimers(1)[0].milliseconds, 500u);
        EXPECT_EQ(clockTimers(1)[0].milliseconds, 500u);
        EXPECT_EQ(keepaliveTimers(1)[0].task, g_hAppTaskDelay);
        EXPECT_EQ(clockTimers(1)[0].task, g_hAppTaskDelay);
        EXPECT_EQ(keepaliveTimers(1)[0].handle, g_ahKeepaliveTimer[1]);
        EXPECT_EQ(clockTimers(1)[0].handle, g_ahSyncTimeTimer[1]);
    });
    EXPECT_THAT(keepaliveTimers(0), IsEmpty());
}

TEST_F(RegisterLoop, NoClockTimerWithoutAPeriod)
{
    registered(60, 0);
    EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
    fake_platform::runFor(3600000);
    EXPECT_EQ(server->exchangesOf(kTime).size(), 0u);
}

TEST_F(RegisterLoop, TimersThatCannotBeArmedAreComplainedOf)
{
    fake_platform::fail(Function::kTaskSetTimer, 0, 2);
    TPubSecPlatRegInfo info = recordFor(server->port());
    info.dwSyncTimeMin = 5;
    configure(0, info);
    passAndLook([&] {
        EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
        EXPECT_EQ(g_ahKeepaliveTimer[0], nullptr);
        EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
    });
    EXPECT_THAT(lines, Contains(Err(kFunction, "AppTaskSetTimer set g_ahKeepaliveTimer failed.")));
    EXPECT_THAT(lines, Contains(Err(kFunction, "AppTaskSetTimer set g_ahSyncTimeTimer failed.")));
    passes(200);
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 200"));
}

/* One field of the identity, changed. */
struct IdentityChange
{
    const char* name;
    std::function<void(TPubSecPlatRegInfo&, const viewlib::Server& otherServer)> change;
    bool otherServer;
};

class ChangedIdentity : public RegisterLoop, public testing::WithParamInterface<IdentityChange>
{
};

TEST_P(ChangedIdentity, UnregistersAndRegistersInTheSamePass)
{
    const auto second = newServer();
    const TPubSecPlatRegInfo before = registered(60, 5);
    /* From now on any credentials will do, so that the session can go on under the changed ones. */
    Answer anyone;
    anyone.skipAuth = true;
    server->always(kRegister, anyone);
    server->clearExchanges();
    TPubSecPlatRegInfo after = before;
    GetParam().change(after, *second);
    configure(0, after);

    passAndLook([&] {
        EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
        EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], after));
        ASSERT_THAT(keepaliveTimers(), SizeIs(1));
        ASSERT_THAT(clockTimers(), SizeIs(1));
        EXPECT_EQ(keepaliveTimers()[0].due, fake_platform::now() + 500);
        EXPECT_EQ(clockTimers()[0].due, fake_platform::now() + 500);
        EXPECT_THAT(timesOf(kUnRegister), Each(1000u));
        EXPECT_THAT(timesOf(kRegister), Each(1000u));
    });
    const std::vector<std::string> asked = requests();
    ASSERT_GE(asked.size(), 2u);
    EXPECT_EQ(asked[0], "UnRegister 401");
    EXPECT_EQ(asked[1], "UnRegister 200");
    EXPECT_EQ(server->exchangesOf(kUnRegister)[1].body,
              "{\"UnRegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(server->exchangesOf(kRegister).empty(), GetParam().otherServer);
    EXPECT_EQ(second->exchangesOf(kRegister).empty(), !GetParam().otherServer);

    ASSERT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
    EXPECT_TRUE(sameRecord(told()[2].info, before));
    EXPECT_TRUE(sameRecord(told()[3].info, before));
    EXPECT_TRUE(sameRecord(told()[4].info, after));
    EXPECT_TRUE(sameRecord(told()[5].info, after));
    EXPECT_THAT(lines, Contains(Inf(kFunction, "config change,start unreg.")));
    EXPECT_THAT(lines, Contains(Inf(kFunction, "UnRegister Success!")));
}

INSTANTIATE_TEST_SUITE_P(
    Field, ChangedIdentity,
    testing::Values(
        IdentityChange{"DeviceID", [](auto& record, auto&) { setText(record.achDeviceID, "44010000001190000009"); },
                       false},
        IdentityChange{"ServerIP", [](auto& record, auto&) { setText(record.achServerIP, "localhost"); }, false},
        IdentityChange{"ServerPort", [](auto& record, auto& other) { record.dwServerPort = other.port(); }, true},
        IdentityChange{"UserName", [](auto& record, auto&) { setText(record.achUserName, "operator"); }, false},
        IdentityChange{"Password", [](auto& record, auto&) { setText(record.achPassword, "changed"); }, false},
        IdentityChange{"HttpsEnable", [](auto& record, auto&) { record.dwHttpsEnable = 2; }, false},
        IdentityChange{"Enable", [](auto& record, auto&) { record.dwEnable = 2; }, false}),
    [](const auto& one) { return one.param.name; });

TEST_F(RegisterLoop, IdentityIsComparedAsText)
{
    TPubSecPlatRegInfo info = registered();
    info.achDeviceID[21] = 'x'; /* behind the terminator */
    info.achServerIP[40] = 'x';
    info.achUserName[100] = 'x';
    info.achPassword[100] = 'x';
    configure(0, info);
    passes(1);
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 200", "Keepalive 200"));
    EXPECT_THAT(told(), SizeIs(2));
}

TEST_F(RegisterLoop, TextsThatFillTheirFieldAreCompared)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    std::string("440100000011900000012345").copy(info.achDeviceID, sizeof(info.achDeviceID));
    registerPlatform(info);
    configure(0, info);
    passes(1);
    EXPECT_EQ(server->exchangesOf(kUnRegister).size(), 0u);
    info.achDeviceID[23] = '6';
    configure(0, info);
    passes(1);
    EXPECT_EQ(server->exchangesOf(kUnRegister).size(), 2u);
}

TEST_F(RegisterLoop, FailedUnregistrationDoesNotKeepTheOldServer)
{
    const auto second = newServer();
    registered();
    server->stop();
    configure(0, recordFor(second->port()));
    passAndLook([&] { EXPECT_EQ(PubSecGetRegisterStatus(0), 1u); });
    EXPECT_THAT(lines, Contains(Err(kFunction, "UnRegister failed!")));
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
    EXPECT_THAT(requestsOf(*second), ElementsAre("Register 401", "Register 200", "Keepalive 200"));
}

TEST_F(RegisterLoop, RefusedRegistrationAfterAChangeIsRetried)
{
    TPubSecPlatRegInfo info = registered();
    setText(info.achPassword, "wrong");
    configure(0, info);
    passes(3);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0"));
    EXPECT_THAT(keepaliveTimers(), IsEmpty());
    /* Two tries a pass: with the digest, which is two requests, and without. */
    EXPECT_EQ(server->exchangesOf(kRegister).size(), 2u + 3u * 3u);
    setText(info.achPassword, "viewlib");
    configure(0, info);
    passes(1);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

TEST_F(RegisterLoop, KeepalivePeriodAloneRearmsItsTimer)
{
    TPubSecPlatRegInfo info = registered(60);
    const TAppTimerHandle former = g_ahKeepaliveTimer[0];
    info.dwKeepaliveSec = 10;
    configure(0, info);
    passAndLook([&] {
        ASSERT_THAT(keepaliveTimers(), SizeIs(1));
        EXPECT_EQ(keepaliveTimers()[0].due, 1500u);
        EXPECT_EQ(keepaliveTimers()[0].handle, g_ahKeepaliveTimer[0]);
        EXPECT_THAT(fake_platform::cancels(), Contains(former));
        EXPECT_EQ(g_atPubSecStackGlobalCommon[0].dwKeepaliveSec, 10u);
    });
    EXPECT_THAT(lines, IsEmpty());
    fake_platform::runFor(20000);
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u, 1500u, 11500u, 21500u));
    EXPECT_EQ(server->exchangesOf(kUnRegister).size(), 0u);
    EXPECT_THAT(told(), SizeIs(2));
}

TEST_F(RegisterLoop, ClockPeriodAloneRearmsItsTimer)
{
    TPubSecPlatRegInfo info = registered(60, 5);
    info.dwSyncTimeMin = 2;
    configure(0, info);
    passAndLook([&] {
        ASSERT_THAT(clockTimers(), SizeIs(1));
        EXPECT_EQ(clockTimers()[0].due, 1500u);
        EXPECT_EQ(clockTimers()[0].handle, g_ahSyncTimeTimer[0]);
        ASSERT_THAT(keepaliveTimers(), SizeIs(1));
        EXPECT_EQ(keepaliveTimers()[0].due, 60500u);
    });
    fake_platform::runFor(120000);
    EXPECT_THAT(timesOf(kTime), ElementsAre(500u, 1500u, 121500u));
}

TEST_F(RegisterLoop, ClockPeriodOfZeroEndsItsTimer)
{
    TPubSecPlatRegInfo info = registered(60, 5);
    info.dwSyncTimeMin = 0;
    configure(0, info);
    passAndLook([&] {
        EXPECT_THAT(clockTimers(), IsEmpty());
        EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
        EXPECT_THAT(keepaliveTimers(), SizeIs(1));
    });
    fake_platform::runFor(3600000);
    EXPECT_THAT(timesOf(kTime), ElementsAre(500u));
}

TEST_F(RegisterLoop, ClockPeriodFromZeroWaitsForTheNextRegistration)
{
    TPubSecPlatRegInfo info = registered(60, 0);
    info.dwSyncTimeMin = 5;
    configure(0, info);
    passes(700);
    EXPECT_EQ(g_atPubSecStackGlobalCommon[0].dwSyncTimeMin, 5u);
    EXPECT_EQ(server->exchangesOf(kTime).size(), 0u);

    setText(info.achServerIP, "localhost");
    configure(0, info);
    passes(1);
    EXPECT_EQ(server->exchangesOf(kTime).size(), 1u);
}

TEST_F(RegisterLoop, BothPeriodsAtOnce)
{
    TPubSecPlatRegInfo info = registered(60, 5);
    info.dwKeepaliveSec = 30;
    info.dwSyncTimeMin = 1;
    configure(0, info);
    passes(1);
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u, 1500u));
    EXPECT_THAT(timesOf(kTime), ElementsAre(500u, 1500u));
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
    EXPECT_THAT(clockTimers(), SizeIs(1));
}

TEST_F(RegisterLoop, RearmThatFailsEndsTheActivity)
{
    TPubSecPlatRegInfo info = registered(60, 5);
    fake_platform::fail(Function::kTaskSetTimer, 0, 2);
    info.dwKeepaliveSec = 10;
    info.dwSyncTimeMin = 1;
    configure(0, info);
    passAndLook([&] {
        EXPECT_EQ(g_ahKeepaliveTimer[0], nullptr);
        EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
        EXPECT_THAT(fake_platform::armedTimers(), IsEmpty());
    });
    EXPECT_THAT(lines, ElementsAre(Err(kFunction, "AppTaskSetTimer set g_ahKeepaliveTimer failed."),
                                   Err(kFunction, "AppTaskSetTimer set g_ahSyncTimeTimer failed.")));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    info.dwKeepaliveSec = 20; /* nothing is armed, so nothing is re-armed */
    configure(0, info);
    passes(100);
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
    EXPECT_EQ(g_atPubSecStackGlobalCommon[0].dwKeepaliveSec, 20u);
}

/* The old timer is given up before the new one is asked for. */
TEST_F(RegisterLoop, CancelsBeforeItArms)
{
    TPubSecPlatRegInfo info = registered(60, 5);
    const size_t before = fake_platform::journal().size();
    info.dwKeepaliveSec = 10;
    info.dwSyncTimeMin = 1;
    configure(0, info);
    passThen([&] {
        const std::vector<std::string> all = fake_platform::journal();
        EXPECT_THAT(std::vector<std::string>(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()),
                    ElementsAre("AppTaskCancelTimer()", "AppTaskSetTimer(500)", "AppTaskCancelTimer()",
                                "AppTaskSetTimer(500)"));
    });
}

TEST_F(RegisterLoop, ReservedBlockAloneStaysPending)
{
    const TPubSecPlatRegInfo before = registered();
    TPubSecPlatRegInfo info = before;
    setText(info.achReserved, "the host's own");
    configure(0, info);
    passes(5);
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], before));
    EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon_New[0], info));
    EXPECT_EQ(server->exchangesOf(kUnRegister).size(), 0u);
}

/* With a period only the period is taken; the reserved block goes on waiting. */
TEST_F(RegisterLoop, ReservedBlockStaysPendingBesideAChangedPeriod)
{
    const TPubSecPlatRegInfo before = registered();
    TPubSecPlatRegInfo info = before;
    setText(info.achReserved, "the host's own");
    info.dwKeepaliveSec = 10;
    configure(0, info);
    passes(1);
    EXPECT_STREQ(g_atPubSecStackGlobalCommon[0].achReserved, "");
    EXPECT_EQ(g_atPubSecStackGlobalCommon[0].dwKeepaliveSec, 10u);
}

TEST_F(RegisterLoop, DisablingUnregistersForGood)
{
    TPubSecPlatRegInfo info = registered(60, 5);
    info.dwEnable = 0;
    configure(0, info);
    passes(100);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 200", "Keepalive 200", "Time 200", "UnRegister 401",
                                        "UnRegister 200"));
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0"));
    EXPECT_THAT(fake_platform::armedTimers(), IsEmpty());
    EXPECT_EQ(g_ahKeepaliveTimer[0], nullptr);
    EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
}

TEST_F(RegisterLoop, EnablingAgainRegistersAnew)
{
    TPubSecPlatRegInfo info = registered();
    info.dwEnable = 0;
    configure(0, info);
    passes(2);
    info.dwEnable = 1;
    configure(0, info);
    passes(1);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
}

TEST_F(RegisterLoop, UnchangedConfigurationDoesNothing)
{
    const TPubSecPlatRegInfo info = registered();
    configure(0, info);
    passAndLook([] {});
    EXPECT_THAT(lines, IsEmpty());
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 200", "Keepalive 200"));
}

TEST_F(RegisterLoop, LastOfSeveralConfigurationsCounts)
{
    TPubSecPlatRegInfo info = recordFor(1);
    configure(0, info);
    info = recordFor(server->port());
    configure(0, info);
    passes(1);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

TEST_F(RegisterLoop, PlatformsDoNotTouchEachOther)
{
    TPubSecPlatRegInfo other = recordFor(server->port());
    setText(other.achDeviceID, "44010000001190000002");
    configure(0, recordFor(server->port()));
    configure(1, other);
    passes(1);
    const TAppTimerHandle first = g_ahKeepaliveTimer[0];
    other.dwEnable = 0;
    configure(1, other);
    passes(1);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_EQ(PubSecGetRegisterStatus(1), 0u);
    EXPECT_EQ(g_ahKeepaliveTimer[0], first);
    EXPECT_THAT(keepaliveTimers(0), SizeIs(1));
    EXPECT_THAT(keepaliveTimers(1), IsEmpty());
}

TEST_F(RegisterLoop, NumbersOutOfRangeConfigureNothing)
{
    const TPubSecPlatRegInfo info = recordFor(server->port());
    for (const s32 platform : {2, 3, -1, 0x7fffffff})
    {
        EXPECT_EQ(PubSecStackUpdateRegisterInfo(platform, &info), 50u);
        EXPECT_EQ(PubSecGetRegisterStatus(platform), 0u);
    }
    EXPECT_EQ(PubSecStackUpdateRegisterInfo(0, nullptr), 50u);
    passes(2);
    EXPECT_THAT(requests(), IsEmpty());
}

/* Started again before the former loop came round: that one ends, and passes stay one a second. */
TEST_F(RegisterLoop, SecondInitLeavesOneLoop)
{
    configure(0, recordFor(server->port()));
    server->always(kRegister, Answer(500));
    fake_platform::afterDelays(1, [] {
        PubSecStackUnInit();
        EXPECT_EQ(PubSecStackInit(), 50u);
    });
    fake_platform::afterDelays(3, [] { PubSecStackUnInit(); });
    EXPECT_EQ(fake_platform::runEvents(), 2u);
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1000u, 1000u, 1000u));
    EXPECT_THAT(timesOf(kRegister), ElementsAre(0u, 0u, 1000u, 1000u, 2000u, 2000u));
}

/* A loop that comes round after a newer one has begun ends, although the stack is started. */
TEST_F(RegisterLoop, OnlyTheNewestLoopGoesOn)
{
    configure(0, recordFor(server->port()));
    server->always(kRegister, Answer(500));
    const auto startAgain = [] {
        PubSecStackUnInit();
        EXPECT_EQ(PubSecStackInit(), 50u);
    };
    fake_platform::afterDelays(1, [&] {
        startAgain();
        fake_platform::afterDelays(1, [] { PubSecStackUnInit(); });
        EXPECT_EQ(fake_platform::runEvents(), 1u); /* the second loop, while the first is in its delay */
        startAgain();
        fake_platform::afterDelays(1, [] {
            EXPECT_THAT(fake_platform::pendingEvents(), IsEmpty()); /* it is the third one's delay, not the first's */
            PubSecStackUnInit();
        });
    });
    EXPECT_EQ(fake_platform::runEvents(), 2u);
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1000u, 1000u, 1000u));
    EXPECT_THAT(timesOf(kRegister), ElementsAre(0u, 0u, 1000u, 1000u, 2000u, 2000u));
}

TEST_F(RegisterLoop, LeftOverTimersOfADirectUnregistrationAreReplaced)
{
    registered(60, 5);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
    EXPECT_THAT(clockTimers(), SizeIs(1));
    passThen([&] {
        EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
        ASSERT_THAT(keepaliveTimers(), SizeIs(1));
        ASSERT_THAT(clockTimers(), SizeIs(1));
        EXPECT_EQ(keepaliveTimers()[0].due, fake_platform::now() + 500);
        EXPECT_EQ(clockTimers()[0].due, fake_platform::now() + 500);
    });
}

/* One that a former session armed would ask once more in the middle of a session without a clock. */
TEST_F(RegisterLoop, LeftOverClockTimerEndsWhereNoClockIsWanted)
{
    registered(60, 5);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    ASSERT_THAT(clockTimers(), SizeIs(1));
    TPubSecPlatRegInfo info = recordFor(server->port());
    info.dwKeepaliveSec = 60;
    info.dwSyncTimeMin = 0;
    configure(0, info);
    passThen([&] {
        EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
        EXPECT_THAT(keepaliveTimers(), SizeIs(1));
        EXPECT_THAT(clockTimers(), IsEmpty());
        EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
    });
    server->clearExchanges();
    passes(600);
    EXPECT_THAT(server->exchangesOf(kTime), IsEmpty());
}

TEST_F(RegisterLoop, StackIsSilentAtLevelZero)
{
    _SetPubSecStaLogLvl(0);
    newLines();
    TPubSecPlatRegInfo info = recordFor(server->port());
    configure(0, info);
    passes(2);
    info.dwEnable = 0;
    configure(0, info);
    passes(2);
    EXPECT_THAT(newLines(), IsEmpty());
}

TEST_F(RegisterLoop, LevelOneHasTheErrorsOnly)
{
    _SetPubSecStaLogLvl(1);
    newLines();
    server->always(kRegister, Answer(403));
    configure(0, recordFor(server->port()));
    passes(2);
    EXPECT_THAT(newLines(), IsEmpty());
    server->stop();
    passes(1);
    EXPECT_THAT(newLines(), SizeIs(2));
}

} // namespace
