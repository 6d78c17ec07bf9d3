/* SPDX-License-Identifier: Apache-2.0 */
/* Files that are streamed: what is held of them, how a cut upload goes on, and how a test cuts one. */
#include "server_fixture.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

using namespace std::chrono_literals;
using client::Result;
using viewlib::Answer;

namespace
{

const std::string path = "/VIID/Upload/video.ps";
const std::string md5OfNothing = "d41d8cd98f00b204e9800998ecf8427e";
const std::string md5OfDigits = "781e5e245d69b566979b86e28d23f2c7"; /* of "0123456789" */
const std::string status = "ResponseStatusListObject/ResponseStatusObject/0/";

class UploadTest : public ServerTest
{
  protected:
    client::Call uploadCall(const std::string& target, const std::string& bytes)
    {
        client::Call made;
        made.url = server().url(target);
        made.body = bytes;
        made.headers = {"content-type:application/octet-stream"};
        return made;
    }
    Result upload(const std::string& target, const std::string& bytes)
    {
        return client::perform(uploadCall(target, bytes));
    }
    Result state(const std::string& target = path)
    {
        client::Call made;
        made.url = server().url(target);
        made.method = "GET";
        made.headers = {"Content-Length:0"};
        return client::perform(made);
    }
    /* Until so many bytes are held of the only upload. */
    bool waitForLength(std::uint64_t length)
    {
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (std::chrono::steady_clock::now() < end)
        {
            const auto uploads = server().uploads();
            if (uploads.size() == 1 && uploads[0].length == length)
            {
                return true;
            }
            std::this_thread::sleep_for(5ms);
        }
        return false;
    }
};

TEST_F(UploadTest, IsHeldAndToldByLengthAndHash)
{
    start();
    const Result result = upload(path, "0123456789");
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, status + "StatusCode"), "0");
    EXPECT_EQ(at(result.body, status + "Id"), R"("video.ps")");

    const Result told = state();
    EXPECT_EQ(told.status, 200);
    EXPECT_EQ(told.body, R"({"TransDataInfObject":{"FileLength":10,"FileHash":"781e5e245d69b566979b86e28d23f2c7"}})");
    const auto uploads = server().uploads();
    ASSERT_EQ(uploads.size(), 1U);
    EXPECT_EQ(uploads[0].name, "video.ps");
    EXPECT_EQ(uploads[0].length, 10U);
    EXPECT_EQ(uploads[0].md5, md5OfDigits);
    EXPECT_EQ(uploads[0].bytes, "0123456789");
    EXPECT_EQ(uploads[0].file, "");
    EXPECT_EQ(server().stored().posts, 0U);

    const auto exchanges = server().exchangesOf(path);
    ASSERT_EQ(exchanges.size(), 2U);
    EXPECT_EQ(exchanges[0].body, "");
    EXPECT_EQ(exchanges[0].bodyLength, 10U);
    EXPECT_TRUE(exchanges[0].complete);
    EXPECT_EQ(exchanges[1].header("Content-Length"), "0");
}

TEST_F(UploadTest, NothingHeldIsA404WithADocument)
{
    start();
    const Result result = state();
    EXPECT_EQ(result.status, 404);
    EXPECT_EQ(at(result.body, "TransDataInfObject"), "(missing)");
    EXPECT_EQ(at(result.body, status + "StatusString"), R"("nothing is held of \"video.ps\"")");
}

TEST_F(UploadTest, GoesOnAtItsPosition)
{
    start();
    EXPECT_EQ(upload(path, "01234").status, 200);
    EXPECT_EQ(upload(path + "?position=5", "56789").status, 200);
    EXPECT_EQ(server().uploads().at(0).bytes, "0123456789");
    EXPECT_EQ(server().uploads().at(0).md5, md5OfDigits);
    /* at the end of the file nothing is left to send */
    EXPECT_EQ(upload(path + "?position=10", "").status, 200);
    EXPECT_EQ(server().uploads().at(0).md5, md5OfDigits);
}

