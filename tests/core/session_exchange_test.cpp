/* SPDX-License-Identifier: Apache-2.0 */
/* What the session's exchanges ask of libcurl, call by call. */
#include <pubsecstack/session.h>

#include "core/http.h"
#include "session/session.h"
#include "tests/support/allocations.h"
#include "tests/support/curl_shim.h"
#include "tests/support/stack_test.h"

using curl_shim::answer;
using curl_shim::calls;
using curl_shim::callsOf;
using log_lines::IsError;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

using Calls = std::vector<std::string>;

const Calls kBegin = {"global_init(3)", "easy_init()"};

const Calls kHeaders = {
    "append(localhost:8080)",
    "append(Accept:application/json,application/VIID+JSON)",
    "append(Content-Type:application/VIID+JSON;charset=UTF-8)",
    "append(Connection:Keep-alive)",
    "append(Expect:)",
    "append(User-Identify:34020000001190000001)",
};

const Calls kEnd = {"perform()", "free(list)", "cleanup()"};

Calls base(const std::string& path, const std::string& method = "POST=1")
{
    return {
        "setopt(HTTPHEADER=localhost:8080|Accept:application/json,application/VIID+JSON|"
        "Content-Type:application/VIID+JSON;charset=UTF-8|Connection:Keep-alive|Expect:|"
        "User-Identify:34020000001190000001)",
        "setopt(IPRESOLVE=0)",
        "setopt(URL=http://10.0.0.1:8080" + path + ")",
        "setopt(" + method + ")",
        "setopt(SSL_VERIFYPEER=0)",
        "setopt(SSL_VERIFYHOST=0)",
        "setopt(VERBOSE=0)",
        "setopt(CONNECTTIMEOUT=30)",
        "setopt(TIMEOUT=30)",
    };
}

const Calls kRegisterBody = {
    "setopt(POSTFIELDSIZE=54)",
    R"(setopt(POSTFIELDS={"RegisterObject":{"DeviceID":"34020000001190000001"}}))",
};
const Calls kUnRegisterBody = {
    "setopt(POSTFIELDSIZE=56)",
    R"(setopt(POSTFIELDS={"UnRegisterObject":{"DeviceID":"34020000001190000001"}}))",
};
const Calls kDigest = {"setopt(HTTPAUTH=2)", "setopt(USERNAME=admin)", "setopt(PASSWORD=viewlib)"};
const Calls kFollow = {"setopt(FOLLOWLOCATION=1)"};
const Calls kWithoutAuthentication = {"perform()", "setopt(HTTPAUTH=0)"};

template <typename... Parts> Calls join(const Parts&... parts)
{
    Calls all;
    (all.insert(all.end(), parts.begin(), parts.end()), ...);
    return all;
}

class SessionExchangeTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        curl_shim::reset();
        g_atPubSecStackGlobalCommon[0] = stack::configuration("10.0.0.1", 8080);
        record = stack::configuration("10.0.0.1", 8080);
        std::memcpy(&param, reinterpret_cast<const char*>(&record) + sizeof(u32), sizeof(param));
        allocations::watch();
    }

    void TearDown() override
    {
        EXPECT_EQ(allocations::open(), 0u);
        allocations::unwatch();
        EXPECT_EQ(curl_shim::openHandles(), 0u);
        EXPECT_EQ(curl_shim::openLists(), 0u);
        StackTest::TearDown();
    }

    void registerPlatform()
    {
        PubSecStackPostRegister(0, &record);
    }

    static u32 unregister()
    {
        g_bPubSecRegStatus[0] = 1;
        return PubSecPostUserUnRegisterMsg(0);
    }

    u32 askTime()
    {
        std::memset(&time, 0, sizeof(time));
        return PubSecGetSystemTimeMsg(0, &time);
    }

    TPubSecPlatRegInfo record;
    TPubSecRegParam param;
    TPubSecSystemTime time;
};

/* -------------------------------------------------------------------------------------------------------- sequences */

