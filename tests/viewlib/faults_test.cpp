/* SPDX-License-Identifier: Apache-2.0 */
/* The log of exchanges and every way in which an answer can be laid down or spoilt. */
#include "server_fixture.h"

#include <chrono>
#include <future>
#include <thread>

using namespace std::chrono_literals;
using client::Result;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;
using viewlib::Answer;
using viewlib::Cut;
using viewlib::Framing;

namespace
{

class FaultTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        config.strict.registration = false;
        start();
    }
};

std::vector<std::string> namesOf(const viewlib::Exchange& exchange)
{
    std::vector<std::string> names;
    for (const viewlib::Header& header : exchange.headers)
    {
        names.push_back(header.name);
    }
    return names;
}

TEST_F(FaultTest, TheLogKeepsRequestsAsTheyCame)
{
    client::Call made = call("/VIID/Faces?a=%31&b", R"({"FaceListObject":{}})");
    made.headers = {"localhost:8080", "Accept:application/json,application/VIID+JSON", "X-Twice: 1", "x-twice: 2"};
    EXPECT_EQ(client::perform(made).status, 200);
    const auto exchanges = server().exchanges();
    ASSERT_EQ(exchanges.size(), 1U);
    const viewlib::Exchange& exchange = exchanges[0];
    EXPECT_EQ(exchange.number, 1U);
    EXPECT_EQ(exchange.method, "POST");
    EXPECT_EQ(exchange.target, "/VIID/Faces?a=%31&b");
    EXPECT_EQ(exchange.path, "/VIID/Faces");
    EXPECT_EQ(exchange.query, "a=%31&b");
    EXPECT_THAT(namesOf(exchange),
                ElementsAre("Host", "localhost", "Accept", "X-Twice", "x-twice", "Content-Length", "Content-Type"));
    EXPECT_EQ(exchange.header("LOCALHOST"), "8080");
    EXPECT_EQ(exchange.headers.at(4).value, "2");
    EXPECT_FALSE(exchange.hasHeader("Expect"));
    EXPECT_EQ(exchange.body, R"({"FaceListObject":{}})");
    EXPECT_TRUE(exchange.complete);
    EXPECT_EQ(exchange.status, 200U);
    EXPECT_EQ(at(exchange.answer, "ResponseStatusListObject/ResponseStatusObject/0/StatusCode"), "0");
    EXPECT_THAT(exchange.peer, StartsWith("127.0.0.1:"));
    EXPECT_LT(std::chrono::steady_clock::now() - exchange.arrived, 10s);
}

TEST_F(FaultTest, TheLogTellsConnectionsApart)
{
    const client::Handle handle = client::newHandle();
    const client::Call made = call("/VIID/Faces", R"({"FaceListObject":{}})");
    client::perform(handle.get(), made);
    client::perform(handle.get(), made);
    client::perform(made);
    const auto exchanges = server().exchanges();
    ASSERT_EQ(exchanges.size(), 3U);
    EXPECT_EQ(exchanges[0].connection, exchanges[1].connection);
    EXPECT_NE(exchanges[1].connection, exchanges[2].connection);
}

TEST_F(FaultTest, TheLogIsSearchedByPathAndCleared)
{
    postFace();
    keepAlive();
    EXPECT_EQ(server().exchangesOf("/VIID/Faces").size(), 1U);
    EXPECT_EQ(server().exchangesOf("/VIID/System/*").size(), 1U);
    EXPECT_EQ(server().exchangesOf("/VIID/System").size(), 0U);
    EXPECT_EQ(server().exchangesOf("*").size(), 2U);
    server().clearExchanges();
    EXPECT_EQ(server().exchanges().size(), 0U);
}

TEST_F(FaultTest, WaitForEndsWithTheExchangeOrInTime)
{
    EXPECT_FALSE(server().waitFor("/VIID/Faces", 1, 20ms));
    auto late = std::async(std::launch::async, [this] {
        std::this_thread::sleep_for(50ms);
        return postFace().status;
    });
    EXPECT_TRUE(server().waitFor("/VIID/Faces", 1, 10s));
    EXPECT_FALSE(server().waitFor("/VIID/Faces", 2, 0ms));
    EXPECT_EQ(late.get(), 200);
}

