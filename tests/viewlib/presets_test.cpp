/* SPDX-License-Identifier: Apache-2.0 */
/* Every preset, as its bytes are seen on the wire. */
#include "raw_client.h"
#include "server_fixture.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <set>

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using viewlib::FaultRule;
using viewlib::preset;

namespace
{

enum class Request
{
    Face,
    Keepalive,
    Time,
    Register
};

struct Case
{
    const char* preset;
    Request request;
    const char* statusLine;
    const char* header; /* a line that is there; beginning with '!' one whose beginning is not */
    std::string body;
};

const char* const ok = "HTTP/1.1 200 OK";
const char* const usualType = "Content-Type: application/VIID+JSON;charset=UTF-8";

/* What the server says of the face of these tests, in the form that it has when nothing is spoilt. */
const std::string usualStatus =
    R"({"RequestURL":"/VIID/Faces","StatusCode":0,"StatusString":"OK","Id":"f","LocalTime":"20240229235959"})";

/* A status of its own. */
std::string status(const std::string& code, const std::string& text)
{
    return R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"RequestURL":"/VIID/Faces","StatusCode":)" + code +
           R"(,"StatusString":")" + text + R"(","Id":"","LocalTime":"20240229235959"}]}})";
}

std::string time(const std::string& localTime, const std::string& mode = R"("1")",
                 const std::string& zone = R"("UTC+8")")
{
    return R"({"SystemTimeObject":{"VIIDServerID":"44000000005030000001","TimeMode":)" + mode + R"(,"LocalTime":)" +
           localTime + R"(,"TimeZone":)" + zone + "}}";
}