TEST_F(SessionExchangeTest, Registration)
{
    answer({CURLE_OK, 200});
    registerPlatform();
    EXPECT_THAT(calls(),
                ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/Register"), kRegisterBody, kDigest, kEnd)));
    EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
}

TEST_F(SessionExchangeTest, RegistrationWithoutAuthenticationAfterARefusal)
{
    answer({CURLE_OK, 401});
    answer({CURLE_OK, 200});
    registerPlatform();
    EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/Register"), kRegisterBody, kDigest,
                                               kWithoutAuthentication, kEnd)));
    EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
}

TEST_F(SessionExchangeTest, ARegistrationThatIsRedirectedIsNotTriedAgain)
{
    for (const long status : {301L, 302L})
    {
        curl_shim::reset();
        answer({CURLE_OK, status, "", "http://10.2.2.2:9000/VIID/System/Register"});
        registerPlatform();
        EXPECT_EQ(callsOf("perform").size(), 1u);
        EXPECT_EQ(g_bPubSecRegStatus[0], 0u);
        EXPECT_STREQ(g_atPubSecStackGlobalCommon_New[0].achServerIP, "10.2.2.2");
    }
}

TEST_F(SessionExchangeTest, OtherRedirectsAreTriedWithoutAuthentication)
{
    for (const long status : {300L, 303L, 307L, 308L})
    {
        curl_shim::reset();
        answer({CURLE_OK, status, "", "http://10.2.2.2:9000/VIID/System/Register"});
        answer({CURLE_OK, 500});
        registerPlatform();
        EXPECT_EQ(callsOf("perform").size(), 2u) << status;
        EXPECT_STREQ(g_atPubSecStackGlobalCommon_New[0].achServerIP, "") << status;
    }
}

TEST_F(SessionExchangeTest, Unregistration)
{
    answer({CURLE_OK, 200});
    EXPECT_EQ(unregister(), 50u);
    EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/UnRegister"), kUnRegisterBody,
                                               kDigest, kFollow, kEnd)));
}

TEST_F(SessionExchangeTest, UnregistrationWithoutAuthenticationAfterARefusal)
{
    for (const long second : {200L, 401L, 500L, 0L})
    {
        curl_shim::reset();
        answer({CURLE_OK, 401});
        answer({CURLE_OK, second});
        EXPECT_EQ(unregister(), 50u) << second;
        EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/UnRegister"), kUnRegisterBody,
                                                   kDigest, kFollow, kWithoutAuthentication, kEnd)));
    }
}

TEST_F(SessionExchangeTest, DirectRegistration)
{
    answer({CURLE_OK, 201});
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/Register"), kRegisterBody, kDigest,
                                               kFollow, kEnd)));
}

TEST_F(SessionExchangeTest, DirectRegistrationWithoutAuthenticationAfterAnyOtherStatus)
{
    for (const long status : {0L, 202L, 301L, 302L, 401L, 403L, 500L})
    {
        curl_shim::reset();
        answer({CURLE_OK, status});
        answer({CURLE_OK, 200});
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u) << status;
        EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/Register"), kRegisterBody,
                                                   kDigest, kFollow, kWithoutAuthentication, kEnd)));
    }
}

TEST_F(SessionExchangeTest, DirectUnregistration)
{
    answer({CURLE_OK, 200});
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 50u);
    EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/UnRegister"), kUnRegisterBody,
                                               kDigest, kFollow, kEnd)));
}

TEST_F(SessionExchangeTest, TestOfAServer)
{
    answer({CURLE_OK, 200});
    answer({CURLE_OK, 200});
    EXPECT_EQ(PubSecStackTestRegister(&param), 50u);
    EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/Register"), kRegisterBody, kDigest,
                                               kFollow, kEnd, kBegin, kHeaders, base("/VIID/System/UnRegister"),
                                               kUnRegisterBody, kDigest, kFollow, kEnd)));
}

