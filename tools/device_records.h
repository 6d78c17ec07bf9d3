/* SPDX-License-Identifier: Apache-2.0 */
/* What the device reports, made with the library's helpers. */
#pragma once

#include <string>

#include <pubsecstack/pubsecstack.h>

#include "device_options.h"
#include "viewlib/picture_size.h"

namespace device
{

struct Picture
{
    std::string path;
    std::string base64;
    viewlib::PictureSize size;
    u32 bytes = 0;
    char hash[PUBSEC_FILE_HASH_SIZE] = {};
};

/* Throws UsageError when the file is not what the options promise. */
Picture loadPicture(const Options& options);

/* The identifiers and times that the records of one picture share. */
struct Identity
{
    char imageId[PUBSEC_OBJECT_ID_SIZE];
    char faceId[PUBSEC_IMAGE_CNT_ID_SIZE];
    char shotTime[PUBSEC_DATE_TIME_SIZE];
    char entryTime[PUBSEC_DATE_TIME_SIZE];
};

Identity makeIdentity(const Options& options);

TPubSecImageObjInfo imageRecord(const Options& options, const Picture& picture, const Identity& identity);

/* The whole picture, as the scene that the face was seen in. Points into the picture. */
TPubSecSubImageInfo subImageRecord(const Options& options, Picture& picture, const Identity& identity);

/* Points to the sub-image. */
TPubSecFaceObjInfo faceRecord(const Options& options, const Identity& identity, TPubSecSubImageInfo& subImage);

} // namespace device
