/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/thing_scene.h>

#include "tests/objects/demanded.h"

namespace records
{

const std::vector<Member>& ThingMembers()
{
    using R = TPubSecThingObjInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("ThingID", achThingID, 49),
        ALWAYS("InfoKind", dwInfoKind, u32),
        ALWAYS_TEXT("SourceID", achSourceID, 42),
        TEXT("DeviceID", achDeviceID, 21),
        NOT_MINUS_ONE("LeftTopX", nLeftTopX, s32),
        NOT_MINUS_ONE("LeftTopY", nLeftTopY, s32),
        NOT_MINUS_ONE("RightBtmX", nRightBtmX, s32),
        NOT_MINUS_ONE("RightBtmY", nRightBtmY, s32),
        TEXT("LocationMarkTime", achLocationMarkTime, 15),
        TEXT("AppearTime", achAppearTime, 15),
        TEXT("DisappearTime", achDisappearTime, 15),
        ALWAYS_TEXT("Name", achName, 51),
        ALWAYS_TEXT("Shape", achShape, 65),
        ALWAYS_TEXT("Color", achColor, 3),
        TEXT("Size", achSize, 65),
        TEXT("Material", achMaterial, 257),
        TEXT("Characteristic", achCharacteristic, 257),
        TEXT("Propertiy", achPropertiy, 3),
        TEXT("InvolvedObjType", achInvolvedObjType, 6),
        TEXT("FirearmsAmmunitionType", achFirearmsAmmunitionType, 3),
        TEXT("ToolTraceType", achToolTraceType, 3),
        TEXT("EvidenceType", achEvidenceType, 6),
        TEXT("CaseEvidenceType", achCaseEvidenceType, 4),
    };
    return members;
}

const std::vector<Member>& SceneMembers()
{
    using R = TPubSecSceneObjInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("SceneID", achSceneID, 49),
        ALWAYS("InfoKind", dwInfoKind, u32),
        ALWAYS_TEXT("SourceID", achSourceID, 42),
        TEXT("DeviceID", achDeviceID, 21),
        TEXT("BeginTime", achBeginTime, 15),
        TEXT("PlaceType", achPlaceType, 5),
        TEXT("WeatherType", achWeatherType, 3),
        TEXT("SceneDescribe", achSceneDescribe, 257),
        TEXT("SceneType", achSceneType, 3),
        TEXT("RoadAlignmentType", achRoadAlignmentType, 6),
        NOT_MINUS_ONE("RoadTerraintype", nRoadTerraintype, s32),
        TEXT("RoadSurfaceType", achRoadSurfaceType, 2),
        TEXT("RoadCoditionType", achRoadCoditionType, 2),
        TEXT("RoadJunctionSectionType", achRoadJunctionSectionType, 3),
        TEXT("RoadLightingType", achRoadLightingType, 2),
        TEXT("Illustration", achIllustration, 3),
        TEXT("WindDirection", achWindDirection, 3),
        TEXT("Illumination", achIllumination, 2),
        TEXT("FieldCondition", achFieldCondition, 27),
    };
    return members;
}

} // namespace records
