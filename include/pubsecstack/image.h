/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Pictures, sub-images and feature vectors; and the rules that hold for every record of the interface.
 *
 * A record is filled by the host and turned into a JSON object by the library. The comment beside a field names the
 * member that it becomes and the rule by which it is written:
 *
 *   always      whatever the field holds; an empty text as "".
 *   text        unless the text is empty or exactly "Inv", the mark for a value that is not known.
 *   flag        when the presence flag declared just before the field is not 0.
 *   not -1      unless the number is exactly -1, or -1.0. A 0 is a value like any other, so set absent numbers to -1.
 *   pointer     unless the pointer is null.
 *   "1" or "0"  always, as a text: "1" when the number is 1, "0" otherwise.
 *
 * A text ends at its terminator, or with its array where it has none. Nothing is checked: digits, widths and vocabulary
 * are the host's. A field marked "time" holds 14 digits, YYYYMMDDhhmmss. Members are written in the order of the fields
 * except where a record says otherwise; keys are the server's, spelled as it spells them.
 *
 * "SubImageList" comes after an object's own members. Documents of pictures, of one kind of object and of the host's own
 * trees write it when the pointer is not null and the count above 0; those of slices and violations whenever the pointer
 * is not null, as an empty list for a count of 0 or less; those of files, and PubSecPostIllRecd, never.
 *
 * Records belong to the host, and so does what they point to. What is marked "released with the record" is given back
 * by the record's PubSecStackFree_ function (records.h), with the allocator that the host names, and the pointer is
 * cleared. Everything else stays with whoever made it: the feature record of a face and the feature data of a
 * sub-image, for example. Where a function takes more than one record, they lie back to back, as an array.
 */
#ifndef PUBSECSTACK_IMAGE_H
#define PUBSECSTACK_IMAGE_H

#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/* Picture formats. Records carry the name, not the number. */
typedef enum
{
    PUBSEC_IMAGE_FORMAT_BMP = 1,      /* "Bmp" */
    PUBSEC_IMAGE_FORMAT_GIF = 2,      /* "Gif" */
    PUBSEC_IMAGE_FORMAT_JPEG = 3,     /* "Jpeg" */
    PUBSEC_IMAGE_FORMAT_JFIF = 4,     /* "Jfif" */
    PUBSEC_IMAGE_FORMAT_KDC = 5,      /* "Kdc" */
    PUBSEC_IMAGE_FORMAT_PCD = 6,      /* "Pcd" */
    PUBSEC_IMAGE_FORMAT_PCX = 7,      /* "Pcx" */
    PUBSEC_IMAGE_FORMAT_PIC = 8,      /* "Pic" */
    PUBSEC_IMAGE_FORMAT_PIX = 9,      /* "Pix" */
    PUBSEC_IMAGE_FORMAT_PNG = 10,     /* "Png" */
    PUBSEC_IMAGE_FORMAT_PSD = 11,     /* "Psd" */
    PUBSEC_IMAGE_FORMAT_TAPGA = 12,   /* "Tapga" */
    PUBSEC_IMAGE_FORMAT_TIFF = 13,    /* "Tiff" */
    PUBSEC_IMAGE_FORMAT_WMF = 14,     /* "Wmf" */
    PUBSEC_IMAGE_FORMAT_JP2 = 15,     /* "Jp2" */
    PUBSEC_IMAGE_FORMAT_OTHER = 16,   /* "Other" */
    PUBSEC_IMAGE_FORMAT_UNKNOWN = 17, /* "unkown", spelled so */
} EGAT1400ImageFormatType;

/* A feature vector and the algorithm that made it. All three members are written once the record is. */
typedef struct
{
    char achVendor[128];           /* "Vendor", always */
    char achAlgorithmVersion[128]; /* "AlgorithmVersion", always */
    char* pchFeatureData;          /* "FeatureData", always: the vector as text; null is written as "" */
} TPubSecFeatureInfo;

/*
 * One picture: where it is kept, what it shows, where, when and with what it was taken. The angles are written
 * before the directions.
 */
