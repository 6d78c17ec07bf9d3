/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The members of the measured records, one call for each, as a program that writes them by hand has them. `Out` is a
 * JSON writer (writers.h), or what fills the records that are measured (records.cpp), so that all see the same members.
 * Objects have 60 members; what else their records hold stays absent.
 */
#ifndef PUBSEC_BENCH_MEMBERS_H
#define PUBSEC_BENCH_MEMBERS_H

#include <pubsecstack/pubsecstack.h>

namespace bench
{

constexpr unsigned kObjectMembers = 60;

template <typename Out, typename Record> void faceMembers(Out& out, Record& face)
{
    out.text("FaceID", face.achFaceID);
    out.number("InfoKind", face.dwInfoKind);
    out.text("SourceID", face.achSourceID);
    out.text("ShotTime", face.achShotTime);
    out.text("DeviceID", face.achDeviceID);
    out.number("LeftTopX", face.bLeftTopXValid, face.nLeftTopX);
    out.number("LeftTopY", face.bLeftTopYValid, face.nLeftTopY);
    out.number("RightBtmX", face.bRightBtmXValid, face.nRightBtmX);
    out.number("RightBtmY", face.bRightBtmYValid, face.nRightBtmY);
    out.text("LocationMarkTime", face.achLocationMarkTime);
    out.text("FaceAppearTime", face.achFaceAppearTime);
    out.text("FaceDisAppearTime", face.achFaceDisAppearTime);
    out.text("IDType", face.achIDType);
    out.text("IDNumber", face.achIDNumber);
    out.text("Name", face.achName);
    out.text("UsedName", face.achUsedName);
    out.text("Alias", face.achAlias);
    out.text("GenderCode", face.achGenderCode);
    out.number("AgeUpLimit", face.bAgeUpLimitValid, face.nAgeUpLimit);
    out.number("AgeLowerLimit", face.bAgeLowerLimitValid, face.nAgeLowerLimit);
    out.text("EthicCode", face.achEthicCode);
    out.text("NationalityCode", face.achNationalityCode);
    out.text("NativeCityCode", face.achNativeCityCode);
    out.text("ResidenceAdminDivision", face.achResidenceAdminDivision);
    out.text("ChineseAccentCode", face.achChineseAccentCode);
    out.text("JobCategory", face.achJobCategory);
    out.number("AccompanyNumber", face.bAccompanyNumberValid, face.nAccompanyNumber);
    out.text("SkinColor", face.achSkinColor);
    out.text("HairStyle", face.achHairStyle);
    out.text("HairColor", face.achHairColor);
    out.text("FaceStyle", face.achFaceStyle);
    out.text("FacialFeature", face.achFacialFeature);
    out.text("PhysicalFeature", face.achPhysicalFeature);
    out.text("RespiratorColor", face.achRespiratorColor);
    out.text("CapStyle", face.achCapStyle);
    out.text("CapColor", face.achCapColor);
    out.text("GlassStyle", face.achGlassStyle);
    out.text("GlassColor", face.achGlassColor);
    out.number("IsDriver", face.bIsDriverValid, face.nIsDriver);
    out.number("IsForeigner", face.bIsForeignerValid, face.nIsForeigner);
    out.text("PassportType", face.achPassportType);
    out.text("ImmigrantTypeCode", face.achImmigrantTypeCode);
    out.number("IsSuspectedTerrorist", face.bIsSuspectedTerroristValid, face.nIsSuspectedTerrorist);
    out.text("SuspectedTerroristNumber", face.achSuspectedTerroristNumber);
    out.number("IsCriminalInvolved", face.bIsCriminalInvolvedValid, face.nIsCriminalInvolved);
    out.text("CriminalInvolvedSpecilisationCode", face.achCriminalInvolvedSpecilisationCode);
    out.text("BodySpeciallMark", face.achBodySpeciallMark);
    out.text("CrimeMethod", face.achCrimeMethod);
    out.text("CrimeCharacterCode", face.achCrimeCharacterCode);
    out.text("EscapedCriminalNumber", face.achEscapedCriminalNumber);
    out.number("IsDetainees", face.bIsDetaineesValid, face.nIsDetainees);
    out.text("DetentionHouseCode", face.achDetentionHouseCode);
    out.text("DetaineesIdentity", face.achDetaineesIdentity);
    out.text("DetaineesSpecialIdentity", face.achDetaineesSpecialIdentity);
    out.text("MemberTypeCode", face.achMemberTypeCode);
    out.number("IsVictim", face.bIsVictimValid, face.nIsVictim);
    out.text("VictimType", face.achVictimType);
    out.text("InjuredDegree", face.achInjuredDegree);
    out.text("CorpseConditionCode", face.achCorpseConditionCode);
    out.number("IsSuspiciousPerson", face.bIsSuspiciousPersonValid, face.nIsSuspiciousPerson);
}

template <typename Out, typename Record> void personMembers(Out& out, Record& person)
{
    out.text("PersonID", person.achPersonID);
    out.number("InfoKind", person.dwInfoKind);
    out.text("SourceID", person.achSourceID);
    out.text("DeviceID", person.achDeviceID);
    out.number("LeftTopX", person.bLeftTopXValid, person.nLeftTopX);
    out.number("LeftTopY", person.bLeftTopYValid, person.nLeftTopY);
    out.number("RightBtmX", person.bRightBtmXValid, person.nRightBtmX);
    out.number("RightBtmY", person.bRightBtmYValid, person.nRightBtmY);
    out.text("LocationMarkTime", person.achLocationMarkTime);
    out.text("PersonAppearTime", person.achPersonAppearTime);
    out.text("PersonDisAppearTime", person.achPersonDisAppearTime);
    out.text("IDType", person.achIDType);
    out.text("IDNumber", person.achIDNumber);
    out.text("Name", person.achName);
    out.text("UsedName", person.achUsedName);
    out.text("Alias", person.achAlias);
    out.text("GenderCode", person.achGenderCode);
    out.number("AgeUpLimit", person.bAgeUpLimitValid, person.nAgeUpLimit);
    out.number("AgeLowerLimit", person.bAgeLowerLimitValid, person.nAgeLowerLimit);
    out.text("EthicCode", person.achEthicCode);
    out.text("NationalityCode", person.achNationalityCode);
    out.text("NativeCityCode", person.achNativeCityCode);
    out.text("ResidenceAdminDivision", person.achResidenceAdminDivision);
    out.text("ChineseAccentCode", person.achChineseAccentCode);
    out.text("PersonOrg", person.achPersonOrg);
    out.text("JobCategory", person.achJobCategory);
    out.number("AccompanyNumber", person.bAccompanyNumberValid, person.nAccompanyNumber);
    out.number("HeightUpLimit", person.bHeightUpLimitValid, person.nHeightUpLimit);
    out.number("HeightLowerLimit", person.bHeightLowerLimitValid, person.nHeightLowerLimit);
    out.text("BodyType", person.achBodyType);
    out.text("SkinColor", person.achSkinColor);
    out.text("HairStyle", person.achHairStyle);
    out.text("HairColor", person.achHairColor);
    out.text("Gesture", person.achGesture);
    out.text("Status", person.achStatus);
    out.text("FaceStyle", person.achFaceStyle);
    out.text("FacialFeature", person.achFacialFeature);
    out.text("PhysicalFeature", person.achPhysicalFeature);
    out.text("BodyFeature", person.achBodyFeature);
    out.text("HabitualMovement", person.achHabitualMovement);
    out.text("Behavior", person.achBehavior);
    out.text("BehaviorDescription", person.achBehaviorDescription);
    out.text("Appendant", person.achAppendant);
    out.text("AppendantDescription", person.achAppendantDescription);
    out.text("UmbrellaColor", person.achUmbrellaColor);
    out.text("RespiratorColor", person.achRespiratorColor);
    out.text("CapStyle", person.achCapStyle);
    out.text("CapColor", person.achCapColor);
    out.text("GlassStyle", person.achGlassStyle);
    out.text("GlassColor", person.achGlassColor);
    out.text("ScarfColor", person.achScarfColor);
    out.text("BagStyle", person.achBagStyle);
    out.text("BagColor", person.achBagColor);
    out.text("CoatStyle", person.achCoatStyle);
    out.text("CoatLength", person.achCoatLength);
    out.text("CoatColor", person.achCoatColor);
    out.text("TrousersStyle", person.achTrousersStyle);
    out.text("TrousersColor", person.achTrousersColor);
    out.text("TrousersLen", person.achTrousersLen);
    out.text("ShoesStyle", person.achShoesStyle);
}

template <typename Out, typename Record> void vehicleMembers(Out& out, Record& vehicle)
{
    out.text("MotorVehicleID", vehicle.achMotorVehicleID);
    out.number("InfoKind", vehicle.dwInfoKind);
    out.text("SourceID", vehicle.achSourceID);
    out.text("TollgateID", vehicle.achTollgateID);
    out.text("DeviceID", vehicle.achDeviceID);
    out.text("StorageUrl1", vehicle.achStorageUrl1);
    out.text("StorageUrl2", vehicle.achStorageUrl2);
    out.text("StorageUrl3", vehicle.achStorageUrl3);
    out.text("StorageUrl4", vehicle.achStorageUrl4);
    out.text("StorageUrl5", vehicle.achStorageUrl5);
    out.number("LeftTopX", vehicle.bLeftTopXValid, vehicle.nLeftTopX);
    out.number("LeftTopY", vehicle.bLeftTopYValid, vehicle.nLeftTopY);
    out.number("RightBtmX", vehicle.bRightBtmXValid, vehicle.nRightBtmX);
    out.number("RightBtmY", vehicle.bRightBtmYValid, vehicle.nRightBtmY);
    out.text("MarkTime", vehicle.achMarkTime);
    out.text("AppearTime", vehicle.achAppearTime);
    out.text("DisappearTime", vehicle.achDisappearTime);
    out.number("LaneNo", vehicle.bLaneNoValid, vehicle.nLaneNo);
    out.oneOrZero("HasPlate", vehicle.dwHasPlate);
    out.text("PlateClass", vehicle.achPlateClass);
    out.text("PlateColor", vehicle.achPlateColor);
    out.text("PlateNo", vehicle.achPlateNo);
    out.text("PlateNoAttach", vehicle.achPlateNoAttach);
    out.text("PlateDescribe", vehicle.achPlateDescribe);
    out.text("IsDecked", vehicle.achIsDecked);
    out.text("IsAltered", vehicle.achIsAltered);
    out.text("IsCovered", vehicle.achIsCovered);
    out.number("Speed", vehicle.bSpeedValid, vehicle.dSpeed);
    out.text("Direction", vehicle.achDirection);
    out.text("DrivingStatusCode", vehicle.achDrivingStatusCode);
    out.text("UsingPropertiesCode", vehicle.achUsingPropertiesCode);
    out.text("VehicleClass", vehicle.achVehicleClass);
    out.text("VehicleBrand", vehicle.achVehicleBrand);
    out.text("VehicleModel", vehicle.achVehicleModel);
    out.text("VehicleStyles", vehicle.achVehicleStyles);
    out.number("VehicleLength", vehicle.bVehicleLengthValid, vehicle.nVehicleLength);
    out.number("VehicleWidth", vehicle.bVehicleWidthValid, vehicle.nVehicleWidth);
    out.number("VehicleHeight", vehicle.bVehicleHeightValid, vehicle.nVehicleHeight);
    out.text("VehicleColor", vehicle.achVehicleColor);
    out.text("VehicleColorDepth", vehicle.achVehicleColorDepth);
    out.text("VehicleHood", vehicle.achVehicleHood);
    out.text("VehicleTrunk", vehicle.achVehicleTrunk);
    out.text("VehicleWheel", vehicle.achVehicleWheel);
    out.text("WheelPrintedPattern", vehicle.achWheelPrintedPattern);
    out.text("VehicleWindow", vehicle.achVehicleWindow);
    out.text("VehicleRoof", vehicle.achVehicleRoof);
    out.text("VehicleDoor", vehicle.achVehicleDoor);
    out.text("SideOfVehicle", vehicle.achSideOfVehicle);
    out.text("CarOfVehicle", vehicle.achCarOfVehicle);
    out.text("RearviewMirror", vehicle.achRearviewMirror);
    out.text("VehicleChassis", vehicle.achVehicleChassis);
    out.text("VehicleShielding", vehicle.achVehicleShielding);
    out.text("FilmColor", vehicle.achFilmColor);
    out.text("IsModified", vehicle.achIsModified);
    out.text("HitMarkInfo", vehicle.achHitMarkInfo);
    out.text("VehicleBodyDesc", vehicle.achVehicleBodyDesc);
    out.text("VehicleFrontItem", vehicle.achVehicleFrontItem);
    out.text("DescOfFrontItem", vehicle.achDescOfFrontItem);
    out.text("VehicleRearItem", vehicle.achVehicleRearItem);
    out.text("DescOfRearItem", vehicle.achDescOfRearItem);
}

template <typename Out, typename Record> void imageMembers(Out& out, Record& image)
{
    out.text("ImageID", image.achImageID);
    out.number("InfoKind", image.dwInfoKind);
    out.text("ImageSource", image.achImageSource);
    out.text("SourceVideoID", image.achSourceVideoID);
    out.text("OriginImageID", image.achOriginImageID);
    out.number("EventSort", image.bEventSortValid, image.nEventSort);
    out.text("DeviceID", image.achDeviceID);
    out.text("StoragePath", image.achStoragePath);
    out.text("FileHash", image.achFileHash);
    out.text("FileFormat", image.achFileFormat);
    out.text("ShotTime", image.achShotTime);
    out.text("Title", image.achTitle);
    out.text("TitleNote", image.achTitleNote);
    out.text("SpecialIName", image.achSpecialIName);
    out.text("Keyword", image.achKeyword);
    out.text("ContentDescription", image.achContentDescription);
    out.text("SubjectCharacter", image.achSubjectCharacter);
    out.text("ShotPlaceCode", image.achShotPlaceCode);
    out.text("ShotPlaceFullAdress", image.achShotPlaceFullAdress);
    out.number("ShotPlaceLongitude", image.bShotPlaceLongitudeValid, image.dShotPlaceLongitude);
    out.number("ShotPlaceLatitude", image.bShotPlaceLatitudeValid, image.dShotPlaceLatitude);
    out.number("HorizontalShotAngle", image.bHorizontalShotAngleValid, image.dHorizontalShotAngle);
    out.number("VerticalShotAngle", image.bVerticalShotAngleValid, image.dVerticalShotAngle);
    out.text("HorizontalShotDirection", image.achHorizontalShotDirection);
    out.text("VerticalShotDirection", image.achVerticalShotDirection);
    out.text("SecurityLevel", image.achSecurityLevel);
    out.number("Width", image.nWidth);
    out.number("Height", image.nHeight);
    out.text("CollectorName", image.achCollectorName);
    out.text("CollectorOrg", image.achCollectorOrg);
}

template <typename Out, typename Record> void subImageMembers(Out& out, Record& image)
{
    out.text("ImageID", image.achImageID);
    out.number("EventSort", image.bEventSortValid, image.nEventSort);
    out.text("DeviceID", image.achDeviceID);
    out.text("Type", image.achType);
    out.text("FileFormat", image.achFileFormat);
    out.text("ShotTime", image.achShotTime);
    out.number("Width", image.nWidth);
    out.number("Height", image.nHeight);
    out.textPointer("Data", image.pchData);
}

/* Which members belong to which record. */
template <typename Out> void membersOf(Out& out, const TPubSecFaceObjInfo& face)
{
    faceMembers(out, face);
}

template <typename Out> void membersOf(Out& out, const TPubSecPersonnelObjInfo& person)
{
    personMembers(out, person);
}

template <typename Out> void membersOf(Out& out, const TPubSecMotorVehicleObjInfo& vehicle)
{
    vehicleMembers(out, vehicle);
}

} // namespace bench

#endif
