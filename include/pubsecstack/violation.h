/* SPDX-License-Identifier: Apache-2.0 */
/* Traffic violations. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_VIOLATION_H
#define PUBSECSTACK_VIOLATION_H

#include <pubsecstack/image.h>

PUBSEC_C_BEGIN

/*
 * One traffic violation of a motor vehicle. Absent numbers are -1, but for the last few, which have flags.
 * "TollgateID" is written before "DeviceID".
 */
typedef struct
{
    char achIllegalRecordID[49]; /* "IllegalRecordID", always */
    char achSourceID[42];        /* "SourceID", always */
    char achDeviceID[21];        /* "DeviceID", always */
    char achTollgateID[21];      /* "TollgateID", always */

    /* where and when */
    char achShotTime[15];     /* "ShotTime", text */
    char achShotTimeEx[15];   /* "ShotTimeEx", text */
    char achShotPlace[65];    /* "ShotPlace", text */
    s32 nIllegalAct;          /* "IllegalAct", not -1 */
    char achShotPlaceCode[8]; /* "ShotPlaceCode", text */
    s32 nLaneNo;              /* "LaneNo", not -1 */

    /* plate and place in the picture */
    s32 nHasPlate;         /* "HasPlate", "1" or "0" */
    char achPlateClass[3]; /* "PlateClass", text */
    char achPlateColor[3]; /* "PlateColor", text */
    char achPlateNo[18];   /* "PlateNo", text */
    s32 nLeftTopX;         /* "LeftTopX", not -1 */
    s32 nLeftTopY;         /* "LeftTopY", not -1 */
    s32 nRightBtmX;        /* "RightBtmX", not -1 */
    s32 nRightBtmY;        /* "RightBtmY", not -1 */

    /* movement */
    double dSpeed;                /* "Speed", not -1 */
    char achDirection[2];         /* "Direction", text */
    char achDrivingStatusCode[5]; /* "DrivingStatusCode", text */
    char achVehicleClass[4];      /* "VehicleClass", text */

    /* pictures */
    char achImagePath[257];     /* "ImagePath", text */
    char achImagePath2[257];    /* "ImagePath2", text */
    char achImagePath3[257];    /* "ImagePath3", text */
    char achImagePath4[257];    /* "ImagePath4", text */
    char achCompImagePath[257]; /* "CompImagePath", text */

    /* state of the case */
    s32 nIllegalStatus;       /* "IllegalStatus", not -1 */
    char achEntryTime[15];    /* "EntryTime", text */
    char achUpdateTime[15];   /* "UpdateTime", text */
    char achSpeedItvllNo[34]; /* "SpeedItvllNo", text */
    s32 nVideoStatus;         /* "VideoStatus", not -1 */
    s32 nCompImageStatus;     /* "CompImageStatus", not -1 */
    double dMaxSpeed;         /* "MaxSpeed", not -1 */
    char achPassTimes[132];   /* "PassTimes", text */
    s32 nBackupMark;          /* "BackupMark", not -1 */

    /* what was confirmed */
    char achPlateClassConfirm[3]; /* "PlateClassConfirm", text */
    char achPlateColorConfirm[3]; /* "PlateColorConfirm", text */
    char achPlateNoConfirm[18];   /* "PlateNoConfirm", text */
    s32 nIllegalActConfirm;       /* "IllegalActConfirm", not -1 */
    char achErrcorInfo[256];      /* "ErrcorInfo", text */
    char achStdIllegalAct[33];    /* "StdIllegalAct", text */
    char achConfirmPerson[65];    /* "ConfirmPerson", text */
    char achConfirmUnit[129];     /* "ConfirmUnit", text */
    char achConfirmComment[256];  /* "ConfirmComment", text */
    char achConfirmTime[15];      /* "ConfirmTime", text */

    /* related objects; the texts are the host's */
    u32 dwSubImageNum;                   /* entries of ptSubImageList */
    double dOverspeedRate;               /* "OverspeedRate", not -1 */
    const char* pchMotorVehicleIDs;      /* "MotorVehicleIDs", pointer */
    const char* pchNonMotorVehicleIDs;   /* "NonMotorVehicleIDs", pointer */
    const char* pchPersonIDs;            /* "PersonIDs", pointer */
    const char* pchVideoIDs;             /* "VideoIDs", pointer */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", written unless null */

    /* the list, and the algorithm */
    u32 dwIllegalRecordNum;        /* records in the list that starts with this one; read from the first record only */
    const char* pchAlogorithmName; /* "AlogorithmName", pointer */
    s32 nAIStatus;                 /* "AIStatus", not -1 */

    char achResetPerson[65]; /* "ResetPerson", text */

    /* place and origin */
    char achPlaceCode[7];    /* "PlaceCode", text */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[9];     /* "CityCode", text */
    s32 nSourceFactory;      /* "SourceFactory", not -1 */
    s32 nDeviceClass;        /* "DeviceClass", not -1 */

    /* weight and size */
    s32 nWeight;         /* "Weight", not -1 */
    s32 nMaxWeight;      /* "MaxWeight", not -1 */
    s32 nLength;         /* "Length", not -1 */
    s32 nMaxLength;      /* "MaxLength", not -1 */
    s32 nWidth;          /* "Width", not -1 */
    s32 nMaxWidth;       /* "MaxWidth", not -1 */
    s32 nHeight;         /* "Height", not -1 */
    s32 nMaxHeight;      /* "MaxHeight", not -1 */
    double dOverRunRate; /* "OverRunRate", not -1 */

    /* who did what */
    char achCollectorIDType[4]; /* "CollectorIDType", text */
    char achCollectorID[31];    /* "CollectorID", text */
    char achResetReason[65];    /* "ResetReason", text */
    u32 bScenePenaltyStatusValid;
    s32 nScenePenaltyStatus; /* "ScenePenaltyStatus", flag */
    u32 bSourceTypeValid;
    s32 nSourceType;        /* "SourceType", flag */
    char achTypistID[32];   /* "TypistID", text */
    char achTypistName[32]; /* "TypistName", text */

    /* the plate in front, and more */
    char achFrontPlateNo[16];   /* "FrontPlateNo", text */
    char achFrontPlateColor[3]; /* "FrontPlateColor", text */
    char achFrontPlateClass[9]; /* "FrontPlateClass", text */
    u32 bFrontSpeedValid;
    double dFrontSpeed;          /* "FrontSpeed", flag */
    char achPlateStructure[256]; /* "PlateStructure", text */
    char achSignNumber[2];       /* "SignNumber", text */
    char achSeqNumber[18];       /* "SeqNumber", text */
    u32 bIsMessageRemindValid;
    s32 nIsMessageRemind; /* "IsMessageRemind", flag */
} TPubSecIllegalRecordInfo;

