/* SPDX-License-Identifier: Apache-2.0 */
/* The post of video slices: its trace, and the answer that it reads. */
#include "tests/support/transfer_fixture.h"
#include "tests/support/transfer_records.h"

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct VideoSlicePost : TransferTest
{
    void SetUp() override
    {
        TransferTest::SetUp();
        connect();
        logAt(1);
        record.ptVideoSlice = &slice;
        record.nVideoSliceNum = 1;
        std::memset(status, 'x', sizeof(status));
    }

    u32 post()
    {
        return PubSecPostVideoSlice(0, &record, status);
    }

    /* The lines of the operation, with "<n> line" for each trace point whose two numbers are the same. */
    std::vector<std::string> trace()
    {
        const std::string head = "[PubSecStack ERR] PubSecPostVideoSlice:";
        std::vector<std::string> points;
        for (const std::string& line : newLines())
        {
            if (line.compare(0, head.size(), head) != 0)
            {
                continue;
            }
            const size_t blank = line.find(' ', head.size());
            const std::string number = line.substr(head.size(), blank - head.size());
            const std::string rest = line.substr(blank + 1);
            const bool isPoint = rest.size() > 1 && rest.substr(1) == " line:" + number + " \n";
            points.push_back(isPoint ? rest.substr(0, 1) : rest);
        }
        return points;
    }

    /* The out-buffer: a text and nothing but zeros behind it. */
    void expectStatus(const std::string& text) const
    {
        EXPECT_EQ(std::string(status, sizeof(status)), text + std::string(sizeof(status) - text.size(), '\0'));
    }

    void expectUntouched() const
    {
        EXPECT_EQ(std::string(status, sizeof(status)), std::string(sizeof(status), 'x'));
    }

    TPubSecVideoSliceInfo slice = bare::slice("V1");
    TPubSecVideoSliceObj record = {};
    char status[260];
};

std::string statuses(const std::string& elements)
{
    return R"({"ResponseStatusListObject":{"ResponseStatusObject":[)" + elements + "]}}";
}

TEST_F(VideoSlicePost, TracesItsWayWithOneToEight)
{
    answer(200, statuses(R"({"StatusString":"OK"})"));
    EXPECT_EQ(post(), 50u);
    EXPECT_THAT(trace(), ElementsAre("1", "2", "3", "4", "5", "6", "7", "8"));
    expectStatus("OK");
}

TEST_F(VideoSlicePost, TracesToTheEndWhateverTheStatus)
{
    for (const long code : {400, 404, 500})
    {
        answer(code, statuses(""));
        post();
        EXPECT_THAT(trace(), ElementsAre("1", "2", "3", "4", "5", "6", "7", "8")) << code;
    }
}

TEST_F(VideoSlicePost, TracesWhereItEnds)
{
    g_bPubSecRegStatus[0] = 0;
    EXPECT_EQ(post(), 54u);
    EXPECT_THAT(trace(), ElementsAre("1", "Device not registered! \n"));
    g_bPubSecRegStatus[0] = 1;
    curl_shim::failGlobalInit(CURLE_FAILED_INIT);
    EXPECT_EQ(post(), 75u);
    EXPECT_THAT(trace(), ElementsAre("1", "curl_global_init() failed: Failed initialization\n"));
    curl_shim::failEasyInit();
    EXPECT_EQ(post(), 52u);
    EXPECT_THAT(trace(), ElementsAre("1", "2", "9"));
    curl_shim::failAppend(0, 6);
    EXPECT_EQ(post(), 60u);
    EXPECT_THAT(trace(), ElementsAre("1", "2", HasSubstr("FillHeadMsgInfo Err!")));
    curl_shim::answer({CURLE_COULDNT_CONNECT, 0, "", ""});
    EXPECT_EQ(post(), 76u);
    EXPECT_THAT(trace(), ElementsAre("1", "2", "3", "curl_easy_perform() failed: Couldn't connect to server\n"));
    EXPECT_EQ(PubSecPostVideoSlice(0, nullptr, status), 51u);
    EXPECT_THAT(trace(), ElementsAre("1"));
    expectUntouched();
}

size_t s_linesAtPerform;

