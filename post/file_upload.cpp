/* SPDX-License-Identifier: Apache-2.0 */
#define _FILE_OFFSET_BITS 64 /* files of more than 2 GiB where the word has 32 bits */
/* Streaming a local file to a URL, with a watchdog against a server that no longer reads. */
#include "post/file_upload.h"

#include <stdio.h>

#include <initializer_list>

#include <pubsecstack/posts.h>

#include "core/http.h"
#include "core/state.h"

u32 g_ntick;

namespace
{

constexpr u32 c_stallMs = 30000;
constexpr long c_connectSeconds = 15;

/* Lines of the upload are written whatever the log level, under a tag of their own. */
#define UPLOAD_LINE(tag, name, format, ...) TlxPrintf(1, 0, tag "%s:%d " format "\n", name, __LINE__, __VA_ARGS__)
#define UPLOAD_ERR_AS(name, format, ...) UPLOAD_LINE("[PUBSECSTACK ERR] ", name, format, __VA_ARGS__)
#define UPLOAD_INF_AS(name, format, ...) UPLOAD_LINE("[PUBSECSTACK INF] ", name, format, __VA_ARGS__)

/* Size and position in 32 bits; false when the file has none. */
bool Measure(FILE* ptFile, u32 dwPosition, u32* pdwSize, u32* pdwPosition)
{
    if (fseeko(ptFile, 0, SEEK_END) != 0)
    {
        return false;
    }
    const off_t size = ftello(ptFile);
    if (size < 0 || fseeko(ptFile, static_cast<off_t>(dwPosition), SEEK_SET) != 0)
    {
        return false;
    }
    *pdwSize = static_cast<u32>(size);
    *pdwPosition = static_cast<u32>(ftello(ptFile));
    return true;
}

curl_slist* SetOptions(CURL* ptHandle, const char* pchUrl, FILE* ptFile, u32 dwLength)
{
    curl_easy_setopt(ptHandle, CURLOPT_URL, pchUrl);
    curl_easy_setopt(ptHandle, CURLOPT_POST, 1L);
    curl_easy_setopt(ptHandle, CURLOPT_READFUNCTION, read_callback);
    curl_easy_setopt(ptHandle, CURLOPT_READDATA, ptFile);
    curl_easy_setopt(ptHandle, CURLOPT_VERBOSE, 0L);
    curl_easy_setopt(ptHandle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(dwLength));
    curl_easy_setopt(ptHandle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(ptHandle, CURLOPT_CONNECTTIMEOUT, c_connectSeconds);
    curl_easy_setopt(ptHandle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(ptHandle, CURLOPT_XFERINFOFUNCTION, ProcCBEx);
    curl_easy_setopt(ptHandle, CURLOPT_XFERINFODATA, reinterpret_cast<void*>(1));
    curl_slist* ptHeaders = nullptr;
    for (const char* pchLine : {"Expect:", "content-type:application/octet-stream"})
    {
        curl_slist* ptLonger = curl_slist_append(ptHeaders, pchLine);
        ptHeaders = ptLonger != nullptr ? ptLonger : ptHeaders;
    }
    curl_easy_setopt(ptHandle, CURLOPT_HTTPHEADER, ptHeaders);
    return ptHeaders;
}

/* Sends the file from where it stands and reads the status. */
u32 Transfer(CURL* ptHandle, const char* pchUrl, FILE* ptFile, u32 dwLength)
{
    const char* pchName = "PubSecCurlUpLoadFile";
    curl_slist* ptHeaders = SetOptions(ptHandle, pchUrl, ptFile, dwLength);
    PubSecStore(g_ntick, AppGetTick());
    UPLOAD_INF_AS(pchName, "PubSecCurlUpLoadFile:g_ntick count:%d", static_cast<s32>(PubSecLoad(g_ntick)));
    const CURLcode eResult = curl_easy_perform(ptHandle);
    curl_slist_free_all(ptHeaders);
    if (eResult != CURLE_OK)
    {
        UPLOAD_ERR_AS(pchName, "curl_easy_perform() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_TRANSFER;
    }
    const s32 nStatus = PubSecHttpStatus(ptHandle);
    if (!PubSecIsAccepted(nStatus))
    {
        UPLOAD_ERR_AS(pchName, "curl_post Failed,Return:%d!", nStatus);
        return PUBSEC_ERR_UPLOAD_REFUSED;
    }
    return PUBSEC_OK;
}

/* With the file open: size and position, handle, transfer. */
u32 Upload(const char* pchUrl, const char* pchPath, FILE* ptFile, u32 dwPosition)
{
    const char* pchName = "PubSecCurlUpLoadFile";
    u32 dwSize = 0;
    u32 dwFrom = 0;
    if (!Measure(ptFile, dwPosition, &dwSize, &dwFrom))
    {
        UPLOAD_ERR_AS(pchName, "fopen '%s' Err", pchPath); /* it has no bytes to seek in: a pipe, say */
        return PUBSEC_ERR_FILE_OPEN;
    }
    UPLOAD_INF_AS(pchName, "fsize %lu | FilePosLen %lu", static_cast<unsigned long>(dwSize),
                  static_cast<unsigned long>(dwFrom));
    const CURLcode eResult = PubSecCurlGlobalInit();
    if (eResult != CURLE_OK)
    {
        fprintf(stderr, "curl_global_init() failed: %s\n", curl_easy_strerror(eResult));
        return PUBSEC_ERR_CURL_INIT;
    }
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        return PUBSEC_OK; /* reported as success */
    }
    const u32 dwRet = Transfer(ptHandle, pchUrl, ptFile, dwSize - dwFrom);
    curl_easy_cleanup(ptHandle);
    return dwRet;
}

} // namespace

u32 PubSecCurlUpLoadFile(const char* pchUrl, const char* pchPath, u32 dwPosition)
{
    FILE* ptFile = pchPath == nullptr ? nullptr : fopen(pchPath, "rb");
    if (ptFile == nullptr)
    {
        UPLOAD_ERR_AS(__func__, "fopen '%s' Err", pchPath == nullptr ? "" : pchPath);
        return PUBSEC_ERR_FILE_OPEN;
    }
    const u32 dwRet = Upload(pchUrl, pchPath, ptFile, dwPosition);
    fclose(ptFile);
    return dwRet;
}

size_t read_callback(char* pchDest, size_t size, size_t nmemb, void* pvFile)
{
    FILE* ptFile = static_cast<FILE*>(pvFile);
    PubSecStore(g_ntick, AppGetTick());
    if (ptFile == nullptr || feof(ptFile) != 0)
    {
        return 0;
    }
    const size_t count = fread(pchDest, 1, size * nmemb, ptFile);
    AppDelay(1); /* leaves the processor and the line to the recording */
    return count;
}

int ProcCBEx(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    const u32 dwLast = PubSecLoad(g_ntick); /* first: another upload may move it on, but never past the present */
    const u32 dwIdleMs = AppConvertTickToMS(AppTickDiff(dwLast, AppGetTick()));
    if (dwIdleMs < c_stallMs)
    {
        return 0;
    }
    UPLOAD_ERR_AS(__func__, "ProcCBEx:timeout stop upload time:%d", static_cast<s32>(dwIdleMs));
    return 1;
}
