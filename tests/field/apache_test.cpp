/* SPDX-License-Identifier: Apache-2.0 */
/* Digest authentication and whole sessions at a server that this project has not written. */
#include <memory>

#include "tests/support/session_apache.h"
#include "tests/support/session_real.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace
{

constexpr const char* kRegisterBody =
    "POST /VIID/System/Register {\"RegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}";
constexpr const char* kUnRegisterBody =
    "POST /VIID/System/UnRegister {\"UnRegisterObject\":{\"DeviceID\":\"44010000001190000001\"}}";
constexpr const char* kKeepaliveBody =
    "POST /VIID/System/Keepalive {\"KeepaliveObject\":{\"DeviceID\":\"44010000001190000001\"}}";

class FieldApache : public RealSession
{
  protected:
    void SetUp() override
    {
        RealSession::SetUp();
        if (!Apache::installed())
        {
            GTEST_SKIP() << "Debian's package apache2-bin is not installed";
        }
        apache = std::make_unique<Apache>();
        ASSERT_TRUE(apache->running()) << apache->log();
        param = paramFor(apache->port());
    }

    std::unique_ptr<Apache> apache;
    TPubSecRegParam param = {};
};

TEST_F(FieldApache, RightPassword)
{
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(apache->bodies(), ElementsAre(kRegisterBody));
    EXPECT_TRUE(waitFor([&] { return apache->requests().size() == 2; }));
    EXPECT_THAT(apache->requests(),
                ElementsAre("POST /VIID/System/Register 401 -", "POST /VIID/System/Register 200 admin"));
}

TEST_F(FieldApache, WrongPassword)
{
    setText(param.achPassword, "wrong");
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    EXPECT_THAT(apache->bodies(), IsEmpty());
    EXPECT_TRUE(waitFor([&] { return apache->requests().size() == 3; }));
    EXPECT_THAT(apache->requests(), Not(Contains("POST /VIID/System/Register 200 admin")));
}

TEST_F(FieldApache, UnknownUser)
{
    setText(param.achUserName, "nobody");
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    EXPECT_THAT(apache->bodies(), IsEmpty());
}

TEST_F(FieldApache, TestRegisterAndUnRegister)
{
    EXPECT_EQ(PubSecStackTestRegister(&param), 50u);
    EXPECT_THAT(apache->bodies(), ElementsAre(kRegisterBody, kUnRegisterBody));
}

TEST_F(FieldApache, WholeSession)
{
    TPubSecPlatRegInfo info = recordFor(apache->port());
    info.dwKeepaliveSec = 1;
    info.dwSyncTimeMin = 1;
    setText(info.achPassword, "wrong");
    configure(0, info);
    ASSERT_TRUE(waitFor([&] { return apache->requests().size() >= 3; }));
    EXPECT_EQ(PubSecGetRegisterStatus(0), 0u);

    setText(info.achPassword, "viewlib");
    configure(0, info);
    ASSERT_TRUE(waitForStatus(0, 1));
    ASSERT_TRUE(waitFor([] { return linesWith("_PubSecKeepAliveParseJson: StatusCode:0") >= 2; }));
    EXPECT_EQ(linesWith("NvrSysSetSystemTime is fail!eNvrRet:1000"), 1u); /* which is how a set clock is reported */

    info.dwEnable = 0;
    configure(0, info);
    ASSERT_TRUE(waitFor([] { return linesWith("UnRegister Success!") == 1; }));
    EXPECT_THAT(told(), ElementsAre("0->1", "0->0"));
    EXPECT_THAT(apache->bodies(), Contains(kKeepaliveBody));
    EXPECT_THAT(apache->bodies(), Contains("GET /VIID/System/Time "));
    EXPECT_EQ(apache->bodies().back(), kUnRegisterBody);
    EXPECT_EQ(linesWith("unreg RetCode="), 0u);
}

} // namespace
