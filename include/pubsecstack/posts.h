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
 *               PUBSEC_ERR_FAILED            null record, identifier or body, or no memory for the document (nothing was
 *                                            sent), or an HTTP status that is named nowhere here (409 and 500 among
 *                                            them)
 *               PUBSEC_ERR_HEADERS           no memory for the header list; nothing was sent (PubSecPostImageFace
 *                                            goes on without one)
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

#include <pubsecstack/access.h>
#include <pubsecstack/disposition.h>
#include <pubsecstack/log_event.h>
#include <pubsecstack/picture.h>
#include <pubsecstack/results.h>
#include <pubsecstack/sensor.h>
#include <pubsecstack/video_slice.h>
#include <pubsecstack/violation.h>

PUBSEC_C_BEGIN

/* Size of a status text in the host's buffer, its terminator included. */
#define PUBSEC_STATUS_SIZE 260

/*
 * Posts a picture with everything found in it to /VIID/Images. Tells a duplicate.
 *
 * ptPicture  the picture; its objects, access records and data stand in the element of its last image information
 * pchStatus  char[PUBSEC_STATUS_SIZE] or null; receives the last "StatusString" of the answer, at most 256 characters,
 *            the rest zeros. Written only when the transfer completed
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

/* ------------------------------------------------------------------------------------------ video slices, files */

/*
 * Posts video slices with the objects recognised in them to /VIID/VideoSlices. Bounded by the 30 seconds of the connect
 * time-out alone. pchStatus as in PubSecPostImage. Returns PUBSEC_ERR_ALREADY_INIT where other posts return
 * PUBSEC_ERR_CURL_INIT for want of a transfer handle. At log level 1 and above it traces its way with numbered lines.
 */
PUBSEC_API u32 PubSecPostVideoSlice(u32 dwPlatform, const TPubSecVideoSliceObj* ptSlices, char* pchStatus);

/* Posts files with the objects recognised in them to /VIID/Files. Leaves the answer. */
PUBSEC_API u32 PubSecPostFile(u32 dwPlatform, const TPubSecVideoSliceObj* ptFiles);

/* ------------------------------------------------------------------------------------------------- binary data */

/*
 * Posts the data of an object that was announced before, to its "/Data". The identifier and the body are NUL-terminated
 * texts of the caller's, not null; the body is sent as it is. All leave the answer. Those of slices are bounded by the
 * 30 seconds of the connect time-out alone.
 */
PUBSEC_API u32 PubSecPostVideoSliceData(u32 dwPlatform, const char* pchVideoID, const char* pchBody);
PUBSEC_API u32 PubSecPostImageData(u32 dwPlatform, const char* pchImageID, const char* pchBody);
PUBSEC_API u32 PubSecPostFileData(u32 dwPlatform, const char* pchFileID, const char* pchBody);

/* The same for a slice whose data is at hand as base64: the document is made around it. */
PUBSEC_API u32 PubSecPostVideoSliceDataEx(u32 dwPlatform, const char* pchVideoID, const char* pchBase64);

/*
 * Streams a local file, from dwPosition to its end, as an octet stream to any URL. One upload runs at a time in a
 * process: two would keep each other's watchdog quiet. Sizes and positions are 32 bits wide: a file of 4 GiB or more
 * cannot be sent, and from a position beyond the end nothing is ever complete. Server certificates are verified here,
 * unlike in all other operations. The upload pauses a millisecond after every block, on purpose, and writes its own log
 * lines whatever the log level. Leaves the answer.
 *
 * pchUrl   used as it is
 * pchPath  file to read; null counts as a file that cannot be opened
 *
 * Returns PUBSEC_OK for HTTP 200 and 201, and when no transfer handle can be had; PUBSEC_ERR_UPLOAD_REFUSED for any
 * other status; PUBSEC_ERR_CURL_INIT; PUBSEC_ERR_TRANSFER when the transfer failed or no block was taken from the file
 * for 30 seconds, the wait for the answer included (ask PubSecGetTransDataInf where to go on); PUBSEC_ERR_FILE_OPEN,
 * also for a file that has no size, such as a pipe. Blocks for as long as the server keeps reading.
 */
PUBSEC_API u32 PubSecCurlUpLoadFile(const char* pchUrl, const char* pchPath, u32 dwPosition);

