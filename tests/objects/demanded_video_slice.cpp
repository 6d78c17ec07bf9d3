/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/video_slice.h>

#include "tests/objects/demanded.h"

namespace records
{

const std::vector<Member>& VideoSliceMembers()
{
    using R = TPubSecVideoSliceInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("VideoID", achVideoID, 42),
        ALWAYS("InfoKind", dwInfoKind, u32),
        ALWAYS_TEXT("VideoSource", achVideoSource, 3),
        TEXT("IsAbstractVideo", achIsAbstractVideo, 9),
        TEXT("OriginVideoID", achOriginVideoID, 42),
        TEXT("OriginVideoURL", achOriginVideoURL, 257),
        FLAGGED("EventSort", bEventSortValid, nEventSort, s32),
        TEXT("DeviceID", achDeviceID, 21),
        ALWAYS_TEXT("StoragePath", achStoragePath, 257),
        TEXT("ThumbnailStoragePath", achThumbnailStoragePath, 257),
        ALWAYS_TEXT("FileHash", achFileHash, 129),
        ALWAYS_TEXT("FileFormat", achFileFormat, 7),
        ALWAYS_TEXT("CodedFormat", achCodedFormat, 5),
        ALWAYS("AudioFlag", nAudioFlag, s32),
        TEXT("AudioCodedFormat", achAudioCodedFormat, 3),
        TEXT("Title", achTitle, 129),
        TEXT("TitleNote", achTitleNote, 129),
        TEXT("SpecialName", achSpecialName, 129),
        TEXT("Keyword", achKeyword, 201),
        ALWAYS_TEXT("ContentDescription", achContentDescription, 1025),
        TEXT("MainCharacter", achMainCharacter, 257),
        ALWAYS_TEXT("ShotPlaceCode", achShotPlaceCode, 7),
        TEXT("ShotPlaceFullAdress", achShotPlaceFullAdress, 101),
        FLAGGED("ShotPlaceLongitude", bShotPlaceLongitudeValid, dShotPlaceLongitude, double),
        FLAGGED("ShotPlacetLatitude", bShotPlaceLatitudeValid, dShotPlaceLatitude, double),
        TEXT("HorizontalShotDirection", achHorizontalShotDirection, 2),
        TEXT("VerticalShotDirection", achVerticalShotDirection, 2),
        ALWAYS_TEXT("SecurityLevel", achSecurityLevel, 2),
        ALWAYS("VideoLen", nVideoLen, s32),
        ALWAYS_TEXT("BeginTime", achBeginTime, 15),
        ALWAYS_TEXT("EndTime", achEndTime, 15),
        ALWAYS("TimeErr", dwTimeErr, u32),
        ALWAYS("Width", dwWidth, u32),
        ALWAYS("Height", dwHeight, u32),
        TEXT("QualityGrade", achQualityGrade, 2),
        TEXT("CollectorName", achCollectorName, 51),
        TEXT("CollectorOrg", achCollectorOrg, 101),
        TEXT("CollectorIDType", achCollectorIDType, 4),
        TEXT("CollectorID", achCollectorID, 31),
        ALWAYS_TEXT("EntryClerk", achEntryClerk, 51),
        ALWAYS_TEXT("EntryClerkOrg", achEntryClerkOrg, 101),
        TEXT("EntryClerkIDType", achEntryClerkIDType, 4),
        TEXT("EntryClerkID", achEntryClerkID, 31),
        TEXT("EntryTime", achEntryTime, 15),
        FLAGGED("VideoProcFlag", bVideoProcFlagValid, nVideoProcFlag, s32),
        FLAGGED("FileSize", bFileSizeValid, dwFileSize, u32),
        TEXT("XTExpiredDate", achXTExpiredDate, 15),
        TEXT("DeviceType", achDeviceType, 101),
        TEXT("DeviceSNNo", achDeviceSNNo, 33),
        TEXT("ImeiSn", achImeiSn, 18),
        TEXT("APSId", achAPSId, 21),
        TEXT("SelfDefData", achSelfDefData, 257),
        FLAGGED("Transcoding", bTranscodingValid, nTranscoding, s32),
        TEXT("SelfDefObject", achSelfDefObject, 256),
        TEXT("PlaceCode", achPlaceCode, 7),
        TEXT("ProvinceCode", achProvinceCode, 7),
        TEXT("CityCode", achCityCode, 7),
        FLAGGED("SourceFactory", bSourceFactoryValid, nSourceFactory, s32),
        FLAGGED("DeviceClass", bDeviceClassValid, nDeviceClass, s32),
    };
    return members;
}

} // namespace records
