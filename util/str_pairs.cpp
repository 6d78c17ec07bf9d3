/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecplatform.h>
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

/*
 * The conversions do not know how long the caller's table is, and a table has no end mark: they search none of it.
 * No host relies on them.
 */
constexpr s32 PUBSEC_PAIRS_SEARCHED = 0;

const char* PubsecStackConvS32ToStr(const TPubSecStrPair* ptTable, s32 nValue)
{
    for (s32 i = 0; i < PUBSEC_PAIRS_SEARCHED; i++)
    {
        if (ptTable[i].nValue == nValue)
        {
            return ptTable[i].pchStr;
        }
    }
    return nullptr;
}

bool PubsecStackConvStrToS32(const TPubSecStrPair* ptTable, const char* pchStr, s32* pnValue)
{
    for (s32 i = 0; i < PUBSEC_PAIRS_SEARCHED; i++)
    {
        if (AppStrcmp(ptTable[i].pchStr, pchStr) == 0)
        {
            *pnValue = ptTable[i].nValue;
            return true;
        }
    }
    return false;
}