TEST_F(UploadTest, ReplacesEverythingFromItsPositionOn)
{
    start();
    EXPECT_EQ(upload(path, "0123xxxxxxxxxx").status, 200);
    EXPECT_EQ(upload(path + "?a=b&position=4&c", "456789").status, 200);
    EXPECT_EQ(server().uploads().at(0).bytes, "0123456789");
    EXPECT_EQ(server().uploads().at(0).md5, md5OfDigits);
    EXPECT_EQ(upload(path, "").status, 200);
    EXPECT_EQ(server().uploads().at(0).length, 0U);
    EXPECT_EQ(state().body, R"({"TransDataInfObject":{"FileLength":0,"FileHash":")" + md5OfNothing + R"("}})");
}

TEST_F(UploadTest, APositionBeyondWhatIsHeldIsRefused)
{
    start();
    EXPECT_EQ(upload(path + "?position=1", "x").status, 409);
    EXPECT_EQ(state().status, 404);
    EXPECT_EQ(upload(path, "01234").status, 200);
    const Result result = upload(path + "?position=6", "x");
    EXPECT_EQ(result.status, 409);
    EXPECT_EQ(at(result.body, status + "StatusCode"), "4");
    EXPECT_EQ(at(result.body, status + "StatusString"), R"("position 6 lies beyond the 5 bytes that are held")");
    EXPECT_EQ(server().uploads().at(0).bytes, "01234");
}

TEST_F(UploadTest, APositionThatIsNoNumberIsRefused)
{
    start();
    for (const char* query : {"?position=", "?position=-1", "?position=1x", "?position=99999999999999999999"})
    {
        EXPECT_EQ(upload(path + query, "x").status, 400) << query;
    }
    EXPECT_TRUE(server().uploads().empty());
}

TEST_F(UploadTest, NeedsNoRegistrationAndServesNothingElse)
{
    ASSERT_TRUE(config.strict.registration);
    start();
    EXPECT_EQ(upload(path, "x").status, 200);
    const Result result = client::perform(call(path, "", "DELETE"));
    EXPECT_EQ(result.status, 405);
    EXPECT_THAT(result.headers, testing::Contains("Allow: GET, POST"));
    EXPECT_EQ(upload("/VIID/Upload", "x").status, 404);
    EXPECT_EQ(upload("/VIID/Upload/", "x").status, 404);
}

TEST_F(UploadTest, ABodyAboveTheLimitForDocumentsIsStreamed)
{
    config.maxBody = 1000;
    start();
    std::string bytes;
    for (int i = 0; bytes.size() < 3000000; ++i)
    {
        bytes += std::to_string(i) + ',';
    }
    EXPECT_EQ(upload(path, bytes).status, 200);
    EXPECT_TRUE(server().uploads().at(0).bytes == bytes);
    EXPECT_FALSE(server().exchanges().at(0).oversized);
}

TEST_F(UploadTest, ACutUploadIsKeptAndGoesOn)
{
    start();
    Answer answer;
    answer.cutAfterRequestBytes = 4;
    server().script(path, answer);
    EXPECT_NE(upload(path, "0123xxxxxx").code, CURLE_OK);
    ASSERT_TRUE(server().waitFor(path, 1));
    EXPECT_FALSE(server().exchanges().at(0).complete);
    EXPECT_EQ(server().exchanges().at(0).bodyLength, 4U);
    EXPECT_EQ(server().exchanges().at(0).status, 0U);
    EXPECT_EQ(at(state().body, "TransDataInfObject/FileLength"), "4");
    EXPECT_EQ(upload(path + "?position=4", "456789").status, 200);
    EXPECT_EQ(server().uploads().at(0).bytes, "0123456789");
    EXPECT_EQ(server().uploads().at(0).md5, md5OfDigits);
}

TEST_F(UploadTest, ACutComesAtItsByteOfALargeBody)
{
    start();
    Answer answer;
    answer.cutAfterRequestBytes = 1234567;
    server().script(path, answer);
    EXPECT_NE(upload(path, std::string(std::size_t(16) << 20, 'x')).code, CURLE_OK);
    ASSERT_TRUE(server().waitFor(path, 1));
    EXPECT_EQ(server().uploads().at(0).length, 1234567U);

    answer.cutAfterRequestBytes = 0; /* before the first byte */
    server().script(path, answer);
    EXPECT_NE(upload(path, "x").code, CURLE_OK);
    EXPECT_EQ(server().uploads().at(0).length, 0U);

    answer.cutAfterRequestBytes = 2; /* a body that ends before */
    server().script(path, answer);
    EXPECT_EQ(upload(path, "x").status, 200);
}

