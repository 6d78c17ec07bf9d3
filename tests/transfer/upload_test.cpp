/* SPDX-License-Identifier: Apache-2.0 */
/* Streaming a file to a server: what arrives, what the results are, which lines are written. */
#include <atomic>
#include <map>
#include <thread>

#include <dirent.h>
#include <unistd.h>

#include <pubsecstack/posts.h>

#include "post/file_upload.h"
#include "tests/support/transfer_files.h"
#include "tests/support/transfer_fixture.h"
#include "tests/support/transfer_peer.h"

namespace
{

/* What the file refuses: calls to seek that pass before one fails (below 0: none fails), and to tell. */
std::atomic<int> s_seeksThatPass{-1};
std::atomic<bool> s_tellFails{false};

} // namespace

PUBSEC_C_BEGIN

int __real_fseeko64(FILE* file, off64_t offset, int whence);
off64_t __real_ftello64(FILE* file);

/* The linker sends the library's calls here. */
int __wrap_fseeko64(FILE* file, off64_t offset, int whence)
{
    return s_seeksThatPass-- == 0 ? -1 : __real_fseeko64(file, offset, whence);
}

off64_t __wrap_ftello64(FILE* file)
{
    return s_tellFails ? -1 : __real_ftello64(file);
}

PUBSEC_C_END

namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr const char* kName = "PubSecCurlUpLoadFile";

MATCHER_P3(IsUploadLine, tag, function, text, std::string(tag) + " of " + function + ": " + text)
{
    const std::string head = std::string("[PUBSECSTACK ") + tag + "] " + function + ":";
    const std::string tail = std::string(" ") + text + "\n";
    return arg.size() > head.size() + tail.size() && arg.compare(0, head.size(), head) == 0 &&
           arg.compare(arg.size() - tail.size(), tail.size(), tail) == 0 &&
           arg.substr(head.size(), arg.size() - head.size() - tail.size()).find_first_not_of("0123456789") ==
               std::string::npos;
}

auto info(const std::string& text)
{
    return IsUploadLine("INF", kName, text);
}

auto error(const std::string& text)
{
    return IsUploadLine("ERR", kName, text);
}

auto measured(u32 size, u32 position)
{
    return info("fsize " + std::to_string(size) + " | FilePosLen " + std::to_string(position));
}

size_t openFiles()
{
    size_t count = 0;
    DIR* directory = opendir("/proc/self/fd");
    while (directory != nullptr && readdir(directory) != nullptr)
    {
        ++count;
    }
    closedir(directory);
    return count;
}

struct Upload : TransferTest
{
    void SetUp() override
    {
        TransferTest::SetUp();
        server.start();
        fake_platform::setTick(700);
        filesBefore = openFiles();
    }

    u32 upload(const char* path, u32 position = 0)
    {
        u32 result = 0;
        output = outputOf([&] { result = PubSecCurlUpLoadFile(server.url("/store?name=f").c_str(), path, position); });
        return result;
    }

    std::string output;
    size_t filesBefore = 0;
};

TEST_F(Upload, SendsTheFileFromAPositionToItsEnd)
{
    server.always("*", viewlib::Answer(200, ""));
    for (const size_t size : {size_t(0), size_t(1), size_t(70) * 1024, size_t(5) << 20})
    {
        const std::string content = mixedBytes(size);
        const TransferFile file(content);
        for (const size_t position : {size_t(0), size / 2, size})
        {
            SCOPED_TRACE(std::to_string(size) + " from " + std::to_string(position));
            server.clearExchanges();
            EXPECT_EQ(upload(file.path(), static_cast<u32>(position)), 50u);
            ASSERT_EQ(server.exchanges().size(), 1u);
            const viewlib::Exchange exchange = server.exchanges()[0];
            EXPECT_EQ(exchange.method, "POST");
            EXPECT_EQ(exchange.target, "/store?name=f");
            EXPECT_TRUE(exchange.complete);
            EXPECT_TRUE(exchange.body == content.substr(position));
            std::vector<std::string> fields;
            for (const viewlib::Header& header : exchange.headers)
            {
                fields.push_back(header.name + ":" + header.value);
            }
            EXPECT_THAT(fields, ElementsAre("Host:127.0.0.1:" + std::to_string(server.port()), "Accept:*/*",
                                            "content-type:application/octet-stream",
                                            "Content-Length:" + std::to_string(size - position)));
        }
    }
}

