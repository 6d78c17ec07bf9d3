/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Every misbehaviour that the development server has a name for, against every kind of exchange: the result, the status
 * of the platform afterwards and the time until the call returns. docs/faults.md has the outcomes as a page; run with
 * PUBSEC_PRINT_PAGE set to a path, this program writes it there.
 */
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include <curl/curl.h>
#include <gmock/gmock.h>
#include <viewlib/fault.h>
#include <viewlib/server.h>

#include "core/state.h"
#include "tests/support/fake_platform.h"
#include "tests/support/stack_test.h"
#include "tests/torture/exchanges.h"
#include "tests/torture/silence.h"

using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace
{

/* In place of the 30 seconds that an exchange may take, where the server stalls. */
constexpr long kStalledMs = 400;
long s_timeoutMs; /* of the transfers from here on; 0 leaves it as the library sets it */

/* In place of the presets' own. */
constexpr milliseconds kDelay{300};
constexpr std::uint64_t kBytesPerSecond = 2000;

/* Two seconds more than an exchange, or two where one is tried again without credentials, may take. */
constexpr milliseconds kPatience{2 * 30000 + 2000};

} // namespace

extern "C"
{
    CURLcode __real_curl_easy_perform(CURL* handle);
    CURLcode __wrap_curl_easy_perform(CURL* handle);

    CURLcode __wrap_curl_easy_perform(CURL* handle)
    {
        if (s_timeoutMs != 0)
        {
            curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, s_timeoutMs);
        }
        return __real_curl_easy_perform(handle);
    }
}

