/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The two one-shot timers of a registered platform. The register task arms and cancels them, their handlers on the
 * delay task re-arm themselves; a stack that was ended and started again has two delay tasks for a while. However they
 * interleave, a platform ends up with one of each kind at most, and a registered one has its keepalive unless the host
 * could not arm it.
 */
#ifndef PUBSEC_SESSION_TIMERS_H
#define PUBSEC_SESSION_TIMERS_H

#include "core/state.h"

/* Both start this long after a registration or a changed period. */
constexpr u32 PUBSEC_TIMER_START_MS = 500;

/* A kind of timer: its slots, one a platform, and what runs when it is due. */
struct TPubSecTimerKind
{
    TAppTimerHandle* phSlots;
    PFAppTimer pfHandler;
    const char* pchSlots; /* as messages name them */
};

extern const TPubSecTimerKind c_tKeepaliveTimer;
extern const TPubSecTimerKind c_tSyncTimeTimer;

/* A period in milliseconds; one too long for a timer becomes the longest. */
u32 PubSecPeriod(u32 dwPeriod, u32 dwUnitMs);

/* The timer in the slot; null when none is armed. */
TAppTimerHandle PubSecTimerOf(const TPubSecTimerKind& tKind, u32 dwPlatform);

/* Arms a timer in place of whatever the slot holds. For the register loop only: one pass is under way at a time. */
void PubSecTimerArm(const TPubSecTimerKind& tKind, u32 dwPlatform, u32 dwMilliseconds, const char* pchFunction);

/*
 * Arms the next timer of a handler that found hOwn in the slot, null when it ran before its handle was stored. A slot
 * that was emptied meanwhile stays empty; a timer that was stored meanwhile gives way to one of PUBSEC_TIMER_START_MS.
 */
void PubSecTimerRearm(const TPubSecTimerKind& tKind, u32 dwPlatform, TAppTimerHandle hOwn, u32 dwMilliseconds,
                      const char* pchFunction);

/* Cancels whatever the slot holds and empties it. */
void PubSecTimerClear(const TPubSecTimerKind& tKind, u32 dwPlatform);

/* Cancels hTimer and empties its slot, unless the slot holds another by now. Null does nothing. */
void PubSecTimerDisarm(const TPubSecTimerKind& tKind, u32 dwPlatform, TAppTimerHandle hTimer);

/* What a handler is called for: finds the platform of the context, and whether the event is an elapsed timer. */
bool PubSecTimerIsDue(u32 dwEvent, const void* pvContext, const char* pchFunction, u32* pdwPlatform);

#endif
