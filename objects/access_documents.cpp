/* SPDX-License-Identifier: Apache-2.0 */
#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "objects/access_lists.h"
#include "objects/documents.h"
#include "objects/members/access.h"

namespace
{

s32 NumberOf(const TPubSecAccessRecordInfo* ptRecords)
{
    return static_cast<s32>(ptRecords->dwRecordNum);
}

} // namespace

void PubSecAddAccessRecords(cJSON* ptObject, const TPubSecAccessRecordInfo* ptRecords)
{
    cJSON* ptArray = PubSecJsonAddArray(ptObject, "AccessRecordObject");
    for (s32 nRecord = 0; nRecord < NumberOf(ptRecords); nRecord++)
    {
        PubSecAddMembers(PubSecJsonAppendObject(ptArray), pubsec_members::access_record::c_tTable, &ptRecords[nRecord]);
    }
}

void PubSecAddAccessRecordList(cJSON* ptElement, const TPubSecAccessRecordInfo* ptRecords)
{
    if (ptRecords != nullptr && NumberOf(ptRecords) > 0)
    {
        PubSecAddAccessRecords(PubSecJsonAddObject(ptElement, "AccessRecordList"), ptRecords);
    }
}

char* _PubSecAccRecInfoJson(const TPubSecAccessRecordInfo* ptRecord)
{
    cJSON* ptRoot = ptRecord == nullptr ? nullptr : cJSON_CreateObject();
    PubSecAddMembers(PubSecJsonAddObject(ptRoot, "AccessRecordObject"), pubsec_members::access_record::c_tTable,
                     ptRecord);
    return PubSecJsonPrint(ptRoot);
}

char* _PubSecAccRecInfoListJson(const TPubSecAccessRecordInfo* ptRecords)
{
    cJSON* ptRoot = ptRecords == nullptr ? nullptr : cJSON_CreateObject();
    if (ptRoot != nullptr)
    {
        PubSecAddAccessRecords(PubSecJsonAddObject(ptRoot, "AccessRecordListObject"), ptRecords);
    }
    return PubSecJsonPrint(ptRoot);
}
