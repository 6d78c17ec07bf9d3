/* SPDX-License-Identifier: Apache-2.0 */
/* The whole life of a session in real time. */
#include <chrono>
#include <cstdlib>

#include <pubsecplatform_posix.h>

#include "tests/support/session_real.h"

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class RealLife : public RealSession
{
};

int64_t millisecondsSince1970()
{
    return std::chrono::duration_cast<milliseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

TEST_F(RealLife, FromAWrongPasswordToTheUnregistration)
{
    const auto server = newServer();
    TPubSecPlatRegInfo info = recordAt(*server);
    setText(info.achPassword, "wrong");
    configure(0, info);
    ASSERT_TRUE(server->waitFor(kRegister, 6)); /* two passes: with the digest, which takes two, and without */
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_FALSE(server->registered(kDevice));

    setText(info.achPassword, "viewlib");
    configure(0, info);
    ASSERT_TRUE(waitForStatus(0, 1));
    EXPECT_TRUE(server->registered(kDevice));
    ASSERT_TRUE(server->waitFor(kKeepalive, 2));
    const std::vector<viewlib::Exchange> alive = server->exchangesOf(kKeepalive);
    EXPECT_EQ(alive[0].status, 200u);
    const auto pause = alive[1].arrived - alive[0].arrived;
    EXPECT_GE(pause, milliseconds(990));
    EXPECT_LT(pause, milliseconds(1900));

    /* Another period keeps the session; the keepalive comes half a second after the pass. */
    info.dwKeepaliveSec = 3600;
    configure(0, info);
    const size_t before = server->exchangesOf(kKeepalive).size();
    ASSERT_TRUE(server->waitFor(kKeepalive, before + 1));
    EXPECT_EQ(linesWith("config change,start unreg."), 0u);

    info.dwEnable = 0;
    configure(0, info);
    ASSERT_TRUE(waitForStatus(0, 0));
    ASSERT_TRUE(server->waitFor(kUnRegister, 2));
    ASSERT_TRUE(waitFor([&] { return !server->registered(kDevice); }));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0"));
}

/* The device follows the server's clock, 400 days ago; the machine stays in its own time. */
TEST_F(RealLife, ClockOfTheDeviceAndOfTheMachine)
{
    const int64_t machineBefore = millisecondsSince1970();
    const auto steadyBefore = std::chrono::steady_clock::now();
    const auto server = newServer();
    const std::chrono::hours offset(-400 * 24);
    server->setClockOffset(offset);
    TPubSecPlatRegInfo info = recordAt(*server);
    info.dwSyncTimeMin = 1;
    configure(0, info);
    ASSERT_TRUE(server->waitFor(kTime, 1));
    const int64_t shift = std::chrono::duration_cast<milliseconds>(offset).count();
    EXPECT_TRUE(waitFor([&] {
        const int64_t difference = PosixPlatformDeviceClockMs() - (millisecondsSince1970() + shift);
        return std::llabs(difference) < 2500;
    }));
    const int64_t passed =
        std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - steadyBefore).count();
    EXPECT_LT(std::llabs(millisecondsSince1970() - machineBefore - passed), 1000);
}

TEST_F(RealLife, HostUnregistersAndIsRegisteredAgain)
{
    const auto server = newServer();
    configure(0, recordAt(*server));
    ASSERT_TRUE(waitForStatus(0, 1));
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    ASSERT_TRUE(waitForStatus(0, 1));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0", "0->1"));
    server->clearExchanges();
    ASSERT_TRUE(server->waitFor(kKeepalive, 3));
    const std::vector<viewlib::Exchange> alive = server->exchangesOf(kKeepalive);
    EXPECT_GE(alive[2].arrived - alive[1].arrived, milliseconds(990)); /* one chain, not two */
}

TEST_F(RealLife, TestCallsBesideASession)
{
    const auto server = newServer();
    configure(0, recordAt(*server));
    ASSERT_TRUE(waitForStatus(0, 1));
    TPubSecRegParam param = paramFor(server->port());
    setText(param.achDeviceID, "44010000001190000009");
    EXPECT_EQ(PubSecStackTestRegister(&param), 50u);
    setText(param.achPassword, "wrong");
    EXPECT_EQ(PubSecStackTestRegister(&param), 51u);
    TPubSecSystemTime time = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &time), 50u);
    EXPECT_THAT(told(), ElementsAre("0->1"));
    EXPECT_TRUE(server->registered(kDevice));
}

} // namespace
