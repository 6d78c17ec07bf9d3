/* SPDX-License-Identifier: Apache-2.0 */
/* The post of disposition notifications tests its arguments and words its refusals itself. */
#include "tests/support/transfer_fixture.h"
#include "tests/support/transfer_records.h"

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kName = "PubSecPostDispositionNotification";

struct DispositionPost : TransferTest
{
    void SetUp() override
    {
        TransferTest::SetUp();
        connect();
        logAt(1);
        bare::setNotification(*notification, "A1");
    }

    static std::string refusal(const std::string& platform, const void* list)
    {
        char text[64];
        std::snprintf(text, sizeof(text), "ptList=%p).", list);
        return "input param error(nPlatID=" + platform + "," + text;
    }

    std::unique_ptr<TPubSecDispoNotifyObj> notification = std::make_unique<TPubSecDispoNotifyObj>();
    TPubsecDispositionNotificationList list = {1, notification.get(), 0};
};

TEST_F(DispositionPost, TestsItsArgumentsBeforeTheRegistration)
{
    g_bPubSecRegStatus[0] = g_bPubSecRegStatus[1] = 0;
    EXPECT_EQ(PubSecPostDispositionNotification(0, nullptr), 80u);
    EXPECT_THAT(newErrors(kName), ElementsAre(refusal("0", nullptr)));
    EXPECT_EQ(PubSecPostDispositionNotification(2, &list), 80u);
    EXPECT_THAT(newErrors(kName), ElementsAre(refusal("2", &list)));
    EXPECT_EQ(PubSecPostDispositionNotification(0xFFFFFFFF, nullptr), 80u);
    EXPECT_THAT(newErrors(kName), ElementsAre(refusal("-1", nullptr)));
    EXPECT_EQ(PubSecPostDispositionNotification(1, &list), 54u);
    EXPECT_THAT(newErrors(kName), ElementsAre("pubsec1 is not registed)."));
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
}

TEST_F(DispositionPost, AListThatMakesNoDocumentIsNotSent)
{
    for (const u16 count : {u16{0}, u16{257}})
    {
        list.wObjectNum = count;
        EXPECT_EQ(PubSecPostDispositionNotification(0, &list), 51u) << count;
    }
    list = {1, nullptr, 0};
    EXPECT_EQ(PubSecPostDispositionNotification(0, &list), 51u);
    EXPECT_EQ(fake_platform::logLinesWith("PubSecDispositionNotificationStructToString").size(), 3u);
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
    EXPECT_THAT(server.exchanges(), IsEmpty());
}

TEST_F(DispositionPost, TheListFormIsSentToo)
{
    answer(200);
    EXPECT_EQ(PubSecPostDispositionNotification(0, &list), 50u);
    EXPECT_THAT(curl_shim::sentBodies(),
                ElementsAre(R"({"DispositionNotificationListObject":{"DispositionNotificationObject":[)" +
                            bare::notificationText("A1") + "]}}"));
}

} // namespace
