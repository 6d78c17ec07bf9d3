/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/sensor.h>

#include "tests/objects/demanded.h"

namespace records
{

const std::vector<Member>& GpsMembers()
{
    using R = TPubSecGpsInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("GPSID", achGPSID, 49),
        ALWAYS_TEXT("DeviceID", achDeviceID, 23),
        ALWAYS("SatelliteNo", nSatelliteNo, s32),
        ALWAYS("Direction", dDirection, double),
        ALWAYS("Height", nHeight, s32),
        ALWAYS("Longitude", fLongitude, float),
        ALWAYS("Latitude", fLatitude, float),
        ALWAYS("Speed", dSpeed, double),
        ALWAYS_TEXT("CurrentTime", achCurrentTime, 15),
        ALWAYS_TEXT("Positioning", achPositioning, 33),
        ALWAYS("ValidDataMark", nValidDataMark, s32),
        TEXT("SourceID", achSourceID, 44),
        NOT_MINUS_ONE("SourceType", nSourceType, s32),
    };
    return members;
}

const std::vector<Member>& WifiDeviceMembers()
{
    using R = TPubSecWifiDeviceInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("WifiDeviceDataID", achWifiDeviceDataID, 42),
        ALWAYS_TEXT("DeviceID", achDeviceID, 21),
        ALWAYS_TEXT("DeviceName", achDeviceName, 101),
        ALWAYS_TEXT("Model", achModel, 101),
        ALWAYS_TEXT("IPAddr", achIPAddr, 31),
        TEXT("IPV6Addr", achIPV6Addr, 65),
        ALWAYS_TEXT("GPSInfo", achGPSInfo, 3),
        NOT_MINUS_ONE("Longitude", fLongitude, float),
        NOT_MINUS_ONE("Latitude", fLatitude, float),
        ALWAYS_TEXT("PlaceCode", achPlaceCode, 7),
        ALWAYS_TEXT("Place", achPlace, 257),
        ALWAYS_TEXT("WifiProbeenable", achWifiProbeenable, 2),
        ALWAYS_TEXT("CurrentTime", achCurrentTime, 15),
        TEXT("TimeZone", achTimeZone, 33),
        TEXT("APScope", achAPScope, 6),
        ALWAYS_TEXT("WorkPattern", achWorkPattern, 9),
        TEXT("WirelessDataFrame", achWirelessDataFrame, 9),
        TEXT("NetworkAccessType", achNetworkAccessType, 9),
        TEXT("APSendCyc", achAPSendCyc, 9),
        ALWAYS_TEXT("DeviceMacAdress", achDeviceMacAdress, 49),
        TEXT("CollectorName", achCollectorName, 51),
        TEXT("CollectorOrg", achCollectorOrg, 101),
        TEXT("CollectorIDType", achCollectorIDType, 4),
        TEXT("CollectorID", achCollectorID, 31),
        TEXT("DeviceSNNo", achDeviceSNNo, 33),
        TEXT("APSId", achAPSId, 27),
        OBJECT_BEHIND_ONE("GPSData", ptGPSData, GpsMembers()),
    };
    return members;
}

const std::vector<Member>& WifiUserMembers()
{
    using R = TPubSecWifiUserInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("WifiUserDataID", achWifiUserDataID, 49),
        ALWAYS_TEXT("DeviceID", achDeviceID, 21),
        ALWAYS_TEXT("DiscoverMacAddr", achDiscoverMacAddr, 49),
        TEXT("DiscoverSsidInf", achDiscoverSsidInf, 33),
        TEXT("HistorySsid", achHistorySsid, 1025),
        TEXT("ImeiMsg", achImeiMsg, 17),
        TEXT("ImsiMsg", achImsiMsg, 17),
        TEXT("OSVersion", achOSVersion, 17),
        TEXT("DiscoverDeviceManuf", achDiscoverDeviceManuf, 101),
        ALWAYS_TEXT("StartTime", achStartTime, 15),
        ALWAYS_TEXT("EndTime", achEndTime, 16),
        ALWAYS("EUTCTime", qwEUTCTime, u64),
        TEXT("Power", achPower, 9),
        TEXT("PhoneNo", achPhoneNo, 16),
        TEXT("WireDisX", achWireDisX, 9),
        TEXT("WireDisY", achWireDisY, 9),
        TEXT("WIFIEncryptType", achWIFIEncryptType, 3),
        TEXT("APWifiChannel", achAPWifiChannel, 3),
        TEXT("MacAppearTimes", achMacAppearTimes, 9),
        TEXT("SourceID", achSourceID, 54),
        TEXT("SelfDefObject", achSelfDefObject, 64),
        TEXT("CollectorName", achCollectorName, 51),
        TEXT("CollectorOrg", achCollectorOrg, 101),
        TEXT("CollectorIDType", achCollectorIDType, 4),
        TEXT("CollectorID", achCollectorID, 31),
        TEXT("DeviceSNNo", achDeviceSNNo, 33),
        TEXT("APSId", achAPSId, 28),
    };
    return members;
}

