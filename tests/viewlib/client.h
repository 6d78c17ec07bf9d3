/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <curl/curl.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

/* A client of its own for the tests: libcurl, told by each test exactly what to send. */
namespace client
{

struct Result
{
    CURLcode code = CURLE_OK;
    long status = 0;
    std::string body;
    std::vector<std::string> headers; /* of all answers, in order, status lines included */
    double seconds = 0;
};

struct Call
{
    std::string url;
    std::string method = "POST";
    std::string body;
    std::vector<std::string> headers;
    std::string credentials; /* "user:password": digest */
    std::string rawTarget;   /* instead of the URL's path, letter for letter */
    bool unpack = false;     /* accept packed answers and unpack them */
    long timeoutMs = 10000;
};

inline size_t append(char* data, size_t size, size_t count, void* text)
{
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

inline size_t appendLine(char* data, size_t size, size_t count, void* lines)
{
    std::string line(data, size * count);
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n'))
    {
        line.pop_back();
    }
    static_cast<std::vector<std::string>*>(lines)->push_back(std::move(line));
    return size * count;
}

/* Calls that are given the same handle share its connection. */
using Handle = std::unique_ptr<CURL, void (*)(CURL*)>;

inline Handle newHandle()
{
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_ALL);
    return Handle(ready == CURLE_OK ? curl_easy_init() : nullptr, curl_easy_cleanup);
}

inline void setBody(CURL* handle, const Call& call)
{
    curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, nullptr);
    if (call.method == "GET")
    {
        curl_easy_setopt(handle, CURLOPT_HTTPGET, 1L);
        return;
    }
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(call.body.size()));
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, call.body.data());
    if (call.method != "POST")
    {
        curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, call.method.c_str());
    }
}

inline Result perform(CURL* handle, const Call& call)
{
    Result result;
    curl_slist* lines = curl_slist_append(nullptr, "Expect:");
    for (const std::string& line : call.headers)
    {
        lines = curl_slist_append(lines, line.c_str());
    }
    curl_easy_setopt(handle, CURLOPT_URL, call.url.c_str());
    curl_easy_setopt(handle, CURLOPT_REQUEST_TARGET, call.rawTarget.empty() ? nullptr : call.rawTarget.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, lines);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 0L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 0L);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, call.timeoutMs);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &result.body);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, appendLine);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, &result.headers);
    curl_easy_setopt(handle, CURLOPT_HTTPAUTH, call.credentials.empty() ? CURLAUTH_NONE : CURLAUTH_DIGEST);
    curl_easy_setopt(handle, CURLOPT_USERPWD, call.credentials.empty() ? nullptr : call.credentials.c_str());
    curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, call.unpack ? "" : nullptr);
    setBody(handle, call);
    result.code = curl_easy_perform(handle);
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &result.status);
    curl_easy_getinfo(handle, CURLINFO_TOTAL_TIME, &result.seconds);
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, nullptr);
    curl_slist_free_all(lines);
    return result;
}

inline Result perform(const Call& call)
{
    const Handle handle = newHandle();
    return perform(handle.get(), call);
}

} // namespace client
