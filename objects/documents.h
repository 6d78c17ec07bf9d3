/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The documents that the posts send. Each builder returns unformatted JSON text for cJSON_free, or null for a null
 * record and when the root cannot be made.
 */
#ifndef PUBSEC_OBJECTS_DOCUMENTS_H
#define PUBSEC_OBJECTS_DOCUMENTS_H

#include <pubsecstack/picture.h>

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

PUBSEC_C_END

#endif
