/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_POST_FILE_UPLOAD_H
#define PUBSEC_POST_FILE_UPLOAD_H

#include <curl/curl.h>

#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/* The tick at which the running upload last made progress; one for the process, so one upload runs at a time. */
extern u32 g_ntick;

/* libcurl's read callback over a FILE: the next block, then a short sleep. */
size_t read_callback(char* pchDest, size_t size, size_t nmemb, void* pvFile);

/* libcurl's progress callback: 1, which ends the transfer, once no block was read for 30 seconds. */
int ProcCBEx(void* pvContext, curl_off_t downTotal, curl_off_t downNow, curl_off_t upTotal, curl_off_t upNow);

PUBSEC_C_END

#endif
