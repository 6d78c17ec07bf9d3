/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_VIDEO_SLICE_H
#define PUBSEC_OBJECTS_MEMBERS_VIDEO_SLICE_H

#include <pubsecstack/video_slice.h>

#include "objects/member_table.h"

namespace pubsec_members::video_slice
{

using R = TPubSecVideoSliceInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("VideoID", achVideoID),
    PS_ALWAYS("InfoKind", dwInfoKind),
    PS_ALWAYS("VideoSource", achVideoSource),
    PS_TEXT("IsAbstractVideo", achIsAbstractVideo),
    PS_TEXT("OriginVideoID", achOriginVideoID),
    PS_TEXT("OriginVideoURL", achOriginVideoURL),
    PS_FLAG("EventSort", bEventSortValid, nEventSort),
    PS_TEXT("DeviceID", achDeviceID),
    PS_ALWAYS("StoragePath", achStoragePath),
    PS_TEXT("ThumbnailStoragePath", achThumbnailStoragePath),
    PS_ALWAYS("FileHash", achFileHash),
    PS_ALWAYS("FileFormat", achFileFormat),
    PS_ALWAYS("CodedFormat", achCodedFormat),
    PS_ALWAYS("AudioFlag", nAudioFlag),
    PS_TEXT("AudioCodedFormat", achAudioCodedFormat),
    PS_TEXT("Title", achTitle),
    PS_TEXT("TitleNote", achTitleNote),
    PS_TEXT("SpecialName", achSpecialName),
    PS_TEXT("Keyword", achKeyword),
    PS_ALWAYS("ContentDescription", achContentDescription),
    PS_TEXT("MainCharacter", achMainCharacter),
    PS_ALWAYS("ShotPlaceCode", achShotPlaceCode),
    PS_TEXT("ShotPlaceFullAdress", achShotPlaceFullAdress),
    PS_FLAG("ShotPlaceLongitude", bShotPlaceLongitudeValid, dShotPlaceLongitude),
    PS_FLAG("ShotPlacetLatitude", bShotPlaceLatitudeValid, dShotPlaceLatitude),
    PS_TEXT("HorizontalShotDirection", achHorizontalShotDirection),
    PS_TEXT("VerticalShotDirection", achVerticalShotDirection),
    PS_ALWAYS("SecurityLevel", achSecurityLevel),
    PS_ALWAYS("VideoLen", nVideoLen),
    PS_ALWAYS("BeginTime", achBeginTime),
    PS_ALWAYS("EndTime", achEndTime),
    PS_ALWAYS("TimeErr", dwTimeErr),
    PS_ALWAYS("Width", dwWidth),
    PS_ALWAYS("Height", dwHeight),
    PS_TEXT("QualityGrade", achQualityGrade),
    PS_TEXT("CollectorName", achCollectorName),
    PS_TEXT("CollectorOrg", achCollectorOrg),
    PS_TEXT("CollectorIDType", achCollectorIDType),
    PS_TEXT("CollectorID", achCollectorID),
    PS_ALWAYS("EntryClerk", achEntryClerk),
    PS_ALWAYS("EntryClerkOrg", achEntryClerkOrg),
    PS_TEXT("EntryClerkIDType", achEntryClerkIDType),
    PS_TEXT("EntryClerkID", achEntryClerkID),
    PS_TEXT("EntryTime", achEntryTime),
    PS_FLAG("VideoProcFlag", bVideoProcFlagValid, nVideoProcFlag),
    PS_FLAG("FileSize", bFileSizeValid, dwFileSize),
    PS_TEXT("XTExpiredDate", achXTExpiredDate),
    PS_TEXT("DeviceType", achDeviceType),
    PS_TEXT("DeviceSNNo", achDeviceSNNo),
    PS_TEXT("ImeiSn", achImeiSn),
    PS_TEXT("APSId", achAPSId),
    PS_TEXT("SelfDefData", achSelfDefData),
    PS_FLAG("Transcoding", bTranscodingValid, nTranscoding),
    PS_TEXT("SelfDefObject", achSelfDefObject),
    PS_TEXT("PlaceCode", achPlaceCode),
    PS_TEXT("ProvinceCode", achProvinceCode),
    PS_TEXT("CityCode", achCityCode),
    PS_FLAG("SourceFactory", bSourceFactoryValid, nSourceFactory),
    PS_FLAG("DeviceClass", bDeviceClassValid, nDeviceClass),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::video_slice

#endif
