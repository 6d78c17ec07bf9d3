/* SPDX-License-Identifier: Apache-2.0 */
/* Prints the page of result codes: names, numbers and meanings from the header, what to do about them from here. */
#include <pubsecstack/results.h>

#include <cstdio>

namespace
{

struct Advice
{
    u32 code;
    const char* returnedBy;
    const char* whatToDo;
};

constexpr Advice advice[] = {
    {PUBSEC_OK, "every operation", "nothing; the work is done"},
    {PUBSEC_ERR_FAILED,
     "`PubSecStackInit`, posts, unregistrations, `PubSecGetSystemTimeMsg`, `PubSecGetTransDataInf`, "
     "`PubSecStackTestRegister`, tree functions, "
     "file hash, base64",
     "read the log line: a null or unusable record, or no memory, is to be fixed; an unexpected status is the "
     "server's, "
     "post again later"},
    {PUBSEC_ERR_ALREADY_INIT, "`PubSecStackInit`, `PubSecPostVideoSlice`",
     "from the start: nothing, or `PubSecStackUnInit` first after a failed start; from the post: free memory, post "
     "again"},
    {PUBSEC_ERR_NOT_REGISTERED, "posts, `PubSecGetTransDataInf`, `PubSecPostUserUnRegisterMsg`",
     "wait for the callback with status 1, then post again"},
    {PUBSEC_ERR_HEADERS,
     "posts but `PubSecPostImageFace`, unregistrations, `PubSecGetSystemTimeMsg`, "
     "`PubSecGetTransDataInf`",
     "memory is short: post again later"},
    {PUBSEC_ERR_BAD_REQUEST,
     "`PubSecPostImage`, `PubSecPostImageNonMotVeh`, `PubSecPostImageThing`, `PubSecPostImageScene`",
     "the server refuses the document: fix the record"},
    {PUBSEC_ERR_UPLOAD_REFUSED, "`PubSecCurlUpLoadFile`",
     "the server refuses the upload: check the URL and the position"},
    {PUBSEC_ERR_REDIRECTED, "posts, `PubSecGetTransDataInf`",
     "posts follow no redirects: configure the server's own address"},
    {PUBSEC_ERR_REFUSED, "posts, `PubSecGetTransDataInf`",
     "from the four posts that return `PUBSEC_ERR_BAD_REQUEST` too: the server has the document, count it as "
     "delivered; "
     "from all others: delivered before, or to be fixed"},
    {PUBSEC_ERR_UNAUTHORIZED, "posts, `PubSecGetTransDataInf`",
     "the server has dropped the registration: the keepalive will find out; post again after the next callback"},
    {PUBSEC_ERR_NOT_FOUND, "posts", "the server lacks the resource: don't post this kind to it"},
    {PUBSEC_ERR_REQUEST_TIMEOUT, "posts, `PubSecGetTransDataInf`", "post again"},
    {PUBSEC_ERR_SERVER, "posts, `PubSecGetTransDataInf`", "the server is in trouble: post again later, more slowly"},
    {PUBSEC_ERR_HEADER_OPTION, "`PubSecGetTransDataInf`", "ask again"},
    {PUBSEC_ERR_CURL_INIT,
     "posts, unregistrations, `PubSecGetSystemTimeMsg`, `PubSecGetTransDataInf`, `PubSecCurlUpLoadFile`",
     "memory is short, or libcurl is not whole: post again later"},
    {PUBSEC_ERR_TRANSFER,
     "posts, unregistrations, `PubSecGetSystemTimeMsg`, `PubSecGetTransDataInf`, `PubSecCurlUpLoadFile`",
     "the line is down or the server does not answer: post again later; of an upload ask `PubSecGetTransDataInf` where "
     "to go on"},
    {PUBSEC_ERR_TIME_QUERY, "`PubSecGetSystemTimeMsg`", "ask again later; check the platform number"},
    {PUBSEC_ERR_FILE_OPEN, "`PubSecCurlUpLoadFile`", "check the path and its rights"},
    {PUBSEC_ERR_PARAM,
     "identifier and date-time builders, tree functions, `PubSecPostDispositionNotification`, "
     "`PubSecStackGetUploadPartParam`",
     "fix the call"},
    {PUBSEC_ERR_NULL_RECORD, "`PubSecPostUserUnRegisterMsgExt`", "fix the call"},
};

const Advice* adviceOn(u32 code)
{
    for (const Advice& row : advice)
    {
        if (row.code == code)
        {
            return &row;
        }
    }
    return nullptr;
}

int printCode(const char* name, u32 code, const char* meaning)
{
    const Advice* row = adviceOn(code);
    if (row == nullptr)
    {
        std::fprintf(stderr, "no advice on %s (%u)\n", name, code);
        return 1;
    }
    std::printf("| %u | `%s` | %s | %s | %s |\n", code, name, meaning, row->returnedBy, row->whatToDo);
    return 0;
}

} // namespace

int main()
{
    std::puts(
        "# Result codes\n\n"
        "Generated from `pubsecstack/results.h` by `pubsec-results`; a test holds the page against it. The 1 and 0 of "
        "`PubSecStackPostRegisterExt`,\nof the MD5 functions and of the copy and release functions are not result "
        "codes.\n\n"
        "| code | name | meaning | returned by | what to do |\n|---|---|---|---|---|");
    int failures = 0;
#define PRINT_CODE(name, number, meaning) failures += printCode(#name, number, meaning);
    PUBSEC_RESULT_LIST(PRINT_CODE)
#undef PRINT_CODE
    return failures == 0 ? 0 : 1;
}