TEST_F(SessionExchangeTest, Keepalive)
{
    answer({CURLE_OK, 200, R"({"ResponseStatusObject":{"StatusCode":0}})"});
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
    const Calls own = {
        "setopt(READFUNCTION=PubSecReadCB)",
        R"(setopt(READDATA={"KeepaliveObject":{"DeviceID":"34020000001190000001"}}))",
        "setopt(POSTFIELDSIZE=55)",
        "setopt(WRITEFUNCTION=_PubSecWriteCB)",
        "setopt(WRITEDATA=sink)",
    };
    EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/Keepalive"), own, kEnd)));
    EXPECT_THAT(curl_shim::sentBodies(), ElementsAre(R"({"KeepaliveObject":{"DeviceID":"34020000001190000001"}})"));
    EXPECT_GE(allocations::taken(), 5u); /* body and answer are seen by the counter that ends each test */
}

TEST_F(SessionExchangeTest, ClockQuery)
{
    answer({CURLE_OK, 200,
            R"({"SystemTimeObject":{"VIIDServerID":"s","TimeMode":"1","LocalTime":"20240229235960","TimeZone":"z"}})"});
    EXPECT_EQ(askTime(), 50u);
    EXPECT_STREQ(time.achLocalTime, "20240229235960");
    const Calls own = {
        "setopt(READFUNCTION=PubSecReadCB)",
        "setopt(READDATA=null)",
        "setopt(WRITEFUNCTION=_PubSecWriteCB)",
        "setopt(WRITEDATA=sink)",
        "setopt(NOSIGNAL=1)",
    };
    EXPECT_THAT(calls(), ElementsAreArray(join(kBegin, kHeaders, base("/VIID/System/Time", "HTTPGET=1"), own, kEnd)));
    EXPECT_THAT(curl_shim::sentBodies(), ElementsAre(""));
}

TEST_F(SessionExchangeTest, TwentyCharactersOfTheIdentifierAreInTheBodies)
{
    stack::put(g_atPubSecStackGlobalCommon[0].achDeviceID, "123456789012345678901234");
    stack::put(param.achDeviceID, "abcdefghijabcdefghijabcd");
    curl_shim::answerAlways({CURLE_OK, 200});
    registerPlatform();
    EXPECT_EQ(callsOf("setopt(POSTFIELDS=").at(0),
              R"(setopt(POSTFIELDS={"RegisterObject":{"DeviceID":"12345678901234567890"}}))");
    unregister();
    EXPECT_EQ(callsOf("setopt(POSTFIELDS=").at(1),
              R"(setopt(POSTFIELDS={"UnRegisterObject":{"DeviceID":"12345678901234567890"}}))");
    _PubSecPostUserKeepAliveMsg(0);
    EXPECT_EQ(callsOf("setopt(READDATA=").at(0),
              R"(setopt(READDATA={"KeepaliveObject":{"DeviceID":"12345678901234567890"}}))");
    PubSecStackPostRegisterExt(&param);
    EXPECT_EQ(callsOf("setopt(POSTFIELDS=").at(2),
              R"(setopt(POSTFIELDS={"RegisterObject":{"DeviceID":"abcdefghijabcdefghij"}}))");
}

TEST_F(SessionExchangeTest, UserNameAndPasswordThatFillTheirFieldsAreReadToTheirEnd)
{
    stack::put(record.achUserName, std::string(128, 'u'));
    stack::put(record.achPassword, std::string(128, 'p'));
    answer({CURLE_OK, 200});
    registerPlatform();
    EXPECT_THAT(callsOf("setopt(USERNAME="), ElementsAre("setopt(USERNAME=" + std::string(128, 'u') + ")"));
    EXPECT_THAT(callsOf("setopt(PASSWORD="), ElementsAre("setopt(PASSWORD=" + std::string(128, 'p') + ")"));
}

/* --------------------------------------------------------------------------------- libcurl that cannot be initialised
 */

TEST_F(SessionExchangeTest, AFailedGlobalInitIsOnlyLoggedByTheRegistrations)
{
    logAt(1);
    curl_shim::failGlobalInit(CURLE_FAILED_INIT);
    answer({CURLE_OK, 200});
    registerPlatform();
    EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
    curl_shim::failGlobalInit(CURLE_OUT_OF_MEMORY);
    answer({CURLE_OK, 200});
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(fake_platform::logLinesWith("curl_global_init"),
                ElementsAre(IsError("PubSecStackPostRegister", "curl_global_init() failed: Failed initialization"),
                            IsError("PubSecStackPostRegisterExt", "curl_global_init() failed: Out of memory")));
}