TEST_F(UploadTest, ACutIsThereForDocumentsToo)
{
    config.strict.registration = false;
    start();
    Answer answer;
    answer.cutAfterRequestBytes = 3;
    server().script("/VIID/Faces", answer);
    EXPECT_NE(postFace().code, CURLE_OK);
    ASSERT_TRUE(server().waitFor("/VIID/Faces", 1));
    EXPECT_EQ(server().exchanges().at(0).body, R"({"F)");
    EXPECT_EQ(server().stored().posts, 0U);
    EXPECT_EQ(postFace().status, 200);
}

TEST_F(UploadTest, AStalledUploadLastsAsLongAsItsClient)
{
    start();
    Answer answer;
    answer.stallAfterRequestBytes = 4;
    server().script(path, answer);
    client::Call made = uploadCall(path, "0123xxxxxx");
    made.timeoutMs = 500;
    EXPECT_EQ(client::perform(made).code, CURLE_OPERATION_TIMEDOUT);
    ASSERT_TRUE(server().waitFor(path, 1, 5s)); /* it is over once the client has gone */
    EXPECT_EQ(server().exchanges().at(0).bodyLength, 4U);
    EXPECT_FALSE(server().exchanges().at(0).complete);
    EXPECT_EQ(upload(path + "?position=4", "456789").status, 200);
    EXPECT_EQ(server().uploads().at(0).md5, md5OfDigits);
}

TEST_F(UploadTest, StopEndsAStall)
{
    start();
    Answer answer;
    answer.stallAfterRequestBytes = 0;
    server().script(path, answer);
    auto stalled = std::async(std::launch::async, [this] { return upload(path, "x"); });
    ASSERT_TRUE(waitForLength(0));
    EXPECT_EQ(stalled.wait_for(200ms), std::future_status::timeout);
    server().stop();
    EXPECT_NE(stalled.get().code, CURLE_OK);
}

TEST_F(UploadTest, AThrottledReaderTakesItsTime)
{
    start();
    Answer answer;
    answer.requestBytesPerSecond = 1000;
    server().script(path, answer);
    const Result result = upload(path, std::string(500, 'x'));
    EXPECT_EQ(result.status, 200);
    EXPECT_GE(result.seconds, 0.45);
    EXPECT_EQ(server().uploads().at(0).bytes, std::string(500, 'x'));
}

TEST_F(UploadTest, ALaterUploadTakesOver)
{
    start();
    Answer slow;
    slow.requestBytesPerSecond = 100;
    server().script(path, slow);
    auto first = std::async(std::launch::async, [this] { return upload(path, std::string(1000, 'x')); });
    ASSERT_TRUE(waitForLength(5)); /* the first step of the throttle */
    EXPECT_EQ(upload(path, "0123456789").status, 200);
    EXPECT_NE(first.get().code, CURLE_OK); /* closed, not refused: it was still sending */
    EXPECT_EQ(server().uploads().at(0).bytes, "0123456789");
}

TEST_F(UploadTest, AScriptedStatusKeepsNothing)
{
    start();
    server().script(path, Answer(503));
    EXPECT_EQ(upload(path, "x").status, 503);
    Answer waiting(403);
    waiting.afterAuth = true;
    server().script(path, waiting);
    EXPECT_EQ(upload(path, "x").status, 403);
    EXPECT_TRUE(server().uploads().empty());
    Answer effective(500);
    effective.takeEffect = true;
    server().script(path, effective);
    EXPECT_EQ(upload(path, "x").status, 500);
    EXPECT_EQ(server().uploads().at(0).bytes, "x");
}

