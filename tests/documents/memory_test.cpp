/* SPDX-License-Identifier: Apache-2.0 */
/* Every allocation of every builder fails in turn: a document is whole in its skeleton or there is none. */
#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <pubsecstack/documents.h>

#include "tests/documents/allocations.h"
#include "tests/documents/document.h"

namespace
{

using namespace bare;

/* A builder with its records, and what no document of it lacks. */
struct Builder
{
    const char* name;
    std::function<char*()> build;
    std::vector<std::string> skeleton;
};

struct Records
{
    Records()
    {
        std::memset(device.achDeviceID, 'd', sizeof(device.achDeviceID)); /* has no terminator */
        documents.ptVideoSlice = &someSlice;
        documents.ptFile = &someFile;
        documents.ptFace = &someFace;
        documents.ptIllegalRecord = &violation;
        documents.ptNonMotorIllegalRecord = &nonMotorViolation;
        documents.nVideoSliceNum = documents.nFaceNum = documents.nFileNum = documents.nFileFaceNum = 1;
        documents.dwNonMotorIllegalRecordNum = 1;
        documents.pchData = "QUJD";
        someFace.ptSubImageList = violation.ptSubImageList = nonMotorViolation.ptSubImageList = &image;
        someFace.nSubImageNum = 1;
        violation.dwSubImageNum = 1;
        violation.dwIllegalRecordNum = 1;
        nonMotorViolation.wSubImageNum = 1;
        access.dwRecordNum = 1;
        imei.dwImeiNum = 1;
        wifi = {1, &device, &user, &imei};
        rfid = {1, &reader, &tag};
        notification->dwFaceNum = 1;
        notification->tFace = face("F1");
        notification->ptDispositionList = &entry;
        notification->dwDispositionNum = 1;
        notifications = {1, notification.get(), 0};
    }

