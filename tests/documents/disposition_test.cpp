/* SPDX-License-Identifier: Apache-2.0 */
/* Disposition notifications, as documents and in trees of the host's. */
#include <memory>
#include <vector>

#include "core/core.h"
#include "core/state.h"
#include "tests/documents/document.h"
#include "tests/support/fake_platform_fixture.h"
#include "tests/support/host_tree.h"

namespace
{

using namespace bare;

using Notifications = std::vector<TPubSecDispoNotifyObj>;

std::string listDocument(const std::string& notifications)
{
    return R"({"DispositionNotificationListObject":{"DispositionNotificationObject":[)" + notifications + "]}}";
}

std::string printed(Notifications& notifications, u32 form)
{
    TPubsecDispositionNotificationList record = {};
    record.wObjectNum = static_cast<u16>(notifications.size());
    record.aptDispoNotifyObj = notifications.data();
    record.dwObjectForm = form;
    return textOf(PubSecDispositionNotificationStructToString(&record));
}

/* The document of one notification in single form. */
std::string printed(const TPubSecDispoNotifyObj& notification)
{
    Notifications notifications(1, notification);
    return printed(notifications, 1);
}

std::string singleDocument(const std::string& more)
{
    const std::string text = notificationText("A1");
    return R"({"DispositionNotificationObject":)" + (more.empty() ? text : with(text, more)) + "}";
}

struct Dispositions : FakePlatformTest
{
    void SetUp() override
    {
        FakePlatformTest::SetUp();
        g_ePubSecStackLogLevel = 1;
        setNotification(*notification, "A1");
    }

    void TearDown() override
    {
        g_ePubSecStackLogLevel = 0;
        FakePlatformTest::TearDown();
    }

    std::unique_ptr<TPubSecDispoNotifyObj> notification = std::make_unique<TPubSecDispoNotifyObj>();
    TPubSecPersonnelObjInfo persons[2] = {person("P1"), person("P2")};
    TPubSecMotorVehicleObjInfo motorVehicles[1] = {motorVehicle("M1")};
    TPubSecFaceObjInfo faces[1] = {face("F1")};
    TPubSecNonMotorVehicleObjInfo nonMotorVehicles[1] = {nonMotorVehicle("N1")};
    TPubSecSubImageInfo images[1] = {subImage("I1")};

    /* An entry with all four kinds, and its text. */
    TPubSecDispositionListObj wholeEntry()
    {
        return {2, persons, 1, motorVehicles, 1, faces, 1, nonMotorVehicles};
    }

