/* SPDX-License-Identifier: Apache-2.0 */
/* The device's clock by the server's: when it is asked for, how the answer is read, what the system service is told. */
#include <cstring>
#include <string>

#include "tests/support/session_faults.h"
#include "tests/support/session_fixture.h"

using fake_platform::Function;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using viewlib::Answer;

namespace
{

constexpr const char* kFunction = "PubSecGetSystemTimeMsg";
constexpr const char* kHandler = "_PubSecStackGetPlatformTimeTimerHandle";
constexpr const char* kParser = "_PubSecSystemTimeParseJson";

std::string timeAnswer(const std::string& localTime)
{
    return "{\"SystemTimeObject\":{\"VIIDServerID\":\"44000000005030000001\",\"TimeMode\":\"1\",\"LocalTime\":\"" +
           localTime + "\",\"TimeZone\":\"UTC+8\"}}";
}

/* "2024-2-29 23:59:60", as the service was told. */
std::string shown(const TNvrSysTime& time)
{
    return std::to_string(time.wYear) + "-" + std::to_string(time.byMonth) + "-" + std::to_string(time.byDay) + " " +
           std::to_string(time.byHour) + ":" + std::to_string(time.byMinute) + ":" + std::to_string(time.bySecond);
}

class ClockSync : public SessionTest
{
  protected:
    viewlib::Config serverConfig() const override
    {
        viewlib::Config config;
        config.registrationLifetime = std::chrono::milliseconds(0); /* the sessions here send no keepalives */
        return config;
    }

    /* Platform 0 registered at virtual 0; the clock is first asked at 500. */
    void startSession(u32 syncTimeMin = 5, u32 platform = 0)
    {
        TPubSecPlatRegInfo info = recordFor(server->port());
        info.dwKeepaliveSec = 100000;
        info.dwSyncTimeMin = syncTimeMin;
        configure(platform, info);
        passThen([this] { newLines(); });
    }

    static void elapse(const void* context, u32 event = 4)
    {
        _PubSecStackGetPlatformTimeTimerHandle(g_hAppTaskDelay, event, context);
    }

