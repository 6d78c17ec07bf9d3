/* SPDX-License-Identifier: Apache-2.0 */
/* Notifications that a watch list (disposition) has fired. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_DISPOSITION_H
#define PUBSECSTACK_DISPOSITION_H

#include <pubsecstack/face.h>
#include <pubsecstack/motor_vehicle.h>
#include <pubsecstack/non_motor_vehicle.h>
#include <pubsecstack/person.h>

PUBSEC_C_BEGIN

/*
 * An entry of a disposition list. Each kind is written when its count is not 0; the low 16 bits of a count are the
 * number of records. The arrays are the host's.
 */
typedef struct
{
    u32 dwPersonNum;
    TPubSecPersonnelObjInfo* ptPerson; /* "PersonListObject" */
    u32 dwMotorVehicleNum;
    TPubSecMotorVehicleObjInfo* ptMotorVehicle; /* "MotorVehicleListObject" */
    u32 dwFaceNum;
    TPubSecFaceObjInfo* ptFace; /* "FaceListObject" */
    u32 dwNonMotorVehicleNum;
    TPubSecNonMotorVehicleObjInfo* ptNonMotorVehicle; /* "NonMotorVehicleListObject" */
} TPubSecDispositionListObj;

/* One rule of a watch list that has fired, with what it fired for. Each embedded record has room for one object. */
typedef struct
{
    char achNotificationID[34];                     /* "NotificationID", always */
    char achDispositionID[34];                      /* "DispositionID", always */
    char achTitle[257];                             /* "Title", always */
    char achTriggerTime[15];                        /* "TriggerTime", always */
    char achCntObjectID[52];                        /* "CntObjectID", always */
    u32 dwPersonNum;                                /* 0 or 1: whether tPerson is there */
    TPubSecPersonnelObjInfo tPerson;                /* "PersonObject" */
    u32 dwMotorVehicleNum;                          /* 0 or 1 */
    TPubSecMotorVehicleObjInfo tMotorVehicle;       /* "MotorVehicleObject" */
    u32 dwFaceNum;                                  /* 0 or 1 */
    TPubSecFaceObjInfo tFace;                       /* "FaceObject" */
    u32 dwNonMotorVehicleNum;                       /* 0 or 1 */
    TPubSecNonMotorVehicleObjInfo tNonMotorVehicle; /* "NonMotorVehicleObject" */
    u32 bAlarmClassValid;
    s32 nAlarmClass;                              /* "AlarmClass", flag */
    u32 dwDispositionNum;                         /* entries of ptDispositionList; the low 16 bits count */
    TPubSecDispositionListObj* ptDispositionList; /* "DispositionListObject", unless null or 0 entries; the host's */
} TPubSecDispoNotifyObj;

/* The notifications of one document. */
typedef struct
{
    u16 wObjectNum;                           /* 1 to 256 */
    TPubSecDispoNotifyObj* aptDispoNotifyObj; /* wObjectNum records, back to back */
    u32 dwObjectForm;                         /* 1 with wObjectNum 1 writes a single object, anything else a list */
} TPubsecDispositionNotificationList;

PUBSEC_C_END

#endif
