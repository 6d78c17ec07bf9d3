/* SPDX-License-Identifier: Apache-2.0 */
/* Non-motor vehicles. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_NON_MOTOR_VEHICLE_H
#define PUBSECSTACK_NON_MOTOR_VEHICLE_H

#include <pubsecstack/image.h>

PUBSEC_C_BEGIN

/*
 * One bicycle, tricycle, scooter or the like with its riders. Absent numbers are -1 here, not flags: set every
 * optional number to -1 first, for 0 is a value and is written.
 */
typedef struct
{
    char achNonMotorVehicleID[49]; /* "NonMotorVehicleID", always */
    u32 dwInfoKind;                /* "InfoKind", always */
    char achSourceID[42];          /* "SourceID", always */
    char achDeviceID[21];          /* "DeviceID", text */

    /* where it lies and when it was seen */
    s32 nLeftTopX;             /* "LeftTopX", always */
    s32 nLeftTopY;             /* "LeftTopY", always */
    s32 nRightBtmX;            /* "RightBtmX", always */
    s32 nRightBtmY;            /* "RightBtmY", always */
    char achMarkTime[15];      /* "MarkTime", always */
    char achAppearTime[15];    /* "AppearTime", always */
    char achDisappearTime[15]; /* "DisappearTime", always */

    /* plate */
    u32 dwHasPlate;            /* "HasPlate", "1" or "0" */
    char achPlateClass[3];     /* "PlateClass", always */
    char achPlateColor[3];     /* "PlateColor", always */
    char achPlateNo[17];       /* "PlateNo", always */
    char achPlateNoAttach[17]; /* "PlateNoAttach", text */
    char achPlateDescribe[65]; /* "PlateDescribe", text */
    u32 dwIsDecked;            /* "IsDecked", "1" or "0" */
    u32 dwIsAltered;           /* "IsAltered", "1" or "0" */
    u32 dwIsCovered;           /* "IsCovered", "1" or "0" */

    /* movement and use */
    double dSpeed;                  /* "Speed", not -1 */
    char achDrivingStatusCode[8];   /* "DrivingStatusCode", text */
    s32 nUsingPropertiesCode;       /* "UsingPropertiesCode", not -1 */
    char achUsingPropertiesCode[5]; /* "UsingPropertiesCode", text */

    /* make and size */
    char achVehicleBrand[33]; /* "VehicleBrand", text */
    char achVehicleType[65];  /* "VehicleType", text */
    s32 nVehicleLength;       /* "VehicleLength", not -1 */
    s32 nVehicleWidth;        /* "VehicleWidth", not -1 */
    s32 nVehicleHeight;       /* "VehicleHeight", not -1 */
    char achVehicleColor[3];  /* "VehicleColor", always */

    /* body */
    char achVehicleHood[65];        /* "VehicleHood", text */
    char achVehicleTrunk[65];       /* "VehicleTrunk", text */
    char achVehicleWheel[3];        /* "VehicleWheel", text */
    char achWheelPrintedPattern[5]; /* "WheelPrintedPattern", text */
    char achVehicleWindow[65];      /* "VehicleWindow", text */
    char achVehicleRoof[65];        /* "VehicleRoof", text */
    char achVehicleDoor[65];        /* "VehicleDoor", text */
    char achSideOfVehicle[65];      /* "SideOfVehicle", text */
    char achCarOfVehicle[65];       /* "CarOfVehicle", text */
    char achRearviewMirror[65];     /* "RearviewMirror", text */
    char achVehicleChassis[65];     /* "VehicleChassis", text */
    char achVehicleShielding[65];   /* "VehicleShielding", text */
    s32 nFilmColor;                 /* "FilmColor", not -1 */
    s32 nIsModified;                /* "IsModified", not -1 */

    /* riders */
    s32 nCyclingType;      /* "CyclingType", not -1 */
    s32 nCyclingPersonNum; /* "CyclingPersonNum", not -1 */

    /* place and origin */
    char achPlaceCode[7];    /* "PlaceCode", text */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[7];     /* "CityCode", text */
    s32 nSourceFactory;      /* "SourceFactory", not -1 */
    s32 nDeviceClass;        /* "DeviceClass", not -1 */

    /* passage */
    char achPassTime[15];       /* "PassTime", text */
    char achDirection[9];       /* "Direction", text */
    double dShotPlaceLongitude; /* "ShotPlaceLongitude", not -1 */
    double dShotPlaceLatitude;  /* "ShotPlaceLatitude", not -1 */
    char achAreaID[44];         /* "AreaID", text */
    s32 nSourceType;            /* "SourceType", not -1 */

    /* case and shelving */
    char achServiceTime[15]; /* "ServiceTime", text */
    char achMonitorTime[15]; /* "MonitorTime", text */
    char achEngineNo[42];    /* "EngineNo", text */
    char achProveTime[15];   /* "ProveTime", text */
    char achProveOrg[42];    /* "ProveOrg", text */
    char achOperateTime[15]; /* "OperateTime", text */
    char achCaseID[31];      /* "CaseID", text */
    char achCaseDesc[128];   /* "CaseDesc", text */
    char achShelvesNo[65];   /* "ShelvesNo", text */
    s32 nState;              /* "State", not -1 */

    /* equipment */
    s32 nHasHelmet;          /* "HasHelmet", not -1 */
    s32 nHasParasol;         /* "HasParasol", not -1 */
    s32 nHasRainshed;        /* "HasRainshed", not -1 */
    s32 nHasTakeoutBox;      /* "HasTakeoutBox", not -1 */
    s32 nHasPassenger;       /* "HasPassenger", not -1 */
    s32 nHasHood;            /* "HasHood", not -1 */
    char achVehicleClass[4]; /* "VehicleClass", text */

    /* sub-images */
    s32 nSubImageNum;                    /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", after all other members; released with the record */
} TPubSecNonMotorVehicleObjInfo;

PUBSEC_C_END

#endif