TEST_F(FaultTest, ScriptedAnswersAreUsedUpInOrder)
{
    server().script("/VIID/Faces", Answer(503));
    server().script("/VIID/Faces", Answer(400, "document already exists"));
    EXPECT_EQ(server().scriptsLeft(), 2U);
    Result result = postFace();
    EXPECT_EQ(result.status, 503);
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/0/StatusCode"), "1");
    EXPECT_EQ(keepAlive().status, 200);
    result = postFace();
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(result.body, "document already exists");
    EXPECT_EQ(server().scriptsLeft(), 0U);
    EXPECT_EQ(postFace().status, 200);
    EXPECT_EQ(server().stored().posts, 1U);
}

TEST_F(FaultTest, AStandingAnswerHoldsUntilItIsCleared)
{
    server().always("*", Answer(500));
    server().always("/VIID/Faces", Answer(404));
    server().script("/VIID/Faces", Answer(408));
    EXPECT_EQ(postFace().status, 408);
    EXPECT_EQ(postFace().status, 404);
    EXPECT_EQ(postFace().status, 404);
    EXPECT_EQ(keepAlive().status, 500);
    EXPECT_EQ(post("/elsewhere", "").status, 500);
    server().clearScripts();
    EXPECT_EQ(postFace().status, 200);
}

TEST_F(FaultTest, AnAnswerCanTakeEffectAllTheSame)
{
    Answer answer(500);
    answer.takeEffect = true;
    server().script("/VIID/Faces", answer);
    EXPECT_EQ(postFace().status, 500);
    EXPECT_EQ(server().stored().posts, 1U);
}

TEST_F(FaultTest, HeadersBodyAndMediaTypeAreThoseOfTheScript)
{
    Answer answer(200, "<html>");
    answer.contentType = "text/plain";
    answer.with("Set-Cookie", "a=b").with("Connection", "close");
    server().script("/VIID/Faces", answer);
    const Result result = postFace();
    EXPECT_EQ(result.body, "<html>");
    EXPECT_THAT(result.headers, Contains("Content-Type: text/plain"));
    EXPECT_THAT(result.headers, Contains("Set-Cookie: a=b"));
    EXPECT_THAT(result.headers, Contains("Connection: close"));
    EXPECT_EQ(server().exchanges().at(0).answerHeader("set-cookie"), "a=b");
}

TEST_F(FaultTest, TheUsualAnswerCanBeGivenAnotherBody)
{
    Answer answer;
    answer.body = "";
    server().script("/VIID/Faces", answer);
    const Result result = postFace();
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(result.body, "");
    EXPECT_EQ(server().stored().posts, 1U);
}

TEST_F(FaultTest, Redirects)
{
    server().script("/VIID/System/Register", Answer::redirect(302, "http://127.0.0.1:9/VIID/System/Register"));
    const Result result = registerWith("admin:viewlib");
    EXPECT_EQ(result.status, 302);
    EXPECT_THAT(result.headers, Contains("Location: http://127.0.0.1:9/VIID/System/Register"));
    EXPECT_FALSE(server().registered(device));
}

TEST_F(FaultTest, AnAnswerOnRegisterComesBeforeTheDigestUnlessItWaits)
{
    server().script("/VIID/System/Register", Answer(403));
    EXPECT_EQ(registerWith("admin:viewlib").status, 403);
    EXPECT_EQ(server().exchanges().size(), 1U);

    Answer waiting(301);
    waiting.afterAuth = true;
    server().script("/VIID/System/Register", waiting);
    EXPECT_EQ(registerWith("admin:wrong").status, 401);
    EXPECT_EQ(server().scriptsLeft(), 1U);
    EXPECT_EQ(registerWith("admin:viewlib").status, 301);
    EXPECT_EQ(server().scriptsLeft(), 0U);
    EXPECT_FALSE(server().registered(device));
}

TEST_F(FaultTest, AnAnswerCanSkipTheDigest)
{
    Answer open;
    open.skipAuth = true;
    server().script("/VIID/System/Register", Answer(401));
    server().script("/VIID/System/Register", open);
    EXPECT_EQ(registerWith("").status, 401);
    EXPECT_EQ(registerWith("").status, 200);
    EXPECT_TRUE(server().registered(device));
}

