/* SPDX-License-Identifier: Apache-2.0 */
/* What the posts of images and objects ask of libcurl, call by call, and every way out of them. */
#include <cjson/cJSON.h>

#include "core/platform_table.h"
#include "tests/post/image_operations.h"
#include "tests/support/allocations.h"
#include "tests/support/curl_shim.h"
#include "tests/support/stack_test.h"

using curl_shim::answer;
using curl_shim::answerAlways;
using curl_shim::calls;
using curl_shim::callsOf;
using image_operations::Operation;
using log_lines::IsError;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

class PostExchangeTest : public StackTest, public testing::WithParamInterface<Operation>
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        curl_shim::reset();
        for (TPubSecPlatRegInfo& info : g_atPubSecStackGlobalCommon)
        {
            info = stack::configuration("10.0.0.1", 8080);
        }
        g_bPubSecRegStatus[0] = 1;
        allocations::watch();
        char* text = GetParam().document();
        document = text;
        cJSON_free(text);
    }

    void TearDown() override
    {
        EXPECT_EQ(allocations::open(), 0u);
        allocations::unwatch();
        EXPECT_EQ(curl_shim::openHandles(), 0u);
        EXPECT_EQ(curl_shim::openLists(), 0u);
        StackTest::TearDown();
    }

    static u32 post(u32 platform = 0)
    {
        return GetParam().post(platform);
    }

    std::string document;
};

INSTANTIATE_TEST_SUITE_P(Posts, PostExchangeTest, testing::ValuesIn(image_operations::all()),
                         [](const auto& instance) { return std::string(instance.param.name); });

std::vector<std::string> sequence(const std::string& path, const std::string& document, bool readsAnswer)
{
    std::vector<std::string> all = {
        "global_init(3)",
        "easy_init()",
        "append(localhost:8080)",
        "append(Accept:application/json,application/VIID+JSON)",
        "append(Content-Type:application/VIID+JSON;charset=UTF-8)",
        "append(Connection:Keep-alive)",
        "append(Expect:)",
        "append(User-Identify:34020000001190000001)",
        std::string("setopt(HTTPHEADER=localhost:8080|Accept:application/json,application/VIID+JSON|") +
            "Content-Type:application/VIID+JSON;charset=UTF-8|Connection:Keep-alive|Expect:|" +
            "User-Identify:34020000001190000001)",
        "setopt(IPRESOLVE=0)",
        "setopt(URL=http://10.0.0.1:8080" + path + ")",
        "setopt(POST=1)",
        "setopt(SSL_VERIFYPEER=0)",
        "setopt(SSL_VERIFYHOST=0)",
        "setopt(VERBOSE=0)",
        "setopt(CONNECTTIMEOUT=30)",
        "setopt(TIMEOUT=30)",
        "setopt(READFUNCTION=PubSecReadCB)",
        "setopt(READDATA=" + document + ")",
    };
    if (readsAnswer)
    {
        all.insert(all.end(), {"setopt(WRITEFUNCTION=_PubSecWriteCB)", "setopt(WRITEDATA=sink)"});
    }
    all.insert(all.end(), {"setopt(POSTFIELDSIZE=" + std::to_string(document.size()) + ")", "setopt(NOSIGNAL=1)",
                           "perform()", "free(list)", "cleanup()"});
    return all;
}

TEST_P(PostExchangeTest, SetsItsOptionsInOrder)
{
    answer({CURLE_OK, 200});
    EXPECT_EQ(post(), 50u);
    EXPECT_THAT(calls(), ElementsAreArray(sequence(GetParam().path, document, GetParam().readsAnswer)));
    EXPECT_THAT(curl_shim::sentBodies(), ElementsAre(document));
}

/* Another configuration is taken into force between the URL and the headers. */
TEST_P(PostExchangeTest, IsNeverMadeOfTwoConfigurations)
{
    curl_shim::setAppendHook([](unsigned number) {
        if (number == 1)
        {
            TPubSecPlatRegInfo other = stack::configuration("10.0.0.2", 8082);
            stack::put(other.achDeviceID, "34020000001190000002");
            PubSecTableWrite(0, &other);
        }
    });
    answer({CURLE_OK, 200});
    EXPECT_EQ(post(), 50u);
    EXPECT_THAT(callsOf("setopt(URL="),
                ElementsAre("setopt(URL=http://10.0.0.2:8082" + std::string(GetParam().path) + ")"));
    EXPECT_THAT(callsOf("setopt(HTTPHEADER="), ElementsAre(testing::EndsWith("|User-Identify:34020000001190000002)")));
}