namespace
{

/* -------------------------------------------------------------------------------------------------- the exchanges */

std::unique_ptr<viewlib::Server> s_server;

struct Exchange
{
    const char* name;
    u32 (*call)();
};

constexpr Exchange kExchanges[] = {
    {"registration", torture::registration},
    {"direct registration", torture::directRegistration},
    {"unregistration", torture::unregistration},
    {"keepalive", torture::keepalive},
    {"clock", torture::clockQuery},
    {"picture", torture::picture},
    {"face", torture::face},
    {"GPS", torture::gps},
    {"upload", torture::upload},
    {"transfer state", torture::transferState},
};

using Codes = std::vector<u32>;

/* ------------------------------------------------------------------------------------------------------- outcomes */

/* What a server's answer comes to, in the order of the exchanges. */
const Codes kUsual = {1, 1, 50, 50, 50, 50, 50, 50, 50, 50};
/* The fault takes the first request, which asks for the challenge; the second is then taken without credentials. */
const Codes kUnreadable = {0, 0, 50, 50, 51, 50, 50, 50, 50, 50};
const Codes kFailureUnder200 = {0, 0, 50, 51, 51, 50, 50, 50, 50, 50};
const Codes kCode10 = {0, 0, 50, 69, 51, 50, 50, 50, 50, 50};
const Codes kNoClock = {1, 1, 50, 50, 51, 50, 50, 50, 50, 50};
/* Uploads and their state are for everyone. */
const Codes kSessionGone = {0, 0, 50, 51, 77, 70, 70, 70, 50, 50};
const Codes kCredentials = {1, 1, 50, 51, 77, 70, 70, 70, 50, 50};
const Codes k302 = {0, 0, 50, 51, 77, 68, 68, 68, 65, 68};
/* The direct registration leaves it to libcurl, which sends the same request again. */
const Codes k307 = {0, 1, 50, 51, 77, 68, 68, 68, 65, 68};
const Codes k400 = {0, 0, 50, 51, 77, 61, 69, 69, 65, 69};
const Codes k401 = {0, 0, 50, 51, 77, 70, 70, 70, 65, 70};
const Codes k403 = {0, 0, 50, 51, 77, 51, 51, 51, 65, 51};
const Codes k404 = {0, 0, 50, 51, 77, 71, 71, 71, 65, 50};
const Codes k413 = k403;
const Codes k503 = {0, 0, 50, 51, 77, 73, 73, 73, 65, 73};
const Codes kNoAnswer = {0, 0, 76, 76, 77, 76, 76, 76, 76, 76};
/* Bodies alone can be cut: the first request of a digest and a GET have none. */
const Codes kCutRequest = {1, 1, 50, 76, 50, 76, 76, 76, 76, 50};
const Codes kCutAnswer = {1, 1, 50, 76, 51, 76, 76, 76, 76, 76};

/* All presets that do not come to the usual. */
const std::map<std::string, Codes> kOutcomes = {
    {"expired-session", kSessionGone},
    {"challenge-anywhere", kCredentials},
    {"not-registered-200", kFailureUnder200},
    {"keepalive-10", kUnreadable}, /* a text, which is read as 0 */
    {"fixed-lifetime", kNoClock},
    {"gzip", kNoClock},
    {"refuse-401-bare", k401},
    {"refuse-403", k403},
    {"refuse-400-empty", k400},
    {"text-under-200", kUnreadable},
    {"html-under-200", kUnreadable},
    {"empty-200", kUnreadable},
    {"failure-under-200", kFailureUnder200},
    {"ok-under-404", k404},
    {"code-2", kFailureUnder200},
    {"code-3", kFailureUnder200},
    {"code-4", kFailureUnder200},
    {"code-5", kFailureUnder200},
    {"code-6", kFailureUnder200},
    {"code-7", kFailureUnder200},
    {"code-8", kFailureUnder200},
    {"code-9", kFailureUnder200},
    {"code-minus-1", kFailureUnder200},
    {"code-10", kCode10},
    {"code-400", kUnreadable},
    {"code-404", kUnreadable},
    {"code-409", kUnreadable},
    {"code-500", kUnreadable},
    {"unavailable", k503},
    {"redirect", k302},
    {"redirect-307", k307},
    {"early-answer", k413},
    {"garbage", kNoAnswer},
    {"stalled-reading", kNoAnswer},
    {"cut", kNoAnswer},
    {"reset", kNoAnswer},
    {"cut-request", kCutRequest},
    {"cut-mid-body", kCutAnswer},
};

const Codes& outcomeOf(const std::string& preset)
{
    const auto found = kOutcomes.find(preset);
    return found == kOutcomes.end() ? kUsual : found->second;
}

/* ----------------------------------------------------------------------------------------------------- the matrix */

/* A preset against an exchange, whatever resource and method the preset is proposed for. */
viewlib::FaultRule ruleOf(const viewlib::Preset& preset)
{
    viewlib::FaultRule rule = preset.rule;
    rule.resource = "*";
    rule.method = "*";
    for (milliseconds* delay : {&rule.answer.delay, &rule.answer.delayBeforeBody, &rule.answer.delayBeforeReading})
    {
        *delay = std::min(*delay, kDelay);
    }
    if (!rule.answer.trailing.empty())
    {
        /* Whether it is seen before the connection is used again is a matter of luck. */
        rule.answer.with("Connection", "close");
    }
    for (std::uint64_t* rate : {&rule.answer.bytesPerSecond, &rule.answer.requestBytesPerSecond})
    {
        *rate = *rate == 0 ? 0 : std::max(*rate, kBytesPerSecond);
    }
    return rule;
}

class FaultMatrix : public testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        viewlib::Config config;
        config.strict.documents = false;
        s_server = std::make_unique<viewlib::Server>(config);
        s_server->start();
        torture::place().port = s_server->port();
        torture::makeFile(5000);
    }

    static void TearDownTestSuite()
    {
        s_server.reset();
        torture::removeFile();
    }

    void SetUp() override
    {
        fake_platform::reset();
        stack::clear();
        _SetPubSecStaLogLvl(1);
    }

    /* One cell, on a device that is registered. */
    static u32 codeOf(const Exchange& exchange, const viewlib::FaultRule* rule)
    {
        s_server->clearFaults();
        g_atPubSecStackGlobalCommon[0] = torture::configuration();
        s_server->registerDevice(g_atPubSecStackGlobalCommon[0].achDeviceID);
        g_bPubSecRegStatus[0] = 1;
        if (rule != nullptr)
        {
            s_server->addFault(*rule);
        }
        s_timeoutMs = rule != nullptr && rule->answer.stallAfterRequestBytes.has_value() ? kStalledMs : 0;
        const auto start = steady_clock::now();
        const Silence noBodies;
        const u32 code = exchange.call();
        EXPECT_LT(steady_clock::now() - start, kPatience) << exchange.name;
        /* Registration tells it; unregistration ends it however it went; nothing else touches it. */
        const bool registers = exchange.call == torture::registration;
        EXPECT_EQ(g_bPubSecRegStatus[0], registers                                  ? code
                                         : exchange.call == torture::unregistration ? 0u
                                                                                    : 1u)
            << exchange.name;
        EXPECT_EQ(fake_platform::locksHeld(), 0u);
        return code;
    }

    static Codes codesOf(const viewlib::FaultRule* rule)
    {
        Codes codes;
        for (const Exchange& exchange : kExchanges)
        {
            codes.push_back(codeOf(exchange, rule));
        }
        s_server->clearFaults();
        return codes;
    }
};

