/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Records with an identifier and nothing else, each beside the JSON object that it has to become: every member that is
 * always written, in order, and none that can be left out.
 */
#ifndef PUBSEC_TESTS_TRANSFER_RECORDS_H
#define PUBSEC_TESTS_TRANSFER_RECORDS_H

#include <cstring>
#include <initializer_list>
#include <string>

#include <pubsecstack/pubsecstack.h>

namespace bare
{

template <size_t Size> void put(char (&field)[Size], const std::string& text)
{
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), text.size() < Size ? text.size() : Size);
}

inline std::string join(std::initializer_list<std::string> parts)
{
    std::string joined;
    for (const std::string& part : parts)
    {
        joined += (joined.empty() ? "" : ",") + part;
    }
    return joined;
}

/* "key":{...} and "key":[...] of what is given. */
inline std::string object(const std::string& key, std::initializer_list<std::string> members)
{
    return "\"" + key + "\":{" + join(members) + "}";
}

inline std::string array(const std::string& key, std::initializer_list<std::string> elements)
{
    return "\"" + key + "\":[" + join(elements) + "]";
}

/* "list":{"array":[...]}, the form in which objects of a kind come. */
inline std::string list(const std::string& key, const std::string& arrayKey,
                        std::initializer_list<std::string> elements)
{
    return object(key, {array(arrayKey, elements)});
}

/* An object's text with further members at its end. */
inline std::string with(const std::string& text, const std::string& members)
{
    return text.substr(0, text.size() - 1) + (text == "{}" ? "" : ",") + members + "}";
}

/* -------------------------------------------------------------------------------------------------- sub-images */

inline TPubSecSubImageInfo subImage(const std::string& id)
{
    TPubSecSubImageInfo record = {};
    put(record.achImageID, id);
    record.nWidth = -1;
    record.nHeight = -1;
    return record;
}

inline std::string subImageText(const std::string& id)
{
    return R"({"ImageID":")" + id + R"(","Type":"","FileFormat":""})";
}

inline std::string subImages(std::initializer_list<std::string> texts)
{
    return list("SubImageList", "SubImageInfoObject", texts);
}

/* ------------------------------------------------------------------------------------- objects found in pictures */

inline TPubSecPersonnelObjInfo person(const std::string& id)
{
    TPubSecPersonnelObjInfo record = {};
    put(record.achPersonID, id);
    return record;
}

inline std::string personText(const std::string& id)
{
    return R"({"PersonID":")" + id +
           R"(","InfoKind":0,"SourceID":"","LocationMarkTime":"","PersonAppearTime":"","PersonDisAppearTime":""})";
}

inline TPubSecFaceObjInfo face(const std::string& id)
{
    TPubSecFaceObjInfo record = {};
    put(record.achFaceID, id);
    return record;
}

inline std::string faceText(const std::string& id)
{
    return R"({"FaceID":")" + id +
           R"(","InfoKind":0,"ShotTime":"","LocationMarkTime":"","FaceAppearTime":"","FaceDisAppearTime":""})";
}

inline TPubSecMotorVehicleObjInfo motorVehicle(const std::string& id)
{
    TPubSecMotorVehicleObjInfo record = {};
    put(record.achMotorVehicleID, id);
    return record;
}

inline std::string motorVehicleText(const std::string& id)
{
    return R"({"MotorVehicleID":")" + id + R"(","InfoKind":0,"SourceID":"","HasPlate":"0"})";
}

inline TPubSecNonMotorVehicleObjInfo nonMotorVehicle(const std::string& id)
{
    TPubSecNonMotorVehicleObjInfo record = {};
    put(record.achNonMotorVehicleID, id);
    for (s32* number :
         {&record.nUsingPropertiesCode, &record.nVehicleLength, &record.nVehicleWidth, &record.nVehicleHeight,
          &record.nFilmColor, &record.nIsModified, &record.nCyclingType, &record.nCyclingPersonNum,
          &record.nSourceFactory, &record.nDeviceClass, &record.nSourceType, &record.nState, &record.nHasHelmet,
          &record.nHasParasol, &record.nHasRainshed, &record.nHasTakeoutBox, &record.nHasPassenger, &record.nHasHood})
    {
        *number = -1;
    }
    record.dSpeed = record.dShotPlaceLongitude = record.dShotPlaceLatitude = -1.0;
    return record;
}

