/* SPDX-License-Identifier: Apache-2.0 */
/* The post of log events goes to a collector of the caller's, as platform 0. */
#include "tests/support/transfer_fixture.h"
#include "tests/support/transfer_records.h"

namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;

struct LogEventPost : TransferTest
{
    /* The URL that was asked for. */
    std::vector<std::string> urlFor(const char* host, u32 port)
    {
        curl_shim::reset();
        answer(200);
        EXPECT_EQ(PubSecPosLogWriteMSG(&event, host, port), 50u);
        return curl_shim::callsOf("setopt(URL=");
    }

    TPubSecLogInfo event = bare::logEvent("L1");
};

TEST_F(LogEventPost, ThePortIsInTheUrlUnlessItIsZero)
{
    EXPECT_THAT(urlFor("collector", 0), ElementsAre("setopt(URL=http://collector/log/event)"));
    EXPECT_THAT(urlFor("10.0.0.1", 8081), ElementsAre("setopt(URL=http://10.0.0.1:8081/log/event)"));
    EXPECT_THAT(urlFor("[::1]", 1), ElementsAre("setopt(URL=http://[::1]:1/log/event)"));
    EXPECT_THAT(urlFor("c", 0xFFFFFFFF), ElementsAre("setopt(URL=http://c:-1/log/event)"));
    EXPECT_THAT(urlFor("http://c", 0), ElementsAre("setopt(URL=http://http://c/log/event)"));
    EXPECT_THAT(urlFor("", 0), ElementsAre("setopt(URL=http:///log/event)"));
}

TEST_F(LogEventPost, TheUrlIsCutAtItsBuffer)
{
    const std::string host(600, 'h');
    EXPECT_THAT(urlFor(host.c_str(), 80), ElementsAre("setopt(URL=" + ("http://" + host).substr(0, 511) + ")"));
}

/* Nothing of the platform's configuration but its device counts, and a stack that never started has none. */
TEST_F(LogEventPost, ThePlatformsServerDoesNotMatter)
{
    g_atPubSecStackGlobalCommon[0].dwHttpsEnable = 1;
    stack::put(g_atPubSecStackGlobalCommon[0].achServerIP, "192.0.2.1");
    g_atPubSecStackGlobalCommon[0].dwServerPort = 9;
    EXPECT_THAT(urlFor("c", 5), ElementsAre("setopt(URL=http://c:5/log/event)"));
    std::vector<std::string> appends;
    for (const std::string& line : headerLines(""))
    {
        appends.push_back("append(" + line + ")");
    }
    EXPECT_THAT(curl_shim::callsOf("append"), ElementsAreArray(appends));
}

TEST_F(LogEventPost, SucceedsWithoutARegistration)
{
    server.start();
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(PubSecPosLogWriteMSG(&event, "127.0.0.1", server.port()), 50u); }).empty(),
              false);
    ASSERT_EQ(server.exchanges().size(), 1u);
    EXPECT_EQ(server.exchanges()[0].target, "/log/event");
    EXPECT_EQ(server.exchanges()[0].status, 200u);
    EXPECT_EQ(server.exchanges()[0].body, "[" + bare::logEventText("L1") + "]");
}

} // namespace
