/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/transfer/operations.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <stdexcept>

#include "tests/support/transfer_records.h"

namespace
{

using namespace bare;

/* The records that the operations send. */
struct Records
{
    Records()
    {
        slices.ptVideoSlice = &someSlice;
        slices.nVideoSliceNum = 1;
        slices.ptFile = &someFile;
        slices.nFileNum = 1;
        slices.ptFace = &someFace;
        slices.nFaceNum = slices.nFileFaceNum = 1;
        for (TPubSecIllegalRecordInfo& record : violations)
        {
            record.dwSubImageNum = 1;
            record.ptSubImageList = &image;
        }
        violations[0].dwIllegalRecordNum = 1;
        nonMotorViolations[0].wSubImageNum = 1;
        nonMotorViolations[0].ptSubImageList = &image;
        access[0].dwRecordNum = 2;
        imei.dwImeiNum = 1;
        wifi = {1, &device, &user, &imei};
        rfid = {1, &reader, &tag};
        setNotification(*notification, "A1");
        notifications = {1, notification.get(), 1};
    }

    TPubSecSubImageInfo image = subImage("I1");
    TPubSecVideoSliceInfo someSlice = slice("V1");
    TPubSecFileInfo someFile = file("D1");
    TPubSecFaceObjInfo someFace = face("F1");
    TPubSecVideoSliceObj slices = {};
    TPubSecIllegalRecordInfo violations[2] = {illegalRecord("R1"), illegalRecord("R2")};
    TPubSecNonMotorIllegalRecordInfo nonMotorViolations[2] = {nonMotorIllegalRecord("Q1"), nonMotorIllegalRecord("Q2")};
    TPubSecAccessRecordInfo access[2] = {accessRecord("A1"), accessRecord("A2")};
    TPubSecGpsInfo position = gps("G1");
    TPubSecWifiDeviceInfo device = wifiDevice("W1");
    TPubSecWifiUserInfo user = wifiUser("U1");
    TPubSecWifiImeiInfo imei = wifiImei("E1");
    TPubSecWifiData wifi = {};
    TPubSecRFIDDeviceInfo reader = rfidDevice("X1");
    TPubSecRFIDUserInfo tag = rfidUser("Y1");
    TPubSecRFIDData rfid = {};
    TPubSecLogInfo event = logEvent("L1");
    std::unique_ptr<TPubSecDispoNotifyObj> notification = std::make_unique<TPubSecDispoNotifyObj>();
    TPubsecDispositionNotificationList notifications = {};
};

const Records& records()
{
    static const Records only;
    return only;
}

std::string document(const std::string& listObject, const std::string& array, std::initializer_list<std::string> texts)
{
    return "{" + list(listObject, array, texts) + "}";
}

std::vector<Operation> slicesAndFiles()
{
    const std::string faces = list("FaceList", "FaceObject", {faceText("F1")});
    Operation slicePost = {
        "PubSecPostVideoSlice",
        "/VIID/VideoSlices",
        document("VideoSliceListObject", "VideoSlice", {R"({"VideoSliceInfo":)" + sliceText("V1") + "," + faces + "}"}),
        [](u32 platform, const Where&) { return PubSecPostVideoSlice(platform, &records().slices, nullptr); },
        {[](u32 platform, const Where&) { return PubSecPostVideoSlice(platform, nullptr, nullptr); }}};
    slicePost.reads = true;
    slicePost.bounded = false;
    slicePost.handleCode = 52;
    slicePost.handleErrors = {};
    Operation filePost = {"PubSecPostFile",
                          "/VIID/Files",
                          document("FileListObject", "File", {R"({"FileInfo":)" + fileText("D1") + "," + faces + "}"}),
                          [](u32 platform, const Where&) { return PubSecPostFile(platform, &records().slices); },
                          {[](u32 platform, const Where&) { return PubSecPostFile(platform, nullptr); }}};
    filePost.handleErrors = {"curl_easyinit() failed"};
    return {slicePost, filePost};
}

/* The three that send the caller's text itself. */
template <u32 (*Post)(u32, const char*, const char*)> Operation dataPost(const char* name, const char* target)
{
    return {name,
            target,
            "{\"any\":\"text\"}",
            [](u32 platform, const Where&) { return Post(platform, "ID-1", "{\"any\":\"text\"}"); },
            {[](u32 platform, const Where&) { return Post(platform, nullptr, "{}"); },
             [](u32 platform, const Where&) { return Post(platform, "ID-1", nullptr); }}};
}

std::vector<Operation> binaryData()
{
    Operation slice = dataPost<PubSecPostVideoSliceData>("PubSecPostVideoSliceData", "/VIID/VideoSlices/ID-1/Data");
    slice.bounded = false;
    Operation wrapped = {
        "PubSecPostVideoSliceDataEx",
        "/VIID/VideoSlices/ID-1/Data",
        R"({"VideoDataObject":{"VData":"QUJD"}})",
        [](u32 platform, const Where&) { return PubSecPostVideoSliceDataEx(platform, "ID-1", "QUJD"); },
        {[](u32 platform, const Where&) { return PubSecPostVideoSliceDataEx(platform, "ID-1", nullptr); }}};
    wrapped.bounded = false;
    wrapped.nullErrors = {"_PubSecVideoDataJSON failed."};
    return {slice, wrapped, dataPost<PubSecPostImageData>("PubSecPostImageData", "/VIID/Images/ID-1/Data"),
            dataPost<PubSecPostFileData>("PubSecPostFileData", "/VIID/Files/ID-1/Data")};
}

std::vector<Operation> violations()
{
    const std::string images = subImages({subImageText("I1")});
    return {
        {"PubSecPostIllRecd",
         "/VIID/IllegalRecords",
         document("IllegalRecordListObject", "IllegalRecordObject", {illegalRecordText("R1")}),
         [](u32 platform, const Where&) { return PubSecPostIllRecd(platform, records().violations); },
         {[](u32 platform, const Where&) { return PubSecPostIllRecd(platform, nullptr); }}},
        {"PubSecPostIllRecdEx",
         "/VIID/IllegalRecords",
         document("IllegalRecordListObject", "IllegalRecordObject",
                  {with(illegalRecordText("R1"), images), with(illegalRecordText("R2"), images)}),
         [](u32 platform, const Where&) { return PubSecPostIllRecdEx(platform, 2, records().violations); },
         {[](u32 platform, const Where&) { return PubSecPostIllRecdEx(platform, 0, nullptr); }}},
        {"PubSecPostNonMotorIllRecd",
         "/VIID/NonMotorIllegalRecords",
         document("NonMotorIllegalRecordListObject", "NonMotorIllegalRecordObject",
                  {with(nonMotorIllegalRecordText("Q1"), images), nonMotorIllegalRecordText("Q2")}),
         [](u32 platform, const Where&) {
             return PubSecPostNonMotorIllRecd(platform, 2, records().nonMotorViolations);
         },
         {[](u32 platform, const Where&) { return PubSecPostNonMotorIllRecd(platform, 0, nullptr); }}},
    };
}

std::vector<Operation> accessRecords()
{
    Operation one = {
        "PubSecPostAccRecInf",
        "/doors/7?kind=card",
        R"({"AccessRecordObject":)" + accessRecordText("A1") + "}",
        [](u32 platform, const Where& where) {
            return PubSecPostAccRecInf(platform, records().access, where.url.c_str());
        },
        {[](u32 platform, const Where& where) { return PubSecPostAccRecInf(platform, nullptr, where.url.c_str()); }}};
    Operation several = {
        "PubSecPostAccRecInfList",
        "/doors/7?kind=card",
        document("AccessRecordListObject", "AccessRecordObject", {accessRecordText("A1"), accessRecordText("A2")}),
        [](u32 platform, const Where& where) {
            return PubSecPostAccRecInfList(platform, records().access, where.url.c_str());
        },
        {[](u32 platform, const Where& where) {
            return PubSecPostAccRecInfList(platform, nullptr, where.url.c_str());
        }}};
    one.urlOfCaller = several.urlOfCaller = true;
    return {one, several};
}

std::vector<Operation> sensors()
{
    return {
        {"PubSecPostGpsInfo",
         "/VIID/GPSDatas",
         document("GPSDataListObject", "GPSDataObject", {gpsText("G1")}),
         [](u32 platform, const Where&) { return PubSecPostGpsInfo(platform, &records().position); },
         {[](u32 platform, const Where&) { return PubSecPostGpsInfo(platform, nullptr); }}},
        {"PubSecPostWifiDeviceMSG",
         "/VIID/WifiDetector/WifiDatas",
         document("WifiDataListObject", "WifiData",
                  {R"({"WifiDevice":)" + wifiDeviceText("W1") + "," +
                   list("WifiUsersList", "WifiUsersObject", {wifiUserText("U1")}) + "," +
                   list("ImeiList", "ImeiObject", {wifiImeiText("E1")}) + "}"}),
         [](u32 platform, const Where&) { return PubSecPostWifiDeviceMSG(platform, &records().wifi); },
         {[](u32 platform, const Where&) { return PubSecPostWifiDeviceMSG(platform, nullptr); }}},
        {"PubSecPostRFIDMSG",
         "/VIID/RFIDDatas",
         document("RFIDDataListObject", "RFIDData",
                  {R"({"RFIDDevice":)" + rfidDeviceText("X1") + "," +
                   list("RFIDInfoList", "RFIDInfoObject", {rfidUserText("Y1")}) + "}"}),
         [](u32 platform, const Where&) { return PubSecPostRFIDMSG(platform, &records().rfid); },
         {[](u32 platform, const Where&) { return PubSecPostRFIDMSG(platform, nullptr); }}},
    };
}

std::vector<Operation> notificationsAndEvents()
{
    static const TPubsecDispositionNotificationList empty = {};
    return {
        {"PubSecPostDispositionNotification",
         "/VIID/DispositionNotifications",
         R"({"DispositionNotificationObject":)" + notificationText("A1") + "}",
         [](u32 platform, const Where&) {
             return PubSecPostDispositionNotification(platform, &records().notifications);
         },
         {[](u32 platform, const Where&) { return PubSecPostDispositionNotification(platform, &empty); }}},
        {"PubSecPosLogWriteMSG",
         "/log/event",
         "[" + logEventText("L1") + "]",
         [](u32, const Where& where) { return PubSecPosLogWriteMSG(&records().event, where.host.c_str(), where.port); },
         {[](u32, const Where& where) { return PubSecPosLogWriteMSG(nullptr, where.host.c_str(), where.port); },
          [](u32, const Where& where) { return PubSecPosLogWriteMSG(&records().event, nullptr, where.port); }}},
    };
}

} // namespace

const std::vector<Operation>& operations()
{
    static const std::vector<Operation> all = [] {
        std::vector<Operation> joined;
        for (const std::vector<Operation>& some :
             {slicesAndFiles(), binaryData(), violations(), accessRecords(), sensors(), notificationsAndEvents()})
        {
            joined.insert(joined.end(), some.begin(), some.end());
        }
        return joined;
    }();
    return all;
}

const Operation& operationNamed(const std::string& name)
{
    const auto found = std::find_if(operations().begin(), operations().end(),
                                    [&](const Operation& operation) { return operation.name == name; });
    if (found == operations().end())
    {
        throw std::invalid_argument("no operation " + name);
    }
    return *found;
}

std::ostream& operator<<(std::ostream& out, const Operation& operation)
{
    return out << operation.name;
}