TEST_P(PostExchangeTest, LeavesTheStateOfTheLibraryAsItIs)
{
    const TPubSecPlatRegInfo before = g_atPubSecStackGlobalCommon[0];
    for (const long status : {200L, 401L, 500L})
    {
        answer({CURLE_OK, status});
        post();
        EXPECT_EQ(g_bPubSecRegStatus[0], 1u);
        EXPECT_EQ(std::memcmp(&g_atPubSecStackGlobalCommon[0], &before, sizeof(before)), 0);
    }
    EXPECT_THAT(fake_platform::journal(), IsEmpty());
}

TEST_P(PostExchangeTest, AnyFlagThatIsNotZeroIsRegistered)
{
    g_bPubSecRegStatus[1] = 0x80000000u;
    answer({CURLE_OK, 200});
    EXPECT_EQ(post(1), 50u);
}

/* ------------------------------------------------------------------------------------------------------ before sending
 */

TEST_P(PostExchangeTest, AnUnregisteredPlatformIsRefusedBeforeAnythingIsBuilt)
{
    logAt(1);
    const size_t taken = allocations::taken();
    EXPECT_EQ(post(1), 54u);
    EXPECT_EQ(GetParam().postNull(1), 54u);
    EXPECT_EQ(allocations::taken(), taken);
    EXPECT_THAT(calls(), IsEmpty());
    const auto line = IsError(GetParam().name, "Device not registered! ");
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(line, line));
}

TEST_P(PostExchangeTest, ANumberThatIsNoPlatformIsNotRegistered)
{
    logAt(1);
    g_bPubSecRegStatus[1] = 1;
    const u32 numbers[] = {2, 3, 255, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
    for (const u32 platform : numbers)
    {
        EXPECT_EQ(post(platform), 54u) << platform;
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(fake_platform::logLines(), testing::Each(IsError(GetParam().name, "Device not registered! ")));
    EXPECT_EQ(fake_platform::logLines().size(), std::size(numbers));
}

TEST_P(PostExchangeTest, NothingIsSaidAtLevelZero)
{
    EXPECT_EQ(post(1), 54u);
    answer({CURLE_COULDNT_CONNECT, 0});
    EXPECT_EQ(post(), 76u);
    answer({CURLE_OK, 400, "no"});
    EXPECT_EQ(post(), GetParam().code400);
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
}

TEST_P(PostExchangeTest, ANullRecordSendsNothing)
{
    logAt(3);
    EXPECT_EQ(GetParam().postNull(0), 51u);
    EXPECT_THAT(calls(), IsEmpty());
    if (std::string(GetParam().name) == "PubSecPostImage")
    {
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsError("PubSecPostImage", "_PubSecImageGatherJSON failed.")));
    }
    else
    {
        EXPECT_THAT(fake_platform::logLines(), IsEmpty());
    }
}

TEST_P(PostExchangeTest, ANullArrayOfNoObjectsIsAnEmptyList)
{
    if (GetParam().postNullList == nullptr)
    {
        GTEST_SKIP() << "takes no count";
    }
    answer({CURLE_OK, 200});
    EXPECT_EQ(GetParam().postNullList(0), 50u);
    ASSERT_EQ(curl_shim::sentBodies().size(), 1u);
    EXPECT_THAT(curl_shim::sentBodies()[0], testing::EndsWith(":[]}}"));
}

TEST_P(PostExchangeTest, WithoutGlobalInitThereIsNoRequest)
{
    logAt(1);
    curl_shim::failGlobalInit(CURLE_OUT_OF_MEMORY);
    EXPECT_EQ(post(), 75u);
    EXPECT_THAT(calls(), ElementsAre("global_init(3)"));
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError(GetParam().name, "curl_global_init() failed: Out of memory")));
}

TEST_P(PostExchangeTest, WithoutAHandleThereIsNoRequest)
{
    logAt(1);
    curl_shim::failEasyInit();
    EXPECT_EQ(post(), 75u);
    EXPECT_THAT(calls(), ElementsAre("global_init(3)", "easy_init()"));
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError(GetParam().name, "curl_easy_init() failed")));
}

