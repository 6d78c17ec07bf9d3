/* SPDX-License-Identifier: Apache-2.0 */
/* Posts that announce video slices and files. */
#include <pubsecstack/posts.h>

#include "objects/documents.h"
#include "post/post_procedure.h"

namespace
{

/* Unbounded but for its connect time-out, traced, and with a code of its own for a missing handle. */
constexpr TPubSecPostKind c_tVideoSlice = {"PubSecPostVideoSlice",
                                           PUBSEC_POST_READS_ANSWER | PUBSEC_POST_NO_TIMEOUT | PUBSEC_POST_TRACES,
                                           "/VIID/VideoSlices",
                                           PubSecDocumentOf<TPubSecVideoSliceObj, _PubSecVideoSliceGatherJSON>,
                                           nullptr,
                                           nullptr,
                                           PUBSEC_ERR_ALREADY_INIT,
                                           _PubSecHttpFillCurlHeadMsgInfoex,
                                           PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tFile = {"PubSecPostFile",
                                     0,
                                     "/VIID/Files",
                                     PubSecDocumentOf<TPubSecVideoSliceObj, _PubSecFileGatherJSON>,
                                     nullptr,
                                     "curl_easyinit() failed",
                                     PUBSEC_ERR_CURL_INIT,
                                     _PubSecHttpFillCurlHeadMsgInfoex,
                                     PUBSEC_ERR_REFUSED};

} // namespace

u32 PubSecPostVideoSlice(u32 dwPlatform, const TPubSecVideoSliceObj* ptSlices, char* pchStatus)
{
    return PubSecPostRecords(c_tVideoSlice, dwPlatform, ptSlices, 0, pchStatus);
}

u32 PubSecPostFile(u32 dwPlatform, const TPubSecVideoSliceObj* ptFiles)
{
    return PubSecPostRecords(c_tFile, dwPlatform, ptFiles);
}