TEST_F(FaultTest, ALateAnswerHoldsUpNobodyElse)
{
    server().script("/VIID/Faces", Answer::late(2s));
    auto late = std::async(std::launch::async, [this] { return postFace(); });
    ASSERT_TRUE(server().waitFor("/VIID/Faces", 1));
    EXPECT_EQ(keepAlive().status, 200);
    EXPECT_EQ(late.wait_for(0ms), std::future_status::timeout);
    const Result result = late.get();
    EXPECT_EQ(result.status, 200);
    EXPECT_GE(result.seconds, 2.0);
}

TEST_F(FaultTest, StopEndsALateAnswer)
{
    server().script("/VIID/Faces", Answer::late(60s));
    auto late = std::async(std::launch::async, [this] { return postFace(); });
    ASSERT_TRUE(server().waitFor("/VIID/Faces", 1));
    const auto before = std::chrono::steady_clock::now();
    server().stop();
    EXPECT_NE(late.get().code, CURLE_OK);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 5s);
}

TEST_F(FaultTest, ALateBodyComesAfterItsHeaders)
{
    Answer answer;
    answer.delayBeforeBody = 2s;
    server().script("/VIID/Faces", answer);
    client::Call made = call("/VIID/Faces", R"({"FaceListObject":{}})");
    made.timeoutMs = 1000;
    const Result result = client::perform(made);
    EXPECT_EQ(result.code, CURLE_OPERATION_TIMEDOUT);
    EXPECT_EQ(result.status, 200); /* the headers had come */
    EXPECT_EQ(result.body, "");
}

TEST_F(FaultTest, AThrottledBodyTakesItsTime)
{
    Answer answer(200, std::string(500, 'x'));
    answer.bytesPerSecond = 1000;
    server().script("/VIID/Faces", answer);
    const Result result = postFace();
    EXPECT_EQ(result.body, std::string(500, 'x'));
    EXPECT_GE(result.seconds, 0.45);
}

TEST_F(FaultTest, ALateReaderHoldsUpAnUpload)
{
    Answer answer;
    answer.delayBeforeReading = 2s;
    server().script("/VIID/Faces", answer);
    client::Call made = call("/VIID/Faces", std::string(std::size_t(16) << 20, ' '));
    made.timeoutMs = 500;
    EXPECT_EQ(client::perform(made).code, CURLE_OPERATION_TIMEDOUT);
    ASSERT_TRUE(server().waitFor("/VIID/Faces", 1));
    EXPECT_FALSE(server().exchanges().at(0).complete);
    EXPECT_EQ(server().exchanges().at(0).status, 0U);
}

TEST_F(FaultTest, ClosesWithoutAnAnswer)
{
    server().script("/VIID/Faces", Answer::broken(Cut::BeforeStatus));
    EXPECT_EQ(postFace().code, CURLE_GOT_NOTHING);
    EXPECT_EQ(server().exchanges().at(0).status, 0U);
    EXPECT_EQ(server().exchanges().at(0).cut, Cut::BeforeStatus);
    EXPECT_EQ(server().stored().posts, 1U); /* the request itself had been served */
}

TEST_F(FaultTest, ResetsTheConnection)
{
    server().script("/VIID/Faces", Answer::broken(Cut::Reset));
    EXPECT_EQ(postFace().code, CURLE_RECV_ERROR);
    EXPECT_EQ(server().exchanges().at(0).cut, Cut::Reset);
}

TEST_F(FaultTest, BreaksOffInTheBody)
{
    Answer answer(200, "0123456789");
    answer.cut = Cut::MidBody;
    server().script("/VIID/Faces", answer);
    Result result = postFace();
    EXPECT_EQ(result.code, CURLE_PARTIAL_FILE);
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(result.body, "01234");
    EXPECT_THAT(result.headers, Contains("Content-Length: 10"));

    answer.cutAfter = 0;
    server().script("/VIID/Faces", answer);
    result = postFace();
    EXPECT_EQ(result.code, CURLE_PARTIAL_FILE);
    EXPECT_EQ(result.body, "");

    answer.cutAfter = 9;
    answer.framing = Framing::Chunked;
    server().script("/VIID/Faces", answer);
    result = postFace();
    EXPECT_EQ(result.code, CURLE_PARTIAL_FILE);
    EXPECT_EQ(result.body, "012345678");
}