TEST_P(PostExchangeTest, WithoutHeaderLinesOnlyOneGoesOn)
{
    logAt(1);
    curl_shim::failAppend(0, 1000);
    answer({CURLE_OK, 200, R"({"ResponseStatusListObject":{"ResponseStatusObject":[]}})"});
    if (GetParam().goesOnWithoutHeaders)
    {
        EXPECT_EQ(post(), 50u);
        EXPECT_THAT(callsOf("setopt(HTTPHEADER"), ElementsAre("setopt(HTTPHEADER=null)"));
        EXPECT_THAT(curl_shim::sentBodies(), ElementsAre(document));
        EXPECT_THAT(fake_platform::logLines(), IsEmpty());
        return;
    }
    EXPECT_EQ(post(), 60u);
    EXPECT_THAT(callsOf("setopt"), IsEmpty());
    EXPECT_THAT(callsOf("perform"), IsEmpty());
    const auto lines = fake_platform::logLines();
    ASSERT_EQ(lines.size(), 1u);
    const std::string head = "[PubSecStack ERR] " + std::string(GetParam().name) + ":";
    const std::string number = lines[0].substr(head.size(), lines[0].find(' ', head.size()) - head.size());
    EXPECT_EQ(lines[0], head + number + " ### [" + number + "] #### FillHeadMsgInfo Err!\n");
    EXPECT_THAT(number, testing::MatchesRegex("[0-9]+"));
}

TEST_P(PostExchangeTest, ARefusedOptionIsOnlyLogged)
{
    const CURLoption options[] = {CURLOPT_HTTPHEADER,   CURLOPT_IPRESOLVE,      CURLOPT_URL,
                                  CURLOPT_POST,         CURLOPT_SSL_VERIFYPEER, CURLOPT_SSL_VERIFYHOST,
                                  CURLOPT_VERBOSE,      CURLOPT_CONNECTTIMEOUT, CURLOPT_TIMEOUT,
                                  CURLOPT_READFUNCTION, CURLOPT_READDATA,       CURLOPT_WRITEFUNCTION,
                                  CURLOPT_WRITEDATA,    CURLOPT_POSTFIELDSIZE,  CURLOPT_NOSIGNAL};
    const std::vector<std::string> expected = sequence(GetParam().path, document, GetParam().readsAnswer);
    for (const CURLoption option : options)
    {
        if (!GetParam().readsAnswer && (option == CURLOPT_WRITEFUNCTION || option == CURLOPT_WRITEDATA))
        {
            continue;
        }
        curl_shim::reset();
        fake_platform::reset();
        logAt(1);
        curl_shim::refuse(option);
        answer({CURLE_OK, 408});
        EXPECT_EQ(post(), 72u) << option;
        EXPECT_THAT(calls(), ElementsAreArray(expected)) << option;
        EXPECT_THAT(fake_platform::logLinesWith("setopt"),
                    ElementsAre(IsError(GetParam().name, "curl_easy_setopt fault:")))
            << option;
    }
}

/* ------------------------------------------------------------------------------------------------------- out of memory
 */

TEST_P(PostExchangeTest, NoAllocationOfTheDocumentThatFailsIsLostOrUsed)
{
    answerAlways({CURLE_OK, 404});
    u32 result = 0;
    bool nothingSent = true;
    for (unsigned pass = 0; result != 71 || nothingSent; ++pass)
    {
        ASSERT_LT(pass, 200u);
        curl_shim::reset();
        answerAlways({CURLE_OK, 404});
        allocations::failCjson(pass, 1000000);
        result = post();
        allocations::failCjson(0, 0);
        nothingSent = callsOf("perform").empty();
        EXPECT_EQ(result, nothingSent ? 51u : 71u) << pass;
        EXPECT_EQ(allocations::open(), 0u) << pass;
        EXPECT_EQ(curl_shim::openHandles(), 0u) << pass;
        EXPECT_EQ(curl_shim::openLists(), 0u) << pass;
    }
}