/* How much of a file a server holds. */
typedef struct
{
    char achFileHash[128]; /* "FileHash", cut at 127 characters */
    u32 dwFileLength;      /* "FileLength", bytes */
} TPubSecTransDataInf;

/*
 * Asks a URL for the state of a transfer (GET), so that an upload can go on where it was cut.
 *
 * nPlatform    0 or 1; must be registered
 * ptInfo       members that the answer lacks keep their values; null stores nothing
 * pchUrl       used as it is
 * pdwHttpCode  receives the HTTP status; may be null
 *
 * Returns PUBSEC_OK for HTTP 200 to 299 and for 404, which means that the server holds nothing, whether the answer can
 * be read or not; PUBSEC_ERR_HEADER_OPTION when the request's header cannot be set; else as a post.
 */
PUBSEC_API u32 PubSecGetTransDataInf(s32 nPlatform, TPubSecTransDataInf* ptInfo, const char* pchUrl, u32* pdwHttpCode);

/*
 * The device identifier of a platform's configuration in force, for requests of the host's own. pchDeviceID has room
 * for 21 characters. Returns PUBSEC_OK, or PUBSEC_ERR_PARAM for a number that is no platform or a null pointer. Does
 * not block.
 */
PUBSEC_API u32 PubSecStackGetUploadPartParam(u16 wPlatform, char* pchDeviceID);

/* --------------------------------------------------------- violations, access, sensors, dispositions, log events */

/* All of these leave the answer. */

/* /VIID/IllegalRecords: as many records in a row as the first one's dwIllegalRecordNum says, without sub-images. */
PUBSEC_API u32 PubSecPostIllRecd(u32 dwPlatform, const TPubSecIllegalRecordInfo* ptRecords);

/* /VIID/IllegalRecords: dwNum records in a row, with their sub-images. */
PUBSEC_API u32 PubSecPostIllRecdEx(u32 dwPlatform, u32 dwNum, const TPubSecIllegalRecordInfo* ptRecords);

/* /VIID/NonMotorIllegalRecords: wNum records in a row, with their sub-images. */
PUBSEC_API u32 PubSecPostNonMotorIllRecd(u32 dwPlatform, u16 wNum, const TPubSecNonMotorIllegalRecordInfo* ptRecords);

/*
 * Access records, to a URL of the host's: one, or as many in a row as the first one's dwRecordNum says. The platform
 * gives the registration and the device identity alone. A null URL fails as PUBSEC_ERR_TRANSFER.
 */
PUBSEC_API u32 PubSecPostAccRecInf(u32 dwPlatform, const TPubSecAccessRecordInfo* ptRecord, const char* pchUrl);
PUBSEC_API u32 PubSecPostAccRecInfList(u32 dwPlatform, const TPubSecAccessRecordInfo* ptRecords, const char* pchUrl);

/* Sensor reports. */
PUBSEC_API u32 PubSecPostGpsInfo(u32 dwPlatform, const TPubSecGpsInfo* ptGps); /* /VIID/GPSDatas */
PUBSEC_API u32 PubSecPostWifiDeviceMSG(u32 dwPlatform,
                                       const TPubSecWifiData* ptWifi);           /* /VIID/WifiDetector/WifiDatas */
PUBSEC_API u32 PubSecPostRFIDMSG(u32 dwPlatform, const TPubSecRFIDData* ptRfid); /* /VIID/RFIDDatas */

/*
 * /VIID/DispositionNotifications. Returns PUBSEC_ERR_PARAM for a null list and a number that is no platform, before the
 * registration is looked at; PUBSEC_ERR_FAILED for a list that makes no document (documents.h).
 */
PUBSEC_API u32 PubSecPostDispositionNotification(u32 dwPlatform, const TPubsecDispositionNotificationList* ptList);

/*
 * Posts a log event to "/log/event" of a collector, by plain HTTP, registered or not, with platform 0's device
 * identity.
 *
 * pchHost  address or name of the collector, without a scheme; not null
 * dwPort   0 leaves the port out of the URL
 */
PUBSEC_API u32 PubSecPosLogWriteMSG(const TPubSecLogInfo* ptLog, const char* pchHost, u32 dwPort);

PUBSEC_C_END

#endif
