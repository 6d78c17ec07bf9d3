/* SPDX-License-Identifier: Apache-2.0 */
/* Readers of the servers' status answers. */
#include <cjson/cJSON.h>

#include "core/http.h"
#include "core/log.h"
#include "core/text.h"

cJSON* PubSecParseAnswer(const char* pchText, const char* pchFunction)
{
    /* The parser's own error position is shared by all threads; this one belongs to the call. */
    const char* pchEnd = nullptr;
    cJSON* ptRoot = pchText != nullptr ? cJSON_ParseWithOpts(pchText, &pchEnd, 0) : nullptr;
    if (ptRoot == nullptr)
    {
        PUBSEC_ERR_AS(pchFunction, "Error before: [%s]", pchEnd != nullptr ? pchEnd : "");
    }
    return ptRoot;
}

u32 _PubSecParseSerData(const char* pchText, char* pchOut)
{
    cJSON* ptRoot = PubSecParseAnswer(pchText, __func__);
    const cJSON* ptList = cJSON_GetObjectItem(ptRoot, "ResponseStatusListObject");
    const cJSON* ptStatuses = cJSON_GetObjectItem(ptList, "ResponseStatusObject");
    if (!cJSON_IsArray(ptStatuses))
    {
        cJSON_Delete(ptRoot);
        return 0;
    }
    PUBSEC_INF("cJSON_GetArraySize: size=%d", cJSON_GetArraySize(ptStatuses));
    const cJSON* ptStatus = nullptr;
    cJSON_ArrayForEach(ptStatus, ptStatuses)
    {
        const char* pchString = cJSON_GetStringValue(cJSON_GetObjectItem(ptStatus, "StatusString"));
        if (pchString != nullptr)
        {
            PUBSEC_INF("StatusString:%s", pchString);
            /* Fills up with zeros: nothing of an earlier, longer text stays behind. */
            AppStrncpy(pchOut, pchString, PUBSEC_STATUS_TEXT_LEN);
            pchOut[PUBSEC_STATUS_TEXT_LEN] = '\0';
        }
    }
    cJSON_Delete(ptRoot);
    return 1;
}

u32 _PubSecKeepAliveParseJson(const char* pchText, char* pchOut)
{
    cJSON* ptRoot = PubSecParseAnswer(pchText, __func__);
    if (ptRoot == nullptr)
    {
        return 0;
    }
    /* Both messages name the object of the other answer. */
    const cJSON* ptStatus = cJSON_GetObjectItem(ptRoot, "ResponseStatusObject");
    const cJSON* ptCode = cJSON_GetObjectItem(ptStatus, "StatusCode");
    if (ptCode == nullptr)
    {
        if (ptStatus == nullptr)
        {
            PUBSEC_ERR("Not Find ResponseStatusListObject!");
        }
        else
        {
            PUBSEC_ERR("Not Find ResponseStatusObject!");
        }
        cJSON_Delete(ptRoot);
        return 0;
    }
    pchOut[0] = '\0';
    if (cJSON_IsString(ptCode))
    {
        PubSecCopyText(pchOut, PUBSEC_CODE_TEXT_SIZE, ptCode->valuestring, PUBSEC_CODE_TEXT_SIZE);
    }
    /* A code sent as text has the integer value 0, and so reads as "0". */
    if (ptCode->valueint >= 0)
    {
        AppSnprintf(pchOut, PUBSEC_CODE_TEXT_SIZE, "%d", ptCode->valueint);
    }
    PUBSEC_INF("StatusCode:%s", pchOut);
    cJSON_Delete(ptRoot);
    return 1;
}
