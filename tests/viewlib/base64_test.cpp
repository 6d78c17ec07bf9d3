/* SPDX-License-Identifier: Apache-2.0 */
#include "viewlib/base64.h"

#include <gtest/gtest.h>

using viewlib::decodeBase64;

namespace
{

TEST(DecodeBase64, DecodesTheExamplesOfRfc4648)
{
    EXPECT_EQ(decodeBase64("", false), "");
    EXPECT_EQ(decodeBase64("Zg==", false), "f");
    EXPECT_EQ(decodeBase64("Zm8=", false), "fo");
    EXPECT_EQ(decodeBase64("Zm9v", false), "foo");
    EXPECT_EQ(decodeBase64("Zm9vYg==", false), "foob");
    EXPECT_EQ(decodeBase64("Zm9vYmE=", false), "fooba");
    EXPECT_EQ(decodeBase64("Zm9vYmFy", false), "foobar");
}

TEST(DecodeBase64, KeepsEveryByteValue)
{
    EXPECT_EQ(decodeBase64("AP+A/w==", false), std::string("\x00\xFF\x80\xFF", 4));
    EXPECT_EQ(decodeBase64("+/+/", false), std::string("\xFB\xFF\xBF", 3));
}

TEST(DecodeBase64, RefusesWhatIsNotBareBase64)
{
    for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "====", "Z===", "Zg==Zg==", "Zm=v", "Zm 9v", "Zm-v", "Zm_v",
                             "data:image/jpeg;base64,Zm9v", "Zh==", "Zm9="})
    {
        EXPECT_FALSE(decodeBase64(text, false)) << text;
    }
}

TEST(DecodeBase64, TakesLineBreaksOnlyWhenTold)
{
    EXPECT_FALSE(decodeBase64("Zm9v\r\nYmFy", false));
    EXPECT_FALSE(decodeBase64("Zm9v\n", false));
    EXPECT_EQ(decodeBase64("Zm9v\r\nYmFy\n", true), "foobar");
    EXPECT_FALSE(decodeBase64("Zm9v\tYmFy", true));
}

} // namespace
