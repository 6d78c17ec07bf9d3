/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/face.h"

#include "objects/encoders.h"

void _PubSecFaceObjListObjJson(cJSON* ptObj, const TPubSecFaceObjInfo* ptFace)
{
    PubSecAddMembers(ptObj, pubsec_members::face::c_tTable, ptFace);
}
