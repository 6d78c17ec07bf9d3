/* SPDX-License-Identifier: Apache-2.0 */
/* The upload's two callbacks and its watchdog, on a clock that the test moves. */
#include <thread>

#include <pubsecstack/posts.h>

#include "post/file_upload.h"
#include "tests/support/transfer_files.h"
#include "tests/support/transfer_fixture.h"
#include "tests/support/transfer_peer.h"

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

auto stopLine(u32 milliseconds)
{
    return MatchesRegex(R"(\[PUBSECSTACK ERR\] ProcCBEx:[0-9]+ ProcCBEx:timeout stop upload time:)" +
                        std::to_string(milliseconds) + "\n");
}

struct Watchdog : TransferTest
{
    /* As libcurl asks during a transfer. */
    static int progress()
    {
        return ProcCBEx(reinterpret_cast<void*>(1), 0, 0, 10, 5);
    }

    void TearDown() override
    {
        g_ntick = 0;
        TransferTest::TearDown();
    }
};

TEST_F(Watchdog, EndsATransferAfterThirtySecondsOfNothing)
{
    fake_platform::setTick(1000);
    g_ntick = 1000;
    EXPECT_EQ(progress(), 0);
    fake_platform::setTick(30999);
    EXPECT_EQ(progress(), 0);
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
    fake_platform::setTick(31000);
    EXPECT_EQ(progress(), 1);
    EXPECT_THAT(newLines(), ElementsAre(stopLine(30000)));
    fake_platform::setTick(200000);
    EXPECT_EQ(progress(), 1);
    EXPECT_THAT(newLines(), ElementsAre(stopLine(199000)));
    g_ntick = 199999;
    EXPECT_EQ(progress(), 0);
}

TEST_F(Watchdog, CountsAcrossTheWrapOfTheTick)
{
    g_ntick = 0xFFFFFFF0u;
    fake_platform::setTick(29983);
    EXPECT_EQ(progress(), 0);
    fake_platform::setTick(29984);
    EXPECT_EQ(progress(), 1);
    EXPECT_THAT(newLines(), ElementsAre(stopLine(30000)));
}

TEST_F(Watchdog, TicksAreNotMilliseconds)
{
    fake_platform::setTickLength(10);
    g_ntick = 0;
    fake_platform::setTick(2999);
    EXPECT_EQ(progress(), 0);
    fake_platform::setTick(3000);
    EXPECT_EQ(progress(), 1);
    EXPECT_THAT(newLines(), ElementsAre(stopLine(30000)));
}

/* --------------------------------------------------------------------------------------------------- reading blocks */

struct Reading : Watchdog
{
    Reading() : content(mixedBytes(100)), onDisk(content), file(std::fopen(onDisk.path(), "rb"))
    {
    }

    ~Reading() override
    {
        std::fclose(file);
    }

    std::string content;
    TransferFile onDisk;
    FILE* file;
    char block[200] = {};
};

TEST_F(Reading, GivesBlocksAndSleepsAfterEach)
{
    fake_platform::setTick(500);
    EXPECT_EQ(read_callback(block, 1, 40, file), 40u);
    EXPECT_EQ(std::string(block, 40), content.substr(0, 40));
    EXPECT_EQ(g_ntick, 500u); /* the sleep comes last */
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1));
    EXPECT_EQ(read_callback(block, 3, 10, file), 30u);
    EXPECT_EQ(std::string(block, 30), content.substr(40, 30));
    EXPECT_EQ(g_ntick, 501u);
    EXPECT_EQ(read_callback(block, 1, sizeof(block), file), 30u);
    EXPECT_EQ(std::string(block, 30), content.substr(70));
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1, 1, 1));
}

TEST_F(Reading, GivesNothingAtTheEnd)
{
    ASSERT_EQ(read_callback(block, 1, sizeof(block), file), 100u); /* beyond the end, so the file knows of it */
    fake_platform::setTick(900);
    EXPECT_EQ(read_callback(block, 1, sizeof(block), file), 0u);
    EXPECT_EQ(g_ntick, 900u);
    EXPECT_THAT(fake_platform::delays(), ElementsAre(1));
}

TEST_F(Reading, GivesNothingWithoutAFile)
{
    fake_platform::setTick(900);
    EXPECT_EQ(read_callback(block, 1, sizeof(block), nullptr), 0u);
    EXPECT_EQ(g_ntick, 900u);
    EXPECT_THAT(fake_platform::delays(), IsEmpty());
}

/* ------------------------------------------------------------------------------------------------- whole transfers */

