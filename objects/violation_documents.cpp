/* SPDX-License-Identifier: Apache-2.0 */
#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "objects/documents.h"
#include "objects/object_lists.h"

namespace
{

char* ViolationDocument(const TPubSecObjectKind& tKind, const void* pvRecords, u32 dwNum,
                        EPubSecSubImageRule eSubImages)
{
    cJSON* ptRoot = pvRecords == nullptr ? nullptr : cJSON_CreateObject();
    PubSecAddObjectList(ptRoot, tKind.pchListObject, tKind, pvRecords, dwNum, eSubImages);
    return PubSecJsonPrintIf(ptRoot, ptRoot == nullptr ? nullptr : ptRoot->child);
}

} // namespace

char* _PubSecIllegalRecordJson(const TPubSecIllegalRecordInfo* ptRecords)
{
    const u32 dwNum = ptRecords == nullptr ? 0 : ptRecords->dwIllegalRecordNum;
    return ViolationDocument(c_tIllegalRecordKind, ptRecords, dwNum, PUBSEC_SUB_IMAGES_NEVER);
}

char* _PubSecIllegalRecordJsonEx(u32 dwNum, const TPubSecIllegalRecordInfo* ptRecords)
{
    return ViolationDocument(c_tIllegalRecordKind, ptRecords, dwNum, PUBSEC_SUB_IMAGES_IF_GIVEN);
}

char* _PubSecNonMotorIllegalRecordJson(u16 wNum, const TPubSecNonMotorIllegalRecordInfo* ptRecords)
{
    return ViolationDocument(c_tNonMotorIllegalRecordKind, ptRecords, wNum, PUBSEC_SUB_IMAGES_IF_GIVEN);
}
