/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/access.h"

#include "objects/encoders.h"

void _PubSecAccRecdObjJson(cJSON* ptObj, const TPubSecAccessRecordInfo* ptRecord)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::access_record::c_tTable, ptRecord);
}