    static std::string wholeEntryText()
    {
        return "{" +
               join({list("PersonListObject", "PersonObject", {personText("P1"), personText("P2")}),
                     list("MotorVehicleListObject", "MotorVehicleObject", {motorVehicleText("M1")}),
                     list("FaceListObject", "FaceObject", {faceText("F1")}),
                     list("NonMotorVehicleListObject", "NonMotorVehicleObject", {nonMotorVehicleText("N1")})}) +
               "}";
    }
};

TEST_F(Dispositions, TheFormDecidesBetweenAnObjectAndAList)
{
    Notifications one(1, *notification);
    Notifications two(2, *notification);
    put(two[1].achNotificationID, "A2");
    const std::string first =
        R"({"NotificationID":"A1","DispositionID":"","Title":"","TriggerTime":"","CntObjectID":""})";
    const std::string second =
        R"({"NotificationID":"A2","DispositionID":"","Title":"","TriggerTime":"","CntObjectID":""})";
    EXPECT_EQ(printed(one, 1), R"({"DispositionNotificationObject":)" + first + "}");
    EXPECT_EQ(printed(one, 0), listDocument(first));
    EXPECT_EQ(printed(one, 2), listDocument(first));
    EXPECT_EQ(printed(two, 1), listDocument(first + "," + second));
    EXPECT_EQ(printed(two, 0), listDocument(first + "," + second));
}

TEST_F(Dispositions, EmptyTextsAreWrittenAndTheAlarmClassWithItsFlag)
{
    put(notification->achNotificationID, "");
    notification->nAlarmClass = 3;
    EXPECT_EQ(printed(*notification),
              R"({"DispositionNotificationObject":{"NotificationID":"","DispositionID":"","Title":"","TriggerTime":"",)"
              R"("CntObjectID":""}})");
    put(notification->achNotificationID, "n");
    put(notification->achDispositionID, "d");
    put(notification->achTitle, "Inv"); /* says nothing here */
    put(notification->achTriggerTime, "20260101000000");
    put(notification->achCntObjectID, "o");
    notification->bAlarmClassValid = 1;
    notification->dwPersonNum = 1;
    notification->tPerson = person("P1");
    EXPECT_EQ(printed(*notification),
              R"({"DispositionNotificationObject":{"NotificationID":"n","DispositionID":"d","Title":"Inv",)"
              R"("TriggerTime":"20260101000000","CntObjectID":"o","AlarmClass":3,"PersonObject":)" +
                  personText("P1") + "}}");
}

TEST_F(Dispositions, EmbeddedObjectsInTheirOrder)
{
    TPubSecDispositionListObj entry = wholeEntry();
    notification->tPerson = person("P1");
    notification->tMotorVehicle = motorVehicle("M1");
    notification->tFace = face("F1");
    notification->tNonMotorVehicle = nonMotorVehicle("N1");
    notification->ptDispositionList = &entry;
    notification->dwDispositionNum = 1;
    const std::string list = R"("DispositionListObject":[)" + wholeEntryText() + "]";
    EXPECT_EQ(printed(*notification), singleDocument(list));
    for (const u32 count : {1u, 2u, 256u, 0x10000u})
    {
        notification->dwPersonNum = notification->dwMotorVehicleNum = notification->dwFaceNum =
            notification->dwNonMotorVehicleNum = count; /* each exists once */
        EXPECT_EQ(printed(*notification),
                  singleDocument(R"("PersonObject":)" + personText("P1") + R"(,"FaceObject":)" + faceText("F1") +
                                 R"(,"MotorVehicleObject":)" + motorVehicleText("M1") + R"(,"NonMotorVehicleObject":)" +
                                 nonMotorVehicleText("N1") + "," + list))
            << count;
    }
}

TEST_F(Dispositions, SubImagesNeedAPointerAndANumber)
{
    notification->tFace = face("F1");
    notification->dwFaceNum = 1;
    notification->tFace.ptSubImageList = images;
    for (const s32 count : {0, -1})
    {
        notification->tFace.nSubImageNum = count;
        EXPECT_EQ(printed(*notification), singleDocument(R"("FaceObject":)" + faceText("F1"))) << count;
    }
    notification->tFace.nSubImageNum = 1;
    EXPECT_EQ(printed(*notification),
              singleDocument(R"("FaceObject":)" + with(faceText("F1"), subImages({subImageText("I1")}))));
    faces[0].ptSubImageList = images;
    faces[0].nSubImageNum = 1;
    TPubSecDispositionListObj entry = {0, nullptr, 0, nullptr, 1, faces, 0, nullptr};
    notification->dwFaceNum = 0;
    notification->ptDispositionList = &entry;
    notification->dwDispositionNum = 1;
    EXPECT_EQ(printed(*notification), singleDocument(R"("DispositionListObject":[{)" +
                                                     list("FaceListObject", "FaceObject",
                                                          {with(faceText("F1"), subImages({subImageText("I1")}))}) +
                                                     "}]"));
}

TEST_F(Dispositions, TheListNeedsAPointerAndANumberWhoseLowHalfCounts)
{
    std::vector<TPubSecDispositionListObj> entries(257, TPubSecDispositionListObj());
    notification->dwDispositionNum = 1;
    EXPECT_EQ(printed(*notification), singleDocument(""));
    notification->ptDispositionList = entries.data();
    notification->dwDispositionNum = 0;
    EXPECT_EQ(printed(*notification), singleDocument(""));
    notification->dwDispositionNum = 0x10002;
    EXPECT_EQ(printed(*notification), singleDocument(R"("DispositionListObject":[{},{}])"));
    for (const u32 refused : {0x10000u, 257u})
    {
        notification->dwDispositionNum = refused;
        EXPECT_EQ(printed(*notification), kNone) << refused;
    }
    notification->dwDispositionNum = 256;
    std::string empty = "{}";
    for (u32 entry = 1; entry < 256; ++entry)
    {
        empty += ",{}";
    }
    EXPECT_EQ(printed(*notification), singleDocument(R"("DispositionListObject":[)" + empty + "]"));
}

TEST_F(Dispositions, NoTextWithoutRecordsAndTheLinesThatSaySo)
{
    const auto line = [](const std::string& text) {
        return testing::MatchesRegex(R"(\[PubSecStack ERR\] PubSecDispositionNotificationStructToString:[0-9]+ )" +
                                     text + "\n");
    };
    const auto address = [](const void* pointer) {
        char text[32];
        std::snprintf(text, sizeof(text), "0x%p", pointer);
        std::string escaped;
        for (const char* at = text; *at != '\0'; ++at)
        {
            escaped += std::string(*at == '(' || *at == ')' ? "\\" : "") + *at;
        }
        return escaped;
    };
    TPubsecDispositionNotificationList record = {};
    const auto refused = [&](u16 count, TPubSecDispoNotifyObj* objects) {
        record.wObjectNum = count;
        record.aptDispoNotifyObj = objects;
        EXPECT_EQ(PubSecDispositionNotificationStructToString(&record), nullptr);
        const std::vector<std::string> lines = fake_platform::logLines();
        ASSERT_FALSE(lines.empty());
        EXPECT_THAT(lines.back(), line(R"(input param invalid\(ptList=)" + address(&record) +
                                       ", ptList->aptDispoNotifyObj=" + address(objects) +
                                       ",ptList->wObjectNum=" + std::to_string(count) + R"(\)\.)"));
    };
    EXPECT_EQ(PubSecDispositionNotificationStructToString(nullptr), nullptr);
    EXPECT_THAT(fake_platform::logLines(),
                testing::ElementsAre(line(R"(input param invalid\(ptList=)" + address(nullptr) + R"(\)\.)")));
    refused(1, nullptr);
    refused(0, notification.get());
    refused(257, notification.get());
    EXPECT_EQ(fake_platform::logLines().size(), 4u);
    g_ePubSecStackLogLevel = 0;
    EXPECT_EQ(PubSecDispositionNotificationStructToString(nullptr), nullptr);
    EXPECT_EQ(PubSecDispositionNotificationStructToString(&record), nullptr);
    EXPECT_EQ(fake_platform::logLines().size(), 4u);
}

TEST_F(Dispositions, TwoHundredAndFiftySixNotifications)
{
    Notifications many(256, *notification);
    std::string texts = notificationText("A1");
    for (u32 more = 1; more < 256; ++more)
    {
        texts += "," + notificationText("A1");
    }
    EXPECT_EQ(printed(many, 0), listDocument(texts));
}

/* ------------------------------------------------------------------------------------------ trees of the host's */

struct HostTrees : Dispositions
{
    ~HostTrees() override
    {
        cJSON_Delete(tree);
    }