    /* Lines of the clock handler, the query and the reader, by the prefix of their function. */
    std::vector<std::string> clockLines()
    {
        std::vector<std::string> found;
        for (const std::string& line : newLines())
        {
            if (line.find(kHandler) != std::string::npos || line.find(kFunction) != std::string::npos ||
                line.find(kParser) != std::string::npos)
            {
                found.push_back(line);
            }
        }
        return found;
    }
};

TEST_F(ClockSync, AsksHalfASecondAfterRegistrationAndThenEveryPeriod)
{
    startSession(5);
    passes(1000);
    EXPECT_THAT(timesOf(kTime), ElementsAre(500u, 300500u, 600500u, 900500u));
    EXPECT_THAT(clockTimers(), SizeIs(1));
    EXPECT_EQ(clockTimers()[0].handle, g_ahSyncTimeTimer[0]);
    EXPECT_EQ(fake_platform::clockSets().size(), 4u);
}

TEST_F(ClockSync, AsksWithAGet)
{
    startSession();
    const viewlib::Exchange sent = server->exchangesOf(kTime).at(0);
    EXPECT_EQ(sent.method, "GET");
    EXPECT_EQ(sent.target, "/VIID/System/Time");
    EXPECT_EQ(sent.body, "");
    EXPECT_EQ(sent.header("User-Identify"), kDevice);
    EXPECT_FALSE(sent.hasHeader("Authorization"));
}

TEST_F(ClockSync, SetsTheClockAsSource8ForPlatform0)
{
    server->script(kTime, Answer(200, timeAnswer("20240307080910")));
    startSession(5, 0);
    const std::vector<fake_platform::ClockSet> sets = fake_platform::clockSets();
    ASSERT_THAT(sets, SizeIs(1));
    EXPECT_EQ(sets[0].source, 8u);
    TNvrSysTime expected = {};
    expected.wYear = 2024;
    expected.byMonth = 3;
    expected.byDay = 7;
    expected.byHour = 8;
    expected.byMinute = 9;
    expected.bySecond = 10;
    EXPECT_EQ(std::memcmp(&sets[0].time, &expected, sizeof(expected)), 0);
    EXPECT_EQ(sizeof(expected), 20u);
}

TEST_F(ClockSync, SetsTheClockAsSource9ForPlatform1)
{
    startSession(5, 1);
    const std::vector<fake_platform::ClockSet> sets = fake_platform::clockSets();
    ASSERT_THAT(sets, SizeIs(1));
    EXPECT_EQ(sets[0].source, 9u);
    EXPECT_EQ(sets[0].time.wYear, 2024u); /* the server shows the virtual clock */
}

TEST_F(ClockSync, IsSwitchedInMode0BeforeItIsSet)
{
    fake_platform::setTimeSwitchHook([](TNvrSysTime& time) { time.byHour = 23; });
    server->script(kTime, Answer(200, timeAnswer("20240307080910")));
    startSession();
    const std::vector<fake_platform::TimeSwitch> switches = fake_platform::timeSwitches();
    ASSERT_THAT(switches, SizeIs(1));
    EXPECT_EQ(switches[0].mode, 0u);
    EXPECT_EQ(shown(switches[0].time), "2024-3-7 8:9:10");
    EXPECT_EQ(shown(fake_platform::clockSets().at(0).time), "2024-3-7 23:9:10");
}

/* The success is announced on entry, and after it came true a failure is: every line stays as it is. */
TEST_F(ClockSync, LinesOfASuccess)
{
    server->script(kTime, Answer(200, timeAnswer("20240307080910")));
    startSession();
    EXPECT_THAT(clockLines(), ElementsAre(Inf(kHandler, "NvrSysSetSystemTime success."), Inf(kParser, "TimeMode:1"),
                                          Inf(kParser, "LocalTime:20240307080910"), Inf(kParser, "TimeZone:UTC+8"),
                                          Inf(kHandler, "PlatNum:0 |RegStatus:1 | Time[2024-3-7 8:9:10]"),
                                          Inf(kHandler, "NvrSysSetSystemTime success."),
                                          Err(kHandler, "NvrSysSetSystemTime is fail!eNvrRet:1000")));
}

TEST_F(ClockSync, LinesOfASystemServiceThatRefuses)
{
    fake_platform::fail(Function::kSetSystemTime, 7);
    server->script(kTime, Answer(200, timeAnswer("20240307080910")));
    startSession();
    const std::vector<std::string> lines = clockLines();
    ASSERT_THAT(lines, SizeIs(6));
    EXPECT_EQ(lines[0], Inf(kHandler, "NvrSysSetSystemTime success."));
    EXPECT_THAT(lines[5], Err(kHandler, "NvrSysSetSystemTime is fail!eNvrRet:7"));
    EXPECT_THAT(clockTimers(), SizeIs(1)); /* it is tried again after the period */
}

TEST_F(ClockSync, FailedSwitchSetsNothing)
{
    fake_platform::fail(Function::kTimeSwitch, 7);
    startSession();
    EXPECT_THAT(fake_platform::clockSets(), IsEmpty());
    const std::vector<std::string> lines = clockLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_THAT(lines.back(), Err(kHandler, "NvrSysTimeSwitch is fail!"));
    ASSERT_THAT(clockTimers(), SizeIs(1));
    EXPECT_EQ(clockTimers()[0].due, 300500u);
}

/* The digits are taken by position, whatever they say. */
struct LocalTime
{
    const char* name;
    const char* text;
    const char* set;
};

class ClockSyncDigits : public ClockSync, public testing::WithParamInterface<LocalTime>
{
};

TEST_P(ClockSyncDigits, AreNotChecked)
{
    server->script(kTime, Answer(200, timeAnswer(GetParam().text)));
    startSession();
    ASSERT_THAT(fake_platform::clockSets(), SizeIs(1));
    EXPECT_EQ(shown(fake_platform::clockSets()[0].time), GetParam().set);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ClockSyncDigits,
    testing::Values(LocalTime{"LeapSecond", "20240229235960", "2024-2-29 23:59:60"},
                    LocalTime{"AllNines", "99999999999999", "9999-99-99 99:99:99"},
                    LocalTime{"Short", "20240307", "2024-3-7 0:0:0"}, LocalTime{"Empty", "", "0-0-0 0:0:0"},
                    LocalTime{"Letters", "abcdefghijklmn", "0-0-0 0:0:0"},
                    LocalTime{"Rfc3339", "2024-03-07T08:09:10Z", "2024-0-3 7:0:8"},
                    LocalTime{"LongerThanTheField", "202403070809101234567890123456789012345678", "2024-3-7 8:9:10"}),
    [](const auto& one) { return one.param.name; });

/* A number instead of a text leaves the field as it was: empty. */
TEST_F(ClockSync, LocalTimeThatIsNoTextSetsZeros)
{
    server->script(kTime, Answer(200, "{\"SystemTimeObject\":{\"VIIDServerID\":\"\",\"TimeMode\":1,"
                                      "\"LocalTime\":20240307080910,\"TimeZone\":null}}"));
    startSession();
    ASSERT_THAT(fake_platform::clockSets(), SizeIs(1));
    EXPECT_EQ(shown(fake_platform::clockSets()[0].time), "0-0-0 0:0:0");
}

/* What a query comes to, and that the clock then stays as it is and is asked for again. */
struct QueryCase
{
    const char* name;
    Answer answer;
    u32 result;
    const char* message;
};

class ClockQuery : public ClockSync, public testing::WithParamInterface<QueryCase>
{
};

TEST_P(ClockQuery, FailsAsItsAnswerSays)
{
    server->always(kTime, GetParam().answer);
    startSession(5);
    EXPECT_THAT(fake_platform::clockSets(), IsEmpty());
    const std::vector<std::string> lines = clockLines();
    EXPECT_THAT(lines, Contains(Err(kFunction, GetParam().message)));
    ASSERT_FALSE(lines.empty());
    EXPECT_THAT(lines.back(),
                Err(kHandler, "plat[0] PubSecGetSystemTimeMsg fail{" + std::to_string(GetParam().result) + "}!"));
    ASSERT_THAT(clockTimers(), SizeIs(1));
    EXPECT_EQ(clockTimers()[0].due, 300500u);

    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), GetParam().result);
    EXPECT_EQ(PubSecGetRegisterStatus(0), 1u);
    EXPECT_EQ(abyKeepalivFailTimes[0], 0u);
}

