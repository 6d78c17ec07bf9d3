/* SPDX-License-Identifier: Apache-2.0 */
/* How much of a file a server already holds, and as whom to ask. */
#include <cjson/cJSON.h>

#include <pubsecstack/posts.h>

#include "core/http.h"
#include "core/log.h"
#include "core/platform_table.h"
#include "core/text.h"
#include "post/post_procedure.h"
#include "post/transfer_state.h"

namespace
{

constexpr const char* c_pchName = "PubSecGetTransDataInf";
constexpr const char* c_pchParser = "_PubSecParseTransDataResp";

void ReadLength(const cJSON* ptObject, TPubSecTransDataInf* ptOut)
{
    const cJSON* ptLength = cJSON_GetObjectItem(ptObject, "FileLength");
    if (ptLength == nullptr)
    {
        PUBSEC_ERR_AS(c_pchParser, "cannot find FileLength !Please Check Again !");
        return;
    }
    if (!cJSON_IsNumber(ptLength))
    {
        PUBSEC_ERR_AS(c_pchParser, "cannot find type is not int Please Check Again !");
        return;
    }
    const double dLength = ptLength->valuedouble;
    ptOut->dwFileLength =
        dLength >= 0 && dLength <= UINT32_MAX ? static_cast<u32>(dLength) : static_cast<u32>(ptLength->valueint);
    PUBSEC_LOG_INF(c_pchParser, "%d\r\n", static_cast<s32>(ptOut->dwFileLength), "");
}

void ReadHash(const cJSON* ptObject, TPubSecTransDataInf* ptOut)
{
    const cJSON* ptHash = cJSON_GetObjectItem(ptObject, "FileHash");
    if (ptHash == nullptr)
    {
        PUBSEC_ERR_AS(c_pchParser, "cannot find string FileHash!Please Check Again !");
        return;
    }
    if (!cJSON_IsString(ptHash))
    {
        PUBSEC_ERR_AS(c_pchParser, "cannot find type is not string Please Check Again !");
        return;
    }
    PubSecCopyText(ptOut->achFileHash, sizeof(ptOut->achFileHash), ptHash->valuestring, sizeof(ptOut->achFileHash));
    PUBSEC_LOG_ERR(c_pchParser, __LINE__, "%s\r\n", ptOut->achFileHash, "");
}

/* The options; false when the request's one header cannot be set. */
bool SetOptions(CURL* ptHandle, curl_slist* ptHeaders, curl_slist* ptOnlyHeader, const char* pchUrl,
                TPubSecRespBuf* ptSink)
{
    PubSecSetBaseOptions(ptHandle, ptHeaders, pchUrl, PUBSEC_GET, true, c_pchName);
    PubSecSetWriter(ptHandle, ptSink, c_pchName);
    PubSecSetOption(ptHandle, CURLOPT_NOSIGNAL, 1L, c_pchName);
    const CURLcode eResult = curl_easy_setopt(ptHandle, CURLOPT_HTTPHEADER, ptOnlyHeader);
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR_AS(c_pchName, "easy_setopt Header failed:%s!", curl_easy_strerror(eResult));
    }
    return eResult == CURLE_OK;
}

u32 ReadOutcome(CURL* ptHandle, const TPubSecRespBuf* ptSink, TPubSecTransDataInf* ptInfo, u32* pdwHttpCode)
{
    const s32 nStatus = PubSecHttpStatus(ptHandle);
    if (pdwHttpCode != nullptr)
    {
        *pdwHttpCode = static_cast<u32>(nStatus);
    }
    const u32 dwRet = PubSecResultOfStatus(nStatus, PUBSEC_ERR_REFUSED);
    if (nStatus != 404 && dwRet != PUBSEC_OK)
    {
        return dwRet;
    }
    /* A server that knows nothing of the file is as good an answer, readable or not. */
    if (ptInfo != nullptr)
    {
        _PubSecParseTransDataResp(ptSink->pchBuf, ptInfo);
    }
    return PUBSEC_OK;
}

