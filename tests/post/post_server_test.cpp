/* SPDX-License-Identifier: Apache-2.0 */
/* The posts of images and objects against a view library in this process, and against one that answers anything. */
#include <cjson/cJSON.h>

#include <viewlib/server.h>

#include "core/http.h"
#include "tests/post/image_operations.h"
#include "tests/support/raw_server.h"
#include "tests/support/stack_test.h"

using image_operations::Operation;
using log_lines::info;
using log_lines::IsError;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using viewlib::Answer;

namespace
{

constexpr const char* kDevice = "34020000001190000001";

std::string listOf(const std::string& statuses)
{
    return R"({"ResponseStatusListObject":{"ResponseStatusObject":[)" + statuses + "]}}";
}

/* Everything that the process writes to its standard output while it lives. */
class Output
{
  public:
    Output()
    {
        testing::internal::CaptureStdout();
    }
    ~Output()
    {
        take();
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    std::string take()
    {
        if (!m_taken)
        {
            m_taken = true;
            m_text = testing::internal::GetCapturedStdout();
        }
        return m_text;
    }

  private:
    bool m_taken = false;
    std::string m_text;
};

class ServerTest : public StackTest
{
  protected:
    static void SetUpTestSuite()
    {
        viewlib::Config config;
        config.registrationLifetime = std::chrono::milliseconds(0);
        s_server = new viewlib::Server(config);
        s_server->start();
        s_server->registerDevice(kDevice);
    }

    static void TearDownTestSuite()
    {
        delete s_server;
        s_server = nullptr;
    }

    void SetUp() override
    {
        StackTest::SetUp();
        s_server->clearScripts();
        s_server->clearExchanges();
        g_atPubSecStackGlobalCommon[0] = stack::configuration("127.0.0.1", s_server->port());
        g_bPubSecRegStatus[0] = 1;
    }

    static viewlib::Server& server()
    {
        return *s_server;
    }

  private:
    static viewlib::Server* s_server;
};

viewlib::Server* ServerTest::s_server = nullptr;

class PostTest : public ServerTest, public testing::WithParamInterface<Operation>
{
  protected:
    static u32 post()
    {
        return GetParam().post(0);
    }

    static std::string document()
    {
        char* text = GetParam().document();
        const std::string copy = text;
        cJSON_free(text);
        return copy;
    }