TEST_F(VideoSlicePost, PointThreeFollowsTheTransfer)
{
    curl_shim::setPerformHook([](unsigned) { s_linesAtPerform = fake_platform::logLines().size(); });
    const size_t before = fake_platform::logLines().size();
    answer(200, statuses(""));
    EXPECT_EQ(post(), 50u);
    EXPECT_EQ(s_linesAtPerform - before, 2u);
}

TEST_F(VideoSlicePost, AWriteErrorIsAnAnswer)
{
    curl_shim::answer({CURLE_WRITE_ERROR, 200, "", ""});
    EXPECT_EQ(post(), 50u);
    EXPECT_THAT(trace(), ElementsAre("1", "2", "3", "4", "_PubSecParseSerData Fault! \n", "5", "6", "7", "8"));
    expectStatus("");
}

TEST_F(VideoSlicePost, GivesTheLastStatusText)
{
    server.script("*",
                  viewlib::Answer(200, statuses(R"({"StatusString":"first"},{"StatusString":"last"},{"Id":"x"})")));
    EXPECT_EQ(post(), 50u);
    expectStatus("last");
}

TEST_F(VideoSlicePost, AStatusTextHasAtMost256Characters)
{
    for (const size_t length : {size_t(255), size_t(256), size_t(257), size_t(300)})
    {
        answer(200, statuses(R"({"StatusString":")" + std::string(length, 's') + R"("})"));
        EXPECT_EQ(post(), 50u);
        expectStatus(std::string(std::min<size_t>(length, 256), 's'));
    }
}

TEST_F(VideoSlicePost, WithoutAStatusTextTheBufferIsZeros)
{
    for (const char* body : {"", "not JSON", "{}", R"({"ResponseStatusObject":{"StatusString":"OK"}})"})
    {
        std::memset(status, 'x', sizeof(status));
        answer(200, body);
        EXPECT_EQ(post(), 50u) << body;
        expectStatus("");
        EXPECT_THAT(trace(), ElementsAre("1", "2", "3", "4", "_PubSecParseSerData Fault! \n", "5", "6", "7", "8"))
            << body;
    }
    std::memset(status, 'x', sizeof(status));
    answer(200, statuses(""));
    EXPECT_EQ(post(), 50u);
    expectStatus("");
    EXPECT_THAT(trace(), testing::SizeIs(8));
}

TEST_F(VideoSlicePost, TheBufferMayBeMissing)
{
    answer(200, statuses(R"({"StatusString":"OK"})"));
    EXPECT_EQ(PubSecPostVideoSlice(0, &record, nullptr), 50u);
}

TEST_F(VideoSlicePost, ARefusalGivesItsStatusTextToo)
{
    for (const char* text : {"document already exists", "no VideoID"})
    {
        server.script(
            "*", viewlib::Answer(400, statuses(R"({"StatusCode":1,"StatusString":")" + std::string(text) + R"("})")));
        EXPECT_EQ(post(), 69u);
        expectStatus(text);
    }
    EXPECT_THAT(fake_platform::logLinesWith("Server Err Resp"), IsEmpty());
}

TEST_F(VideoSlicePost, ARefusalIsToldAtLevelTwo)
{
    const std::string line = "[PubSecStack INF] PubSecPostVideoSlice:  Server Err Resp:";
    logAt(2);
    answer(400, statuses(R"({"StatusString":"no VideoID"})"));
    EXPECT_EQ(post(), 69u);
    EXPECT_THAT(newLines(), testing::Contains(line + "no VideoID\n").Times(1));
    answer(400, "<html>");
    EXPECT_EQ(post(), 69u);
    EXPECT_THAT(newLines(), testing::Contains(line + "\n").Times(1));
    for (const long other : {200, 399, 401, 500})
    {
        answer(other, statuses(R"({"StatusString":"no VideoID"})"));
        post();
        EXPECT_THAT(newLines(), testing::Not(testing::Contains(HasSubstr("Server Err Resp")))) << other;
    }
}

/* An answer that no buffer holds ends the transfer, and the status decides. */
TEST_F(VideoSlicePost, AnAnswerOfMoreThan16MiBIsNotRead)
{
    for (const auto& [size, text] :
         {std::make_pair(size_t(16) << 20, "OK"), std::make_pair((size_t(16) << 20) + 1, "")})
    {
        std::string body = statuses(R"({"StatusString":"OK"})");
        body += std::string(size - body.size(), ' ');
        answer(201, body);
        EXPECT_EQ(post(), 50u);
        expectStatus(text);
    }
}

} // namespace