struct SlowServers : Watchdog
{
    std::string content = mixedBytes(1 << 20);
    TransferFile file{content};
    TransferPeer peer;

    u32 upload()
    {
        return PubSecCurlUpLoadFile(peer.url("/store").c_str(), file.path(), 0);
    }
};

/* Minutes pass in all, but never 30 seconds between two blocks. */
TEST_F(SlowServers, ASteadyTransferIsNotStopped)
{
    fake_platform::setDelayHook([](u32, u32) { fake_platform::advance(29000); });
    peer.plan({});
    EXPECT_EQ(upload(), 50u);
    EXPECT_GT(fake_platform::now(), 120000u);
    ASSERT_EQ(peer.requests().size(), 1u);
    EXPECT_TRUE(peer.requests()[0].body == content);
    EXPECT_THAT(fake_platform::logLinesWith("timeout stop upload"), IsEmpty());
}

TEST_F(SlowServers, OneBlockOfThirtySecondsIsOneTooMany)
{
    fake_platform::setDelayHook([](u32 number, u32) { fake_platform::advance(number == 3 ? 30000 : 1000); });
    peer.plan({});
    EXPECT_EQ(upload(), 76u);
    EXPECT_EQ(fake_platform::delays().size(), 3u);
    const std::vector<std::string> lines = newLines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_THAT(lines[2], testing::HasSubstr("ProcCBEx:timeout stop upload time:3000"));
    EXPECT_THAT(lines[3],
                testing::HasSubstr("curl_easy_perform() failed: Operation was aborted by an application callback\n"));
}

/* The clock runs on with what the server reads, a minute in all; what the line holds is never half of that. */
TEST_F(SlowServers, AServerThatReadsSlowlyButSteadilyIsNotStopped)
{
    const std::string much = mixedBytes(size_t(24) << 20);
    const TransferFile large(much);
    TransferPeer::Plan plan;
    plan.atRead = [](size_t count) { fake_platform::advance(count / 400); };
    peer.plan(plan);
    EXPECT_EQ(PubSecCurlUpLoadFile(peer.url("/store").c_str(), large.path(), 0), 50u);
    EXPECT_GT(fake_platform::now(), 50000u);
    ASSERT_EQ(peer.requests().size(), 1u);
    EXPECT_TRUE(peer.requests()[0].body == much);
}

TEST_F(SlowServers, AServerThatReadsNoMoreIsLeft)
{
    const TransferFile large(std::uint64_t(64) << 20, "");
    TransferPeer::Plan plan;
    plan.read = 100000;
    plan.then = TransferPeer::Then::Stall;
    plan.atEnd = [](std::uint64_t) {
        /* once the client's sends wait, half a minute passes */
        u32 before = 0;
        for (u32 now = 1; now != before; now = fake_platform::calls(fake_platform::Function::kDelay))
        {
            before = fake_platform::calls(fake_platform::Function::kDelay);
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
        fake_platform::advance(30000);
    };
    peer.plan(plan);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(PubSecCurlUpLoadFile(peer.url("/store").c_str(), large.path(), 0), 76u);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(fake_platform::logLinesWith("timeout stop upload time:3").size(), 1u);
    EXPECT_THAT(newLines().back(), testing::HasSubstr("Operation was aborted by an application callback\n"));
}

TEST_F(SlowServers, AServerThatNeverAnswersIsLeft)
{
    TransferPeer::Plan plan;
    plan.then = TransferPeer::Then::Stall;
    plan.atEnd = [](std::uint64_t) { fake_platform::advance(30000); };
    peer.plan(plan);
    EXPECT_EQ(upload(), 76u);
    ASSERT_EQ(peer.requests().size(), 1u);
    EXPECT_TRUE(peer.requests()[0].body == content);
    EXPECT_EQ(fake_platform::logLinesWith("timeout stop upload time:3").size(), 1u);
}

/* Its length wraps, the file has nothing to give, and the watchdog ends it. */
TEST_F(SlowServers, APositionBeyondTheEndIsNeverDone)
{
    fake_platform::setDelayHook([](u32, u32) { fake_platform::advance(30000); });
    peer.plan({});
    EXPECT_EQ(PubSecCurlUpLoadFile(peer.url("/store").c_str(), file.path(), (1 << 20) + 1), 76u);
    EXPECT_THAT(curl_shim::callsOf("setopt(POSTFIELDSIZE_LARGE"),
                ElementsAre("setopt(POSTFIELDSIZE_LARGE=4294967295)"));
    EXPECT_EQ(fake_platform::logLinesWith("timeout stop upload time:3000").size(), 1u);
}

} // namespace
