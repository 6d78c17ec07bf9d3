/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of GPS, WiFi probe and RFID reports. */
#include <set>

#include "tests/documents/allocations.h"
#include "tests/documents/document.h"

namespace
{

using namespace bare;

TEST(Gps, OnePosition)
{
    TPubSecGpsInfo record = gps("G1");
    record.fLongitude = -1.0f; /* written always here */
    record.fLatitude = 0.5f;
    put(record.achSourceID, "S");
    record.nSourceType = 0;
    EXPECT_EQ(textOf(_PubSecGPSInfoJson(&record)),
              R"({"GPSDataListObject":{"GPSDataObject":[{"GPSID":"G1","DeviceID":"","SatelliteNo":0,"Direction":0,)"
              R"("Height":0,"Longitude":-1,"Latitude":0.5,"Speed":0,"CurrentTime":"","Positioning":"",)"
              R"("ValidDataMark":0,"SourceID":"S","SourceType":0}]}})");
    EXPECT_EQ(textOf(_PubSecGPSInfoJson(nullptr)), kNone);
}

struct Wifi : testing::Test
{
    Wifi()
    {
        report.nWifiUserNum = 2;
        report.ptWifiDevice = &device;
        report.ptWifiUser = users;
        report.ptWifiImei = imeis;
        imeis[0].dwImeiNum = 2;
    }

    static std::string document(std::initializer_list<std::string> parts)
    {
        return root(list("WifiDataListObject", "WifiData", {"{" + join(parts) + "}"}));
    }

    std::string built()
    {
        return textOf(_PubSecWifiDeviceJSON(&report));
    }

    TPubSecWifiDeviceInfo device = wifiDevice("W1");
    TPubSecWifiUserInfo users[2] = {wifiUser("U1"), wifiUser("U2")};
    TPubSecWifiImeiInfo imeis[3] = {wifiImei("E1"), wifiImei("E2"), wifiImei("E3")};
    TPubSecGpsInfo position = gps("G1");
    TPubSecWifiData report = {};

    const std::string deviceText = R"("WifiDevice":)" + wifiDeviceText("W1");
    const std::string usersText = list("WifiUsersList", "WifiUsersObject", {wifiUserText("U1"), wifiUserText("U2")});
    const std::string imeisText = list("ImeiList", "ImeiObject", {wifiImeiText("E1"), wifiImeiText("E2")});
};

TEST_F(Wifi, AllThreeParts)
{
    EXPECT_EQ(built(), document({deviceText, usersText, imeisText}));
}

TEST_F(Wifi, APartIsWrittenWheneverItsPointerIsSet)
{
    report.ptWifiDevice = nullptr;
    EXPECT_EQ(built(), document({usersText, imeisText}));
    report.ptWifiUser = nullptr;
    EXPECT_EQ(built(), document({imeisText}));
    report.ptWifiImei = nullptr;
    EXPECT_EQ(built(), R"({"WifiDataListObject":{"WifiData":[{}]}})");
    report.ptWifiUser = users;
    EXPECT_EQ(built(), document({usersText}));
    report.ptWifiUser = nullptr;
    report.ptWifiDevice = &device;
    EXPECT_EQ(built(), document({deviceText}));
    EXPECT_EQ(textOf(_PubSecWifiDeviceJSON(nullptr)), kNone);
}

TEST_F(Wifi, CountsThatAreNotAboveZeroGiveEmptyArrays)
{
    imeis[0].dwImeiNum = 0;
    for (const s32 count : {0, -1})
    {
        report.nWifiUserNum = count;
        EXPECT_EQ(built(), document({deviceText, R"("WifiUsersList":{"WifiUsersObject":[]})",
                                     R"("ImeiList":{"ImeiObject":[]})"}))
            << count;
    }
}

TEST_F(Wifi, TheFirstIdentitySaysHowMany)
{
    imeis[0].dwImeiNum = 3;
    imeis[1].dwImeiNum = 0;
    EXPECT_EQ(built(),
              document({deviceText, usersText,
                        list("ImeiList", "ImeiObject", {wifiImeiText("E1"), wifiImeiText("E2"), wifiImeiText("E3")})}));
}

TEST_F(Wifi, TheNumberOfIdentitiesIsAskedAgainForEveryOne)
{
    std::set<std::string> texts;
    for (int moment = 1, last = moment; moment <= last; ++moment)
    {
        imeis[0].dwImeiNum = 3;
        const Allocations allocations([&](int number) {
            imeis[0].dwImeiNum = number == moment ? 1 : imeis[0].dwImeiNum;
            return true;
        });
        texts.insert(built());
        last = Allocations::made();
    }
    EXPECT_THAT(texts, testing::Contains(document({deviceText, usersText, imeisText})));
}

TEST_F(Wifi, ThePositionNeedsItsMarkAndItsPointer)
{
    const auto position1 = [&](const std::string& mark) {
        return R"("WifiDevice":{"WifiDeviceDataID":"W1","DeviceID":"","DeviceName":"","Model":"","IPAddr":"",)"
               R"("GPSInfo":")" +
               mark +
               R"(","PlaceCode":"","Place":"","WifiProbeenable":"","CurrentTime":"","WorkPattern":"",)"
               R"("DeviceMacAdress":"")";
    };
    report.ptWifiUser = nullptr;
    report.ptWifiImei = nullptr;
    for (const char* mark : {"0", "", "11", "Inv"})
    {
        const std::string kept = std::string(mark).substr(0, sizeof(device.achGPSInfo));
        put(device.achGPSInfo, kept);
        device.ptGPSData = &position;
        EXPECT_EQ(built(), document({position1(kept) + "}"})) << mark;
    }
    put(device.achGPSInfo, "1");
    EXPECT_EQ(built(), document({position1("1") + R"(,"GPSData":)" + gpsText("G1") + "}"}));
    device.ptGPSData = nullptr;
    EXPECT_EQ(built(), document({position1("1") + "}"}));
}

