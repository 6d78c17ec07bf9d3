/* SPDX-License-Identifier: Apache-2.0 */
/* Posts of an object's binary data as text, to the "/Data" below the object. */
#include <pubsecstack/posts.h>

#include "core/log.h"
#include "objects/documents.h"
#include "post/post_procedure.h"

namespace
{

constexpr const char* c_pchSlices = "/VIID/VideoSlices/";

/* Wraps the caller's base64 text into a document. */
char* VideoData(const TPubSecPost* ptPost)
{
    const char* pchName = ptPost->ptKind->pchName;
    const char* pchBase64 = static_cast<const char*>(ptPost->pvRecords);
    char* pchDocument = _PubSecVideoDataJSON(pchBase64);
    if (pchDocument != nullptr)
    {
        PUBSEC_DBG_AS(pchName, "ptVideoSliceDataBase64 len=%d.", static_cast<s32>(AppStrlen(pchBase64)));
        PUBSEC_DBG_AS(pchName, "ptBodyBuf len=%d.", static_cast<s32>(AppStrlen(pchDocument)));
    }
    return pchDocument;
}

constexpr TPubSecPostKind c_tVideoSliceData = {"PubSecPostVideoSliceData",
                                               PUBSEC_POST_DATA | PUBSEC_POST_NO_TIMEOUT,
                                               c_pchSlices,
                                               nullptr,
                                               nullptr,
                                               PUBSEC_EASY_INIT_FAILED,
                                               PUBSEC_ERR_CURL_INIT,
                                               _PubSecHttpFillCurlHeadMsgInfoex,
                                               PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tVideoSliceDataEx = {"PubSecPostVideoSliceDataEx",
                                                 PUBSEC_POST_DATA | PUBSEC_POST_NO_TIMEOUT,
                                                 c_pchSlices,
                                                 VideoData,
                                                 "_PubSecVideoDataJSON failed.",
                                                 PUBSEC_EASY_INIT_FAILED,
                                                 PUBSEC_ERR_CURL_INIT,
                                                 _PubSecHttpFillCurlHeadMsgInfoex,
                                                 PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tImageData = {"PubSecPostImageData",
                                          PUBSEC_POST_DATA,
                                          "/VIID/Images/",
                                          nullptr,
                                          nullptr,
                                          PUBSEC_EASY_INIT_FAILED,
                                          PUBSEC_ERR_CURL_INIT,
                                          _PubSecHttpFillCurlHeadMsgInfoex,
                                          PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tFileData = {
    "PubSecPostFileData",    PUBSEC_POST_DATA,     "/VIID/Files/",         nullptr,           nullptr,
    PUBSEC_EASY_INIT_FAILED, PUBSEC_ERR_CURL_INIT, PubSecFillPlainHeaders, PUBSEC_ERR_REFUSED};

u32 PostBody(const TPubSecPostKind& tKind, u32 dwPlatform, const char* pchId, const char* pchBody)
{
    const TPubSecPost tPost = {&tKind, dwPlatform, nullptr, 0, pchBody, nullptr, pchId, nullptr};
    return PubSecPostRun(&tPost);
}

} // namespace

u32 PubSecPostVideoSliceData(u32 dwPlatform, const char* pchVideoID, const char* pchBody)
{
    return PostBody(c_tVideoSliceData, dwPlatform, pchVideoID, pchBody);
}

u32 PubSecPostVideoSliceDataEx(u32 dwPlatform, const char* pchVideoID, const char* pchBase64)
{
    const TPubSecPost tPost = {&c_tVideoSliceDataEx, dwPlatform, pchBase64, 0, nullptr, nullptr, pchVideoID, nullptr};
    return PubSecPostRun(&tPost);
}

u32 PubSecPostImageData(u32 dwPlatform, const char* pchImageID, const char* pchBody)
{
    return PostBody(c_tImageData, dwPlatform, pchImageID, pchBody);
}

u32 PubSecPostFileData(u32 dwPlatform, const char* pchFileID, const char* pchBody)
{
    return PostBody(c_tFileData, dwPlatform, pchFileID, pchBody);
}
