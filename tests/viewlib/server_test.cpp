/* SPDX-License-Identifier: Apache-2.0 */
#include "client.h"

#include <viewlib/server.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using client::Call;
using client::Result;

namespace
{

const std::string device = "34020000001190000001";

class ServerTest : public ::testing::Test
{
  protected:
    Result registerAs(const std::string& credentials)
    {
        Call call;
        call.url = server.url("/VIID/System/Register");
        call.headers = {"User-Identify:" + device};
        call.body = R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})";
        call.credentials = credentials;
        return client::perform(call);
    }

    viewlib::Server server;
};

TEST_F(ServerTest, RegistersWithDigest)
{
    server.start();
    const Result result = registerAs("admin:viewlib");
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.status, 200);
    EXPECT_TRUE(server.registered(device));
    EXPECT_EQ(server.exchanges().size(), 2U);
}

} // namespace
