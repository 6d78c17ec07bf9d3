/* SPDX-License-Identifier: Apache-2.0 */
/* Every record that becomes members of a JSON object, for programs that describe or read records. */
#ifndef PUBSEC_OBJECTS_MEMBERS_ALL_H
#define PUBSEC_OBJECTS_MEMBERS_ALL_H

#include "objects/members/access.h"
#include "objects/members/disposition.h"
#include "objects/members/face.h"
#include "objects/members/file.h"
#include "objects/members/image.h"
#include "objects/members/log_event.h"
#include "objects/members/motor_vehicle.h"
#include "objects/members/non_motor_vehicle.h"
#include "objects/members/person.h"
#include "objects/members/sensor.h"
#include "objects/members/thing_scene.h"
#include "objects/members/video_slice.h"
#include "objects/members/violation.h"

struct TPubSecRecordTable
{
    const char* pchRecord;
    const TPubSecTable* ptTable;
    u32 dwSize; /* of the record, in bytes */
};

namespace pubsec_members
{

template <typename Record> constexpr TPubSecRecordTable RecordTableOf(const char* pchRecord, const TPubSecTable& tTable)
{
    static_assert(sizeof(Record) <= 0xFFFF, "a row keeps its offsets in 16 bits");
    return {pchRecord, &tTable, static_cast<u32>(sizeof(Record))};
}

#define PS_RECORD(type, scope) RecordTableOf<type>(#type, scope::c_tTable)

inline constexpr TPubSecRecordTable c_atRecords[] = {
    PS_RECORD(TPubSecFeatureInfo, feature_info),
    PS_RECORD(TPubSecImageObjInfo, image_info),
    PS_RECORD(TPubSecSubImageInfo, sub_image),
    PS_RECORD(TPubSecFaceObjInfo, face),
    PS_RECORD(TPubSecPersonnelObjInfo, person),
    PS_RECORD(TPubSecMotorVehicleObjInfo, motor_vehicle),
    PS_RECORD(TPubSecNonMotorVehicleObjInfo, non_motor_vehicle),
    PS_RECORD(TPubSecThingObjInfo, thing),
    PS_RECORD(TPubSecSceneObjInfo, scene),
    PS_RECORD(TPubSecVideoSliceInfo, video_slice),
    PS_RECORD(TPubSecFileInfo, file),
    PS_RECORD(TPubSecIllegalRecordInfo, illegal_record),
    PS_RECORD(TPubSecNonMotorIllegalRecordInfo, non_motor_illegal_record),
    PS_RECORD(TPubSecAccessRecordInfo, access_record),
    PS_RECORD(TPubSecGpsInfo, gps),
    PS_RECORD(TPubSecWifiDeviceInfo, wifi_device),
    PS_RECORD(TPubSecWifiUserInfo, wifi_user),
    PS_RECORD(TPubSecWifiImeiInfo, wifi_imei),
    PS_RECORD(TPubSecRFIDDeviceInfo, rfid_device),
    PS_RECORD(TPubSecRFIDUserInfo, rfid_user),
    PS_RECORD(TPubSecDispoNotifyObj, disposition_notification),
    PS_RECORD(TPubSecLogInfo, log_event),
};

#undef PS_RECORD

} // namespace pubsec_members

#endif