TEST_P(PostExchangeTest, OneAllocationThatFailsIsLostOrUsedNowhere)
{
    for (unsigned pass = 0; pass < 60; ++pass)
    {
        curl_shim::reset();
        answer({CURLE_OK, 404});
        allocations::failCjson(pass, 1);
        const u32 result = post();
        allocations::failCjson(0, 0);
        EXPECT_EQ(result, callsOf("perform").empty() ? 51u : 71u) << pass;
        EXPECT_EQ(allocations::open(), 0u) << pass;
    }
}

/* ------------------------------------------------------------------------------------------------------------ transfer
 */

TEST_P(PostExchangeTest, EveryFailedTransferIs76WithItsReason)
{
    for (int code = 1; code < CURL_LAST; ++code)
    {
        if (code == CURLE_WRITE_ERROR)
        {
            continue;
        }
        fake_platform::reset();
        curl_shim::reset();
        logAt(1);
        const CURLcode result = static_cast<CURLcode>(code);
        answer({result, 200, R"({"ResponseStatusListObject":{"ResponseStatusObject":[]}})"});
        EXPECT_EQ(post(), 76u) << code;
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsError(GetParam().name,
                                        std::string("curl_easy_perform() failed: ") + curl_easy_strerror(result))))
            << code;
        const auto made = calls();
        ASSERT_GE(made.size(), 3u);
        EXPECT_THAT(std::vector<std::string>(made.end() - 3, made.end()),
                    ElementsAre("perform()", "free(list)", "cleanup()"));
    }
}

TEST_P(PostExchangeTest, ATransferEndedByTheWriteCallbackIsCompleted)
{
    logAt(1);
    for (const auto& [status, code] :
         std::vector<std::pair<long, u32>>{{200, 50}, {302, 68}, {400, GetParam().code400}, {500, 51}, {503, 73}})
    {
        answer({CURLE_WRITE_ERROR, status});
        EXPECT_EQ(post(), code) << status;
    }
    EXPECT_THAT(fake_platform::logLinesWith("curl_easy_perform"), IsEmpty());
}

TEST_P(PostExchangeTest, AnAnswerBeyondTheLimitIsNotReadAndItsStatusCounts)
{
    logAt(1);
    const std::string large = "document already exists" + std::string(17u << 20, ' ');
    answer({CURLE_OK, 400, large});
    EXPECT_EQ(post(), GetParam().code400);
    answer({CURLE_OK, 200, large});
    EXPECT_EQ(post(), 50u);
    EXPECT_EQ(fake_platform::logLinesWith("not enough memory (realloc returned NULL)").size(),
              GetParam().readsAnswer ? 2u : 0u);
}

/* What each HTTP status means. */
u32 codeOf(long status, u32 code400)
{
    switch (status)
    {
    case 400:
        return code400;
    case 401:
        return 70;
    case 404:
        return 71;
    case 408:
        return 72;
    default:
        break;
    }
    if (status >= 200 && status <= 299)
    {
        return 50;
    }
    if (status >= 300 && status <= 399)
    {
        return 68;
    }
    return status > 500 ? 73 : 51;
}

TEST_P(PostExchangeTest, EveryStatusHasItsCode)
{
    for (long status = 0; status <= 1000; ++status)
    {
        answer({CURLE_OK, status});
        ASSERT_EQ(post(), codeOf(status, GetParam().code400)) << status;
    }
}

TEST_P(PostExchangeTest, ADuplicateIsTheSameCodeInEachAndOnlyForStatus400)
{
    const char* phrases[] = {
        "document already exists",
        "...document already exists...",
        R"({"ResponseStatusListObject":{"ResponseStatusObject":[{"StatusString":"document already exists"}]}})",
        "<html>document already exists</html>",
    };
    for (const char* phrase : phrases)
    {
        answer({CURLE_OK, 400, phrase});
        EXPECT_EQ(post(), 69u) << phrase;
        for (const long status : {200L, 302L, 401L, 403L, 404L, 408L, 409L, 500L, 503L})
        {
            answer({CURLE_OK, status, phrase});
            EXPECT_EQ(post(), codeOf(status, 0)) << status;
        }
    }
    for (const char* other : {"Document already exists", "document already exist", "document  already exists", ""})
    {
        answer({CURLE_OK, 400, other});
        EXPECT_EQ(post(), GetParam().code400) << other;
    }
}

} // namespace