inline std::string nonMotorVehicleText(const std::string& id)
{
    return R"({"NonMotorVehicleID":")" + id +
           R"(","InfoKind":0,"SourceID":"","LeftTopX":0,"LeftTopY":0,"RightBtmX":0,"RightBtmY":0,"MarkTime":"",)"
           R"("AppearTime":"","DisappearTime":"","HasPlate":"0","PlateClass":"","PlateColor":"","PlateNo":"",)"
           R"("IsDecked":"0","IsAltered":"0","IsCovered":"0","VehicleColor":""})";
}

inline TPubSecThingObjInfo thing(const std::string& id)
{
    TPubSecThingObjInfo record = {};
    put(record.achThingID, id);
    record.nLeftTopX = record.nLeftTopY = record.nRightBtmX = record.nRightBtmY = -1;
    return record;
}

inline std::string thingText(const std::string& id)
{
    return R"({"ThingID":")" + id + R"(","InfoKind":0,"SourceID":"","Name":"","Shape":"","Color":""})";
}

inline TPubSecSceneObjInfo scene(const std::string& id)
{
    TPubSecSceneObjInfo record = {};
    put(record.achSceneID, id);
    record.nRoadTerraintype = -1;
    return record;
}

inline std::string sceneText(const std::string& id)
{
    return R"({"SceneID":")" + id + R"(","InfoKind":0,"SourceID":""})";
}

/* ------------------------------------------------------------------------------------------- slices and files */

inline TPubSecVideoSliceInfo slice(const std::string& id)
{
    TPubSecVideoSliceInfo record = {};
    put(record.achVideoID, id);
    return record;
}

inline std::string sliceText(const std::string& id)
{
    return R"({"VideoID":")" + id +
           R"(","InfoKind":0,"VideoSource":"","StoragePath":"","FileHash":"","FileFormat":"","CodedFormat":"",)"
           R"("AudioFlag":0,"ContentDescription":"","ShotPlaceCode":"","SecurityLevel":"","VideoLen":0,)"
           R"("BeginTime":"","EndTime":"","TimeErr":0,"Width":0,"Height":0,"EntryClerk":"","EntryClerkOrg":""})";
}

inline TPubSecFileInfo file(const std::string& id)
{
    TPubSecFileInfo record = {};
    put(record.achFileID, id);
    record.nFileSize = -1;
    return record;
}

inline std::string fileText(const std::string& id)
{
    return R"({"FileID":")" + id +
           R"(","InfoKind":0,"Source":"","FileName":"","FileHash":"","FileFormat":"","Title":""})";
}

/* -------------------------------------------------------------------------------------------------- violations */

inline TPubSecIllegalRecordInfo illegalRecord(const std::string& id)
{
    TPubSecIllegalRecordInfo record = {};
    put(record.achIllegalRecordID, id);
    for (s32* number : {&record.nIllegalAct,
                        &record.nLaneNo,
                        &record.nLeftTopX,
                        &record.nLeftTopY,
                        &record.nRightBtmX,
                        &record.nRightBtmY,
                        &record.nIllegalStatus,
                        &record.nVideoStatus,
                        &record.nCompImageStatus,
                        &record.nBackupMark,
                        &record.nIllegalActConfirm,
                        &record.nAIStatus,
                        &record.nSourceFactory,
                        &record.nDeviceClass,
                        &record.nWeight,
                        &record.nMaxWeight,
                        &record.nLength,
                        &record.nMaxLength,
                        &record.nWidth,
                        &record.nMaxWidth,
                        &record.nHeight,
                        &record.nMaxHeight})
    {
        *number = -1;
    }
    record.dSpeed = record.dMaxSpeed = record.dOverspeedRate = record.dOverRunRate = -1.0;
    return record;
}

inline std::string illegalRecordText(const std::string& id)
{
    return R"({"IllegalRecordID":")" + id + R"(","SourceID":"","TollgateID":"","DeviceID":"","HasPlate":"0"})";
}

inline TPubSecNonMotorIllegalRecordInfo nonMotorIllegalRecord(const std::string& id)
{
    TPubSecNonMotorIllegalRecordInfo record = {};
    put(record.achIllegalRecordID, id);
    return record;
}

inline std::string nonMotorIllegalRecordText(const std::string& id)
{
    return R"({"IllegalRecordID":")" + id + R"(","SourceID":"","DeviceID":"","TollgateID":"","HasPlate":""})";
}

/* ------------------------------------------------------------------------------- access records and log events */

inline TPubSecAccessRecordInfo accessRecord(const std::string& id)
{
    TPubSecAccessRecordInfo record = {};
    put(record.achAccessRecordID, id);
    return record;
}

