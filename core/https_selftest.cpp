/* SPDX-License-Identifier: Apache-2.0 */
/* A bench diagnostic: one HTTPS request to a test server on a private address. */
#include "core/http.h"
#include "core/log.h"

void _SetPubSecHttps(void)
{
    CURL* ptHandle = curl_easy_init();
    if (ptHandle == nullptr)
    {
        PUBSEC_ERR("curl_easy_init failed!");
        return;
    }
    const char* pchName = __func__;
    PubSecSetOption(ptHandle, CURLOPT_URL, "https://192.168.0.100:443//VIID/System/Register", pchName);
    PubSecSetOption(ptHandle, CURLOPT_POST, 1L, pchName);
    PubSecSetOption(ptHandle, CURLOPT_TIMEOUT, 60L, pchName);
    PubSecSetOption(ptHandle, CURLOPT_CONNECTTIMEOUT, 10L, pchName);
    PubSecSetOption(ptHandle, CURLOPT_VERBOSE, 0L, pchName);
    PubSecSetOption(ptHandle, CURLOPT_SSL_VERIFYPEER, 0L, pchName);
    PubSecSetOption(ptHandle, CURLOPT_SSL_VERIFYHOST, 0L, pchName);
    curl_slist* ptHeaders = curl_slist_append(nullptr, "Content-Type: application/x-www-form-urlencoded");
    curl_slist* ptLonger = curl_slist_append(ptHeaders, "Connection: Keep-Alive");
    ptHeaders = ptLonger != nullptr ? ptLonger : ptHeaders;
    PubSecSetOption(ptHandle, CURLOPT_HTTPHEADER, ptHeaders, pchName);
    PUBSEC_ERR("11111111111111111111111111111111111111111111");
    const CURLcode eResult = curl_easy_perform(ptHandle);
    if (eResult != CURLE_OK)
    {
        PUBSEC_ERR("curl_easy_perform() failed: %s", curl_easy_strerror(eResult));
    }
    PUBSEC_ERR("Res=%d, response_code:%d", static_cast<s32>(eResult), PubSecHttpStatus(ptHandle));
    curl_slist_free_all(ptHeaders);
}
