/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/file.h"

#include "objects/encoders.h"

void _PubSecFileInfoJson(cJSON* ptObj, const TPubSecFileInfo* ptFile)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::file::c_tTable, ptFile);
}
