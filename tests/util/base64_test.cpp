/* SPDX-License-Identifier: Apache-2.0 */
#include <openssl/evp.h>
#include <string.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <pubsecstack/helpers.h>

namespace
{

const u8* bytes(const std::string& text)
{
    return reinterpret_cast<const u8*>(text.data());
}

u32 lengthOf(const std::string& text)
{
    return static_cast<u32>(text.size());
}

std::string encode(const std::string& source)
{
    char text[64];
    memset(text, 'x', sizeof(text));
    EXPECT_EQ(PubSecStackBase64Encode(bytes(source), lengthOf(source), text, sizeof(text)), 50u);
    return text;
}

} // namespace

/* RFC 4648, 10 */
TEST(Base64, KnownTexts)
{
    EXPECT_EQ(encode(""), "");
    EXPECT_EQ(encode("f"), "Zg==");
    EXPECT_EQ(encode("fo"), "Zm8=");
    EXPECT_EQ(encode("foo"), "Zm9v");
    EXPECT_EQ(encode("foob"), "Zm9vYg==");
    EXPECT_EQ(encode("fooba"), "Zm9vYmE=");
    EXPECT_EQ(encode("foobar"), "Zm9vYmFy");
}

TEST(Base64, WholeAlphabet)
{
    std::string source;
    for (u32 i = 0; i < 64; i += 4)
    {
        const u32 bits = i << 18 | (i + 1) << 12 | (i + 2) << 6 | (i + 3);
        source += {static_cast<char>(bits >> 16), static_cast<char>(bits >> 8), static_cast<char>(bits)};
    }
    char text[65];
    EXPECT_EQ(PubSecStackBase64Encode(bytes(source), 48, text, sizeof(text)), 50u);
    EXPECT_STREQ(text, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(Base64, NeedsRoomForTheTerminator)
{
    char text[16];
    memset(text, 'x', sizeof(text));
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 3, text, 4), 51u);
    EXPECT_EQ(PubSecStackBase64Encode(bytes("f"), 1, text, 4), 51u);
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foob"), 4, text, 8), 51u);
    EXPECT_EQ(PubSecStackBase64Encode(bytes(""), 0, text, 0), 51u);
    EXPECT_EQ(std::string(text, sizeof(text)), std::string(sizeof(text), 'x'));

    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 3, text, 5), 50u);
    EXPECT_STREQ(text, "Zm9v");
    EXPECT_EQ(text[5], 'x');
    EXPECT_EQ(PubSecStackBase64Encode(bytes(""), 0, text, 1), 50u);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(text[1], 'm');
}

TEST(Base64, DestinationLengthsOf31BitsAndMore)
{
    char text[16];
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 3, text, 0x7FFFFFFF), 50u);
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 3, text, 0x80000000), 51u);
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 3, text, 0xFFFFFFFF), 51u);
    EXPECT_EQ(xt_base64_encode(text, -1, bytes("foo"), 3), nullptr);
    EXPECT_EQ(xt_base64_encode(text, -2147483647 - 1, bytes(""), 0), nullptr);
}

TEST(Base64, SourceLengthsOutOfRange)
{
    char text[16] = "x";
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 0x3FFFFFFF, text, 0x7FFFFFFF), 51u);
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 0xFFFFFFFF, text, 0x7FFFFFFF), 51u);
    /* the longest source needs 1431655764 characters and the terminator */
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 0x3FFFFFFE, text, 1431655764), 51u);
    EXPECT_STREQ(text, "x");
}

TEST(Base64, Null)
{
    char text[16] = "x";
    EXPECT_EQ(PubSecStackBase64Encode(nullptr, 3, text, 16), 51u);
    EXPECT_EQ(PubSecStackBase64Encode(nullptr, 0, text, 16), 51u);
    EXPECT_EQ(PubSecStackBase64Encode(bytes("foo"), 3, nullptr, 16), 51u);
    EXPECT_EQ(xt_base64_encode(nullptr, 16, bytes("foo"), 3), nullptr);
    EXPECT_EQ(xt_base64_encode(text, 16, nullptr, 3), nullptr);
    EXPECT_STREQ(text, "x");
    EXPECT_EQ(xt_base64_encode(text, 16, nullptr, 0), text);
    EXPECT_STREQ(text, "");
}

TEST(Base64, EncoderReturnsItsDestination)
{
    char text[16];
    EXPECT_EQ(xt_base64_encode(text, 5, bytes("foo"), 3), text);
    EXPECT_STREQ(text, "Zm9v");
    EXPECT_EQ(xt_base64_encode(text, 4, bytes("foo"), 3), nullptr);
}

TEST(Base64, SizeMacroIsTheLeastThatIsTaken)
{
    char text[64];
    for (u32 length = 0; length < 40; length++)
    {
        const std::string source(length, 'q');
        EXPECT_EQ(PubSecStackBase64Encode(bytes(source), length, text, PUBSEC_BASE64_SIZE(length)), 50u) << length;
        EXPECT_EQ(PubSecStackBase64Encode(bytes(source), length, text, PUBSEC_BASE64_SIZE(length) - 1), 51u) << length;
    }
}

TEST(Base64, RandomBytesAgreeWithOpenSsl)
{
    std::mt19937 random(3);
    for (int round = 0; round < 300; round++)
    {
        std::vector<u8> source(1 + random() % 3000);
        std::generate(source.begin(), source.end(), [&random] { return static_cast<u8>(random()); });
        const u32 size = static_cast<u32>(source.size());
        std::vector<char> text((size + 2) / 3 * 4 + 1, 'x');
        std::vector<unsigned char> expected(text.size());
        ASSERT_EQ(PubSecStackBase64Encode(source.data(), size, text.data(), static_cast<u32>(text.size())), 50u);
        EVP_EncodeBlock(expected.data(), source.data(), static_cast<int>(size));
        EXPECT_STREQ(text.data(), reinterpret_cast<const char*>(expected.data())) << size;
    }
}