TEST_F(Upload, OptionsInOrder)
{
    const TransferFile file("0123456789");
    answer(200);
    EXPECT_EQ(upload(file.path(), 4), 50u);
    EXPECT_THAT(curl_shim::calls(),
                ElementsAre("global_init(3)", "easy_init()", "setopt(URL=" + server.url("/store?name=f") + ")",
                            "setopt(POST=1)", "setopt(READFUNCTION=read_callback)", "setopt(READDATA=file)",
                            "setopt(VERBOSE=0)", "setopt(POSTFIELDSIZE_LARGE=6)", "setopt(NOSIGNAL=1)",
                            "setopt(CONNECTTIMEOUT=15)", "setopt(NOPROGRESS=0)", "setopt(XFERINFOFUNCTION=ProcCBEx)",
                            "setopt(XFERINFODATA=1)", "append(Expect:)",
                            "append(content-type:application/octet-stream)",
                            "setopt(HTTPHEADER=Expect:|content-type:application/octet-stream)", "perform()",
                            "free(list)", "cleanup()"));
    EXPECT_THAT(curl_shim::sentBodies(), ElementsAre("456789"));
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST_F(Upload, GoesOnWithTheHeadersThatItHas)
{
    const TransferFile file("content");
    const std::vector<std::pair<unsigned, std::string>> left = {{0, "content-type:application/octet-stream"},
                                                                {1, "Expect:"}};
    for (const auto& [failing, headers] : left)
    {
        curl_shim::reset();
        curl_shim::failAppend(failing, 1);
        answer(200);
        EXPECT_EQ(upload(file.path()), 50u);
        EXPECT_THAT(curl_shim::callsOf("setopt(HTTPHEADER"), ElementsAre("setopt(HTTPHEADER=" + headers + ")"));
        EXPECT_THAT(curl_shim::sentBodies(), ElementsAre("content"));
    }
}

TEST_F(Upload, OnlyTwoStatusesAreGood)
{
    const TransferFile file("content");
    for (const auto& [status, code] : std::map<unsigned, u32>{{200, 50},
                                                              {201, 50},
                                                              {202, 65},
                                                              {204, 65},
                                                              {299, 65},
                                                              {300, 65},
                                                              {302, 65},
                                                              {400, 65},
                                                              {401, 65},
                                                              {403, 65},
                                                              {404, 65},
                                                              {408, 65},
                                                              {500, 65},
                                                              {501, 65},
                                                              {503, 65}})
    {
        server.script("*", viewlib::Answer(status, ""));
        newLines();
        EXPECT_EQ(upload(file.path()), code) << status;
        const std::vector<std::string> lines = newLines();
        ASSERT_EQ(lines.size(), code == 50 ? 2u : 3u) << status;
        if (code != 50)
        {
            EXPECT_THAT(lines.back(), error("curl_post Failed,Return:" + std::to_string(status) + "!"));
        }
    }
    answer(0);
    EXPECT_EQ(upload(file.path()), 65u);
}

TEST_F(Upload, LeavesTheAnswerToTheProcess)
{
    const TransferFile file("content");
    for (const unsigned status : {200u, 404u})
    {
        server.script("*", viewlib::Answer(status, "the answer"));
        upload(file.path());
        EXPECT_EQ(output, "the answer");
    }
}

TEST_F(Upload, NeedsNeitherAPlatformNorALogLevel)
{
    const TransferFile file(mixedBytes(70000));
    server.always("*", viewlib::Answer(200, ""));
    for (const s32 level : {0, 1, 3})
    {
        logAt(level);
        newLines();
        fake_platform::setTick(700);
        EXPECT_EQ(upload(file.path(), 1000), 50u);
        EXPECT_THAT(newLines(), ElementsAre(measured(70000, 1000), info("PubSecCurlUpLoadFile:g_ntick count:700")))
            << level;
    }
    fake_platform::setTick(0x80000000u);
    EXPECT_EQ(upload(file.path()), 50u);
    EXPECT_THAT(newLines(), ElementsAre(measured(70000, 0), info("PubSecCurlUpLoadFile:g_ntick count:-2147483648")));
}

TEST_F(Upload, AFileThatCannotBeOpened)
{
    EXPECT_EQ(upload("/nowhere/at all"), 79u);
    EXPECT_THAT(newLines(), ElementsAre(error("fopen '/nowhere/at all' Err")));
    EXPECT_EQ(upload(""), 79u);
    EXPECT_THAT(newLines(), ElementsAre(error("fopen '' Err")));
    EXPECT_EQ(upload(nullptr), 79u);
    EXPECT_THAT(newLines(), ElementsAre(testing::HasSubstr("[PUBSECSTACK ERR] PubSecCurlUpLoadFile:")));
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
}

/* It opens, and has neither a size nor a position. */
TEST_F(Upload, APipe)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string path = "/proc/self/fd/" + std::to_string(ends[0]);
    EXPECT_EQ(upload(path.c_str()), 79u);
    close(ends[0]);
    close(ends[1]);
    EXPECT_THAT(newLines(), ElementsAre(error("fopen '" + path + "' Err")));
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST_F(Upload, AFileWithoutASizeOrAPosition)
{
    const TransferFile file("content");
    const auto error79 = ElementsAre(error(std::string("fopen '") + file.path() + "' Err"));
    for (const int seeks : {0, 1})
    {
        s_seeksThatPass = seeks;
        EXPECT_EQ(upload(file.path()), 79u) << seeks;
        EXPECT_THAT(newLines(), error79) << seeks;
    }
    s_seeksThatPass = -1;
    s_tellFails = true;
    EXPECT_EQ(upload(file.path()), 79u);
    s_tellFails = false;
    EXPECT_THAT(newLines(), error79);
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST_F(Upload, LibcurlThatCannotBeInitialised)
{
    const TransferFile file("content");
    curl_shim::failGlobalInit(CURLE_FAILED_INIT);
    testing::internal::CaptureStderr();
    EXPECT_EQ(upload(file.path()), 75u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "curl_global_init() failed: Failed initialization\n");
    EXPECT_THAT(newLines(), ElementsAre(measured(7, 0)));
    EXPECT_EQ(openFiles(), filesBefore);
}

/* Reported as success, although nothing was sent. */
TEST_F(Upload, NoHandle)
{
    const TransferFile file("content");
    curl_shim::failEasyInit();
    EXPECT_EQ(upload(file.path()), 50u);
    EXPECT_THAT(newLines(), ElementsAre(measured(7, 0)));
    EXPECT_THAT(curl_shim::calls(), ElementsAre("global_init(3)", "easy_init()"));
    EXPECT_THAT(server.exchanges(), IsEmpty());
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST_F(Upload, AFailedTransferOfAnyKind)
{
    const TransferFile file("content");
    for (const CURLcode failure : {CURLE_COULDNT_CONNECT, CURLE_WRITE_ERROR, CURLE_ABORTED_BY_CALLBACK})
    {
        newLines();
        curl_shim::answer({failure, 200, "", ""});
        EXPECT_EQ(upload(file.path()), 76u) << failure;
        EXPECT_THAT(newLines(),
                    ElementsAre(testing::_, testing::_,
                                error(std::string("curl_easy_perform() failed: ") + curl_easy_strerror(failure))));
    }
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST_F(Upload, AServerThatIsGone)
{
    const TransferFile file("content");
    server.stop();
    EXPECT_EQ(upload(file.path()), 76u);
    EXPECT_THAT(newLines().back(), error("curl_easy_perform() failed: Couldn't connect to server"));
    EXPECT_EQ(PubSecCurlUpLoadFile(nullptr, file.path(), 0), 76u);
}

/* Posts take any certificate; the upload does not. */
TEST_F(Upload, VerifiesTheServersCertificate)
{
    const TransferFile file("content");
    viewlib::Config config;
    config.https = true;
    viewlib::Server secure(config);
    secure.always("*", viewlib::Answer(200, ""));
    secure.start();
    EXPECT_EQ(PubSecCurlUpLoadFile(secure.url("/store").c_str(), file.path(), 0), 76u);
    EXPECT_THAT(newLines().back(),
                error("curl_easy_perform() failed: SSL peer certificate or SSH remote key was not OK"));
    EXPECT_THAT(secure.exchanges(), IsEmpty());

    g_atPubSecStackGlobalCommon[0] = stack::configuration("127.0.0.1", secure.port());
    g_atPubSecStackGlobalCommon[0].dwHttpsEnable = 1;
    g_bPubSecRegStatus[0] = 1;
    EXPECT_EQ(PubSecPostFileData(0, "ID-1", "{}"), 50u);
    EXPECT_THAT(secure.exchanges(), testing::SizeIs(1));
}

TEST_F(Upload, RefusedOptionsDoNotMatter)
{
    const TransferFile file("content");
    for (const CURLoption option : {CURLOPT_VERBOSE, CURLOPT_NOSIGNAL, CURLOPT_CONNECTTIMEOUT, CURLOPT_HTTPHEADER})
    {
        curl_shim::reset();
        curl_shim::refuse(option);
        answer(200);
        newLines();
        EXPECT_EQ(upload(file.path()), 50u) << option;
        EXPECT_THAT(newLines(), testing::SizeIs(2));
    }
}

/* ---------------------------------------------------------------------------------------------------- large files */

constexpr std::uint64_t kThreeGiB = std::uint64_t(3) << 30;

TEST_F(Upload, AFileOfThreeGiBIsDeclaredWhole)
{
    const TransferFile file(kThreeGiB, "");
    TransferPeer peer;
    peer.plan({1 << 20, TransferPeer::Then::Cut});
    EXPECT_EQ(PubSecCurlUpLoadFile(peer.url("/store").c_str(), file.path(), 0), 76u);
    EXPECT_THAT(newLines()[0], measured(3221225472u, 0));
    ASSERT_EQ(peer.requests().size(), 1u);
    EXPECT_EQ(peer.requests()[0].declared, kThreeGiB);
    EXPECT_EQ(peer.requests()[0].body, std::string(1 << 20, '\0'));
}

TEST_F(Upload, TheEndOfAFileOfThreeGiB)
{
    const std::string tail = mixedBytes(1000);
    const TransferFile file(kThreeGiB, tail);
    server.always("*", viewlib::Answer(201, ""));
    EXPECT_EQ(upload(file.path(), static_cast<u32>(kThreeGiB - tail.size())), 50u);
    EXPECT_THAT(newLines()[0], measured(3221225472u, 3221224472u));
    ASSERT_EQ(server.exchanges().size(), 1u);
    EXPECT_TRUE(server.exchanges()[0].body == tail);
}

/* Sizes are 32 bits wide: of a file of 4 GiB and 5 bytes, 5 are declared. */
TEST_F(Upload, AFileOfMoreThanFourGiBIsDeclaredModuloFourGiB)
{
    const TransferFile file((std::uint64_t(4) << 30) + 5, "");
    TransferPeer peer;
    peer.plan({});
    PubSecCurlUpLoadFile(peer.url("/store").c_str(), file.path(), 0);
    EXPECT_THAT(newLines()[0], measured(5, 0));
    ASSERT_EQ(peer.requests().size(), 1u);
    EXPECT_EQ(peer.requests()[0].declared, 5u);
}

/* ---------------------------------------------------------------------------------------------- cut and taken up */

TEST_F(Upload, GoesOnWhereItWasCut)
{
    const std::string content = mixedBytes(1500000);
    const TransferFile file(content);
    TransferPeer peer;
    std::string held;
    for (const std::uint64_t share : {300000u, 1u, 700000u})
    {
        peer.plan({share, TransferPeer::Then::Cut});
        EXPECT_EQ(PubSecCurlUpLoadFile(peer.url("/store").c_str(), file.path(), static_cast<u32>(held.size())), 76u);
        const TransferPeer::Request request = peer.requests().back();
        EXPECT_EQ(request.declared, content.size() - held.size());
        ASSERT_EQ(request.body.size(), share);
        held += request.body;

        g_bPubSecRegStatus[0] = 1;
        server.script("/state", viewlib::Answer(200, R"({"TransDataInfObject":{"FileLength":)" +
                                                         std::to_string(held.size()) + R"(,"FileHash":"h"}})"));
        TPubSecTransDataInf state = {};
        ASSERT_EQ(PubSecGetTransDataInf(0, &state, server.url("/state").c_str(), nullptr), 50u);
        ASSERT_EQ(state.dwFileLength, held.size());
    }
    peer.plan({});
    EXPECT_EQ(PubSecCurlUpLoadFile(peer.url("/store").c_str(), file.path(), static_cast<u32>(held.size())), 50u);
    held += peer.requests().back().body;
    EXPECT_TRUE(held == content);
}

TEST_F(Upload, AnAnswerBeforeTheEndOfTheBody)
{
    const TransferFile file(mixedBytes(3000000));
    TransferPeer peer;
    peer.plan(
        {1000, TransferPeer::Then::Answer, "HTTP/1.1 413 Too Large\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"});
    const u32 result = PubSecCurlUpLoadFile(peer.url("/store").c_str(), file.path(), 0);
    EXPECT_TRUE(result == 65 || result == 76) << result; /* the reset that follows may overtake the answer */
}

TEST_F(Upload, TwoAtOnceBothArrive)
{
    const std::string contents[] = {mixedBytes(800000), mixedBytes(900001)};
    const TransferFile files[] = {TransferFile(contents[0]), TransferFile(contents[1])};
    server.always("*", viewlib::Answer(200, ""));
    u32 results[2] = {};
    std::thread other([&] { results[1] = PubSecCurlUpLoadFile(server.url("/1").c_str(), files[1].path(), 0); });
    results[0] = PubSecCurlUpLoadFile(server.url("/0").c_str(), files[0].path(), 0);
    other.join();
    for (const size_t index : {size_t(0), size_t(1)})
    {
        EXPECT_EQ(results[index], 50u);
        ASSERT_EQ(server.exchangesOf("/" + std::to_string(index)).size(), 1u);
        EXPECT_TRUE(server.exchangesOf("/" + std::to_string(index))[0].body == contents[index]);
    }
}

} // namespace