inline std::string accessRecordText(const std::string& id)
{
    return R"({"AccessRecordID":")" + id +
           R"(","DeviceID":"","SecureAccessID":"","AlarmEventCode":"","CardID":0,"CardType":0,"PersonCode":"",)"
           R"("AccessTime":"","PunchAct":0,"PunchResult":0,"PunchTime":""})";
}

inline TPubSecLogInfo logEvent(const std::string& id)
{
    TPubSecLogInfo record = {};
    put(record.achClientId, id);
    return record;
}

inline std::string logEventText(const std::string& id)
{
    return R"({"clientId":")" + id +
           R"(","clientTime":0,"category":"","action":"","value":{"TargetID":""},"entryTime":0,"viidId":"",)"
           R"("softVer":"","ip":"","test":""})";
}

/* ----------------------------------------------------------------------------------------------------- sensors */

inline TPubSecGpsInfo gps(const std::string& id)
{
    TPubSecGpsInfo record = {};
    put(record.achGPSID, id);
    record.nSourceType = -1;
    return record;
}

inline std::string gpsText(const std::string& id)
{
    return R"({"GPSID":")" + id +
           R"(","DeviceID":"","SatelliteNo":0,"Direction":0,"Height":0,"Longitude":0,"Latitude":0,"Speed":0,)"
           R"("CurrentTime":"","Positioning":"","ValidDataMark":0})";
}

inline TPubSecWifiDeviceInfo wifiDevice(const std::string& id)
{
    TPubSecWifiDeviceInfo record = {};
    put(record.achWifiDeviceDataID, id);
    record.fLongitude = record.fLatitude = -1.0f;
    return record;
}

inline std::string wifiDeviceText(const std::string& id)
{
    return R"({"WifiDeviceDataID":")" + id +
           R"(","DeviceID":"","DeviceName":"","Model":"","IPAddr":"","GPSInfo":"","PlaceCode":"","Place":"",)"
           R"("WifiProbeenable":"","CurrentTime":"","WorkPattern":"","DeviceMacAdress":""})";
}

inline TPubSecWifiUserInfo wifiUser(const std::string& id)
{
    TPubSecWifiUserInfo record = {};
    put(record.achWifiUserDataID, id);
    return record;
}

inline std::string wifiUserText(const std::string& id)
{
    return R"({"WifiUserDataID":")" + id +
           R"(","DeviceID":"","DiscoverMacAddr":"","StartTime":"","EndTime":"","EUTCTime":0})";
}

inline TPubSecWifiImeiInfo wifiImei(const std::string& id)
{
    TPubSecWifiImeiInfo record = {};
    put(record.achImeiID, id);
    record.nSourceFactory = record.nDeviceClass = -1;
    return record;
}

inline std::string wifiImeiText(const std::string& id)
{
    return R"({"DateTime":"","AreaCode":"","CI":"","Longitude":0,"Longitude":0,"ImeiID":")" + id + R"("})";
}

inline TPubSecRFIDDeviceInfo rfidDevice(const std::string& id)
{
    TPubSecRFIDDeviceInfo record = {};
    put(record.achRFIDDeviceDataID, id);
    record.fLongitude = record.fLatitude = -1.0f;
    return record;
}

inline std::string rfidDeviceText(const std::string& id)
{
    return R"({"RFIDDeviceDataID":")" + id +
           R"(","DeviceID":"","DeviceName":"","Model":"","IPAddr":"","GPSInfo":"","PlaceCode":"","Place":"",)"
           R"("Probeenable":"","CurrentTime":"","WorkPattern":"","DeviceMacAdress":""})";
}

inline TPubSecRFIDUserInfo rfidUser(const std::string& id)
{
    TPubSecRFIDUserInfo record = {};
    put(record.achRFIDInfoDataID, id);
    record.fLongitude = record.fLatitude = -1.0f;
    return record;
}

inline std::string rfidUserText(const std::string& id)
{
    return R"({"RFIDInfoDataID":")" + id + R"(","DeviceID":"","RFIDID":"","StartTime":""})";
}

/* ----------------------------------------------------------------------------------------------- dispositions */

inline void setNotification(TPubSecDispoNotifyObj& record, const std::string& id)
{
    record = TPubSecDispoNotifyObj();
    put(record.achNotificationID, id);
    record.tNonMotorVehicle = nonMotorVehicle("");
}

inline std::string notificationText(const std::string& id)
{
    return R"({"NotificationID":")" + id + R"(","DispositionID":"","Title":"","TriggerTime":"","CntObjectID":""})";
}

} // namespace bare

#endif
