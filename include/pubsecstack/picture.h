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
 *
 * The objects, the access records and the data stand in the element of the last image information: a picture without
 * any (count 0, or a null pointer) is sent without them. In an array of pictures, a later one without image information
 * is left out; if the first one lacks it, none is sent.
 */
typedef struct
{
    u32 adwReserved1[2];                              /* not read by the library */
    TPubSecImageObjInfo* ptImageInfo;                 /* nImageNum records; "ImageInfo"; released with the record */
    void* pvReserved2;                                /* not read by the library */
    TPubSecMotorVehicleObjInfo* ptMotorVehicle;       /* released with the record */
    TPubSecPersonnelObjInfo* ptPersonnel;             /* released with the record */
    TPubSecFaceObjInfo* ptFace;                       /* released with the record */
    TPubSecNonMotorVehicleObjInfo* ptNonMotorVehicle; /* released with the record */
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
