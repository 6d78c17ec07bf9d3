/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_VIOLATION_H
#define PUBSEC_OBJECTS_MEMBERS_VIOLATION_H

#include <pubsecstack/violation.h>

#include "objects/member_table.h"

namespace pubsec_members::illegal_record
{

using R = TPubSecIllegalRecordInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("IllegalRecordID", achIllegalRecordID),
    PS_ALWAYS("SourceID", achSourceID),
    /* the tollgate comes before the device */
    PS_ALWAYS("TollgateID", achTollgateID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_TEXT("ShotTime", achShotTime),
    PS_TEXT("ShotTimeEx", achShotTimeEx),
    PS_TEXT("ShotPlace", achShotPlace),
    PS_NOT_MINUS_ONE("IllegalAct", nIllegalAct),
    PS_TEXT("ShotPlaceCode", achShotPlaceCode),
    PS_NOT_MINUS_ONE("LaneNo", nLaneNo),
    PS_ONE_ZERO("HasPlate", nHasPlate),
    PS_TEXT("PlateClass", achPlateClass),
    PS_TEXT("PlateColor", achPlateColor),
    PS_TEXT("PlateNo", achPlateNo),
    PS_NOT_MINUS_ONE("LeftTopX", nLeftTopX),
    PS_NOT_MINUS_ONE("LeftTopY", nLeftTopY),
    PS_NOT_MINUS_ONE("RightBtmX", nRightBtmX),
    PS_NOT_MINUS_ONE("RightBtmY", nRightBtmY),
    PS_NOT_MINUS_ONE("Speed", dSpeed),
    PS_TEXT("Direction", achDirection),
    PS_TEXT("DrivingStatusCode", achDrivingStatusCode),
    PS_TEXT("VehicleClass", achVehicleClass),
    PS_TEXT("ImagePath", achImagePath),
    PS_TEXT("ImagePath2", achImagePath2),
    PS_TEXT("ImagePath3", achImagePath3),
    PS_TEXT("ImagePath4", achImagePath4),
    PS_TEXT("CompImagePath", achCompImagePath),
    PS_NOT_MINUS_ONE("IllegalStatus", nIllegalStatus),
    PS_TEXT("EntryTime", achEntryTime),
    PS_TEXT("UpdateTime", achUpdateTime),
    PS_TEXT("SpeedItvllNo", achSpeedItvllNo),
    PS_NOT_MINUS_ONE("VideoStatus", nVideoStatus),
    PS_NOT_MINUS_ONE("CompImageStatus", nCompImageStatus),
    PS_NOT_MINUS_ONE("MaxSpeed", dMaxSpeed),
    PS_TEXT("PassTimes", achPassTimes),
    PS_NOT_MINUS_ONE("BackupMark", nBackupMark),
    PS_TEXT("PlateClassConfirm", achPlateClassConfirm),
    PS_TEXT("PlateColorConfirm", achPlateColorConfirm),
    PS_TEXT("PlateNoConfirm", achPlateNoConfirm),
    PS_NOT_MINUS_ONE("IllegalActConfirm", nIllegalActConfirm),
    PS_TEXT("ErrcorInfo", achErrcorInfo),
    PS_TEXT("StdIllegalAct", achStdIllegalAct),
    PS_TEXT("ConfirmPerson", achConfirmPerson),
    PS_TEXT("ConfirmUnit", achConfirmUnit),
    PS_TEXT("ConfirmComment", achConfirmComment),
    PS_TEXT("ConfirmTime", achConfirmTime),
    PS_NOT_MINUS_ONE("OverspeedRate", dOverspeedRate),
    PS_POINTER("MotorVehicleIDs", pchMotorVehicleIDs),
    PS_POINTER("NonMotorVehicleIDs", pchNonMotorVehicleIDs),
    PS_POINTER("PersonIDs", pchPersonIDs),
    PS_POINTER("VideoIDs", pchVideoIDs),
    PS_POINTER("AlogorithmName", pchAlogorithmName),
    PS_NOT_MINUS_ONE("AIStatus", nAIStatus),
    PS_TEXT("ResetPerson", achResetPerson),
    PS_TEXT("PlaceCode", achPlaceCode),
    PS_TEXT("ProvinceCode", achProvinceCode),
    PS_TEXT("CityCode", achCityCode),
    PS_NOT_MINUS_ONE("SourceFactory", nSourceFactory),
    PS_NOT_MINUS_ONE("DeviceClass", nDeviceClass),
    PS_NOT_MINUS_ONE("Weight", nWeight),
    PS_NOT_MINUS_ONE("MaxWeight", nMaxWeight),
    PS_NOT_MINUS_ONE("Length", nLength),
    PS_NOT_MINUS_ONE("MaxLength", nMaxLength),
    PS_NOT_MINUS_ONE("Width", nWidth),
    PS_NOT_MINUS_ONE("MaxWidth", nMaxWidth),
    PS_NOT_MINUS_ONE("Height", nHeight),
    PS_NOT_MINUS_ONE("MaxHeight", nMaxHeight),
    PS_NOT_MINUS_ONE("OverRunRate", dOverRunRate),
    PS_TEXT("CollectorIDType", achCollectorIDType),
    PS_TEXT("CollectorID", achCollectorID),
    PS_TEXT("ResetReason", achResetReason),
    PS_FLAG("ScenePenaltyStatus", bScenePenaltyStatusValid, nScenePenaltyStatus),
    PS_FLAG("SourceType", bSourceTypeValid, nSourceType),
    PS_TEXT("TypistID", achTypistID),
    PS_TEXT("TypistName", achTypistName),
    PS_TEXT("FrontPlateNo", achFrontPlateNo),
    PS_TEXT("FrontPlateColor", achFrontPlateColor),
    PS_TEXT("FrontPlateClass", achFrontPlateClass),
    PS_FLAG("FrontSpeed", bFrontSpeedValid, dFrontSpeed),
    PS_TEXT("PlateStructure", achPlateStructure),
    PS_TEXT("SignNumber", achSignNumber),
    PS_TEXT("SeqNumber", achSeqNumber),
    PS_FLAG("IsMessageRemind", bIsMessageRemindValid, nIsMessageRemind),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::illegal_record

namespace pubsec_members::non_motor_illegal_record
{

using R = TPubSecNonMotorIllegalRecordInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("IllegalRecordID", achIllegalRecordID),
    PS_ALWAYS("SourceID", achSourceID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_ALWAYS("TollgateID", achTollgateID),
    PS_TEXT("ShotTime", achShotTime),
    PS_TEXT("ShotPlace", achShotPlace),
    PS_FLAG("IllegalAct", bIllegalActValid, nIllegalAct),
    PS_TEXT("ShotPlaceCode", achShotPlaceCode),
    PS_FLAG("LaneNo", bLaneNoValid, nLaneNo),
    PS_ALWAYS("HasPlate", achHasPlate),
    PS_TEXT("PlateClass", achPlateClass),
    PS_TEXT("PlateColor", achPlateColor),
    PS_TEXT("PlateNo", achPlateNo),
    PS_TEXT("VehicleClassExt", achVehicleClassExt),
    PS_FLAG("IsCarryPeople", bIsCarryPeopleValid, nIsCarryPeople),
    PS_FLAG("IsUseUmbrella", bIsUseUmbrellaValid, nIsUseUmbrella),
    PS_FLAG("IsUseHelmet", bIsUseHelmetValid, nIsUseHelmet),
    PS_FLAG("IsUseSunglass", bIsUseSunglassValid, nIsUseSunglass),
    PS_TEXT("ImagePath", achImagePath),
    PS_TEXT("ImagePath2", achImagePath2),
    PS_TEXT("ImagePath3", achImagePath3),
    PS_TEXT("ImagePath4", achImagePath4),
    PS_TEXT("CompImagePath", achCompImagePath),
    PS_FLAG("IllegalStatus", bIllegalStatusValid, nIllegalStatus),
    PS_TEXT("EntryTime", achEntryTime),
    PS_TEXT("UpdateTime", achUpdateTime),
    PS_FLAG("VideoStatus", bVideoStatusValid, nVideoStatus),
    PS_FLAG("CompImageStatus", bCompImageStatusValid, nCompImageStatus),
    PS_FLAG("MaxSpeed", bMaxSpeedValid, dMaxSpeed),
    PS_TEXT("IllgealPerson", achIllgealPerson),
    PS_TEXT("PlateClassConfirm", achPlateClassConfirm),
    PS_TEXT("PlateColorConfirm", achPlateColorConfirm),
    PS_TEXT("PlateNoConfirm", achPlateNoConfirm),
    PS_FLAG("IllegalActConfirm", bIllegalActConfirmValid, nIllegalActConfirm),
    PS_TEXT("ErrcorInfo", achErrcorInfo),
    PS_TEXT("StdIllegalAct", achStdIllegalAct),
    PS_TEXT("ConfirmPerson", achConfirmPerson),
    PS_TEXT("ConfirmUnit", achConfirmUnit),
    PS_TEXT("ConfirmComment", achConfirmComment),
    PS_TEXT("ConfirmTime", achConfirmTime),
    PS_TEXT("MotorVehicleIDs", achMotorVehicleIDs),
    PS_TEXT("NonMotorVehicleIDs", achNonMotorVehicleIDs),
    PS_TEXT("PersonIDs", achPersonIDs),
    PS_TEXT("VideoIDs", achVideoIDs),
    PS_TEXT("PlaceCode", achPlaceCode),
    PS_FLAG("SourceFactory", bSourceFactoryValid, nSourceFactory),
    PS_TEXT("ProvinceCode", achProvinceCode),
    PS_TEXT("CityCode", achCityCode),
    PS_FLAG("DeviceClass", bDeviceClassValid, nDeviceClass),
    PS_TEXT("FaceIDs", achFaceIDs),
    PS_FLAG("CarryPeople", bCarryPeopleValid, nCarryPeople),
    PS_FLAG("IsCeiling", bIsCeilingValid, nIsCeiling),
    PS_TEXT("VehicleColor", achVehicleColor),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::non_motor_illegal_record

#endif
