/* SPDX-License-Identifier: Apache-2.0 */
#include "viewlib/base64.h"
#include "viewlib/rules.h"
#include "viewlib/text.h"

#include <gtest/gtest.h>

using namespace viewlib;

namespace
{

TEST(Utf8, IsToldFromOtherBytes)
{
    for (const char* text : {"", "abc", "\xE4\xB8\xAD\xE6\x96\x87", "\xC2\x80", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"})
    {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    for (const char* text : {"\xFF", "\x80", "\xC0\x80", "\xE4\xB8", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                             "\xF0\x80\x80\x80", "a\xC3(", "\xF8\x88\x80\x80\x80"})
    {
        EXPECT_FALSE(isUtf8(text)) << text;
    }
}

TEST(Utf8, IsCutBetweenCharacters)
{
    EXPECT_EQ(cutUtf8(""), "");
    EXPECT_EQ(cutUtf8("ab"), "ab");
    EXPECT_EQ(cutUtf8("a\xE4\xB8\xAD"), "a\xE4\xB8\xAD");
    EXPECT_EQ(cutUtf8("a\xE4\xB8"), "a");
    EXPECT_EQ(cutUtf8("a\xE4"), "a");
    EXPECT_EQ(cutUtf8("\xF0\x9F\x98"), "");
    EXPECT_EQ(shorten(std::string(400, 'x')), std::string(400, 'x'));
    EXPECT_EQ(shorten(std::string(399, 'x') + "\xE4\xB8\xAD"), std::string(399, 'x') + "...");
}

TEST(Times, AreCalendarDates)
{
    for (const char* time : {"19700101000000", "20240229235959", "20261231000000", "20000229120000"})
    {
        EXPECT_TRUE(isTime(time)) << time;
    }
    for (const char* time : {"", "2024022923595", "202402292359590", "20230229000000", "20241301000000",
                             "20240001000000", "20240100000000", "20240431000000", "20240101240000", "20240101006000",
                             "20240101000060", "19691231235959", "2024-01-01T00:0", "21000229000000"})
    {
        EXPECT_FALSE(isTime(time)) << time;
    }
}

TEST(EncodeBase64, IsPadded)
{
    EXPECT_EQ(encodeBase64(""), "");
    EXPECT_EQ(encodeBase64("f"), "Zg==");
    EXPECT_EQ(encodeBase64("fo"), "Zm8=");
    EXPECT_EQ(encodeBase64("foo"), "Zm9v");
    EXPECT_EQ(encodeBase64("\xFF\xFE\xFD\xFC"), "//79/A==");
}

} // namespace
