/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Whatever fails under the library, once or from some point on: it does not crash, nothing leaks, the result is one
 * that the header states, no lock stays taken, and the next call works as if nothing had been.
 *
 * PUBSEC_TORTURE_STEP=1 in the environment fails every point; by default each seventh is tried.
 */
#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include <cjson/cJSON.h>
#include <gmock/gmock.h>

#include "core/core.h"
#include "core/state.h"
#include "public_headers.h"
#include "tests/support/environment.h"
#include "tests/support/fake_platform.h"
#include "tests/support/stack_test.h"
#include "tests/torture/exchanges.h"
#include "tests/torture/faults.h"
#include "tests/torture/hostile_server.h"
#include "tests/torture/operations.h"
#include "tests/torture/silence.h"

namespace
{

using torture::Operation;

constexpr unsigned kUsualStep = 7;

/* What the program has tried so far. */
struct Tally
{
    size_t operations = 0;
    size_t points = 0;
    size_t runs = 0;
};

Tally s_tally;

size_t step()
{
    return numberFromEnvironment("PUBSEC_TORTURE_STEP", kUsualStep);
}

/* Asks for digest where it is due, and gives every reader what it looks for. */
void serve(HostileServer::Peer& peer)
{
    static const std::string body =
        R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusCode":0,"StatusString":"OK"}]},)"
        R"("ResponseStatusObject":{"StatusCode":0},)"
        R"("SystemTimeObject":{"VIIDServerID":"1","TimeMode":"1","LocalTime":"20240131235959","TimeZone":"UTC+8"},)"
        R"("TransDataInfObject":{"FileLength":7,"FileHash":"abc"}})";
    static const std::string accepted =
        "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    static const std::string challenge =
        "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Digest realm=\"r\", qop=\"auth\", nonce=\"n\"\r\n"
        "Content-Length: 0\r\n\r\n";
    std::string request;
    while (peer.read(request))
    {
        const bool asks = request.find("Register HTTP/1.1\r\n") != std::string::npos &&
                          request.find("\r\nAuthorization: Digest ") == std::string::npos;
        if (!peer.write(asks ? challenge : accepted))
        {
            return;
        }
    }
}

/* A started stack with platform 0 registered at the server, and a fresh host. */
void reset()
{
    fake_platform::reset();
    stack::clear();
    g_atPubSecStackGlobalCommon[0] = torture::configuration();
    g_atPubSecStackGlobalCommon_New[0] = g_atPubSecStackGlobalCommon[0];
    g_bPubSecRegStatus[0] = 1;
    _SetPubSecStaLogLvl(4);
}

class Torture : public testing::TestWithParam<Operation>
{
  protected:
    static void SetUpTestSuite()
    {
        faults::install();
        s_server = new HostileServer(serve);
        torture::place().port = s_server->port();
        torture::makeFile(3000);
    }

    static void TearDownTestSuite()
    {
        delete s_server;
        s_server = nullptr;
        torture::removeFile();
        std::printf("torture: %zu operations, %zu points, %zu calls with something failing\n", s_tally.operations,
                    s_tally.points, s_tally.runs);
    }

    static faults::Result call(size_t failing, faults::Mode mode, u32* code)
    {
        const Silence silence;
        return faults::run(failing, mode, [&] { *code = GetParam().call(); });
    }

    static void expectSound(const faults::Result& result, const std::string& where)
    {
        EXPECT_EQ(result.leaks, "") << where;
        EXPECT_EQ(fake_platform::locksHeld(), 0u) << where;
        EXPECT_EQ(fake_platform::outstandingBlocks(), 0u) << where;
        EXPECT_THAT(fake_platform::faults(), testing::IsEmpty()) << where;
    }

    /* One disturbed call, and an undisturbed one behind it, on the state that the first one left. */
    void tryPoint(size_t point, faults::Mode mode)
    {
        u32 code = 0;
        reset();
        const faults::Result disturbed = call(point, mode, &code);
        const std::string where = "point " + std::to_string(point) + ", " + disturbed.failed;
        expectSound(disturbed, where);
        EXPECT_TRUE(code == GetParam().good || GetParam().disturbed.count(code) == 1) << where << " gave " << code;
        const faults::Result calm = call(0, mode, &code);
        expectSound(calm, "after " + where);
        EXPECT_EQ(code, GetParam().good) << "after " << where;
        ++s_tally.runs;
    }

    static HostileServer* s_server;
};

HostileServer* Torture::s_server = nullptr;

std::string nameOf(const testing::TestParamInfo<Operation>& parameter)
{
    return std::regex_replace(std::string(parameter.param.name), std::regex("[^A-Za-z0-9]"), "_");
}

INSTANTIATE_TEST_SUITE_P(Operations, Torture, testing::ValuesIn(torture::operations()), nameOf);

TEST_P(Torture, SurvivesEveryFailure)
{
    u32 code = 0;
    reset();
    call(0, faults::Mode::once, &code); /* what is made once in a process */
    reset();
    const faults::Result calm = call(0, faults::Mode::once, &code);
    ASSERT_EQ(code, GetParam().good);
    expectSound(calm, "undisturbed");
    for (size_t point = 1; point <= calm.points && !HasFailure(); point += step())
    {
        tryPoint(point, faults::Mode::once);
        tryPoint(point, faults::Mode::exhaustion);
    }
    ++s_tally.operations;
    s_tally.points += calm.points;
}

/* What the driver relies on: a block that stays is told, and a point that fails is felt. */
TEST(TortureFaults, AreCountedFeltAndTold)
{
    faults::install();
    void* kept = nullptr;
    void* volatile taken = nullptr; /* else the compiler leaves the pair out */
    const auto takeTwo = [&] {
        taken = std::malloc(1);
        std::free(taken);
        kept = cJSON_malloc(1);
    };
    const faults::Result calm = faults::run(0, faults::Mode::once, takeTwo);
    EXPECT_EQ(calm.points, 2u);
    EXPECT_EQ(calm.failed, "");
    EXPECT_EQ(calm.leaks, "1 of cJSON");
    cJSON_free(kept);
    const faults::Result first = faults::run(1, faults::Mode::once, takeTwo);
    EXPECT_EQ(first.failed, "malloc");
    EXPECT_NE(kept, nullptr);
    cJSON_free(kept);
    EXPECT_EQ(faults::run(1, faults::Mode::exhaustion, takeTwo).leaks, "");
    EXPECT_EQ(kept, nullptr);
}

/* The table lacks nothing that the headers export. */
TEST(TortureTable, HasEveryExportedFunction)
{
    std::set<std::string> missing;
    for (const char* header : PUBLIC_HEADERS)
    {
        std::ifstream file(header);
        ASSERT_TRUE(file) << header;
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::regex function(R"(\nPUBSEC_API[^;(]*?(\w+)\()");
        for (std::sregex_iterator at(text.begin(), text.end(), function), end; at != end; ++at)
        {
            missing.insert((*at)[1]);
        }
    }
    EXPECT_GT(missing.size(), 70u);
    for (const Operation& operation : torture::operations())
    {
        missing.erase(operation.name);
    }
    EXPECT_THAT(missing, testing::IsEmpty());
}

} // namespace
