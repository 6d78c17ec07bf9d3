/* SPDX-License-Identifier: Apache-2.0 */
/* Registration, one exchange at a time: what is sent, which answers count, what the host is told. */
#include <netinet/in.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

#include "tests/support/session_faults.h"
#include "tests/support/session_fixture.h"

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using viewlib::Answer;

namespace
{

constexpr const char* kFunction = "PubSecStackPostRegister";
constexpr const char* kChallenge =
    "Digest realm=\"viewlib\", qop=\"auth\", nonce=\"0123456789abcdef\", opaque=\"fedcba9876543210\"";

class Registration : public SessionTest
{
  protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        listen();
        newLines();
    }

    /* One pass for platform 0 at the first server; the status right after it. */
    u32 registerOnce()
    {
        return registerOnce(recordFor(server->port()));
    }

    u32 registerOnce(const TPubSecPlatRegInfo& info)
    {
        configure(0, info);
        u32 status = 2;
        passThen([&] {
            status = PubSecGetRegisterStatus(0);
            lines = newLines();
        });
        return status;
    }

    std::vector<std::string> lines; /* that the pass logged */
};

/* A port on which nobody listens any more. */
u16 closedPort()
{
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    bind(fd, reinterpret_cast<sockaddr*>(&address), length);
    getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    close(fd);
    return ntohs(address.sin_port);
}

TEST_F(Registration, AnswersTheChallengeAndTellsTheHost)
{
    const TPubSecPlatRegInfo info = recordFor(server->port());
    EXPECT_EQ(registerOnce(info), 1u);

    const std::vector<viewlib::Exchange> sent = server->exchanges();
    ASSERT_EQ(requests(), (std::vector<std::string>{"Register 401", "Register 200", "Keepalive 200"}));
    EXPECT_EQ(sent[0].header("Authorization"), "");
    EXPECT_EQ(sent[1].method, "POST");
    EXPECT_EQ(sent[1].target, "/VIID/System/Register");
    EXPECT_EQ(sent[1].body, "{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_THAT(sent[1].header("Authorization"),
                AllOf(HasSubstr("username=\"admin\""), HasSubstr("uri=\"/VIID/System/Register\"")));

    ASSERT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1"));
    EXPECT_TRUE(sameRecord(told()[0].info, info));
    EXPECT_TRUE(sameRecord(told()[1].info, info));
    EXPECT_EQ(told()[0].requestsBefore, 2u);
}

TEST_F(Registration, SendsTheHeadersOfASession)
{
    registerOnce();
    const viewlib::Exchange sent = server->exchangesOf(kRegister).at(1);
    EXPECT_EQ(sent.header("localhost"), "8080");
    EXPECT_EQ(sent.header("Accept"), "application/json,application/VIID+JSON");
    EXPECT_EQ(sent.header("Content-Type"), "application/VIID+JSON;charset=UTF-8");
    EXPECT_EQ(sent.header("Connection"), "Keep-alive");
    EXPECT_FALSE(sent.hasHeader("Expect"));
    EXPECT_EQ(sent.header("User-Identify"), kDevice);
    EXPECT_FALSE(sent.hasHeader("token"));
}

TEST_F(Registration, LogsItsSteps)
{
    registerOnce();
    const std::string port = std::to_string(server->port());
    EXPECT_THAT(lines,
                ElementsAre(Inf("_PubSecCheckIpAddr", "dwIpAddr:1 "),
                            Inf(kFunction, "dwPlatIndex:0,URL:http://127.0.0.1:" + port + "/VIID/System/Register"),
                            Inf(kFunction, "achRegJson:{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}"),
                            Dbg(kFunction, "http code=200.")));
}

TEST_F(Registration, SucceedsWithStatus201)
{
    server->always(kRegister, Answer(201));
    EXPECT_EQ(registerOnce(), 1u);
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1"));
    EXPECT_THAT(lines, Contains(Dbg(kFunction, "http code=201.")));
}

TEST_F(Registration, SucceedsWithStatus200WhateverTheBodySays)
{
    server->always(kRegister, Answer(200, "{\"ResponseStatusObject\":{\"StatusCode\":4,\"StatusString\":\"Fail\"}}"));
    EXPECT_EQ(registerOnce(), 1u);
}

