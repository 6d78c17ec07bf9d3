/* SPDX-License-Identifier: Apache-2.0 */
/* Lifetime of the stack, the configuration of its platforms, and the registration status. */
#ifndef PUBSECSTACK_CONFIG_H
#define PUBSECSTACK_CONFIG_H

#include <pubsecstack/results.h>
#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/* At most two servers are reported to; they are called platforms and numbered 0 and 1. */
#define PUBSEC_PLATFORM_NUM 2

/*
 * One platform's configuration. A text that fills its field needs no terminator: it is read up to the field's size.
 * A host starts from a record that is all zeros.
 */
typedef struct
{
    u32 dwEnable;          /* 0 = never registered, anything else = register */
    char achDeviceID[24];  /* this device's identifier; the first 20 characters are sent */
    char achServerIP[64];  /* server address: IPv4 text, IPv6 text or host name. The registrations
                              alone put IPv6 in brackets, so for a session give it in brackets and without "::", as
                              in [fd00:0:0:0:0:0:0:5]. "http://address:port" has 41 characters: a longer one cuts
                              the keepalive's URL, and the session is lost after the third */
    u32 dwServerPort;      /* server TCP port */
    char achUserName[128]; /* user name for HTTP digest authentication */
    char achPassword[128]; /* password for HTTP digest authentication */
    u32 dwKeepaliveSec;    /* keepalive period in seconds; the field is not tested, and 0 means without a pause; above
                              4294967 it is as long as a timer can be */
    u32 dwHttpsEnable;     /* exactly 1 = https, any other value = http; server certificates are never verified */
    char achReserved[128]; /* the host's own; carried with the record, never read by the stack */
    u32 dwSyncTimeMin;     /* clock-synchronisation period in minutes; 0 = the clock is not synchronised; above 71582
                              it is as long as a timer can be */
} TPubSecPlatRegInfo;

/* The same record without dwEnable, for the calls that try a server without configuring it (session.h). */
typedef struct
{
    char achDeviceID[24];
    char achServerIP[64];
    u32 dwServerPort;
    char achUserName[128];
    char achPassword[128];
    u32 dwKeepaliveSec;
    u32 dwHttpsEnable;
    char achReserved[128];
    u32 dwSyncTimeMin;
} TPubSecRegParam;

/*
 * Tells the host that a platform's registration status became dwStatus: 1 registered, 0 not. ptInfo is the
 * configuration that the change belongs to; it is valid only during the call.
 *
 * Called on the register task (registration, unregistration) or on the delay task (keepalive lost), or on the thread
 * that calls PubSecPostUserUnRegisterMsg. No lock is held: the callback may call any function of the stack. It delays
 * the session for as long as it runs, so it must not wait for a registration. Changes that follow each other on two
 * threads may be told in the other order, or at the same time: PubSecGetRegisterStatus says what holds.
 */
typedef void (*PFPubSecRegStatus)(u32 dwPlatform, u32 dwStatus, const TPubSecPlatRegInfo* ptInfo);

/*
 * Starts the stack: prepares the host's base library, creates the memory pool, the task manager and the three tasks
 * ("pubsecstack_nodelay", "pubsecstack_delay", "pubsecstack_reg"), starts the register loop and registers the console
 * command "pbsklog".
 *
 * Returns PUBSEC_OK; PUBSEC_ERR_ALREADY_INIT when it was called before, even if that call failed; PUBSEC_ERR_FAILED
 * when a facility of the host failed. What was created before a failure is not released: a host that wants to try
 * again calls PubSecStackUnInit first. The loop makes its first pass once that of a former loop, ended by
 * PubSecStackUnInit, is through, which may take minutes where servers do not answer. Does not block. Any thread.
 */
PUBSEC_API u32 PubSecStackInit(void);

/*
 * Ends the register loop after its current pass, and nothing else: tasks, timers, pool, configuration and registration
 * status stay as they are. Does not wait for the loop. Any thread.
 */
PUBSEC_API void PubSecStackUnInit(void);

/*
 * Hands over a platform's configuration, whole; the register loop takes it into force on its next pass, within about a
 * second. A changed identity (device, address, port, user, password, https, enable) unregisters and registers anew; a
 * changed keepalive or clock period alone re-arms that timer (a clock period that was 0 starts at the next
 * registration). May be called before PubSecStackInit.
 *
 * nPlatform   0 or 1; with any other number nothing is written
 * ptInfo      copied; null writes nothing
 *
 * Returns PUBSEC_OK always. Waits for a lock that is held for the copying of one record. Any thread, callbacks
 * included.
 */
PUBSEC_API u32 PubSecStackUpdateRegisterInfo(s32 nPlatform, const TPubSecPlatRegInfo* ptInfo);

/*
 * Adds a status callback. There are two places; a third callback is dropped, and none can be removed. The same function
 * may be added twice and is then called twice. A null callback is only logged. Any thread.
 */
PUBSEC_API void PubSecStackRegisterCB(PFPubSecRegStatus pfCallback);

/* 1 while the platform is registered, 0 while it is not and for a number that is no platform. Any thread. */
PUBSEC_API u32 PubSecGetRegisterStatus(s32 nPlatform);

PUBSEC_C_END

#endif
