/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Helpers with which a host fills the records that it posts: object identifiers, date-time texts, MD5 digests, file
 * sizes and base64 texts.
 *
 * They work before PubSecStackInit, need no platform and never use the network. Every one runs on the caller's thread,
 * takes no lock and keeps no pointer. All may be called from any thread at any time, but for PSMDFile and PSMDString,
 * which answer in a static buffer. A function may block for as long as it reads a file; the others only compute.
 *
 * Lengths of buffers are sizes in bytes and count the terminating NUL.
 */
#ifndef PUBSECSTACK_HELPERS_H
#define PUBSECSTACK_HELPERS_H

#include "results.h"
#include "types.h"

PUBSEC_C_BEGIN

/* ---------------------------------------------------------------------------------------------- sizes of buffers */

#define PUBSEC_OBJECT_ID_SIZE 42    /* an object identifier: 41 characters */
#define PUBSEC_IMAGE_CNT_ID_SIZE 49 /* an image-content identifier: 48 characters */
#define PUBSEC_DATE_TIME_SIZE 15    /* a date-time text: 14 digits */
#define PUBSEC_FILE_HASH_SIZE 129   /* the least that the file hash functions accept; they write 33 bytes */
#define PUBSEC_MD5_TEXT_SIZE 33     /* a digest: 32 hexadecimal digits */

/* The destination that base64 text of this many bytes needs, up to 1073741822 (0x3FFFFFFE) of them. */
#define PUBSEC_BASE64_SIZE(length) (((length) + 2) / 3 * 4 + 1)

/* -------------------------------------------------------------------------------------------- object identifiers */

/* What an object identifier is made of. */
typedef struct
{
    char achDeviceID[21]; /* the 20-character code of the device or system that creates the object, copied as it stands
                           */
    char achDateTime[19]; /* 14 digits as PubSecStackCreat_DateTime makes them, copied as they stand */
    u32 eObjType;         /* kind of object: 0 gives "01", 1 "02", 2 "03", any other value "99" */
    u64 qwSerialNo; /* running number of the host; the last five decimal digits are used, so it may just count up */
} TPubSecObjectIdParam;

/* What an image-content identifier (of a face, a person, a vehicle, ...) is made of. */
typedef struct
{
    TPubSecObjectIdParam tBasic; /* the identifier of the picture that the object was found in */
    u32 eImageCntType;           /* kind of content: 0 gives "01", 1 "02", ... 6 "07", any other value "99" */
    u64 qwImageSerialNo;         /* second running number; the last five decimal digits are used */
} TPubSecImageCntIdParam;

/*
 * Makes an object identifier: device code (20), kind (2), date-time (14), serial number (5), 41 characters in all.
 *
 *   ptParam  parts of the identifier. A text that fills its array without a NUL is read to the end of the array.
 *            Nothing is padded or checked: shorter parts make a shorter identifier.
 *   pchId    where the identifier is written, terminated.
 *   wIdLen   size of pchId. At most 42: a LARGER buffer is refused, so pass PUBSEC_OBJECT_ID_SIZE, not sizeof of a
 *            bigger array. A smaller one is accepted and the identifier is cut to wIdLen - 1 characters; 0 writes
 *            nothing.
 *
 *   PUBSEC_OK         written.
 *   PUBSEC_ERR_PARAM  a null pointer, or wIdLen above 42; nothing is written. Correct the call.
 *
 *   TPubSecObjectIdParam tParam = {"34020000001190000001", "20240131235959", 1, 7};
 *   char achId[PUBSEC_OBJECT_ID_SIZE];
 *   PubSecStackCreat_BasicObjectIdType(&tParam, achId, sizeof achId);  // 34020000001190000001 02 20240131235959 00007
 */
PUBSEC_API u32 PubSecStackCreat_BasicObjectIdType(const TPubSecObjectIdParam* ptParam, char* pchId, u16 wIdLen);

/*
 * Makes an image-content identifier: the object identifier of tBasic (41), kind of content (2), serial number (5), 48
 * characters in all.
 *
 *   ptParam  parts of the identifier, as above. An object identifier longer than 41 characters is cut to 41.
 *   pchId    where the identifier is written, terminated.
 *   wIdLen   size of pchId. At most 49: a LARGER buffer is refused; a smaller one is accepted and the identifier is cut.
 *
 *   PUBSEC_OK         written.
 *   PUBSEC_ERR_PARAM  a null pointer, or wIdLen above 49; nothing is written. Correct the call.
 */
