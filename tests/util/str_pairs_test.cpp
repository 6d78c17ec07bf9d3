/* SPDX-License-Identifier: Apache-2.0 */
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pubsecstack/helpers.h>

namespace
{

template <size_t Size> std::vector<std::string> rows(const TPubSecStrPair (&table)[Size])
{
    std::vector<std::string> result;
    for (const TPubSecStrPair& pair : table)
    {
        result.push_back(std::to_string(pair.nValue) + " " + pair.pchStr);
    }
    return result;
}

} // namespace

TEST(StrPairs, VideoFormats)
{
    EXPECT_THAT(rows(s_atStrPair_EGAT1400VideoFormatType),
                testing::ElementsAre("1 Mpg", "2 Mov", "3 Avi", "4 Rm", "5 Rmvb", "6 Flv", "7 Vob", "8 M2ts", "9 Mp4",
                                     "10 Es", "11 Ps", "12 Ts", "13 Other", "14 unkown"));
}

TEST(StrPairs, ImageFormats)
{
    EXPECT_THAT(rows(s_atStrPair_EGAT1400ImageFormatType),
                testing::ElementsAre("1 Bmp", "2 Gif", "3 Jpeg", "4 Jfif", "5 Kdc", "6 Pcd", "7 Pcx", "8 Pic", "9 Pix",
                                     "10 Png", "11 Psd", "12 Tapga", "13 Tiff", "14 Wmf", "15 Jp2", "16 Other",
                                     "17 unkown"));
}

TEST(StrPairs, NoValueIsFound)
{
    const s32 values[] = {-2147483647 - 1, -1, 0, 1, 9, 14, 15, 2147483647};
    for (const s32 value : values)
    {
        EXPECT_EQ(PubsecStackConvS32ToStr(s_atStrPair_EGAT1400VideoFormatType, value), nullptr) << value;
        EXPECT_EQ(PubsecStackConvS32ToStr(s_atStrPair_EGAT1400ImageFormatType, value), nullptr) << value;
        EXPECT_EQ(PubsecStackConvS32ToStr(nullptr, value), nullptr) << value;
    }
    /* an entry at the index of its own value, the first that a search would find */
    const TPubSecStrPair straight[] = {{0, "zero"}, {1, "one"}};
    EXPECT_EQ(PubsecStackConvS32ToStr(straight, 0), nullptr);
    EXPECT_EQ(PubsecStackConvS32ToStr(straight, 1), nullptr);
}

TEST(StrPairs, NoTextIsFound)
{
    s32 value = 77;
    for (const char* text : {"Mp4", "mp4", "Mpg", "unkown", "", static_cast<const char*>(nullptr)})
    {
        EXPECT_FALSE(PubsecStackConvStrToS32(s_atStrPair_EGAT1400VideoFormatType, text, &value));
        EXPECT_FALSE(PubsecStackConvStrToS32(s_atStrPair_EGAT1400ImageFormatType, text, &value));
        EXPECT_FALSE(PubsecStackConvStrToS32(nullptr, text, &value));
        EXPECT_FALSE(PubsecStackConvStrToS32(s_atStrPair_EGAT1400VideoFormatType, text, nullptr));
    }
    EXPECT_EQ(value, 77);
}
