/* SPDX-License-Identifier: Apache-2.0 */
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include <pubsecstack/helpers.h>

#include "tests/util/host.h"

using host::debugLine;
using host::isError;
using host::state;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr char kAbc[] = "900150983cd24fb0d6963f7d28e17f72";
constexpr char kEmpty[] = "d41d8cd98f00b204e9800998ecf8427e";

const u8* bytes(const char* text)
{
    return reinterpret_cast<const u8*>(text);
}

class FileHash : public host::Test
{
  protected:
    FileHash()
    {
        char folder[] = "/tmp/pubsec_file_hash_XXXXXX";
        m_folder = mkdtemp(folder);
    }

    ~FileHash() override
    {
        unlink(path().c_str());
        rmdir(m_folder.c_str());
    }

    std::string path() const
    {
        return m_folder + "/file";
    }

    std::string missing() const
    {
        return m_folder + "/missing";
    }

    void write(const std::string& content) const
    {
        std::ofstream(path(), std::ios::binary) << content;
    }

  private:
    std::string m_folder;
};

} // namespace

TEST_F(FileHash, NeedsABufferOf129Bytes)
{
    write("abc");
    char hash[200];
    memset(hash, 'x', sizeof(hash));
    EXPECT_EQ(PubSecStackCreat_FileHash(path().c_str(), hash, 64), 51u);
    EXPECT_EQ(PubSecStackCreat_FileHash(path().c_str(), hash, 128), 51u);
    EXPECT_EQ(hash[0], 'x');
    EXPECT_EQ(PubSecStackCreat_FileHash(path().c_str(), hash, 129), 50u);
    EXPECT_STREQ(hash, kAbc);
    EXPECT_EQ(hash[33], 'x');
    EXPECT_EQ(PubSecStackCreat_FileHash(path().c_str(), hash, 65535), 50u);
}

TEST_F(FileHash, RefusesNullAndMissing)
{
    write("abc");
    char hash[129] = "x";
    EXPECT_EQ(PubSecStackCreat_FileHash(nullptr, hash, 129), 51u);
    EXPECT_EQ(PubSecStackCreat_FileHash(path().c_str(), nullptr, 129), 51u);
    EXPECT_EQ(PubSecStackCreat_FileHash(missing().c_str(), hash, 129), 51u);
    EXPECT_STREQ(hash, "x");
}

/* Lengths around the blocks in which the file is read and those that are digested; bytes 0, 1, ... 250, 0, 1, ... */
TEST_F(FileHash, EveryBlockOfTheFileCounts)
{
    const struct
    {
        size_t size;
        const char* digest;
    } cases[] = {
        {0, kEmpty},
        {1023, "7437d7a881387db7c41cf6930ab5e35d"},
        {1024, "9ee0a0e0c0bc0f1ff29d663d1fdf0743"},
        {1025, "3f3789452b88cb32b8cbfbafe715e29a"},
        {5000, "046b3239eaade30920069f171518d956"},
        {100000, "28cb595c158e9b74e34ae9e8da710fff"},
    };
    for (const auto& each : cases)
    {
        std::string content;
        for (size_t i = 0; i < each.size; i++)
        {
            content += static_cast<char>(i % 251);
        }
        write(content);
        char hash[129];
        EXPECT_EQ(PSMDFileEx(path().c_str(), hash, 129), 1u);
        EXPECT_STREQ(hash, each.digest) << each.size;
    }
}

TEST_F(FileHash, Lines)
{
    write("abc");
    char hash[129];
    PubSecStackCreat_FileHash(missing().c_str(), hash, 129);
    EXPECT_THAT(state.lines, IsEmpty());

    logAt(1);
    PubSecStackCreat_FileHash(missing().c_str(), hash, 129);
    PubSecStackCreat_FileHash(nullptr, hash, 129);
    EXPECT_THAT(state.lines,
                ElementsAre(isError("PubSecStackCreat_FileHash", "PSMDFileEx file=" + missing() + " failed."),
                            isError("PubSecStackCreat_FileHash", "PSMDFileEx file=(null) failed.")));

    state.lines.clear();
    logAt(2);
    PubSecStackCreat_FileHash(path().c_str(), hash, 129);
    EXPECT_THAT(state.lines, IsEmpty());
    logAt(3);
    PubSecStackCreat_FileHash(path().c_str(), hash, 129);
    EXPECT_THAT(state.lines,
                ElementsAre(debugLine("PubSecStackCreat_FileHash", "FileHash:900150983cd24fb0d6963f7d28e17f72")));
}