std::vector<Case> cases()
{
    const std::string list = R"({"ResponseStatusListObject":{"ResponseStatusObject":)";
    const std::string object = R"({"ResponseStatusObject":)";
    const std::string usual = list + "[" + usualStatus + "]}}";
    const std::string digits = R"("20240229235959")";
    const Request face = Request::Face;
    return {
        {"envelope-object", face, ok, usualType, object + usualStatus + "}"},
        {"envelope-list", Request::Keepalive, ok, usualType,
         list + R"([{"RequestURL":"/VIID/System/Keepalive","StatusCode":0,"StatusString":"OK",)"
                R"("Id":"34020000001190000001","LocalTime":"20240229235959"}]}})"},
        {"envelope-bare-array", face, ok, usualType, object + "[" + usualStatus + "]}"},
        {"envelope-bare-status", face, ok, usualType, usualStatus},
        {"envelope-both", face, ok, usualType,
         object + usualStatus + R"(,"ResponseStatusListObject":{"ResponseStatusObject":[)" + usualStatus + "]}}"},
        {"envelope-object-for-array", face, ok, usualType, list + usualStatus + "}}"},
        {"envelope-empty-array", face, ok, usualType, list + "[]}}"},
        {"envelope-null-array", face, ok, usualType, list + "null}}"},
        {"envelope-null-list", face, ok, usualType, R"({"ResponseStatusListObject":null})"},
        {"envelope-null", face, ok, usualType, "null"},
        {"text-under-200", face, ok, "Content-Type: text/plain", "success"},
        {"html-under-200", face, ok, "Content-Type: text/html", "<html><body><h1>It works!</h1></body></html>"},
        {"empty-200", face, ok, "!Content-Type:", ""},
        {"failure-under-200", face, ok, usualType, status("1", "Fail")},
        {"ok-under-404", face, "HTTP/1.1 404 Not Found", usualType, status("0", "OK")},
        {"not-registered-200", face, ok, usualType, status("4", "not registered")},
        {"code-as-text", face, ok, usualType,
         list + R"([{"RequestURL":"/VIID/Faces","StatusCode":"0","StatusString":"OK","Id":"f",)"
                R"("LocalTime":"20240229235959"}]}})"},
        {"code-2", face, ok, usualType, status("2", "Device Busy")},
        {"code-3", face, ok, usualType, status("3", "Device Error")},
        {"code-4", face, ok, usualType, status("4", "Invalid Operation")},
        {"code-5", face, ok, usualType, status("5", "Invalid XML Format")},
        {"code-6", face, ok, usualType, status("6", "Invalid XML Content")},
        {"code-7", face, ok, usualType, status("7", "Invalid JSON Format")},
        {"code-8", face, ok, usualType, status("8", "Invalid JSON Content")},
        {"code-9", face, ok, usualType, status("9", "Reboot")},
        {"code-minus-1", face, ok, usualType, status("-1", "Fail")},
        {"code-10", face, ok, usualType, status("10", "Fail")},
        {"code-400", face, ok, usualType, status(R"("400")", "Fail")},
        {"code-404", face, ok, usualType, status(R"("404")", "Fail")},
        {"code-409", face, ok, usualType, status(R"("409")", "Fail")},
        {"code-500", face, ok, usualType, status(R"("500")", "Fail")},
        {"id-empty", face, ok, usualType, status("0", "OK")},
        {"id-null", face, ok, usualType,
         list + R"([{"RequestURL":"/VIID/Faces","StatusCode":0,"StatusString":"OK","Id":null,)"
                R"("LocalTime":"20240229235959"}]}})"},
        {"id-upper-case", face, ok, usualType,
         list + R"([{"RequestURL":"/VIID/Faces","StatusCode":0,"StatusString":"OK","ID":"f",)"
                R"("LocalTime":"20240229235959"}]}})"},
        {"keepalive-10", Request::Keepalive, ok, usualType,
         object + R"({"RequestURL":"/VIID/System/Keepalive","StatusCode":"10","StatusString":"Fail","Id":"",)"
                  R"("LocalTime":"20240229235959"}})"},
        {"unavailable", face, "HTTP/1.1 503 Service Unavailable", usualType, status("1", "Fail")},
        {"media-utf8", face, ok, "Content-Type: application/VIID+JSON;charset=utf8", usual},
        {"media-lower-case", face, ok, "Content-Type: application/viid+json;charset=utf-8", usual},
        {"media-json", face, ok, "Content-Type: application/json", usual},
        {"media-text", face, ok, "Content-Type: text/plain", usual},
        {"close-delimited", face, ok, "!Content-Length:", usual},
        {"close-at-once", face, ok, "Connection: close", usual},
        {"time-epoch-ms", Request::Time, ok, usualType, time("1709222399000")},
        {"time-epoch-s", Request::Time, ok, usualType, time("1709222399")},
        {"time-rfc3339", Request::Time, ok, usualType, time(R"("2024-02-29T23:59:59+08:00")")},
        {"time-mode-0", Request::Time, ok, usualType, time(digits, R"("0")")},
        {"time-mode-1", Request::Time, ok, usualType, time(digits, R"("1")")},
        {"time-mode-number", Request::Time, ok, usualType, time(digits, "1")},
        {"time-mode-empty", Request::Time, ok, usualType, time(digits, R"("")")},
        {"time-zone-utc8", Request::Time, ok, usualType, time(digits, R"("1")", R"("UTC+8")")},
        {"time-zone-shanghai", Request::Time, ok, usualType, time(digits, R"("1")", R"("Asia/Shanghai")")},
        {"time-zone-etc", Request::Time, ok, usualType, time(digits, R"("1")", R"("Etc/GMT-8")")},
        {"time-zone-null", Request::Time, ok, usualType, time(digits, R"("1")", "null")},
        {"wrong-clock", Request::Time, ok, usualType, time(R"("20240229225959")")},
        {"refuse-401-bare", Request::Register, "HTTP/1.1 401 Unauthorized", "!WWW-Authenticate:",
         object + R"({"RequestURL":"/VIID/System/Register","StatusCode":1,"StatusString":"Fail","Id":"",)"
                  R"("LocalTime":"20240229235959"}})"},
        {"refuse-403", Request::Register, "HTTP/1.1 403 Forbidden", "!WWW-Authenticate:",
         object + R"({"RequestURL":"/VIID/System/Register","StatusCode":1,"StatusString":"Fail","Id":"",)"
                  R"("LocalTime":"20240229235959"}})"},
        {"refuse-400-empty", Request::Register, "HTTP/1.1 400 Bad Request", "!Content-Type:", ""},
    };
}

