/* SPDX-License-Identifier: Apache-2.0 */
/* Keepalives: when they are sent, which answers count as failures, and the end of a session after three of them. */
#include <string>

#include "tests/support/session_faults.h"
#include "tests/support/session_fixture.h"

using fake_platform::Function;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using viewlib::Answer;

namespace
{

constexpr const char* kFunction = "_PubSecPostUserKeepAliveMsg";
constexpr const char* kHandler = "_PubSecStackKeepaliveTimerHandle";

std::string codeAnswer(const std::string& code)
{
    return "{\"ResponseStatusObject\":{\"StatusCode\":" + code + "}}";
}

class Keepalive : public SessionTest
{
  protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        listen();
    }

    /* Platform 0 registered at virtual 0; its first keepalive comes at 500. */
    void startSession(u32 keepaliveSec = 10)
    {
        TPubSecPlatRegInfo info = recordFor(server->port());
        info.dwKeepaliveSec = keepaliveSec;
        configure(0, info);
        passThen([this] { newLines(); });
    }

    /* As the delay task does it. */
    static void elapse(const void* context, u32 event = 4)
    {
        _PubSecStackKeepaliveTimerHandle(g_hAppTaskDelay, event, context);
    }
};

TEST_F(Keepalive, FollowsItsPeriod)
{
    startSession(10);
    passes(60);
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u, 10500u, 20500u, 30500u, 40500u, 50500u, 60500u));
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
}

TEST_F(Keepalive, SaysWhoIsAlive)
{
    startSession();
    const viewlib::Exchange sent = server->exchangesOf(kKeepalive).at(0);
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.target, "/VIID/System/Keepalive");
    EXPECT_EQ(sent.body, "{\"KeepaliveObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(sent.header("User-Identify"), kDevice);
    EXPECT_EQ(sent.header("Content-Type"), "application/VIID+JSON;charset=UTF-8");
    EXPECT_EQ(sent.header("Content-Length"), std::to_string(sent.body.size()));
    EXPECT_FALSE(sent.hasHeader("Authorization"));
    EXPECT_FALSE(sent.hasHeader("Expect"));
    const std::vector<std::string> lines = newLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], Dbg(kFunction, "achURLMessage: " + server->url(kKeepalive)));
    EXPECT_THAT(lines[1], HasSubstr("[PubSecStack INF] _PubSecWriteCB: WriteMemoryCallback size:1 nmemb:"));
    EXPECT_EQ(lines[2], Inf("_PubSecKeepAliveParseJson", "StatusCode:0"));
}

TEST_F(Keepalive, SendsTwentyCharactersOfTheIdentifier)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    std::string("440100000011900000012345").copy(info.achDeviceID, sizeof(info.achDeviceID));
    registerPlatform(info);
    EXPECT_EQ(server->exchangesOf(kKeepalive).at(0).body,
              "{\"KeepaliveObject\":{\"DeviceID\":\"44010000001190000001\"}}");
}

TEST_F(Keepalive, IsRearmedBeforeItIsSent)
{
    startSession(10);
    const size_t before = fake_platform::timers().size();
    server->stop(); /* even a request that cannot be sent */
    fake_platform::runFor(10000);
    ASSERT_EQ(fake_platform::timers().size(), before + 1);
    EXPECT_EQ(fake_platform::timers().back().armedAt, 10500u);
    EXPECT_EQ(fake_platform::timers().back().milliseconds, 10000u);
    EXPECT_EQ(fake_platform::timers().back().handle, g_ahKeepaliveTimer[0]);
}

/* The answer of a keepalive, and what it does to the failure counter. */
struct AnswerCase
{
    const char* name;
    Answer answer;
    u32 result;
};

class KeepaliveAnswer : public Keepalive, public testing::WithParamInterface<AnswerCase>
{
};