PUBSEC_API u32 PubSecStackCreat_ImageCntObjectIdType(const TPubSecImageCntIdParam* ptParam, char* pchId, u16 wIdLen);

/* ----------------------------------------------------------------------------------------------- date-time texts */

/* A broken-down time, in the host's own time zone. */
typedef struct
{
    u16 wYear;   /* four digits */
    u8 byMonth;  /* 1 to 12 */
    u8 byDay;    /* 1 to 31 */
    u8 byHour;   /* 0 to 23 */
    u8 byMinute; /* 0 to 59 */
    u8 bySecond; /* 0 to 60 */
} TPubSecTime;

/*
 * Makes a date-time text, YYYYMMDDhhmmss, from a broken-down time.
 *
 *   ptTime        the time. Ranges are not checked: a year of five digits or a field of three makes a longer text.
 *   pchDateTime   where the text is written, terminated.
 *   wDateTimeLen  size of pchDateTime, at least 15; a longer text is cut to it.
 *
 *   PUBSEC_OK         written.
 *   PUBSEC_ERR_PARAM  a null pointer, or wDateTimeLen below 15; nothing is written. Correct the call.
 *
 *   TPubSecTime tTime = {2024, 1, 31, 23, 59, 59};
 *   char achTime[PUBSEC_DATE_TIME_SIZE];
 *   PubSecStackCreat_DateTime(&tTime, achTime, sizeof achTime);  // 20240131235959
 */
PUBSEC_API u32 PubSecStackCreat_DateTime(const TPubSecTime* ptTime, char* pchDateTime, u16 wDateTimeLen);

/*
 * Makes a date-time text, YYYYMMDDhhmmss, from a time stamp, in the time zone that the device shows (the platform's
 * NvrSysTimeSecSwitch converts it).
 *
 *   qwMilliseconds  milliseconds since 1970-01-01 00:00:00 UTC. The part below a second is dropped, and the seconds
 *                   wrap at 2^32: good until February 2106.
 *   pchDateTime     where the text is written, terminated.
 *   wDateTimeLen    size of pchDateTime, at least 15.
 *
 *   PUBSEC_OK         written.
 *   PUBSEC_ERR_PARAM  a null pointer, or wDateTimeLen below 15; nothing is written. Correct the call.
 */
PUBSEC_API u32 PubSecStackCreat_DateTimeEx(u64 qwMilliseconds, char* pchDateTime, u16 wDateTimeLen);

/* ------------------------------------------------------------------------------------------------ files and MD5 */

/*
 * The MD5 digest of a file as 32 lower-case hexadecimal digits, as achFileHash of the records takes it.
 *
 *   pchFile   path of the file.
 *   pchHash   where the digits are written, terminated.
 *   wHashLen  size of pchHash, at least 129 (PUBSEC_FILE_HASH_SIZE, the size of achFileHash in images and slices)
 *             although 33 bytes are written. For the achFileHash of a file, which holds just those, hash into a buffer
 *             of that size and copy.
 *
 *   PUBSEC_OK          written. A read error ends the file as its end does.
 *   PUBSEC_ERR_FAILED  a null pointer, wHashLen below 129, or a file that cannot be opened; nothing is written.
 *
 * Blocks while the file is read.
 */
PUBSEC_API u32 PubSecStackCreat_FileHash(const char* pchFile, char* pchHash, u16 wHashLen);

/*
 * The size of a file in bytes, modulo 2^32; 0xFFFFFFFF when the path is null or there is no such file. A file of
 * 4294967295 bytes (modulo 2^32) cannot be told from a missing one.
 */
PUBSEC_API u32 PubSecStackGet_FileSize(const char* pchFile);

/*
 * The MD5 digest of a file as text, in a static buffer that the next call overwrites: one thread at a time. Null when
 * the file cannot be opened. Prints the path, or that it cannot be opened, to the standard output whatever the log
 * level is; PubSecStackCreat_FileHash is silent and safe to call from several threads.
 */
