/* SPDX-License-Identifier: Apache-2.0 */
#include "device_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using device::Options;
using device::parseOptions;
using testing::HasSubstr;

namespace
{

/* What is said about arguments that are refused; "" when they are taken. */
std::string complaint(const std::vector<std::string>& arguments)
{
    try
    {
        parseOptions(arguments);
    }
    catch (const device::UsageError& error)
    {
        return error.what();
    }
    return {};
}

} // namespace

TEST(DeviceOptions, Defaults)
{
    const Options options = parseOptions({});
    EXPECT_EQ(options.serverUrl(), "http://127.0.0.1:8080");
    EXPECT_EQ(options.user, "admin");
    EXPECT_EQ(options.password, "viewlib");
    EXPECT_EQ(options.deviceId, "34020000001190000001");
    EXPECT_EQ(options.picture, "samples/portrait.jpg");
    EXPECT_EQ(options.waitSeconds, 20u);
    EXPECT_FALSE(options.help);
}

TEST(DeviceOptions, EveryOptionIsTaken)
{
    const Options options = parseOptions({"--host", "10.2.2.2", "--port=9000", "--https", "--user", "u", "--password",
                                          "p", "--device-id", "11010500001310000007", "--picture", "a.jpg", "--face",
                                          "1,2,30,40", "--wait", "5", "--log", "l"});
    EXPECT_EQ(options.serverUrl(), "https://10.2.2.2:9000");
    EXPECT_EQ(options.user, "u");
    EXPECT_EQ(options.password, "p");
    EXPECT_EQ(options.deviceId, "11010500001310000007");
    EXPECT_EQ(options.picture, "a.jpg");
    EXPECT_EQ(options.face.left, 1);
    EXPECT_EQ(options.face.top, 2);
    EXPECT_EQ(options.face.right, 30);
    EXPECT_EQ(options.face.bottom, 40);
    EXPECT_EQ(options.waitSeconds, 5u);
    EXPECT_EQ(options.logFile, "l");
    EXPECT_TRUE(parseOptions({"-h"}).help);
}

TEST(DeviceOptions, AServerUrl)
{
    EXPECT_EQ(parseOptions({"--server", "http://view.lan:8081/"}).serverUrl(), "http://view.lan:8081");
    EXPECT_EQ(parseOptions({"--server", "http://view.lan"}).serverUrl(), "http://view.lan:80");
    EXPECT_EQ(parseOptions({"--server", "https://view.lan"}).serverUrl(), "https://view.lan:443");
    EXPECT_EQ(complaint({"--server", "view.lan:80"}),
              "--server \"view.lan:80\": expected http://HOST[:PORT] or https://HOST[:PORT]");
    EXPECT_EQ(complaint({"--server", "ftp://view.lan"}),
              "--server \"ftp://view.lan\": expected http://HOST[:PORT] or https://HOST[:PORT]");
    EXPECT_EQ(complaint({"--server", "http://view.lan:0"}), "--server \"0\": expected a whole number from 1 to 65535");
    EXPECT_EQ(complaint({"--server", "http://view.lan/VIID"}),
              "--server \"view.lan/VIID\": expected an IPv4 address or a host name");
    EXPECT_EQ(complaint({"--server", "http://"}), "--server \"\": expected an IPv4 address or a host name");
}

TEST(DeviceOptions, Ports)
{
    EXPECT_EQ(parseOptions({"--port", "1"}).port, 1u);
    EXPECT_EQ(parseOptions({"--port", "65535"}).port, 65535u);
    for (const std::string value : {"0", "65536", "-1", "80a", "", " 80", "99999999999999999999"})
    {
        EXPECT_EQ(complaint({"--port", value}), "--port \"" + value + "\": expected a whole number from 1 to 65535");
    }
}

TEST(DeviceOptions, HostsThatTheSessionsUrlsCanHold)
{
    EXPECT_EQ(complaint({"--host", std::string(28, 'h'), "--port", "65535"}), "");
    EXPECT_EQ(complaint({"--host", std::string(29, 'h'), "--port", "65535"}),
              "--host \"" + std::string(29, 'h') + "\": too long by 1 characters: http://" + std::string(29, 'h') +
                  ":65535/VIID/System/Keepalive may have 63");
    EXPECT_THAT(complaint({"--host", std::string(64, 'h')}), HasSubstr("expected 1 to 63 characters"));
    EXPECT_THAT(complaint({"--host", "::1"}), HasSubstr("expected an IPv4 address or a host name"));
}

TEST(DeviceOptions, TextsThatTheRecordCanHold)
{
    EXPECT_EQ(complaint({"--user", std::string(127, 'u')}), "");
    EXPECT_THAT(complaint({"--user", std::string(128, 'u')}), HasSubstr("expected 1 to 127 characters"));
    EXPECT_EQ(complaint({"--user="}), "--user \"\": expected 1 to 127 characters");
    EXPECT_EQ(complaint({"--password", std::string(127, 'p')}), "");
    EXPECT_EQ(complaint({"--password", std::string(128, 'p')}), "--password: expected 1 to 127 characters");
}

TEST(DeviceOptions, DeviceIdentifiers)
{
    for (const std::string value : {"3402000000119000000", "340200000011900000011", "3402000000119000000x", ""})
    {
        EXPECT_EQ(complaint({"--device-id", value}), "--device-id \"" + value + "\": expected 20 digits");
    }
}

TEST(DeviceOptions, FaceBoxes)
{
    for (const std::string value :
         {"1,2,3", "1,2,3,4,5", "3,2,1,4", "1,4,3,2", "1,2,1,4", "-1,2,3,4", "1,2,3,65536", "1,2,3,x", "1,2,3,", ""})
    {
        EXPECT_EQ(complaint({"--face", value}),
                  "--face \"" + value +
                      "\": expected LEFT,TOP,RIGHT,BOTTOM from 0 to 65535, LEFT below RIGHT and TOP below BOTTOM");
    }
}

TEST(DeviceOptions, Waits)
{
    EXPECT_THAT(complaint({"--wait", "0"}), HasSubstr("expected a whole number from 1 to 600"));
    EXPECT_THAT(complaint({"--wait", "601"}), HasSubstr("expected a whole number from 1 to 600"));
}

TEST(DeviceOptions, ArgumentsThatAreNone)
{
    EXPECT_EQ(complaint({"--colour"}), "unknown argument \"--colour\"");
    EXPECT_EQ(complaint({"8080"}), "unknown argument \"8080\"");
    EXPECT_EQ(complaint({"--"}), "unknown argument \"--\"");
    EXPECT_EQ(complaint({"--port"}), "--port needs a value: N");
    EXPECT_EQ(complaint({"--https=yes"}), "--https takes no value");
}
