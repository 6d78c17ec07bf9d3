/* SPDX-License-Identifier: Apache-2.0 */
/* Files. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_FILE_H
#define PUBSECSTACK_FILE_H

#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/*
 * One stored file that is neither a picture nor a video slice. It has no sub-images. "FileID" is written first, and
 * "StoragePath" before "FileHash".
 */
typedef struct
{
    u32 dwInfoKind;            /* "InfoKind", always */
    char achSource[3];         /* "Source", always */
    char achFileName[257];     /* "FileName", always */
    char achFileHash[33];      /* "FileHash", always; 32 digits of MD5 */
    char achFileFormat[33];    /* "FileFormat", always */
    char achTitle[257];        /* "Title", always */
    char achFileID[42];        /* "FileID", text */
    char achStoragePath[257];  /* "StoragePath", text */
    char achSecurityLevel[2];  /* "SecurityLevel", text */
    char achSubmiterName[51];  /* "SubmiterName", text */
    char achSubmiterOrg[101];  /* "SubmiterOrg", text */
    char achEntryTime[15];     /* "EntryTime", text; time */
    s32 nFileSize;             /* "FileSize", not -1; signed */
    char achXTExpiredDate[15]; /* "XTExpiredDate", text; time */
    char achDeviceType[101];   /* "DeviceType", text */
    char achDeviceSNNo[33];    /* "DeviceSNNo", text */
    char achImeiSn[18];        /* "ImeiSn", text */
    char achAPSId[21];         /* "APSId", text */
    char achSelfDefData[257];  /* "SelfDefData", text */
} TPubSecFileInfo;

PUBSEC_C_END

#endif
