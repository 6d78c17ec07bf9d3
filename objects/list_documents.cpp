/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of one kind of object, and the same lists for the host's own trees. */
#include <cjson/cJSON.h>

#include <pubsecstack/documents.h>
#include <pubsecstack/results.h>

#include "core/json_tree.h"
#include "objects/documents.h"
#include "objects/object_lists.h"

namespace
{

constexpr u32 c_singleForm = 1;
constexpr u16 c_maxObjects = 256;

char* ListDocument(const TPubSecObjectKind& tKind, const void* pvRecords, u32 dwNum)
{
    cJSON* ptRoot = pvRecords == nullptr && dwNum > 0 ? nullptr : cJSON_CreateObject();
    PubSecAddObjectList(ptRoot, tKind.pchListObject, tKind, pvRecords, dwNum, PUBSEC_SUB_IMAGES_IF_ANY);
    return PubSecJsonPrint(ptRoot);
}

/* The tree is the host's and outlives the records, so its texts become its own. */
u32 AddToHostTree(const TPubSecObjectKind& tKind, cJSON* ptRoot, u32 dwMode, u16 wNum, const void* pvRecords)
{
    if (ptRoot == nullptr || pvRecords == nullptr || wNum == 0 || wNum > c_maxObjects)
    {
        return PUBSEC_ERR_PARAM;
    }
    const cJSON* ptFormerLast = ptRoot->child != nullptr ? ptRoot->child->prev : nullptr;
    bool bMade = false;
    if (dwMode == c_singleForm && wNum == 1)
    {
        bMade =
            PubSecAddObject(PubSecJsonAddObject(ptRoot, tKind.pchObject), tKind, pvRecords, PUBSEC_SUB_IMAGES_IF_ANY);
    }
    else
    {
        bMade = PubSecAddObjectList(ptRoot, tKind.pchListObject, tKind, pvRecords, wNum, PUBSEC_SUB_IMAGES_IF_ANY);
    }
    cJSON* ptAdded = ptFormerLast != nullptr ? ptFormerLast->next : ptRoot->child;
    return PubSecJsonOwnTexts(ptAdded) && bMade ? u32{PUBSEC_OK} : u32{PUBSEC_ERR_FAILED};
}

} // namespace

char* _PubSecImageFaceJSON(const TPubSecFaceObjInfo* ptFaces, u32 dwNum)
{
    return ListDocument(c_tFaceKind, ptFaces, dwNum);
}

char* _PubSecImagePersonJSON(const TPubSecPersonnelObjInfo* ptPersons, u32 dwNum)
{
    return ListDocument(c_tPersonKind, ptPersons, dwNum);
}

char* _PubSecImageMotorVehicleJSON(const TPubSecMotorVehicleObjInfo* ptVehicles, u32 dwNum)
{
    return ListDocument(c_tMotorVehicleKind, ptVehicles, dwNum);
}

char* _PubSecImageNonMotorVehicleJSON(const TPubSecNonMotorVehicleObjInfo* ptVehicles, u32 dwNum)
{
    return ListDocument(c_tNonMotorVehicleKind, ptVehicles, dwNum);
}

char* _PubSecImageThingJSON(const TPubSecThingObjInfo* ptThings, u32 dwNum)
{
    return ListDocument(c_tThingKind, ptThings, dwNum);
}

char* _PubSecImageSceneJSON(const TPubSecSceneObjInfo* ptScenes, u32 dwNum)
{
    return ListDocument(c_tSceneKind, ptScenes, dwNum);
}

u32 PubSecFaceObjectStructToJsonObject(cJSON* ptRoot, u32 dwMode, u16 wNum, const TPubSecFaceObjInfo* ptFaces)
{
    return AddToHostTree(c_tFaceKind, ptRoot, dwMode, wNum, ptFaces);
}

u32 PubSecPersonObjectStructToJsonObject(cJSON* ptRoot, u32 dwMode, u16 wNum, const TPubSecPersonnelObjInfo* ptPersons)
{
    return AddToHostTree(c_tPersonKind, ptRoot, dwMode, wNum, ptPersons);
}

u32 PubSecMotorVehicleObjectStructToJsonObject(cJSON* ptRoot, u32 dwMode, u16 wNum,
                                               const TPubSecMotorVehicleObjInfo* ptVehicles)
{
    return AddToHostTree(c_tMotorVehicleKind, ptRoot, dwMode, wNum, ptVehicles);
}

u32 PubSecNonMotorVehicleObjectStructToJsonObject(cJSON* ptRoot, u32 dwMode, u16 wNum,
                                                  const TPubSecNonMotorVehicleObjInfo* ptVehicles)
{
    return AddToHostTree(c_tNonMotorVehicleKind, ptRoot, dwMode, wNum, ptVehicles);
}
