/* SPDX-License-Identifier: Apache-2.0 */
/* Readers of the servers' answers. */
#include "core/http.h"
#include "session/session.h"
#include "tests/support/stack_test.h"

using log_lines::info;
using log_lines::IsError;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

/* Answers that are no JSON at all, and where reading them ends. */
struct Garbage
{
    const char* text;
    const char* rest;
};

const Garbage kGarbage[] = {
    {"not json", "not json"},
    {"<html><body>404</body></html>", "<html><body>404</body></html>"},
    {"{\"ResponseStatusListObject\":", ""},
    {"{\"ResponseStatusObject\":{\"StatusCode\":\"0\"", ""},
    {"{\"a\":tru}", "tru}"},
    {"[1,2", ""},
    {"   ", ""},
};

/* ------------------------------------------------------------------------------------------------------- status lists
 */

class StatusListTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        logAt(3);
    }

    u32 read(const std::string& text)
    {
        std::memset(out, '#', sizeof(out));
        return _PubSecParseSerData(text.c_str(), out);
    }

    bool isUntouched() const
    {
        return std::string(out, sizeof(out)) == std::string(sizeof(out), '#');
    }

    char out[260];
};

constexpr const char* kListReader = "_PubSecParseSerData";

TEST_F(StatusListTest, TheStatusStringIsRead)
{
    EXPECT_EQ(read(R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"RequestURL":"/VIID/Faces","StatusCode":0,)"
                   R"("StatusString":"OK","Id":"1"}]}})"),
              1u);
    EXPECT_STREQ(out, "OK");
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info(kListReader, "cJSON_GetArraySize: size=1"), info(kListReader, "StatusString:OK")));
}

TEST_F(StatusListTest, TheLastStatusStringWins)
{
    EXPECT_EQ(
        read(
            R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":"Fail"},{"StatusString":"OK"}]}})"),
        1u);
    EXPECT_STREQ(out, "OK");
    EXPECT_THAT(fake_platform::logLinesWith("size=2").size(), 1u);
}

TEST_F(StatusListTest, NothingOfAnEarlierTextStaysBehindTheLast)
{
    EXPECT_EQ(
        read(
            R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":"A long refusal"},{"StatusString":"OK"}]}})"),
        1u);
    EXPECT_EQ(std::string(out, 16), "OK" + std::string(14, '\0'));
}

TEST_F(StatusListTest, ElementsWithoutAStatusStringArePassedOver)
{
    EXPECT_EQ(
        read(
            R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":"first"},{"StatusCode":1},{},7,null]}})"),
        1u);
    EXPECT_STREQ(out, "first");
    EXPECT_THAT(fake_platform::logLinesWith("size=5").size(), 1u);
}

TEST_F(StatusListTest, AStatusStringThatIsNoTextIsPassedOver)
{
    EXPECT_EQ(
        read(R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":"first"},{"StatusString":7},)"
             R"({"StatusString":null},{"StatusString":{}},{"StatusString":[]}]}})"),
        1u);
    EXPECT_STREQ(out, "first");
}

TEST_F(StatusListTest, AnEmptyArrayIsReadAndLeavesTheText)
{
    EXPECT_EQ(read(R"({"ResponseStatusListObject":{"ResponseStatusObject":[]}})"), 1u);
    EXPECT_TRUE(isUntouched());
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(info(kListReader, "cJSON_GetArraySize: size=0")));
}

TEST_F(StatusListTest, AnEmptyStatusStringIsAText)
{
    EXPECT_EQ(
        read(R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":"x"},{"StatusString":""}]}})"),
        1u);
    EXPECT_STREQ(out, "");
}