/* Those that have a test of their own below. */
const std::set<std::string> others = {
    "stale-nonce",
    "next-nonce",
    "expired-session",
    "fixed-lifetime",
    "challenge-anywhere",
    "challenge-no-algorithm",
    "challenge-no-opaque",
    "challenge-quoted-algorithm",
    "challenge-cnonce",
    "challenge-realm-id",
    "challenge-realm-space",
    "challenge-opaque-plus",
    "challenge-sha256-md5",
    "redirect",
    "redirect-307",
    "chunked",
    "gzip",
    "garbage",
    "trailing-garbage",
    "extra-continue",
    "early-answer",
    "delay",
    "delay-body",
    "throttled-answer",
    "throttled-reading",
    "stalled-reading",
    "cut-request",
    "cut",
    "cut-mid-body",
    "reset",
};

/* With "N" in place of 16 or 32 hexadecimal digits that are the value of a nonce, cnonce or opaque. */
std::string masked(std::string text)
{
    for (const std::string name : {"nonce=\"", "opaque=\""})
    {
        for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1))
        {
            const std::size_t begin = at + name.size();
            const std::size_t end = std::min(text.find_first_not_of("0123456789abcdef", begin), text.size());
            if ((end - begin == 16 || end - begin == 32) && text[end] == '"')
            {
                text.replace(begin - 1, end - begin + 2, "N");
            }
        }
    }
    return text;
}

class PresetTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        setenv("TZ", "XXX-8", 1);
        tzset();
        config.strict.registration = false;
        config.clock = [] {
            return std::chrono::system_clock::time_point(std::chrono::seconds(1709222399)); /* 15:59:59 UTC */
        };
        start();
    }
    void TearDown() override
    {
        unsetenv("TZ");
        tzset();
    }

    static std::string request(Request kind)
    {
        switch (kind)
        {
        case Request::Face:
            return text("POST", "/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f"}]}})");
        case Request::Keepalive:
            return text("POST", "/VIID/System/Keepalive", R"({"KeepaliveObject":{"DeviceID":"34020000001190000001"}})");
        case Request::Register:
            return text("POST", "/VIID/System/Register", R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})");
        case Request::Time:
            break;
        }
        return text("GET", "/VIID/System/Time", "");
    }
    static std::string text(const std::string& method, const std::string& path, const std::string& body,
                            const std::string& more = "Connection: close\r\n")
    {
        return method + " " + path + " HTTP/1.1\r\nHost: 127.0.0.1:8080\r\nUser-Identify: " + device + "\r\n" +
               "Content-Length: " + std::to_string(body.size()) + "\r\n" + more + "\r\n" + body;
    }
    std::string exchange(const std::string& bytes)
    {
        raw::Client client(server().port());
        client.send(bytes);
        return client.receive();
    }
    std::string exchange(Request kind)
    {
        return exchange(request(kind));
    }
    void lay(const std::string& name)
    {
        server().addFault(preset(name));
    }
    void registerFirst()
    {
        server().registerDevice(device);
    }

    /* The "WWW-Authenticate" lines of the answer to a request without credentials, nonces and such as N. */
    std::vector<std::string> challenges(const std::string& name)
    {
        lay(name);
        const std::string answer = exchange(Request::Register);
        EXPECT_THAT(answer, StartsWith("HTTP/1.1 401 Unauthorized\r\n"));
        std::vector<std::string> found;
        for (std::size_t at = answer.find("WWW-Authenticate: "); at != std::string::npos;
             at = answer.find("WWW-Authenticate: ", at + 1))
        {
            const std::string line = answer.substr(at, answer.find("\r\n", at) - at);
            found.push_back(masked(line));
        }
        return found;
    }
    /* A client that does what the challenge says gets in, again and again. */
    void expectRegistration()
    {
        EXPECT_EQ(registerWith("admin:viewlib").status, 200);
        EXPECT_EQ(registerWith("admin:viewlib").status, 200);
        EXPECT_EQ(registerWith("admin:wrong").status, 401);
    }
};

