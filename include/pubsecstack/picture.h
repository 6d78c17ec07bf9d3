/* SPDX-License-Identifier: Apache-2.0 */
/* A picture with everything found in it. */
#ifndef PUBSECSTACK_PICTURE_H
#define PUBSECSTACK_PICTURE_H

#include <pubsecstack/access.h>
#include <pubsecstack/face.h>
#include <pubsecstack/image.h>
#include <pubsecstack/motor_vehicle.h>
#include <pubsecstack/non_motor_vehicle.h>
#include <pubsecstack/person.h>
#include <pubsecstack/thing_scene.h>

PUBSEC_C_BEGIN

/*
 * One picture and its analysis. A list is written when its pointer is not null and its count is above 0. Mind that the
 * counts are not in the order of the pointers. In an array of pictures, the first one's nImageNum is the array's
 * length.
 */
typedef struct
{
    u32 adwReserved1[2];              /* not read by the library */
    TPubSecImageObjInfo* ptImageInfo; /* nImageNum records; "ImageInfo" */
    void* pvReserved2;                /* not read by the library */
    TPubSecMotorVehicleObjInfo* ptMotorVehicle;
    TPubSecPersonnelObjInfo* ptPersonnel;
    TPubSecFaceObjInfo* ptFace;
    TPubSecNonMotorVehicleObjInfo* ptNonMotorVehicle;
    TPubSecThingObjInfo* ptThing;
    TPubSecSceneObjInfo* ptScene;
    TPubSecAccessRecordInfo* ptAccessRecord; /* as many as the first one's dwRecordNum says */
    u32 adwReserved3[8];                     /* not read by the library */
    s32 nImageNum;
    s32 nPersonnelNum;
    s32 nFaceNum;
    s32 nMotorVehicleNum;
    s32 nNonMotorVehicleNum;
    s32 nThingNum;
    s32 nSceneNum;
    const char* pchData; /* "Data", pointer; the picture in base64, the host's */
} TPubSecIntelliPicObj;

PUBSEC_C_END

#endif
