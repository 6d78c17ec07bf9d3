/* SPDX-License-Identifier: Apache-2.0 */
/* Video slices, and the collection that slice and file documents are made from. */
#ifndef PUBSECSTACK_VIDEO_SLICE_H
#define PUBSECSTACK_VIDEO_SLICE_H

#include <pubsecstack/face.h>
#include <pubsecstack/file.h>
#include <pubsecstack/image.h>
#include <pubsecstack/motor_vehicle.h>
#include <pubsecstack/non_motor_vehicle.h>
#include <pubsecstack/person.h>
#include <pubsecstack/thing_scene.h>
#include <pubsecstack/violation.h>

PUBSEC_C_BEGIN

/* Video formats. Records carry the name, not the number. */
typedef enum
{
    PUBSEC_VIDEO_FORMAT_MPG = 1,      /* "Mpg" */
    PUBSEC_VIDEO_FORMAT_MOV = 2,      /* "Mov" */
    PUBSEC_VIDEO_FORMAT_AVI = 3,      /* "Avi" */
    PUBSEC_VIDEO_FORMAT_RM = 4,       /* "Rm" */
    PUBSEC_VIDEO_FORMAT_RMVB = 5,     /* "Rmvb" */
    PUBSEC_VIDEO_FORMAT_FLV = 6,      /* "Flv" */
    PUBSEC_VIDEO_FORMAT_VOB = 7,      /* "Vob" */
    PUBSEC_VIDEO_FORMAT_M2TS = 8,     /* "M2ts" */
    PUBSEC_VIDEO_FORMAT_MP4 = 9,      /* "Mp4" */
    PUBSEC_VIDEO_FORMAT_ES = 10,      /* "Es" */
    PUBSEC_VIDEO_FORMAT_PS = 11,      /* "Ps" */
    PUBSEC_VIDEO_FORMAT_TS = 12,      /* "Ts" */
    PUBSEC_VIDEO_FORMAT_OTHER = 13,   /* "Other" */
    PUBSEC_VIDEO_FORMAT_UNKNOWN = 14, /* "unkown", spelled so */
} EGAT1400VideoFormatType;

/* One slice of recorded video. Its latitude's key carries a letter more than the image's. */
typedef struct
{
    char achVideoID[42];    /* "VideoID", always */
    u32 dwInfoKind;         /* "InfoKind", always */
    char achVideoSource[3]; /* "VideoSource", always */

    /* origin */
    char achIsAbstractVideo[9];  /* "IsAbstractVideo", text */
    char achOriginVideoID[42];   /* "OriginVideoID", text */
    char achOriginVideoURL[257]; /* "OriginVideoURL", text */
    u32 bEventSortValid;
    s32 nEventSort;       /* "EventSort", flag */
    char achDeviceID[21]; /* "DeviceID", text */

    /* the file */
    char achStoragePath[257];          /* "StoragePath", always */
    char achThumbnailStoragePath[257]; /* "ThumbnailStoragePath", text */
    char achFileHash[129];             /* "FileHash", always; 32 digits of MD5 */
    char achFileFormat[7];             /* "FileFormat", always; a name of EGAT1400VideoFormatType */
    char achCodedFormat[5];            /* "CodedFormat", always */
    s32 nAudioFlag;                    /* "AudioFlag", always */
    char achAudioCodedFormat[3];       /* "AudioCodedFormat", text */

    /* what it shows */
    char achTitle[129];               /* "Title", text */
    char achTitleNote[129];           /* "TitleNote", text */
    char achSpecialName[129];         /* "SpecialName", text */
    char achKeyword[201];             /* "Keyword", text */
    char achContentDescription[1025]; /* "ContentDescription", always */
    char achMainCharacter[257];       /* "MainCharacter", text */

    /* where it was taken, and which way the camera looked */
    char achShotPlaceCode[7];         /* "ShotPlaceCode", always */
    char achShotPlaceFullAdress[101]; /* "ShotPlaceFullAdress", text */
    u32 bShotPlaceLongitudeValid;
    double dShotPlaceLongitude; /* "ShotPlaceLongitude", flag */
    u32 bShotPlaceLatitudeValid;
    double dShotPlaceLatitude;          /* "ShotPlacetLatitude", flag */
    char achHorizontalShotDirection[2]; /* "HorizontalShotDirection", text */
    char achVerticalShotDirection[2];   /* "VerticalShotDirection", text */

    /* length, time and size of the picture */
    char achSecurityLevel[2]; /* "SecurityLevel", always */
    s32 nVideoLen;            /* "VideoLen", always */
    char achBeginTime[15];    /* "BeginTime", always; time */
    char achEndTime[15];      /* "EndTime", always; time */
    u32 dwTimeErr;            /* "TimeErr", always */
    u32 dwWidth;              /* "Width", always */
    u32 dwHeight;             /* "Height", always */
    char achQualityGrade[2];  /* "QualityGrade", text */

    /* who collected it and who entered it */
    char achCollectorName[51];   /* "CollectorName", text */
    char achCollectorOrg[101];   /* "CollectorOrg", text */
    char achCollectorIDType[4];  /* "CollectorIDType", text */
    char achCollectorID[31];     /* "CollectorID", text */
    char achEntryClerk[51];      /* "EntryClerk", always */
    char achEntryClerkOrg[101];  /* "EntryClerkOrg", always */
    char achEntryClerkIDType[4]; /* "EntryClerkIDType", text */
    char achEntryClerkID[31];    /* "EntryClerkID", text */
    char achEntryTime[15];       /* "EntryTime", text; time */

    /* processing and device */
    u32 bVideoProcFlagValid;
    s32 nVideoProcFlag; /* "VideoProcFlag", flag */
    u32 bFileSizeValid;
    u32 dwFileSize;            /* "FileSize", flag */
    char achXTExpiredDate[15]; /* "XTExpiredDate", text; time */
    char achDeviceType[101];   /* "DeviceType", text */
    char achDeviceSNNo[33];    /* "DeviceSNNo", text */
    char achImeiSn[18];        /* "ImeiSn", text */
    char achAPSId[21];         /* "APSId", text */
    char achSelfDefData[257];  /* "SelfDefData", text */
    u32 bTranscodingValid;
    s32 nTranscoding;           /* "Transcoding", flag */
    char achSelfDefObject[256]; /* "SelfDefObject", text */

    /* sub-images */
    u32 dwSubImageNum;                   /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", pointer, after all others; released with the record */

    /* place and origin */
    char achPlaceCode[7];    /* "PlaceCode", text */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[7];     /* "CityCode", text */
    u32 bSourceFactoryValid;
    s32 nSourceFactory; /* "SourceFactory", flag */
    u32 bDeviceClassValid;
    s32 nDeviceClass;    /* "DeviceClass", flag */
    u8 abyReserved[256]; /* not read by the library */
} TPubSecVideoSliceInfo;