    std::string text()
    {
        return textOf(cJSON_PrintUnformatted(tree));
    }

    /* The tree for the next case. */
    void renew()
    {
        cJSON_Delete(tree);
        tree = cJSON_CreateObject();
    }

    cJSON* tree = cJSON_CreateObject();
};

TEST_F(HostTrees, NotificationsRefuseBadArguments)
{
    EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(nullptr, 1, 1, notification.get()), 80u);
    EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(tree, 1, 1, nullptr), 80u);
    EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(tree, 1, 0, notification.get()), 80u);
    EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(tree, 0, 257, notification.get()), 80u);
    EXPECT_EQ(text(), "{}");
}

TEST_F(HostTrees, DispositionListsRefuseBadArguments)
{
    TPubSecDispositionListObj entry = {};
    EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(nullptr, 0, 1, &entry), 80u);
    EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, 0, 1, nullptr), 80u);
    EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, 0, 0, &entry), 80u);
    EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, 0, 257, &entry), 80u);
    EXPECT_EQ(text(), "{}");
}

TEST_F(HostTrees, NotificationsFollowWhatTheHostHasThere)
{
    cJSON_AddNumberToObject(tree, "mine", 1);
    EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(tree, 1, 1, notification.get()), 50u);
    EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(tree, 0, 1, notification.get()), 50u);
    EXPECT_EQ(text(), R"({"mine":1,"DispositionNotificationObject":)" + notificationText("A1") +
                          R"(,"DispositionNotificationListObject":{"DispositionNotificationObject":[)" +
                          notificationText("A1") + "]}}");
    EXPECT_EQ(extraordinaryIn(tree), "");
}

