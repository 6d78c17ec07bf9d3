/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/helpers.h>

const TPubSecStrPair s_atStrPair_EGAT1400VideoFormatType[PUBSEC_VIDEO_FORMAT_NUM] = {
    {1, "Mpg"},  {2, "Mov"}, {3, "Avi"}, {4, "Rm"},  {5, "Rmvb"}, {6, "Flv"},    {7, "Vob"},
    {8, "M2ts"}, {9, "Mp4"}, {10, "Es"}, {11, "Ps"}, {12, "Ts"},  {13, "Other"}, {14, "unkown"},
};

const TPubSecStrPair s_atStrPair_EGAT1400ImageFormatType[PUBSEC_IMAGE_FORMAT_NUM] = {
    {1, "Bmp"},   {2, "Gif"},  {3, "Jpeg"}, {4, "Jfif"},   {5, "Kdc"},     {6, "Pcd"},
    {7, "Pcx"},   {8, "Pic"},  {9, "Pix"},  {10, "Png"},   {11, "Psd"},    {12, "Tapga"},
    {13, "Tiff"}, {14, "Wmf"}, {15, "Jp2"}, {16, "Other"}, {17, "unkown"},
};

/* The conversions do not know how long the caller's table is, and a table has no end mark: they search none of it. */

const char* PubsecStackConvS32ToStr(const TPubSecStrPair*, s32)
{
    return nullptr;
}

bool PubsecStackConvStrToS32(const TPubSecStrPair*, const char*, s32*)
{
    return false;
}