    /* What the operation makes of an answer. */
    static u32 answered(const Answer& answer)
    {
        const Output output;
        server().script(GetParam().path, answer);
        const u32 code = post();
        EXPECT_EQ(server().scriptsLeft(), 0u);
        return code;
    }
};

INSTANTIATE_TEST_SUITE_P(Posts, PostTest, testing::ValuesIn(image_operations::all()),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(PostTest, ArrivesAsItWasBuilt)
{
    const Output output;
    EXPECT_EQ(post(), 50u);
    const auto exchanges = server().exchanges();
    ASSERT_EQ(exchanges.size(), 1u);
    const viewlib::Exchange& exchange = exchanges[0];
    EXPECT_EQ(exchange.method, "POST");
    EXPECT_EQ(exchange.target, GetParam().path);
    EXPECT_EQ(exchange.body, document());
    EXPECT_TRUE(exchange.complete);
    std::vector<std::string> headers;
    for (const viewlib::Header& header : exchange.headers)
    {
        headers.push_back(header.name + ": " + header.value);
    }
    EXPECT_THAT(headers, ElementsAre("Host: 127.0.0.1:" + std::to_string(server().port()), "localhost: 8080",
                                     "Accept: application/json,application/VIID+JSON",
                                     "Content-Type: application/VIID+JSON;charset=UTF-8", "Connection: Keep-alive",
                                     std::string("User-Identify: ") + kDevice,
                                     "Content-Length: " + std::to_string(document().size())));
}

TEST_P(PostTest, EachPostHasAConnectionOfItsOwn)
{
    const Output output;
    EXPECT_EQ(post(), 50u);
    EXPECT_EQ(post(), 50u);
    const auto exchanges = server().exchanges();
    ASSERT_EQ(exchanges.size(), 2u);
    EXPECT_NE(exchanges[0].connection, exchanges[1].connection);
}

TEST_P(PostTest, IdentifiesItselfAsThePlatformsDevice)
{
    const Output output;
    server().always(GetParam().path, Answer(200, ""));
    g_atPubSecStackGlobalCommon[1] = stack::configuration("127.0.0.1", server().port());
    stack::put(g_atPubSecStackGlobalCommon[1].achDeviceID, "440000000011900000029999"); /* not terminated */
    g_bPubSecRegStatus[1] = 1;
    EXPECT_EQ(GetParam().post(1), 50u);
    EXPECT_EQ(server().exchanges().at(0).device(), "44000000001190000002");
}

TEST_P(PostTest, EachStatusHasItsCode)
{
    const std::vector<std::pair<unsigned, u32>> codes = {
        {200, 50}, {201, 50}, {299, 50}, {300, 68}, {301, 68}, {302, 68}, {399, 68}, {400, GetParam().code400},
        {401, 70}, {402, 51}, {403, 51}, {404, 71}, {405, 51}, {407, 51}, {408, 72}, {409, 51},
        {499, 51}, {500, 51}, {501, 73}, {503, 73}, {599, 73},
    };
    for (const auto& [status, code] : codes)
    {
        EXPECT_EQ(answered(Answer(status, listOf(R"({"StatusCode":1,"StatusString":"x"})"))), code) << status;
    }
    EXPECT_EQ(server().exchangesOf(GetParam().path).size(), codes.size()); /* nothing was sent twice */
}

TEST_P(PostTest, ARedirectIsNotFollowed)
{
    EXPECT_EQ(answered(Answer::redirect(302, server().url("/VIID/Elsewhere"))), 68u);
    EXPECT_THAT(server().exchangesOf("/VIID/Elsewhere"), IsEmpty());
}

TEST_P(PostTest, ADuplicateHasTheCodeOfARefusal)
{
    EXPECT_EQ(answered(Answer(400, listOf(R"({"StatusCode":8,"StatusString":"document already exists"})"))), 69u);
    EXPECT_EQ(answered(Answer(400, "<p>document already exists</p>")), 69u);
    EXPECT_EQ(answered(Answer(400, listOf(R"({"StatusCode":8,"StatusString":"refused"})"))), GetParam().code400);
    EXPECT_EQ(answered(Answer(409, "document already exists")), 51u);
    EXPECT_EQ(answered(Answer(200, "document already exists")), 50u);
}

TEST_P(PostTest, ARefusalThatIsNoJsonKeepsItsCode)
{
    for (const char* body : {"", "no", "<html></html>", "{", "null", "[]", "{\"ResponseStatusListObject\":"})
    {
        EXPECT_EQ(answered(Answer(400, body)), GetParam().code400) << body;
        EXPECT_EQ(answered(Answer(200, body)), 50u) << body;
    }
}

TEST_P(PostTest, AnAnswerThatBreaksOffIsNoAnswer)
{
    for (const viewlib::Cut cut : {viewlib::Cut::BeforeStatus, viewlib::Cut::MidBody, viewlib::Cut::Reset})
    {
        EXPECT_EQ(answered(Answer::broken(cut)), 76u) << static_cast<int>(cut);
    }
}

TEST_P(PostTest, TheFramingOfTheAnswerDoesNotMatter)
{
    for (const viewlib::Framing framing : {viewlib::Framing::Chunked, viewlib::Framing::UntilClose})
    {
        Answer answer(400, "document already exists");
        answer.framing = framing;
        EXPECT_EQ(answered(answer), 69u) << static_cast<int>(framing);
    }
}

TEST_P(PostTest, AServerThatIsNotThereIs76)
{
    logAt(1);
    u16 closedPort = 0;
    {
        const RawServer gone;
        closedPort = gone.port();
    }
    g_atPubSecStackGlobalCommon[0].dwServerPort = closedPort;
    EXPECT_EQ(post(), 76u);
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError(GetParam().name, "curl_easy_perform() failed: Couldn't connect to server")));
}

TEST_P(PostTest, AnAddressThatIsNoneIs76)
{
    for (const char* address : {"", "no such host", "256.256.256.256"})
    {
        stack::put(g_atPubSecStackGlobalCommon[0].achServerIP, address);
        EXPECT_EQ(post(), 76u) << address;
    }
    g_atPubSecStackGlobalCommon[0] = stack::configuration("127.0.0.1", 4000000000u);
    EXPECT_EQ(post(), 76u);
    EXPECT_THAT(server().exchanges(), IsEmpty());
}

TEST_P(PostTest, AnAnswerIsReadOrLeftToTheStandardOutput)
{
    const std::string body = listOf(R"({"StatusCode":0,"StatusString":"OK"})");
    logAt(3);
    server().script(GetParam().path, Answer(200, body));
    Output output;
    EXPECT_EQ(post(), 50u);
    EXPECT_EQ(output.take(), GetParam().readsAnswer ? "" : body);
    if (GetParam().readsAnswer)
    {
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(info("_PubSecWriteCB", "WriteMemoryCallback size:1 nmemb:" +
                                                           std::to_string(body.size()) + " contents:" + body),
                                info("_PubSecParseSerData", "cJSON_GetArraySize: size=1"),
                                info("_PubSecParseSerData", "StatusString:OK")));
    }
    else
    {
        EXPECT_THAT(fake_platform::logLines(), IsEmpty());
    }
}

