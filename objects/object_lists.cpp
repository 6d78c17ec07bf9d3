/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/object_lists.h"

#include "core/json_tree.h"
#include "objects/members/face.h"
#include "objects/members/image.h"
#include "objects/members/motor_vehicle.h"
#include "objects/members/non_motor_vehicle.h"
#include "objects/members/person.h"
#include "objects/members/thing_scene.h"

namespace
{

template <typename Record>
constexpr TPubSecObjectKind KindOf(const char* pchList, const char* pchListObject, const char* pchObject,
                                   const TPubSecTable& tTable)
{
    return {pchList,
            pchListObject,
            pchObject,
            &tTable,
            static_cast<u32>(sizeof(Record)),
            static_cast<u32>(offsetof(Record, nSubImageNum)),
            static_cast<u32>(offsetof(Record, ptSubImageList))};
}

} // namespace

constexpr TPubSecObjectKind c_tPersonKind =
    KindOf<TPubSecPersonnelObjInfo>("PersonList", "PersonListObject", "PersonObject", pubsec_members::person::c_tTable);
constexpr TPubSecObjectKind c_tFaceKind =
    KindOf<TPubSecFaceObjInfo>("FaceList", "FaceListObject", "FaceObject", pubsec_members::face::c_tTable);
constexpr TPubSecObjectKind c_tMotorVehicleKind = KindOf<TPubSecMotorVehicleObjInfo>(
    "MotorVehicleList", "MotorVehicleListObject", "MotorVehicleObject", pubsec_members::motor_vehicle::c_tTable);
constexpr TPubSecObjectKind c_tNonMotorVehicleKind =
    KindOf<TPubSecNonMotorVehicleObjInfo>("NonMotorVehicleList", "NonMotorVehicleListObject", "NonMotorVehicleObject",
                                          pubsec_members::non_motor_vehicle::c_tTable);
constexpr TPubSecObjectKind c_tThingKind =
    KindOf<TPubSecThingObjInfo>("ThingList", "ThingListObject", "ThingObject", pubsec_members::thing::c_tTable);
constexpr TPubSecObjectKind c_tSceneKind =
    KindOf<TPubSecSceneObjInfo>("SceneList", "SceneListObject", "SceneObject", pubsec_members::scene::c_tTable);

bool PubSecAddSubImages(cJSON* ptObject, const TPubSecSubImageInfo* ptSubImages, s32 nCount)
{
    cJSON* ptArray = PubSecJsonAddArray(PubSecJsonAddObject(ptObject, "SubImageList"), "SubImageInfoObject");
    bool bMade = ptArray != nullptr;
    for (s32 nImage = 0; bMade && nImage < nCount; nImage++)
    {
        cJSON* ptElement = PubSecJsonAppendObject(ptArray);
        PubSecAddMembers(ptElement, pubsec_members::sub_image::c_tTable, &ptSubImages[nImage]);
        bMade = ptElement != nullptr;
    }
    return bMade;
}

bool PubSecAddObject(cJSON* ptObject, const TPubSecObjectKind& tKind, const void* pvRecord,
                     EPubSecSubImageRule eSubImages)
{
    if (ptObject == nullptr)
    {
        return false;
    }
    PubSecAddMembers(ptObject, *tKind.ptTable, pvRecord);
    const u8* pbyRecord = static_cast<const u8*>(pvRecord);
    const s32 nCount = *reinterpret_cast<const s32*>(pbyRecord + tKind.dwSubImageNum);
    const TPubSecSubImageInfo* ptSubImages =
        *reinterpret_cast<const TPubSecSubImageInfo* const*>(pbyRecord + tKind.dwSubImageList);
    if (eSubImages == PUBSEC_SUB_IMAGES_NEVER || ptSubImages == nullptr ||
        (eSubImages == PUBSEC_SUB_IMAGES_IF_ANY && nCount <= 0))
    {
        return true;
    }
    return PubSecAddSubImages(ptObject, ptSubImages, nCount);
}

bool PubSecAddObjectList(cJSON* ptObject, const char* pchList, const TPubSecObjectKind& tKind, const void* pvRecords,
                         u32 dwNum, EPubSecSubImageRule eSubImages)
{
    cJSON* ptArray = PubSecJsonAddArray(PubSecJsonAddObject(ptObject, pchList), tKind.pchObject);
    const u8* pbyRecord = static_cast<const u8*>(pvRecords);
    bool bMade = ptArray != nullptr;
    for (u32 dwRecord = 0; bMade && dwRecord < dwNum; dwRecord++, pbyRecord += tKind.dwRecordSize)
    {
        bMade = PubSecAddObject(PubSecJsonAppendObject(ptArray), tKind, pbyRecord, eSubImages);
    }
    return bMade;
}