TEST_F(PresetTest, EveryPresetIsTried)
{
    std::set<std::string> tried = others;
    for (const Case& each : cases())
    {
        EXPECT_TRUE(tried.insert(each.preset).second) << each.preset;
    }
    std::set<std::string> all;
    for (const viewlib::Preset& each : viewlib::presets())
    {
        EXPECT_TRUE(all.insert(each.name).second) << each.name;
        EXPECT_FALSE(each.title.empty()) << each.name;
        EXPECT_FALSE(each.titleZh.empty()) << each.name;
        EXPECT_EQ(each.rule.preset, each.name);
    }
    EXPECT_EQ(tried, all);
}

TEST_F(PresetTest, AnswersAreAsTheyAreMet)
{
    for (const Case& each : cases())
    {
        SCOPED_TRACE(each.preset);
        FaultRule rule = preset(each.preset);
        if (each.request == Request::Register)
        {
            rule.answer.afterAuth = false; /* the refusal alone */
        }
        const std::uint64_t number = server().addFault(rule);
        const std::string answer = exchange(each.request);
        const std::size_t end = answer.find("\r\n\r\n");
        ASSERT_NE(end, std::string::npos);
        const std::string head = answer.substr(0, end + 2);
        EXPECT_THAT(head, StartsWith(std::string(each.statusLine) + "\r\n"));
        if (each.header[0] == '!')
        {
            EXPECT_THAT(head, Not(HasSubstr(std::string("\r\n") + (each.header + 1))));
        }
        else
        {
            EXPECT_THAT(head, HasSubstr(std::string("\r\n") + each.header + "\r\n"));
        }
        EXPECT_EQ(answer.substr(end + 4), each.body);
        EXPECT_EQ(server().exchanges().back().fault, number);
        server().clearFaults();
    }
}

TEST_F(PresetTest, RefusalsOfCredentialsWaitForThem)
{
    for (const char* name : {"refuse-401-bare", "refuse-403", "refuse-400-empty"})
    {
        lay(name);
        EXPECT_THAT(exchange(Request::Register), HasSubstr("\r\nWWW-Authenticate: Digest realm=\"viewlib\"")) << name;
        EXPECT_NE(registerWith("admin:viewlib").status, 200) << name;
        EXPECT_EQ(registerWith("admin:viewlib").status, 200) << name;
    }
}