TEST_P(KeepaliveAnswer, CountsAsItsResultSays)
{
    server->script(kKeepalive, GetParam().answer);
    server->script(kKeepalive, GetParam().answer);
    startSession();
    EXPECT_EQ(abyKeepalivFailTimes[0], GetParam().result == 50 ? 0u : 1u);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), GetParam().result);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

Answer cutBody(const std::string& body)
{
    Answer answer(200, body);
    answer.cut = viewlib::Cut::MidBody;
    return answer;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, KeepaliveAnswer,
    testing::Values(
        AnswerCase{"Code0", Answer(200, codeAnswer("0")), 50}, AnswerCase{"Created", Answer(201, codeAnswer("0")), 50},
        AnswerCase{"Code4", Answer(200, codeAnswer("4")), 51}, AnswerCase{"Code9", Answer(200, codeAnswer("9")), 51},
        AnswerCase{"Code10", Answer(200, codeAnswer("10")), 69},
        AnswerCase{"Code100", Answer(200, codeAnswer("100")), 51},
        AnswerCase{"Code1000IsCutTo100", Answer(200, codeAnswer("1000")), 51},
        AnswerCase{"NegativeCode", Answer(200, codeAnswer("-1")), 51},
        AnswerCase{"TextCode10ReadsAs0", Answer(200, codeAnswer("\"10\"")), 50},
        AnswerCase{"TextCode4ReadsAs0", Answer(200, codeAnswer("\"4\"")), 50},
        AnswerCase{"NullCodeReadsAs0", Answer(200, codeAnswer("null")), 50},
        AnswerCase{"EmptyBody", Answer(200, ""), 50}, AnswerCase{"NotJson", Answer(200, "<html></html>"), 50},
        AnswerCase{"NoStatusObject", Answer(200, "{\"ResponseStatusListObject\":{}}"), 50},
        AnswerCase{"NoStatusCode", Answer(200, "{\"ResponseStatusObject\":{\"StatusString\":\"Fail\"}}"), 50},
        AnswerCase{"Created10", Answer(201, codeAnswer("10")), 69}, AnswerCase{"Accepted", Answer(202), 51},
        AnswerCase{"Redirect", Answer::redirect(302, "http://127.0.0.1:1/VIID/System/Keepalive"), 51},
        AnswerCase{"BadRequest", Answer(400), 51}, AnswerCase{"Unauthorized", Answer(401), 51},
        AnswerCase{"Forbidden", Answer(403), 51}, AnswerCase{"NotFound", Answer(404, codeAnswer("0")), 51},
        AnswerCase{"ServerError", Answer(500), 51},
        AnswerCase{"ClosedWithoutAnswer", Answer::broken(viewlib::Cut::BeforeStatus), 76},
        AnswerCase{"Reset", Answer::broken(viewlib::Cut::Reset), 76},
        AnswerCase{"CutBody", cutBody(codeAnswer("0") + std::string(100, ' ')), 76}),
    [](const auto& one) { return one.param.name; });

TEST_F(Keepalive, ThirdFailureInARowEndsTheSession)
{
    server->always(kKeepalive, Answer(500));
    startSession(10);
    passes(19);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_EQ(abyKeepalivFailTimes[0], 2u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1"));
    newLines();

    fake_platform::runFor(1000); /* the keepalive at 20500 is in it */
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u, 10500u, 20500u));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_EQ(abyKeepalivFailTimes[0], 0u);
    EXPECT_EQ(g_ahKeepaliveTimer[0], nullptr);
    EXPECT_THAT(fake_platform::armedTimers(), IsEmpty());
    ASSERT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0"));
    EXPECT_EQ(told()[2].at, 20500u);
    EXPECT_TRUE(sameRecord(told()[2].info, g_atPubSecStackGlobalCommon[0]));
    EXPECT_THAT(newLines(), Contains(Err(kHandler, "plat[0] keepalive timeout.")));
    EXPECT_EQ(server->exchangesOf(kUnRegister).size(), 0u);
}

