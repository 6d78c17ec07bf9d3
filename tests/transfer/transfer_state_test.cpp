/* SPDX-License-Identifier: Apache-2.0 */
/* How much of a file the server holds, and as whom to ask. */
#include <limits>
#include <map>

#include "post/transfer_state.h"
#include "tests/support/transfer_fixture.h"

namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kName = "PubSecGetTransDataInf";
constexpr const char* kParser = "_PubSecParseTransDataResp";

struct TransferState : TransferTest
{
    void SetUp() override
    {
        TransferTest::SetUp();
        connect();
        logAt(1);
        stack::put(info.achFileHash, "before");
        info.dwFileLength = 77;
    }

    u32 ask(s32 platform = 0)
    {
        return PubSecGetTransDataInf(platform, &info, server.url("/state?file=1").c_str(), &code);
    }

    void expectUnchanged() const
    {
        EXPECT_STREQ(info.achFileHash, "before");
        EXPECT_EQ(info.dwFileLength, 77u);
    }

    TPubSecTransDataInf info = {};
    u32 code = 12345;
};

TEST_F(TransferState, IsAskedForWithOneHeader)
{
    server.script("/state", viewlib::Answer(200, R"({"TransDataInfObject":{"FileLength":1024,"FileHash":"abc"}})"));
    EXPECT_EQ(ask(), 50u);
    EXPECT_EQ(code, 200u);
    EXPECT_EQ(info.dwFileLength, 1024u);
    EXPECT_STREQ(info.achFileHash, "abc");
    ASSERT_EQ(server.exchanges().size(), 1u);
    const viewlib::Exchange exchange = server.exchanges()[0];
    EXPECT_EQ(exchange.method, "GET");
    EXPECT_EQ(exchange.target, "/state?file=1");
    EXPECT_EQ(exchange.body, "");
    std::vector<std::string> fields;
    for (const viewlib::Header& header : exchange.headers)
    {
        fields.push_back(header.name + ":" + header.value);
    }
    EXPECT_THAT(fields,
                ElementsAre("Host:127.0.0.1:" + std::to_string(server.port()), "Accept:*/*", "Content-Length:0"));
}

TEST_F(TransferState, OptionsInOrder)
{
    answer(200, R"({"TransDataInfObject":{}})");
    EXPECT_EQ(ask(1), 50u);
    std::vector<std::string> calls = {"global_init(3)", "easy_init()"};
    std::string lines;
    for (const std::string& line : headerLines(kSecondDevice))
    {
        calls.push_back("append(" + line + ")");
        lines += (lines.empty() ? "" : "|") + line;
    }
    const std::vector<std::string> rest = {"append(Content-Length:0)",
                                           "setopt(HTTPHEADER=" + lines + ")",
                                           "setopt(IPRESOLVE=0)",
                                           "setopt(URL=" + server.url("/state?file=1") + ")",
                                           "setopt(HTTPGET=1)",
                                           "setopt(SSL_VERIFYPEER=0)",
                                           "setopt(SSL_VERIFYHOST=0)",
                                           "setopt(VERBOSE=0)",
                                           "setopt(CONNECTTIMEOUT=30)",
                                           "setopt(TIMEOUT=30)",
                                           "setopt(WRITEFUNCTION=_PubSecWriteCB)",
                                           "setopt(WRITEDATA=sink)",
                                           "setopt(NOSIGNAL=1)",
                                           "setopt(HTTPHEADER=Content-Length:0)",
                                           "perform()",
                                           "free(list)",
                                           "free(list)",
                                           "cleanup()"};
    calls.insert(calls.end(), rest.begin(), rest.end());
    EXPECT_THAT(curl_shim::calls(), ElementsAreArray(calls));
}

