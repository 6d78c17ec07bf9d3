/* SPDX-License-Identifier: Apache-2.0 */
/* Transfer options, body callbacks and what else an exchange with libcurl needs. */
#include "core/http.h"

#include <stdlib.h>

#include "core/log.h"

namespace
{

constexpr long c_timeoutSeconds = 30;

TAppLockHandle s_hCurlLock;

__attribute__((constructor)) void CreateCurlLock()
{
    PubSecLockMade(s_hCurlLock);
}

} // namespace

/* Called before every exchange; libcurl counts the calls, but not in every build safely against concurrent ones. */
CURLcode PubSecCurlGlobalInit()
{
    const bool bLocked = PubSecLockTake(s_hCurlLock);
    const CURLcode eResult = curl_global_init(CURL_GLOBAL_ALL);
    PubSecLockGive(bLocked, s_hCurlLock);
    return eResult;
}

void PubSecSetBaseOptions(CURL* ptHandle, curl_slist* ptHeaders, const char* pchUrl, EPubSecMethod eMethod,
                          bool bTimeout, const char* pchFunction)
{
    PubSecSetOption(ptHandle, CURLOPT_HTTPHEADER, ptHeaders, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_IPRESOLVE, static_cast<long>(CURL_IPRESOLVE_WHATEVER), pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_URL, pchUrl, pchFunction);
    PubSecSetOption(ptHandle, eMethod == PUBSEC_GET ? CURLOPT_HTTPGET : CURLOPT_POST, 1L, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_SSL_VERIFYPEER, 0L, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_SSL_VERIFYHOST, 0L, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_VERBOSE, 0L, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_CONNECTTIMEOUT, c_timeoutSeconds, pchFunction);
    if (bTimeout)
    {
        PubSecSetOption(ptHandle, CURLOPT_TIMEOUT, c_timeoutSeconds, pchFunction);
    }
}

void PubSecSetReader(CURL* ptHandle, TPubSecReqBody* ptBody, const char* pchFunction)
{
    PubSecSetOption(ptHandle, CURLOPT_READFUNCTION, PubSecReadCB, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_READDATA, ptBody, pchFunction);
}

void PubSecSetWriter(CURL* ptHandle, TPubSecRespBuf* ptSink, const char* pchFunction)
{
    PubSecSetOption(ptHandle, CURLOPT_WRITEFUNCTION, _PubSecWriteCB, pchFunction);
    PubSecSetOption(ptHandle, CURLOPT_WRITEDATA, ptSink, pchFunction);
}

void PubSecSinkOpen(TPubSecRespBuf* ptSink)
{
    ptSink->pchBuf = static_cast<char*>(calloc(1, 1));
    ptSink->dwLen = 0;
}

void PubSecSinkClose(TPubSecRespBuf* ptSink)
{
    free(ptSink->pchBuf);
    ptSink->pchBuf = nullptr;
    ptSink->dwLen = 0;
}

s32 PubSecHttpStatus(CURL* ptHandle)
{
    long lStatus = 0;
    curl_easy_getinfo(ptHandle, CURLINFO_RESPONSE_CODE, &lStatus);
    return static_cast<s32>(lStatus);
}

size_t _PubSecWriteCB(void* pvData, size_t size, size_t nmemb, TPubSecRespBuf* ptSink)
{
    const size_t count = size * nmemb;
    const bool bReal = (nmemb == 0 || count / nmemb == size) && count <= INT32_MAX;
    const bool bFits = bReal && ptSink->dwLen <= PUBSEC_ANSWER_MAX && count <= PUBSEC_ANSWER_MAX - ptSink->dwLen;
    PUBSEC_INF("WriteMemoryCallback size:%d nmemb:%d contents:%.*s", static_cast<s32>(size), static_cast<s32>(nmemb),
               bReal ? static_cast<s32>(count) : 0, static_cast<const char*>(pvData));
    char* pchGrown = bFits ? static_cast<char*>(realloc(ptSink->pchBuf, ptSink->dwLen + count + 1)) : nullptr;
    if (pchGrown == nullptr)
    {
        PubSecSinkClose(ptSink);
        PUBSEC_ERR("not enough memory (realloc returned NULL)");
        return 0;
    }
    ptSink->pchBuf = pchGrown;
    AppMemcpy(pchGrown + ptSink->dwLen, pvData, count);
    ptSink->dwLen += count;
    pchGrown[ptSink->dwLen] = '\0';
    return count;
}

size_t PubSecReadCB(char* pchDest, size_t size, size_t nmemb, TPubSecReqBody* ptSrc)
{
    if (ptSrc == nullptr || ptSrc->dwLeft == 0)
    {
        return 0;
    }
    const size_t room = size * nmemb;
    const size_t count = room < ptSrc->dwLeft ? room : ptSrc->dwLeft;
    AppMemcpy(pchDest, ptSrc->pchData, count);
    ptSrc->pchData += count;
    ptSrc->dwLeft -= count;
    return count;
}