TEST_P(PostTest, WhatIsSaidOfARefusalGoesByTheLevel)
{
    if (!GetParam().readsAnswer)
    {
        GTEST_SKIP() << "does not read the answer";
    }
    const std::string body = listOf(R"({"StatusString":"refused"})");
    const std::string shown = info(GetParam().name, " Server Err Resp:refused");
    const std::vector<std::string> all = {
        info("_PubSecWriteCB", "WriteMemoryCallback size:1 nmemb:" + std::to_string(body.size()) + " contents:" + body),
        info("_PubSecParseSerData", "cJSON_GetArraySize: size=1"), info("_PubSecParseSerData", "StatusString:refused"),
        shown};
    for (const s32 level : {0, 1, 2, 3, 4})
    {
        fake_platform::reset();
        logAt(level);
        EXPECT_EQ(answered(Answer(400, body)), GetParam().code400);
        EXPECT_THAT(fake_platform::logLines(), ElementsAreArray(level >= 2 ? all : std::vector<std::string>()))
            << level;
        EXPECT_EQ(answered(Answer(403, body)), 51u);
        EXPECT_EQ(fake_platform::logLinesWith("Server Err").size(), level >= 2 ? 1u : 0u) << level;
    }
    EXPECT_THAT(shown, testing::HasSubstr(":  Server Err Resp:"));
}

TEST_P(PostTest, AnAnswerThatCannotBeReadIsComplainedOf)
{
    if (!GetParam().readsAnswer)
    {
        GTEST_SKIP() << "does not read the answer";
    }
    logAt(1);
    EXPECT_EQ(answered(Answer(400, "no json")), GetParam().code400);
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError("_PubSecParseSerData", "Error before: [no json]"),
                                                       IsError(GetParam().name, "_PubSecParseSerData Fault! ")));
    fake_platform::reset();
    EXPECT_EQ(answered(Answer(200, "{}")), 50u);
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError(GetParam().name, "_PubSecParseSerData Fault! ")));
    fake_platform::reset();
    EXPECT_EQ(answered(Answer(200, "")), 50u);
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError("_PubSecParseSerData", "Error before: []"),
                                                       IsError(GetParam().name, "_PubSecParseSerData Fault! ")));
}

/* ------------------------------------------------------------------------------------------------------- status text
 */

class StatusTextTest : public ServerTest
{
  protected:
    /* The code, with the status text in `text`, which begins as '#' and has more of them behind it. */
    u32 post(const Answer& answer)
    {
        server().script("/VIID/Images", answer);
        std::memset(text, '#', sizeof(text));
        const u32 code = PubSecPostImage(0, &image_operations::picture(), text);
        EXPECT_EQ(std::string(text + 260, 4), "####");
        return code;
    }