TEST_F(TransferState, StatusesMeanWhatTheyMeanInPostsBut404IsGood)
{
    const std::map<unsigned, u32> codes = {{200, 50}, {201, 50}, {299, 50}, {300, 68}, {302, 68}, {399, 68},
                                           {400, 69}, {401, 70}, {402, 51}, {403, 51}, {404, 50}, {405, 51},
                                           {408, 72}, {409, 51}, {500, 51}, {501, 73}, {503, 73}};
    const std::string body = R"({"TransDataInfObject":{"FileLength":5,"FileHash":"h"}})";
    for (const auto& [status, result] : codes)
    {
        stack::put(info.achFileHash, "before");
        info.dwFileLength = 77;
        server.script("/state", viewlib::Answer(status, body));
        EXPECT_EQ(ask(), result) << status;
        EXPECT_EQ(code, status);
        if (result == 50)
        {
            EXPECT_EQ(info.dwFileLength, 5u) << status;
            EXPECT_STREQ(info.achFileHash, "h") << status;
        }
        else
        {
            expectUnchanged();
        }
    }
    for (const auto& [status, result] : std::map<long, u32>{{0, 51}, {199, 51}, {999, 73}})
    {
        answer(status, body);
        EXPECT_EQ(ask(), result) << status;
        EXPECT_EQ(code, static_cast<u32>(status));
    }
}

TEST_F(TransferState, AnAnswerThatCannotBeReadChangesNothing)
{
    for (const long status : {200L, 404L})
    {
        for (const char* body :
             {"", "not JSON", "{}", "[]", R"({"Other":{"FileLength":1}})", R"({"TransDataInfObject":7})"})
        {
            answer(status, body);
            EXPECT_EQ(ask(), 50u) << body;
            expectUnchanged();
        }
    }
    curl_shim::answer({CURLE_WRITE_ERROR, 200, "", ""});
    EXPECT_EQ(ask(), 50u);
    expectUnchanged();
}

TEST_F(TransferState, TheCodeAndTheRecordMayBeMissing)
{
    const std::string url = server.url("/state");
    answer(200, R"({"TransDataInfObject":{"FileLength":5}})");
    EXPECT_EQ(PubSecGetTransDataInf(0, &info, url.c_str(), nullptr), 50u);
    EXPECT_EQ(info.dwFileLength, 5u);
    answer(200, R"({"TransDataInfObject":{"FileLength":6}})");
    EXPECT_EQ(PubSecGetTransDataInf(0, nullptr, url.c_str(), &code), 50u);
    EXPECT_EQ(code, 200u);
    EXPECT_EQ(PubSecGetTransDataInf(0, &info, nullptr, &code), 76u);
    EXPECT_EQ(code, 200u);
}

TEST_F(TransferState, NeedsARegisteredPlatform)
{
    g_bPubSecRegStatus[0] = 0;
    for (const s32 platform : {0, 2, -1, std::numeric_limits<s32>::min()})
    {
        EXPECT_EQ(ask(platform), 54u) << platform;
        EXPECT_THAT(newErrors(kName), ElementsAre("Device not registered! "));
    }
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
    EXPECT_EQ(code, 12345u);
}

TEST_F(TransferState, TellsWhatLibcurlCouldNot)
{
    curl_shim::failGlobalInit(CURLE_FAILED_INIT);
    EXPECT_EQ(ask(), 75u);
    EXPECT_THAT(newErrors(kName), ElementsAre("curl_global_init() failed: Failed initialization"));
    curl_shim::failEasyInit();
    EXPECT_EQ(ask(), 75u);
    EXPECT_THAT(newErrors(kName), ElementsAre("curl_easy_init() failed"));
    curl_shim::failAppend(0, 6);
    EXPECT_EQ(ask(), 60u);
    EXPECT_THAT(newErrors(kName), ElementsAre(testing::MatchesRegex(R"(### \[[0-9]+\] #### FillHeadMsgInfo Err!)")));
    EXPECT_THAT(curl_shim::callsOf("perform"), IsEmpty());
    curl_shim::answer({CURLE_OPERATION_TIMEDOUT, 200, R"({"TransDataInfObject":{"FileLength":5}})", ""});
    EXPECT_EQ(ask(), 76u);
    EXPECT_THAT(newErrors(kName), ElementsAre("curl_easy_perform() failed: Timeout was reached"));
    EXPECT_EQ(code, 12345u);
    expectUnchanged();
}