const std::vector<Member>& WifiImeiMembers()
{
    using R = TPubSecWifiImeiInfo;
    static const std::vector<Member> members = {
        TEXT("HomeArea", achHomeArea, 8),
        TEXT("WifiDeviceDataID", achWifiDeviceDataID, 42),
        ALWAYS_TEXT("DateTime", achDateTime, 15),
        TEXT("PhoneModel", achPhoneModel, 16),
        TEXT("IMEI", achIMEI, 32),
        TEXT("Msisdn", achMsisdn, 16),
        TEXT("IMSI", achIMSI, 16),
        TEXT("TMSI", achTMSI, 16),
        ALWAYS_TEXT("AreaCode", achAreaCode, 8),
        ALWAYS_TEXT("CI", achCI, 15),
        ALWAYS("Longitude", dLongitude, double),
        ALWAYS("Longitude", dLongitude, double),
        TEXT("Mac", achMac, 32),
        TEXT("Rssi", achRssi, 8),
        TEXT("Lac", achLac, 8),
        TEXT("Inctimer", achInctimer, 8),
        TEXT("AreaCideTime", achAreaCideTime, 15),
        TEXT("Spcode", achSpcode, 4),
        TEXT("NetWork", achNetWork, 4),
        TEXT("Esn", achEsn, 64),
        TEXT("PN", achPN, 64),
        TEXT("Frequence", achFrequence, 8),
        TEXT("SmsSendStatus", achSmsSendStatus, 4),
        TEXT("SeqNum", achSeqNum, 64),
        TEXT("EXPAND1", achEXPAND1, 64),
        TEXT("EXPAND2", achEXPAND2, 64),
        TEXT("EXPAND3", achEXPAND3, 64),
        TEXT("EXPAND4", achEXPAND4, 64),
        TEXT("EXPAND5", achEXPAND5, 64),
        ALWAYS_TEXT("ImeiID", achImeiID, 42),
        TEXT("PlaceCode", achPlaceCode, 7),
        TEXT("ProvinceCode", achProvinceCode, 7),
        TEXT("CityCode", achCityCode, 9),
        NOT_MINUS_ONE("SourceFactory", nSourceFactory, s32),
        NOT_MINUS_ONE("DeviceClass", nDeviceClass, s32),
    };
    return members;
}

const std::vector<Member>& RfidDeviceMembers()
{
    using R = TPubSecRFIDDeviceInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("RFIDDeviceDataID", achRFIDDeviceDataID, 42),
        ALWAYS_TEXT("DeviceID", achDeviceID, 21),
        ALWAYS_TEXT("DeviceName", achDeviceName, 101),
        ALWAYS_TEXT("Model", achModel, 101),
        ALWAYS_TEXT("IPAddr", achIPAddr, 31),
        TEXT("IPV6Addr", achIPV6Addr, 65),
        ALWAYS_TEXT("GPSInfo", achGPSInfo, 3),
        NOT_MINUS_ONE("Longitude", fLongitude, float),
        NOT_MINUS_ONE("Latitude", fLatitude, float),
        ALWAYS_TEXT("PlaceCode", achPlaceCode, 7),
        ALWAYS_TEXT("Place", achPlace, 257),
        ALWAYS_TEXT("Probeenable", achProbeenable, 2),
        ALWAYS_TEXT("CurrentTime", achCurrentTime, 15),
        TEXT("TimeZone", achTimeZone, 33),
        TEXT("APScope", achAPScope, 9),
        ALWAYS_TEXT("WorkPattern", achWorkPattern, 9),
        TEXT("DirectionalAngle", achDirectionalAngle, 9),
        TEXT("APCycle", achAPCycle, 9),
        ALWAYS_TEXT("DeviceMacAdress", achDeviceMacAdress, 62),
        TEXT("CollectorName", achCollectorName, 51),
        TEXT("CollectorOrg", achCollectorOrg, 101),
        TEXT("CollectorIDType", achCollectorIDType, 4),
        TEXT("CollectorID", achCollectorID, 31),
    };
    return members;
}

const std::vector<Member>& RfidUserMembers()
{
    using R = TPubSecRFIDUserInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("RFIDInfoDataID", achRFIDInfoDataID, 49),
        ALWAYS_TEXT("DeviceID", achDeviceID, 21),
        ALWAYS_TEXT("RFIDID", achRFIDID, 49),
        ALWAYS_TEXT("StartTime", achStartTime, 15),
        TEXT("EndTime", achEndTime, 15),
        TEXT("Power", achPower, 11),
        NOT_MINUS_ONE("Longitude", fLongitude, float),
        NOT_MINUS_ONE("Latitude", fLatitude, float),
        TEXT("MacAppearTimes", achMacAppearTimes, 9),
        TEXT("SourceID", achSourceID, 71),
    };
    return members;
}

} // namespace records