TEST_F(Registration, TriesOnceMoreWithoutAuthentication)
{
    server->script(kRegister, Answer(401).with("WWW-Authenticate", kChallenge));
    server->script(kRegister, Answer(401).with("WWW-Authenticate", kChallenge));
    server->script(kRegister, Answer(200));
    EXPECT_EQ(registerOnce(), 1u);

    const std::vector<viewlib::Exchange> sent = server->exchangesOf(kRegister);
    ASSERT_EQ(sent.size(), 3u);
    EXPECT_THAT(sent[1].header("Authorization"), HasSubstr("Digest "));
    EXPECT_FALSE(sent[2].hasHeader("Authorization"));
    EXPECT_EQ(sent[2].body, "{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(sent[2].header("User-Identify"), kDevice);
    EXPECT_THAT(lines, Contains(Dbg(kFunction, "http code=401.")));
    EXPECT_THAT(lines, Contains(Dbg(kFunction, "http code=200.")));
    EXPECT_THAT(toldShort(), ElementsAre("0:0->1", "1:0->1"));
}

TEST_F(Registration, SecondTryAccepts201)
{
    server->script(kRegister, Answer(403));
    server->script(kRegister, Answer(201));
    EXPECT_EQ(registerOnce(), 1u);
}

TEST_F(Registration, SecondTryFollowsNoRedirect)
{
    server->script(kRegister, Answer(403));
    server->script(kRegister, Answer::redirect(302, "http://10.2.2.2:9000/VIID/System/Register"));
    EXPECT_EQ(registerOnce(), 0u);
    EXPECT_EQ(g_tFirstRegMess[0].achFirstIP[0], '\0');
    EXPECT_STREQ(g_atPubSecStackGlobalCommon_New[0].achServerIP, "127.0.0.1");
}

struct Refusal
{
    unsigned status;
    const char* logged;
    size_t requests; /* libcurl repeats, with its body, a request that was taken before any challenge */
};

class RefusedRegistration : public Registration, public testing::WithParamInterface<Refusal>
{
};

TEST_P(RefusedRegistration, LeavesThePlatformUnregistered)
{
    server->always(kRegister, Answer(GetParam().status));
    EXPECT_EQ(registerOnce(), 0u);
    EXPECT_EQ(server->exchangesOf(kRegister).size(), GetParam().requests);
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(std::count(lines.begin(), lines.end(), Dbg(kFunction, GetParam().logged)), 2);
    EXPECT_THAT(keepaliveTimers(), IsEmpty());
    EXPECT_THAT(clockTimers(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Status, RefusedRegistration,
                         testing::Values(Refusal{202, "http code=202.", 3}, Refusal{204, "http code=204.", 3},
                                         Refusal{303, "http code=303.", 2}, Refusal{307, "http code=307.", 2},
                                         Refusal{308, "http code=308.", 2}, Refusal{400, "http code=400.", 2},
                                         Refusal{401, "http code=401.", 2}, Refusal{403, "http code=403.", 2},
                                         Refusal{404, "http code=404.", 2}, Refusal{500, "http code=500.", 2},
                                         Refusal{503, "http code=503.", 2}),
                         [](const auto& one) { return std::to_string(one.param.status); });

TEST_F(Registration, WrongPasswordIsRefused)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    setText(info.achPassword, "wrong");
    EXPECT_EQ(registerOnce(info), 0u);
    EXPECT_THAT(requests(), ElementsAre("Register 401", "Register 401", "Register 401"));
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Registration, NoServerIsTriedTwice)
{
    EXPECT_EQ(registerOnce(recordFor(closedPort())), 0u);
    const std::string reason = curl_easy_strerror(CURLE_COULDNT_CONNECT);
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_THAT(lines[3], Err(kFunction, "curl_easy_perform Ret:7,failed: " + reason));
    EXPECT_EQ(lines[4], Dbg(kFunction, "http code=0."));
    EXPECT_THAT(lines[5], Err(kFunction, "curl_easy_perform no auth Ret:7,failed: " + reason));
    EXPECT_EQ(lines[6], Dbg(kFunction, "http code=0."));
    EXPECT_THAT(told(), IsEmpty());
}

/* The status of the answer decides even when the transfer did not end well. */
TEST_F(Registration, CutAnswerWithStatus200Counts)
{
    Answer cut(200, std::string(1000, ' '));
    cut.cut = viewlib::Cut::MidBody;
    server->always(kRegister, cut);
    EXPECT_EQ(registerOnce(), 1u);
    EXPECT_THAT(lines, Contains(Err(kFunction, std::string("curl_easy_perform Ret:18,failed: ") +
                                                   curl_easy_strerror(CURLE_PARTIAL_FILE))));
}

TEST_F(Registration, ConnectionClosedWithoutAnAnswer)
{
    server->always(kRegister, Answer::broken(viewlib::Cut::BeforeStatus));
    EXPECT_EQ(registerOnce(), 0u);
    EXPECT_THAT(lines, Contains(Err(kFunction, std::string("curl_easy_perform Ret:52,failed: ") +
                                                   curl_easy_strerror(CURLE_GOT_NOTHING))));
}

TEST_F(Registration, PutsAnIPv6AddressInBrackets)
{
    viewlib::Config config;
    config.address = "::1";
    const auto far = newServer(config);
    TPubSecPlatRegInfo info = recordFor(far->port());
    setText(info.achServerIP, "::1");
    EXPECT_EQ(registerOnce(info), 1u);
    const std::string port = std::to_string(far->port());
    ASSERT_GE(lines.size(), 2u);
    EXPECT_THAT(lines[0], HasSubstr("your IP is IpV6,IP:::1"));
    EXPECT_EQ(lines[1], Inf(kFunction, "dwPlatIndex:0,URL:http://[::1]:" + port + "/VIID/System/Register"));
    EXPECT_EQ(far->exchangesOf(kRegister).at(1).header("Host"), "[::1]:" + port);
}

/* A record, the URL that it makes, and why. */
struct UrlCase
{
    const char* name;
    std::string address;
    u32 port;
    u32 https;
    std::string url;
};

class RegistrationUrl : public Registration, public testing::WithParamInterface<UrlCase>
{
};

TEST_P(RegistrationUrl, IsMadeOfTheRecord)
{
    const session_faults::NoHandle nothingIsSent;
    TPubSecPlatRegInfo info = recordFor(1);
    GetParam().address.copy(info.achServerIP, sizeof(info.achServerIP));
    info.dwServerPort = GetParam().port;
    info.dwHttpsEnable = GetParam().https;
    if (GetParam().address.size() < sizeof(info.achServerIP))
    {
        setText(info.achServerIP, GetParam().address);
    }
    EXPECT_EQ(registerOnce(info), 0u);
    EXPECT_THAT(lines, Contains(Inf(kFunction, "dwPlatIndex:0,URL:" + GetParam().url)));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RegistrationUrl,
    testing::Values(UrlCase{"IPv6", "fd00::5", 80, 0, "http://[fd00::5]:80/VIID/System/Register"},
                    UrlCase{"IPv6WithoutDoubleColon", "fd00:0:0:0:0:0:0:5", 80, 0,
                            "http://[fd00:0:0:0:0:0:0:5]:80/VIID/System/Register"},
                    UrlCase{"IPv6GivenInBrackets", "[fd00:0:0:0:0:0:0:5]", 80, 0,
                            "http://[fd00:0:0:0:0:0:0:5]:80/VIID/System/Register"},
                    UrlCase{"ShortIPv6GivenInBrackets", "[fd00::5]", 80, 0,
                            "http://[[fd00::5]]:80/VIID/System/Register"},
                    UrlCase{"HostName", "server.example", 8080, 0, "http://server.example:8080/VIID/System/Register"},
                    UrlCase{"Https", "10.1.1.1", 443, 1, "https://10.1.1.1:443/VIID/System/Register"},
                    UrlCase{"HttpsFlagOtherThanOne", "10.1.1.1", 443, 2, "http://10.1.1.1:443/VIID/System/Register"},
                    UrlCase{"PortIsSigned", "10.1.1.1", 4294967295u, 0, "http://10.1.1.1:-1/VIID/System/Register"},
                    UrlCase{"AddressFillsItsField", std::string(64, 'a'), 80, 0,
                            "http://" + std::string(64, 'a') + ":80/VIID/System/Register"}),
    [](const auto& one) { return one.param.name; });

TEST_F(Registration, SendsTwentyCharactersOfTheIdentifier)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    std::string("440100000011900000012345").copy(info.achDeviceID, sizeof(info.achDeviceID)); /* no terminator */
    EXPECT_EQ(registerOnce(info), 1u);
    const viewlib::Exchange sent = server->exchangesOf(kRegister).at(1);
    EXPECT_EQ(sent.body, "{\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}");
    EXPECT_EQ(sent.header("User-Identify"), "44010000001190000001");
}

TEST_F(Registration, EscapesTheIdentifier)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    setText(info.achDeviceID, "a\"b");
    EXPECT_EQ(registerOnce(info), 1u);
    EXPECT_EQ(server->exchangesOf(kRegister).at(1).body, "{\"RegisterObject\":{\"DeviceID\":\"a\\\"b\"}}");
}

