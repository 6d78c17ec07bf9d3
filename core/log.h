/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Log lines. Each goes to the host's sink when the level asks for its kind; the texts carry no line end of their own.
 * The _RAW forms add none, for the few lines that have another or none.
 */
#ifndef PUBSEC_CORE_LOG_H
#define PUBSEC_CORE_LOG_H

#include <pubsecplatform.h>

#include "core/state.h"

/* The line end travels as a last argument, so that a message may have none of its own. */
#define PUBSEC_LOG_PLACE(level, tag, function, line, format, ...)                                                      \
    do                                                                                                                 \
    {                                                                                                                  \
        if (PubSecLoad(g_ePubSecStackLogLevel) >= (level))                                                             \
        {                                                                                                              \
            TlxPrintf(1, 0, tag "%s:%d " format "%s", function, line, __VA_ARGS__);                                    \
        }                                                                                                              \
    } while (false)
#define PUBSEC_LOG_NAME(level, tag, function, format, ...)                                                             \
    do                                                                                                                 \
    {                                                                                                                  \
        if (PubSecLoad(g_ePubSecStackLogLevel) >= (level))                                                             \
        {                                                                                                              \
            TlxPrintf(1, 0, tag "%s: " format "%s", function, __VA_ARGS__);                                            \
        }                                                                                                              \
    } while (false)

#define PUBSEC_LOG_ERR(function, line, ...) PUBSEC_LOG_PLACE(1u, "[PubSecStack ERR] ", function, line, __VA_ARGS__)
#define PUBSEC_LOG_INF(function, ...) PUBSEC_LOG_NAME(2u, "[PubSecStack INF] ", function, __VA_ARGS__)
#define PUBSEC_LOG_DBG(function, ...) PUBSEC_LOG_NAME(3u, "[PubSecStack DBG] ", function, __VA_ARGS__)

#define PUBSEC_ERR(...) PUBSEC_LOG_ERR(__func__, __LINE__, __VA_ARGS__, "\n")
#define PUBSEC_INF(...) PUBSEC_LOG_INF(__func__, __VA_ARGS__, "\n")
#define PUBSEC_DBG(...) PUBSEC_LOG_DBG(__func__, __VA_ARGS__, "\n")
#define PUBSEC_ERR_RAW(...) PUBSEC_LOG_ERR(__func__, __LINE__, __VA_ARGS__, "")
#define PUBSEC_INF_RAW(...) PUBSEC_LOG_INF(__func__, __VA_ARGS__, "")

/* In the name of an operation that a shared routine works for. */
#define PUBSEC_ERR_AS(function, ...) PUBSEC_LOG_ERR(function, __LINE__, __VA_ARGS__, "\n")
#define PUBSEC_INF_AS(function, ...) PUBSEC_LOG_INF(function, __VA_ARGS__, "\n")
#define PUBSEC_DBG_AS(function, ...) PUBSEC_LOG_DBG(function, __VA_ARGS__, "\n")

/* An empty header list is complained of with the source line twice. */
#define PUBSEC_ERR_HEAD_AS(function) PUBSEC_ERR_AS(function, "### [%d] #### FillHeadMsgInfo Err!", __LINE__)

#endif
