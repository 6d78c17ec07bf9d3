/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/image.h>

#include "tests/objects/demanded.h"

namespace records
{

const std::vector<Member>& FeatureMembers()
{
    using R = TPubSecFeatureInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("Vendor", achVendor, 128),
        ALWAYS_TEXT("AlgorithmVersion", achAlgorithmVersion, 128),
        ALWAYS_TEXT_POINTER("FeatureData", pchFeatureData),
    };
    return members;
}

const std::vector<Member>& ImageInfoMembers()
{
    using R = TPubSecImageObjInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("ImageID", achImageID, 42),
        ALWAYS("InfoKind", dwInfoKind, u32),
        ALWAYS_TEXT("ImageSource", achImageSource, 3),
        TEXT("SourceVideoID", achSourceVideoID, 42),
        TEXT("OriginImageID", achOriginImageID, 42),
        FLAGGED("EventSort", bEventSortValid, nEventSort, s32),
        TEXT("DeviceID", achDeviceID, 21),
        ALWAYS_TEXT("StoragePath", achStoragePath, 257),
        ALWAYS_TEXT("FileHash", achFileHash, 129),
        ALWAYS_TEXT("FileFormat", achFileFormat, 7),
        ALWAYS_TEXT("ShotTime", achShotTime, 15),
        ALWAYS_TEXT("Title", achTitle, 257),
        TEXT("TitleNote", achTitleNote, 129),
        TEXT("SpecialIName", achSpecialIName, 129),
        TEXT("Keyword", achKeyword, 201),
        ALWAYS_TEXT("ContentDescription", achContentDescription, 257),
        TEXT("SubjectCharacter", achSubjectCharacter, 257),
        TEXT("ShotPlaceCode", achShotPlaceCode, 7),
        TEXT("ShotPlaceFullAdress", achShotPlaceFullAdress, 101),
        FLAGGED("ShotPlaceLongitude", bShotPlaceLongitudeValid, dShotPlaceLongitude, double),
        FLAGGED("ShotPlaceLatitude", bShotPlaceLatitudeValid, dShotPlaceLatitude, double),
        FLAGGED("HorizontalShotAngle", bHorizontalShotAngleValid, dHorizontalShotAngle, double),
        FLAGGED("VerticalShotAngle", bVerticalShotAngleValid, dVerticalShotAngle, double),
        TEXT("HorizontalShotDirection", achHorizontalShotDirection, 2),
        TEXT("VerticalShotDirection", achVerticalShotDirection, 2),
        ALWAYS_TEXT("SecurityLevel", achSecurityLevel, 2),
        NOT_MINUS_ONE("Width", nWidth, s32),
        NOT_MINUS_ONE("Height", nHeight, s32),
        TEXT("CameraManufacturer", achCameraManufacturer, 101),
        TEXT("CameraVersion", achCameraVersion, 101),
        FLAGGED("ApertureValue", bApertureValueValid, nApertureValue, s32),
        FLAGGED("ISOSensitivity", bISOSensitivityValid, nISOSensitivity, s32),
        FLAGGED("FocalLength", bFocalLengthValid, nFocalLength, s32),
        TEXT("QualityGrade", achQualityGrade, 2),
        ALWAYS_TEXT("CollectorName", achCollectorName, 51),
        ALWAYS_TEXT("CollectorOrg", achCollectorOrg, 101),
        TEXT("CollectorIDType", achCollectorIDType, 4),
        TEXT("CollectorID", achCollectorID, 31),
        TEXT("EntryClerk", achEntryClerk, 51),
        TEXT("EntryClerkOrg", achEntryClerkOrg, 101),
        TEXT("EntryClerkIDType", achEntryClerkIDType, 4),
        TEXT("EntryClerkID", achEntryClerkID, 31),
        TEXT("EntryTime", achEntryTime, 15),
        TEXT("ImgProcFlag", achImgProcFlag, 2),
        FLAGGED("FileSize", bFileSizeValid, nFileSize, s32),
        TEXT("XTExpiredDate", achXTExpiredDate, 15),
        TEXT("DeviceType", achDeviceType, 101),
        TEXT("DeviceSNNo", achDeviceSNNo, 33),
        TEXT("ImeiSn", achImeiSn, 18),
        TEXT("APSId", achAPSId, 21),
        TEXT("SelfDefData", achSelfDefData, 257),
        TEXT("SelfDefObject", achSelfDefObject, 129),
        OBJECT_POINTER("FeatureInfoObject", ptFeatureInfo, FeatureMembers()),
        TEXT("PlaceCode", achPlaceCode, 7),
        TEXT("ProvinceCode", achProvinceCode, 7),
        TEXT("CityCode", achCityCode, 7),
        FLAGGED("SourceFactory", bSourceFactoryValid, nSourceFactory, s32),
        FLAGGED("DeviceClass", bDeviceClassValid, nDeviceClass, s32),
    };
    return members;
}

const std::vector<Member>& SubImageMembers()
{
    using R = TPubSecSubImageInfo;
    static const std::vector<Member> members = {
        TEXT("ImageID", achImageID, 42),
        FLAGGED("EventSort", bEventSortValid, nEventSort, s32),
        TEXT("DeviceID", achDeviceID, 21),
        TEXT("StoragePath", achStoragePath, 257),
        ALWAYS_TEXT("Type", achType, 4),
        ALWAYS_TEXT("FileFormat", achFileFormat, 7),
        TEXT("ShotTime", achShotTime, 15),
        NOT_MINUS_ONE("Width", nWidth, s32),
        NOT_MINUS_ONE("Height", nHeight, s32),
        TEXT_POINTER("Data", pchData),
        OBJECT_FLAGGED("FeatureInfoObject", wFeatureValid, tFeatureInfo, FeatureMembers()),
        FLAGGED("AlgorithmsStatus", bAlgorithmsStatusValid, nAlgorithmsStatus, s32),
        TEXT("DeviceType", achDeviceType, 101),
        TEXT("DeviceSNNo", achDeviceSNNo, 33),
        TEXT("ImeiSn", achImeiSn, 18),
        TEXT("APSId", achAPSId, 21),
        TEXT("SelfDefData", achSelfDefData, 257),
    };
    return members;
}

} // namespace records
