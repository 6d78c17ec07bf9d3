/* SPDX-License-Identifier: Apache-2.0 */
/* Registration, keepalive, time and unregistration, seen by an independent client. */
#include "server_fixture.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>

using namespace std::chrono_literals;
using client::Result;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

const std::string registerPath = "/VIID/System/Register";

class SessionTest : public ServerTest
{
  protected:
    SessionTest()
    {
        config.user = "camera";
        config.password = "secret";
        config.clock = [this] { return std::chrono::system_clock::time_point(m_now.load()); };
    }
    void pass(std::chrono::milliseconds time)
    {
        m_now = m_now.load() + time;
    }
    Result unregisterWith(const std::string& credentials)
    {
        client::Call made =
            call("/VIID/System/UnRegister", R"({"UnRegisterObject":{"DeviceID":"34020000001190000001"}})");
        made.credentials = credentials;
        return client::perform(made);
    }

  private:
    std::atomic<std::chrono::milliseconds> m_now{
        std::chrono::milliseconds(1709222399000)}; /* 2024-02-29 15:59:59 UTC */
};

TEST_F(SessionTest, RegistersAfterOneChallenge)
{
    start();
    const Result result = registerWith("camera:secret");
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusCode"), "0");
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusString"), R"("OK")");
    EXPECT_EQ(at(result.body, "ResponseStatusObject/RequestURL"), R"("/VIID/System/Register")");
    EXPECT_EQ(at(result.body, "ResponseStatusObject/Id"), R"("34020000001190000001")");
    EXPECT_TRUE(server().registered(device));

    const auto exchanges = server().exchangesOf(registerPath);
    ASSERT_EQ(exchanges.size(), 2U);
    EXPECT_EQ(exchanges[0].status, 401U);
    EXPECT_THAT(exchanges[0].answerHeader("WWW-Authenticate"), StartsWith("Digest realm=\"viewlib\""));
    EXPECT_EQ(exchanges[1].status, 200U);
    EXPECT_THAT(exchanges[1].header("Authorization"), StartsWith("Digest username=\"camera\""));
}

TEST_F(SessionTest, RegistersWithSha256WhereItIsOfferedFirst)
{
    config.algorithms = {viewlib::Algorithm::Sha256, viewlib::Algorithm::Md5};
    start();
    EXPECT_EQ(registerWith("camera:secret").status, 200);
    EXPECT_THAT(server().exchangesOf(registerPath).at(1).header("Authorization"), HasSubstr("algorithm=SHA-256"));
}

TEST_F(SessionTest, AWrongPasswordGetsAFreshChallenge)
{
    start();
    EXPECT_EQ(registerWith("camera:wrong").status, 401);
    EXPECT_FALSE(server().registered(device));
    const auto exchanges = server().exchangesOf(registerPath);
    ASSERT_EQ(exchanges.size(), 2U);
    EXPECT_EQ(exchanges[1].status, 401U);
    EXPECT_THAT(exchanges[1].answerHeader("WWW-Authenticate"), StartsWith("Digest realm="));
    EXPECT_NE(exchanges[0].answerHeader("WWW-Authenticate"), exchanges[1].answerHeader("WWW-Authenticate"));
}

TEST_F(SessionTest, WithoutCredentialsNobodyRegisters)
{
    start();
    EXPECT_EQ(registerWith("").status, 401);
    EXPECT_TRUE(server().registrations().empty());
}

TEST_F(SessionTest, AnEmptyUserOpensRegistrationToAll)
{
    config.user.clear();
    start();
    EXPECT_EQ(registerWith("").status, 200);
    EXPECT_TRUE(server().registered(device));
}

TEST_F(SessionTest, AStaleNonceIsChallengedAsStaleAndTheClientGoesOn)
{
    start();
    const client::Handle handle = client::newHandle();
    client::Call made = call(registerPath, R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})");
    made.credentials = "camera:secret";
    EXPECT_EQ(client::perform(handle.get(), made).status, 200);
    pass(301s);
    EXPECT_EQ(client::perform(handle.get(), made).status, 200);
    const auto exchanges = server().exchangesOf(registerPath);
    ASSERT_EQ(exchanges.size(), 4U); /* challenge, accepted; stale, accepted */
    EXPECT_EQ(exchanges[2].status, 401U);
    EXPECT_THAT(exchanges[2].answerHeader("WWW-Authenticate"), HasSubstr("stale=true"));
}

TEST_F(SessionTest, ARepeatedRequestIsAReplay)
{
    start();
    EXPECT_EQ(registerWith("camera:secret").status, 200);
    client::Call again = call(registerPath, R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})");
    again.headers.push_back("Authorization: " + server().exchangesOf(registerPath).at(1).header("Authorization"));
    const Result result = client::perform(again);
    EXPECT_EQ(result.status, 401);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusString"), R"("the nonce count was used before")");
}

TEST_F(SessionTest, RegistrationWantsADocumentWithTheDeviceIdOfTheHeader)
{
    config.user.clear();
    start();
    Result result = post(registerPath, "RegisterObject");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusCode"), "7");
    result = post(registerPath, R"({"RegisterObject":{}})");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusCode"), "8");
    result = post(registerPath, R"({"RegisterObject":{"DeviceID":"34020000001190000002"}})");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusCode"), "8");
    EXPECT_TRUE(server().registrations().empty());
}

TEST_F(SessionTest, ARegistrationWithoutUserIdentifyGoesByItsBody)
{
    config.user.clear();
    start();
    client::Call made = call(registerPath, R"({"RegisterObject":{"DeviceID":"34020000001190000002"}})");
    made.headers.clear();
    EXPECT_EQ(client::perform(made).status, 200);
    EXPECT_TRUE(server().registered("34020000001190000002"));
}

