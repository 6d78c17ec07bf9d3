/* SPDX-License-Identifier: Apache-2.0 */
/* Events of the operation log, reported to a log collector. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_LOG_EVENT_H
#define PUBSECSTACK_LOG_EVENT_H

#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/* One event of the device's operation log. "entryTime" is written before "viidId". */
typedef struct
{
    char achClientId[128]; /* "clientId", always */
    u64 qwClientTime;      /* "clientTime", always */
    char achCategory[64];  /* "category", always */
    char achAction[16];    /* "action", always */
    char achTargetID[256]; /* "value"."TargetID", always */
    char achViidId[64];    /* "viidId", always */
    char achSoftVer[64];   /* "softVer", always */
    u64 qwEntryTime;       /* "entryTime", always */
    char achIp[64];        /* "ip", always */
    char achTest[64];      /* "test", always */
} TPubSecLogInfo;

PUBSEC_C_END

#endif