Answer cutBody()
{
    Answer answer(200, timeAnswer("20240307080910"));
    answer.cut = viewlib::Cut::MidBody;
    return answer;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ClockQuery,
    testing::Values(QueryCase{"ServerError", Answer(500), 77, "RetCode:500"},
                    QueryCase{"Unauthorized", Answer(401), 77, "RetCode:401"},
                    QueryCase{"Redirect", Answer::redirect(302, "http://127.0.0.1:1/VIID/System/Time"), 77,
                              "RetCode:302"},
                    QueryCase{"Accepted", Answer(202, timeAnswer("20240307080910")), 77, "RetCode:202"},
                    QueryCase{"ClosedWithoutAnswer", Answer::broken(viewlib::Cut::BeforeStatus), 77, "RetCode:0"},
                    QueryCase{"NotJson", Answer(200, "time"), 51, "_PubSecSystemTimeParseJson Fail "},
                    QueryCase{"EmptyBody", Answer(200, ""), 51, "_PubSecSystemTimeParseJson Fail "},
                    QueryCase{"CutBody", cutBody(), 51, "_PubSecSystemTimeParseJson Fail "},
                    QueryCase{"NoObject", Answer(201, "{}"), 51, "_PubSecSystemTimeParseJson Fail "}),
    [](const auto& one) { return one.param.name; });

TEST_F(ClockSync, StatusCreatedIsAnAnswerToo)
{
    server->script(kTime, Answer(201, timeAnswer("20240307080910")));
    startSession();
    EXPECT_THAT(fake_platform::clockSets(), SizeIs(1));
}

/* The whole answer came, but the connection did not end well: the transfer's failure is the result. */
TEST_F(ClockSync, CompleteBodyOfACutTransferIsATransferFailure)
{
    startSession();
    Answer cut(200, timeAnswer("20240307080910") + std::string(100, ' '));
    cut.cut = viewlib::Cut::MidBody;
    cut.cutAfter = timeAnswer("20240307080910").size() + 1;
    server->script(kTime, cut);
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), 76u);
    EXPECT_STREQ(answer.achLocalTime, "20240307080910");
}

TEST_F(ClockSync, NoServer)
{
    startSession();
    server->stop();
    newLines();
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), 77u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, std::string("curl_easy_perform() failed: ") +
                                                           curl_easy_strerror(CURLE_COULDNT_CONNECT)),
                                        Err(kFunction, "RetCode:0")));
}