/*
 * One traffic violation of a non-motor vehicle. Every optional number has a flag, and the lists of identifiers are
 * arrays of its own.
 */
typedef struct
{
    char achIllegalRecordID[49]; /* "IllegalRecordID", always */
    char achSourceID[42];        /* "SourceID", always */
    char achDeviceID[21];        /* "DeviceID", always */
    char achTollgateID[21];      /* "TollgateID", always */

    /* where and when */
    char achShotTime[15];  /* "ShotTime", text */
    char achShotPlace[68]; /* "ShotPlace", text */
    u32 bIllegalActValid;
    s32 nIllegalAct;          /* "IllegalAct", flag */
    char achShotPlaceCode[8]; /* "ShotPlaceCode", text */
    u32 bLaneNoValid;
    s32 nLaneNo; /* "LaneNo", flag */

    /* plate and vehicle */
    char achHasPlate[8];        /* "HasPlate", always */
    char achPlateClass[3];      /* "PlateClass", text */
    char achPlateColor[3];      /* "PlateColor", text */
    char achPlateNo[16];        /* "PlateNo", text */
    char achVehicleClassExt[6]; /* "VehicleClassExt", text */

    /* riders */
    u32 bIsCarryPeopleValid;
    s32 nIsCarryPeople; /* "IsCarryPeople", flag */
    u32 bIsUseUmbrellaValid;
    s32 nIsUseUmbrella; /* "IsUseUmbrella", flag */
    u32 bIsUseHelmetValid;
    s32 nIsUseHelmet; /* "IsUseHelmet", flag */
    u32 bIsUseSunglassValid;
    s32 nIsUseSunglass; /* "IsUseSunglass", flag */

    /* pictures */
    char achImagePath[257];     /* "ImagePath", text */
    char achImagePath2[257];    /* "ImagePath2", text */
    char achImagePath3[257];    /* "ImagePath3", text */
    char achImagePath4[257];    /* "ImagePath4", text */
    char achCompImagePath[260]; /* "CompImagePath", text */

    /* state of the case */
    u32 bIllegalStatusValid;
    s32 nIllegalStatus;     /* "IllegalStatus", flag */
    char achEntryTime[15];  /* "EntryTime", text */
    char achUpdateTime[17]; /* "UpdateTime", text */
    u32 bVideoStatusValid;
    s32 nVideoStatus; /* "VideoStatus", flag */
    u32 bCompImageStatusValid;
    s32 nCompImageStatus; /* "CompImageStatus", flag */
    u32 bMaxSpeedValid;
    double dMaxSpeed; /* "MaxSpeed", flag */

    /* what was confirmed */
    char achIllgealPerson[129];   /* "IllgealPerson", text */
    char achPlateClassConfirm[3]; /* "PlateClassConfirm", text */
    char achPlateColorConfirm[3]; /* "PlateColorConfirm", text */
    char achPlateNoConfirm[17];   /* "PlateNoConfirm", text */
    u32 bIllegalActConfirmValid;
    s32 nIllegalActConfirm;      /* "IllegalActConfirm", flag */
    char achErrcorInfo[256];     /* "ErrcorInfo", text */
    char achStdIllegalAct[33];   /* "StdIllegalAct", text */
    char achConfirmPerson[65];   /* "ConfirmPerson", text */
    char achConfirmUnit[129];    /* "ConfirmUnit", text */
    char achConfirmComment[257]; /* "ConfirmComment", text */
    char achConfirmTime[15];     /* "ConfirmTime", text */

    /* related objects */
    char achMotorVehicleIDs[1025];       /* "MotorVehicleIDs", text */
    char achNonMotorVehicleIDs[1025];    /* "NonMotorVehicleIDs", text */
    char achPersonIDs[1025];             /* "PersonIDs", text */
    char achVideoIDs[1025];              /* "VideoIDs", text */
    u16 wSubImageNum;                    /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", written unless null */

    /* place and origin */
    char achPlaceCode[8]; /* "PlaceCode", text */
    u32 bSourceFactoryValid;
    s32 nSourceFactory;      /* "SourceFactory", flag */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[9];     /* "CityCode", text */
    u32 bDeviceClassValid;
    s32 nDeviceClass; /* "DeviceClass", flag */

    /* faces, and more of the vehicle */
    char achFaceIDs[1028]; /* "FaceIDs", text */
    u32 bCarryPeopleValid;
    s32 nCarryPeople; /* "CarryPeople", flag */
    u32 bIsCeilingValid;
    s32 nIsCeiling;          /* "IsCeiling", flag */
    char achVehicleColor[4]; /* "VehicleColor", text */
} TPubSecNonMotorIllegalRecordInfo;

PUBSEC_C_END

#endif