PUBSEC_API char* PSMDFile(const char* pchPath);

/* As PubSecStackCreat_FileHash, with no log line. Returns 1 when pchOut was written, 0 where that one returns 51. */
PUBSEC_API u32 PSMDFileEx(const char* pchPath, char* pchOut, u16 wOutLen);

/*
 * The MD5 digest of dwLen bytes as text, in a static buffer (not PSMDFile's) that the next call overwrites: one thread
 * at a time. Null data is the empty message, whatever dwLen is.
 */
PUBSEC_API char* PSMDString(const u8* pbyData, u32 dwLen);

/*
 * The MD5 digest of dwLen bytes as text.
 *
 *   pbyData   the bytes; not null, not even for a dwLen of 0.
 *   pchOut    where 32 lower-case hexadecimal digits are written. All dwOutLen bytes are cleared first, so they must
 *             not overlap the data.
 *   dwOutLen  size of pchOut, at least 33.
 *
 * Returns 1 when written, 0 for a null pointer or a dwOutLen of 32 or less; nothing is written then.
 */
PUBSEC_API u32 PSMD5(const u8* pbyData, u32 dwLen, char* pchOut, u32 dwOutLen);

/* -------------------------------------------------------------------------------------------------------- base64 */

/*
 * Writes bytes as base64 text: the standard alphabet, "=" padding, no line breaks, as pchData of the records takes it.
 *
 *   pbySrc    the bytes; not null, not even for a dwSrcLen of 0 (which gives an empty text).
 *   dwSrcLen  their number, at most 1073741822 (0x3FFFFFFE).
 *   pchDst    where the text is written, terminated; it must not overlap the bytes.
 *   dwDstLen  size of pchDst, at least PUBSEC_BASE64_SIZE(dwSrcLen) and below 2^31.
 *
 *   PUBSEC_OK          written.
 *   PUBSEC_ERR_FAILED  a null pointer, or a length out of range; nothing is written.
 */
PUBSEC_API u32 PubSecStackBase64Encode(const u8* pbySrc, u32 dwSrcLen, char* pchDst, u32 dwDstLen);

/*
 * The encoder itself. Mind the order: the destination comes first. Returns pchDst, or null where
 * PubSecStackBase64Encode returns 51, except that no bytes (dwSrcLen 0) may be null. nDstLen is signed; a negative one
 * is too small.
 */
PUBSEC_API char* xt_base64_encode(char* pchDst, s32 nDstLen, const u8* pbySrc, u32 dwSrcLen);

/* ------------------------------------------------------------------------------------------- names of formats */

/* A number and the name that stands for it. */
typedef struct
{
    s32 nValue;
    const char* pchStr;
} TPubSecStrPair;

#define PUBSEC_VIDEO_FORMAT_NUM 14
#define PUBSEC_IMAGE_FORMAT_NUM 17

/*
 * The formats that achFileFormat of video slices and of images names, numbered from 1 in this order. The name of an
 * unknown format is spelled "unkown". The tables are in the static library only; the shared one exports functions.
 *
 *   video: Mpg Mov Avi Rm Rmvb Flv Vob M2ts Mp4 Es Ps Ts Other unkown
 *   image: Bmp Gif Jpeg Jfif Kdc Pcd Pcx Pic Pix Png Psd Tapga Tiff Wmf Jp2 Other unkown
 */
extern const TPubSecStrPair s_atStrPair_EGAT1400VideoFormatType[PUBSEC_VIDEO_FORMAT_NUM];
extern const TPubSecStrPair s_atStrPair_EGAT1400ImageFormatType[PUBSEC_IMAGE_FORMAT_NUM];

/* Never finds a name: returns null for every table and value. Kept for hosts that link to it; read a table instead. */
PUBSEC_API const char* PubsecStackConvS32ToStr(const TPubSecStrPair* ptTable, s32 nValue);

/* Never finds a value: returns false for every table and text, and leaves *pnValue alone. Kept as the one above. */
PUBSEC_API bool PubsecStackConvStrToS32(const TPubSecStrPair* ptTable, const char* pchStr, s32* pnValue);

PUBSEC_C_END

#endif
