/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/thing_scene.h"

#include "objects/encoders.h"

void _PubSecThingObjJson(cJSON* ptObj, const TPubSecThingObjInfo* ptThing)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::thing::c_tTable, ptThing);
}

void _PubSecPlaceObjJson(cJSON* ptObj, const TPubSecSceneObjInfo* ptScene)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::scene::c_tTable, ptScene);
}
