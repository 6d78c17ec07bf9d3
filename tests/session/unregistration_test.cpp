/* SPDX-License-Identifier: Apache-2.0 */
/* Unregistration as the host calls it: told first, sent second, and done whatever the server says. */
#include "tests/support/session_faults.h"
#include "tests/support/session_fixture.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using viewlib::Answer;

namespace
{

constexpr const char* kFunction = "PubSecPostUserUnRegisterMsg";

class Unregistration : public SessionTest
{
  protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        listen();
    }

    /* Platform 0 registered, both timers armed, only what follows in the logs. */
    TPubSecPlatRegInfo startSession()
    {
        TPubSecPlatRegInfo info = recordFor(server->port());
        info.dwSyncTimeMin = 5;
        registerPlatform(info);
        server->clearExchanges();
        newLines();
        return info;
    }

    /* The status is 0 and the host knows, whatever became of the request. */
    void expectLeft()
    {
        EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
        EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0"));
    }
};

TEST_F(Unregistration, LeavesWithADigest)
{
    startSession();
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    expectLeft();
    EXPECT_THAT(requests(), ElementsAre("UnRegister 401", "UnRegister 200"));
    const viewlib::Exchange sent = server->exchanges().at(1);
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.target, "/VIID/System/UnRegister");
    EXPECT_EQ(sent.body, "{\"UnRegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(sent.header("User-Identify"), kDevice);
    EXPECT_FALSE(sent.hasHeader("token"));
    EXPECT_THAT(sent.header("Authorization"),
                AllOf(HasSubstr("username=\"admin\""), HasSubstr("uri=\"/VIID/System/UnRegister\"")));
    EXPECT_FALSE(server->registered(kDevice));
    EXPECT_THAT(newLines(), IsEmpty());
}

TEST_F(Unregistration, TellsTheHostBeforeTheServer)
{
    const TPubSecPlatRegInfo info = startSession();
    PubSecPostUserUnRegisterMsg(0);
    ASSERT_THAT(told(), SizeIs(4));
    EXPECT_EQ(told()[2].requestsBefore, 0u);
    EXPECT_EQ(told()[3].requestsBefore, 0u);
    EXPECT_TRUE(sameRecord(told()[2].info, info));
    EXPECT_TRUE(sameRecord(told()[3].info, info));
}

TEST_F(Unregistration, OfAnUnregisteredPlatformSendsNothing)
{
    g_atPubSecStackGlobalCommon[0] = recordFor(server->port());
    newLines();
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 54u);
    EXPECT_THAT(newLines(), IsEmpty());
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Unregistration, SecondCallFindsItDone)
{
    startSession();
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 54u);
    EXPECT_THAT(requests(), SizeIs(2));
    expectLeft();
}

TEST_F(Unregistration, PlatformNumbersOutOfRange)
{
    startSession();
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(2), 54u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0xffffffffu), 54u);
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
}

TEST_F(Unregistration, RefusalIsTriedOnceMoreAndReportedAsDone)
{
    startSession();
    server->always(kUnRegister, Answer(403));
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    expectLeft();
    const std::vector<viewlib::Exchange> sent = server->exchanges();
    ASSERT_THAT(sent, SizeIs(2));
    EXPECT_FALSE(sent[1].hasHeader("Authorization"));
    EXPECT_EQ(sent[1].body, "{\"UnRegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, "unreg RetCode=403"), Dbg(kFunction, "http code=403.")));
}

TEST_F(Unregistration, SecondTryMayFailToo)
{
    startSession();
    Answer cut(500, std::string(100, ' '));
    cut.cut = viewlib::Cut::MidBody;
    server->script(kUnRegister, Answer(500));
    server->script(kUnRegister, cut);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, "unreg RetCode=500"),
                                        Err(kFunction, std::string("curl_easy_perform no auth Ret:18,failed: ") +
                                                           curl_easy_strerror(CURLE_PARTIAL_FILE)),
                                        Dbg(kFunction, "http code=500.")));
}

TEST_F(Unregistration, WrongPasswordIsReportedAsDone)
{
    startSession();
    setText(g_atPubSecStackGlobalCommon[0].achPassword, "wrong");
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    EXPECT_THAT(requests(), ElementsAre("UnRegister 401", "UnRegister 401", "UnRegister 401"));
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, "unreg RetCode=401"), Dbg(kFunction, "http code=401.")));
    expectLeft();
}

TEST_F(Unregistration, Status201IsDone)
{
    startSession();
    server->always(kUnRegister, Answer(201));
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    EXPECT_THAT(newLines(), IsEmpty());
}

TEST_F(Unregistration, UnreachableServerIs76)
{
    startSession();
    server->stop();
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 76u);
    expectLeft();
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, std::string("curl_easy_perform() failed: ") +
                                                           curl_easy_strerror(CURLE_COULDNT_CONNECT))));
}

TEST_F(Unregistration, RedirectIsFollowed)
{
    startSession();
    const auto second = newServer();
    server->script(kUnRegister, Answer::redirect(302, second->url(kUnRegister)));
    second->always(kUnRegister, Answer(200));
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    EXPECT_THAT(requests(), ElementsAre("UnRegister 302"));
    EXPECT_FALSE(second->exchangesOf(kUnRegister).empty());
    EXPECT_EQ(g_tFirstRegMess[0].achFirstIP[0], '\0');
}

TEST_F(Unregistration, LeavesTheTimersArmed)
{
    startSession();
    const TAppTimerHandle keepalive = g_ahKeepaliveTimer[0];
    const TAppTimerHandle clock = g_ahSyncTimeTimer[0];
    const size_t cancels = fake_platform::cancels().size();
    PubSecPostUserUnRegisterMsg(0);
    EXPECT_EQ(g_ahKeepaliveTimer[0], keepalive);
    EXPECT_EQ(g_ahSyncTimeTimer[0], clock);
    EXPECT_THAT(fake_platform::armedTimers(), SizeIs(2));
    EXPECT_EQ(fake_platform::cancels().size(), cancels);
}

TEST_F(Unregistration, LoopRegistersAgain)
{
    startSession();
    PubSecPostUserUnRegisterMsg(0);
    passes(1);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1", "0:0->0", "1:0->0", "0:0->1", "1:0->1"));
}

TEST_F(Unregistration, AddressIsNotBracketed)
{
    startSession();
    setText(g_atPubSecStackGlobalCommon[0].achServerIP, "::1");
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 76u);
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(Unregistration, WithoutABody)
{
    startSession();
    const session_faults::NoDocuments fault;
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 51u);
    expectLeft();
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, "ptUnRegJson is null")));
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(Unregistration, WithoutGlobalInit)
{
    startSession();
    const session_faults::NoGlobalInit fault;
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 75u);
    expectLeft();
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, std::string("curl_global_init() failed: ") +
                                                           curl_easy_strerror(CURLE_FAILED_INIT))));
}

TEST_F(Unregistration, WithoutAHandle)
{
    startSession();
    const session_faults::NoHandle fault;
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 75u);
    expectLeft();
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, "curl_easy_init() failed")));
}

TEST_F(Unregistration, WithoutHeaders)
{
    startSession();
    const session_faults::NoHeaders fault;
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 60u);
    expectLeft();
    EXPECT_THAT(newLines(), ElementsAre(HasSubstr("FillHeadMsgInfo Err!\n")));
    EXPECT_THAT(requests(), IsEmpty());
}

} // namespace