TEST_F(HostTrees, TheFormOfADispositionListIsIgnored)
{
    const TPubSecDispositionListObj entries[2] = {wholeEntry(), {}};
    for (const u32 form : {0u, 1u, 2u})
    {
        renew();
        EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, form, 1, entries), 50u);
        EXPECT_EQ(text(), R"({"DispositionListObject":[)" + wholeEntryText() + "]}") << form;
        EXPECT_EQ(extraordinaryIn(tree), "");
    }
    renew();
    EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, 0, 2, entries), 50u);
    EXPECT_EQ(text(), R"({"DispositionListObject":[)" + wholeEntryText() + ",{}]}");
}

TEST_F(HostTrees, TheFirstBadKindEndsADispositionList)
{
    struct
    {
        const char* name;
        TPubSecDispositionListObj entry;
        std::string text; /* of the entry, as far as it came */
    } const cases[] = {
        {"person without array", {1, nullptr, 1, motorVehicles, 0, nullptr, 0, nullptr}, "{}"},
        {"257 persons", {257, persons, 1, motorVehicles, 0, nullptr, 0, nullptr}, "{}"},
        {"persons whose low half is 0", {0x10000, persons, 1, motorVehicles, 0, nullptr, 0, nullptr}, "{}"},
        {"motor vehicle without array", {0, nullptr, 1, nullptr, 1, faces, 0, nullptr}, "{}"},
        {"face without array",
         {0, nullptr, 1, motorVehicles, 1, nullptr, 1, nonMotorVehicles},
         "{" + list("MotorVehicleListObject", "MotorVehicleObject", {motorVehicleText("M1")}) + "}"},
        {"non-motor vehicle without array",
         {0, nullptr, 0, nullptr, 1, faces, 1, nullptr},
         "{" + list("FaceListObject", "FaceObject", {faceText("F1")}) + "}"},
    };
    for (const auto& one : cases)
    {
        renew();
        const TPubSecDispositionListObj entries[3] = {{}, one.entry, {}};
        EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, 0, 3, entries), 80u) << one.name;
        EXPECT_EQ(text(), R"({"DispositionListObject":[{},)" + one.text + "]}") << one.name;
    }
}

TEST_F(HostTrees, OnlyTheLowHalfOfACountIsTheNumber)
{
    const TPubSecDispositionListObj entry = {0x10001,    persons, 0, motorVehicles,
                                             0xABCD0001, faces,   0, nonMotorVehicles};
    EXPECT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, 0, 1, &entry), 50u);
    EXPECT_EQ(text(), R"({"DispositionListObject":[{)" +
                          join({list("PersonListObject", "PersonObject", {personText("P1")}),
                                list("FaceListObject", "FaceObject", {faceText("F1")})}) +
                          "}]}");
}

