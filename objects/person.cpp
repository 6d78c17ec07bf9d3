/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/person.h"

#include "objects/encoders.h"

void _PubSecPersonListObjJson(cJSON* ptObj, const TPubSecPersonnelObjInfo* ptPerson)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::person::c_tTable, ptPerson);
}