TEST_F(Keepalive, LossTakesTheClockTimerAlong)
{
    server->always(kKeepalive, Answer(500));
    TPubSecPlatRegInfo info = recordFor(server->port());
    info.dwKeepaliveSec = 10;
    info.dwSyncTimeMin = 5;
    configure(0, info);
    passes(1);
    EXPECT_THAT(clockTimers(), SizeIs(1));
    fake_platform::runFor(20000);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_THAT(clockTimers(), IsEmpty());
    EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
}

TEST_F(Keepalive, LoopRegistersAnewAfterALoss)
{
    server->script(kKeepalive, Answer(500));
    server->script(kKeepalive, Answer(500));
    server->script(kKeepalive, Answer(500));
    startSession(10);
    passes(22);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
    EXPECT_THAT(timesOf(kRegister), ElementsAre(0u, 0u, 21000u, 21000u));
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u, 10500u, 20500u, 21500u));
    EXPECT_EQ(abyKeepalivFailTimes[0], 0u);
}

TEST_F(Keepalive, SuccessResetsTheCounter)
{
    for (const unsigned status : {500u, 500u, 200u, 500u, 500u})
    {
        server->script(kKeepalive, status == 200 ? Answer(200, codeAnswer("0")) : Answer(status));
    }
    startSession(10);
    std::vector<u32> counts = {abyKeepalivFailTimes[0]};
    for (int i = 0; i < 4; ++i)
    {
        passes(10);
        counts.push_back(abyKeepalivFailTimes[0]);
    }
    EXPECT_THAT(counts, ElementsAre(1u, 2u, 0u, 1u, 2u));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

TEST_F(Keepalive, EveryKindOfFailureCounts)
{
    server->script(kKeepalive, Answer(200, codeAnswer("4")));
    server->script(kKeepalive, Answer(200, codeAnswer("10")));
    server->script(kKeepalive, Answer::broken(viewlib::Cut::BeforeStatus));
    startSession(10);
    fake_platform::runFor(20000);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
}

/* The counter belongs to the platform, not to the session: nothing but a success or the loss resets it. */
TEST_F(Keepalive, CounterOutlivesAReregistration)
{
    const auto second = newServer();
    server->always(kKeepalive, Answer(500));
    startSession(10);
    passes(10);
    EXPECT_EQ(abyKeepalivFailTimes[0], 2u);
    second->script(kKeepalive, Answer(500));
    TPubSecPlatRegInfo info = recordFor(second->port());
    info.dwKeepaliveSec = 10;
    configure(0, info);
    passes(1);
    EXPECT_EQ(second->exchangesOf(kKeepalive).size(), 1u);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
}

TEST_F(Keepalive, OtherCodesAreComplainedOf)
{
    server->script(kKeepalive, Answer(200, codeAnswer("4")));
    startSession();
    const std::vector<std::string> lines = newLines();
    EXPECT_THAT(lines, Contains(Inf("_PubSecKeepAliveParseJson", "StatusCode:4")));
    const std::vector<std::string> complaints = fake_platform::logLinesWith("statu code:");
    ASSERT_EQ(complaints.size(), 1u);
    EXPECT_THAT(complaints[0], testing::MatchesRegex(
                                   "\\[PubSecStack ERR\\] _PubSecPostUserKeepAliveMsg:[0-9]+ statu code:-?[0-9]+\n"));
}

TEST_F(Keepalive, Code10IsComplainedOf)
{
    server->script(kKeepalive, Answer(200, codeAnswer("10")));
    startSession();
    EXPECT_THAT(fake_platform::logLinesWith("statu code:"), SizeIs(1));
}

TEST_F(Keepalive, ReaderNamesTheOtherObject)
{
    server->script(kKeepalive, Answer(200, "{}"));
    server->script(kKeepalive, Answer(200, "{\"ResponseStatusObject\":{}}"));
    startSession(10);
    EXPECT_THAT(newLines(), Contains(Err("_PubSecKeepAliveParseJson", "Not Find ResponseStatusListObject!")));
    fake_platform::runFor(10000);
    EXPECT_THAT(newLines(), Contains(Err("_PubSecKeepAliveParseJson", "Not Find ResponseStatusObject!")));
}

TEST_F(Keepalive, NoServer)
{
    startSession();
    server->stop();
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 76u);
    EXPECT_THAT(newLines(), Contains(Err(kFunction, std::string("curl_easy_perform() failed: ") +
                                                        curl_easy_strerror(CURLE_COULDNT_CONNECT))));
}

