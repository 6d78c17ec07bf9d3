/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_IMAGE_H
#define PUBSEC_OBJECTS_MEMBERS_IMAGE_H

#include <pubsecstack/image.h>

#include "objects/member_table.h"

namespace pubsec_members::feature_info
{

using R = TPubSecFeatureInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("Vendor", achVendor),
    PS_ALWAYS("AlgorithmVersion", achAlgorithmVersion),
    PS_ALWAYS("FeatureData", pchFeatureData),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::feature_info

namespace pubsec_members::image_info
{

using R = TPubSecImageObjInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("ImageID", achImageID),
    PS_ALWAYS("InfoKind", dwInfoKind),
    PS_ALWAYS("ImageSource", achImageSource),
    PS_TEXT("SourceVideoID", achSourceVideoID),
    PS_TEXT("OriginImageID", achOriginImageID),
    PS_FLAG("EventSort", bEventSortValid, nEventSort),
    PS_TEXT("DeviceID", achDeviceID),
    PS_ALWAYS("StoragePath", achStoragePath),
    PS_ALWAYS("FileHash", achFileHash),
    PS_ALWAYS("FileFormat", achFileFormat),
    PS_ALWAYS("ShotTime", achShotTime),
    PS_ALWAYS("Title", achTitle),
    PS_TEXT("TitleNote", achTitleNote),
    PS_TEXT("SpecialIName", achSpecialIName),
    PS_TEXT("Keyword", achKeyword),
    PS_ALWAYS("ContentDescription", achContentDescription),
    PS_TEXT("SubjectCharacter", achSubjectCharacter),
    PS_TEXT("ShotPlaceCode", achShotPlaceCode),
    PS_TEXT("ShotPlaceFullAdress", achShotPlaceFullAdress),
    PS_FLAG("ShotPlaceLongitude", bShotPlaceLongitudeValid, dShotPlaceLongitude),
    PS_FLAG("ShotPlaceLatitude", bShotPlaceLatitudeValid, dShotPlaceLatitude),
    /* the angles come before the directions */
    PS_FLAG("HorizontalShotAngle", bHorizontalShotAngleValid, dHorizontalShotAngle),
    PS_FLAG("VerticalShotAngle", bVerticalShotAngleValid, dVerticalShotAngle),
    PS_TEXT("HorizontalShotDirection", achHorizontalShotDirection),
    PS_TEXT("VerticalShotDirection", achVerticalShotDirection),
    PS_ALWAYS("SecurityLevel", achSecurityLevel),
    PS_NOT_MINUS_ONE("Width", nWidth),
    PS_NOT_MINUS_ONE("Height", nHeight),
    PS_TEXT("CameraManufacturer", achCameraManufacturer),
    PS_TEXT("CameraVersion", achCameraVersion),
    PS_FLAG("ApertureValue", bApertureValueValid, nApertureValue),
    PS_FLAG("ISOSensitivity", bISOSensitivityValid, nISOSensitivity),
    PS_FLAG("FocalLength", bFocalLengthValid, nFocalLength),
    PS_TEXT("QualityGrade", achQualityGrade),
    PS_ALWAYS("CollectorName", achCollectorName),
    PS_ALWAYS("CollectorOrg", achCollectorOrg),
    PS_TEXT("CollectorIDType", achCollectorIDType),
    PS_TEXT("CollectorID", achCollectorID),
    PS_TEXT("EntryClerk", achEntryClerk),
    PS_TEXT("EntryClerkOrg", achEntryClerkOrg),
    PS_TEXT("EntryClerkIDType", achEntryClerkIDType),
    PS_TEXT("EntryClerkID", achEntryClerkID),
    PS_TEXT("EntryTime", achEntryTime),
    PS_TEXT("ImgProcFlag", achImgProcFlag),
    PS_FLAG("FileSize", bFileSizeValid, nFileSize),
    PS_TEXT("XTExpiredDate", achXTExpiredDate),
    PS_TEXT("DeviceType", achDeviceType),
    PS_TEXT("DeviceSNNo", achDeviceSNNo),
    PS_TEXT("ImeiSn", achImeiSn),
    PS_TEXT("APSId", achAPSId),
    PS_TEXT("SelfDefData", achSelfDefData),
    PS_TEXT("SelfDefObject", achSelfDefObject),
    PS_OBJECT_POINTER("FeatureInfoObject", ptFeatureInfo, feature_info::c_tTable),
    PS_TEXT("PlaceCode", achPlaceCode),
    PS_TEXT("ProvinceCode", achProvinceCode),
    PS_TEXT("CityCode", achCityCode),
    PS_FLAG("SourceFactory", bSourceFactoryValid, nSourceFactory),
    PS_FLAG("DeviceClass", bDeviceClassValid, nDeviceClass),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::image_info

namespace pubsec_members::sub_image
{

using R = TPubSecSubImageInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_TEXT("ImageID", achImageID),
    PS_FLAG("EventSort", bEventSortValid, nEventSort),
    PS_TEXT("DeviceID", achDeviceID),
    PS_TEXT("StoragePath", achStoragePath),
    PS_ALWAYS("Type", achType),
    PS_ALWAYS("FileFormat", achFileFormat),
    PS_TEXT("ShotTime", achShotTime),
    PS_NOT_MINUS_ONE("Width", nWidth),
    PS_NOT_MINUS_ONE("Height", nHeight),
    PS_POINTER("Data", pchData),
    PS_OBJECT_FLAG16("FeatureInfoObject", wFeatureValid, tFeatureInfo, feature_info::c_tTable),
    PS_FLAG("AlgorithmsStatus", bAlgorithmsStatusValid, nAlgorithmsStatus),
    PS_TEXT("DeviceType", achDeviceType),
    PS_TEXT("DeviceSNNo", achDeviceSNNo),
    PS_TEXT("ImeiSn", achImeiSn),
    PS_TEXT("APSId", achAPSId),
    PS_TEXT("SelfDefData", achSelfDefData),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::sub_image

#endif
