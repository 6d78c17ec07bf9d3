/* SPDX-License-Identifier: Apache-2.0 */
/* The request header lists. */
#include <climits>

#include "core/http.h"
#include "tests/support/curl_shim.h"
#include "tests/support/stack_test.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class HeadersTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        curl_shim::reset();
        stack::put(g_atPubSecStackGlobalCommon[0].achDeviceID, "34020000001190000001");
        stack::put(g_atPubSecStackGlobalCommon[1].achDeviceID, "x");
    }

    void TearDown() override
    {
        EXPECT_EQ(curl_shim::openLists(), 0u);
        StackTest::TearDown();
    }

    /* The lines of a list, which is then released. */
    static std::vector<std::string> take(curl_slist* list)
    {
        std::vector<std::string> lines;
        for (const curl_slist* line = list; line != nullptr; line = line->next)
        {
            lines.emplace_back(line->data);
        }
        curl_slist_free_all(list);
        return lines;
    }

    static std::vector<std::string> plain(u32 platform, const char* token)
    {
        curl_slist* list = nullptr;
        _PubSecHttpFillCurlHeadMsgInfo(&list, nullptr, platform, token);
        return take(list);
    }

    static std::vector<std::string> ex(u32 platform)
    {
        curl_slist* list = nullptr;
        _PubSecHttpFillCurlHeadMsgInfoex(&list, nullptr, platform);
        return take(list);
    }

    static std::vector<std::string> ext1(const char* device)
    {
        curl_slist* list = nullptr;
        _PubSecHttpFillCurlHeadMsgInfoExt1(&list, nullptr, device);
        return take(list);
    }
};

#define FIXED_LINES                                                                                                    \
    "localhost:8080", "Accept:application/json,application/VIID+JSON",                                                 \
        "Content-Type:application/VIID+JSON;charset=UTF-8", "Connection:Keep-alive", "Expect:"

TEST_F(HeadersTest, ThePlainBuilderEndsWithTheIdentity)
{
    EXPECT_THAT(plain(0, nullptr), ElementsAre(FIXED_LINES, "User-Identify:34020000001190000001"));
    EXPECT_THAT(plain(1, nullptr), ElementsAre(FIXED_LINES, "User-Identify:x"));
}

TEST_F(HeadersTest, ATokenComesBeforeTheIdentity)
{
    EXPECT_THAT(plain(1, "abc"), ElementsAre(FIXED_LINES, "token:abc", "User-Identify:x"));
    EXPECT_THAT(plain(1, ""), ElementsAre(FIXED_LINES, "token:", "User-Identify:x"));
}

TEST_F(HeadersTest, ATokenLineIsCutAt128Bytes)
{
    const std::string line = "token:" + std::string(121, 't'); /* 127 characters */
    EXPECT_THAT(plain(1, std::string(121, 't').c_str()), ElementsAre(FIXED_LINES, line, "User-Identify:x"));
    EXPECT_THAT(plain(1, std::string(122, 't').c_str()), ElementsAre(FIXED_LINES, line, "User-Identify:x"));
    EXPECT_THAT(plain(1, std::string(1000, 't').c_str()), ElementsAre(FIXED_LINES, line, "User-Identify:x"));
}

TEST_F(HeadersTest, TheSecondBuilderHasNoToken)
{
    EXPECT_THAT(ex(0), ElementsAre(FIXED_LINES, "User-Identify:34020000001190000001"));
    EXPECT_THAT(ex(1), ElementsAre(FIXED_LINES, "User-Identify:x"));
}

TEST_F(HeadersTest, TheThirdBuilderTakesTheIdentityFromItsCaller)
{
    EXPECT_THAT(ext1("33"), ElementsAre(FIXED_LINES, "User-Identify:33"));
    EXPECT_THAT(ext1(""), ElementsAre(FIXED_LINES, "User-Identify:"));
    EXPECT_THAT(ext1(nullptr), ElementsAre(FIXED_LINES));
}

TEST_F(HeadersTest, TwentyCharactersOfTheIdentityAreSent)
{
    stack::put(g_atPubSecStackGlobalCommon[0].achDeviceID, "123456789012345678901234"); /* not terminated */
    EXPECT_THAT(plain(0, nullptr), ElementsAre(FIXED_LINES, "User-Identify:12345678901234567890"));
    EXPECT_THAT(ex(0), ElementsAre(FIXED_LINES, "User-Identify:12345678901234567890"));
    EXPECT_THAT(ext1("123456789012345678901"), ElementsAre(FIXED_LINES, "User-Identify:12345678901234567890"));
}

TEST_F(HeadersTest, AnUnterminatedIdentityOfTheCallerIsReadNoFurther)
{
    const char device[20] = {'1', '2', '3', '4', '5', '6', '7', '8', '9', '0',
                             '1', '2', '3', '4', '5', '6', '7', '8', '9', '0'};
    EXPECT_THAT(ext1(device), ElementsAre(FIXED_LINES, "User-Identify:12345678901234567890"));
}

TEST_F(HeadersTest, ANumberThatIsNoPlatformHasNoIdentity)
{
    for (const u32 platform : {2u, 3u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
    {
        EXPECT_THAT(plain(platform, nullptr), ElementsAre(FIXED_LINES, "User-Identify:"));
        EXPECT_THAT(ex(platform), ElementsAre(FIXED_LINES, "User-Identify:"));
    }
}

TEST_F(HeadersTest, TheBuildersAppendToWhatTheyAreGiven)
{
    curl_slist* list = curl_slist_append(nullptr, "First: 1");
    _PubSecHttpFillCurlHeadMsgInfoex(&list, nullptr, 1);
    EXPECT_THAT(take(list), ElementsAre("First: 1", FIXED_LINES, "User-Identify:x"));
}

TEST_F(HeadersTest, NoBuilderTouchesTheHandle)
{
    plain(0, "t");
    ex(0);
    ext1("x");
    EXPECT_THAT(curl_shim::callsOf("setopt"), IsEmpty());
}

TEST_F(HeadersTest, WithoutMemoryTheListIsEmpty)
{
    curl_shim::failAppend(0, 1000);
    EXPECT_THAT(plain(0, "t"), IsEmpty());
    EXPECT_THAT(ex(0), IsEmpty());
    EXPECT_THAT(ext1("x"), IsEmpty());
}

TEST_F(HeadersTest, ALineThatCannotBeAppendedLosesNoOther)
{
    curl_shim::failAppend(2, 1);
    EXPECT_THAT(ex(1), ElementsAre("localhost:8080", "Accept:application/json,application/VIID+JSON",
                                   "Connection:Keep-alive", "Expect:", "User-Identify:x"));
}

} // namespace
