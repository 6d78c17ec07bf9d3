/* SPDX-License-Identifier: Apache-2.0 */
#include "post/post_procedure.h"

#include <cjson/cJSON.h>

#include "core/log.h"
#include "core/platform_table.h"
#include "core/text.h"

namespace
{

/* The working state of one call. */
struct TPubSecPostRun
{
    const TPubSecPost* ptPost;
    const TPubSecPostKind* ptKind;
    const char* pchUrl;
    const char* pchBody;
    TPubSecRespBuf tSink;
    bool bAnswered;
    u32 dwVersion; /* of the configuration that the URL was made of */
    char achUrl[PUBSEC_POST_URL_SIZE];
};

bool Has(const TPubSecPostRun* ptRun, EPubSecPostFlag eFlag)
{
    return (ptRun->ptKind->dwFlags & eFlag) != 0;
}

/* A trace point's line, with the place of the point in the source twice. */
void TraceAt(const TPubSecPostRun* ptRun, s32 nPoint, s32 nLine)
{
    if (Has(ptRun, PUBSEC_POST_TRACES))
    {
        PUBSEC_LOG_ERR(ptRun->ptKind->pchName, nLine, "%d line:%d ", nPoint, nLine, "\n");
    }
}
#define TRACE(run, point) TraceAt(run, point, __LINE__)

void SetOptions(const TPubSecPostRun* ptRun, CURL* ptHandle, curl_slist* ptHeaders, TPubSecReqBody* ptBody,
                TPubSecRespBuf* ptSink)
{
    const char* pchName = ptRun->ptKind->pchName;
    const long lLength = static_cast<long>(ptBody->dwLeft);
    PubSecSetBaseOptions(ptHandle, ptHeaders, ptRun->pchUrl, PUBSEC_POST, !Has(ptRun, PUBSEC_POST_NO_TIMEOUT), pchName);
    PubSecSetReader(ptHandle, ptBody, pchName);
    if (Has(ptRun, PUBSEC_POST_READS_ANSWER))
    {
        PubSecSetWriter(ptHandle, ptSink, pchName);
    }
    PubSecSetOption(ptHandle, CURLOPT_POSTFIELDSIZE, lLength, pchName);
    PubSecSetOption(ptHandle, CURLOPT_NOSIGNAL, 1L, pchName);
}

/* A refusal that says that the server has the document already has a code of its own. */
u32 ReadRefusal(const TPubSecPostRun* ptRun, const char* pchStatus, u32 dwRet)
{
    PUBSEC_INF_AS(ptRun->ptKind->pchName, " Server Err Resp:%s", pchStatus);
    const char* pchAnswer = ptRun->tSink.pchBuf;
    if (pchAnswer != nullptr && AppStrstr(pchAnswer, "document already exists") != nullptr)
    {
        return PUBSEC_ERR_REFUSED;
    }
    return dwRet;
}

/* The answer's text has no bearing on the result: it is read for the caller, or for the log. */
bool IsAnswerSeen(const TPubSecPostRun* ptRun)
{
    return ptRun->ptPost->pchStatus != nullptr || PubSecLoad(g_ePubSecStackLogLevel) != 0;
}

u32 ReadOutcome(TPubSecPostRun* ptRun, CURL* ptHandle)
{
    const bool bReads = Has(ptRun, PUBSEC_POST_READS_ANSWER);
    char achStatus[PUBSEC_STATUS_TEXT_SIZE] = {};
    if (bReads && IsAnswerSeen(ptRun))
    {
        TRACE(ptRun, 4);
        if (_PubSecParseSerData(ptRun->tSink.pchBuf, achStatus) == 0)
        {
            PUBSEC_ERR_AS(ptRun->ptKind->pchName, "_PubSecParseSerData Fault! ");
        }
        TRACE(ptRun, 5);
    }
    const s32 nStatus = PubSecHttpStatus(ptHandle);
    if (ptRun->ptPost->pchStatus != nullptr)
    {
        AppMemcpy(ptRun->ptPost->pchStatus, achStatus, sizeof(achStatus));
    }
    TRACE(ptRun, 6);
    u32 dwRet = PubSecResultOfStatus(nStatus, ptRun->ptKind->dwCode400);
    if (bReads && nStatus == 400)
    {
        dwRet = ReadRefusal(ptRun, achStatus, dwRet);
    }
    TRACE(ptRun, 7);
    ptRun->bAnswered = true;
    return dwRet;
}

void FormatUrl(TPubSecPostRun* ptRun)
{
    TPubSecTarget tTarget;
    char achPath[PUBSEC_POST_URL_SIZE];
    const char* pchPath = ptRun->ptKind->pchPath;
    ptRun->dwVersion = PubSecTargetInForce(ptRun->ptPost->dwPlatform, &tTarget);
    if (Has(ptRun, PUBSEC_POST_DATA))
    {
        AppSnprintf(achPath, sizeof(achPath), "%s%s/Data", pchPath, ptRun->ptPost->pchId);
        pchPath = achPath;
    }
    PubSecFormatUrl(ptRun->achUrl, sizeof(ptRun->achUrl), &tTarget, pchPath);
    ptRun->pchUrl = ptRun->achUrl;
}

/* The lines name the device of the configuration that the URL came from: where another one is in force by now, both
 * are made again. */
curl_slist* FillHeaders(TPubSecPostRun* ptRun, CURL* ptHandle)
{
    const u32 dwPlatform = ptRun->ptPost->dwPlatform;
    for (;;)
    {
        curl_slist* ptHeaders = nullptr;
        ptRun->ptKind->pfFillHeaders(&ptHeaders, ptHandle, dwPlatform);
        if (ptRun->ptKind->pchPath == nullptr || PubSecTableIsAt(dwPlatform, ptRun->dwVersion))
        {
            return ptHeaders;
        }
        curl_slist_free_all(ptHeaders);
        FormatUrl(ptRun);
    }
}

/* With a handle: headers, options, transfer, outcome. */
u32 Transfer(TPubSecPostRun* ptRun, CURL* ptHandle)
{
    curl_slist* ptHeaders = FillHeaders(ptRun, ptHandle);
    if (ptHeaders == nullptr && !Has(ptRun, PUBSEC_POST_EMPTY_HEADERS_OK))
    {
        PUBSEC_ERR_HEAD_AS(ptRun->ptKind->pchName);
        return PUBSEC_ERR_HEADERS;
    }
    TPubSecReqBody tBody = {ptRun->pchBody, AppStrlen(ptRun->pchBody)};
    SetOptions(ptRun, ptHandle, ptHeaders, &tBody, &ptRun->tSink);
    const CURLcode eResult = curl_easy_perform(ptHandle);
    curl_slist_free_all(ptHeaders);
    TRACE(ptRun, 3);
    if (!PubSecIsCompleted(eResult))
    {
        PUBSEC_ERR_AS(ptRun->ptKind->pchName, "curl_easy_perform() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_TRANSFER;
    }
    return ReadOutcome(ptRun, ptHandle);
}

u32 Exchange(TPubSecPostRun* ptRun)
{
    const TPubSecPostKind* ptKind = ptRun->ptKind;
    const CURLcode eResult = PubSecCurlGlobalInit();
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR_AS(ptKind->pchName, "curl_global_init() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_CURL_INIT;
    }
    TRACE(ptRun, 2);
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        TRACE(ptRun, 9);
        if (ptKind->pchEasyInitFailed != nullptr)
        {
            PUBSEC_ERR_AS(ptKind->pchName, "%s", ptKind->pchEasyInitFailed);
        }
        return ptKind->dwEasyInitCode;
    }
    PubSecSinkOpen(&ptRun->tSink);
    const u32 dwRet = Transfer(ptRun, ptHandle);
    curl_easy_cleanup(ptHandle);
    PubSecSinkClose(&ptRun->tSink);
    return dwRet;
}

/* The document, or the caller's own body. */
u32 EncodeAndExchange(TPubSecPostRun* ptRun)
{
    const TPubSecPostKind* ptKind = ptRun->ptKind;
    char* pchDocument = ptKind->pfEncode != nullptr ? ptKind->pfEncode(ptRun->ptPost) : nullptr;
    ptRun->pchBody = ptKind->pfEncode != nullptr ? pchDocument : ptRun->ptPost->pchBody;
    if (ptRun->pchBody == nullptr)
    {
        if (ptKind->pchEncodeFailed != nullptr)
        {
            PUBSEC_ERR_AS(ptKind->pchName, "%s", ptKind->pchEncodeFailed);
        }
        return PUBSEC_ERR_FAILED;
    }
    const u32 dwRet = Exchange(ptRun);
    cJSON_free(pchDocument);
    return dwRet;
}

/* All but the URL's room, which is large. */
void Begin(TPubSecPostRun* ptRun, const TPubSecPost* ptPost)
{
    ptRun->ptPost = ptPost;
    ptRun->ptKind = ptPost->ptKind;
    ptRun->pchUrl = ptPost->pchUrl;
    ptRun->pchBody = nullptr;
    ptRun->tSink = {};
    ptRun->bAnswered = false;
    ptRun->dwVersion = 0;
}

} // namespace

