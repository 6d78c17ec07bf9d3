/* SPDX-License-Identifier: Apache-2.0 */
/* What all posts of this folder have in common, operation by operation. */
#include <limits>
#include <map>

#include "tests/support/transfer_fixture.h"
#include "tests/transfer/operations.h"

namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

struct Posts : TransferTest, testing::WithParamInterface<Operation>
{
    void SetUp() override
    {
        TransferTest::SetUp();
        connect();
        logAt(1);
    }

    const Operation& operation() const
    {
        return GetParam();
    }

    Where where() const
    {
        return {server.url("/doors/7?kind=card"), "127.0.0.1", server.port()};
    }

    /* Its answer, where it is left to the process, would stand among the test's own lines. */
    u32 call(u32 platform = 0, std::string* output = nullptr)
    {
        u32 result = 0;
        const std::string written = outputOf([&] { result = operation().call(platform, where()); });
        if (output != nullptr)
        {
            *output = written;
        }
        return result;
    }

    bool needsRegistration() const
    {
        return std::string(operation().name) != "PubSecPosLogWriteMSG";
    }

    bool testsItsPlatform() const
    {
        return std::string(operation().name) == "PubSecPostDispositionNotification";
    }

    /* Without the trace lines of the one that has them. */
    std::vector<std::string> errors()
    {
        std::vector<std::string> found;
        for (const std::string& error : newErrors(operation().name))
        {
            if (error.find(" line:") != 1)
            {
                found.push_back(error);
            }
        }
        return found;
    }
};

INSTANTIATE_TEST_SUITE_P(Operations, Posts, testing::ValuesIn(operations()),
                         [](const testing::TestParamInfo<Operation>& parameter) { return parameter.param.name; });

std::vector<std::string> fields(const viewlib::Exchange& exchange)
{
    std::vector<std::string> lines;
    for (const viewlib::Header& header : exchange.headers)
    {
        lines.push_back(header.name + ":" + header.value);
    }
    return lines;
}

TEST_P(Posts, SendOneRequest)
{
    server.always("*", viewlib::Answer(200));
    EXPECT_EQ(call(), 50u);
    const std::vector<viewlib::Exchange> exchanges = server.exchanges();
    ASSERT_EQ(exchanges.size(), 1u);
    EXPECT_EQ(exchanges[0].method, "POST");
    EXPECT_EQ(exchanges[0].target, operation().target);
    EXPECT_EQ(exchanges[0].body, operation().body);
    EXPECT_THAT(fields(exchanges[0]), ElementsAre("Host:127.0.0.1:" + std::to_string(server.port()), "localhost:8080",
                                                  "Accept:application/json,application/VIID+JSON",
                                                  "Content-Type:application/VIID+JSON;charset=UTF-8",
                                                  "Connection:Keep-alive", std::string("User-Identify:") + kFirstDevice,
                                                  "Content-Length:" + std::to_string(operation().body.size())));
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_THAT(curl_shim::callsOf("cleanup"), ElementsAre("cleanup()"));
}

TEST_P(Posts, GoAsTheirPlatform)
{
    server.always("*", viewlib::Answer(200));
    EXPECT_EQ(call(1), 50u);
    ASSERT_EQ(server.exchanges().size(), 1u);
    EXPECT_EQ(server.exchanges()[0].device(), needsRegistration() ? kSecondDevice : kFirstDevice);
}

