/* SPDX-License-Identifier: Apache-2.0 */
/* The configuration in force, read by every request without a lock and yet never torn. */
#ifndef PUBSEC_CORE_PLATFORM_TABLE_H
#define PUBSEC_CORE_PLATFORM_TABLE_H

#include "core/state.h"

/* Copies the record in force of a platform; returns the version that was read. */
u32 PubSecTableRead(u32 dwPlatform, TPubSecPlatRegInfo* ptInfo);

/* Whether the record in force is still the one of that version. */
bool PubSecTableIsAt(u32 dwPlatform, u32 dwVersion);

/* Takes a record into force. */
void PubSecTableWrite(u32 dwPlatform, const TPubSecPlatRegInfo* ptInfo);

#endif
