/* SPDX-License-Identifier: Apache-2.0 */
/* The table of result codes as hosts were promised it, held against the header and the page. */
#include <pubsecstack/results.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace
{

struct Promise
{
    u32 code;
    u32 constant;
    const char* name;
    const char* meaning;
};

const Promise promised[] = {
    {50, PUBSEC_OK, "PUBSEC_OK", "success"},
    {51, PUBSEC_ERR_FAILED, "PUBSEC_ERR_FAILED",
     "general failure: initialisation failed, a document could not be built, an unexpected HTTP status, an unreadable "
     "answer"},
    {52, PUBSEC_ERR_ALREADY_INIT, "PUBSEC_ERR_ALREADY_INIT",
     "already initialised; in the video slice post: no transfer handle"},
    {54, PUBSEC_ERR_NOT_REGISTERED, "PUBSEC_ERR_NOT_REGISTERED", "platform not registered"},
    {60, PUBSEC_ERR_HEADERS, "PUBSEC_ERR_HEADERS", "request header list could not be built"},
    {61, PUBSEC_ERR_BAD_REQUEST, "PUBSEC_ERR_BAD_REQUEST",
     "HTTP 400 in the posts of images, non-motor vehicles, things and scenes"},
    {65, PUBSEC_ERR_UPLOAD_REFUSED, "PUBSEC_ERR_UPLOAD_REFUSED",
     "file upload answered with a status other than 200 or 201"},
    {68, PUBSEC_ERR_REDIRECTED, "PUBSEC_ERR_REDIRECTED", "HTTP 300 to 399"},
    {69, PUBSEC_ERR_REFUSED, "PUBSEC_ERR_REFUSED",
     "HTTP 400 in the other posts, or an answer saying \"document already exists\"; keepalive answered with status "
     "code "
     "\"10\""},
    {70, PUBSEC_ERR_UNAUTHORIZED, "PUBSEC_ERR_UNAUTHORIZED", "HTTP 401"},
    {71, PUBSEC_ERR_NOT_FOUND, "PUBSEC_ERR_NOT_FOUND", "HTTP 404"},
    {72, PUBSEC_ERR_REQUEST_TIMEOUT, "PUBSEC_ERR_REQUEST_TIMEOUT", "HTTP 408"},
    {73, PUBSEC_ERR_SERVER, "PUBSEC_ERR_SERVER", "HTTP above 500"},
    {74, PUBSEC_ERR_HEADER_OPTION, "PUBSEC_ERR_HEADER_OPTION", "transfer-data query: header option could not be set"},
    {75, PUBSEC_ERR_CURL_INIT, "PUBSEC_ERR_CURL_INIT", "libcurl global or easy initialisation failed"},
    {76, PUBSEC_ERR_TRANSFER, "PUBSEC_ERR_TRANSFER", "transfer failed, or an upload stopped by its stall watchdog"},
    {77, PUBSEC_ERR_TIME_QUERY, "PUBSEC_ERR_TIME_QUERY",
     "system-time query answered with a status other than 200 or 201"},
    {79, PUBSEC_ERR_FILE_OPEN, "PUBSEC_ERR_FILE_OPEN", "file to upload could not be opened"},
    {80, PUBSEC_ERR_PARAM, "PUBSEC_ERR_PARAM",
     "bad argument: null record, platform above 1, object count 0 or above 256, buffer length out of range"},
    {103, PUBSEC_ERR_NULL_RECORD, "PUBSEC_ERR_NULL_RECORD", "null record in the one-shot unregistration"},
};

TEST(ResultCodes, HaveTheirNumbersAndTexts)
{
    for (const Promise& promise : promised)
    {
        EXPECT_EQ(promise.code, promise.constant) << promise.name;
        EXPECT_STREQ(promise.meaning, PubSecResultText(promise.code));
    }
}

TEST(ResultCodes, AreNoOthers)
{
    std::set<u32> codes;
    for (const Promise& promise : promised)
    {
        codes.insert(promise.code);
    }
    for (u32 code = 0; code < 300; code++)
    {
        if (codes.count(code) == 0)
        {
            EXPECT_STREQ("unknown result", PubSecResultText(code)) << code;
        }
    }
}

TEST(ResultCodes, StandOnThePageOnceEach)
{
    std::ifstream page(PUBSEC_DOCS_DIR "/results.md");
    ASSERT_TRUE(page.is_open());
    const std::regex row("\\| ([0-9]+) \\| `([A-Z_]+)` \\| (.*)");
    std::size_t at = 0;
    for (std::string line; std::getline(page, line);)
    {
        std::smatch match;
        if (std::regex_match(line, match, row))
        {
            ASSERT_LT(at, std::size(promised));
            EXPECT_EQ(std::to_string(promised[at].code), match[1].str());
            EXPECT_EQ(promised[at].name, match[2].str());
            EXPECT_EQ(0u, match[3].str().find(promised[at].meaning)) << line;
            at++;
        }
    }
    EXPECT_EQ(std::size(promised), at);
}

} // namespace