u32 Exchange(CURL* ptHandle, u32 dwPlatform, const char* pchUrl, TPubSecRespBuf* ptSink)
{
    curl_slist* ptHeaders = nullptr;
    _PubSecHttpFillCurlHeadMsgInfo(&ptHeaders, ptHandle, dwPlatform, nullptr);
    if (ptHeaders == nullptr)
    {
        PUBSEC_ERR_HEAD_AS(c_pchName);
        return PUBSEC_ERR_HEADERS;
    }
    u32 dwRet = PUBSEC_ERR_HEADER_OPTION;
    curl_slist* ptOnlyHeader = curl_slist_append(nullptr, "Content-Length:0");
    if (SetOptions(ptHandle, ptHeaders, ptOnlyHeader, pchUrl, ptSink))
    {
        const CURLcode eResult = curl_easy_perform(ptHandle);
        dwRet = PubSecIsCompleted(eResult) ? PUBSEC_OK : PUBSEC_ERR_TRANSFER;
        if (dwRet != PUBSEC_OK)
        {
            PUBSEC_ERR_AS(c_pchName, "curl_easy_perform() failed: %s", curl_easy_strerror(eResult));
        }
    }
    curl_slist_free_all(ptOnlyHeader);
    curl_slist_free_all(ptHeaders);
    return dwRet;
}

} // namespace

u32 _PubSecParseTransDataResp(const char* pchBody, TPubSecTransDataInf* ptOut)
{
    cJSON* ptRoot = PubSecParseAnswer(pchBody, __func__);
    const cJSON* ptObject = cJSON_GetObjectItem(ptRoot, "TransDataInfObject");
    if (ptObject != nullptr && ptOut != nullptr)
    {
        ReadLength(ptObject, ptOut);
        ReadHash(ptObject, ptOut);
    }
    cJSON_Delete(ptRoot);
    return ptObject != nullptr ? 1 : 0;
}

u32 PubSecGetTransDataInf(s32 nPlatform, TPubSecTransDataInf* ptInfo, const char* pchUrl, u32* pdwHttpCode)
{
    const u32 dwPlatform = static_cast<u32>(nPlatform);
    if (!PubSecIsRegistered(dwPlatform))
    {
        PUBSEC_ERR("Device not registered! ");
        return PUBSEC_ERR_NOT_REGISTERED;
    }
    const CURLcode eResult = PubSecCurlGlobalInit();
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR("curl_global_init() failed: %s", curl_easy_strerror(eResult));
        return PUBSEC_ERR_CURL_INIT;
    }
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        PUBSEC_ERR("%s", PUBSEC_EASY_INIT_FAILED);
        return PUBSEC_ERR_CURL_INIT;
    }
    TPubSecRespBuf tSink;
    PubSecSinkOpen(&tSink);
    u32 dwRet = Exchange(ptHandle, dwPlatform, pchUrl, &tSink);
    if (dwRet == PUBSEC_OK)
    {
        dwRet = ReadOutcome(ptHandle, &tSink, ptInfo, pdwHttpCode);
    }
    curl_easy_cleanup(ptHandle);
    PubSecSinkClose(&tSink);
    return dwRet;
}

u32 PubSecStackGetUploadPartParam(u16 wPlatform, char* pchDeviceID)
{
    if (!PubSecIsPlatform(wPlatform) || pchDeviceID == nullptr)
    {
        return PUBSEC_ERR_PARAM;
    }
    TPubSecPlatRegInfo tInfo;
    PubSecTableRead(wPlatform, &tInfo);
    PubSecCopyText(pchDeviceID, PUBSEC_DEVICE_ID_LEN + 1, tInfo.achDeviceID, PUBSEC_DEVICE_ID_LEN);
    return PUBSEC_OK;
}