TEST_F(SessionExchangeTest, AFailedGlobalInitIs75)
{
    logAt(1);
    for (int i = 0; i < 4; ++i)
    {
        curl_shim::failGlobalInit(CURLE_FAILED_INIT);
    }
    EXPECT_EQ(unregister(), 75u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 75u);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 75u);
    EXPECT_EQ(askTime(), 75u);
    const char* text = "curl_global_init() failed: Failed initialization";
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError("PubSecPostUserUnRegisterMsg", text),
                            IsError("PubSecPostUserUnRegisterMsgExt", text),
                            IsError("_PubSecPostUserKeepAliveMsg", text), IsError("PubSecGetSystemTimeMsg", text)));
    EXPECT_THAT(callsOf("easy_init"), IsEmpty());
}

TEST_F(SessionExchangeTest, WithoutAHandleEachHasItsOwnEnd)
{
    logAt(1);
    for (int i = 0; i < 6; ++i)
    {
        curl_shim::failEasyInit();
    }
    registerPlatform();
    EXPECT_EQ(g_bPubSecRegStatus[0], 0u);
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    EXPECT_EQ(unregister(), 75u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 75u);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u); /* reported as success */
    EXPECT_EQ(askTime(), 75u);
    EXPECT_THAT(fake_platform::logLinesWith("curl_easy_init"),
                ElementsAre(IsError("PubSecStackPostRegister", "curl_easy_init failed()."),
                            IsError("PubSecStackPostRegisterExt", "curl_easy_init failed()."),
                            IsError("PubSecPostUserUnRegisterMsg", "curl_easy_init() failed"),
                            IsError("PubSecPostUserUnRegisterMsgExt", "curl_easy_init() failed")));
    EXPECT_THAT(callsOf("append"), IsEmpty());
    EXPECT_THAT(callsOf("perform"), IsEmpty());
}

/* ------------------------------------------------------------------------------------------------- no header lines */

/* "... function:<line> ### [<the same line>] #### FillHeadMsgInfo Err!" */
MATCHER_P(IsHeaderError, function, "says twice in which line the header list of " + std::string(function) + " is empty")
{
    const std::string head = "[PubSecStack ERR] " + std::string(function) + ":";
    const std::string number = arg.substr(head.size(), arg.find(' ', head.size()) - head.size());
    return arg == head + number + " ### [" + number + "] #### FillHeadMsgInfo Err!\n";
}

TEST_F(SessionExchangeTest, WithoutHeaderLinesAllButTheRegistrationsStop)
{
    logAt(1);
    curl_shim::failAppend(0, 1000);
    curl_shim::answerAlways({CURLE_OK, 200});
    EXPECT_EQ(unregister(), 60u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 60u);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 60u);
    EXPECT_EQ(askTime(), 60u);
    EXPECT_THAT(callsOf("perform"), IsEmpty());
    EXPECT_THAT(callsOf("setopt"), IsEmpty());
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsHeaderError("PubSecPostUserUnRegisterMsg"),
                            IsHeaderError("PubSecPostUserUnRegisterMsgExt"),
                            IsHeaderError("_PubSecPostUserKeepAliveMsg"), IsHeaderError("PubSecGetSystemTimeMsg")));
}

TEST_F(SessionExchangeTest, WithoutHeaderLinesTheRegistrationsGoOn)
{
    logAt(1);
    curl_shim::failAppend(0, 1000);
    curl_shim::answerAlways({CURLE_OK, 200});
    registerPlatform();
    EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_THAT(callsOf("setopt(HTTPHEADER"), ElementsAre("setopt(HTTPHEADER=null)", "setopt(HTTPHEADER=null)"));
    EXPECT_THAT(fake_platform::logLinesWith("FillHeadMsgInfo"),
                ElementsAre(IsHeaderError("PubSecStackPostRegister"), IsHeaderError("PubSecStackPostRegisterExt")));
}

/* ---------------------------------------------------------------------------------------------------- failed transfers
 */

