/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_SENSOR_H
#define PUBSEC_OBJECTS_MEMBERS_SENSOR_H

#include <pubsecstack/sensor.h>

#include "objects/member_table.h"

namespace pubsec_members::gps
{

using R = TPubSecGpsInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("GPSID", achGPSID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_ALWAYS("SatelliteNo", nSatelliteNo),
    PS_ALWAYS("Direction", dDirection),
    PS_ALWAYS("Height", nHeight),
    PS_ALWAYS("Longitude", fLongitude),
    PS_ALWAYS("Latitude", fLatitude),
    PS_ALWAYS("Speed", dSpeed),
    PS_ALWAYS("CurrentTime", achCurrentTime),
    PS_ALWAYS("Positioning", achPositioning),
    PS_ALWAYS("ValidDataMark", nValidDataMark),
    PS_TEXT("SourceID", achSourceID),
    PS_NOT_MINUS_ONE("SourceType", nSourceType),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::gps

namespace pubsec_members::wifi_device
{

using R = TPubSecWifiDeviceInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("WifiDeviceDataID", achWifiDeviceDataID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_ALWAYS("DeviceName", achDeviceName),
    PS_ALWAYS("Model", achModel),
    PS_ALWAYS("IPAddr", achIPAddr),
    PS_TEXT("IPV6Addr", achIPV6Addr),
    PS_ALWAYS("GPSInfo", achGPSInfo),
    PS_NOT_MINUS_ONE("Longitude", fLongitude),
    PS_NOT_MINUS_ONE("Latitude", fLatitude),
    PS_ALWAYS("PlaceCode", achPlaceCode),
    PS_ALWAYS("Place", achPlace),
    PS_ALWAYS("WifiProbeenable", achWifiProbeenable),
    PS_ALWAYS("CurrentTime", achCurrentTime),
    PS_TEXT("TimeZone", achTimeZone),
    PS_TEXT("APScope", achAPScope),
    PS_ALWAYS("WorkPattern", achWorkPattern),
    PS_TEXT("WirelessDataFrame", achWirelessDataFrame),
    PS_TEXT("NetworkAccessType", achNetworkAccessType),
    PS_TEXT("APSendCyc", achAPSendCyc),
    PS_ALWAYS("DeviceMacAdress", achDeviceMacAdress),
    PS_TEXT("CollectorName", achCollectorName),
    PS_TEXT("CollectorOrg", achCollectorOrg),
    PS_TEXT("CollectorIDType", achCollectorIDType),
    PS_TEXT("CollectorID", achCollectorID),
    PS_TEXT("DeviceSNNo", achDeviceSNNo),
    PS_TEXT("APSId", achAPSId),
    PS_OBJECT_POINTER_IF_ONE("GPSData", achGPSInfo, ptGPSData, gps::c_tTable),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::wifi_device

namespace pubsec_members::wifi_user
{

using R = TPubSecWifiUserInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("WifiUserDataID", achWifiUserDataID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_ALWAYS("DiscoverMacAddr", achDiscoverMacAddr),
    PS_TEXT("DiscoverSsidInf", achDiscoverSsidInf),
    PS_TEXT("HistorySsid", achHistorySsid),
    PS_TEXT("ImeiMsg", achImeiMsg),
    PS_TEXT("ImsiMsg", achImsiMsg),
    PS_TEXT("OSVersion", achOSVersion),
    PS_TEXT("DiscoverDeviceManuf", achDiscoverDeviceManuf),
    PS_ALWAYS("StartTime", achStartTime),
    PS_ALWAYS("EndTime", achEndTime),
    PS_ALWAYS("EUTCTime", qwEUTCTime),
    PS_TEXT("Power", achPower),
    PS_TEXT("PhoneNo", achPhoneNo),
    PS_TEXT("WireDisX", achWireDisX),
    PS_TEXT("WireDisY", achWireDisY),
    PS_TEXT("WIFIEncryptType", achWIFIEncryptType),
    PS_TEXT("APWifiChannel", achAPWifiChannel),
    PS_TEXT("MacAppearTimes", achMacAppearTimes),
    PS_TEXT("SourceID", achSourceID),
    PS_TEXT("SelfDefObject", achSelfDefObject),
    PS_TEXT("CollectorName", achCollectorName),
    PS_TEXT("CollectorOrg", achCollectorOrg),
    PS_TEXT("CollectorIDType", achCollectorIDType),
    PS_TEXT("CollectorID", achCollectorID),
    PS_TEXT("DeviceSNNo", achDeviceSNNo),
    PS_TEXT("APSId", achAPSId),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::wifi_user

namespace pubsec_members::wifi_imei
{

using R = TPubSecWifiImeiInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_TEXT("HomeArea", achHomeArea),
    PS_TEXT("WifiDeviceDataID", achWifiDeviceDataID),
    PS_ALWAYS("DateTime", achDateTime),
    PS_TEXT("PhoneModel", achPhoneModel),
    PS_TEXT("IMEI", achIMEI),
    PS_TEXT("Msisdn", achMsisdn),
    PS_TEXT("IMSI", achIMSI),
    PS_TEXT("TMSI", achTMSI),
    PS_ALWAYS("AreaCode", achAreaCode),
    PS_ALWAYS("CI", achCI),
    /* twice, and no latitude */
    PS_ALWAYS("Longitude", dLongitude),
    PS_ALWAYS("Longitude", dLongitude),
    PS_TEXT("Mac", achMac),
    PS_TEXT("Rssi", achRssi),
    PS_TEXT("Lac", achLac),
    PS_TEXT("Inctimer", achInctimer),
    PS_TEXT("AreaCideTime", achAreaCideTime),
    PS_TEXT("Spcode", achSpcode),
    PS_TEXT("NetWork", achNetWork),
    PS_TEXT("Esn", achEsn),
    PS_TEXT("PN", achPN),
    PS_TEXT("Frequence", achFrequence),
    PS_TEXT("SmsSendStatus", achSmsSendStatus),
    PS_TEXT("SeqNum", achSeqNum),
    PS_TEXT("EXPAND1", achEXPAND1),
    PS_TEXT("EXPAND2", achEXPAND2),
    PS_TEXT("EXPAND3", achEXPAND3),
    PS_TEXT("EXPAND4", achEXPAND4),
    PS_TEXT("EXPAND5", achEXPAND5),
    PS_ALWAYS("ImeiID", achImeiID),
    PS_TEXT("PlaceCode", achPlaceCode),
    PS_TEXT("ProvinceCode", achProvinceCode),
    PS_TEXT("CityCode", achCityCode),
    PS_NOT_MINUS_ONE("SourceFactory", nSourceFactory),
    PS_NOT_MINUS_ONE("DeviceClass", nDeviceClass),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::wifi_imei

namespace pubsec_members::rfid_device
{

using R = TPubSecRFIDDeviceInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("RFIDDeviceDataID", achRFIDDeviceDataID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_ALWAYS("DeviceName", achDeviceName),
    PS_ALWAYS("Model", achModel),
    PS_ALWAYS("IPAddr", achIPAddr),
    PS_TEXT("IPV6Addr", achIPV6Addr),
    PS_ALWAYS("GPSInfo", achGPSInfo),
    PS_NOT_MINUS_ONE("Longitude", fLongitude),
    PS_NOT_MINUS_ONE("Latitude", fLatitude),
    PS_ALWAYS("PlaceCode", achPlaceCode),
    PS_ALWAYS("Place", achPlace),
    PS_ALWAYS("Probeenable", achProbeenable),
    PS_ALWAYS("CurrentTime", achCurrentTime),
    PS_TEXT("TimeZone", achTimeZone),
    PS_TEXT("APScope", achAPScope),
    PS_ALWAYS("WorkPattern", achWorkPattern),
    PS_TEXT("DirectionalAngle", achDirectionalAngle),
    PS_TEXT("APCycle", achAPCycle),
    PS_ALWAYS("DeviceMacAdress", achDeviceMacAdress),
    PS_TEXT("CollectorName", achCollectorName),
    PS_TEXT("CollectorOrg", achCollectorOrg),
    PS_TEXT("CollectorIDType", achCollectorIDType),
    PS_TEXT("CollectorID", achCollectorID),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::rfid_device

namespace pubsec_members::rfid_user
{

using R = TPubSecRFIDUserInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("RFIDInfoDataID", achRFIDInfoDataID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_ALWAYS("RFIDID", achRFIDID),
    PS_ALWAYS("StartTime", achStartTime),
    PS_TEXT("EndTime", achEndTime),
    PS_TEXT("Power", achPower),
    PS_NOT_MINUS_ONE("Longitude", fLongitude),
    PS_NOT_MINUS_ONE("Latitude", fLatitude),
    PS_TEXT("MacAppearTimes", achMacAppearTimes),
    PS_TEXT("SourceID", achSourceID),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::rfid_user

#endif