    std::string whole() const
    {
        return std::string(text, 260);
    }

    static std::string padded(const std::string& content)
    {
        return content + std::string(260 - content.size(), '\0');
    }

    char text[264];
};

TEST_F(StatusTextTest, IsTheLastStatusStringAndZeros)
{
    EXPECT_EQ(post(Answer(200, listOf(R"({"StatusString":"OK"})"))), 50u);
    EXPECT_EQ(whole(), padded("OK"));
    EXPECT_EQ(post(Answer(400, listOf(R"({"StatusString":"the first of two refusals"},{"StatusString":"second"})"))),
              61u);
    EXPECT_EQ(whole(), padded("second"));
    EXPECT_EQ(post(Answer(503, listOf(R"({"StatusString":"busy"},{"StatusCode":2})"))), 73u);
    EXPECT_EQ(whole(), padded("busy"));
}

TEST_F(StatusTextTest, IsAllZerosWithoutAStatusString)
{
    const std::string zeros(260, '\0');
    for (const char* body : {"", "no json", "{}", R"({"ResponseStatusObject":{"StatusString":"OK"}})",
                             R"({"ResponseStatusListObject":{"ResponseStatusObject":[]}})",
                             R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusCode":0}]}})"})
    {
        EXPECT_EQ(post(Answer(200, body)), 50u) << body;
        EXPECT_EQ(whole(), zeros) << body;
    }
}

TEST_F(StatusTextTest, HoldsUpTo256Characters)
{
    const auto answerOf = [](size_t length) {
        return Answer(200, listOf(R"({"StatusString":")" + std::string(length, 's') + "\"}"));
    };
    EXPECT_EQ(post(answerOf(256)), 50u);
    EXPECT_EQ(whole(), padded(std::string(256, 's')));
    EXPECT_EQ(post(answerOf(300)), 50u);
    EXPECT_EQ(whole(), padded(std::string(256, 's')));
    EXPECT_EQ(post(answerOf(100000)), 50u);
    EXPECT_EQ(whole(), padded(std::string(256, 's')));
}

TEST_F(StatusTextTest, IsNotWrittenWithoutAnAnswer)
{
    const std::string untouched(260, '#');
    EXPECT_EQ(post(Answer::broken(viewlib::Cut::BeforeStatus)), 76u);
    EXPECT_EQ(whole(), untouched);
    g_bPubSecRegStatus[0] = 0;
    EXPECT_EQ(post(Answer(200)), 54u);
    EXPECT_EQ(whole(), untouched);
    g_bPubSecRegStatus[0] = 1;
    EXPECT_EQ(PubSecPostImage(0, nullptr, text), 51u);
    EXPECT_EQ(whole(), untouched);
    server().clearScripts();
}

TEST_F(StatusTextTest, IsAllZerosForAnAnswerBeyondTheLimit)
{
    EXPECT_EQ(
        post(Answer(400, "document already exists" + listOf(R"({"StatusString":"OK"})") + std::string(17u << 20, ' '))),
        61u);
    EXPECT_EQ(whole(), std::string(260, '\0'));
}

TEST_F(StatusTextTest, MayBeLeftOut)
{
    server().script("/VIID/Images", Answer(200, listOf(R"({"StatusString":"OK"})")));
    EXPECT_EQ(PubSecPostImage(0, &image_operations::picture(), nullptr), 50u);
    EXPECT_EQ(server().exchanges().size(), 1u);
}

/* ------------------------------------------------------------------------------------------- an answer left as it is
 */

TEST_F(ServerTest, TheStandardOutputGetsAnswersOfEveryStatusThatAreNotRead)
{
    for (const unsigned status : {200u, 400u, 401u, 500u})
    {
        server().script("/VIID/Images", Answer(status, "an answer\n"));
        Output output;
        PubSecPostImageEX(0, &image_operations::picture(), 0);
        EXPECT_EQ(output.take(), "an answer\n") << status;
    }
}

