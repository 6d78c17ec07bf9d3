/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Servers that mean harm, or are broken, against every kind of exchange: the result is the one demanded, nothing leaks,
 * and the call comes back. The transfers of servers that stall are given a fraction of a second, and the watchdog of
 * uploads sees time run a hundred times as fast; hostile_slow_test waits as long as a host does.
 */
#include <csignal>
#include <cstring>

#include <chrono>

#include <gmock/gmock.h>

#include "core/state.h"
#include "tests/support/fake_platform.h"
#include "tests/support/stack_test.h"
#include "tests/torture/exchanges.h"
#include "tests/torture/faults.h"
#include "tests/torture/hostile_server.h"
#include "tests/torture/silence.h"

namespace
{

using Peer = HostileServer::Peer;
using std::chrono::steady_clock;

#ifdef REAL_TIMEOUTS
constexpr bool kHurries = false;
constexpr unsigned kDropMs = 1000;
constexpr auto kPatience = std::chrono::seconds(75); /* two exchanges, where one is tried again without credentials */
#else
constexpr bool kHurries = true;
constexpr unsigned kDropMs = 10;
constexpr auto kPatience = std::chrono::seconds(20);
#endif
constexpr long kShortMs = 400;

/* Their realloc copies, so an answer of 16 MiB that comes in a thousand pieces takes minutes. */
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kReadsLargeAnswers = false;
#else
constexpr bool kReadsLargeAnswers = true;
#endif

constexpr size_t kAnswerMax = 16u << 20; /* the largest answer that is read */

/* ------------------------------------------------------------------------------------------------------ outcomes */

/* What the bytes of a server come to. */
enum Outcome
{
    kNoAnswer, /* not even a status */
    kAccepted, /* a whole answer with status 200 and an unreadable body */
    kCutShort, /* a status 200, and then the transfer fails */
    kTooLong,  /* a status 200 and more body than is read */
    kEndless,  /* the same without an end */
    kRedirected,
    kChallenged, /* 401, for ever */
    kOutcomes
};

/* An exchange, and its result for each outcome. */
struct Exchange
{
    const char* name;
    u32 (*call)();
    bool bounded; /* by the overall time-out or the upload's watchdog */
    bool reads;   /* the answer, up to a limit */
    u32 codes[kOutcomes];
};

/* The columns are the outcomes. A registration goes by the status alone, even when the transfer failed behind it. */
constexpr Exchange kExchanges[] = {
    {"Registration", torture::registration, true, false, {0, 1, 1, 1, 1, 0, 0}},
    {"DirectRegistration", torture::directRegistration, true, false, {0, 1, 1, 1, 1, 0, 0}},
    {"Unregistration", torture::unregistration, true, false, {76, 50, 76, 50, 76, 76, 76}},
    {"Keepalive", torture::keepalive, true, true, {76, 50, 76, 50, 50, 51, 51}},
    {"ClockQuery", torture::clockQuery, true, true, {77, 51, 51, 51, 51, 77, 77}},
    {"ReadingPost", torture::face, true, true, {76, 50, 76, 50, 50, 68, 70}},
    {"UnboundedPost", torture::slice, false, true, {76, 50, 76, 50, 50, 68, 70}},
    {"Post", torture::gps, true, false, {76, 50, 76, 50, 76, 68, 70}},
    {"Upload", torture::upload, true, false, {76, 50, 76, 50, 76, 65, 65}},
    {"TransferState", torture::transferState, true, true, {76, 50, 76, 50, 50, 68, 70}},
};

/* ------------------------------------------------------------------------------------------------------- servers */

struct Harm
{
    const char* name;
    Outcome outcome;
    bool stalls; /* the exchange ends by a time-out, or by the size of what is read */
    void (*answer)(Peer& peer);
};

const std::string kHead = "HTTP/1.1 200 OK\r\n";

/* Answers each request with the same bytes and closes the connection. */
void once(Peer& peer, const std::string& bytes)
{
    std::string request;
    if (peer.read(request))
    {
        peer.write(bytes);
    }
}

void answerWithBody(Peer& peer, const std::string& headers, const std::string& body)
{
    once(peer, kHead + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
}

void forever(Peer& peer, const std::string& head, const std::string& piece)
{
    std::string request;
    if (peer.read(request) && peer.write(head))
    {
        while (peer.write(piece))
        {
        }
    }
}

void dropByDrop(Peer& peer, const std::string& head, char drop)
{
    std::string request;
    if (peer.read(request) && peer.write(head))
    {
        while (peer.write(std::string(1, drop)) && peer.wait(kDropMs))
        {
        }
    }
}

/* One answer after the other on a connection that stays open. */
void each(Peer& peer, const std::string& bytes)
{
    std::string request;
    while (peer.read(request) && peer.write(bytes))
    {
    }
}

void resetBehind(Peer& peer, const std::string& bytes)
{
    std::string request;
    if (peer.read(request) && peer.write(bytes))
    {
        peer.wait(50); /* so that what was sent is read first */
    }
    peer.reset();
}

void silence(Peer& peer)
{
    std::string bytes;
    while (peer.readSome(bytes))
    {
        bytes.clear();
    }
}

const Harm kHarms[] = {
    {"BodyWithoutEnd", kEndless, true, [](Peer& peer) { forever(peer, kHead + "\r\n", std::string(65536, 'x')); }},
    {"ChunksWithoutEnd", kEndless, true,
     [](Peer& peer) {
         forever(peer, kHead + "Transfer-Encoding: chunked\r\n\r\n", "8000\r\n" + std::string(32768, 'x') + "\r\n");
     }},
    {"ByteTooMany", kTooLong, false, [](Peer& peer) { answerWithBody(peer, "", std::string(kAnswerMax + 1, 'x')); }},
    {"LargestAnswer", kAccepted, false, [](Peer& peer) { answerWithBody(peer, "", std::string(kAnswerMax, 'x')); }},
    {"HeadersWithoutEnd", kCutShort, true,
     [](Peer& peer) { forever(peer, kHead, "X-Header: " + std::string(1000, 'x') + "\r\n"); }},
    {"HeaderLineWithoutEnd", kCutShort, true,
     [](Peer& peer) { forever(peer, kHead + "X-Header: ", std::string(65536, 'x')); }},
    {"StatusLineWithoutEnd", kNoAnswer, true, [](Peer& peer) { forever(peer, "HTTP/1.1 ", std::string(65536, '2')); }},
    {"NulInHeader", kCutShort, false,
     [](Peer& peer) { once(peer, kHead + "X-Header: a" + std::string(1, '\0') + "b\r\nContent-Length: 0\r\n\r\n"); }},
    {"NoHttp", kNoAnswer, false, [](Peer& peer) { once(peer, "hello, I am not a web server\r\n"); }},
    {"ContinueForEver", kNoAnswer, true, [](Peer& peer) { forever(peer, "", "HTTP/1.1 100 Continue\r\n\r\n"); }},
    {"ContinueFirst", kAccepted, false,
     [](Peer& peer) {
         once(peer,
              "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 102 Processing\r\n\r\n" + kHead + "Content-Length: 0\r\n\r\n");
     }},
    {"LengthTooLarge", kCutShort, false, [](Peer& peer) { once(peer, kHead + "Content-Length: 1000\r\n\r\n{}"); }},
    {"LengthTooSmall", kAccepted, false, [](Peer& peer) { once(peer, kHead + "Content-Length: 2\r\n\r\n{}more"); }},
    {"LengthBelowZero", kCutShort, false, [](Peer& peer) { once(peer, kHead + "Content-Length: -5\r\n\r\n{}"); }},
    {"LengthBeyondNumbers", kAccepted, false,
     [](Peer& peer) { once(peer, kHead + "Content-Length: 99999999999999999999\r\n\r\n{}"); }},
    {"EndByClosing", kAccepted, false, [](Peer& peer) { once(peer, kHead + "\r\n{\"cut"); }},
    {"NoChunks", kCutShort, false,
     [](Peer& peer) { once(peer, kHead + "Transfer-Encoding: chunked\r\n\r\nzz\r\nno chunk\r\n"); }},
    {"ChunkCut", kCutShort, false,
     [](Peer& peer) { once(peer, kHead + "Transfer-Encoding: chunked\r\n\r\nffffff\r\nshort"); }},
    {"GzipUnasked", kAccepted, false,
     [](Peer& peer) { answerWithBody(peer, "Content-Encoding: gzip\r\n", "\x1f\x8b\x08\x01\x02garbage"); }},
    {"DeepNesting", kAccepted, false, [](Peer& peer) { answerWithBody(peer, "", std::string(1000000, '[')); }},
    {"DeepObjects", kAccepted, false,
     [](Peer& peer) {
         std::string body;
         for (int depth = 0; depth < 100000; ++depth)
         {
             body += "{\"ResponseStatusListObject\":";
         }
         answerWithBody(peer, "", body);
     }},
    {"DropsOfHeader", kNoAnswer, true, [](Peer& peer) { dropByDrop(peer, "HTTP/1.1 ", '2'); }},
    {"DropsOfBody", kCutShort, true, [](Peer& peer) { dropByDrop(peer, kHead + "\r\n", ' '); }},
    {"Silence", kNoAnswer, true, silence},
    {"Refusal", kNoAnswer, false, [](Peer& peer) { peer.reset(); }},
    {"ClosedAtOnce", kNoAnswer, false, [](Peer& peer) { once(peer, ""); }},
    {"ResetBehindRequest", kNoAnswer, false, [](Peer& peer) { resetBehind(peer, ""); }},
    {"ResetInBody", kCutShort, false, [](Peer& peer) { resetBehind(peer, kHead + "Content-Length: 100\r\n\r\n{"); }},
    {"RedirectLoop", kRedirected, true,
     [](Peer& peer) {
         each(peer, "HTTP/1.1 302 Found\r\nLocation: /VIID/System/Register\r\nContent-Length: 0\r\n\r\n");
     }},
    {"RedirectToFile", kRedirected, false,
     [](Peer& peer) { each(peer, "HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\nContent-Length: 0\r\n\r\n"); }},
    {"RedirectToNonsense", kRedirected, false,
     [](Peer& peer) {
         each(peer, "HTTP/1.1 302 Found\r\nLocation: http://[::1:%/VIID/x\r\nContent-Length: 0\r\n\r\n");
     }},
    {"StaleForEver", kChallenged, true,
     [](Peer& peer) {
         each(peer, "HTTP/1.1 401 Unauthorized\r\nContent-Length: 0\r\n"
                    "WWW-Authenticate: Digest realm=\"r\", nonce=\"n\", qop=\"auth\", stale=true\r\n\r\n");
     }},
};

/* Behind an https URL: none of them completes a handshake. */
const Harm kHandshakes[] = {
    {"PlainAnswer", kNoAnswer, false,
     [](Peer& peer) {
         std::string hello;
         peer.readSome(hello);
         peer.write("HTTP/1.1 400 Bad Request\r\n\r\n");
     }},
    {"ClosedBehindHello", kNoAnswer, false,
     [](Peer& peer) {
         std::string hello;
         peer.readSome(hello);
     }},
    {"ResetBehindHello", kNoAnswer, false,
     [](Peer& peer) {
         std::string hello;
         peer.readSome(hello);
         peer.reset();
     }},
    {"Alert", kNoAnswer, false,
     [](Peer& peer) {
         std::string hello;
         peer.readSome(hello);
         peer.write(std::string("\x15\x03\x03\x00\x02\x02\x28", 7));
     }},
    {"HalfServerHello", kNoAnswer, false,
     [](Peer& peer) {
         std::string hello;
         peer.readSome(hello);
         peer.write(std::string("\x16\x03\x03\x00\x7a\x02\x00\x00\x76\x03\x03", 11));
     }},
    {"RecordsWithoutEnd", kNoAnswer, true,
     [](Peer& peer) {
         std::string hello;
         peer.readSome(hello);
         while (peer.write(std::string("\x16\x03\x03\x00\x00", 5)))
         {
         }
     }},
    {"SilenceBehindHello", kNoAnswer, true, silence},
};

/* --------------------------------------------------------------------------------------------------------- tests */

struct Case
{
    const Harm* harm;
    const Exchange* exchange;
    bool secure;
};

void PrintTo(const Case& tried, std::ostream* out)
{
    *out << tried.harm->name << " against " << tried.exchange->name;
}

/* Whether the exchange ends by a time-out, and not by the size of what is read. */
bool waits(const Harm& harm, const Exchange& exchange)
{
    return harm.stalls && !(exchange.reads && harm.outcome == kEndless);
}

/* In real time each exchange waits once, and those that try again or follow another time. */
bool isWorthWaiting(const std::string& harm, const std::string& exchange)
{
    return harm == "DropsOfBody" || (harm == "Silence" && (exchange == "DirectRegistration" || exchange == "Upload")) ||
           (harm == "RedirectLoop" && exchange == "Unregistration");
}

bool isTooLarge(const Harm& harm, const Exchange& exchange)
{
    const bool large =
        harm.outcome == kEndless || harm.outcome == kTooLong || std::strcmp(harm.name, "LargestAnswer") == 0;
    return !kReadsLargeAnswers && exchange.reads && large;
}

bool isTried(const Harm& harm, const Exchange& exchange)
{
    return (exchange.bounded || !waits(harm, exchange)) && (kHurries || isWorthWaiting(harm.name, exchange.name)) &&
           !isTooLarge(harm, exchange);
}

template <size_t Harms> void addCases(const Harm (&harms)[Harms], bool secure, std::vector<Case>& cases)
{
    for (const Harm& harm : harms)
    {
        for (const Exchange& exchange : kExchanges)
        {
            if (isTried(harm, exchange))
            {
                cases.push_back({&harm, &exchange, secure});
            }
        }
    }
}

std::vector<Case> cases()
{
    std::vector<Case> all;
    addCases(kHarms, false, all);
    addCases(kHandshakes, true, all);
    return all;
}

std::string nameOf(const testing::TestParamInfo<Case>& parameter)
{
    return std::string(parameter.param.secure ? "Tls" : "") + parameter.param.harm->name + "_" +
           parameter.param.exchange->name;
}

class Hostile : public testing::TestWithParam<Case>
{
  protected:
    static void SetUpTestSuite()
    {
        faults::install();
        torture::makeFile(5000);
    }

    static void TearDownTestSuite()
    {
        torture::removeFile();
        std::printf("hostile: %zu servers against %zu kinds of exchange, %d cases\n",
                    std::size(kHarms) + std::size(kHandshakes), std::size(kExchanges),
                    testing::UnitTest::GetInstance()->test_to_run_count());
    }

    void SetUp() override
    {
        fake_platform::reset();
        stack::clear();
        _SetPubSecStaLogLvl(1);
    }

    void TearDown() override
    {
        faults::shortenTimeouts(0);
    }

    /* The exchange's result against a server that behaves so; says when it leaked. */
    static u32 resultOf(const Case& tried)
    {
        HostileServer server(tried.harm->answer);
        torture::place().port = server.port();
        torture::place().secure = tried.secure;
        g_atPubSecStackGlobalCommon[0] = torture::configuration();
        g_bPubSecRegStatus[0] = 1;
        faults::shortenTimeouts(kHurries && waits(*tried.harm, *tried.exchange) ? kShortMs : 0);
        u32 code = 0;
        faults::Result result;
        {
            const Silence noBodies;
            result = faults::run(0, faults::Mode::once, [&] { code = tried.exchange->call(); });
        }
        EXPECT_GE(server.connections(), 1u);
        EXPECT_EQ(result.leaks, "");
        EXPECT_EQ(fake_platform::outstandingBlocks(), 0u);
        return code;
    }
};

#ifdef REAL_TIMEOUTS /* two programs of one folder, whose tests need names of their own */
INSTANTIATE_TEST_SUITE_P(SlowServers, Hostile, testing::ValuesIn(cases()), nameOf);
#else
INSTANTIATE_TEST_SUITE_P(Servers, Hostile, testing::ValuesIn(cases()), nameOf);
#endif

TEST_P(Hostile, GetsTheStatedResult)
{
    const auto start = steady_clock::now();
    EXPECT_EQ(resultOf(GetParam()), GetParam().exchange->codes[GetParam().harm->outcome]);
    EXPECT_LT(steady_clock::now() - start, kPatience);
    EXPECT_THAT(fake_platform::faults(), testing::IsEmpty());
    EXPECT_EQ(fake_platform::locksHeld(), 0u);
}

} // namespace