/* More than the library takes: the write callback ends the transfer, which counts as completed; nothing can be read. */
TEST_F(Keepalive, AnswerLargerThanMemoryIsUnreadable)
{
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "a thousand growths of a block take too long under a sanitizer";
#endif
    startSession();
    server->script(kKeepalive, Answer(200, codeAnswer("4") + std::string(17u << 20, ' ')));
    _SetPubSecStaLogLvl(1);
    newLines();
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
    EXPECT_THAT(newLines(), Contains(Err("_PubSecWriteCB", "not enough memory (realloc returned NULL)")));
}

TEST_F(Keepalive, OnlyElapsedTimersCount)
{
    startSession();
    const size_t timers = fake_platform::timers().size();
    for (const u32 event : {0u, 1u, 2u, 3u, 5u, 0xffffffffu})
    {
        elapse(&g_adwPubSecStackPlatIndex[0], event);
    }
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
    EXPECT_EQ(fake_platform::timers().size(), timers);
}

TEST_F(Keepalive, NullContext)
{
    startSession();
    newLines();
    elapse(nullptr);
    elapse(nullptr, 2); /* the context is looked at before the event */
    EXPECT_THAT(newLines(), ElementsAre(Err(kHandler, "pvContext is null."), Err(kHandler, "pvContext is null.")));
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
}

TEST_F(Keepalive, ContextOutOfRange)
{
    startSession();
    newLines();
    const u32 two = 2;
    const u32 huge = 0xffffffffu;
    elapse(&two);
    elapse(&huge, 2);
    EXPECT_THAT(newLines(),
                ElementsAre(Err(kHandler, "PlatIndex=2 is overflow."), Err(kHandler, "PlatIndex=-1 is overflow.")));
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
}

TEST_F(Keepalive, UnregisteredPlatformEndsItsTimer)
{
    startSession(10);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    EXPECT_THAT(keepaliveTimers(), SizeIs(1));
    newLines();
    fake_platform::runFor(20000);
    EXPECT_THAT(newLines(), ElementsAre(Err(kHandler, "plat[0] is unregister.")));
    EXPECT_THAT(fake_platform::armedTimers(), IsEmpty());
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u));
}