TEST_F(ClockSync, AnswerIsFilledIn)
{
    startSession();
    server->script(kTime, Answer(200, timeAnswer("20240307080910")));
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), 50u);
    EXPECT_STREQ(answer.achVIIDServerID, "44000000005030000001");
    EXPECT_STREQ(answer.achTimeMode, "1");
    EXPECT_STREQ(answer.achLocalTime, "20240307080910");
    EXPECT_STREQ(answer.achTimeZone, "UTC+8");
    EXPECT_EQ(sizeof(answer), 200u);
}

TEST_F(ClockSync, ServerIsAskedOfAnUnregisteredPlatformToo)
{
    g_atPubSecStackGlobalCommon[0] = recordFor(server->port());
    server->registerDevice(kDevice);
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), 50u);
}

TEST_F(ClockSync, PlatformNumbersOutOfRange)
{
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(2, &answer), 77u);
    EXPECT_EQ(PubSecGetSystemTimeMsg(0xffffffffu, &answer), 77u);
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, nullptr), 51u);
    EXPECT_THAT(requests(), IsEmpty());
}

/* ------------------------------------------------------------------------------------------------ the reader alone */

u32 read(const std::string& text, TPubSecSystemTime* out)
{
    *out = {};
    return _PubSecSystemTimeParseJson(text.c_str(), out);
}

TEST_F(ClockSync, MissingKeysAreNamed)
{
    TPubSecSystemTime out;
    newLines();
    EXPECT_EQ(read("{\"SystemTimeObject\":{}}", &out), 0u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kParser, "cannot find VIIDServerID !Please Check Again !")));
    EXPECT_EQ(read("{\"SystemTimeObject\":{\"VIIDServerID\":\"1\"}}", &out), 0u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kParser, "cannot find TimeMode! Please Check Again !")));
    EXPECT_STREQ(out.achVIIDServerID, "1");
    EXPECT_EQ(read("{\"SystemTimeObject\":{\"VIIDServerID\":\"1\",\"TimeMode\":\"2\"}}", &out), 0u);
    EXPECT_THAT(newLines(),
                ElementsAre(Inf(kParser, "TimeMode:2"), Err(kParser, "cannot find LocalTime !Please Check Again !")));
    EXPECT_EQ(read("{\"SystemTimeObject\":{\"VIIDServerID\":\"1\",\"TimeMode\":\"2\",\"LocalTime\":\"3\"}}", &out), 0u);
    EXPECT_THAT(newLines(), ElementsAre(Inf(kParser, "TimeMode:2"), Inf(kParser, "LocalTime:3"),
                                        Err(kParser, "cannot find string TimeZone!Please Check Again !")));
    EXPECT_STREQ(out.achLocalTime, "3");
}

TEST_F(ClockSync, MissingObjectIsNotNamed)
{
    TPubSecSystemTime out;
    newLines();
    EXPECT_EQ(read("{\"ResponseStatusObject\":{}}", &out), 0u);
    EXPECT_THAT(newLines(), IsEmpty());
}

TEST_F(ClockSync, ParseFailureShowsItsPlace)
{
    TPubSecSystemTime out;
    newLines();
    EXPECT_EQ(read("oops", &out), 0u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kParser, "Error before: [oops]")));
}

TEST_F(ClockSync, TextsAreCutToTheirFields)
{
    TPubSecSystemTime out;
    const std::string longText(100, 'x');
    EXPECT_EQ(read("{\"SystemTimeObject\":{\"VIIDServerID\":\"" + longText + "\",\"TimeMode\":\"" + longText +
                       "\",\"LocalTime\":\"" + longText + "\",\"TimeZone\":\"" + longText + "\"}}",
                   &out),
              1u);
    EXPECT_EQ(std::strlen(out.achVIIDServerID), 31u);
    EXPECT_EQ(std::strlen(out.achTimeMode), 3u);
    EXPECT_EQ(std::strlen(out.achLocalTime), 31u);
    EXPECT_EQ(std::strlen(out.achTimeZone), 63u);
}

TEST_F(ClockSync, NullAndEmptyTextsAreNotRead)
{
    TPubSecSystemTime out = {};
    EXPECT_EQ(_PubSecSystemTimeParseJson(nullptr, &out), 0u);
    EXPECT_EQ(_PubSecSystemTimeParseJson("", &out), 0u);
}