TEST_F(UploadTest, ComesOverHttpsToo)
{
    config.https = true;
    start();
    Answer answer;
    answer.cutAfterRequestBytes = 4;
    server().script(path, answer);
    EXPECT_NE(upload(path, "0123xxxxxx").code, CURLE_OK);
    EXPECT_EQ(upload(path + "?position=4", "456789").status, 200);
    EXPECT_EQ(server().uploads().at(0).md5, md5OfDigits);
}

class UploadDirectoryTest : public UploadTest
{
  protected:
    void SetUp() override
    {
        m_directory = testing::TempDir() + "viewlib-XXXXXX";
        ASSERT_NE(mkdtemp(m_directory.data()), nullptr);
        config.storage = m_directory + "/data";
    }
    void TearDown() override
    {
        std::filesystem::remove_all(m_directory);
    }
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_directory))
        {
            names.push_back(entry.path().lexically_relative(m_directory).string());
        }
        return names;
    }

  private:
    std::string m_directory;
};

TEST_F(UploadDirectoryTest, IsAFileThatGrows)
{
    start();
    EXPECT_EQ(upload(path, "01234").status, 200);
    EXPECT_EQ(upload(path + "?position=5", "56789").status, 200);
    const auto uploads = server().uploads();
    ASSERT_EQ(uploads.size(), 1U);
    EXPECT_EQ(uploads[0].file, "uploads/video.ps");
    EXPECT_EQ(uploads[0].length, 10U);
    EXPECT_EQ(uploads[0].md5, md5OfDigits);
    EXPECT_EQ(uploads[0].bytes, "");
    std::ifstream file(config.storage + "/uploads/video.ps", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "0123456789");
}

TEST_F(UploadDirectoryTest, OutlivesTheServerAndGoesOn)
{
    {
        viewlib::Server first(config);
        first.start();
        client::Call made;
        made.url = first.url(path);
        made.body = "0123xx";
        EXPECT_EQ(client::perform(made).status, 200);
    }
    start();
    EXPECT_EQ(at(state().body, "TransDataInfObject/FileLength"), "6");
    EXPECT_EQ(upload(path + "?position=4", "456789").status, 200);
    EXPECT_EQ(at(state().body, "TransDataInfObject/FileHash"), '"' + md5OfDigits + '"');
}

TEST_F(UploadDirectoryTest, NamesThatLeadElsewhereAreRefused)
{
    start();
    const auto before = files();
    for (const std::string name : {"..", ".", ".hidden", "..%2Fx", "%2e%2e%2fx", "a%2Fb", "a\\b", "a:b", "%00", "a~"})
    {
        client::Call made = uploadCall("", "x");
        made.url = server().url();
        made.rawTarget = "/VIID/Upload/" + name;
        EXPECT_EQ(client::perform(made).status, 400) << name;
    }
    for (const std::string name : {"../x", "a/b", "../../x", "a/../b", "/x"})
    {
        client::Call made = uploadCall("", "x");
        made.url = server().url();
        made.rawTarget = "/VIID/Upload/" + name;
        EXPECT_EQ(client::perform(made).status, 404) << name;
    }
    EXPECT_EQ(upload("/VIID/Upload/" + std::string(129, 'a'), "x").status, 400);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(upload("/VIID/Upload/" + std::string(128, 'a'), "x").status, 200);
    EXPECT_EQ(upload("/VIID/Upload/Az09._-", "x").status, 200);
}

TEST_F(UploadDirectoryTest, ALinkIsNotFollowed)
{
    start();
    std::filesystem::create_symlink(config.storage + "/elsewhere", config.storage + "/uploads/video.ps");
    EXPECT_EQ(upload(path, "x").status, 500);
    EXPECT_FALSE(std::filesystem::exists(config.storage + "/elsewhere"));
}

TEST_F(UploadDirectoryTest, AStorageFaultIsAnswered)
{
    start();
    std::filesystem::remove_all(config.storage + "/uploads");
    const Result result = upload(path, "x");
    EXPECT_EQ(result.status, 500);
    EXPECT_EQ(at(result.body, status + "StatusCode"), "1");
    EXPECT_EQ(at(result.body, status + "StatusString"), R"("storage: No such file or directory")");
}

} // namespace