TEST_F(FaultTest, SendsChunks)
{
    Answer answer;
    answer.framing = Framing::Chunked;
    server().script("/VIID/Faces", answer);
    const Result result = postFace();
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/0/Id"), R"("face-1")");
    EXPECT_THAT(result.headers, Contains("Transfer-Encoding: chunked"));
    EXPECT_THAT(result.headers, Not(Contains(StartsWith("Content-Length:"))));
}

TEST_F(FaultTest, SendsABodyThatTheConnectionEnds)
{
    Answer answer(200, "until the end");
    answer.framing = Framing::UntilClose;
    server().script("/VIID/Faces", answer);
    const Result result = postFace();
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.body, "until the end");
    EXPECT_THAT(result.headers, Not(Contains(StartsWith("Transfer-Encoding:"))));
    EXPECT_THAT(result.headers, Not(Contains(StartsWith("Content-Length:"))));
}

TEST_F(FaultTest, SendsRawBytes)
{
    Answer answer;
    answer.raw = "HTTP/1.1 299 Odd\r\nContent-Length: 3\r\n\r\nraw";
    server().script("/VIID/Faces", answer);
    const Result result = postFace();
    EXPECT_EQ(result.status, 299);
    EXPECT_EQ(result.body, "raw");
    answer.raw = "not HTTP at all";
    server().script("/VIID/Faces", answer);
    EXPECT_EQ(postFace().code, CURLE_UNSUPPORTED_PROTOCOL); /* taken for HTTP/0.9 */
}

TEST_F(FaultTest, AnswersWithoutABodyWhereThereIsNone)
{
    server().script("/VIID/Faces", Answer(204));
    const Result result = postFace();
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.status, 204);
    EXPECT_EQ(result.body, "");
    EXPECT_THAT(result.headers, Not(Contains(StartsWith("Content-Type:"))));
}

TEST_F(FaultTest, ServesManyClientsAtOnce)
{
    constexpr int clients = 16;
    constexpr int rounds = 10;
    std::vector<std::future<int>> done;
    for (int i = 0; i < clients; ++i)
    {
        done.push_back(std::async(std::launch::async, [this] {
            int good = 0;
            const client::Handle handle = client::newHandle();
            const client::Call made = call("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"face-1"}]}})");
            for (int round = 0; round < rounds; ++round)
            {
                good += client::perform(handle.get(), made).status == 200 ? 1 : 0;
                good += registerWith("admin:viewlib").status == 200 ? 1 : 0;
            }
            return good;
        }));
    }
    for (auto& each : done)
    {
        EXPECT_EQ(each.get(), 2 * rounds);
    }
    EXPECT_EQ(server().stored().objects, std::size_t(clients * rounds));
    EXPECT_EQ(server().exchanges().size(), std::size_t(clients * rounds * 3));
    EXPECT_EQ(server().exchanges().back().number, std::uint64_t(clients * rounds * 3));
}

TEST_F(ServerTest, BreaksOffOverHttpsToo)
{
    config.https = true;
    config.strict.registration = false;
    start();
    for (const Cut cut : {Cut::BeforeStatus, Cut::MidBody, Cut::Reset})
    {
        server().script("/VIID/Faces", Answer::broken(cut));
        EXPECT_NE(postFace().code, CURLE_OK) << static_cast<int>(cut);
        EXPECT_EQ(server().exchanges().back().cut, cut);
    }
    EXPECT_EQ(postFace().status, 200);
}

TEST(ServerLog, DropsTheOldestExchangesAndTellsTheObserver)
{
    std::atomic<int> seen{0};
    viewlib::Config config;
    config.maxExchanges = 2;
    config.observer = [&seen](const viewlib::Exchange& exchange) { seen += exchange.status == 404 ? 1 : 0; };
    viewlib::Server server(config);
    server.start();
    for (const char* path : {"/a", "/b", "/c"})
    {
        client::Call made;
        made.url = server.url(path);
        EXPECT_EQ(client::perform(made).status, 404);
    }
    const auto exchanges = server.exchanges();
    ASSERT_EQ(exchanges.size(), 2U);
    EXPECT_EQ(exchanges[0].path, "/b");
    EXPECT_EQ(exchanges[1].number, 3U);
    EXPECT_EQ(seen, 3);
}

} // namespace
