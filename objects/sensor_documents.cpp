/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of GPS, WiFi probe and RFID reports. */
#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "objects/documents.h"
#include "objects/members/sensor.h"

namespace
{

/* The only element of the report's array: pchList {pchArray: [{}]}. */
cJSON* AddElement(cJSON* ptRoot, const char* pchList, const char* pchArray)
{
    return PubSecJsonAppendObject(PubSecJsonAddArray(PubSecJsonAddObject(ptRoot, pchList), pchArray));
}

cJSON* AddArray(cJSON* ptElement, const char* pchList, const char* pchArray)
{
    return PubSecJsonAddArray(PubSecJsonAddObject(ptElement, pchList), pchArray);
}

/* Parts of a WiFi report: false when the object or array cannot be made; one that is not given counts as made. */

bool AddWifiDevice(cJSON* ptElement, const TPubSecWifiDeviceInfo* ptDevice)
{
    if (ptDevice == nullptr)
    {
        return true;
    }
    cJSON* ptObject = PubSecJsonAddObject(ptElement, "WifiDevice");
    PubSecAddMembers(ptObject, pubsec_members::wifi_device::c_tTable, ptDevice);
    return ptObject != nullptr;
}

bool AddWifiUsers(cJSON* ptElement, const TPubSecWifiData* ptWifi)
{
    if (ptWifi->ptWifiUser == nullptr)
    {
        return true;
    }
    cJSON* ptArray = AddArray(ptElement, "WifiUsersList", "WifiUsersObject");
    for (s32 nUser = 0; nUser < ptWifi->nWifiUserNum; nUser++)
    {
        PubSecAddMembers(PubSecJsonAppendObject(ptArray), pubsec_members::wifi_user::c_tTable,
                         &ptWifi->ptWifiUser[nUser]);
    }
    return ptArray != nullptr;
}

/* As many as the first identity says, asked again for every one. */
bool AddWifiImeis(cJSON* ptElement, const TPubSecWifiImeiInfo* ptImeis)
{
    if (ptImeis == nullptr)
    {
        return true;
    }
    cJSON* ptArray = AddArray(ptElement, "ImeiList", "ImeiObject");
    for (u32 dwImei = 0; dwImei < ptImeis->dwImeiNum; dwImei++)
    {
        PubSecAddMembers(PubSecJsonAppendObject(ptArray), pubsec_members::wifi_imei::c_tTable, &ptImeis[dwImei]);
    }
    return ptArray != nullptr;
}

} // namespace

char* _PubSecGPSInfoJson(const TPubSecGpsInfo* ptGps)
{
    cJSON* ptRoot = ptGps == nullptr ? nullptr : cJSON_CreateObject();
    cJSON* ptElement = AddElement(ptRoot, "GPSDataListObject", "GPSDataObject");
    PubSecAddMembers(ptElement, pubsec_members::gps::c_tTable, ptGps);
    return PubSecJsonPrintIf(ptRoot, ptElement);
}

char* _PubSecWifiDeviceJSON(const TPubSecWifiData* ptWifi)
{
    if (ptWifi == nullptr)
    {
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    cJSON* ptElement = AddElement(ptRoot, "WifiDataListObject", "WifiData");
    const bool bMade = AddWifiDevice(ptElement, ptWifi->ptWifiDevice) && AddWifiUsers(ptElement, ptWifi) &&
                       AddWifiImeis(ptElement, ptWifi->ptWifiImei);
    return PubSecJsonPrintIf(ptRoot, bMade ? ptElement : nullptr);
}

char* _PubSecRFIDJSON(const TPubSecRFIDData* ptRfid)
{
    if (ptRfid == nullptr)
    {
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    cJSON* ptElement = AddElement(ptRoot, "RFIDDataListObject", "RFIDData");
    cJSON* ptDevice = PubSecJsonAddObject(ptElement, "RFIDDevice");
    PubSecAddMembers(ptDevice, pubsec_members::rfid_device::c_tTable, ptRfid->ptRFIDDevice);
    cJSON* ptArray = AddArray(ptElement, "RFIDInfoList", "RFIDInfoObject");
    for (s32 nUser = 0; ptRfid->ptRFIDUser != nullptr && nUser < ptRfid->nRFIDUserNum; nUser++)
    {
        PubSecAddMembers(PubSecJsonAppendObject(ptArray), pubsec_members::rfid_user::c_tTable,
                         &ptRfid->ptRFIDUser[nUser]);
    }
    return PubSecJsonPrintIf(ptRoot, ptDevice != nullptr ? ptArray : nullptr);
}