/* ------------------------------------------------------------------------------------------------------- the timer */

TEST_F(ClockSync, OnlyElapsedTimersCount)
{
    startSession();
    newLines();
    for (const u32 event : {0u, 1u, 2u, 3u, 5u, 0xffffffffu})
    {
        elapse(&g_adwPubSecStackPlatIndex[0], event);
        EXPECT_THAT(newLines(), ElementsAre(Inf(kHandler, "NvrSysSetSystemTime success.")));
    }
    EXPECT_EQ(server->exchangesOf(kTime).size(), 1u);
}

TEST_F(ClockSync, ContextIsChecked)
{
    startSession();
    newLines();
    const u32 two = 2;
    elapse(nullptr);
    elapse(&two);
    EXPECT_THAT(newLines(),
                ElementsAre(Inf(kHandler, "NvrSysSetSystemTime success."), Err(kHandler, "pvContext is null."),
                            Inf(kHandler, "NvrSysSetSystemTime success."), Err(kHandler, "PlatIndex=2 is overflow.")));
    EXPECT_EQ(server->exchangesOf(kTime).size(), 1u);
}

TEST_F(ClockSync, UnregisteredPlatformEndsItsTimer)
{
    startSession(5);
    EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
    newLines();
    fake_platform::runFor(300000);
    EXPECT_THAT(newLines(), Contains(Err(kHandler, "plat[0] is unregister.")));
    EXPECT_THAT(clockTimers(), IsEmpty());
    EXPECT_EQ(server->exchangesOf(kTime).size(), 1u);
}

/* The period went to 0 while the handler was about to run: it clears its handle instead of arming. */
TEST_F(ClockSync, PeriodOfZeroClearsTheHandle)
{
    startSession(5);
    g_atPubSecStackGlobalCommon[0].dwSyncTimeMin = 0;
    const size_t before = fake_platform::timers().size();
    elapse(&g_adwPubSecStackPlatIndex[0]);
    EXPECT_EQ(server->exchangesOf(kTime).size(), 2u);
    EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
    EXPECT_EQ(fake_platform::timers().size(), before);
    EXPECT_THAT(clockTimers(), IsEmpty());
}

TEST_F(ClockSync, TimerThatCannotBeArmedEndsIt)
{
    startSession(5);
    fake_platform::fail(Function::kTaskSetTimer, 0, 1);
    newLines();
    fake_platform::runFor(1200000);
    EXPECT_THAT(newLines(), Contains(Err(kHandler, "AppTaskSetTimer set g_ahSyncTimeTimer failed.")));
    EXPECT_EQ(g_ahSyncTimeTimer[0], nullptr);
    EXPECT_EQ(server->exchangesOf(kTime).size(), 2u);
}

TEST_F(ClockSync, LongestPeriods)
{
    for (const u32 minutes : {71582u, 71583u, 0xffffffffu})
    {
        g_atPubSecStackGlobalCommon[0] = recordFor(server->port());
        g_atPubSecStackGlobalCommon[0].dwSyncTimeMin = minutes;
        g_bPubSecRegStatus[0] = 1;
        elapse(&g_adwPubSecStackPlatIndex[0]);
        EXPECT_EQ(fake_platform::timers().back().milliseconds, minutes == 71582u ? 4294920000u : 0xffffffffu);
    }
}

/* ------------------------------------------------------------------------------------- faults inside the process */

TEST_F(ClockSync, WithoutGlobalInit)
{
    startSession();
    newLines();
    const session_faults::NoGlobalInit fault;
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), 75u);
    EXPECT_THAT(newLines(), ElementsAre(Err(kFunction, std::string("curl_global_init() failed: ") +
                                                           curl_easy_strerror(CURLE_FAILED_INIT))));
}

TEST_F(ClockSync, WithoutAHandle)
{
    startSession();
    const session_faults::NoHandle fault;
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), 75u);
    EXPECT_EQ(server->exchangesOf(kTime).size(), 1u);
}

TEST_F(ClockSync, WithoutHeaders)
{
    startSession();
    newLines();
    const session_faults::NoHeaders fault;
    TPubSecSystemTime answer = {};
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, &answer), 60u);
    EXPECT_THAT(newLines(), ElementsAre(HasSubstr("FillHeadMsgInfo Err!\n")));
    EXPECT_EQ(server->exchangesOf(kTime).size(), 1u);
}

} // namespace