TEST_F(SessionTest, StrangersAreRefusedEverywhere)
{
    start();
    Result result = keepAlive();
    EXPECT_EQ(result.status, 401);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusCode"), "4");
    EXPECT_EQ(client::perform(call("/VIID/System/Time", "", "GET")).status, 401);
    result = postFace();
    EXPECT_EQ(result.status, 401);
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/0/StatusString"),
              R"("device \"34020000001190000001\" is not registered")");
    EXPECT_EQ(post("/VIID/Images/image-1/Data", "Zm9v").status, 401);
    EXPECT_EQ(server().stored().posts, 0U);
}

TEST_F(SessionTest, StrangersAreServedWhenTold)
{
    config.strict.registration = false;
    start();
    EXPECT_EQ(postFace().status, 200);
    EXPECT_EQ(server().stored().posts, 1U);
}

TEST_F(SessionTest, KeepaliveAnswersANumericCode)
{
    start();
    server().registerDevice(device);
    const Result result = keepAlive();
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusCode"), "0");
    EXPECT_THAT(result.headers, testing::Contains("Content-Type: application/VIID+JSON;charset=UTF-8"));
}

TEST_F(SessionTest, KeepalivesExtendARegistrationThatOtherwiseExpires)
{
    start();
    server().registerDevice(device);
    const auto since = server().registrations().at(0).since;
    pass(270s);
    EXPECT_EQ(keepAlive().status, 200);
    pass(270s);
    EXPECT_TRUE(server().registered(device));
    EXPECT_EQ(server().registrations().at(0).since, since);
    EXPECT_EQ(server().registrations().at(0).lastKeepalive, since + 270s);
    EXPECT_EQ(postFace().status, 200);
    pass(1ms);
    EXPECT_FALSE(server().registered(device));
    EXPECT_FALSE(server().registrations().at(0).online);
    EXPECT_EQ(keepAlive().status, 401);
    EXPECT_EQ(postFace().status, 401);
}

TEST_F(SessionTest, TimeIsLocalAndFollowsTheOffset)
{
    ASSERT_EQ(setenv("TZ", "XXX-8", 1), 0);
    tzset();
    start();
    server().registerDevice(device);
    Result result = client::perform(call("/VIID/System/Time", "", "GET"));
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(result.body, R"({"SystemTimeObject":{"VIIDServerID":"44000000005030000001","TimeMode":"1",)"
                           R"("LocalTime":"20240229235959","TimeZone":"UTC+8"}})");
    server().setClockOffset(1s);
    result = client::perform(call("/VIID/System/Time", "", "GET"));
    EXPECT_EQ(at(result.body, "SystemTimeObject/LocalTime"), R"("20240301000000")");
    EXPECT_EQ(unsetenv("TZ"), 0);
    tzset();
}

TEST_F(SessionTest, UnregistersWithDigestOnly)
{
    start();
    server().registerDevice(device);
    EXPECT_EQ(unregisterWith("").status, 401);
    EXPECT_TRUE(server().registered(device));
    const Result result = unregisterWith("camera:secret");
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusCode"), "0");
    EXPECT_FALSE(server().registered(device));
    EXPECT_EQ(unregisterWith("camera:secret").status, 404);
}

TEST_F(SessionTest, ARestartKeepsThePortAndOnRequestTheRegistrations)
{
    start();
    const unsigned port = server().port();
    EXPECT_EQ(registerWith("camera:secret").status, 200);
    server().restart(viewlib::Server::Registrations::Kept);
    EXPECT_EQ(server().port(), port);
    EXPECT_EQ(keepAlive().status, 200);
    server().restart(viewlib::Server::Registrations::Forgotten);
    EXPECT_EQ(server().port(), port);
    EXPECT_EQ(keepAlive().status, 401);
}

TEST_F(SessionTest, NobodyIsServedWhileStopped)
{
    start();
    server().stop();
    EXPECT_FALSE(server().running());
    EXPECT_EQ(keepAlive().code, CURLE_COULDNT_CONNECT);
    start();
    EXPECT_EQ(keepAlive().status, 401);
}

TEST_F(SessionTest, ServesOverHttps)
{
    config.https = true;
    start();
    EXPECT_THAT(server().url(), StartsWith("https://127.0.0.1:"));
    EXPECT_EQ(registerWith("camera:secret").status, 200);
    EXPECT_EQ(postFace().status, 200);
}

TEST_F(SessionTest, ServesOnAnIpv6Address)
{
    config.address = "::1";
    start();
    EXPECT_EQ(server().url("/x"), "http://[::1]:" + std::to_string(server().port()) + "/x");
    EXPECT_EQ(registerWith("camera:secret").status, 200);
    EXPECT_THAT(server().exchanges().at(0).peer, StartsWith("[::1]:"));
}

TEST_F(SessionTest, AnAddressThatCannotBeHadIsNamed)
{
    start();
    viewlib::Config taken;
    taken.port = server().port();
    viewlib::Server second(taken);
    try
    {
        second.start();
        FAIL() << "two servers on one port";
    }
    catch (const std::runtime_error& error)
    {
        EXPECT_EQ(error.what(),
                  "cannot listen on 127.0.0.1:" + std::to_string(taken.port) + ": Address already in use");
    }
    viewlib::Config named;
    named.address = "localhost";
    viewlib::Server third(named);
    EXPECT_THROW(third.start(), std::runtime_error);
}

} // namespace
