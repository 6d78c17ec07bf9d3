/* SPDX-License-Identifier: Apache-2.0 */
/* Sessions in real time at servers that redirect or refuse. */
#include "tests/support/session_real.h"

using testing::ElementsAre;
using viewlib::Answer;

namespace
{

class RealFaults : public RealSession
{
};

TEST_F(RealFaults, RedirectAndTheWayBack)
{
    const auto first = newServer();
    const auto second = newServer();
    first->script(kRegister, Answer::redirect(302, second->url(kRegister)));
    configure(0, recordAt(*first));
    ASSERT_TRUE(waitForStatus(0, 1));
    EXPECT_TRUE(second->registered(kDevice));
    EXPECT_FALSE(first->registered(kDevice));
    ASSERT_TRUE(second->waitFor(kKeepalive, 2));

    second->script(kKeepalive, Answer(200, "{\"ResponseStatusObject\":{\"StatusCode\":10}}"));
    ASSERT_TRUE(waitFor([&] { return first->registered(kDevice); }));
    EXPECT_TRUE(waitFor([&] { return !second->registered(kDevice); }));
    ASSERT_TRUE(first->waitFor(kKeepalive, 2));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0", "0->1"));
}

TEST_F(RealFaults, KeepalivesFailAndRecover)
{
    const auto server = newServer();
    configure(0, recordAt(*server));
    ASSERT_TRUE(server->waitFor(kKeepalive, 1));
    server->clearExchanges();
    server->always(kKeepalive, Answer(500));
    ASSERT_TRUE(waitForStatus(0, 0));
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 3u);
    server->clearScripts();
    ASSERT_TRUE(waitForStatus(0, 1));
    server->clearExchanges();
    ASSERT_TRUE(server->waitFor(kKeepalive, 2));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0", "0->1"));
}

TEST_F(RealFaults, TwoFailedKeepalivesAreSurvived)
{
    const auto server = newServer();
    server->script(kKeepalive, Answer(500));
    server->script(kKeepalive, Answer::broken(viewlib::Cut::Reset));
    configure(0, recordAt(*server));
    ASSERT_TRUE(server->waitFor(kKeepalive, 4));
    EXPECT_THAT(told(), ElementsAre("0->1"));
}

} // namespace