TEST_F(ServerTest, TheLastArgumentOfAnExtendedPostIsIgnored)
{
    const Output output;
    for (const u32 ignored : {0u, 1u, 2u, 0xFFFFFFFFu})
    {
        EXPECT_EQ(PubSecPostImageEX(0, &image_operations::picture(), ignored), 50u);
    }
    const auto exchanges = server().exchanges();
    ASSERT_EQ(exchanges.size(), 4u);
    for (const viewlib::Exchange& exchange : exchanges)
    {
        EXPECT_EQ(exchange.body, exchanges[0].body);
    }
}

TEST_F(ServerTest, ManyObjectsAreOneRequest)
{
    std::vector<TPubSecFaceObjInfo> faces(300);
    EXPECT_EQ(PubSecPostImageFace(0, faces.data(), 300), 50u);
    const auto exchanges = server().exchanges();
    ASSERT_EQ(exchanges.size(), 1u);
    size_t count = 0;
    for (size_t at = 0; (at = exchanges[0].body.find("\"FaceID\"", at)) != std::string::npos; ++at)
    {
        ++count;
    }
    EXPECT_EQ(count, 300u);
}

TEST_F(ServerTest, AnUnregisteredPlatformSendsNothing)
{
    g_bPubSecRegStatus[0] = 0;
    for (const Operation& operation : image_operations::all())
    {
        EXPECT_EQ(operation.post(0), 54u) << operation.name;
    }
    EXPECT_THAT(server().exchanges(), IsEmpty());
}

/* ----------------------------------------------------------------------------------------------------- byte for byte
 */

class RawTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        g_atPubSecStackGlobalCommon[0] = stack::configuration("127.0.0.1", server.port());
        g_bPubSecRegStatus[0] = 1;
    }

    RawServer server;
};

TEST_F(RawTest, TheRequestIsExactlyThis)
{
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 50u);
    EXPECT_THAT(server.requests(), ElementsAre("POST /VIID/Things HTTP/1.1\r\n"
                                               "Host: 127.0.0.1:" +
                                               std::to_string(server.port()) +
                                               "\r\n"
                                               "localhost:8080\r\n"
                                               "Accept:application/json,application/VIID+JSON\r\n"
                                               "Content-Type:application/VIID+JSON;charset=UTF-8\r\n"
                                               "Connection:Keep-alive\r\n"
                                               "User-Identify:34020000001190000001\r\n"
                                               "Content-Length: 38\r\n"
                                               "\r\n"
                                               R"({"ThingListObject":{"ThingObject":[]}})"));
}

TEST_F(RawTest, AnEmptyIdentityIsNotSent)
{
    stack::put(g_atPubSecStackGlobalCommon[0].achDeviceID, "");
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 50u);
    ASSERT_EQ(server.requests().size(), 1u);
    EXPECT_THAT(server.requests()[0], testing::Not(testing::HasSubstr("User-Identify")));
}

TEST_F(RawTest, AnInterimAnswerAloneIsNoAnswer)
{
    server.answer("HTTP/1.1 199 Wait\r\n\r\n");
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 76u);
}

TEST_F(RawTest, AnInterimAnswerIsNotTheAnswer)
{
    server.answer("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 201 Created\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 50u);
}

TEST_F(RawTest, AStatusAbove599IsAFailureOfTheServer)
{
    server.answer("HTTP/1.1 999 What\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 73u);
}

TEST_F(RawTest, WhatIsNotHttpIsNoAnswer)
{
    server.answer("SSH-2.0-OpenSSH_9.2\r\n");
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 76u);
    server.answer("");
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 76u);
}

TEST_F(RawTest, NulBytesInAnAnswerEndItsText)
{
    server.answer(std::string("HTTP/1.1 400 Bad Request\r\nContent-Length: 25\r\n\r\n") + '\0' +
                  "document already exists" + '\0');
    EXPECT_EQ(PubSecPostImageThing(0, nullptr, 0), 61u);
}

} // namespace
