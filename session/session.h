/* SPDX-License-Identifier: Apache-2.0 */
/* The steps of a platform's session, as they call each other. */
#ifndef PUBSEC_SESSION_SESSION_H
#define PUBSEC_SESSION_SESSION_H

#include <pubsecplatform.h>
#include <pubsecstack/config.h>
#include <pubsecstack/session.h>

PUBSEC_C_BEGIN

/* {"RegisterObject":{"DeviceID":"..."}} and its siblings; at most 20 characters of the identifier. Heap text or null.
 */
char* _PubSecUserRegisterJson(const char* pchDeviceID);
char* _PubSecUserUnRegisterJson(const char* pchDeviceID);
char* _PubSecUserKeepaliveJson(const char* pchDeviceID);

/* Registers once; the outcome is seen in the platform's status. ptInfo is the caller's copy of the record in force. */
void PubSecStackPostRegister(s32 nPlatform, const TPubSecPlatRegInfo* ptInfo);

/* One keepalive: 50 alive, 69 answered with code "10", 51, 60, 75 or 76 otherwise. */
u32 _PubSecPostUserKeepAliveMsg(u32 dwPlatform);

/* The server's time out of its answer. 1 read, 0 not. */
u32 _PubSecSystemTimeParseJson(const char* pchText, TPubSecSystemTime* ptOut);

/* Timer handlers; the context points at the platform's element of g_adwPubSecStackPlatIndex. */
void _PubSecStackKeepaliveTimerHandle(TAppTaskHandle hTask, u32 dwEvent, const void* pvContext);
void _PubSecStackGetPlatformTimeTimerHandle(TAppTaskHandle hTask, u32 dwEvent, const void* pvContext);

PUBSEC_C_END

#endif