typedef struct
{
    char achImageID[42];       /* "ImageID", always */
    u32 dwInfoKind;            /* "InfoKind", always */
    char achImageSource[3];    /* "ImageSource", always */
    char achSourceVideoID[42]; /* "SourceVideoID", text */
    char achOriginImageID[42]; /* "OriginImageID", text */
    u32 bEventSortValid;
    s32 nEventSort; /* "EventSort", flag */

    /* where the picture is kept */
    char achDeviceID[21];     /* "DeviceID", text */
    char achStoragePath[257]; /* "StoragePath", always */
    char achFileHash[129];    /* "FileHash", always */
    char achFileFormat[7];    /* "FileFormat", always; a name of EGAT1400ImageFormatType */
    char achShotTime[15];     /* "ShotTime", always; time */

    /* what it shows */
    char achTitle[257];              /* "Title", always */
    char achTitleNote[129];          /* "TitleNote", text */
    char achSpecialIName[129];       /* "SpecialIName", text */
    char achKeyword[201];            /* "Keyword", text */
    char achContentDescription[257]; /* "ContentDescription", always */
    char achSubjectCharacter[257];   /* "SubjectCharacter", text */

    /* where it was taken, and which way the camera looked */
    char achShotPlaceCode[7];         /* "ShotPlaceCode", text */
    char achShotPlaceFullAdress[101]; /* "ShotPlaceFullAdress", text */
    u32 bShotPlaceLongitudeValid;
    double dShotPlaceLongitude; /* "ShotPlaceLongitude", flag */
    u32 bShotPlaceLatitudeValid;
    double dShotPlaceLatitude;          /* "ShotPlaceLatitude", flag */
    char achHorizontalShotDirection[2]; /* "HorizontalShotDirection", text */
    char achVerticalShotDirection[2];   /* "VerticalShotDirection", text */
    u32 bHorizontalShotAngleValid;
    double dHorizontalShotAngle; /* "HorizontalShotAngle", flag */
    u32 bVerticalShotAngleValid;
    double dVerticalShotAngle; /* "VerticalShotAngle", flag */

    /* the picture and the camera */
    char achSecurityLevel[2];        /* "SecurityLevel", always */
    s32 nWidth;                      /* "Width", not -1 */
    s32 nHeight;                     /* "Height", not -1 */
    char achCameraManufacturer[101]; /* "CameraManufacturer", text */
    char achCameraVersion[101];      /* "CameraVersion", text */
    u32 bApertureValueValid;
    s32 nApertureValue; /* "ApertureValue", flag */
    u32 bISOSensitivityValid;
    s32 nISOSensitivity; /* "ISOSensitivity", flag */
    u32 bFocalLengthValid;
    s32 nFocalLength;        /* "FocalLength", flag */
    char achQualityGrade[2]; /* "QualityGrade", text */

    /* who collected it and who entered it */
    char achCollectorName[51];   /* "CollectorName", always */
    char achCollectorOrg[101];   /* "CollectorOrg", always */
    char achCollectorIDType[4];  /* "CollectorIDType", text */
    char achCollectorID[31];     /* "CollectorID", text */
    char achEntryClerk[51];      /* "EntryClerk", text */
    char achEntryClerkOrg[101];  /* "EntryClerkOrg", text */
    char achEntryClerkIDType[4]; /* "EntryClerkIDType", text */
    char achEntryClerkID[31];    /* "EntryClerkID", text */
    char achEntryTime[15];       /* "EntryTime", text; time */

    /* processing and device */
    char achImgProcFlag[2]; /* "ImgProcFlag", text */
    u32 bFileSizeValid;
    s32 nFileSize;                     /* "FileSize", flag */
    char achXTExpiredDate[15];         /* "XTExpiredDate", text; time */
    char achDeviceType[101];           /* "DeviceType", text */
    char achDeviceSNNo[33];            /* "DeviceSNNo", text */
    char achImeiSn[18];                /* "ImeiSn", text */
    char achAPSId[21];                 /* "APSId", text */
    char achSelfDefData[257];          /* "SelfDefData", text */
    char achSelfDefObject[129];        /* "SelfDefObject", text */
    TPubSecFeatureInfo* ptFeatureInfo; /* "FeatureInfoObject", pointer; released with the record */

    /* place and origin */
    char achPlaceCode[7];    /* "PlaceCode", text */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[7];     /* "CityCode", text */
    u32 bSourceFactoryValid;
    s32 nSourceFactory; /* "SourceFactory", flag */
    u32 bDeviceClassValid;
    s32 nDeviceClass;   /* "DeviceClass", flag */
    u8 abyReserved[64]; /* not read by the library */
} TPubSecImageObjInfo;

/* One picture that belongs to an object: a crop of a face, a plate, the whole scene. */
typedef struct
{
    char achImageID[42]; /* "ImageID", text */
    u32 bEventSortValid;
    s32 nEventSort;           /* "EventSort", flag */
    char achDeviceID[21];     /* "DeviceID", text */
    char achStoragePath[257]; /* "StoragePath", text */
    char achType[4];          /* "Type", always */
    char achFileFormat[7];    /* "FileFormat", always */
    char achShotTime[15];     /* "ShotTime", text; time */
    s32 nWidth;               /* "Width", not -1 */
    s32 nHeight;              /* "Height", not -1 */
    char* pchData;            /* "Data", pointer; base64; released with the record */
    u16 wFeatureValid;
    TPubSecFeatureInfo tFeatureInfo; /* "FeatureInfoObject", flag (a u16 here) */
    u32 bAlgorithmsStatusValid;
    s32 nAlgorithmsStatus;    /* "AlgorithmsStatus", flag */
    char achDeviceType[101];  /* "DeviceType", text */
    char achDeviceSNNo[33];   /* "DeviceSNNo", text */
    char achImeiSn[18];       /* "ImeiSn", text */
    char achAPSId[21];        /* "APSId", text */
    char achSelfDefData[257]; /* "SelfDefData", text */
} TPubSecSubImageInfo;

PUBSEC_C_END

#endif
