/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/sensor.h"

#include "objects/encoders.h"

void _PubSecGpsMsgObject(cJSON* ptObj, const TPubSecGpsInfo* ptGps)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::gps::c_tTable, ptGps);
}

void _PubSecWifiDetectionInfo(cJSON* ptObj, const TPubSecWifiDeviceInfo* ptDevice)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::wifi_device::c_tTable, ptDevice);
}

void _PubSecWifiUserObjJson(cJSON* ptObj, const TPubSecWifiUserInfo* ptUser)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::wifi_user::c_tTable, ptUser);
}

void _PubSecWifiIMEIObjJson(cJSON* ptObj, const TPubSecWifiImeiInfo* ptImei)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::wifi_imei::c_tTable, ptImei);
}

void _PubSecRFIDInfo(cJSON* ptObj, const TPubSecRFIDDeviceInfo* ptDevice)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::rfid_device::c_tTable, ptDevice);
}

void _PubSecRFIDUserObjJson(cJSON* ptObj, const TPubSecRFIDUserInfo* ptUser)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::rfid_user::c_tTable, ptUser);
}
