/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of one kind of object, and the same lists for the host's own trees. */
#include <cjson/cJSON.h>

#include <pubsecstack/documents.h>

#include "core/json_tree.h"
#include "objects/documents.h"
#include "objects/object_lists.h"

namespace
{

char* ListDocument(const TPubSecObjectKind& tKind, const void* pvRecords, u32 dwNum)
{
    cJSON* ptRoot = pvRecords == nullptr && dwNum > 0 ? nullptr : cJSON_CreateObject();
    PubSecAddObjectList(ptRoot, tKind.pchListObject, tKind, pvRecords, dwNum, PUBSEC_SUB_IMAGES_IF_ANY);
    return PubSecJsonPrint(ptRoot);
}

u32 AddToHostTree(const TPubSecObjectKind& tKind, cJSON* ptRoot, u32 dwMode, u16 wNum, const void* pvRecords)
{
    const cJSON* ptFormerLast = PubSecJsonLast(ptRoot);
    return PubSecOwnAdded(ptRoot, ptFormerLast, PubSecAddByForm(ptRoot, tKind, dwMode, wNum, pvRecords));
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
