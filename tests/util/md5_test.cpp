/* SPDX-License-Identifier: Apache-2.0 */
#include "util/md5.h"

#include <openssl/evp.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

struct Vector
{
    const char* message;
    const char* digest;
};

/* RFC 1321, A.5 */
const Vector kVectors[] = {
    {"", "d41d8cd98f00b204e9800998ecf8427e"},
    {"a", "0cc175b9c0f1b6a831c399e269772661"},
    {"abc", "900150983cd24fb0d6963f7d28e17f72"},
    {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
    {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "d174ab98d277d9f5a5611c2c9f419d9f"},
    {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
     "57edf4a22be3c955ac49da2e2107b67a"},
};

std::string finish(TPubSecMd5* md5)
{
    char text[33];
    PubSecMd5FinalText(md5, text);
    return text;
}

std::string inPieces(const u8* data, size_t size, size_t piece)
{
    TPubSecMd5 md5;
    PubSecMd5Init(&md5);
    for (size_t done = 0; done < size; done += piece)
    {
        PubSecMd5Update(&md5, data + done, std::min(piece, size - done));
    }
    return finish(&md5);
}

std::string byOpenSsl(const u8* data, size_t size)
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    EXPECT_EQ(EVP_Digest(data, size, digest, &length, EVP_md5(), nullptr), 1);
    std::string text;
    for (unsigned i = 0; i < length; i++)
    {
        text += "0123456789abcdef"[digest[i] >> 4];
        text += "0123456789abcdef"[digest[i] & 15];
    }
    return text;
}

} // namespace

TEST(Md5, KnownMessages)
{
    for (const Vector& vector : kVectors)
    {
        const std::string message = vector.message;
        const u8* data = reinterpret_cast<const u8*>(message.data());
        EXPECT_EQ(inPieces(data, message.size(), 1000), vector.digest);
        EXPECT_EQ(inPieces(data, message.size(), 1), vector.digest);
    }
}

TEST(Md5, EveryLengthAcrossThePaddingAgreesWithOpenSsl)
{
    std::mt19937 random(1);
    std::vector<u8> data(200);
    std::generate(data.begin(), data.end(), [&random] { return static_cast<u8>(random()); });
    for (size_t size = 0; size <= data.size(); size++)
    {
        EXPECT_EQ(inPieces(data.data(), size, 1000), byOpenSsl(data.data(), size)) << size;
    }
}

TEST(Md5, RandomLengthsAndPiecesAgreeWithOpenSsl)
{
    std::mt19937 random(2);
    for (int round = 0; round < 200; round++)
    {
        /* one byte in front, so that the words of the blocks are not aligned */
        std::vector<u8> data(1 + random() % 5000);
        std::generate(data.begin(), data.end(), [&random] { return static_cast<u8>(random()); });
        const size_t size = data.size() - 1;
        const size_t piece = 1 + random() % 300;
        EXPECT_EQ(inPieces(data.data() + 1, size, piece), byOpenSsl(data.data() + 1, size)) << size << ' ' << piece;
    }
}

TEST(Md5, EmptyPiecesAddNothing)
{
    TPubSecMd5 md5;
    PubSecMd5Init(&md5);
    PubSecMd5Update(&md5, nullptr, 0);
    PubSecMd5Update(&md5, reinterpret_cast<const u8*>("abc"), 3);
    PubSecMd5Update(&md5, nullptr, 0);
    EXPECT_EQ(finish(&md5), "900150983cd24fb0d6963f7d28e17f72");
}

/* 2^29 + 1 zeros: the number of bits needs more than 32 of its own. */
TEST(Md5, LengthBeyond32BitsOfBits)
{
    const std::vector<u8> zeros(1 << 20);
    TPubSecMd5 md5;
    PubSecMd5Init(&md5);
    for (int i = 0; i < 512; i++)
    {
        PubSecMd5Update(&md5, zeros.data(), zeros.size());
    }
    PubSecMd5Update(&md5, zeros.data(), 1);
    EXPECT_EQ(finish(&md5), "ea3b62c6b93cb3625a1fd76777985f5a");
}
