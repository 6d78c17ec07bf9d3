/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The documents that the posts send. Each builder returns unformatted JSON text for cJSON_free, or null for a null
 * record and when there is no memory for the root or the first objects in it.
 */
#ifndef PUBSEC_OBJECTS_DOCUMENTS_H
#define PUBSEC_OBJECTS_DOCUMENTS_H

#include <pubsecstack/log_event.h>
#include <pubsecstack/picture.h>
#include <pubsecstack/sensor.h>
#include <pubsecstack/video_slice.h>

PUBSEC_C_BEGIN

/* A whole picture: the objects, access records and data stand in the last image element. */
char* _PubSecImageGatherJSON(const TPubSecIntelliPicObj* ptPictures);

/* An array of pictures, as many as the first one's nImageNum: data before the objects, no access records. */
char* _PubSecImageGatherJSONEX(const TPubSecIntelliPicObj* ptPictures);

/* One picture's information alone. */
char* _PubSecImageSingleJson(TPubSecImageObjInfo* const* pptImage);

/* Objects of one kind. */
char* _PubSecImageFaceJSON(const TPubSecFaceObjInfo* ptFaces, u32 dwNum);
char* _PubSecImagePersonJSON(const TPubSecPersonnelObjInfo* ptPersons, u32 dwNum);
char* _PubSecImageMotorVehicleJSON(const TPubSecMotorVehicleObjInfo* ptVehicles, u32 dwNum);
char* _PubSecImageNonMotorVehicleJSON(const TPubSecNonMotorVehicleObjInfo* ptVehicles, u32 dwNum);
char* _PubSecImageThingJSON(const TPubSecThingObjInfo* ptThings, u32 dwNum);
char* _PubSecImageSceneJSON(const TPubSecSceneObjInfo* ptScenes, u32 dwNum);

/* An access record, and a list of as many as the first one's dwRecordNum. */
char* _PubSecAccRecInfoJson(const TPubSecAccessRecordInfo* ptRecord);
char* _PubSecAccRecInfoListJson(const TPubSecAccessRecordInfo* ptRecords);

/* Slices with the objects recognised in them, which stand in the last slice's element; files likewise. */
char* _PubSecVideoSliceGatherJSON(const TPubSecVideoSliceObj* ptObj);
char* _PubSecFileGatherJSON(const TPubSecVideoSliceObj* ptObj);

/* {"VideoDataObject":{"VData":"..."}}. */
char* _PubSecVideoDataJSON(const char* pchData);

/* Violations: as many as the first one's dwIllegalRecordNum, without sub-images; or a given number, with them. */
char* _PubSecIllegalRecordJson(const TPubSecIllegalRecordInfo* ptRecords);
char* _PubSecIllegalRecordJsonEx(u32 dwNum, const TPubSecIllegalRecordInfo* ptRecords);
char* _PubSecNonMotorIllegalRecordJson(u16 wNum, const TPubSecNonMotorIllegalRecordInfo* ptRecords);

/* Sensor reports. */
char* _PubSecGPSInfoJson(const TPubSecGpsInfo* ptGps);
char* _PubSecWifiDeviceJSON(const TPubSecWifiData* ptWifi);
char* _PubSecRFIDJSON(const TPubSecRFIDData* ptRfid);

/* A log event, in an array of its own. */
char* _PubSecLogInfoJson(const TPubSecLogInfo* ptLog);

PUBSEC_C_END

#endif