TEST_F(Keepalive, WithoutATimerItIsSentAndWasTheLast)
{
    startSession(10);
    newLines();
    fake_platform::fail(Function::kTaskSetTimer, 0, 1);
    passes(60);
    EXPECT_THAT(timesOf(kKeepalive), ElementsAre(500u, 10500u));
    EXPECT_THAT(newLines(), Contains(Err(kHandler, "AppTaskSetTimer set g_ahKeepaliveTimer failed.")));
    EXPECT_EQ(g_ahKeepaliveTimer[0], nullptr);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

TEST_F(Keepalive, LongestPeriods)
{
    for (const u32 seconds : {4294967u, 4294968u, 0xffffffffu})
    {
        g_atPubSecStackGlobalCommon[0] = recordFor(server->port());
        g_atPubSecStackGlobalCommon[0].dwKeepaliveSec = seconds;
        g_bPubSecRegStatus[0] = 1;
        elapse(&g_adwPubSecStackPlatIndex[0]);
        EXPECT_EQ(fake_platform::timers().back().milliseconds, seconds == 4294967u ? 4294967000u : 0xffffffffu);
    }
}

/* 63 characters and the terminator; the longer URL is cut and goes nowhere. */
TEST_F(Keepalive, UrlIsCutAt63Characters)
{
    const session_faults::NoHandle nothingIsSent;
    g_atPubSecStackGlobalCommon[0] = recordFor(8080);
    setText(g_atPubSecStackGlobalCommon[0].achServerIP, std::string(60, 'h'));
    newLines();
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
    EXPECT_THAT(newLines(), ElementsAre(Dbg(kFunction, "achURLMessage: http://" + std::string(56, 'h'))));
    setText(g_atPubSecStackGlobalCommon[0].achServerIP, std::string(29, 'h'));
    _PubSecPostUserKeepAliveMsg(0);
    EXPECT_THAT(newLines(), ElementsAre(Dbg(kFunction, "achURLMessage: http://" + std::string(29, 'h') +
                                                           ":8080/VIID/System/Keepalive")));
    setText(g_atPubSecStackGlobalCommon[0].achServerIP, std::string(30, 'h'));
    _PubSecPostUserKeepAliveMsg(0);
    EXPECT_THAT(newLines(), ElementsAre(Dbg(kFunction, "achURLMessage: http://" + std::string(30, 'h') +
                                                           ":8080/VIID/System/Keepaliv")));
}

TEST_F(Keepalive, AddressIsNotBracketed)
{
    const session_faults::NoHandle nothingIsSent;
    g_atPubSecStackGlobalCommon[0] = recordFor(8080);
    setText(g_atPubSecStackGlobalCommon[0].achServerIP, "fd00::5");
    newLines();
    _PubSecPostUserKeepAliveMsg(0);
    EXPECT_THAT(newLines(), ElementsAre(Dbg(kFunction, "achURLMessage: http://fd00::5:8080/VIID/System/Keepalive")));
}

TEST_F(Keepalive, WithoutAHandleItCountsAsAlive)
{
    startSession();
    const session_faults::NoHandle fault;
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
}

TEST_F(Keepalive, WithoutABodyItCountsAsAlive)
{
    startSession();
    const session_faults::NoDocuments fault;
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
}

TEST_F(Keepalive, WithoutGlobalInit)
{
    startSession();
    newLines();
    const session_faults::NoGlobalInit fault;
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 75u);
    EXPECT_THAT(newLines(), Contains(Err(kFunction, std::string("curl_global_init() failed: ") +
                                                        curl_easy_strerror(CURLE_FAILED_INIT))));
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
}

TEST_F(Keepalive, WithoutHeaders)
{
    startSession();
    newLines();
    const session_faults::NoHeaders fault;
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 60u);
    EXPECT_THAT(newLines(), Contains(HasSubstr("FillHeadMsgInfo Err!\n")));
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
}

TEST_F(Keepalive, PlatformNumbersOutOfRange)
{
    startSession();
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(2), 54u);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0xffffffffu), 54u);
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 1u);
}

TEST_F(Keepalive, PlatformsHaveTheirOwnCounters)
{
    const auto second = newServer();
    second->always(kKeepalive, Answer(500));
    TPubSecPlatRegInfo other = recordFor(second->port());
    other.dwKeepaliveSec = 10;
    configure(1, other);
    startSession(10);
    fake_platform::runFor(20000);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_EQ(PubSecGetRegisterStatus(1), 0u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:1->1", "1:1->1", "0:1->0", "1:1->0"));
}

TEST_F(Keepalive, ServerThatForgotTheDeviceIsRegisteredAtAgain)
{
    startSession(10);
    server->forgetRegistrations();
    passes(32);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
    EXPECT_TRUE(server->registered(kDevice));
    EXPECT_THAT(timesOf(kRegister), ElementsAre(0u, 0u, 31000u, 31000u));
}

} // namespace
