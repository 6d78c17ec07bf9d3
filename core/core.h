/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_CORE_CORE_H
#define PUBSEC_CORE_CORE_H

#include <pubsecplatform.h>
#include <pubsecstack/config.h>

PUBSEC_C_BEGIN

/* Handler of the console command "pbsklog": stores a level from 0 to 4 and returns it; 1 for any other number. */
s32 _SetPubSecStaLogLvl(s32 nLevel);

/* What the register task runs until the stack is uninitialised; the session supplies it. */
void PubSecStackRegisterThread(TAppTaskHandle hTask, u32 dwEvent, const void* pvContext);

PUBSEC_C_END

/* Calls the host's status callbacks, slot 0 first. No lock is held. */
void PubSecNotifyRegStatus(u32 dwPlatform, u32 dwStatus, const TPubSecPlatRegInfo* ptInfo);

#endif
