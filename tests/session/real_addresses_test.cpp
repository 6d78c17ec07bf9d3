/* SPDX-License-Identifier: Apache-2.0 */
/* Sessions in real time with HTTPS and with addresses of IPv6: which of them last. */
#include "tests/support/session_real.h"

using testing::ElementsAre;

namespace
{

class RealAddresses : public RealSession
{
};

/* One with a certificate that nobody signed, one with an address of IPv6. */
TEST_F(RealAddresses, TwoPlatformsAtTwoServers)
{
    viewlib::Config secure;
    secure.https = true;
    viewlib::Config far;
    far.address = "::1";
    far.password = "another";
    const auto first = newServer(secure);
    const auto second = newServer(far);

    TPubSecPlatRegInfo one = recordAt(*first);
    one.dwHttpsEnable = 1;
    TPubSecPlatRegInfo two = recordAt(*second);
    setText(two.achServerIP, "[0:0:0:0:0:0:0:1]");
    setText(two.achDeviceID, "44010000001190000002");
    setText(two.achPassword, "another");
    two.dwSyncTimeMin = 1;
    configure(0, one);
    configure(1, two);
    ASSERT_TRUE(waitForStatus(0, 1));
    ASSERT_TRUE(waitForStatus(1, 1));
    EXPECT_TRUE(first->waitFor(kKeepalive, 2));
    EXPECT_TRUE(second->waitFor(kKeepalive, 2));
    EXPECT_TRUE(second->waitFor(kTime, 1));

    one.dwEnable = 0;
    two.dwEnable = 0;
    configure(0, one);
    configure(1, two);
    ASSERT_TRUE(waitForStatus(0, 0));
    ASSERT_TRUE(waitForStatus(1, 0));
    EXPECT_TRUE(waitFor([&] { return !first->registered(kDevice) && !second->registered("44010000001190000002"); }));
    EXPECT_EQ(second->exchangesOf(kKeepalive)[0].header("Host"), "[::1]:" + std::to_string(second->port()));
    for (const auto& server : {first.get(), second.get()})
    {
        for (const viewlib::Exchange& exchange : server->exchanges())
        {
            EXPECT_TRUE(exchange.status == 200 || (exchange.status == 401 && !exchange.hasHeader("Authorization")))
                << exchange.path << " " << exchange.status;
        }
    }
}

/* Only registrations bracket an address, so a bare one of IPv6 is registered, sends no keepalive, and is lost. */
TEST_F(RealAddresses, BareIPv6AddressIsLostAfterThreeKeepalives)
{
    viewlib::Config config;
    config.address = "::1";
    const auto server = newServer(config);
    TPubSecPlatRegInfo info = recordAt(*server);
    setText(info.achServerIP, "::1");
    configure(0, info);
    ASSERT_TRUE(waitForStatus(0, 1));
    ASSERT_TRUE(waitForStatus(0, 0));
    EXPECT_EQ(linesWith("plat[0] keepalive timeout."), 1u);
    EXPECT_EQ(server->exchangesOf(kKeepalive).size(), 0u);
    ASSERT_TRUE(waitForStatus(0, 1));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0", "0->1"));
}

/* With "::" in it the bracketed form is bracketed once more. */
TEST_F(RealAddresses, BracketedShortIPv6AddressNeverRegisters)
{
    viewlib::Config config;
    config.address = "::1";
    const auto server = newServer(config);
    TPubSecPlatRegInfo info = recordAt(*server);
    setText(info.achServerIP, "[::1]");
    configure(0, info);
    ASSERT_TRUE(waitFor([] { return linesWith("curl_easy_perform no auth Ret:3,failed: ") >= 2; }));
    EXPECT_EQ(server->exchanges().size(), 0u);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);
}

} // namespace