TEST_F(SessionExchangeTest, AFailedTransferIsLoggedWithItsReason)
{
    logAt(1);
    curl_shim::answerAlways({CURLE_COULDNT_CONNECT, 0});
    registerPlatform();
    EXPECT_EQ(g_bPubSecRegStatus[0], 0u);
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    EXPECT_EQ(unregister(), 76u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 76u);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 76u);
    EXPECT_EQ(askTime(), 77u); /* the status that is not there decides */
    const char* first = "curl_easy_perform Ret:7,failed: Couldn't connect to server";
    const char* second = "curl_easy_perform no auth Ret:7,failed: Couldn't connect to server";
    const char* others = "curl_easy_perform() failed: Couldn't connect to server";
    EXPECT_THAT(fake_platform::logLinesWith("curl_easy_perform"),
                ElementsAre(IsError("PubSecStackPostRegister", first), IsError("PubSecStackPostRegister", second),
                            IsError("PubSecStackPostRegisterExt", first), IsError("PubSecStackPostRegisterExt", second),
                            IsError("PubSecPostUserUnRegisterMsg", others),
                            IsError("PubSecPostUserUnRegisterMsgExt", others),
                            IsError("_PubSecPostUserKeepAliveMsg", others), IsError("PubSecGetSystemTimeMsg", others)));
    EXPECT_THAT(fake_platform::logLinesWith("RetCode"), ElementsAre(IsError("PubSecGetSystemTimeMsg", "RetCode:0")));
}

TEST_F(SessionExchangeTest, ARegistrationGoesOnWithTheStatusOfAFailedTransfer)
{
    answer({CURLE_RECV_ERROR, 200});
    registerPlatform();
    EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
    EXPECT_EQ(callsOf("perform").size(), 1u);
}

TEST_F(SessionExchangeTest, AClockAnswerOfAFailedTransferIsReadAndStillAFailure)
{
    answer({CURLE_PARTIAL_FILE, 200,
            R"({"SystemTimeObject":{"VIIDServerID":"s","TimeMode":"1","LocalTime":"20240229235960","TimeZone":"z"}})"});
    EXPECT_EQ(askTime(), 76u);
    EXPECT_STREQ(time.achLocalTime, "20240229235960");
}

TEST_F(SessionExchangeTest, ATransferEndedByTheWriteCallbackIsCompleted)
{
    logAt(1);
    curl_shim::answerAlways({CURLE_WRITE_ERROR, 200});
    registerPlatform();
    EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
    EXPECT_EQ(unregister(), 50u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 50u);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u); /* an answer that cannot be read is as good as any */
    EXPECT_EQ(askTime(), 51u);
    EXPECT_THAT(fake_platform::logLinesWith("curl_easy_perform"), IsEmpty());
}

TEST_F(SessionExchangeTest, AnAnswerBeyondTheLimitIsACompletedTransfer)
{
    const std::string large(16777217, ' ');
    answer({CURLE_OK, 200, large});
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
    answer({CURLE_OK, 500, large});
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 51u);
    answer({CURLE_OK, 200, large});
    EXPECT_EQ(askTime(), 51u);
    answer({CURLE_OK, 404, large});
    EXPECT_EQ(askTime(), 77u);
}

TEST_F(SessionExchangeTest, OnlyTwoStatusesAreSuccess)
{
    for (const long status : {0L, 199L, 202L, 204L, 299L, 300L, 400L, 401L, 500L, 503L})
    {
        curl_shim::reset();
        curl_shim::answerAlways({CURLE_OK, status, R"({"ResponseStatusObject":{"StatusCode":0}})"});
        registerPlatform();
        EXPECT_EQ(g_bPubSecRegStatus[0], 0u) << status;
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u) << status;
        EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 51u) << status;
        EXPECT_EQ(askTime(), 77u) << status;
    }
    for (const long status : {200L, 201L})
    {
        curl_shim::reset();
        curl_shim::answerAlways({CURLE_OK, status, R"({"ResponseStatusObject":{"StatusCode":0}})"});
        registerPlatform();
        EXPECT_EQ(g_bPubSecRegStatus[0], 1u) << status;
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u) << status;
        EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u) << status;
        EXPECT_EQ(askTime(), 51u) << status;
        g_bPubSecRegStatus[0] = 0;
    }
}