TEST_P(Posts, SayWhatTheStatusMeans)
{
    const std::map<unsigned, u32> codes = {{200, 50}, {201, 50}, {204, 50}, {299, 50}, {300, 68}, {301, 68}, {302, 68},
                                           {307, 68}, {399, 68}, {400, 69}, {401, 70}, {402, 51}, {403, 51}, {404, 71},
                                           {405, 51}, {406, 51}, {407, 51}, {408, 72}, {409, 51}, {413, 51}, {499, 51},
                                           {500, 51}, {501, 73}, {502, 73}, {503, 73}, {599, 73}};
    for (const auto& [status, code] : codes)
    {
        viewlib::Answer scripted(status);
        scripted.with("Location", "/VIID/Elsewhere");
        server.script("*", scripted);
        EXPECT_EQ(call(), code) << status;
    }
    EXPECT_EQ(server.exchanges().size(), codes.size()); /* none twice */
    for (const auto& [status, code] : std::map<long, u32>{{0, 51}, {100, 51}, {199, 51}, {600, 73}, {999, 73}})
    {
        answer(status);
        EXPECT_EQ(call(), code) << status;
    }
}

/* The answer is captured by the one that reads it, and left to the process by the others. */
TEST_P(Posts, ReadTheAnswerOrLeaveIt)
{
    for (const char* body : {"document already exists", "{\"ResponseStatusListObject\":{}}", "plain"})
    {
        for (const auto& [status, code] : std::map<unsigned, u32>{{400, 69}, {200, 50}})
        {
            server.script("*", viewlib::Answer(status, body));
            std::string output;
            EXPECT_EQ(call(0, &output), code) << status << body;
            EXPECT_EQ(output, operation().reads ? "" : body) << status;
        }
    }
}

