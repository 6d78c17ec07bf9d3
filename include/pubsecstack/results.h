/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSECSTACK_RESULTS_H
#define PUBSECSTACK_RESULTS_H

#include <pubsecstack/types.h>

/*
 * The result codes, in one list: X(name, number, meaning). Every exported operation returns one of these unless its own
 * description names another result.
 */
#define PUBSEC_RESULT_LIST(X)                                                                                          \
    X(PUBSEC_OK, 50, "success")                                                                                        \
    X(PUBSEC_ERR_FAILED, 51,                                                                                           \
      "general failure: initialisation failed, a document could not be built, an unexpected HTTP status, "             \
      "an unreadable answer")                                                                                          \
    X(PUBSEC_ERR_ALREADY_INIT, 52, "already initialised; in the video slice post: no transfer handle")                 \
    X(PUBSEC_ERR_NOT_REGISTERED, 54, "platform not registered")                                                        \
    X(PUBSEC_ERR_HEADERS, 60, "request header list could not be built")                                                \
    X(PUBSEC_ERR_BAD_REQUEST, 61, "HTTP 400 in the posts of images, non-motor vehicles, things and scenes")            \
    X(PUBSEC_ERR_UPLOAD_REFUSED, 65, "file upload answered with a status other than 200 or 201")                       \
    X(PUBSEC_ERR_REDIRECTED, 68, "HTTP 300 to 399")                                                                    \
    X(PUBSEC_ERR_REFUSED, 69,                                                                                          \
      "HTTP 400 in the other posts, or an answer saying \"document already exists\"; keepalive answered with "         \
      "status code \"10\"")                                                                                            \
    X(PUBSEC_ERR_UNAUTHORIZED, 70, "HTTP 401")                                                                         \
    X(PUBSEC_ERR_NOT_FOUND, 71, "HTTP 404")                                                                            \
    X(PUBSEC_ERR_REQUEST_TIMEOUT, 72, "HTTP 408")                                                                      \
    X(PUBSEC_ERR_SERVER, 73, "HTTP above 500")                                                                         \
    X(PUBSEC_ERR_HEADER_OPTION, 74, "transfer-data query: header option could not be set")                             \
    X(PUBSEC_ERR_CURL_INIT, 75, "libcurl global or easy initialisation failed")                                        \
    X(PUBSEC_ERR_TRANSFER, 76, "transfer failed, or an upload stopped by its stall watchdog")                          \
    X(PUBSEC_ERR_TIME_QUERY, 77, "system-time query answered with a status other than 200 or 201")                     \
    X(PUBSEC_ERR_FILE_OPEN, 79, "file to upload could not be opened")                                                  \
    X(PUBSEC_ERR_PARAM, 80,                                                                                            \
      "bad argument: null record, platform above 1, object count 0 or above 256, buffer length out of range")          \
    X(PUBSEC_ERR_NULL_RECORD, 103, "null record in the one-shot unregistration")

#define PUBSEC_RESULT_ENUM(name, number, meaning) name = number,
enum EPubSecResult
{
    PUBSEC_RESULT_LIST(PUBSEC_RESULT_ENUM)
};
#undef PUBSEC_RESULT_ENUM

/* The meaning of a result code as a constant text; "unknown result" for a number that is none. */
static inline const char* PubSecResultText(u32 dwResult)
{
#define PUBSEC_RESULT_CASE(name, number, meaning)                                                                      \
    case number:                                                                                                       \
        return meaning;
    switch (dwResult)
    {
        PUBSEC_RESULT_LIST(PUBSEC_RESULT_CASE)
    default:
        return "unknown result";
    }
#undef PUBSEC_RESULT_CASE
}

#endif
