/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/face.h"

#include "objects/encoders.h"

void _PubSecFaceObjListObjJson(cJSON* ptObj, const TPubSecFaceObjInfo* ptFace)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::face::c_tTable, ptFace);
}