TEST_F(StatusListTest, TwoHundredAndFiftySixCharactersFit)
{
    const auto listOf = [](const std::string& text) {
        return R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":")" + text + "\"}]}}";
    };
    EXPECT_EQ(read(listOf(std::string(255, 's'))), 1u);
    EXPECT_EQ(std::string(out), std::string(255, 's'));
    EXPECT_EQ(read(listOf(std::string(256, 's'))), 1u);
    EXPECT_EQ(std::string(out), std::string(256, 's'));
    EXPECT_EQ(read(listOf(std::string(256, 's') + "t")), 1u);
    EXPECT_EQ(std::string(out), std::string(256, 's'));
    EXPECT_EQ(read(listOf(std::string(5000, 's'))), 1u);
    EXPECT_EQ(std::string(out), std::string(256, 's'));
}

TEST_F(StatusListTest, WithoutListOrArrayNothingIsRead)
{
    for (const char* text : {"{}", "[]", "null", "7", R"("text")", R"({"ResponseStatusObject":[{"StatusString":"x"}]})",
                             R"({"ResponseStatusObject":{"StatusString":"x"}})", R"({"ResponseStatusListObject":{}})",
                             R"({"ResponseStatusListObject":null})", R"({"ResponseStatusListObject":[]})"})
    {
        EXPECT_EQ(read(text), 0u) << text;
        EXPECT_TRUE(isUntouched()) << text;
    }
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
}

TEST_F(StatusListTest, KeysAreFoundInAnyCase)
{
    EXPECT_EQ(read(R"({"responsestatuslistobject":{"RESPONSESTATUSOBJECT":[{"statusstring":"OK"}]}})"), 1u);
    EXPECT_STREQ(out, "OK");
}

TEST_F(StatusListTest, GarbageIsShownFromWhereItCannotBeRead)
{
    for (const Garbage& garbage : kGarbage)
    {
        fake_platform::reset();
        EXPECT_EQ(read(garbage.text), 0u) << garbage.text;
        EXPECT_TRUE(isUntouched()) << garbage.text;
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsError(kListReader, "Error before: [" + std::string(garbage.rest) + "]")))
            << garbage.text;
    }
}

TEST_F(StatusListTest, AnEmptyAnswerIsNotRead)
{
    EXPECT_EQ(read(""), 0u);
    EXPECT_TRUE(isUntouched());
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError(kListReader, "Error before: []")));
}

TEST_F(StatusListTest, NoAnswerIsNotRead)
{
    std::memset(out, '#', sizeof(out));
    EXPECT_EQ(_PubSecParseSerData(nullptr, out), 0u);
    EXPECT_TRUE(isUntouched());
}

TEST_F(StatusListTest, DeepNestingIsRefusedAndDoesNotEndTheProcess)
{
    EXPECT_EQ(read(std::string(1000000, '[')), 0u);
}

TEST_F(StatusListTest, WhatFollowsTheDocumentDoesNotMatter)
{
    EXPECT_EQ(read(R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":"OK"}]}} and more)"), 1u);
    EXPECT_STREQ(out, "OK");
}

/* ------------------------------------------------------------------------------------------------ keepalive's answer
 */

class KeepaliveAnswerTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        logAt(3);
    }

    /* The code as text, or what says that none was read. */
    std::string read(const std::string& text)
    {
        char out[5] = {'#', '#', '#', '#', '#'};
        const u32 found = _PubSecKeepAliveParseJson(text.c_str(), out);
        EXPECT_EQ(out[4], '#');
        if (found == 0)
        {
            EXPECT_EQ(std::string(out, 4), "####");
            return "not read";
        }
        EXPECT_EQ(found, 1u);
        return out;
    }

    std::string code(const std::string& value)
    {
        return read(R"({"ResponseStatusObject":{"StatusCode":)" + value + "}}");
    }
};

constexpr const char* kCodeReader = "_PubSecKeepAliveParseJson";

TEST_F(KeepaliveAnswerTest, ANumberReadsAsItsDigits)
{
    EXPECT_EQ(code("0"), "0");
    EXPECT_EQ(code("4"), "4");
    EXPECT_EQ(code("10"), "10");
    EXPECT_EQ(code("999"), "999");
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info(kCodeReader, "StatusCode:0"), info(kCodeReader, "StatusCode:4"),
                            info(kCodeReader, "StatusCode:10"), info(kCodeReader, "StatusCode:999")));
}

