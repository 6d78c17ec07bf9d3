/* SPDX-License-Identifier: Apache-2.0 */
#include "bare_curl.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include <curl/curl.h>

#include <pubsecplatform.h>

#include "records.h"
#include "report.h"

namespace bench
{

namespace
{

struct Body
{
    const char* next;
    size_t left;
};

size_t readBody(char* place, size_t size, size_t count, void* context)
{
    Body& body = *static_cast<Body*>(context);
    const size_t taken = std::min(size * count, body.left);
    std::memcpy(place, body.next, taken);
    body.next += taken;
    body.left -= taken;
    return taken;
}

size_t keepAnswer(char* data, size_t size, size_t count, void* context)
{
    static_cast<std::string*>(context)->append(data, size * count);
    return size * count;
}

size_t readFile(char* place, size_t size, size_t count, void* context)
{
    const size_t taken = std::fread(place, 1, size * count, static_cast<FILE*>(context));
    AppDelay(1);
    return taken;
}

int goOn(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return 0;
}

curl_slist* headersOf(std::initializer_list<const char*> lines)
{
    curl_slist* headers = nullptr;
    for (const char* line : lines)
    {
        headers = curl_slist_append(headers, line);
    }
    return headers;
}

long performed(CURL* handle, curl_slist* headers)
{
    long status = 0;
    if (curl_easy_perform(handle) == CURLE_OK)
    {
        curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    }
    curl_slist_free_all(headers);
    curl_easy_cleanup(handle);
    return status;
}

} // namespace

void initBareCurl()
{
    if (curl_global_init(CURL_GLOBAL_ALL) != CURLE_OK)
    {
        fail("libcurl cannot be initialised");
    }
}

long barePost(const std::string& url, const char* body, size_t size)
{
    static const std::string identity = std::string("User-Identify:") + kDeviceID;
    Body source = {body, size};
    std::string answer;
    CURL* const handle = curl_easy_init();
    curl_slist* const headers = headersOf({"localhost:8080", "Accept:application/json,application/VIID+JSON",
                                           "Content-Type:application/VIID+JSON;charset=UTF-8", "Connection:Keep-alive",
                                           "Expect:", identity.c_str()});
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(handle, CURLOPT_IPRESOLVE, static_cast<long>(CURL_IPRESOLVE_WHATEVER));
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_POST, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 0L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 0L);
    curl_easy_setopt(handle, CURLOPT_VERBOSE, 0L);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, 30L);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT, 30L);
    curl_easy_setopt(handle, CURLOPT_READFUNCTION, readBody);
    curl_easy_setopt(handle, CURLOPT_READDATA, &source);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, keepAnswer);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(size));
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    return performed(handle, headers);
}

long bareUpload(const std::string& url, const std::string& path)
{
    FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
    {
        return 0;
    }
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file);
    std::rewind(file);
    CURL* const handle = curl_easy_init();
    curl_slist* const headers = headersOf({"Expect:", "content-type:application/octet-stream"});
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_POST, 1L);
    curl_easy_setopt(handle, CURLOPT_READFUNCTION, readFile);
    curl_easy_setopt(handle, CURLOPT_READDATA, file);
    curl_easy_setopt(handle, CURLOPT_VERBOSE, 0L);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, 15L);
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, goOn);
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers);
    const long status = performed(handle, headers);
    std::fclose(file);
    return status;
}

} // namespace bench
