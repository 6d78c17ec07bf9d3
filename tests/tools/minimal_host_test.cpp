/* SPDX-License-Identifier: Apache-2.0 */
/* The example is run as it stands in the tree: C, on the shared library. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/program.h"
#include "viewlib/server.h"

using testing::HasSubstr;
using testing::MatchesRegex;

namespace
{

Ended run(viewlib::Server& server)
{
    return runProgram(MINIMAL_HOST, {"127.0.0.1", std::to_string(server.port()), SAMPLE_PICTURE});
}

} // namespace

TEST(MinimalHost, DeliversAFaceAndLeaves)
{
    viewlib::Server server;
    server.start();
    const Ended ended = run(server);
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.errors, "platform 0 at 127.0.0.1: registered\nface: 50 success\n"
                            "platform 0 at 127.0.0.1: not registered\n");
    ASSERT_EQ(server.objects().size(), 1u);
    EXPECT_EQ(server.objects()[0].kind, "Face");
    EXPECT_THAT(server.objects()[0].objectId, MatchesRegex("3402000000119000000102[0-9]{14}000000600000"));
    ASSERT_EQ(server.pictures().size(), 1u);
    EXPECT_TRUE(server.pictures()[0].bytes == contentOf(SAMPLE_PICTURE));
    EXPECT_TRUE(server.registrations().empty());
}

TEST(MinimalHost, TellsARefusedFace)
{
    viewlib::Server server;
    server.script("/VIID/Faces", viewlib::Answer(404));
    server.start();
    const Ended ended = run(server);
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("face: 71 HTTP 404\n"));
    EXPECT_TRUE(server.registrations().empty());
}

TEST(MinimalHost, TellsItsUsage)
{
    const Ended ended = runProgram(MINIMAL_HOST, {"127.0.0.1", "1", "/nowhere/at-all.jpg"});
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.errors, "usage: minimal_host HOST PORT JPEG\n");
}