TEST_F(HostTrees, TheFirstBadNotificationEndsTheList)
{
    Notifications notifications(3, *notification);
    TPubSecDispositionListObj bad = {1, nullptr, 0, nullptr, 0, nullptr, 0, nullptr};
    notifications[1].ptDispositionList = &bad;
    notifications[1].dwDispositionNum = 1;
    EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(tree, 0, 3, notifications.data()), 80u);
    EXPECT_EQ(text(), listDocument(notificationText("A1") + "," +
                                   with(notificationText("A1"), R"("DispositionListObject":[{}])")));
    EXPECT_EQ(printed(notifications, 0), kNone);
}

/* The tree outlives the records, and what the host refers to stays a reference. */
TEST_F(HostTrees, OwnTheirTexts)
{
    char hostText[] = "before";
    cJSON_AddItemToObject(tree, "mine", cJSON_CreateStringReference(hostText));
    {
        auto records = std::make_unique<TPubSecDispoNotifyObj>(*notification);
        std::memset(records->achTitle, 't', sizeof(records->achTitle)); /* has no terminator */
        std::string data = "QUJD";
        TPubSecSubImageInfo image = subImage("I1");
        image.pchData = data.data();
        TPubSecFaceObjInfo someFaces[1] = {face("F1")};
        someFaces[0].ptSubImageList = &image;
        someFaces[0].nSubImageNum = 1;
        TPubSecDispositionListObj entry = {0, nullptr, 0, nullptr, 1, someFaces, 0, nullptr};
        records->ptDispositionList = &entry;
        records->dwDispositionNum = 1;
        records->tPerson = person("P1");
        records->dwPersonNum = 1;
        ASSERT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(tree, 1, 1, records.get()), 50u);
        ASSERT_EQ(PubSecDispositionListObjectStructToJsonObject(tree, 0, 1, &entry), 50u);
        std::memset(static_cast<void*>(records.get()), 'x', sizeof(*records));
        std::memset(static_cast<void*>(&image), 'x', sizeof(image));
        std::memset(static_cast<void*>(someFaces), 'x', sizeof(someFaces));
        data = "xxxx";
    }
    std::memcpy(hostText, "behind", sizeof(hostText));
    const std::string dispositions =
        R"("DispositionListObject":[{"FaceListObject":{"FaceObject":[)" +
        with(faceText("F1"), subImages({R"({"ImageID":"I1","Type":"","FileFormat":"","Data":"QUJD"})"})) + "]}}]";
    EXPECT_EQ(text(), R"({"mine":"behind","DispositionNotificationObject":{"NotificationID":"A1","DispositionID":"",)"
                      R"("Title":")" +
                          std::string(257, 't') + R"(","TriggerTime":"","CntObjectID":"","PersonObject":)" +
                          personText("P1") + "," + dispositions + "}," + dispositions + "}");
}

/* ------------------------------------------------------------------------ objects of one kind in the host's trees */

using AddObjects = u32 (*)(cJSON* tree, u32 mode, u16 count, const void* records);

template <typename Record, u32 (*Add)(cJSON*, u32, u16, const Record*)>
u32 add(cJSON* tree, u32 mode, u16 count, const void* records)
{
    return Add(tree, mode, count, static_cast<const Record*>(records));
}

/* Records of a kind, their keys and their texts. */
struct Kind
{
    const char* name;
    AddObjects add;
    std::shared_ptr<void> records; /* 256 of the same */
    size_t size;
    const char* object;
    const char* list;
    std::string text;
};

template <typename Record, u32 (*Add)(cJSON*, u32, u16, const Record*)>
Kind kindOf(const char* name, const Record& record, const char* object, const char* list, const std::string& text)
{
    std::shared_ptr<Record[]> records(new Record[256]);
    std::fill_n(records.get(), 256, record);
    return {name, add<Record, Add>, records, sizeof(Record), object, list, text};
}

