/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_THING_SCENE_H
#define PUBSEC_OBJECTS_MEMBERS_THING_SCENE_H

#include <pubsecstack/thing_scene.h>

#include "objects/member_table.h"

namespace pubsec_members::thing
{

using R = TPubSecThingObjInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("ThingID", achThingID),
    PS_ALWAYS("InfoKind", dwInfoKind),
    PS_ALWAYS("SourceID", achSourceID),
    PS_TEXT("DeviceID", achDeviceID),
    PS_NOT_MINUS_ONE("LeftTopX", nLeftTopX),
    PS_NOT_MINUS_ONE("LeftTopY", nLeftTopY),
    PS_NOT_MINUS_ONE("RightBtmX", nRightBtmX),
    PS_NOT_MINUS_ONE("RightBtmY", nRightBtmY),
    PS_TEXT("LocationMarkTime", achLocationMarkTime),
    PS_TEXT("AppearTime", achAppearTime),
    PS_TEXT("DisappearTime", achDisappearTime),
    PS_ALWAYS("Name", achName),
    PS_ALWAYS("Shape", achShape),
    PS_ALWAYS("Color", achColor),
    PS_TEXT("Size", achSize),
    PS_TEXT("Material", achMaterial),
    PS_TEXT("Characteristic", achCharacteristic),
    PS_TEXT("Propertiy", achPropertiy),
    PS_TEXT("InvolvedObjType", achInvolvedObjType),
    PS_TEXT("FirearmsAmmunitionType", achFirearmsAmmunitionType),
    PS_TEXT("ToolTraceType", achToolTraceType),
    PS_TEXT("EvidenceType", achEvidenceType),
    PS_TEXT("CaseEvidenceType", achCaseEvidenceType),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::thing

namespace pubsec_members::scene
{

using R = TPubSecSceneObjInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("SceneID", achSceneID),
    PS_ALWAYS("InfoKind", dwInfoKind),
    PS_ALWAYS("SourceID", achSourceID),
    PS_TEXT("DeviceID", achDeviceID),
    PS_TEXT("BeginTime", achBeginTime),
    PS_TEXT("PlaceType", achPlaceType),
    PS_TEXT("WeatherType", achWeatherType),
    PS_TEXT("SceneDescribe", achSceneDescribe),
    PS_TEXT("SceneType", achSceneType),
    PS_TEXT("RoadAlignmentType", achRoadAlignmentType),
    PS_NOT_MINUS_ONE("RoadTerraintype", nRoadTerraintype),
    PS_TEXT("RoadSurfaceType", achRoadSurfaceType),
    PS_TEXT("RoadCoditionType", achRoadCoditionType),
    PS_TEXT("RoadJunctionSectionType", achRoadJunctionSectionType),
    PS_TEXT("RoadLightingType", achRoadLightingType),
    PS_TEXT("Illustration", achIllustration),
    PS_TEXT("WindDirection", achWindDirection),
    PS_TEXT("Illumination", achIllumination),
    PS_TEXT("FieldCondition", achFieldCondition),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::scene

#endif