u32 PubSecPostRun(const TPubSecPost* ptPost)
{
    TPubSecPostRun tRun;
    Begin(&tRun, ptPost);
    TRACE(&tRun, 1);
    if (!Has(&tRun, PUBSEC_POST_ANY_PLATFORM) && !PubSecIsRegistered(ptPost->dwPlatform))
    {
        PUBSEC_ERR_AS(ptPost->ptKind->pchName, "Device not registered! ");
        return PUBSEC_ERR_NOT_REGISTERED;
    }
    if (Has(&tRun, PUBSEC_POST_DATA) && ptPost->pchId == nullptr)
    {
        return PUBSEC_ERR_FAILED;
    }
    if (ptPost->ptKind->pchPath != nullptr)
    {
        FormatUrl(&tRun);
    }
    const u32 dwRet = EncodeAndExchange(&tRun);
    if (tRun.bAnswered)
    {
        TRACE(&tRun, 8);
    }
    return dwRet;
}

u32 PubSecPostRecords(const TPubSecPostKind& tKind, u32 dwPlatform, const void* pvRecords, u32 dwNum, char* pchStatus)
{
    const TPubSecPost tPost = {&tKind, dwPlatform, pvRecords, dwNum, nullptr, nullptr, nullptr, pchStatus};
    return PubSecPostRun(&tPost);
}

u32 PubSecResultOfStatus(s32 nStatus, u32 dwCode400)
{
    if (nStatus >= 200 && nStatus <= 299)
    {
        return PUBSEC_OK;
    }
    if (nStatus >= 300 && nStatus <= 399)
    {
        return PUBSEC_ERR_REDIRECTED;
    }
    switch (nStatus)
    {
    case 400:
        return dwCode400;
    case 401:
        return PUBSEC_ERR_UNAUTHORIZED;
    case 404:
        return PUBSEC_ERR_NOT_FOUND;
    case 408:
        return PUBSEC_ERR_REQUEST_TIMEOUT;
    default:
        return nStatus > 500 ? PUBSEC_ERR_SERVER : PUBSEC_ERR_FAILED;
    }
}

void PubSecFillPlainHeaders(curl_slist** pptList, CURL* ptHandle, u32 dwPlatform)
{
    _PubSecHttpFillCurlHeadMsgInfo(pptList, ptHandle, dwPlatform, nullptr);
}