/* Address and credentials come from the record that is passed, the identifier from the one in force. */
TEST_F(Registration, TakesTheIdentifierFromTheRecordInForce)
{
    TPubSecPlatRegInfo inForce = recordFor(1);
    setText(inForce.achDeviceID, "11111111111111111111");
    g_atPubSecStackGlobalCommon[0] = inForce;
    const TPubSecPlatRegInfo info = recordFor(server->port());
    PubSecStackPostRegister(0, &info);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    const viewlib::Exchange sent = server->exchangesOf(kRegister).at(1);
    EXPECT_EQ(sent.body, "{\"RegisterObject\":{\"DeviceID\":\"11111111111111111111\"}}");
    EXPECT_EQ(sent.header("User-Identify"), "11111111111111111111");
    EXPECT_TRUE(sameRecord(told().at(0).info, info));
}

TEST_F(Registration, PlatformNumbersOutOfRangeDoNothing)
{
    const TPubSecPlatRegInfo info = recordFor(server->port());
    for (const s32 platform : {2, 3, -1, 0x7fffffff})
    {
        PubSecStackPostRegister(platform, &info);
    }
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Registration, FailedGlobalInitIsOnlyLogged)
{
    const session_faults::NoGlobalInit fault;
    EXPECT_EQ(registerOnce(), 1u);
    EXPECT_THAT(lines, Contains(Err(kFunction, std::string("curl_global_init() failed: ") +
                                                   curl_easy_strerror(CURLE_FAILED_INIT))));
}