/* The first list is only complained of; without the one header that counts nothing is sent. */
TEST_F(TransferState, ItsHeaderHasToBeSet)
{
    curl_shim::refuse(CURLOPT_HTTPHEADER);
    EXPECT_EQ(ask(), 74u);
    EXPECT_THAT(newErrors(kName), ElementsAre("curl_easy_setopt fault:",
                                              "easy_setopt Header failed:An unknown option was passed in to libcurl!"));
    EXPECT_THAT(curl_shim::callsOf("perform"), IsEmpty());
    EXPECT_EQ(code, 12345u);
    curl_shim::reset();
    curl_shim::refuse(CURLOPT_VERBOSE);
    answer(200);
    EXPECT_EQ(ask(), 50u);
    EXPECT_THAT(newErrors(kName), ElementsAre("curl_easy_setopt fault:"));
}

TEST_F(TransferState, IsNotAskedForAtAServerThatIsGone)
{
    server.stop();
    EXPECT_EQ(ask(), 76u);
    EXPECT_EQ(code, 12345u);
}

/* ---------------------------------------------------------------------------------------------- reading an answer */

struct TransferStateAnswer : TransferState
{
    u32 read(const std::string& members)
    {
        return _PubSecParseTransDataResp((R"({"TransDataInfObject":{)" + members + "}}").c_str(), &info);
    }
};

TEST_F(TransferStateAnswer, LengthsAreStoredWhole)
{
    const std::map<std::string, u32> lengths = {
        {"0", 0},    {"1", 1}, {"2147483647", 2147483647u}, {"2147483648", 2147483648u}, {"4294967295", 4294967295u},
        {"10.9", 10}};
    for (const auto& [text, length] : lengths)
    {
        info.dwFileLength = 77;
        EXPECT_EQ(read(R"("FileLength":)" + text), 1u);
        EXPECT_EQ(info.dwFileLength, length);
    }
    EXPECT_STREQ(info.achFileHash, "before");
}

/* What is no length is stored as the integer that the parser makes of it. */
TEST_F(TransferStateAnswer, NumbersBeyondLengthsAreStoredAsIntegers)
{
    const std::map<std::string, u32> numbers = {
        {"-1", 4294967295u}, {"-2147483649", 2147483648u}, {"4294967296", 2147483647u}, {"1e300", 2147483647u}};
    for (const auto& [text, stored] : numbers)
    {
        EXPECT_EQ(read(R"("FileLength":)" + text), 1u);
        EXPECT_EQ(info.dwFileLength, stored) << text;
    }
}

TEST_F(TransferStateAnswer, WhatIsMissingOrOfAnotherTypeIsToldAndKept)
{
    EXPECT_EQ(read(R"("FileHash":"h")"), 1u);
    EXPECT_EQ(info.dwFileLength, 77u);
    EXPECT_THAT(newErrors(kParser), ElementsAre("cannot find FileLength !Please Check Again !", "h\r"));
    EXPECT_EQ(read(R"("FileLength":"9","FileHash":"h")"), 1u);
    EXPECT_EQ(info.dwFileLength, 77u);
    EXPECT_THAT(newErrors(kParser), ElementsAre("cannot find type is not int Please Check Again !", "h\r"));
    stack::put(info.achFileHash, "before");
    EXPECT_EQ(read(R"("FileLength":9)"), 1u);
    EXPECT_THAT(newErrors(kParser), ElementsAre("cannot find string FileHash!Please Check Again !"));
    EXPECT_EQ(read(R"("FileLength":9,"FileHash":7)"), 1u);
    EXPECT_THAT(newErrors(kParser), ElementsAre("cannot find type is not string Please Check Again !"));
    EXPECT_STREQ(info.achFileHash, "before");
    EXPECT_EQ(info.dwFileLength, 9u);
}