std::vector<Kind> kinds()
{
    return {
        kindOf<TPubSecFaceObjInfo, PubSecFaceObjectStructToJsonObject>("Face", face("F1"), "FaceObject",
                                                                       "FaceListObject", faceText("F1")),
        kindOf<TPubSecPersonnelObjInfo, PubSecPersonObjectStructToJsonObject>("Person", person("P1"), "PersonObject",
                                                                              "PersonListObject", personText("P1")),
        kindOf<TPubSecMotorVehicleObjInfo, PubSecMotorVehicleObjectStructToJsonObject>(
            "MotorVehicle", motorVehicle("M1"), "MotorVehicleObject", "MotorVehicleListObject", motorVehicleText("M1")),
        kindOf<TPubSecNonMotorVehicleObjInfo, PubSecNonMotorVehicleObjectStructToJsonObject>(
            "NonMotorVehicle", nonMotorVehicle("N1"), "NonMotorVehicleObject", "NonMotorVehicleListObject",
            nonMotorVehicleText("N1"))};
}

struct KindsInTrees : testing::TestWithParam<Kind>
{
    ~KindsInTrees() override
    {
        cJSON_Delete(tree);
    }

    std::string text()
    {
        EXPECT_EQ(extraordinaryIn(tree), "");
        return textOf(cJSON_PrintUnformatted(tree));
    }

    cJSON* tree = cJSON_CreateObject();
};

INSTANTIATE_TEST_SUITE_P(Kinds, KindsInTrees, testing::ValuesIn(kinds()),
                         [](const testing::TestParamInfo<Kind>& parameter) { return parameter.param.name; });

TEST_P(KindsInTrees, ModeOneWithOneRecordIsTheObjectItself)
{
    const Kind& kind = GetParam();
    EXPECT_EQ(kind.add(tree, 1, 1, kind.records.get()), 50u);
    EXPECT_EQ(text(), std::string("{\"") + kind.object + "\":" + kind.text + "}");
}

TEST_P(KindsInTrees, AnyOtherCombinationIsAList)
{
    const Kind& kind = GetParam();
    EXPECT_EQ(kind.add(tree, 0, 1, kind.records.get()), 50u);
    EXPECT_EQ(kind.add(tree, 1, 2, kind.records.get()), 50u);
    EXPECT_EQ(kind.add(tree, 2, 1, kind.records.get()), 50u);
    EXPECT_EQ(text(), root(join({list(kind.list, kind.object, {kind.text}),
                                 list(kind.list, kind.object, {kind.text, kind.text}),
                                 list(kind.list, kind.object, {kind.text})})));
}

TEST_P(KindsInTrees, OneTo256RecordsAreTaken)
{
    const Kind& kind = GetParam();
    EXPECT_EQ(kind.add(nullptr, 0, 1, kind.records.get()), 80u);
    EXPECT_EQ(kind.add(tree, 0, 1, nullptr), 80u);
    EXPECT_EQ(kind.add(tree, 1, 0, kind.records.get()), 80u);
    EXPECT_EQ(kind.add(tree, 0, 257, kind.records.get()), 80u);
    EXPECT_EQ(text(), "{}");
    EXPECT_EQ(kind.add(tree, 0, 256, kind.records.get()), 50u);
    EXPECT_EQ(text().size(), root(list(kind.list, kind.object, {})).size() + 256 * kind.text.size() + 255);
}

TEST_P(KindsInTrees, TextsAreCopied)
{
    const Kind& kind = GetParam();
    ASSERT_EQ(kind.add(tree, 1, 1, kind.records.get()), 50u);
    ASSERT_EQ(kind.add(tree, 0, 1, kind.records.get()), 50u);
    const std::string before(static_cast<const char*>(kind.records.get()), kind.size);
    std::memset(kind.records.get(), 'x', kind.size);
    EXPECT_EQ(text(), std::string("{\"") + kind.object + "\":" + kind.text + "," +
                          list(kind.list, kind.object, {kind.text}) + "}");
    std::memcpy(kind.records.get(), before.data(), kind.size);
}

} // namespace