TEST_F(Registration, WithoutAHandleNothingIsSent)
{
    const session_faults::NoHandle fault;
    EXPECT_EQ(registerOnce(), 0u);
    EXPECT_THAT(lines, Contains(Err(kFunction, "curl_easy_init failed().")));
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Registration, WithoutABodyNothingIsSent)
{
    const session_faults::NoDocuments fault;
    EXPECT_EQ(registerOnce(), 0u);
    EXPECT_THAT(lines, Contains(Err(kFunction, "_PubSecUserRegisterJson failed().")));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("achRegJson"))));
    EXPECT_THAT(requests(), IsEmpty());
}

/* The line number stands in the prefix and in the text. */
TEST_F(Registration, WithoutAHeaderListItIsSentAllTheSame)
{
    {
        const session_faults::NoHeaders fault;
        const TPubSecPlatRegInfo info = recordFor(server->port());
        g_atPubSecStackGlobalCommon[0] = info;
        PubSecStackPostRegister(0, &info);
    }
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_FALSE(server->exchangesOf(kRegister).at(1).hasHeader("User-Identify"));
    const std::vector<std::string> complaints = fake_platform::logLinesWith("FillHeadMsgInfo Err!");
    ASSERT_EQ(complaints.size(), 1u);
    int lineInPrefix = 0;
    int lineInText = -1;
    EXPECT_EQ(sscanf(complaints[0].c_str(),
                     "[PubSecStack ERR] PubSecStackPostRegister:%d ### [%d] #### FillHeadMsgInfo Err!\n", &lineInPrefix,
                     &lineInText),
              2);
    EXPECT_EQ(lineInPrefix, lineInText);
}

TEST_F(Registration, TextsOfTheThreeBodies)
{
    const auto textOf = [](char* made) {
        const std::string text = made;
        free(made);
        return text;
    };
    EXPECT_EQ(textOf(_PubSecUserRegisterJson("123456789012345678901234")),
              "{\"RegisterObject\":{\"DeviceID\":\"12345678901234567890\"}}");
    EXPECT_EQ(textOf(_PubSecUserUnRegisterJson("1")), "{\"UnRegisterObject\":{\"DeviceID\":\"1\"}}");
    EXPECT_EQ(textOf(_PubSecUserKeepaliveJson("")), "{\"KeepaliveObject\":{\"DeviceID\":\"\"}}");
    EXPECT_EQ(_PubSecUserRegisterJson(nullptr), nullptr);
}

/* A callback that is told of the registration finds it done, and no lock held. */
TEST_F(Registration, CallbackMayConfigure)
{
    resetStack();
    _SetPubSecStaLogLvl(3);
    static u32 s_status;
    s_status = 2;
    PubSecStackRegisterCB([](u32 platform, u32, const TPubSecPlatRegInfo* info) {
        s_status = PubSecGetRegisterStatus(static_cast<s32>(platform));
        TPubSecPlatRegInfo next = *info;
        next.dwKeepaliveSec = 7;
        PubSecStackUpdateRegisterInfo(static_cast<s32>(platform), &next);
    });
    EXPECT_EQ(registerOnce(), 1u);
    EXPECT_EQ(s_status, 1u);
    EXPECT_EQ(g_atPubSecStackGlobalCommon_New[0].dwKeepaliveSec, 7u);
}

TEST_F(Registration, SecondPlatformHasItsOwnNumber)
{
    TPubSecPlatRegInfo info = recordFor(server->port());
    setText(info.achDeviceID, "44010000001190000002");
    registerPlatform(info, 1);
    EXPECT_THAT(toldShort(), ElementsAre("0:1->1", "1:1->1"));
    EXPECT_EQ(server->exchangesOf(kRegister).at(1).header("User-Identify"), "44010000001190000002");
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_EQ(PubSecGetRegisterStatus(1), 1u);
    EXPECT_EQ(g_adwPubSecStackPlatIndex[1], 1u);
    EXPECT_THAT(newLines(), Contains(HasSubstr("dwPlatIndex:1,URL:http://127.0.0.1:")));
}

} // namespace
