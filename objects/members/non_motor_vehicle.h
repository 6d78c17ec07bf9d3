/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_NON_MOTOR_VEHICLE_H
#define PUBSEC_OBJECTS_MEMBERS_NON_MOTOR_VEHICLE_H

#include <pubsecstack/non_motor_vehicle.h>

#include "objects/member_table.h"

namespace pubsec_members::non_motor_vehicle
{

using R = TPubSecNonMotorVehicleObjInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("NonMotorVehicleID", achNonMotorVehicleID),
    PS_ALWAYS("InfoKind", dwInfoKind),
    PS_ALWAYS("SourceID", achSourceID),
    PS_TEXT("DeviceID", achDeviceID),
    PS_ALWAYS("LeftTopX", nLeftTopX),
    PS_ALWAYS("LeftTopY", nLeftTopY),
    PS_ALWAYS("RightBtmX", nRightBtmX),
    PS_ALWAYS("RightBtmY", nRightBtmY),
    PS_ALWAYS("MarkTime", achMarkTime),
    PS_ALWAYS("AppearTime", achAppearTime),
    PS_ALWAYS("DisappearTime", achDisappearTime),
    PS_ONE_ZERO("HasPlate", dwHasPlate),
    PS_ALWAYS("PlateClass", achPlateClass),
    PS_ALWAYS("PlateColor", achPlateColor),
    PS_ALWAYS("PlateNo", achPlateNo),
    PS_TEXT("PlateNoAttach", achPlateNoAttach),
    PS_TEXT("PlateDescribe", achPlateDescribe),
    PS_ONE_ZERO("IsDecked", dwIsDecked),
    PS_ONE_ZERO("IsAltered", dwIsAltered),
    PS_ONE_ZERO("IsCovered", dwIsCovered),
    PS_NOT_MINUS_ONE("Speed", dSpeed),
    PS_TEXT("DrivingStatusCode", achDrivingStatusCode),
    PS_NOT_MINUS_ONE("UsingPropertiesCode", nUsingPropertiesCode),
    PS_TEXT("UsingPropertiesCode", achUsingPropertiesCode),
    PS_TEXT("VehicleBrand", achVehicleBrand),
    PS_TEXT("VehicleType", achVehicleType),
    PS_NOT_MINUS_ONE("VehicleLength", nVehicleLength),
    PS_NOT_MINUS_ONE("VehicleWidth", nVehicleWidth),
    PS_NOT_MINUS_ONE("VehicleHeight", nVehicleHeight),
    PS_ALWAYS("VehicleColor", achVehicleColor),
    PS_TEXT("VehicleHood", achVehicleHood),
    PS_TEXT("VehicleTrunk", achVehicleTrunk),
    PS_TEXT("VehicleWheel", achVehicleWheel),
    PS_TEXT("WheelPrintedPattern", achWheelPrintedPattern),
    PS_TEXT("VehicleWindow", achVehicleWindow),
    PS_TEXT("VehicleRoof", achVehicleRoof),
    PS_TEXT("VehicleDoor", achVehicleDoor),
    PS_TEXT("SideOfVehicle", achSideOfVehicle),
    PS_TEXT("CarOfVehicle", achCarOfVehicle),
    PS_TEXT("RearviewMirror", achRearviewMirror),
    PS_TEXT("VehicleChassis", achVehicleChassis),
    PS_TEXT("VehicleShielding", achVehicleShielding),
    PS_NOT_MINUS_ONE("FilmColor", nFilmColor),
    PS_NOT_MINUS_ONE("IsModified", nIsModified),
    PS_NOT_MINUS_ONE("CyclingType", nCyclingType),
    PS_NOT_MINUS_ONE("CyclingPersonNum", nCyclingPersonNum),
    PS_TEXT("PlaceCode", achPlaceCode),
    PS_TEXT("ProvinceCode", achProvinceCode),
    PS_TEXT("CityCode", achCityCode),
    PS_NOT_MINUS_ONE("SourceFactory", nSourceFactory),
    PS_NOT_MINUS_ONE("DeviceClass", nDeviceClass),
    PS_TEXT("PassTime", achPassTime),
    PS_TEXT("Direction", achDirection),
    PS_NOT_MINUS_ONE("ShotPlaceLongitude", dShotPlaceLongitude),
    PS_NOT_MINUS_ONE("ShotPlaceLatitude", dShotPlaceLatitude),
    PS_TEXT("AreaID", achAreaID),
    PS_NOT_MINUS_ONE("SourceType", nSourceType),
    PS_TEXT("ServiceTime", achServiceTime),
    PS_TEXT("MonitorTime", achMonitorTime),
    PS_TEXT("EngineNo", achEngineNo),
    PS_TEXT("ProveTime", achProveTime),
    PS_TEXT("ProveOrg", achProveOrg),
    PS_TEXT("OperateTime", achOperateTime),
    PS_TEXT("CaseID", achCaseID),
    PS_TEXT("CaseDesc", achCaseDesc),
    PS_TEXT("ShelvesNo", achShelvesNo),
    PS_NOT_MINUS_ONE("State", nState),
    PS_NOT_MINUS_ONE("HasHelmet", nHasHelmet),
    PS_NOT_MINUS_ONE("HasParasol", nHasParasol),
    PS_NOT_MINUS_ONE("HasRainshed", nHasRainshed),
    PS_NOT_MINUS_ONE("HasTakeoutBox", nHasTakeoutBox),
    PS_NOT_MINUS_ONE("HasPassenger", nHasPassenger),
    PS_NOT_MINUS_ONE("HasHood", nHasHood),
    PS_TEXT("VehicleClass", achVehicleClass),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::non_motor_vehicle

#endif