TEST_F(KeepaliveAnswerTest, ANumberIsCutAtThreeDigits)
{
    EXPECT_EQ(code("1000"), "100");
    EXPECT_EQ(code("99999999999999999999"), "214"); /* the largest integer */
}

TEST_F(KeepaliveAnswerTest, ATextReadsAsZero)
{
    EXPECT_EQ(code(R"("10")"), "0");
    EXPECT_EQ(code(R"("0")"), "0");
    EXPECT_EQ(code(R"("")"), "0");
    EXPECT_EQ(code(R"("a longer text")"), "0");
}

TEST_F(KeepaliveAnswerTest, ANegativeNumberReadsAsNothing)
{
    EXPECT_EQ(code("-1"), "");
    EXPECT_EQ(code("-1000"), "");
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info(kCodeReader, "StatusCode:"), info(kCodeReader, "StatusCode:")));
}

TEST_F(KeepaliveAnswerTest, OtherValuesReadAsTheirInteger)
{
    EXPECT_EQ(code("null"), "0");
    EXPECT_EQ(code("false"), "0");
    EXPECT_EQ(code("true"), "1");
    EXPECT_EQ(code("{}"), "0");
    EXPECT_EQ(code("4.9"), "4");
}

TEST_F(KeepaliveAnswerTest, TheMessagesNameTheOtherObject)
{
    EXPECT_EQ(read("{}"), "not read");
    EXPECT_EQ(read(R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusCode":0}]}})"), "not read");
    EXPECT_EQ(read(R"({"ResponseStatusObject":{}})"), "not read");
    EXPECT_EQ(read(R"({"ResponseStatusObject":[{"StatusCode":0}]})"), "not read");
    EXPECT_EQ(read(R"({"ResponseStatusObject":7})"), "not read");
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError(kCodeReader, "Not Find ResponseStatusListObject!"),
                                                       IsError(kCodeReader, "Not Find ResponseStatusListObject!"),
                                                       IsError(kCodeReader, "Not Find ResponseStatusObject!"),
                                                       IsError(kCodeReader, "Not Find ResponseStatusObject!"),
                                                       IsError(kCodeReader, "Not Find ResponseStatusObject!")));
}

TEST_F(KeepaliveAnswerTest, GarbageIsShownFromWhereItCannotBeRead)
{
    for (const Garbage& garbage : kGarbage)
    {
        fake_platform::reset();
        EXPECT_EQ(read(garbage.text), "not read") << garbage.text;
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsError(kCodeReader, "Error before: [" + std::string(garbage.rest) + "]")));
    }
}

TEST_F(KeepaliveAnswerTest, NoneIsNotRead)
{
    EXPECT_EQ(read(""), "not read");
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError(kCodeReader, "Error before: []")));
    char out[4] = {'#', '#', '#', '#'};
    EXPECT_EQ(_PubSecKeepAliveParseJson(nullptr, out), 0u);
    EXPECT_EQ(std::string(out, 4), "####");
}

/* -------------------------------------------------------------------------------------------------- the server's time
 */

class TimeAnswerTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        logAt(3);
    }

    u32 read(const std::string& text)
    {
        std::memset(&time, 0, sizeof(time));
        return _PubSecSystemTimeParseJson(text.c_str(), &time);
    }

    TPubSecSystemTime time;
};

constexpr const char* kTimeReader = "_PubSecSystemTimeParseJson";

