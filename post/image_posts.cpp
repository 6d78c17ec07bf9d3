/* SPDX-License-Identifier: Apache-2.0 */
/* Posts of images and of the objects found in them. */
#include <pubsecstack/posts.h>

#include "objects/documents.h"
#include "post/post_procedure.h"

namespace
{

char* SingleImage(const TPubSecPost* ptPost)
{
    return _PubSecImageSingleJson(static_cast<TPubSecImageObjInfo* const*>(ptPost->pvRecords));
}

constexpr TPubSecPostKind c_tImage = {"PubSecPostImage",
                                      PUBSEC_POST_READS_ANSWER,
                                      "/VIID/Images",
                                      PubSecDocumentOf<TPubSecIntelliPicObj, _PubSecImageGatherJSON>,
                                      "_PubSecImageGatherJSON failed.",
                                      PUBSEC_EASY_INIT_FAILED,
                                      PUBSEC_ERR_CURL_INIT,
                                      _PubSecHttpFillCurlHeadMsgInfoex,
                                      PUBSEC_ERR_BAD_REQUEST};

constexpr TPubSecPostKind c_tImageEX = {"PubSecPostImageEX",
                                        0,
                                        "/VIID/Images",
                                        PubSecDocumentOf<TPubSecIntelliPicObj, _PubSecImageGatherJSONEX>,
                                        nullptr,
                                        PUBSEC_EASY_INIT_FAILED,
                                        PUBSEC_ERR_CURL_INIT,
                                        _PubSecHttpFillCurlHeadMsgInfoex,
                                        PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tImageSingle = {"PubSecPostImageSingle",
                                            PUBSEC_POST_READS_ANSWER,
                                            "/VIID/Images",
                                            SingleImage,
                                            nullptr,
                                            PUBSEC_EASY_INIT_FAILED,
                                            PUBSEC_ERR_CURL_INIT,
                                            _PubSecHttpFillCurlHeadMsgInfoex,
                                            PUBSEC_ERR_REFUSED};

/* Alone in going on when there is no memory for header lines. */
constexpr TPubSecPostKind c_tFace = {"PubSecPostImageFace",
                                     PUBSEC_POST_READS_ANSWER | PUBSEC_POST_EMPTY_HEADERS_OK,
                                     "/VIID/Faces",
                                     PubSecListOf<TPubSecFaceObjInfo, _PubSecImageFaceJSON>,
                                     nullptr,
                                     PUBSEC_EASY_INIT_FAILED,
                                     PUBSEC_ERR_CURL_INIT,
                                     _PubSecHttpFillCurlHeadMsgInfoex,
                                     PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tPerson = {"PubSecPostImagePerson",
                                       PUBSEC_POST_READS_ANSWER,
                                       "/VIID/Persons",
                                       PubSecListOf<TPubSecPersonnelObjInfo, _PubSecImagePersonJSON>,
                                       nullptr,
                                       PUBSEC_EASY_INIT_FAILED,
                                       PUBSEC_ERR_CURL_INIT,
                                       _PubSecHttpFillCurlHeadMsgInfoex,
                                       PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tMotorVehicle = {"PubSecPostImageMotorVehicle",
                                             PUBSEC_POST_READS_ANSWER,
                                             "/VIID/MotorVehicles",
                                             PubSecListOf<TPubSecMotorVehicleObjInfo, _PubSecImageMotorVehicleJSON>,
                                             nullptr,
                                             PUBSEC_EASY_INIT_FAILED,
                                             PUBSEC_ERR_CURL_INIT,
                                             _PubSecHttpFillCurlHeadMsgInfoex,
                                             PUBSEC_ERR_REFUSED};

constexpr TPubSecPostKind c_tNonMotVeh = {"PubSecPostImageNonMotVeh",
                                          PUBSEC_POST_READS_ANSWER,
                                          "/VIID/NonMotorVehicles",
                                          PubSecListOf<TPubSecNonMotorVehicleObjInfo, _PubSecImageNonMotorVehicleJSON>,
                                          nullptr,
                                          PUBSEC_EASY_INIT_FAILED,
                                          PUBSEC_ERR_CURL_INIT,
                                          _PubSecHttpFillCurlHeadMsgInfoex,
                                          PUBSEC_ERR_BAD_REQUEST};

constexpr TPubSecPostKind c_tThing = {"PubSecPostImageThing",
                                      PUBSEC_POST_READS_ANSWER,
                                      "/VIID/Things",
                                      PubSecListOf<TPubSecThingObjInfo, _PubSecImageThingJSON>,
                                      nullptr,
                                      PUBSEC_EASY_INIT_FAILED,
                                      PUBSEC_ERR_CURL_INIT,
                                      _PubSecHttpFillCurlHeadMsgInfoex,
                                      PUBSEC_ERR_BAD_REQUEST};

constexpr TPubSecPostKind c_tScene = {"PubSecPostImageScene",
                                      PUBSEC_POST_READS_ANSWER,
                                      "/VIID/Scenes",
                                      PubSecListOf<TPubSecSceneObjInfo, _PubSecImageSceneJSON>,
                                      nullptr,
                                      PUBSEC_EASY_INIT_FAILED,
                                      PUBSEC_ERR_CURL_INIT,
                                      _PubSecHttpFillCurlHeadMsgInfoex,
                                      PUBSEC_ERR_BAD_REQUEST};

} // namespace

u32 PubSecPostImage(u32 dwPlatform, const TPubSecIntelliPicObj* ptPicture, char* pchStatus)
{
    return PubSecPostRecords(c_tImage, dwPlatform, ptPicture, 0, pchStatus);
}

u32 PubSecPostImageEX(u32 dwPlatform, const TPubSecIntelliPicObj* ptPictures, u32)
{
    return PubSecPostRecords(c_tImageEX, dwPlatform, ptPictures);
}

u32 PubSecPostImageSingle(u32 dwPlatform, TPubSecImageObjInfo* const* pptImage)
{
    return PubSecPostRecords(c_tImageSingle, dwPlatform, pptImage);
}

u32 PubSecPostImageFace(u32 dwPlatform, const TPubSecFaceObjInfo* ptFaces, u32 dwNum)
{
    return PubSecPostRecords(c_tFace, dwPlatform, ptFaces, dwNum);
}

u32 PubSecPostImagePerson(u32 dwPlatform, const TPubSecPersonnelObjInfo* ptPersons, u32 dwNum)
{
    return PubSecPostRecords(c_tPerson, dwPlatform, ptPersons, dwNum);
}

u32 PubSecPostImageMotorVehicle(u32 dwPlatform, const TPubSecMotorVehicleObjInfo* ptVehicles, u32 dwNum)
{
    return PubSecPostRecords(c_tMotorVehicle, dwPlatform, ptVehicles, dwNum);
}

u32 PubSecPostImageNonMotVeh(u32 dwPlatform, const TPubSecNonMotorVehicleObjInfo* ptVehicles, u32 dwNum)
{
    return PubSecPostRecords(c_tNonMotVeh, dwPlatform, ptVehicles, dwNum);
}

u32 PubSecPostImageThing(u32 dwPlatform, const TPubSecThingObjInfo* ptThings, u32 dwNum)
{
    return PubSecPostRecords(c_tThing, dwPlatform, ptThings, dwNum);
}

u32 PubSecPostImageScene(u32 dwPlatform, const TPubSecSceneObjInfo* ptScenes, u32 dwNum)
{
    return PubSecPostRecords(c_tScene, dwPlatform, ptScenes, dwNum);
}
