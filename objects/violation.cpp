/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/violation.h"

#include "objects/encoders.h"

void _PubSecIllRecdObjJson(cJSON* ptObj, const TPubSecIllegalRecordInfo* ptRecord)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::illegal_record::c_tTable, ptRecord);
}

void _PubSecNonMotorIllRecdObjJson(cJSON* ptObj, const TPubSecNonMotorIllegalRecordInfo* ptRecord)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::non_motor_illegal_record::c_tTable, ptRecord);
}