/* A plain list of slices. */
typedef struct
{
    u32 dwVideoSliceNum;
    TPubSecVideoSliceInfo* ptVideoSlice; /* dwVideoSliceNum records; released with the list */
} TPubsecVideoSliceList;

/*
 * Slices or files with the objects recognised in them. The slice document and the file document share the arrays, but
 * each takes the numbers of entries from a block of counts of its own; fill both blocks when both are made. A list is
 * written when its pointer is not null. The violations of motor vehicles are as many as the first one's
 * dwIllegalRecordNum says, and only slice documents carry violations.
 *
 * The objects and the data stand in the element of the last slice or file: with none of them (count 0) an empty list is
 * sent without them. A count above 0 with a null array makes no document.
 */
typedef struct
{
    u32 dwReserved0; /* not read by the library */
    TPubSecVideoSliceInfo* ptVideoSlice;
    void* pvReserved1; /* not read by the library */
    TPubSecFileInfo* ptFile;
    TPubSecMotorVehicleObjInfo* ptMotorVehicle;
    TPubSecPersonnelObjInfo* ptPerson;
    TPubSecFaceObjInfo* ptFace;
    TPubSecNonMotorVehicleObjInfo* ptNonMotorVehicle;
    TPubSecThingObjInfo* ptThing;
    TPubSecSceneObjInfo* ptScene;
    void* pvReserved2; /* not read by the library */
    TPubSecIllegalRecordInfo* ptIllegalRecord;
    TPubSecNonMotorIllegalRecordInfo* ptNonMotorIllegalRecord;

    /* counts of the slice document */
    s32 nVideoSliceNum;
    s32 nPersonNum;
    s32 nFaceNum;
    s32 nMotorVehicleNum;
    s32 nNonMotorVehicleNum;
    s32 nThingNum;
    s32 nSceneNum;
    u32 dwReserved3; /* not read by the library */
    u32 dwNonMotorIllegalRecordNum;
    u32 adwReserved4[9]; /* not read by the library */

    /* counts of the file document */
    s32 nFileNum;
    s32 nFilePersonNum;
    s32 nFileFaceNum;
    s32 nFileMotorVehicleNum;
    s32 nFileNonMotorVehicleNum;
    s32 nFileThingNum;
    s32 nFileSceneNum;
    u32 adwReserved5[8]; /* not read by the library */

    const char* pchData; /* "Data", pointer; base64, the host's */
} TPubSecVideoSliceObj;

PUBSEC_C_END

#endif
