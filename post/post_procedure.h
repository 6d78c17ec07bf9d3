/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The procedure that every post follows stands once; an operation is a constant description of where it departs and a
 * call. The description reads from top to bottom in the order in which the procedure comes to it.
 */
#ifndef PUBSEC_POST_POST_PROCEDURE_H
#define PUBSEC_POST_POST_PROCEDURE_H

#include "core/http.h"

struct TPubSecPost;

typedef void (*PFPubSecFillHeaders)(struct curl_slist** pptList, CURL* ptHandle, u32 dwPlatform);

/* Makes the request's document: text for cJSON_free, or null. */
typedef char* (*PFPubSecEncode)(const TPubSecPost* ptPost);

enum EPubSecPostFlag : u32
{
    PUBSEC_POST_READS_ANSWER = 1u << 0,     /* captures the answer, reads its status text, tells a duplicate by it */
    PUBSEC_POST_NO_TIMEOUT = 1u << 1,       /* bounded by the connect time-out alone */
    PUBSEC_POST_EMPTY_HEADERS_OK = 1u << 2, /* goes on without header lines */
    PUBSEC_POST_ANY_PLATFORM = 1u << 3,     /* asks for no registration */
    PUBSEC_POST_TRACES = 1u << 4,           /* writes a numbered line at each trace point */
    PUBSEC_POST_DATA = 1u << 5,             /* goes to "/Data" below the path and an identifier of the caller's */
};

/* Where an operation departs from the others. */
struct TPubSecPostKind
{
    const char* pchName;               /* the operation, as its log lines name it */
    u32 dwFlags;                       /* EPubSecPostFlag */
    const char* pchPath;               /* resource on the platform; null where the caller gives the URL */
    PFPubSecEncode pfEncode;           /* null where the caller gives the body */
    const char* pchEncodeFailed;       /* complaint about a document that could not be made; null = none */
    const char* pchEasyInitFailed;     /* complaint about a missing transfer handle; null = none */
    u32 dwEasyInitCode;                /* result then */
    PFPubSecFillHeaders pfFillHeaders; /* header builder */
    u32 dwCode400;                     /* result for HTTP 400 */
};

/* One call of an operation. */
struct TPubSecPost
{
    const TPubSecPostKind* ptKind;
    u32 dwPlatform;
    const void* pvRecords; /* what the encoder makes the document of */
    u32 dwNum;
    const char* pchBody; /* the caller's body, for operations without an encoder */
    const char* pchUrl;  /* the caller's URL, for operations without a path */
    const char* pchId;   /* whose "/Data" is posted, for operations on binary data */
    char* pchStatus;     /* char[260] for the server's status text, or null */
};

constexpr u32 PUBSEC_POST_URL_SIZE = 512;

/* A document made by one of the builders, in the form that descriptions take. */
template <typename Record, char* (*Encode)(const Record*)> char* PubSecDocumentOf(const TPubSecPost* ptPost)
{
    return Encode(static_cast<const Record*>(ptPost->pvRecords));
}

template <typename Record, char* (*Encode)(const Record*, u32)> char* PubSecListOf(const TPubSecPost* ptPost)
{
    return Encode(static_cast<const Record*>(ptPost->pvRecords), ptPost->dwNum);
}

/* The complaint about a missing transfer handle that most operations have. */
constexpr const char* PUBSEC_EASY_INIT_FAILED = "curl_easy_init() failed";

/* Carries the call out; the result is the operation's. */
u32 PubSecPostRun(const TPubSecPost* ptPost);

/* The same for the usual call: records, and for some a number of them and a place for the status text. */
u32 PubSecPostRecords(const TPubSecPostKind& tKind, u32 dwPlatform, const void* pvRecords, u32 dwNum = 0,
                      char* pchStatus = nullptr);

/* What an HTTP status means as a result. */
u32 PubSecResultOfStatus(s32 nStatus, u32 dwCode400);

/* The plain header builder without a token, in the form that descriptions take. */
void PubSecFillPlainHeaders(struct curl_slist** pptList, CURL* ptHandle, u32 dwPlatform);

#endif