TEST_P(Posts, AskForNoMoreThanTheRegistration)
{
    g_bPubSecRegStatus[0] = 0;
    server.always("*", viewlib::Answer(200));
    if (!needsRegistration())
    {
        EXPECT_EQ(call(), 50u);
        return;
    }
    EXPECT_EQ(call(), 54u);
    EXPECT_THAT(errors(), ElementsAre(testsItsPlatform() ? "pubsec0 is not registed)." : "Device not registered! "));
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
    g_bPubSecRegStatus[1] = 7; /* anything but 0 */
    EXPECT_EQ(call(1), 50u);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_P(Posts, TakeAnyOtherPlatformForUnregistered)
{
    if (!needsRegistration())
    {
        return;
    }
    for (const u32 platform : {2u, 0x80000000u, std::numeric_limits<u32>::max()})
    {
        EXPECT_EQ(call(platform), testsItsPlatform() ? 80u : 54u) << platform;
    }
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
    EXPECT_THAT(server.exchanges(), IsEmpty());
}

TEST_P(Posts, SendNothingWithoutWhatTheyNeed)
{
    for (const auto& call : operation().null)
    {
        EXPECT_EQ(call(0, where()), 51u);
        if (!operation().nullErrors.empty())
        {
            EXPECT_THAT(errors(), ElementsAreArray(operation().nullErrors));
        }
    }
    EXPECT_THAT(curl_shim::calls(), IsEmpty());
    EXPECT_THAT(server.exchanges(), IsEmpty());
}

std::vector<std::string> callsFor(const Operation& operation, const std::string& url)
{
    std::vector<std::string> calls = {"global_init(3)", "easy_init()"};
    std::string lines;
    for (const std::string& line : headerLines(kFirstDevice))
    {
        calls.push_back("append(" + line + ")");
        lines += (lines.empty() ? "" : "|") + line;
    }
    for (const std::string& option :
         {"HTTPHEADER=" + lines, std::string("IPRESOLVE=0"), "URL=" + url, std::string("POST=1"),
          std::string("SSL_VERIFYPEER=0"), std::string("SSL_VERIFYHOST=0"), std::string("VERBOSE=0"),
          std::string("CONNECTTIMEOUT=30")})
    {
        calls.push_back("setopt(" + option + ")");
    }
    if (operation.bounded)
    {
        calls.push_back("setopt(TIMEOUT=30)");
    }
    calls.push_back("setopt(READFUNCTION=PubSecReadCB)");
    calls.push_back("setopt(READDATA=" + operation.body + ")");
    if (operation.reads)
    {
        calls.push_back("setopt(WRITEFUNCTION=_PubSecWriteCB)");
        calls.push_back("setopt(WRITEDATA=sink)");
    }
    calls.push_back("setopt(POSTFIELDSIZE=" + std::to_string(operation.body.size()) + ")");
    calls.insert(calls.end(), {"setopt(NOSIGNAL=1)", "perform()", "free(list)", "cleanup()"});
    return calls;
}

TEST_P(Posts, SetTheirOptionsInOrder)
{
    answer(200);
    EXPECT_EQ(call(), 50u);
    EXPECT_THAT(curl_shim::calls(), ElementsAreArray(callsFor(operation(), server.url(operation().target))));
    EXPECT_THAT(curl_shim::sentBodies(), ElementsAre(operation().body));
}

/* Exactly 1 switches it on. */
TEST_P(Posts, SpeakHttpsWhenToldTo)
{
    const bool fixed = operation().urlOfCaller || !needsRegistration();
    for (const auto& [flag, scheme] : std::map<u32, std::string>{{0, "http"}, {1, "https"}, {2, "http"}})
    {
        g_atPubSecStackGlobalCommon[0].dwHttpsEnable = flag;
        curl_shim::reset();
        answer(200);
        EXPECT_EQ(call(), 50u);
        const std::string url = server.url(operation().target);
        EXPECT_THAT(curl_shim::callsOf("setopt(URL="),
                    ElementsAre("setopt(URL=" + (fixed ? url : scheme + url.substr(url.find(':'))) + ")"));
    }
}

TEST_P(Posts, ReportThatLibcurlCannotBeInitialised)
{
    curl_shim::failGlobalInit(CURLE_FAILED_INIT);
    EXPECT_EQ(call(), 75u);
    EXPECT_THAT(errors(), ElementsAre("curl_global_init() failed: Failed initialization"));
    EXPECT_THAT(curl_shim::calls(), ElementsAre("global_init(3)"));
}

TEST_P(Posts, ReportThatThereIsNoHandle)
{
    curl_shim::failEasyInit();
    EXPECT_EQ(call(), operation().handleCode);
    EXPECT_THAT(errors(), ElementsAreArray(operation().handleErrors));
    EXPECT_THAT(curl_shim::calls(), ElementsAre("global_init(3)", "easy_init()"));
}

TEST_P(Posts, ReportThatThereAreNoHeaders)
{
    curl_shim::failAppend(0, 6);
    EXPECT_EQ(call(), 60u);
    const std::vector<std::string> lines = newLines();
    ASSERT_FALSE(lines.empty());
    const std::string head = std::string("[PubSecStack ERR] ") + operation().name + ":";
    ASSERT_EQ(lines.back().compare(0, head.size(), head), 0) << lines.back();
    const std::string number = std::to_string(std::stoi(lines.back().substr(head.size())));
    EXPECT_EQ(lines.back(), head + number + " ### [" + number + "] #### FillHeadMsgInfo Err!\n");
    EXPECT_THAT(curl_shim::callsOf("perform"), IsEmpty());
    EXPECT_THAT(curl_shim::callsOf("setopt"), IsEmpty());
}

TEST_P(Posts, GoOnWithTheHeadersThatThereAre)
{
    curl_shim::failAppend(1, 4);
    answer(200);
    EXPECT_EQ(call(), 50u);
    EXPECT_THAT(curl_shim::callsOf("setopt(HTTPHEADER"),
                ElementsAre(std::string("setopt(HTTPHEADER=localhost:8080|User-Identify:") + kFirstDevice + ")"));
}

TEST_P(Posts, ReportAFailedTransfer)
{
    for (const CURLcode failure : {CURLE_COULDNT_CONNECT, CURLE_OPERATION_TIMEDOUT, CURLE_GOT_NOTHING})
    {
        curl_shim::answer({failure, 200, "", ""});
        EXPECT_EQ(call(), 76u) << failure;
        EXPECT_THAT(errors(), ElementsAre(std::string("curl_easy_perform() failed: ") + curl_easy_strerror(failure)));
    }
    server.stop();
    EXPECT_EQ(call(), 76u);
    EXPECT_THAT(errors(), ElementsAre("curl_easy_perform() failed: Couldn't connect to server"));
}

TEST_P(Posts, TakeAWriteErrorForAnAnswer)
{
    for (const auto& [status, code] : std::map<long, u32>{{200, 50}, {404, 71}, {0, 51}})
    {
        curl_shim::answer({CURLE_WRITE_ERROR, status, "", ""});
        EXPECT_EQ(call(), code) << status;
    }
    EXPECT_THAT(curl_shim::callsOf("perform"), testing::SizeIs(3));
}

TEST_P(Posts, GoOnWhenAnOptionIsRefused)
{
    const CURLoption options[] = {CURLOPT_HTTPHEADER,     CURLOPT_IPRESOLVE, CURLOPT_SSL_VERIFYPEER,
                                  CURLOPT_SSL_VERIFYHOST, CURLOPT_VERBOSE,   CURLOPT_CONNECTTIMEOUT,
                                  CURLOPT_POSTFIELDSIZE,  CURLOPT_NOSIGNAL};
    for (const CURLoption option : options)
    {
        curl_shim::reset();
        curl_shim::refuse(option);
        answer(200);
        EXPECT_EQ(call(), 50u) << option;
        EXPECT_THAT(errors(), testing::Contains("curl_easy_setopt fault:").Times(1)) << option;
    }
}

/* Whatever the level, what was sent is the same; at level 0 no line is written. */
TEST_P(Posts, AreSilentAtLevelZero)
{
    logAt(0);
    newLines();
    answer(200);
    EXPECT_EQ(call(), 50u);
    curl_shim::answer({CURLE_COULDNT_CONNECT, 0, "", ""});
    EXPECT_EQ(call(), 76u);
    answer(400, "document already exists");
    EXPECT_EQ(call(), 69u);
    curl_shim::failGlobalInit(CURLE_FAILED_INIT);
    call();
    curl_shim::failEasyInit();
    call();
    curl_shim::failAppend(0, 6);
    call();
    g_bPubSecRegStatus[0] = 0;
    answer(200);
    call();
    EXPECT_THAT(newLines(), IsEmpty());
}

/* ---------------------------------------------------------------------------- what some of them have to themselves */

struct FewPosts : TransferTest
{
    void SetUp() override
    {
        TransferTest::SetUp();
        connect();
        logAt(1);
    }
};

TEST_F(FewPosts, AUrlIsCutAtItsBuffer)
{
    const std::string id(600, 'i');
    const std::string beginning = server.url("/VIID/Images/");
    answer(200);
    EXPECT_EQ(PubSecPostImageData(0, id.c_str(), "{}"), 50u);
    EXPECT_THAT(curl_shim::callsOf("setopt(URL"),
                ElementsAre("setopt(URL=" + (beginning + id + "/Data").substr(0, 511) + ")"));
}

TEST_F(FewPosts, AUrlOfTheCallersIsTakenWhole)
{
    const std::string url = server.url("/" + std::string(2000, 'u'));
    const TPubSecAccessRecordInfo record = {};
    answer(200);
    EXPECT_EQ(PubSecPostAccRecInf(0, &record, url.c_str()), 50u);
    EXPECT_THAT(curl_shim::callsOf("setopt(URL"), ElementsAre("setopt(URL=" + url + ")"));
}

TEST_F(FewPosts, ANullUrlIsRefusedByLibcurl)
{
    TPubSecAccessRecordInfo record = {};
    record.dwRecordNum = 1;
    EXPECT_EQ(PubSecPostAccRecInf(0, &record, nullptr), 76u);
    EXPECT_THAT(newErrors("PubSecPostAccRecInf"), testing::SizeIs(1));
    EXPECT_EQ(PubSecPostAccRecInfList(0, &record, nullptr), 76u);
    EXPECT_THAT(curl_shim::callsOf("perform"), testing::SizeIs(2));
}

TEST_F(FewPosts, AnEmptyListOfViolationsIsSent)
{
    const TPubSecIllegalRecordInfo record = {};
    answer(200);
    EXPECT_EQ(PubSecPostIllRecd(0, &record), 50u);
    answer(200);
    EXPECT_EQ(PubSecPostIllRecdEx(0, 0, &record), 50u);
    EXPECT_THAT(curl_shim::sentBodies(), ElementsAre(R"({"IllegalRecordListObject":{"IllegalRecordObject":[]}})",
                                                     R"({"IllegalRecordListObject":{"IllegalRecordObject":[]}})"));
}

TEST_F(FewPosts, NonMotorViolationsAreCountedInADebugLine)
{
    std::vector<TPubSecNonMotorIllegalRecordInfo> records(300);
    records[0].wSubImageNum = 65535;
    const std::string line = "[PubSecStack DBG] PubSecPostNonMotorIllRecd: wIlleRecdrNum=300,wSubImageNum=65535.\n";
    for (const s32 level : {1, 2})
    {
        logAt(level);
        answer(200);
        EXPECT_EQ(PubSecPostNonMotorIllRecd(0, 300, records.data()), 50u);
        EXPECT_THAT(newLines(), testing::Not(testing::Contains(HasSubstr("wIlleRecdrNum"))));
    }
    logAt(3);
    answer(200);
    EXPECT_EQ(PubSecPostNonMotorIllRecd(0, 300, records.data()), 50u);
    EXPECT_THAT(newLines(), testing::Contains(line).Times(1));
}

TEST_F(FewPosts, WrappedSliceDataIsMeasuredInDebugLines)
{
    logAt(2);
    answer(200);
    EXPECT_EQ(PubSecPostVideoSliceDataEx(0, "ID-1", "QUJDREVG"), 50u);
    EXPECT_THAT(newLines(), testing::Not(testing::Contains(HasSubstr(" len="))));
    logAt(3);
    answer(200);
    EXPECT_EQ(PubSecPostVideoSliceDataEx(0, "ID-1", "QUJDREVG"), 50u);
    std::vector<std::string> lines;
    for (const std::string& line : newLines())
    {
        if (line.find(" len=") != std::string::npos)
        {
            lines.push_back(line);
        }
    }
    EXPECT_THAT(lines, ElementsAre("[PubSecStack DBG] PubSecPostVideoSliceDataEx: ptVideoSliceDataBase64 len=8.\n",
                                   "[PubSecStack DBG] PubSecPostVideoSliceDataEx: ptBodyBuf len=40.\n"));
}

/* Empty texts are something to send. */
TEST_F(FewPosts, EmptyDataIsSent)
{
    server.always("*", viewlib::Answer(200, ""));
    EXPECT_EQ(PubSecPostFileData(0, "", ""), 50u);
    ASSERT_EQ(server.exchanges().size(), 1u);
    EXPECT_EQ(server.exchanges()[0].target, "/VIID/Files//Data");
    EXPECT_EQ(server.exchanges()[0].body, "");
    EXPECT_EQ(server.exchanges()[0].header("Content-Length"), "0");
    EXPECT_EQ(PubSecPostVideoSliceDataEx(0, "i", ""), 50u);
    EXPECT_EQ(server.exchanges()[1].body, R"({"VideoDataObject":{"VData":""}})");
}

TEST_F(FewPosts, LargeDataArrivesWhole)
{
    server.always("*", viewlib::Answer(200, ""));
    const std::string body(5000000, 'b');
    EXPECT_EQ(PubSecPostImageData(0, "i", body.c_str()), 50u);
    ASSERT_EQ(server.exchanges().size(), 1u);
    EXPECT_TRUE(server.exchanges()[0].body == body);
}

} // namespace
