/* SPDX-License-Identifier: Apache-2.0 */
#include "device_records.h"

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>

#include <pubsecplatform_posix.h>

namespace device
{

namespace
{

constexpr std::size_t c_largestPicture = std::size_t(16) << 20;

/* Numbers of the identifiers' codes. */
constexpr u32 c_objectIsImage = 1;
constexpr u32 c_contentIsFace = 5;

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw UsageError("--picture \"" + path + "\": " + why);
}

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        refuse(path, "cannot be read");
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void expectOk(u32 result, const char* what)
{
    if (result != PUBSEC_OK)
    {
        throw std::runtime_error(std::string(what) + ": " + std::to_string(result) + ' ' + PubSecResultText(result));
    }
}

template <std::size_t size> void put(char (&field)[size], const char* text)
{
    std::snprintf(field, size, "%s", text);
}

/* One time from the device's clock as a time stamp, one from its parts: a host uses whichever it has. */
void makeTimes(Identity& identity)
{
    expectOk(PubSecStackCreat_DateTimeEx(static_cast<u64>(PosixPlatformDeviceClockMs()), identity.shotTime,
                                         sizeof(identity.shotTime)),
             "shot time");
    TNvrSysTime now;
    PosixPlatformDeviceTime(&now);
    const TPubSecTime time = {now.wYear, now.byMonth, now.byDay, now.byHour, now.byMinute, now.bySecond};
    expectOk(PubSecStackCreat_DateTime(&time, identity.entryTime, sizeof(identity.entryTime)), "entry time");
}

} // namespace

Picture loadPicture(const Options& options)
{
    Picture picture;
    picture.path = options.picture;
    picture.bytes = PubSecStackGet_FileSize(picture.path.c_str());
    if (picture.bytes != UINT32_MAX && picture.bytes > c_largestPicture)
    {
        refuse(picture.path,
               "has " + std::to_string(picture.bytes) + " bytes, expected at most " + std::to_string(c_largestPicture));
    }
    const std::string content = contentOf(picture.path);
    const std::optional<viewlib::PictureSize> size = viewlib::jpegSize(content);
    if (!size)
    {
        refuse(picture.path, "is not a JPEG");
    }
    picture.size = *size;
    if (options.face.right > size->width || options.face.bottom > size->height)
    {
        throw UsageError("--face: the box ends at " + std::to_string(options.face.right) + ',' +
                         std::to_string(options.face.bottom) + ", the picture at " + std::to_string(size->width) + ',' +
                         std::to_string(size->height));
    }
    picture.base64.resize(PUBSEC_BASE64_SIZE(content.size()));
    expectOk(PubSecStackBase64Encode(reinterpret_cast<const u8*>(content.data()), static_cast<u32>(content.size()),
                                     picture.base64.data(), static_cast<u32>(picture.base64.size())),
             "base64");
    picture.base64.pop_back(); /* the terminator has its own place behind a string */
    expectOk(PubSecStackCreat_FileHash(picture.path.c_str(), picture.hash, sizeof(picture.hash)), "file hash");
    return picture;
}

Identity makeIdentity(const Options& options)
{
    Identity identity = {};
    makeTimes(identity);
    TPubSecImageCntIdParam param = {};
    put(param.tBasic.achDeviceID, options.deviceId.c_str());
    put(param.tBasic.achDateTime, identity.shotTime);
    param.tBasic.eObjType = c_objectIsImage;
    param.tBasic.qwSerialNo = 1;
    param.eImageCntType = c_contentIsFace;
    param.qwImageSerialNo = 1;
    expectOk(PubSecStackCreat_BasicObjectIdType(&param.tBasic, identity.imageId, sizeof(identity.imageId)), "image ID");
    expectOk(PubSecStackCreat_ImageCntObjectIdType(&param, identity.faceId, sizeof(identity.faceId)), "face ID");
    return identity;
}

TPubSecImageObjInfo imageRecord(const Options& options, const Picture& picture, const Identity& identity)
{
    TPubSecImageObjInfo image = {};
    put(image.achImageID, identity.imageId);
    image.dwInfoKind = 1; /* taken automatically */
    put(image.achDeviceID, options.deviceId.c_str());
    put(image.achFileHash, picture.hash);
    put(image.achFileFormat, "Jpeg");
    put(image.achShotTime, identity.shotTime);
    put(image.achEntryTime, identity.entryTime);
    put(image.achTitle, picture.path.substr(picture.path.rfind('/') + 1).c_str());
    image.nWidth = picture.size.width;
    image.nHeight = picture.size.height;
    image.bFileSizeValid = 1;
    image.nFileSize = static_cast<s32>(picture.bytes);
    return image;
}

TPubSecSubImageInfo subImageRecord(const Options& options, Picture& picture, const Identity& identity)
{
    TPubSecSubImageInfo subImage = {};
    put(subImage.achImageID, identity.imageId);
    put(subImage.achDeviceID, options.deviceId.c_str());
    put(subImage.achType, "14");
    put(subImage.achFileFormat, "Jpeg");
    put(subImage.achShotTime, identity.shotTime);
    subImage.nWidth = picture.size.width;
    subImage.nHeight = picture.size.height;
    subImage.pchData = picture.base64.data();
    return subImage;
}

TPubSecFaceObjInfo faceRecord(const Options& options, const Identity& identity, TPubSecSubImageInfo& subImage)
{
    TPubSecFaceObjInfo face = {};
    put(face.achFaceID, identity.faceId);
    put(face.achSourceID, identity.imageId);
    put(face.achDeviceID, options.deviceId.c_str());
    put(face.achShotTime, identity.shotTime);
    put(face.achLocationMarkTime, identity.entryTime);
    put(face.achFaceAppearTime, identity.shotTime);
    put(face.achFaceDisAppearTime, identity.shotTime);
    face.dwInfoKind = 1;
    face.bLeftTopXValid = face.bLeftTopYValid = face.bRightBtmXValid = face.bRightBtmYValid = 1;
    face.nLeftTopX = options.face.left;
    face.nLeftTopY = options.face.top;
    face.nRightBtmX = options.face.right;
    face.nRightBtmY = options.face.bottom;
    face.nSubImageNum = 1;
    face.ptSubImageList = &subImage;
    return face;
}

} // namespace device
