/* SPDX-License-Identifier: Apache-2.0 */
/* Motor vehicles. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_MOTOR_VEHICLE_H
#define PUBSECSTACK_MOTOR_VEHICLE_H

#include <pubsecstack/image.h>

PUBSEC_C_BEGIN

/*
 * One motor vehicle: its pictures, where it lies in them, plate, speed, make and body, what its occupants do. The XT
 * members are extensions. "YellowLabelCarFlag" and "CdgFlag" are written before "BrandReliability",
 * "FeatureInfoObject" after it, and "ShotPlaceLongitude" before "ShotPlaceLatitude".
 */
typedef struct
{
    char achMotorVehicleID[49]; /* "MotorVehicleID", always */
    u32 dwInfoKind;             /* "InfoKind", always */
    char achSourceID[42];       /* "SourceID", always */
    char achTollgateID[21];     /* "TollgateID", text */
    char achDeviceID[21];       /* "DeviceID", text */

    /* pictures */
    char achStorageUrl1[257]; /* "StorageUrl1", text */
    char achStorageUrl2[257]; /* "StorageUrl2", text */
    char achStorageUrl3[257]; /* "StorageUrl3", text */
    char achStorageUrl4[257]; /* "StorageUrl4", text */
    char achStorageUrl5[257]; /* "StorageUrl5", text */

    /* where it lies and when it was seen */
    u32 bLeftTopXValid;
    s32 nLeftTopX; /* "LeftTopX", flag */
    u32 bLeftTopYValid;
    s32 nLeftTopY; /* "LeftTopY", flag */
    u32 bRightBtmXValid;
    s32 nRightBtmX; /* "RightBtmX", flag */
    u32 bRightBtmYValid;
    s32 nRightBtmY;            /* "RightBtmY", flag */
    char achMarkTime[15];      /* "MarkTime", text */
    char achAppearTime[15];    /* "AppearTime", text */
    char achDisappearTime[15]; /* "DisappearTime", text */
    u32 bLaneNoValid;
    s32 nLaneNo; /* "LaneNo", flag */

    /* plate */
    u32 dwHasPlate;            /* "HasPlate", "1" or "0" */
    char achPlateClass[3];     /* "PlateClass", text */
    char achPlateColor[3];     /* "PlateColor", text */
    char achPlateNo[16];       /* "PlateNo", text */
    char achPlateNoAttach[16]; /* "PlateNoAttach", text */
    char achPlateDescribe[65]; /* "PlateDescribe", text */
    char achIsDecked[9];       /* "IsDecked", text */
    char achIsAltered[9];      /* "IsAltered", text */
    char achIsCovered[15];     /* "IsCovered", text */

    /* movement and use */
    u32 bSpeedValid;
    double dSpeed;                /* "Speed", flag */
    char achDirection[2];         /* "Direction", text */
    char achDrivingStatusCode[6]; /* "DrivingStatusCode", text */
    u32 bUsingPropertiesCodeValid;
    s32 nUsingPropertiesCode;       /* "UsingPropertiesCode", flag */
    char achUsingPropertiesCode[5]; /* "UsingPropertiesCode", text */

    /* make and size */
    char achVehicleClass[4];   /* "VehicleClass", text */
    char achVehicleBrand[4];   /* "VehicleBrand", text */
    char achVehicleModel[33];  /* "VehicleModel", text */
    char achVehicleStyles[18]; /* "VehicleStyles", text */
    u32 bVehicleLengthValid;
    s32 nVehicleLength; /* "VehicleLength", flag */
    u32 bVehicleWidthValid;
    s32 nVehicleWidth; /* "VehicleWidth", flag */
    u32 bVehicleHeightValid;
    s32 nVehicleHeight;           /* "VehicleHeight", flag */
    char achVehicleColor[3];      /* "VehicleColor", text */
    char achVehicleColorDepth[2]; /* "VehicleColorDepth", text */

    /* body */
    char achVehicleHood[65];        /* "VehicleHood", text */
    char achVehicleTrunk[65];       /* "VehicleTrunk", text */
    char achVehicleWheel[65];       /* "VehicleWheel", text */
    char achWheelPrintedPattern[3]; /* "WheelPrintedPattern", text */
    char achVehicleWindow[65];      /* "VehicleWindow", text */
    char achVehicleRoof[65];        /* "VehicleRoof", text */
    char achVehicleDoor[65];        /* "VehicleDoor", text */
    char achSideOfVehicle[65];      /* "SideOfVehicle", text */
    char achCarOfVehicle[65];       /* "CarOfVehicle", text */
    char achRearviewMirror[65];     /* "RearviewMirror", text */
    char achVehicleChassis[65];     /* "VehicleChassis", text */
    char achVehicleShielding[65];   /* "VehicleShielding", text */
    char achFilmColor[2];           /* "FilmColor", text */
    char achIsModified[9];          /* "IsModified", text */
    char achHitMarkInfo[2];         /* "HitMarkInfo", text */
    char achVehicleBodyDesc[129];   /* "VehicleBodyDesc", text */
    char achVehicleFrontItem[3];    /* "VehicleFrontItem", text */
    char achDescOfFrontItem[257];   /* "DescOfFrontItem", text */
    char achVehicleRearItem[3];     /* "VehicleRearItem", text */
    char achDescOfRearItem[257];    /* "DescOfRearItem", text */

    /* passage and occupants */
    u32 bNumOfPassengerValid;
    s32 nNumOfPassenger;          /* "NumOfPassenger", flag */
    char achPassTime[15];         /* "PassTime", text */
    char achNameOfPassedRoad[65]; /* "NameOfPassedRoad", text */
    u32 bIsSuspiciousValid;
    s32 nIsSuspicious; /* "IsSuspicious", flag */
    u32 bSunvisorValid;
    s32 nSunvisor; /* "Sunvisor", flag */
    u32 bSafetyBeltValid;
    s32 nSafetyBelt; /* "SafetyBelt", flag */
    u32 bCallingValid;
    s32 nCalling; /* "Calling", flag */

    /* how sure the recognition is */
    char achPlateReliability[4];      /* "PlateReliability", text */
    char achPlateCharReliability[65]; /* "PlateCharReliability", text */
    char achBrandReliability[7];      /* "BrandReliability", text */

    /* sub-images */
    s32 nSubImageNum;                    /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", after all other members; released with the record */

    /* labels and feature vector */
    u32 bYellowLabelCarFlagValid;
    s32 nYellowLabelCarFlag; /* "YellowLabelCarFlag", flag */
    u32 bCdgFlagValid;
    s32 nCdgFlag;                      /* "CdgFlag", flag */
    TPubSecFeatureInfo* ptFeatureInfo; /* "FeatureInfoObject", pointer */
    char achNationalityCode[4];        /* "NationalityCode", text */

    /* library of vehicles, extensions and collector */
    char achTabID[42];             /* "TabID", text */
    char achXTDispositionType[16]; /* "XTDispositionType", text */
    char achXTCollectorName[32];   /* "XTCollectorName", text */
    char achXTCollectTime[15];     /* "XTCollectTime", text */
    char achXTNote[515];           /* "XTNote", text */
    u32 bSimilaritydegreeValid;
    double dSimilaritydegree;   /* "Similaritydegree", flag */
    char achSelfDefObject[512]; /* "SelfDefObject", text */
    char achCollectorOrg[101];  /* "CollectorOrg", text */
    char achCollectorID[31];    /* "CollectorID", text */
    char achDeviceSNNo[33];     /* "DeviceSNNo", text */
    char achAPSId[21];          /* "APSId", text */

    /* place and source */
    u32 bSourceTypeValid;
    s32 nSourceType; /* "SourceType", flag */
    u32 bShotPlaceLatitudeValid;
    double dShotPlaceLatitude; /* "ShotPlaceLatitude", flag */
    u32 bShotPlaceLongitudeValid;
    double dShotPlaceLongitude; /* "ShotPlaceLongitude", flag */
    u32 bPlaceCodeValid;
    s32 nPlaceCode;              /* "PlaceCode", flag */
    char achSourceFactory[4];    /* "SourceFactory", text */
    char achVehicleSubBrand[64]; /* "VehicleSubBrand", text */
    u32 bHasSunroofValid;
    s32 nHasSunroof; /* "HasSunroof", flag */
    u32 bHasRoofRacksValid;
    s32 nHasRoofRacks;       /* "HasRoofRacks", flag */
    char achPlaceCode[7];    /* "PlaceCode", text */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[7];     /* "CityCode", text */
    u32 bSourceFactoryValid;
    s32 nSourceFactory; /* "SourceFactory", flag */
    u32 bDeviceClassValid;
    s32 nDeviceClass; /* "DeviceClass", flag */

    /* platform and more of the plate */
    char achPlatformIP[31];      /* "PlatformIP", text */
    char achPlateStructure[257]; /* "PlateStructure", text */
    char achPlateLocation[257];  /* "PlateLocation", text */
    char achPlateType[257];      /* "PlateType", text */
} TPubSecMotorVehicleObjInfo;

PUBSEC_C_END

#endif
