/* SPDX-License-Identifier: Apache-2.0 */
/* Access records. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_ACCESS_H
#define PUBSECSTACK_ACCESS_H

#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/* One passage through a controlled entrance: card, person, time and what came of it. */
typedef struct
{
    char achAccessRecordID[49];  /* "AccessRecordID", always */
    char achSourceID[42];        /* "SourceID", text */
    char achDeviceID[21];        /* "DeviceID", always */
    char achSecureAccessID[101]; /* "SecureAccessID", always */
    char achAlarmEventCode[31];  /* "AlarmEventCode", always */
    u32 dwCardID;                /* "CardID", always */
    s32 nCardType;               /* "CardType", always */
    char achPersonCode[65];      /* "PersonCode", always */
    char achAccessTime[15];      /* "AccessTime", always; time */
    char achAccessDesc[304];     /* "AccessDesc", text */
    s32 nPunchAct;               /* "PunchAct", always */
    u8 abyReserved1[32];         /* not read by the library */
    s32 nPunchResult;            /* "PunchResult", always */
    char achPunchTime[15];       /* "PunchTime", always; time */
    char achEntryTime[17];       /* "EntryTime", text; time */
    u32 dwRecordNum;             /* records in a list, taken as signed; read from the first one only */
    u8 abyReserved2[160];        /* not read by the library */
} TPubSecAccessRecordInfo;

PUBSEC_C_END

#endif