std::string rowOf(const std::string& name, const Codes& codes)
{
    std::string row = "| " + name + " |";
    for (const u32 code : codes)
    {
        row += " " + std::to_string(code) + " |";
    }
    return row;
}

std::string page(const std::vector<std::string>& rows)
{
    std::string text =
        "<!-- SPDX-License-Identifier: Apache-2.0; written by tests/torture/fault_matrix_test.cpp -->\n"
        "# Faults and what they come to\n\n"
        "Each misbehaviour that [viewlibd](viewlibd.md#faults) has a name for, with the count that the\n"
        "preset proposes, against each kind of exchange of a registered device. Registrations are 1 or\n"
        "0, all else is a [result code](results.md). The status afterwards is that of the registration,\n"
        "0 after an unregistration, and as before after everything else. An exchange takes 30 seconds at\n"
        "most, registrations and unregistrations that are tried again without credentials twice that.\n\n"
        "| fault |";
    std::string line = "|---|";
    for (const Exchange& exchange : kExchanges)
    {
        text += std::string(" ") + exchange.name + " |";
        line += "---|";
    }
    text += "\n" + line + "\n";
    for (const std::string& row : rows)
    {
        text += row + "\n";
    }
    return text;
}

TEST_F(FaultMatrix, EachComesToWhatItHasTo)
{
    std::vector<std::string> rows = {rowOf("none", codesOf(nullptr))};
    EXPECT_EQ(rows[0], rowOf("none", kUsual));
    size_t unusual = 0;
    for (const viewlib::Preset& preset : viewlib::presets())
    {
        const viewlib::FaultRule rule = ruleOf(preset);
        rows.push_back(rowOf(preset.name, codesOf(&rule)));
        EXPECT_EQ(rows.back(), rowOf(preset.name, outcomeOf(preset.name)));
        unusual += kOutcomes.count(preset.name);
    }
    EXPECT_EQ(unusual, kOutcomes.size()) << "an outcome is stated for a fault that does not exist";
    std::printf("faults: %zu against %zu kinds of exchange, %zu cases\n", rows.size() - 1, std::size(kExchanges),
                (rows.size() - 1) * std::size(kExchanges));
    if (const char* const place = std::getenv("PUBSEC_PRINT_PAGE"))
    {
        std::ofstream(place) << page(rows);
    }
    std::stringstream published;
    published << std::ifstream(PAGE).rdbuf();
    EXPECT_EQ(published.str(), page(rows)) << "write it anew: PUBSEC_PRINT_PAGE=docs/faults.md fault_matrix_test";
}

} // namespace
