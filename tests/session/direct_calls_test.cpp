/* SPDX-License-Identifier: Apache-2.0 */
/* The calls that try a server which the caller describes: their results, their requests, and what they leave alone. */
#include <cstring>

#include "tests/support/session_faults.h"
#include "tests/support/session_fixture.h"

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using viewlib::Answer;

namespace
{

constexpr const char* kRegisterExt = "PubSecStackPostRegisterExt";
constexpr const char* kUnRegisterExt = "PubSecPostUserUnRegisterMsgExt";
constexpr const char* kTest = "PubSecStackTestRegister";

class DirectCalls : public SessionTest
{
  protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        listen();
        param = paramFor(server->port());
        /* A session of another device elsewhere, which nothing here may touch. */
        inForce = recordFor(1);
        setText(inForce.achDeviceID, "99999999999999999999");
        g_atPubSecStackGlobalCommon[0] = inForce;
        g_bPubSecRegStatus[0] = 1;
        newLines();
    }

    void TearDown() override
    {
        EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
        EXPECT_EQ(PubSecGetRegisterStatus(1), 0u);
        EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon[0], inForce));
        EXPECT_TRUE(sameRecord(g_atPubSecStackGlobalCommon_New[0], TPubSecPlatRegInfo{}));
        EXPECT_EQ(g_tFirstRegMess[0].achFirstIP[0], '\0');
        EXPECT_THAT(told(), IsEmpty());
        EXPECT_THAT(fake_platform::timers(), IsEmpty());
        SessionTest::TearDown();
    }

    TPubSecRegParam param;
    TPubSecPlatRegInfo inForce;
};

TEST_F(DirectCalls, RegisterWithADigest)
{
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 200"));
    const viewlib::Exchange sent = server->exchanges().at(1);
    EXPECT_EQ(sent.body, "{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(sent.header("User-Identify"), kDevice);
    EXPECT_EQ(sent.header("Content-Type"), "application/VIID+JSON;charset=UTF-8");
    EXPECT_THAT(
        newLines(),
        ElementsAre(Inf("_PubSecCheckIpAddr", "dwIpAddr:1 "), Inf(kRegisterExt, "URL:" + server->url(kRegister)),
                    Inf(kRegisterExt, "achRegJson:{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}"),
                    Dbg(kRegisterExt, "http code=200.")));
}

TEST_F(DirectCalls, RegisterWithAWrongPassword)
{
    setText(param.achPassword, "wrong");
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 401", "Register 401"));
}

TEST_F(DirectCalls, RegisterWithoutAuthenticationAfterARefusal)
{
    server->script(kRegister, Answer(401));
    server->script(kRegister, Answer(201));
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_FALSE(server->exchanges().at(1).hasHeader("Authorization"));
    EXPECT_EQ(server->exchanges().at(1).body, "{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
}

TEST_F(DirectCalls, RegisterRefusedTwice)
{
    server->always(kRegister, Answer(500));
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    EXPECT_THAT(requests(), ElementsAre("Register 500", "Register 500"));
}

TEST_F(DirectCalls, RegisterFollowsARedirect)
{
    const auto second = newServer();
    second->always(kRegister, Answer(200));
    server->script(kRegister, Answer::redirect(302, second->url(kRegister)));
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(requests(), ElementsAre("Register 302"));
    EXPECT_FALSE(second->exchanges().empty());
}

/* Unlike the session's, a redirect that leads nowhere is tried again without authentication. */
TEST_F(DirectCalls, RegisterTreatsAnUnfollowedRedirectAsARefusal)
{
    server->script(kRegister, Answer(302));
    server->script(kRegister, Answer(200));
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(requests(), ElementsAre("Register 302", "Register 200"));
}

TEST_F(DirectCalls, RegisterAtNobody)
{
    server->stop();
    newLines();
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    const std::string reason = curl_easy_strerror(CURLE_COULDNT_CONNECT);
    const std::vector<std::string> lines = newLines();
    EXPECT_THAT(lines, Contains(Err(kRegisterExt, "curl_easy_perform Ret:7,failed: " + reason)));
    EXPECT_THAT(lines, Contains(Err(kRegisterExt, "curl_easy_perform no auth Ret:7,failed: " + reason)));
}

TEST_F(DirectCalls, RegisterSendsTwentyCharactersOfTheIdentifier)
{
    std::string("440100000011900000012345").copy(param.achDeviceID, sizeof(param.achDeviceID));
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_EQ(server->exchanges().at(1).body, "{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(server->exchanges().at(1).header("User-Identify"), "44010000001190000001");
}

TEST_F(DirectCalls, RegisterPutsAnIPv6AddressInBrackets)
{
    viewlib::Config config;
    config.address = "::1";
    const auto far = newServer(config);
    param = paramFor(far->port());
    setText(param.achServerIP, "::1");
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(newLines(), Contains(Inf(kRegisterExt, "URL:" + far->url(kRegister))));
}

TEST_F(DirectCalls, RegisterWithHttps)
{
    viewlib::Config config;
    config.https = true; /* with a certificate that nobody signed */
    const auto secure = newServer(config);
    param = paramFor(secure->port());
    param.dwHttpsEnable = 1;
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 50u);
    EXPECT_THAT(requestsOf(*secure), ElementsAre("Register 401", "Register 200", "UnRegister 401", "UnRegister 200"));
}

TEST_F(DirectCalls, NullRecords)
{
    EXPECT_EQ(PubSecStackPostRegisterExt(nullptr), 0u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(nullptr), 103u);
    EXPECT_THAT(newLines(), IsEmpty());
    EXPECT_EQ(PubSecStackTestRegister(nullptr), 51u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kTest, "PubSecStackPostRegister Failed.")));
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(DirectCalls, UnRegisterWithADigest)
{
    server->registerDevice(kDevice);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 50u);
    EXPECT_THAT(requests(), ElementsAre("UnRegister 401", "UnRegister 200"));
    EXPECT_EQ(server->exchanges().at(1).body, "{\"UnRegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(server->exchanges().at(1).header("User-Identify"), kDevice);
    EXPECT_FALSE(server->registered(kDevice));
}

TEST_F(DirectCalls, UnRegisterThatIsRefusedIsDone)
{
    server->always(kUnRegister, Answer(403));
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 50u);
    EXPECT_THAT(requests(), ElementsAre("UnRegister 403", "UnRegister 403"));
    EXPECT_THAT(newLines(),
                ElementsAre(Err(kUnRegisterExt, "unreg RetCode=403"), Dbg(kUnRegisterExt, "http code=403.")));
}

