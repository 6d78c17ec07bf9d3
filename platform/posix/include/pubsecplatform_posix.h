/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the POSIX platform offers to the program beside the host interface of pubsecplatform.h. C linkage; every
 * function may be called from any thread, before main too. Results are 0 for success unless a function says otherwise.
 */
#ifndef PUBSECPLATFORM_POSIX_H
#define PUBSECPLATFORM_POSIX_H

#include <stdio.h>

#include <pubsecplatform.h>

PUBSEC_C_BEGIN

/* --------------------------------------------------------------------------------------------- tasks and timers */

/*
 * Ends every task: no further event or timer is run, queued ones are dropped, and the call returns when the handlers
 * that are running have returned. All task, manager and timer handles are void afterwards (using one is an error, not a
 * crash); new ones can be made. Call PubSecStackUnInit first, else the register loop never returns. That loop and the
 * timer handlers may be inside an HTTP exchange, so the call can take as long as their time-outs, about a minute.
 * Fails, and does nothing, when called from a task's handler or while another thread is in it.
 */
PUBSEC_API u32 PosixPlatformStop(void);

/* ---------------------------------------------------------------------------------------------------- log sink */

/* Longest log line in bytes, its end included. What is longer is cut and ends in a mark that tells its full length. */
#define POSIX_PLATFORM_LOG_LINE_SIZE 4096u

/* Takes one whole log line: dwLength bytes and a NUL, the line end included when the message had one. */
typedef void (*PFPosixPlatformLog)(void* pvContext, const char* pchLine, size_t dwLength);

/*
 * Sends log lines to a stream, each by one write followed by a flush; null is the standard error, where they go at
 * start. A thread may still be writing a line to the former stream when the call returns: don't close that at once.
 */
PUBSEC_API void PosixPlatformSetLogFile(FILE* ptFile);

/*
 * Sends log lines to a function; null goes back to the standard error. It is called on the thread that logs, without a
 * lock, from several threads at once, and may log itself. The former one may still be running when the call returns.
 */
PUBSEC_API void PosixPlatformSetLogCallback(PFPosixPlatformLog pfLog, void* pvContext);

/* -------------------------------------------------------------------------------------------------------- pool */

/*
 * Blocks, and bytes in them, given out by AppMemPoolMallocEx and not given back by AppMemPoolFreeEx or NvrSrvFree.
 * The pool is the process heap: a block made by malloc and given back here counts -1, and one released by free() can't
 * be seen and stays counted. Bytes are those that the heap set aside, which may be some more than were asked for.
 */
PUBSEC_API int64_t PosixPlatformPoolBlocks(void);
PUBSEC_API int64_t PosixPlatformPoolBytes(void);

/* ----------------------------------------------------------------------------------------------------- console */

/* Longest command line in bytes, without its end. */
#define POSIX_PLATFORM_COMMAND_LINE_SIZE 255u

/*
 * Runs one command line, for example "pbsklog 2", on the calling thread and puts the answer into pchReply, cut to size
 * and terminated: "pbsklog: 2", what the command returned; or the reason why it wasn't run. The first number after the
 * name is the argument, the rest is ignored. "help" lists the commands; an empty line does nothing. Returns 0 when the
 * line was run. pchReply may be null when size is 0.
 */
PUBSEC_API u32 PosixPlatformConsoleExecute(const char* pchLine, char* pchReply, size_t size);

/*
 * Starts a thread that runs the lines it reads from nInput and writes a line of answer to each to nOutput (-1 for
 * none). It ends at the end of the input: open a FIFO for reading and writing to keep it after its writers have gone.
 * The descriptors stay the caller's and are not closed. Fails when a console is running.
 */
PUBSEC_API u32 PosixPlatformConsoleStart(int nInput, int nOutput);

/*
 * Ends the console's thread and waits for it, a command that it is running included. Harmless when none is running;
 * fails when called from a command that this thread runs.
 */
PUBSEC_API u32 PosixPlatformConsoleStop(void);

/* ----------------------------------------------------------------------------------------------- system service */

/*
 * The device's clock: the machine's clock moved by what NvrSysSetSystemTime has set. Milliseconds since 1970-01-01
 * 00:00:00 UTC, and as broken down in the device's time zone, which is that of the process (TZ, /etc/localtime).
 */
PUBSEC_API int64_t PosixPlatformDeviceClockMs(void);
PUBSEC_API void PosixPlatformDeviceTime(TNvrSysTime* ptTime);

/*
 * With a value other than 0, NvrSysSetSystemTime sets the clock of the machine, for which the process needs the right,
 * and fails when it can't. With 0, as at start, the machine's clock is never touched.
 */
PUBSEC_API void PosixPlatformAllowMachineClock(s32 nAllow);

PUBSEC_C_END

#endif
