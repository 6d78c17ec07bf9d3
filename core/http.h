/* SPDX-License-Identifier: Apache-2.0 */
/* The pieces that every HTTP exchange is made of. */
#ifndef PUBSEC_CORE_HTTP_H
#define PUBSEC_CORE_HTTP_H

#include <curl/curl.h>

#include <pubsecplatform.h>
#include <pubsecstack/config.h>
#include <pubsecstack/session.h>

struct cJSON;

/* What _PubSecCheckIpAddr finds. Callers treat "none" as IPv4: host names go into the URL as they are. */
constexpr s32 PUBSEC_ADDR_NONE = 0;
constexpr s32 PUBSEC_ADDR_IPV4 = 1;
constexpr s32 PUBSEC_ADDR_IPV6 = 2;

constexpr u32 PUBSEC_ADDR_SIZE = 64;         /* an address with its terminator */
constexpr u32 PUBSEC_STATUS_TEXT_SIZE = 260; /* a server's "StatusString" in the caller's buffer ... */
constexpr u32 PUBSEC_STATUS_TEXT_LEN = 256;  /* ... and its longest text */
constexpr u32 PUBSEC_CODE_TEXT_SIZE = 4;     /* a keepalive's status code as text */

/* An answer's body as it comes in: heap text that stays terminated, and its length. */
typedef struct
{
    char* pchBuf;
    size_t dwLen;
} TPubSecRespBuf;

/* A request's body as it goes out: the next byte and how many are left. */
typedef struct
{
    const char* pchData;
    size_t dwLeft;
} TPubSecReqBody;

PUBSEC_C_BEGIN

/*
 * Header builders. Each appends the five fixed lines, then its own; nothing is appended twice for want of memory. The
 * list stays empty when there is no memory at all. The handle is not used.
 */
void _PubSecHttpFillCurlHeadMsgInfo(struct curl_slist** pptList, CURL* ptHandle, u32 dwPlatform, const char* pchToken);
void _PubSecHttpFillCurlHeadMsgInfoex(struct curl_slist** pptList, CURL* ptHandle, u32 dwPlatform);
void _PubSecHttpFillCurlHeadMsgInfoExt1(struct curl_slist** pptList, CURL* ptHandle, const char* pchDeviceID);

/* libcurl's write callback: appends to the sink. An answer may take PUBSEC_ANSWER_MAX bytes. */
size_t _PubSecWriteCB(void* pvData, size_t size, size_t nmemb, TPubSecRespBuf* ptSink);

/* libcurl's read callback: gives what is left of the body. */
size_t PubSecReadCB(char* pchDest, size_t size, size_t nmemb, TPubSecReqBody* ptSrc);

/* 0 not an address, 1 IPv4, 2 IPv6. */
s32 _PubSecCheckIpAddr(const char* pchText);

/* Splits a redirect target; pchIp is char[64]. A host or port that it lacks leaves its variable. 1 found, 0 not. */
u32 PubSecStackGetLocation(const char* pchUrl, char* pchIp, u32* pdwPort);

/* The last "StatusString" of a status list into pchOut, char[260]. 1 read, 0 not. */
u32 _PubSecParseSerData(const char* pchText, char* pchOut);

/* The status code of a keepalive's answer into pchOut, char[4]. 1 read, 0 not. */
u32 _PubSecKeepAliveParseJson(const char* pchText, char* pchOut);

/* A diagnostic for a bench with a test server; nothing calls it. Leaves its handle behind. */
void _SetPubSecHttps(void);

PUBSEC_C_END

/* Larger answers count as memory exhausted. */
constexpr size_t PUBSEC_ANSWER_MAX = 16u << 20;

/* Parses an answer, complaining in the function's name; null when there is none or it is not JSON. */
struct cJSON* PubSecParseAnswer(const char* pchText, const char* pchFunction);

/* The target without user information. */
void PubSecStripUserInfo(const char* pchUrl, char* pchOut, u32 dwSize);

/*
 * Who an exchange addresses and as whom: the fields of a configuration as terminated texts. Made once per exchange, so
 * all of it comes from one configuration.
 */
struct TPubSecTarget
{
    char achDeviceID[21];
    char achServerIP[PUBSEC_ADDR_SIZE + 1];
    u32 dwServerPort;
    u32 dwHttpsEnable;
    char achUserName[129];
    char achPassword[129];
};

void PubSecTargetOf(const TPubSecRegParam* ptParam, TPubSecTarget* ptTarget);
void PubSecTargetOfInfo(const TPubSecPlatRegInfo* ptInfo, TPubSecTarget* ptTarget);

/* Target of the platform's record in force; returns the version of the record. */
u32 PubSecTargetInForce(u32 dwPlatform, TPubSecTarget* ptTarget);

/* scheme://host:port/path, cut at the buffer's size less one. */
void PubSecFormatUrl(char* pchUrl, u32 dwSize, const TPubSecTarget* ptTarget, const char* pchPath);

/* The same with an IPv6 address put in brackets. */
void PubSecFormatBracketedUrl(char* pchUrl, u32 dwSize, const TPubSecTarget* ptTarget, const char* pchPath);

/* "[text]" for an IPv6 address, the text itself otherwise. */
void PubSecBracketHost(const char* pchAddress, char* pchOut, u32 dwSize);

/* curl_global_init for any number of threads at once. */
CURLcode PubSecCurlGlobalInit();

/* Sets one option; a refusal is only logged, in the function's name. */
template <typename Value>
void PubSecSetOption(CURL* ptHandle, CURLoption eOption, Value tValue, const char* pchFunction);

enum EPubSecMethod : u32
{
    PUBSEC_POST,
    PUBSEC_GET,
};

/* Header list, resolver, URL, method, TLS checks off, silence, time-outs: what all exchanges begin with, in order. */
void PubSecSetBaseOptions(CURL* ptHandle, struct curl_slist* ptHeaders, const char* pchUrl, EPubSecMethod eMethod,
                          bool bTimeout, const char* pchFunction);

/* Where the body comes from and the answer goes. */
void PubSecSetReader(CURL* ptHandle, TPubSecReqBody* ptBody, const char* pchFunction);
void PubSecSetWriter(CURL* ptHandle, TPubSecRespBuf* ptSink, const char* pchFunction);

/* A sink of one byte, holding the empty text. */
void PubSecSinkOpen(TPubSecRespBuf* ptSink);
void PubSecSinkClose(TPubSecRespBuf* ptSink);

/* A transfer that the write callback ended counts as completed. */
inline bool PubSecIsCompleted(CURLcode eResult)
{
    return eResult == CURLE_OK || eResult == CURLE_WRITE_ERROR;
}

s32 PubSecHttpStatus(CURL* ptHandle);

/* The two statuses that the session takes for success. */
inline bool PubSecIsAccepted(s32 nStatus)
{
    return nStatus == 200 || nStatus == 201;
}

#include "core/log.h"

template <typename Value>
void PubSecSetOption(CURL* ptHandle, CURLoption eOption, Value tValue, const char* pchFunction)
{
    if (curl_easy_setopt(ptHandle, eOption, tValue) != CURLE_OK)
    {
        PUBSEC_ERR_AS(pchFunction, "curl_easy_setopt fault:");
    }
}

#endif
