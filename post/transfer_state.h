/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_POST_TRANSFER_STATE_H
#define PUBSEC_POST_TRANSFER_STATE_H

#include <pubsecstack/posts.h>

PUBSEC_C_BEGIN

/* "FileLength" and "FileHash" out of an answer; what it lacks keeps its value. 1 read, 0 not. */
u32 _PubSecParseTransDataResp(const char* pchBody, TPubSecTransDataInf* ptOut);

PUBSEC_C_END

#endif
