/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Posts. Each is one blocking exchange on the calling thread, with no queue and no retry: the host decides whether to
 * post again. Any thread may post, any number at a time. The platform has to be registered. Records belong to the host
 * and are only read; nothing is kept after the call.
 *
 * Unless an operation says otherwise:
 *
 *   dwPlatform  0 or 1; a number that is no platform counts as not registered
 *   blocks      30 seconds at most
 *   returns     PUBSEC_OK                    HTTP 200 to 299
 *               PUBSEC_ERR_NOT_REGISTERED    nothing was sent; the register loop is at it, post again later
 *               PUBSEC_ERR_FAILED            null record or no memory for the document (nothing was sent), or an HTTP
 *                                            status that is named nowhere here (409 and 500 among them)
 *               PUBSEC_ERR_HEADERS           no memory for the header list; nothing was sent
 *               PUBSEC_ERR_REDIRECTED        HTTP 300 to 399; posts follow no redirects
 *               PUBSEC_ERR_REFUSED           HTTP 400: mend the record before posting it again
 *               PUBSEC_ERR_UNAUTHORIZED      HTTP 401
 *               PUBSEC_ERR_NOT_FOUND         HTTP 404
 *               PUBSEC_ERR_REQUEST_TIMEOUT   HTTP 408; post again
 *               PUBSEC_ERR_SERVER            HTTP 501 and above; post again later
 *               PUBSEC_ERR_CURL_INIT         libcurl could not be initialised; nothing was sent
 *               PUBSEC_ERR_TRANSFER          no answer: the server may or may not have the document
 *
 * Operations that "tell a duplicate" return PUBSEC_ERR_BAD_REQUEST for HTTP 400, and PUBSEC_ERR_REFUSED when the answer
 * says "document already exists": such a document counts as delivered. In the others PUBSEC_ERR_REFUSED covers both.
 *
 * Operations that "leave the answer" do not read its body; libcurl then writes it to the standard output of the
 * process.
 */
#ifndef PUBSECSTACK_POSTS_H
#define PUBSECSTACK_POSTS_H

#include <pubsecstack/picture.h>
#include <pubsecstack/results.h>

PUBSEC_C_BEGIN

/* Size of a status text in the host's buffer, its terminator included. */
#define PUBSEC_STATUS_SIZE 260

/*
 * Posts a picture with everything found in it to /VIID/Images. Tells a duplicate.
 *
 * ptPicture  the picture; its objects, access records and data stand in the element of its last image information
 * pchStatus  char[PUBSEC_STATUS_SIZE] or null; receives the last "StatusString" of the answer, at most 256 characters,
 *            the rest zeros. Not written when no exchange took place
 */
PUBSEC_API u32 PubSecPostImage(u32 dwPlatform, const TPubSecIntelliPicObj* ptPicture, char* pchStatus);

/*
 * Posts several pictures to /VIID/Images, as many as the first one's nImageNum says, each with its first image
 * information, its data and its objects, without access records. Leaves the answer. dwIgnored is accepted and ignored.
 */
PUBSEC_API u32 PubSecPostImageEX(u32 dwPlatform, const TPubSecIntelliPicObj* ptPictures, u32 dwIgnored);

/* Posts one picture's information alone to /VIID/Images; pptImage is the address of its pointer, as
 * &tPicture.ptImageInfo. */
PUBSEC_API u32 PubSecPostImageSingle(u32 dwPlatform, TPubSecImageObjInfo* const* pptImage);

/*
 * Posts of objects of one kind: dwNum records in a row, each with its sub-images. The number is not limited; none gives
 * an empty list, for which the pointer may be null.
 */
PUBSEC_API u32 PubSecPostImageFace(u32 dwPlatform, const TPubSecFaceObjInfo* ptFaces, u32 dwNum); /* /VIID/Faces */
PUBSEC_API u32 PubSecPostImagePerson(u32 dwPlatform, const TPubSecPersonnelObjInfo* ptPersons,
                                     u32 dwNum); /* /VIID/Persons */
PUBSEC_API u32 PubSecPostImageMotorVehicle(u32 dwPlatform, const TPubSecMotorVehicleObjInfo* ptVehicles,
                                           u32 dwNum); /* /VIID/MotorVehicles */
PUBSEC_API u32 PubSecPostImageNonMotVeh(u32 dwPlatform, const TPubSecNonMotorVehicleObjInfo* ptVehicles,
                                        u32 dwNum); /* /VIID/NonMotorVehicles; tells a duplicate */
PUBSEC_API u32 PubSecPostImageThing(u32 dwPlatform, const TPubSecThingObjInfo* ptThings,
                                    u32 dwNum); /* /VIID/Things; tells a duplicate */
PUBSEC_API u32 PubSecPostImageScene(u32 dwPlatform, const TPubSecSceneObjInfo* ptScenes,
                                    u32 dwNum); /* /VIID/Scenes; tells a duplicate */

PUBSEC_C_END

#endif