TEST_F(PresetTest, ChallengeWithoutAlgorithmWithCookieAndNoBody)
{
    EXPECT_THAT(challenges("challenge-no-algorithm"),
                ElementsAre("WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", nonce=N, opaque=N"));
    const std::string answer = exchange(Request::Register);
    EXPECT_THAT(answer, HasSubstr("\r\nSet-Cookie: JSESSIONID=0A1B2C3D4E5F; Path=/; HttpOnly\r\n"));
    EXPECT_THAT(answer, HasSubstr("\r\nContent-Length: 0\r\n"));
    EXPECT_THAT(answer, testing::EndsWith("\r\n\r\n"));
    expectRegistration();
    EXPECT_THAT(server().exchangesOf("/VIID/System/Register").at(3).header("Authorization"),
                Not(HasSubstr("algorithm")));
}

TEST_F(PresetTest, ChallengeWithoutOpaque)
{
    EXPECT_THAT(challenges("challenge-no-opaque"),
                ElementsAre("WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", algorithm=MD5, nonce=N"));
    expectRegistration();
}

TEST_F(PresetTest, ChallengeWithQuotedAlgorithm)
{
    EXPECT_THAT(
        challenges("challenge-quoted-algorithm"),
        ElementsAre("WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", algorithm=\"MD5\", nonce=N, opaque=N"));
    expectRegistration();
}

TEST_F(PresetTest, ChallengeWithAnExtraCnonce)
{
    EXPECT_THAT(
        challenges("challenge-cnonce"),
        ElementsAre(
            "WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", algorithm=MD5, nonce=N, cnonce=N, opaque=N"));
    expectRegistration();
}

TEST_F(PresetTest, ChallengesWithOtherRealmsAndOpaques)
{
    EXPECT_THAT(challenges("challenge-realm-id"),
                ElementsAre("WWW-Authenticate: Digest realm=\"34020000005030000001\", qop=\"auth\", algorithm=MD5, "
                            "nonce=N, opaque=N"));
    expectRegistration();
    server().clearFaults();
    EXPECT_THAT(
        challenges("challenge-realm-space"),
        ElementsAre("WWW-Authenticate: Digest realm=\"View Library\", qop=\"auth\", algorithm=MD5, nonce=N, opaque=N"));
    expectRegistration();
    server().clearFaults();
    EXPECT_THAT(challenges("challenge-opaque-plus"),
                ElementsAre("WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", algorithm=MD5, nonce=N, "
                            "opaque=\"FQhe/qaU925kfnzjCev0ciny7QMkPqMAFRtzCUYo5tdS+g==\""));
    expectRegistration();
}

TEST_F(PresetTest, TwoChallengesSha256First)
{
    EXPECT_THAT(
        challenges("challenge-sha256-md5"),
        ElementsAre("WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", algorithm=SHA-256, nonce=N, opaque=N",
                    "WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", algorithm=MD5, nonce=N, opaque=N"));
    expectRegistration();
}

TEST_F(PresetTest, AChallengeBindsThoseWhoAnswerItAlone)
{
    lay("challenge-realm-id");
    const client::Handle handle = client::newHandle();
    client::Call made = call("/VIID/System/Register", R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})");
    made.credentials = "admin:viewlib";
    EXPECT_EQ(client::perform(handle.get(), made).status, 200);
    server().clearFaults();
    EXPECT_EQ(client::perform(handle.get(), made).status, 200); /* goes on with the nonce of the other realm */
    const auto exchanges = server().exchangesOf("/VIID/System/Register");
    ASSERT_EQ(exchanges.size(), 3U);
    EXPECT_THAT(exchanges[2].header("Authorization"), HasSubstr("realm=\"34020000005030000001\""));
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    EXPECT_THAT(server().exchanges().back().header("Authorization"), HasSubstr("realm=\"viewlib\""));
}

TEST_F(PresetTest, AStaleNonceCostsOneMoreRound)
{
    lay("stale-nonce");
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    const auto exchanges = server().exchanges();
    ASSERT_EQ(exchanges.size(), 3U); /* challenge, stale, accepted */
    EXPECT_EQ(exchanges[0].fault, std::nullopt);
    EXPECT_EQ(exchanges[1].fault, 1);
    EXPECT_EQ(exchanges[1].status, 401U);
    EXPECT_THAT(exchanges[1].answerHeader("WWW-Authenticate"), testing::EndsWith(", stale=true"));
    EXPECT_EQ(exchanges[2].status, 200U);
}

TEST_F(PresetTest, WrongCredentialsAreNoStaleOnes)
{
    lay("stale-nonce");
    EXPECT_EQ(registerWith("admin:wrong").status, 401);
    EXPECT_EQ(server().exchanges().size(), 2U);
    EXPECT_THAT(server().exchanges().back().answerHeader("WWW-Authenticate"), Not(HasSubstr("stale")));
    EXPECT_EQ(server().faults().at(0).left, 1U);
}

TEST_F(PresetTest, ANextNonceIsOneToGoOnWith)
{
    lay("next-nonce");
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    const std::string told = server().exchanges().back().answerHeader("Authentication-Info");
    EXPECT_EQ(told.size(), std::string("nextnonce=\"\"").size() + 32);
    EXPECT_EQ(masked(told), "nextnonce=N");
    EXPECT_EQ(server().exchanges().at(0).answerHeader("Authentication-Info"), "");
}

TEST_F(ServerTest, AnExpiredSessionIsRefusedUntilTheDeviceRegisters)
{
    start();
    server().registerDevice(device);
    server().addFault(preset("expired-session"));
    const client::Result result = keepAlive();
    EXPECT_EQ(result.status, 401);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusString"),
              R"("the registration of device \"34020000001190000001\" has expired")");
    EXPECT_EQ(keepAlive().status, 401);
    EXPECT_FALSE(server().registered(device));
    EXPECT_EQ(server().registrations().size(), 1U); /* its state is kept */
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    EXPECT_EQ(keepAlive().status, 200);
}

TEST_F(ServerTest, AFixedLifetimeIsNotExtendedByKeepalives)
{
    std::atomic<int> now{1000000};
    config.clock = [&now] { return std::chrono::system_clock::time_point(std::chrono::seconds(now.load())); };
    start();
    server().registerDevice(device);
    server().addFault(preset("fixed-lifetime"));
    now += 200;
    EXPECT_EQ(keepAlive().status, 200);
    now += 70;
    EXPECT_EQ(keepAlive().status, 200);
    now += 1;
    EXPECT_EQ(keepAlive().status, 401);
}

TEST_F(ServerTest, CredentialsCanBeAskedForAnywhere)
{
    start();
    server().registerDevice(device);
    server().addFault(preset("challenge-anywhere"));
    client::Call made = call("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f"}]}})");
    EXPECT_EQ(client::perform(made).status, 401);
    EXPECT_THAT(server().exchanges().back().answerHeader("WWW-Authenticate"), StartsWith("Digest realm=\"viewlib\""));
    made.credentials = "admin:viewlib";
    EXPECT_EQ(client::perform(made).status, 200);
    EXPECT_EQ(server().stored().posts, 1U);
}

TEST_F(PresetTest, RedirectsLeadToTheSameServer)
{
    for (const auto& [name, line] : {std::pair("redirect", "HTTP/1.1 302 Found\r\n"),
                                     std::pair("redirect-307", "HTTP/1.1 307 Temporary Redirect\r\n")})
    {
        lay(name);
        const std::string answer = exchange(Request::Register);
        EXPECT_THAT(answer, StartsWith(line));
        EXPECT_THAT(answer, HasSubstr("\r\nLocation: http://127.0.0.1:8080/VIID/System/Register\r\n"));
        EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    }
}

TEST_F(PresetTest, Chunks)
{
    lay("chunked");
    const std::string answer = exchange(Request::Face);
    EXPECT_THAT(answer, HasSubstr("\r\nTransfer-Encoding: chunked\r\n"));
    EXPECT_THAT(answer, testing::EndsWith("\r\n0\r\n\r\n"));
    EXPECT_THAT(answer, HasSubstr(usualStatus));
}

TEST_F(PresetTest, GzipIsUnpackedByItsReader)
{
    lay("gzip");
    const std::string answer = exchange(Request::Face);
    EXPECT_THAT(answer, HasSubstr("\r\nContent-Encoding: gzip\r\n"));
    EXPECT_EQ(answer.substr(answer.find("\r\n\r\n") + 4, 3), "\x1F\x8B\x08");
    client::Call made = call("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f"}]}})");
    made.unpack = true;
    client::Result result = client::perform(made);
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.body, R"({"ResponseStatusListObject":{"ResponseStatusObject":[)" + usualStatus + "]}}");

    viewlib::Answer large(200, std::string(200000, 'x')); /* more than one block */
    large.gzip = true;
    server().script("/VIID/Faces", large);
    result = client::perform(made);
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.body, std::string(200000, 'x'));
    viewlib::Answer none(200, "");
    none.gzip = true;
    server().script("/VIID/Faces", none);
    result = client::perform(made);
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.body, "");
}

