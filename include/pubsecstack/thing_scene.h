/* SPDX-License-Identifier: Apache-2.0 */
/* Things and scenes. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_THING_SCENE_H
#define PUBSECSTACK_THING_SCENE_H

#include <pubsecstack/image.h>

PUBSEC_C_BEGIN

/* One article found in a picture, and its role in a case. An absent coordinate is -1. */
typedef struct
{
    char achThingID[49];                 /* "ThingID", always */
    u32 dwInfoKind;                      /* "InfoKind", always */
    char achSourceID[42];                /* "SourceID", always */
    char achDeviceID[21];                /* "DeviceID", text */
    s32 nLeftTopX;                       /* "LeftTopX", not -1 */
    s32 nLeftTopY;                       /* "LeftTopY", not -1 */
    s32 nRightBtmX;                      /* "RightBtmX", not -1 */
    s32 nRightBtmY;                      /* "RightBtmY", not -1 */
    char achLocationMarkTime[15];        /* "LocationMarkTime", text */
    char achAppearTime[15];              /* "AppearTime", text */
    char achDisappearTime[15];           /* "DisappearTime", text */
    char achName[51];                    /* "Name", always */
    char achShape[65];                   /* "Shape", always */
    char achColor[3];                    /* "Color", always */
    char achSize[65];                    /* "Size", text */
    char achMaterial[257];               /* "Material", text */
    char achCharacteristic[257];         /* "Characteristic", text */
    char achPropertiy[3];                /* "Propertiy", text */
    char achInvolvedObjType[6];          /* "InvolvedObjType", text */
    char achFirearmsAmmunitionType[3];   /* "FirearmsAmmunitionType", text */
    char achToolTraceType[3];            /* "ToolTraceType", text */
    char achEvidenceType[6];             /* "EvidenceType", text */
    char achCaseEvidenceType[4];         /* "CaseEvidenceType", text */
    s32 nSubImageNum;                    /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", after all other members */
} TPubSecThingObjInfo;

/* The place that a picture shows: kind of place, weather, road and light. */
typedef struct
{
    char achSceneID[49];                 /* "SceneID", always */
    u32 dwInfoKind;                      /* "InfoKind", always */
    char achSourceID[42];                /* "SourceID", always */
    char achDeviceID[21];                /* "DeviceID", text */
    char achBeginTime[15];               /* "BeginTime", text */
    char achPlaceType[5];                /* "PlaceType", text */
    char achWeatherType[3];              /* "WeatherType", text */
    char achSceneDescribe[257];          /* "SceneDescribe", text */
    char achSceneType[3];                /* "SceneType", text */
    char achRoadAlignmentType[6];        /* "RoadAlignmentType", text */
    s32 nRoadTerraintype;                /* "RoadTerraintype", not -1 */
    char achRoadSurfaceType[2];          /* "RoadSurfaceType", text */
    char achRoadCoditionType[2];         /* "RoadCoditionType", text */
    char achRoadJunctionSectionType[3];  /* "RoadJunctionSectionType", text */
    char achRoadLightingType[2];         /* "RoadLightingType", text */
    char achIllustration[3];             /* "Illustration", text */
    char achWindDirection[3];            /* "WindDirection", text */
    char achIllumination[2];             /* "Illumination", text */
    char achFieldCondition[27];          /* "FieldCondition", text */
    s32 nSubImageNum;                    /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", after all other members */
} TPubSecSceneObjInfo;

PUBSEC_C_END

#endif