TEST_F(DirectCalls, UnRegisterAtNobody)
{
    server->stop();
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 76u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kUnRegisterExt, std::string("curl_easy_perform() failed: ") +
                                                                curl_easy_strerror(CURLE_COULDNT_CONNECT))));
}

TEST_F(DirectCalls, TestRegistersAndLeavesAtOnce)
{
    EXPECT_EQ(PubSecStackTestRegister(&param), 50u);
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 200", "UnRegister 401", "UnRegister 200"));
    EXPECT_THAT(newLines(), Contains(Dbg(kTest, "PubSecStackPostRegister SUCCESS.")));
    EXPECT_FALSE(server->registered(kDevice));
}

TEST_F(DirectCalls, TestRefusedTwiceSendsNoUnRegister)
{
    server->always(kRegister, Answer(403));
    EXPECT_EQ(PubSecStackTestRegister(&param), 51u);
    EXPECT_THAT(requests(), ElementsAre("Register 403", "Register 403"));
    const std::vector<std::string> lines = newLines();
    EXPECT_THAT(lines.back(), Err(kTest, "PubSecStackPostRegister Failed."));
}

TEST_F(DirectCalls, TestIgnoresARefusedUnRegister)
{
    server->always(kUnRegister, Answer::broken(viewlib::Cut::BeforeStatus));
    EXPECT_EQ(PubSecStackTestRegister(&param), 50u);
}

/* A test of the same device at the same server is seen by the server, not by the stack. */
TEST_F(DirectCalls, TestLeavesTheSessionsStatus)
{
    server->registerDevice(kDevice);
    EXPECT_EQ(PubSecStackTestRegister(&param), 50u);
    EXPECT_FALSE(server->registered(kDevice));
}

TEST_F(DirectCalls, FaultsOfTheProcess)
{
    {
        const session_faults::NoHandle fault;
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
        EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 75u);
    }
    EXPECT_THAT(newLines(), AllOf(Contains(Err(kRegisterExt, "curl_easy_init failed().")),
                                  Contains(Err(kUnRegisterExt, "curl_easy_init() failed"))));
    {
        const session_faults::NoGlobalInit fault;
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
        EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 75u);
    }
    const std::string reason = std::string("curl_global_init() failed: ") + curl_easy_strerror(CURLE_FAILED_INIT);
    EXPECT_THAT(newLines(), AllOf(Contains(Err(kRegisterExt, reason)), Contains(Err(kUnRegisterExt, reason))));
    {
        const session_faults::NoDocuments fault;
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
        EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 51u);
    }
    EXPECT_THAT(newLines(), AllOf(Contains(Err(kRegisterExt, "_PubSecUserRegisterJson failed().")),
                                  Contains(Err(kUnRegisterExt, "ptUnRegJson is null"))));
    server->clearExchanges();
    {
        const session_faults::NoHeaders fault;
        EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 60u);
        EXPECT_THAT(requests(), IsEmpty());
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    }
    EXPECT_EQ(fake_platform::logLinesWith("FillHeadMsgInfo Err!").size(), 2u);
}

} // namespace