    TPubSecSubImageInfo image = subImage("I1");
    TPubSecVideoSliceInfo someSlice = slice("V1");
    TPubSecFileInfo someFile = file("D1");
    TPubSecFaceObjInfo someFace = face("F1");
    TPubSecIllegalRecordInfo violation = illegalRecord("R1");
    TPubSecNonMotorIllegalRecordInfo nonMotorViolation = nonMotorIllegalRecord("Q1");
    TPubSecVideoSliceObj documents = {};
    TPubSecAccessRecordInfo access = accessRecord("A1");
    TPubSecGpsInfo position = gps("G1");
    TPubSecWifiDeviceInfo device = wifiDevice("W1");
    TPubSecWifiUserInfo user = wifiUser("U1");
    TPubSecWifiImeiInfo imei = wifiImei("E1");
    TPubSecWifiData wifi = {};
    TPubSecRFIDDeviceInfo reader = rfidDevice("X1");
    TPubSecRFIDUserInfo tag = rfidUser("Y1");
    TPubSecRFIDData rfid = {};
    TPubSecLogInfo event = logEvent("L1");
    TPubSecDispositionListObj entry = {0, nullptr, 0, nullptr, 1, &someFace, 0, nullptr};
    std::unique_ptr<TPubSecDispoNotifyObj> notification = std::make_unique<TPubSecDispoNotifyObj>();
    TPubsecDispositionNotificationList notifications = {};
};

Records& records()
{
    static Records only;
    return only;
}

std::vector<Builder> builders()
{
    Records& from = records();
    return {
        {"VideoSlice", [&] { return _PubSecVideoSliceGatherJSON(&from.documents); }, {"VideoSliceListObject"}},
        {"File", [&] { return _PubSecFileGatherJSON(&from.documents); }, {"FileListObject"}},
        {"VideoData", [] { return _PubSecVideoDataJSON("QUJD"); }, {"VideoDataObject"}},
        {"LongVideoData",
         [] {
             static const std::string data(10000, 'A');
             return _PubSecVideoDataJSON(data.c_str());
         },
         {"VideoDataObject"}},
        {"IllegalRecord", [&] { return _PubSecIllegalRecordJson(&from.violation); }, {"IllegalRecordListObject"}},
        {"IllegalRecordEx",
         [&] { return _PubSecIllegalRecordJsonEx(1, &from.violation); },
         {"IllegalRecordListObject"}},
        {"NonMotorIllegalRecord",
         [&] { return _PubSecNonMotorIllegalRecordJson(1, &from.nonMotorViolation); },
         {"NonMotorIllegalRecordListObject"}},
        {"AccessRecord", [&] { return _PubSecAccRecInfoJson(&from.access); }, {}},
        {"AccessRecordList", [&] { return _PubSecAccRecInfoListJson(&from.access); }, {}},
        {"Gps", [&] { return _PubSecGPSInfoJson(&from.position); }, {R"({"GPSDataListObject":{"GPSDataObject":[{)"}},
        {"Wifi",
         [&] { return _PubSecWifiDeviceJSON(&from.wifi); },
         {R"({"WifiDataListObject":{"WifiData":[{"WifiDevice":{)", R"("WifiUsersList":{"WifiUsersObject":[)",
          R"("ImeiList":{"ImeiObject":[)"}},
        {"Rfid",
         [&] { return _PubSecRFIDJSON(&from.rfid); },
         {R"({"RFIDDataListObject":{"RFIDData":[{"RFIDDevice":{)", R"("RFIDInfoList":{"RFIDInfoObject":[)"}},
        {"LogEvent", [&] { return _PubSecLogInfoJson(&from.event); }, {R"([{)", R"("value":{)"}},
        {"Disposition",
         [&] { return PubSecDispositionNotificationStructToString(&from.notifications); },
         {R"({"DispositionNotificationListObject":{"DispositionNotificationObject":[{)", R"("FaceObject":{)",
          R"("DispositionListObject":[{"FaceListObject":{"FaceObject":[{)",
          R"("SubImageList":{"SubImageInfoObject":[{)"}},
    };
}

struct Memory : testing::TestWithParam<Builder>
{
};

INSTANTIATE_TEST_SUITE_P(Builders, Memory, testing::ValuesIn(builders()),
                         [](const testing::TestParamInfo<Builder>& parameter) { return parameter.param.name; });

void expectWhole(const std::string& text, const Builder& builder)
{
    if (text == kNone)
    {
        return;
    }
    for (const std::string& part : builder.skeleton)
    {
        EXPECT_THAT(text, testing::HasSubstr(part));
    }
    cJSON* tree = cJSON_Parse(text.c_str());
    EXPECT_NE(tree, nullptr) << text;
    cJSON_Delete(tree);
}

TEST_P(Memory, EveryAllocationFailsInTurn)
{
    const std::string whole = textOf(GetParam().build());
    int allocations = 0;
    {
        const Allocations counted([](int) { return true; });
        EXPECT_EQ(textOf(GetParam().build()), whole);
        allocations = Allocations::made();
    }
    ASSERT_GT(allocations, 3);
    for (int failing = 1; failing <= allocations; ++failing)
    {
        SCOPED_TRACE(failing);
        std::string text;
        {
            const Allocations limited([&](int number) { return number != failing; });
            text = textOf(GetParam().build());
            EXPECT_EQ(Allocations::outstanding(), 0);
        }
        EXPECT_NE(text, whole);
        expectWhole(text, GetParam());
    }
}

TEST_P(Memory, NoDocumentWithoutAnyMemory)
{
    const Allocations none([](int) { return false; });
    EXPECT_EQ(GetParam().build(), nullptr);
}

/* Adds to a host's tree while allocations fail as the hook says: the result, and how many there were. */
std::pair<u32, int> resultWith(const Allocations::Hook& hook, const std::function<u32(cJSON*)>& add, std::string* text)
{
    const Allocations limited(hook);
    cJSON* tree = cJSON_CreateObject();
    const u32 result = add(tree);
    const int made = Allocations::made();
    *text = textOf(cJSON_PrintUnformatted(tree));
    cJSON_Delete(tree);
    EXPECT_EQ(Allocations::outstanding(), 0);
    return {result, made};
}

/* While the allocation of that number fails. */
std::pair<u32, int> resultWhen(int failing, const std::function<u32(cJSON*)>& add, std::string* text)
{
    return resultWith([&](int number) { return number != failing; }, add, text);
}

u32 addNotifications(cJSON* tree)
{
    return PubSecDispositionNotificationObjectStructToJsonObject(tree, 0, 1, records().notifications.aptDispoNotifyObj);
}

/* What was added to a host's tree stays, and the tree stays sound; a container or a text that is missing is told. */
TEST(HostTreeMemory, EveryAllocationFailsInTurn)
{
    std::string whole;
    const auto [result, allocations] = resultWhen(0, addNotifications, &whole);
    EXPECT_EQ(result, 50u);
    ASSERT_GT(allocations, 10);
    EXPECT_EQ(textOf(PubSecDispositionNotificationStructToString(&records().notifications)), whole);
    int told = 0;
    for (int failing = 2; failing <= allocations; ++failing) /* the first one is the host's own */
    {
        std::string text;
        const u32 found = resultWhen(failing, addNotifications, &text).first;
        EXPECT_TRUE(found == 51 || (found == 50 && text != whole)) << failing; /* an empty text is no loss */
        told += found == 51 ? 1 : 0;
    }
    EXPECT_GT(told, 10);
}

/* Containers and texts may be missing both. */
TEST(HostTreeMemory, AnEndOfMemoryIsTold)
{
    std::string text;
    const int allocations = resultWhen(0, addNotifications, &text).second;
    for (int last = 1; last < allocations; ++last)
    {
        const auto enough = [&](int number) { return number <= last; };
        EXPECT_EQ(resultWith(enough, addNotifications, &text).first, 51u) << last;
    }
}

/* An object that is missing is told, although those behind it are there. */
TEST(HostTreeMemory, AMissingObjectOfSeveralIsTold)
{
    TPubSecSubImageInfo images[] = {subImage("I1"), subImage("I2"), subImage("I3")};
    TPubSecFaceObjInfo faces[] = {face("F1"), face("F2"), face("F3")};
    for (TPubSecFaceObjInfo& face : faces)
    {
        face.ptSubImageList = images;
        face.nSubImageNum = 3;
    }
    const auto add = [&](cJSON* tree) { return PubSecFaceObjectStructToJsonObject(tree, 0, 3, faces); };
    const auto objects = [](const std::string& text) { return std::count(text.begin(), text.end(), '{'); };
    std::string whole;
    const auto [result, allocations] = resultWhen(0, add, &whole);
    ASSERT_EQ(result, 50u);
    ASSERT_EQ(objects(whole), 2 + 3 * (1 + 1 + 3)); /* root, list; each face, its list, its sub-images */
    int missing = 0;
    int missingAlone = 0;
    for (int failing = 2; failing <= allocations; ++failing)
    {
        SCOPED_TRACE(failing);
        std::string text;
        const u32 found = resultWhen(failing, add, &text).first;
        if (objects(text) < objects(whole))
        {
            EXPECT_EQ(found, 51u);
            missing += 1;
            missingAlone += objects(text) == objects(whole) - 1 ? 1 : 0;
        }
    }
    EXPECT_EQ(missing, 1 + 1 + 3 * (1 + 1 + 1 + 3)); /* the arrays of the lists are missed as well */
    EXPECT_EQ(missingAlone, 3 * 3);
}

} // namespace