TEST_F(Wifi, CoordinatesOfTheProbeAreLeftOutForMinusOne)
{
    report.ptWifiUser = nullptr;
    report.ptWifiImei = nullptr;
    device.fLongitude = 113.5f;
    device.fLatitude = 0.0f;
    EXPECT_EQ(built(),
              R"({"WifiDataListObject":{"WifiData":[{"WifiDevice":{"WifiDeviceDataID":"W1","DeviceID":"",)"
              R"("DeviceName":"","Model":"","IPAddr":"","GPSInfo":"","Longitude":113.5,"Latitude":0,"PlaceCode":"",)"
              R"("Place":"","WifiProbeenable":"","CurrentTime":"","WorkPattern":"","DeviceMacAdress":""}}]}})");
}

TEST_F(Wifi, AnIdentityHasItsLongitudeTwiceAndNoLatitude)
{
    report.ptWifiDevice = nullptr;
    report.ptWifiUser = nullptr;
    imeis[0].dwImeiNum = 1;
    imeis[0].dLongitude = 113.25;
    imeis[0].dLatitude = 23.5;
    EXPECT_EQ(built(), R"({"WifiDataListObject":{"WifiData":[{"ImeiList":{"ImeiObject":[{"DateTime":"",)"
                       R"("AreaCode":"","CI":"","Longitude":113.25,"Longitude":113.25,"ImeiID":"E1"}]}}]}})");
}

struct Rfid : testing::Test
{
    Rfid()
    {
        report.nRFIDUserNum = 2;
        report.ptRFIDDevice = &device;
        report.ptRFIDUser = users;
    }

    static std::string document(const std::string& reader, std::initializer_list<std::string> tags)
    {
        return root(list("RFIDDataListObject", "RFIDData",
                         {R"({"RFIDDevice":)" + reader + "," + list("RFIDInfoList", "RFIDInfoObject", tags) + "}"}));
    }

    std::string built()
    {
        return textOf(_PubSecRFIDJSON(&report));
    }

    TPubSecRFIDDeviceInfo device = rfidDevice("X1");
    TPubSecRFIDUserInfo users[2] = {rfidUser("Y1"), rfidUser("Y2")};
    TPubSecRFIDData report = {};
};

TEST_F(Rfid, ReaderAndTags)
{
    EXPECT_EQ(built(), document(rfidDeviceText("X1"), {rfidUserText("Y1"), rfidUserText("Y2")}));
    EXPECT_EQ(textOf(_PubSecRFIDJSON(nullptr)), kNone);
}

TEST_F(Rfid, BothPartsAreAlwaysWritten)
{
    for (const s32 count : {0, -1})
    {
        report.nRFIDUserNum = count;
        EXPECT_EQ(built(), document(rfidDeviceText("X1"), {})) << count;
    }
    report.nRFIDUserNum = 2;
    report.ptRFIDUser = nullptr;
    EXPECT_EQ(built(), document(rfidDeviceText("X1"), {}));
    report.ptRFIDDevice = nullptr;
    EXPECT_EQ(built(),
              R"({"RFIDDataListObject":{"RFIDData":[{"RFIDDevice":{},"RFIDInfoList":{"RFIDInfoObject":[]}}]}})");
}

} // namespace
