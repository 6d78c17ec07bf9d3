/* SPDX-License-Identifier: Apache-2.0 */
#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "objects/documents.h"
#include "objects/members/log_event.h"

char* _PubSecLogInfoJson(const TPubSecLogInfo* ptLog)
{
    cJSON* ptRoot = ptLog == nullptr ? nullptr : cJSON_CreateArray();
    cJSON* ptEvent = PubSecJsonAppendObject(ptRoot);
    PubSecAddMembers(ptEvent, pubsec_members::log_event::c_tTable, ptLog);
    return PubSecJsonPrintIf(ptRoot, cJSON_GetObjectItem(ptEvent, "value"));
}