TEST_F(TransferStateAnswer, WhatIsStoredIsTold)
{
    EXPECT_EQ(read(R"("FileLength":9,"FileHash":"h")"), 1u);
    EXPECT_THAT(newLines(), ElementsAre(log_lines::IsOpenError(kParser, "h\r\n")));
    logAt(2);
    EXPECT_EQ(read(R"("FileLength":9,"FileHash":"h")"), 1u);
    EXPECT_THAT(newLines(), ElementsAre("[PubSecStack INF] _PubSecParseTransDataResp: 9\r\n",
                                        log_lines::IsOpenError(kParser, "h\r\n")));
    logAt(0);
    EXPECT_EQ(read(R"("FileLength":9,"FileHash":"h")"), 1u);
    EXPECT_EQ(read(""), 1u);
    EXPECT_EQ(_PubSecParseTransDataResp("{", &info), 0u);
    EXPECT_THAT(newLines(), IsEmpty());
}

TEST_F(TransferStateAnswer, HashesAreCutToTheirField)
{
    for (const size_t length : {size_t(127), size_t(128), size_t(200)})
    {
        EXPECT_EQ(read(R"("FileHash":")" + std::string(length, 'f') + R"(")"), 1u);
        EXPECT_EQ(std::string(info.achFileHash, sizeof(info.achFileHash)),
                  std::string(127, 'f') + std::string(1, '\0'));
    }
    EXPECT_EQ(info.dwFileLength, 77u);
}

TEST_F(TransferStateAnswer, WithoutTheObjectNothingIsRead)
{
    EXPECT_EQ(_PubSecParseTransDataResp(nullptr, &info), 0u);
    newLines();
    EXPECT_EQ(_PubSecParseTransDataResp("", &info), 0u);
    EXPECT_THAT(newErrors(kParser), ElementsAre("Error before: []"));
    EXPECT_EQ(_PubSecParseTransDataResp("{}", &info), 0u);
    EXPECT_THAT(newLines(), IsEmpty());
    EXPECT_EQ(_PubSecParseTransDataResp(R"({"a":nonsense})", &info), 0u);
    EXPECT_THAT(newErrors(kParser), ElementsAre(HasSubstr("Error before: [")));
    EXPECT_EQ(_PubSecParseTransDataResp(R"({"TransDataInfObject":{}})", nullptr), 1u);
    expectUnchanged();
}

/* ---------------------------------------------------------------------------------------------- as whom to ask */

TEST_F(TransferState, TheDeviceOfAPlatform)
{
    char device[22];
    for (const auto& [platform, expected] : std::map<u16, std::string>{{0, kFirstDevice}, {1, kSecondDevice}})
    {
        std::memset(device, 'x', sizeof(device));
        EXPECT_EQ(PubSecStackGetUploadPartParam(platform, device), 50u);
        EXPECT_EQ(std::string(device, sizeof(device)), expected + std::string(1, '\0') + "x");
    }
    for (const u16 platform : {u16{2}, u16{65535}})
    {
        EXPECT_EQ(PubSecStackGetUploadPartParam(platform, device), 80u);
    }
    EXPECT_EQ(PubSecStackGetUploadPartParam(0, nullptr), 80u);
    EXPECT_STREQ(device, kSecondDevice);
    std::memset(g_atPubSecStackGlobalCommon[0].achDeviceID, '7', sizeof(g_atPubSecStackGlobalCommon[0].achDeviceID));
    EXPECT_EQ(PubSecStackGetUploadPartParam(0, device), 50u);
    EXPECT_EQ(std::string(device, sizeof(device)), std::string(20, '7') + std::string(1, '\0') + "x");
    g_bPubSecRegStatus[1] = 0; /* does not matter */
    EXPECT_EQ(PubSecStackGetUploadPartParam(1, device), 50u);
    EXPECT_STREQ(device, kSecondDevice);
}

} // namespace