/* ------------------------------------------------------------------------------------------------------ refused
 * options */

TEST_F(SessionExchangeTest, ARefusedOptionIsLoggedAndTheExchangeGoesOn)
{
    const CURLoption options[] = {CURLOPT_HTTPHEADER,    CURLOPT_IPRESOLVE,      CURLOPT_URL,
                                  CURLOPT_POST,          CURLOPT_SSL_VERIFYPEER, CURLOPT_SSL_VERIFYHOST,
                                  CURLOPT_VERBOSE,       CURLOPT_CONNECTTIMEOUT, CURLOPT_TIMEOUT,
                                  CURLOPT_POSTFIELDSIZE, CURLOPT_POSTFIELDS,     CURLOPT_HTTPAUTH,
                                  CURLOPT_USERNAME,      CURLOPT_PASSWORD,       CURLOPT_FOLLOWLOCATION};
    for (const CURLoption option : options)
    {
        curl_shim::reset();
        fake_platform::reset();
        logAt(1);
        curl_shim::refuse(option);
        answer({CURLE_OK, 200});
        EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 50u) << option;
        EXPECT_EQ(callsOf("setopt").size(), 15u) << option;
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsError("PubSecPostUserUnRegisterMsgExt", "curl_easy_setopt fault:")))
            << option;
    }
}

TEST_F(SessionExchangeTest, ARefusedOptionOfKeepaliveAndClockIsLoggedInTheirNames)
{
    for (const CURLoption option : {CURLOPT_READFUNCTION, CURLOPT_READDATA, CURLOPT_WRITEFUNCTION, CURLOPT_WRITEDATA})
    {
        curl_shim::reset();
        fake_platform::reset();
        logAt(1);
        curl_shim::refuse(option);
        curl_shim::answerAlways({CURLE_OK, 500});
        EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 51u);
        EXPECT_EQ(askTime(), 77u);
        EXPECT_THAT(fake_platform::logLinesWith("setopt"),
                    ElementsAre(IsError("_PubSecPostUserKeepAliveMsg", "curl_easy_setopt fault:"),
                                IsError("PubSecGetSystemTimeMsg", "curl_easy_setopt fault:")));
    }
}

/* ------------------------------------------------------------------------------------------------------------- bodies
 */

TEST_F(SessionExchangeTest, WithoutMemoryForTheBodyNothingIsSent)
{
    logAt(1);
    /* the root, the object and the text to print are what a body cannot do without */
    allocations::failCjson(0, 1);
    registerPlatform();
    allocations::failCjson(0, 1);
    EXPECT_EQ(unregister(), 51u);
    allocations::failCjson(0, 1);
    EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
    allocations::failCjson(0, 1);
    EXPECT_EQ(PubSecStackPostRegisterExt(&param), 0u);
    allocations::failCjson(0, 1);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 51u);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(g_bPubSecRegStatus[0], 0u);
    EXPECT_THAT(fake_platform::logLines(),
                testing::IsSupersetOf({IsError("PubSecStackPostRegister", "_PubSecUserRegisterJson failed()."),
                                       IsError("PubSecPostUserUnRegisterMsg", "ptUnRegJson is null"),
                                       IsError("PubSecStackPostRegisterExt", "_PubSecUserRegisterJson failed()."),
                                       IsError("PubSecPostUserUnRegisterMsgExt", "ptUnRegJson is null")}));
}

TEST_F(SessionExchangeTest, NoAllocationOfABodyThatFailsIsLost)
{
    for (unsigned pass = 0; pass < 8; ++pass)
    {
        allocations::failCjson(pass, 1000);
        char* body = _PubSecUserRegisterJson("34020000001190000001");
        allocations::failCjson(0, 0);
        if (body != nullptr)
        {
            EXPECT_GE(pass, 3u);
            std::free(body); /* cJSON's allocator here is the process's */
        }
        EXPECT_EQ(allocations::open(), 0u) << pass;
    }
}

