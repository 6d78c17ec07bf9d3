/* SPDX-License-Identifier: Apache-2.0 */
/* Posts of images and of the objects found in them. */
#include <pubsecstack/posts.h>

#include "objects/documents.h"
#include "post/post_procedure.h"

namespace
{

/* The document of one kind of object, as a description names its encoder. */
template <typename Record, char* (*Encode)(const Record*, u32)> char* ObjectList(const TPubSecPost* ptPost)
{
    return Encode(static_cast<const Record*>(ptPost->pvRecords), ptPost->dwNum);
}

template <char* (*Encode)(const TPubSecIntelliPicObj*)> char* Pictures(const TPubSecPost* ptPost)
{
    return Encode(static_cast<const TPubSecIntelliPicObj*>(ptPost->pvRecords));
}

char* SingleImage(const TPubSecPost* ptPost)
{
    return _PubSecImageSingleJson(static_cast<TPubSecImageObjInfo* const*>(ptPost->pvRecords));
}

constexpr const char* c_pchEasyInit = "curl_easy_init() failed";

constexpr TPubSecPostKind c_tImage = {"PubSecPostImage",
                                      PUBSEC_POST_READS_ANSWER,
                                      "/VIID/Images",
                                      Pictures<_PubSecImageGatherJSON>,
                                      "_PubSecImageGatherJSON failed.",
                                      c_pchEasyInit,
                                      PUBSEC_ERR_CURL_INIT,
                                      _PubSecHttpFillCurlHeadMsgInfoex,
                                      PUBSEC_ERR_BAD_REQUEST};

constexpr TPubSecPostKind c_tImageEX = {"PubSecPostImageEX",
                                        0,
                                        "/VIID/Images",
                                        Pictures<_PubSecImageGatherJSONEX>,
                                        nullptr,
                                        c_pchEasyInit,
                                        PUBSEC_ERR_CURL_INIT,
                                        _PubSecHttpFillCurlHeadMsgInfoex,
                                        PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tImageSingle = {
    "PubSecPostImageSingle", PUBSEC_POST_READS_ANSWER,         "/VIID/Images",    SingleImage, nullptr, c_pchEasyInit,
    PUBSEC_ERR_CURL_INIT,    _PubSecHttpFillCurlHeadMsgInfoex, PUBSEC_ERR_REFUSED};

/* Alone in going on when there is no memory for header lines. */
constexpr TPubSecPostKind c_tFace = {"PubSecPostImageFace",
                                     PUBSEC_POST_READS_ANSWER | PUBSEC_POST_EMPTY_HEADERS_OK,
                                     "/VIID/Faces",
                                     ObjectList<TPubSecFaceObjInfo, _PubSecImageFaceJSON>,
                                     nullptr,
                                     c_pchEasyInit,
                                     PUBSEC_ERR_CURL_INIT,
                                     _PubSecHttpFillCurlHeadMsgInfoex,
                                     PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tPerson = {"PubSecPostImagePerson",
                                       PUBSEC_POST_READS_ANSWER,
                                       "/VIID/Persons",
                                       ObjectList<TPubSecPersonnelObjInfo, _PubSecImagePersonJSON>,
                                       nullptr,
                                       c_pchEasyInit,
                                       PUBSEC_ERR_CURL_INIT,
                                       _PubSecHttpFillCurlHeadMsgInfoex,
                                       PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tMotorVehicle = {"PubSecPostImageMotorVehicle",
                                             PUBSEC_POST_READS_ANSWER,
                                             "/VIID/MotorVehicles",
                                             ObjectList<TPubSecMotorVehicleObjInfo, _PubSecImageMotorVehicleJSON>,
                                             nullptr,
                                             c_pchEasyInit,
                                             PUBSEC_ERR_CURL_INIT,
                                             _PubSecHttpFillCurlHeadMsgInfoex,
                                             PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tNonMotVeh = {"PubSecPostImageNonMotVeh",
                                          PUBSEC_POST_READS_ANSWER,
                                          "/VIID/NonMotorVehicles",
                                          ObjectList<TPubSecNonMotorVehicleObjInfo, _PubSecImageNonMotorVehicleJSON>,
                                          nullptr,
                                          c_pchEasyInit,
                                          PUBSEC_ERR_CURL_INIT,
                                          _PubSecHttpFillCurlHeadMsgInfoex,
                                          PUBSEC_ERR_BAD_REQUEST};

constexpr TPubSecPostKind c_tThing = {"PubSecPostImageThing",
                                      PUBSEC_POST_READS_ANSWER,
                                      "/VIID/Things",
                                      ObjectList<TPubSecThingObjInfo, _PubSecImageThingJSON>,
                                      nullptr,
                                      c_pchEasyInit,
                                      PUBSEC_ERR_CURL_INIT,
                                      _PubSecHttpFillCurlHeadMsgInfoex,
                                      PUBSEC_ERR_BAD_REQUEST};

constexpr TPubSecPostKind c_tScene = {"PubSecPostImageScene",
                                      PUBSEC_POST_READS_ANSWER,
                                      "/VIID/Scenes",
                                      ObjectList<TPubSecSceneObjInfo, _PubSecImageSceneJSON>,
                                      nullptr,
                                      c_pchEasyInit,
                                      PUBSEC_ERR_CURL_INIT,
                                      _PubSecHttpFillCurlHeadMsgInfoex,
                                      PUBSEC_ERR_BAD_REQUEST};

u32 PostRecords(const TPubSecPostKind& tKind, u32 dwPlatform, const void* pvRecords, u32 dwNum,
                char* pchStatus = nullptr)
{
    const TPubSecPost tPost = {&tKind, dwPlatform, pvRecords, dwNum, nullptr, nullptr, pchStatus};
    return PubSecPostRun(&tPost);
}

} // namespace

u32 PubSecPostImage(u32 dwPlatform, const TPubSecIntelliPicObj* ptPicture, char* pchStatus)
{
    return PostRecords(c_tImage, dwPlatform, ptPicture, 0, pchStatus);
}

u32 PubSecPostImageEX(u32 dwPlatform, const TPubSecIntelliPicObj* ptPictures, u32)
{
    return PostRecords(c_tImageEX, dwPlatform, ptPictures, 0);
}

u32 PubSecPostImageSingle(u32 dwPlatform, TPubSecImageObjInfo* const* pptImage)
{
    return PostRecords(c_tImageSingle, dwPlatform, pptImage, 0);
}

u32 PubSecPostImageFace(u32 dwPlatform, const TPubSecFaceObjInfo* ptFaces, u32 dwNum)
{
    return PostRecords(c_tFace, dwPlatform, ptFaces, dwNum);
}

u32 PubSecPostImagePerson(u32 dwPlatform, const TPubSecPersonnelObjInfo* ptPersons, u32 dwNum)
{
    return PostRecords(c_tPerson, dwPlatform, ptPersons, dwNum);
}

u32 PubSecPostImageMotorVehicle(u32 dwPlatform, const TPubSecMotorVehicleObjInfo* ptVehicles, u32 dwNum)
{
    return PostRecords(c_tMotorVehicle, dwPlatform, ptVehicles, dwNum);
}

u32 PubSecPostImageNonMotVeh(u32 dwPlatform, const TPubSecNonMotorVehicleObjInfo* ptVehicles, u32 dwNum)
{
    return PostRecords(c_tNonMotVeh, dwPlatform, ptVehicles, dwNum);
}

u32 PubSecPostImageThing(u32 dwPlatform, const TPubSecThingObjInfo* ptThings, u32 dwNum)
{
    return PostRecords(c_tThing, dwPlatform, ptThings, dwNum);
}

u32 PubSecPostImageScene(u32 dwPlatform, const TPubSecSceneObjInfo* ptScenes, u32 dwNum)
{
    return PostRecords(c_tScene, dwPlatform, ptScenes, dwNum);
}
