/* SPDX-License-Identifier: Apache-2.0 */
/* Sessions in real time at servers that restart, go away or take their time. */
#include "tests/support/session_real.h"

using testing::ElementsAre;
using viewlib::Answer;

namespace
{

class RealRestarts : public RealSession
{
};

TEST_F(RealRestarts, RestartThatForgetsTheDevice)
{
    const auto server = newServer();
    configure(0, recordAt(*server));
    ASSERT_TRUE(server->waitFor(kKeepalive, 1));
    server->restart(viewlib::Server::Registrations::Forgotten);
    EXPECT_FALSE(server->registered(kDevice));
    ASSERT_TRUE(waitFor([&] { return server->registered(kDevice); }));
    ASSERT_TRUE(waitForStatus(0, 1));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0", "0->1"));
}

TEST_F(RealRestarts, ServerGoesAwayAndComesBack)
{
    const auto server = newServer();
    configure(0, recordAt(*server));
    ASSERT_TRUE(server->waitFor(kKeepalive, 1));
    server->stop();
    ASSERT_TRUE(waitForStatus(0, 0));
    server->start();
    ASSERT_TRUE(waitForStatus(0, 1));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0", "0->1"));
}

/* An answer that takes its time holds up the loop and the callbacks, and nothing else. */
TEST_F(RealRestarts, SlowServerHoldsUpOnlyItsOwnCalls)
{
    const auto server = newServer();
    server->script(kRegister, Answer::late(std::chrono::milliseconds(1500)));
    configure(0, recordAt(*server));
    ASSERT_TRUE(waitFor([&] { return linesWith("achRegJson:") == 1; }));
    const auto before = std::chrono::steady_clock::now();
    configure(0, recordAt(*server));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 54u);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(500));
    ASSERT_TRUE(waitForStatus(0, 1));
}

} // namespace
