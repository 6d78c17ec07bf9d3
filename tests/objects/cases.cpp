/* SPDX-License-Identifier: Apache-2.0 */
#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include <pubsecstack/documents.h>

#include "objects/documents.h"
#include "objects/encoders.h"
#include "tests/objects/demanded.h"

namespace records
{

namespace
{

/* What stands between two given parts of a text. */
std::string Between(const std::string& text, const std::string& head, const std::string& tail)
{
    const bool fits = text.size() >= head.size() + tail.size() && text.compare(0, head.size(), head) == 0 &&
                      text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
    return fits ? text.substr(head.size(), text.size() - head.size() - tail.size()) : "not wrapped: " + text;
}

/* A log event has no encoder of its own: it is the one element of its document. */
std::string LogEvent(const void* record)
{
    char* document = _PubSecLogInfoJson(static_cast<const TPubSecLogInfo*>(record));
    const std::string text = document != nullptr ? document : "no document";
    cJSON_free(document);
    return Between(text, "[", "]");
}

/* A notification is the one member of its single form; its objects are left out here. */
std::string Notification(const void* record)
{
    TPubSecDispoNotifyObj notification = *static_cast<const TPubSecDispoNotifyObj*>(record);
    notification.dwPersonNum = 0;
    notification.dwMotorVehicleNum = 0;
    notification.dwFaceNum = 0;
    notification.dwNonMotorVehicleNum = 0;
    notification.dwDispositionNum = 0;
    const std::string text = Printed([&](cJSON* root) {
        EXPECT_EQ(PubSecDispositionNotificationObjectStructToJsonObject(root, 1, 1, &notification), 50U);
    });
    return Between(text, "{\"DispositionNotificationObject\":", "}");
}

} // namespace

const std::vector<Case>& AllCases()
{
    static const std::vector<Case> cases = {
        CaseOf("ImageInfo", ImageInfoMembers(), _PubSecImageInfoJson),
        CaseOf("SubImage", SubImageMembers(), _PubSecSubImgObjJson),
        CaseOf("Face", FaceMembers(), _PubSecFaceObjListObjJson),
        CaseOf("Person", PersonMembers(), _PubSecPersonListObjJson),
        CaseOf("MotorVehicle", MotorVehicleMembers(), _PubSecMotorVehicleObjJson),
        CaseOf("NonMotorVehicle", NonMotorVehicleMembers(), _PubSecNonMotorVehicleObjJson),
        CaseOf("Thing", ThingMembers(), _PubSecThingObjJson),
        CaseOf("Scene", SceneMembers(), _PubSecPlaceObjJson),
        CaseOf("VideoSlice", VideoSliceMembers(), _PubSecVideoSliceInfoJson),
        CaseOf("File", FileMembers(), _PubSecFileInfoJson),
        CaseOf("IllegalRecord", IllegalRecordMembers(), _PubSecIllRecdObjJson),
        CaseOf("NonMotorIllegalRecord", NonMotorIllegalRecordMembers(), _PubSecNonMotorIllRecdObjJson),
        CaseOf("AccessRecord", AccessRecordMembers(), _PubSecAccRecdObjJson),
        CaseOf("Gps", GpsMembers(), _PubSecGpsMsgObject),
        CaseOf("WifiDevice", WifiDeviceMembers(), _PubSecWifiDetectionInfo),
        CaseOf("WifiUser", WifiUserMembers(), _PubSecWifiUserObjJson),
        CaseOf("WifiImei", WifiImeiMembers(), _PubSecWifiIMEIObjJson),
        CaseOf("RfidDevice", RfidDeviceMembers(), _PubSecRFIDInfo),
        CaseOf("RfidUser", RfidUserMembers(), _PubSecRFIDUserObjJson),
        {"LogEvent", sizeof(TPubSecLogInfo), &LogEventMembers(), LogEvent},
        {"Notification", sizeof(TPubSecDispoNotifyObj), &NotificationMembers(), Notification},
    };
    return cases;
}

} // namespace records