TEST_F(PresetTest, GarbageInPlaceOfAnAnswerAndAfterIt)
{
    lay("garbage");
    EXPECT_EQ(exchange(Request::Face), "\x01\x02garbage, not HTTP\r\n\r\n");
    lay("trailing-garbage");
    EXPECT_THAT(exchange(Request::Face), testing::EndsWith(usualStatus + "]}}garbage\r\n"));
    EXPECT_EQ(exchange(Request::Face).find("garbage"), std::string::npos);
}

TEST_F(PresetTest, AContinueThatNobodyAskedFor)
{
    lay("extra-continue");
    EXPECT_THAT(exchange(Request::Face), StartsWith("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n"));
    EXPECT_EQ(postFace().status, 200);
}

TEST_F(PresetTest, AnAnswerBeforeTheBody)
{
    lay("early-answer");
    raw::Client client(server().port());
    client.send("POST /VIID/Faces HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 100000\r\n\r\n"); /* and no body */
    EXPECT_THAT(client.receive(), StartsWith("HTTP/1.1 413 "));
    EXPECT_NE(client.ended(), raw::Client::End::Quiet);
    ASSERT_EQ(server().exchanges().size(), 1U);
    EXPECT_EQ(server().exchanges()[0].status, 413U);
    EXPECT_FALSE(server().exchanges()[0].complete);
}

