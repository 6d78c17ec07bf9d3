/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Each adds the members of one record to an object that the caller made and owns. What is added is the
 * object's: the record may go. "SubImageList" is not theirs: the documents add it.
 */
#ifndef PUBSEC_OBJECTS_ENCODERS_H
#define PUBSEC_OBJECTS_ENCODERS_H

#include <pubsecstack/access.h>
#include <pubsecstack/face.h>
#include <pubsecstack/file.h>
#include <pubsecstack/image.h>
#include <pubsecstack/motor_vehicle.h>
#include <pubsecstack/non_motor_vehicle.h>
#include <pubsecstack/person.h>
#include <pubsecstack/sensor.h>
#include <pubsecstack/thing_scene.h>
#include <pubsecstack/video_slice.h>
#include <pubsecstack/violation.h>

PUBSEC_C_BEGIN

void _PubSecImageInfoJson(struct cJSON* ptObj, const TPubSecImageObjInfo* ptImageInfo);
void _PubSecSubImgObjJson(struct cJSON* ptObj, const TPubSecSubImageInfo* ptSubImage);

void _PubSecFaceObjListObjJson(struct cJSON* ptObj, const TPubSecFaceObjInfo* ptFace);

void _PubSecPersonListObjJson(struct cJSON* ptObj, const TPubSecPersonnelObjInfo* ptPerson);

void _PubSecMotorVehicleObjJson(struct cJSON* ptObj, const TPubSecMotorVehicleObjInfo* ptVehicle);

void _PubSecNonMotorVehicleObjJson(struct cJSON* ptObj, const TPubSecNonMotorVehicleObjInfo* ptVehicle);

void _PubSecThingObjJson(struct cJSON* ptObj, const TPubSecThingObjInfo* ptThing);
void _PubSecPlaceObjJson(struct cJSON* ptObj, const TPubSecSceneObjInfo* ptScene);

void _PubSecVideoSliceInfoJson(struct cJSON* ptObj, const TPubSecVideoSliceInfo* ptSlice);

void _PubSecFileInfoJson(struct cJSON* ptObj, const TPubSecFileInfo* ptFile);

void _PubSecIllRecdObjJson(struct cJSON* ptObj, const TPubSecIllegalRecordInfo* ptRecord);
void _PubSecNonMotorIllRecdObjJson(struct cJSON* ptObj, const TPubSecNonMotorIllegalRecordInfo* ptRecord);

void _PubSecAccRecdObjJson(struct cJSON* ptObj, const TPubSecAccessRecordInfo* ptRecord);

void _PubSecGpsMsgObject(struct cJSON* ptObj, const TPubSecGpsInfo* ptGps);
void _PubSecWifiDetectionInfo(struct cJSON* ptObj, const TPubSecWifiDeviceInfo* ptDevice);
void _PubSecWifiUserObjJson(struct cJSON* ptObj, const TPubSecWifiUserInfo* ptUser);
void _PubSecWifiIMEIObjJson(struct cJSON* ptObj, const TPubSecWifiImeiInfo* ptImei);
void _PubSecRFIDInfo(struct cJSON* ptObj, const TPubSecRFIDDeviceInfo* ptDevice);
void _PubSecRFIDUserObjJson(struct cJSON* ptObj, const TPubSecRFIDUserInfo* ptUser);

PUBSEC_C_END

#endif