/* ---------------------------------------------------------------------------------------------------------- platforms
 */

TEST_F(SessionExchangeTest, ANumberThatIsNoPlatformSendsNothing)
{
    curl_shim::answerAlways({CURLE_OK, 200});
    for (const u32 platform : {2u, 3u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
    {
        EXPECT_EQ(PubSecPostUserUnRegisterMsg(platform), 54u) << platform;
        EXPECT_EQ(PubSecGetSystemTimeMsg(platform, &time), 77u) << platform;
        EXPECT_EQ(_PubSecPostUserKeepAliveMsg(platform), 54u) << platform;
        PubSecStackPostRegister(static_cast<s32>(platform), &record);
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(g_bPubSecRegStatus[0], 0u);
    EXPECT_EQ(g_bPubSecRegStatus[1], 0u);
}

TEST_F(SessionExchangeTest, NullRecordsSendNothing)
{
    curl_shim::answerAlways({CURLE_OK, 200});
    EXPECT_EQ(PubSecStackPostRegisterExt(nullptr), 0u);
    EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(nullptr), 103u);
    EXPECT_EQ(PubSecStackTestRegister(nullptr), 51u);
    EXPECT_EQ(PubSecGetSystemTimeMsg(0, nullptr), 51u);
    PubSecStackPostRegister(0, nullptr);
    EXPECT_THAT(calls(), IsEmpty());
}

/* ---------------------------------------------------------------------------------------------------------- self-test
 */

TEST_F(SessionExchangeTest, TheSelfTestSetsItsOptionsAndKeepsItsHandle)
{
    logAt(1);
    answer({CURLE_OK, 404});
    _SetPubSecHttps();
    const Calls all = calls();
    EXPECT_THAT(
        callsOf("setopt"),
        ElementsAre(testing::MatchesRegex(R"(setopt\(URL=https://[0-9.]+:443//VIID/System/Register\))"),
                    "setopt(POST=1)", "setopt(TIMEOUT=60)", "setopt(CONNECTTIMEOUT=10)", "setopt(VERBOSE=0)",
                    "setopt(SSL_VERIFYPEER=0)", "setopt(SSL_VERIFYHOST=0)",
                    "setopt(HTTPHEADER=Content-Type: application/x-www-form-urlencoded|Connection: Keep-Alive)"));
    EXPECT_THAT(callsOf("global_init"), IsEmpty());
    EXPECT_THAT(callsOf("free"), ElementsAre("free(list)"));
    EXPECT_THAT(callsOf("cleanup"), IsEmpty());
    EXPECT_EQ(curl_shim::openHandles(), 1u);
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError("_SetPubSecHttps", "11111111111111111111111111111111111111111111"),
                            IsError("_SetPubSecHttps", "Res=0, response_code:404")));
    curl_shim::cleanUp();
}

TEST_F(SessionExchangeTest, TheSelfTestTellsAFailure)
{
    logAt(1);
    answer({CURLE_COULDNT_CONNECT, 0});
    _SetPubSecHttps();
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError("_SetPubSecHttps", std::string(44, '1')),
                            IsError("_SetPubSecHttps", "curl_easy_perform() failed: Couldn't connect to server"),
                            IsError("_SetPubSecHttps", "Res=7, response_code:0")));
    curl_shim::cleanUp();
    fake_platform::reset();
    curl_shim::failEasyInit();
    _SetPubSecHttps();
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError("_SetPubSecHttps", "curl_easy_init failed!")));
}

TEST_F(SessionExchangeTest, TheSelfTestGoesOnWithTheHeadersThatItHas)
{
    curl_shim::failAppend(1, 1);
    answer({CURLE_OK, 404});
    _SetPubSecHttps();
    EXPECT_THAT(callsOf("setopt(HTTPHEADER"),
                ElementsAre("setopt(HTTPHEADER=Content-Type: application/x-www-form-urlencoded)"));
    EXPECT_THAT(callsOf("perform"), ElementsAre("perform()"));
    EXPECT_EQ(curl_shim::openLists(), 0u);
    curl_shim::cleanUp();
}

} // namespace