TEST_F(PresetTest, DelaysAreFiveSecondsUnlessTold)
{
    EXPECT_EQ(preset("delay").answer.delay, 5000ms);
    EXPECT_EQ(preset("delay-body").answer.delayBeforeBody, 5000ms);
    FaultRule late = preset("delay");
    late.answer.delay = 300ms;
    server().addFault(late);
    EXPECT_GE(postFace().seconds, 0.3);
    FaultRule lateBody = preset("delay-body");
    lateBody.answer.delayBeforeBody = 300ms;
    server().addFault(lateBody);
    raw::Client client(server().port());
    const auto begin = std::chrono::steady_clock::now();
    client.send(request(Request::Face));
    EXPECT_THAT(client.receive(), testing::EndsWith(usualStatus + "]}}"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 300ms);
}

TEST_F(PresetTest, Throttles)
{
    EXPECT_EQ(preset("throttled-answer").answer.bytesPerSecond, 100U);
    FaultRule slow = preset("throttled-answer");
    slow.answer.bytesPerSecond = 400;
    server().addFault(slow);
    EXPECT_GE(postFace().seconds, 0.3); /* some 160 bytes */
    lay("throttled-reading");
    const client::Result result =
        post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":")" + std::string(20000, 'f') + R"("}]}})");
    EXPECT_EQ(result.status, 200);
    EXPECT_GE(result.seconds, 0.3);
}

TEST_F(PresetTest, StallsAndCuts)
{
    lay("stalled-reading");
    {
        raw::Client client(server().port());
        client.send(request(Request::Face));
        EXPECT_EQ(client.receive(200ms), "");
        EXPECT_EQ(client.ended(), raw::Client::End::Quiet);
    }
    for (const char* name : {"cut-request", "cut", "reset"})
    {
        lay(name);
        raw::Client client(server().port());
        client.send(request(Request::Face));
        EXPECT_EQ(client.receive(), "") << name;
        EXPECT_NE(client.ended(), raw::Client::End::Quiet) << name;
        EXPECT_TRUE(client.ended() == raw::Client::End::Reset || std::string(name) != "reset");
    }
    lay("cut-mid-body");
    const std::string answer = exchange(Request::Face);
    const std::string usual = R"({"ResponseStatusListObject":{"ResponseStatusObject":[)" + usualStatus + "]}}";
    EXPECT_THAT(answer, HasSubstr("\r\nContent-Length: " + std::to_string(usual.size()) + "\r\n"));
    EXPECT_THAT(answer, testing::EndsWith("\r\n\r\n" + usual.substr(0, usual.size() / 2)));
}

} // namespace