TEST_F(FileHash, WrapperWithABufferPrintsAndLogsNothing)
{
    write("abc");
    logAt(4);
    char hash[129] = "x";
    testing::internal::CaptureStdout();
    EXPECT_EQ(PSMDFileEx(path().c_str(), hash, 128), 0u);
    EXPECT_EQ(PSMDFileEx(nullptr, hash, 129), 0u);
    EXPECT_EQ(PSMDFileEx(path().c_str(), nullptr, 129), 0u);
    EXPECT_EQ(PSMDFileEx(missing().c_str(), hash, 129), 0u);
    EXPECT_STREQ(hash, "x");
    EXPECT_EQ(PSMDFileEx(path().c_str(), hash, 129), 1u);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_STREQ(hash, kAbc);
    EXPECT_THAT(state.lines, IsEmpty());
}

TEST_F(FileHash, StaticWrapperPrintsThePath)
{
    write("abc");
    testing::internal::CaptureStdout();
    const char* hash = PSMDFile(path().c_str());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), " " + path() + "\n");
    ASSERT_NE(hash, nullptr);
    EXPECT_STREQ(hash, kAbc);
}

TEST_F(FileHash, StaticWrapperSaysWhatCannotBeOpened)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(PSMDFile(missing().c_str()), nullptr);
    EXPECT_EQ(PSMDFile(nullptr), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), missing() + " can't be opened.\n(null) can't be opened.\n");
}

TEST_F(FileHash, StaticWrappersHaveABufferEach)
{
    write("abc");
    testing::internal::CaptureStdout();
    const char* ofFile = PSMDFile(path().c_str());
    const char* ofText = PSMDString(bytes("a"), 1);
    write("");
    const char* ofFileAgain = PSMDFile(path().c_str());
    testing::internal::GetCapturedStdout();
    EXPECT_NE(static_cast<const void*>(ofFile), ofText);
    EXPECT_EQ(static_cast<const void*>(ofFile), ofFileAgain);
    EXPECT_STREQ(ofFile, kEmpty);
    EXPECT_STREQ(ofText, "0cc175b9c0f1b6a831c399e269772661");
}

TEST_F(FileHash, StringWrapper)
{
    EXPECT_STREQ(PSMDString(bytes("abc"), 3), kAbc);
    EXPECT_STREQ(PSMDString(bytes("abc"), 0), kEmpty);
    EXPECT_STREQ(PSMDString(nullptr, 0), kEmpty);
    EXPECT_STREQ(PSMDString(nullptr, 7), kEmpty);
}

TEST_F(FileHash, BufferOfDataWrapper)
{
    char out[40];
    memset(out, 'x', sizeof(out));
    EXPECT_EQ(PSMD5(bytes("abc"), 3, out, 32), 0u);
    EXPECT_EQ(PSMD5(bytes("abc"), 3, out, 0), 0u);
    EXPECT_EQ(PSMD5(nullptr, 0, out, 40), 0u);
    EXPECT_EQ(PSMD5(bytes("abc"), 3, nullptr, 33), 0u);
    EXPECT_EQ(std::string(out, sizeof(out)), std::string(sizeof(out), 'x'));

    EXPECT_EQ(PSMD5(bytes("abc"), 3, out, 33), 1u);
    EXPECT_STREQ(out, kAbc);
    EXPECT_EQ(out[33], 'x');

    memset(out, 'x', sizeof(out));
    EXPECT_EQ(PSMD5(bytes(""), 0, out, 40), 1u);
    EXPECT_STREQ(out, kEmpty);
    EXPECT_EQ(std::string(out + 32, 8), std::string(8, '\0'));
}

TEST_F(FileHash, FileSize)
{
    logAt(4);
    EXPECT_EQ(PubSecStackGet_FileSize(missing().c_str()), 0xFFFFFFFFu);
    EXPECT_EQ(PubSecStackGet_FileSize(nullptr), 0xFFFFFFFFu);
    write("");
    EXPECT_EQ(PubSecStackGet_FileSize(path().c_str()), 0u);
    write("abc");
    EXPECT_EQ(PubSecStackGet_FileSize(path().c_str()), 3u);
    EXPECT_THAT(state.lines, IsEmpty());
}

TEST_F(FileHash, FileSizeIsTruncatedTo32Bits)
{
    write("");
    const off_t size = (off_t{1} << 32) + 5;
    if (truncate(path().c_str(), size) != 0)
    {
        GTEST_SKIP() << "no room for a sparse file of 4 GiB";
    }
    EXPECT_EQ(PubSecStackGet_FileSize(path().c_str()), 5u);
}