TEST_F(TimeAnswerTest, TheFourTextsAreReadAndThreeAreLogged)
{
    EXPECT_EQ(read(R"({"SystemTimeObject":{"VIIDServerID":"44000000005030000001","TimeMode":"1",)"
                   R"("LocalTime":"20240229235960","TimeZone":"UTC+8"}})"),
              1u);
    EXPECT_STREQ(time.achVIIDServerID, "44000000005030000001");
    EXPECT_STREQ(time.achTimeMode, "1");
    EXPECT_STREQ(time.achLocalTime, "20240229235960");
    EXPECT_STREQ(time.achTimeZone, "UTC+8");
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info(kTimeReader, "TimeMode:1"), info(kTimeReader, "LocalTime:20240229235960"),
                            info(kTimeReader, "TimeZone:UTC+8")));
}

TEST_F(TimeAnswerTest, EachTextIsCutAtItsField)
{
    const std::string longText(300, 'x');
    EXPECT_EQ(read(R"({"SystemTimeObject":{"VIIDServerID":")" + longText + R"(","TimeMode":")" + longText +
                   R"(","LocalTime":")" + longText + R"(","TimeZone":")" + longText + "\"}}"),
              1u);
    EXPECT_EQ(std::string(time.achVIIDServerID), std::string(31, 'x'));
    EXPECT_EQ(std::string(time.achTimeMode), std::string(3, 'x'));
    EXPECT_EQ(std::string(time.achLocalTime), std::string(31, 'x'));
    EXPECT_EQ(std::string(time.achTimeZone), std::string(63, 'x'));
}

TEST_F(TimeAnswerTest, ValuesThatAreNoTextLeaveTheirField)
{
    EXPECT_EQ(
        read(R"({"SystemTimeObject":{"VIIDServerID":null,"TimeMode":1,"LocalTime":1709251200000,"TimeZone":{}}})"), 1u);
    const TPubSecSystemTime empty = {};
    EXPECT_EQ(std::memcmp(&time, &empty, sizeof(time)), 0);
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(info(kTimeReader, "TimeMode:"), info(kTimeReader, "LocalTime:"),
                                                       info(kTimeReader, "TimeZone:")));
}

TEST_F(TimeAnswerTest, EachKeyIsRequiredInOrder)
{
    EXPECT_EQ(read(R"({"SystemTimeObject":{}})"), 0u);
    EXPECT_EQ(read(R"({"SystemTimeObject":{"VIIDServerID":"i"}})"), 0u);
    EXPECT_EQ(read(R"({"SystemTimeObject":{"VIIDServerID":"i","TimeMode":"1"}})"), 0u);
    EXPECT_STREQ(time.achVIIDServerID, "i");
    EXPECT_EQ(read(R"({"SystemTimeObject":{"VIIDServerID":"i","TimeMode":"1","LocalTime":"l"}})"), 0u);
    EXPECT_STREQ(time.achLocalTime, "l");
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError(kTimeReader, "cannot find VIIDServerID !Please Check Again !"),
                            IsError(kTimeReader, "cannot find TimeMode! Please Check Again !"),
                            info(kTimeReader, "TimeMode:1"),
                            IsError(kTimeReader, "cannot find LocalTime !Please Check Again !"),
                            info(kTimeReader, "TimeMode:1"), info(kTimeReader, "LocalTime:l"),
                            IsError(kTimeReader, "cannot find string TimeZone!Please Check Again !")));
}

TEST_F(TimeAnswerTest, WithoutTheObjectNothingIsSaid)
{
    for (const char* text : {"{}", "[]", "7", R"({"LocalTime":"20240229235960"})"})
    {
        EXPECT_EQ(read(text), 0u) << text;
    }
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
}

TEST_F(TimeAnswerTest, GarbageIsShownFromWhereItCannotBeRead)
{
    for (const Garbage& garbage : kGarbage)
    {
        fake_platform::reset();
        EXPECT_EQ(read(garbage.text), 0u) << garbage.text;
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsError(kTimeReader, "Error before: [" + std::string(garbage.rest) + "]")));
    }
    EXPECT_EQ(read(""), 0u);
    EXPECT_EQ(_PubSecSystemTimeParseJson(nullptr, &time), 0u);
}

} // namespace
