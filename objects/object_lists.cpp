/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/object_lists.h"

#include <pubsecstack/results.h>

#include "core/json_tree.h"
#include "objects/members/face.h"
#include "objects/members/image.h"
#include "objects/members/motor_vehicle.h"
#include "objects/members/non_motor_vehicle.h"
#include "objects/members/person.h"
#include "objects/members/thing_scene.h"
#include "objects/members/violation.h"

namespace
{

/* A kind whose records keep their sub-images in these two fields. */
#define KIND_OF(Record, list, listObject, object, table, count)                                                        \
    {                                                                                                                  \
        list, listObject, object, &pubsec_members::table::c_tTable, static_cast<u32>(sizeof(Record)),                  \
            static_cast<u32>(offsetof(Record, count)), static_cast<u32>(sizeof(Record::count)),                        \
            static_cast<u32>(offsetof(Record, ptSubImageList))                                                         \
    }

s32 SubImageNum(const TPubSecObjectKind& tKind, const u8* pbyRecord)
{
    const u8* pbyCount = pbyRecord + tKind.dwSubImageNum;
    return tKind.dwSubImageNumSize == sizeof(u16) ? *reinterpret_cast<const u16*>(pbyCount)
                                                  : *reinterpret_cast<const s32*>(pbyCount);
}

} // namespace

constexpr TPubSecObjectKind c_tPersonKind =
    KIND_OF(TPubSecPersonnelObjInfo, "PersonList", "PersonListObject", "PersonObject", person, nSubImageNum);
constexpr TPubSecObjectKind c_tFaceKind =
    KIND_OF(TPubSecFaceObjInfo, "FaceList", "FaceListObject", "FaceObject", face, nSubImageNum);
constexpr TPubSecObjectKind c_tMotorVehicleKind =
    KIND_OF(TPubSecMotorVehicleObjInfo, "MotorVehicleList", "MotorVehicleListObject", "MotorVehicleObject",
            motor_vehicle, nSubImageNum);
constexpr TPubSecObjectKind c_tNonMotorVehicleKind =
    KIND_OF(TPubSecNonMotorVehicleObjInfo, "NonMotorVehicleList", "NonMotorVehicleListObject", "NonMotorVehicleObject",
            non_motor_vehicle, nSubImageNum);
constexpr TPubSecObjectKind c_tThingKind =
    KIND_OF(TPubSecThingObjInfo, "ThingList", "ThingListObject", "ThingObject", thing, nSubImageNum);
constexpr TPubSecObjectKind c_tSceneKind =
    KIND_OF(TPubSecSceneObjInfo, "SceneList", "SceneListObject", "SceneObject", scene, nSubImageNum);
constexpr TPubSecObjectKind c_tIllegalRecordKind =
    KIND_OF(TPubSecIllegalRecordInfo, "IllegalRecordList", "IllegalRecordListObject", "IllegalRecordObject",
            illegal_record, dwSubImageNum);
constexpr TPubSecObjectKind c_tNonMotorIllegalRecordKind =
    KIND_OF(TPubSecNonMotorIllegalRecordInfo, "NonMotorIllegalRecordList", "NonMotorIllegalRecordListObject",
            "NonMotorIllegalRecordObject", non_motor_illegal_record, wSubImageNum);

bool PubSecAddSubImages(cJSON* ptObject, const TPubSecSubImageInfo* ptSubImages, s32 nCount)
{
    cJSON* ptArray = PubSecJsonAddArray(PubSecJsonAddObject(ptObject, "SubImageList"), "SubImageInfoObject");
    bool bMade = ptArray != nullptr;
    for (s32 nImage = 0; ptArray != nullptr && nImage < nCount; nImage++)
    {
        cJSON* ptElement = PubSecJsonAppendObject(ptArray);
        PubSecAddMembers(ptElement, pubsec_members::sub_image::c_tTable, &ptSubImages[nImage]);
        bMade = ptElement != nullptr && bMade;
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
    const s32 nCount = SubImageNum(tKind, pbyRecord);
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
    for (u32 dwRecord = 0; ptArray != nullptr && dwRecord < dwNum; dwRecord++, pbyRecord += tKind.dwRecordSize)
    {
        bMade = PubSecAddObject(PubSecJsonAppendObject(ptArray), tKind, pbyRecord, eSubImages) && bMade;
    }
    return bMade;
}

bool PubSecAddArrayIfGiven(cJSON* ptElement, const TPubSecObjectArray& tArray, EPubSecSubImageRule eSubImages)
{
    const u32 dwNum = tArray.nNum > 0 ? static_cast<u32>(tArray.nNum) : 0;
    return tArray.pvRecords == nullptr ||
           PubSecAddObjectList(ptElement, tArray.ptKind->pchList, *tArray.ptKind, tArray.pvRecords, dwNum, eSubImages);
}

u32 PubSecAddByForm(cJSON* ptRoot, const TPubSecObjectKind& tKind, u32 dwForm, u16 wNum, const void* pvRecords)
{
    if (ptRoot == nullptr || pvRecords == nullptr || wNum == 0 || wNum > PUBSEC_FORM_MAX)
    {
        return PUBSEC_ERR_PARAM;
    }
    const bool bSingle = dwForm == PUBSEC_FORM_SINGLE && wNum == 1;
    const bool bMade =
        bSingle
            ? PubSecAddObject(PubSecJsonAddObject(ptRoot, tKind.pchObject), tKind, pvRecords, PUBSEC_SUB_IMAGES_IF_ANY)
            : PubSecAddObjectList(ptRoot, tKind.pchListObject, tKind, pvRecords, wNum, PUBSEC_SUB_IMAGES_IF_ANY);
    return bMade ? u32{PUBSEC_OK} : u32{PUBSEC_ERR_FAILED};
}

u32 PubSecOwnAdded(cJSON* ptRoot, const cJSON* ptFormerLast, u32 dwRet)
{
    return PubSecJsonOwnAfter(ptRoot, ptFormerLast) || dwRet != PUBSEC_OK ? dwRet : u32{PUBSEC_ERR_FAILED};
}
