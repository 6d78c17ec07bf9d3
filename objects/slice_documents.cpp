/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of video slices and files: both are made from one collection record, each with counts of its own. */
#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "objects/documents.h"
#include "objects/members/file.h"
#include "objects/members/video_slice.h"
#include "objects/object_lists.h"

namespace
{

void AddArrays(cJSON* ptElement, const TPubSecObjectArray* ptArrays, u32 dwArrays, EPubSecSubImageRule eSubImages)
{
    for (u32 dwArray = 0; dwArray < dwArrays; dwArray++)
    {
        PubSecAddArrayIfGiven(ptElement, ptArrays[dwArray], eSubImages);
    }
}

void AddData(cJSON* ptElement, const TPubSecVideoSliceObj* ptObj)
{
    if (ptObj->pchData != nullptr)
    {
        PubSecJsonAddText(ptElement, "Data", ptObj->pchData);
    }
}

/* As many as the first record says, asked again for every one. */
void AddIllegalRecords(cJSON* ptElement, const TPubSecIllegalRecordInfo* ptRecords)
{
    if (ptRecords == nullptr)
    {
        return;
    }
    cJSON* ptArray = PubSecJsonAddArray(PubSecJsonAddObject(ptElement, c_tIllegalRecordKind.pchList),
                                        c_tIllegalRecordKind.pchObject);
    for (u32 dwRecord = 0; dwRecord < ptRecords->dwIllegalRecordNum; dwRecord++)
    {
        PubSecAddObject(PubSecJsonAppendObject(ptArray), c_tIllegalRecordKind, &ptRecords[dwRecord],
                        PUBSEC_SUB_IMAGES_IF_GIVEN);
    }
}

/* Here the array has another name than in its own document. */
void AddNonMotorIllegalRecords(cJSON* ptElement, const TPubSecVideoSliceObj* ptObj)
{
    TPubSecObjectKind tKind = c_tNonMotorIllegalRecordKind;
    tKind.pchObject = "NonMotorIllegalRecord";
    if (ptObj->ptNonMotorIllegalRecord != nullptr)
    {
        PubSecAddObjectList(ptElement, tKind.pchList, tKind, ptObj->ptNonMotorIllegalRecord,
                            ptObj->dwNonMotorIllegalRecordNum, PUBSEC_SUB_IMAGES_IF_GIVEN);
    }
}

void AddSliceObjects(cJSON* ptElement, const TPubSecVideoSliceObj* ptObj)
{
    const TPubSecObjectArray atArrays[] = {
        {&c_tPersonKind, ptObj->ptPerson, ptObj->nPersonNum},
        {&c_tFaceKind, ptObj->ptFace, ptObj->nFaceNum},
        {&c_tMotorVehicleKind, ptObj->ptMotorVehicle, ptObj->nMotorVehicleNum},
        {&c_tNonMotorVehicleKind, ptObj->ptNonMotorVehicle, ptObj->nNonMotorVehicleNum},
        {&c_tThingKind, ptObj->ptThing, ptObj->nThingNum},
        {&c_tSceneKind, ptObj->ptScene, ptObj->nSceneNum},
    };
    AddArrays(ptElement, atArrays, sizeof(atArrays) / sizeof(atArrays[0]), PUBSEC_SUB_IMAGES_IF_GIVEN);
    AddIllegalRecords(ptElement, ptObj->ptIllegalRecord);
    AddNonMotorIllegalRecords(ptElement, ptObj);
}

void AddFileObjects(cJSON* ptElement, const TPubSecVideoSliceObj* ptObj)
{
    const TPubSecObjectArray atArrays[] = {
        {&c_tPersonKind, ptObj->ptPerson, ptObj->nFilePersonNum},
        {&c_tFaceKind, ptObj->ptFace, ptObj->nFileFaceNum},
        {&c_tMotorVehicleKind, ptObj->ptMotorVehicle, ptObj->nFileMotorVehicleNum},
        {&c_tNonMotorVehicleKind, ptObj->ptNonMotorVehicle, ptObj->nFileNonMotorVehicleNum},
        {&c_tThingKind, ptObj->ptThing, ptObj->nFileThingNum},
        {&c_tSceneKind, ptObj->ptScene, ptObj->nFileSceneNum},
    };
    AddArrays(ptElement, atArrays, sizeof(atArrays) / sizeof(atArrays[0]), PUBSEC_SUB_IMAGES_NEVER);
}

cJSON* AppendSlice(cJSON* ptArray, const TPubSecVideoSliceInfo* ptSlice)
{
    cJSON* ptElement = PubSecJsonAppendObject(ptArray);
    cJSON* ptInfo = PubSecJsonAddObject(ptElement, "VideoSliceInfo");
    PubSecAddMembers(ptInfo, pubsec_members::video_slice::c_tTable, ptSlice);
    if (ptSlice->ptSubImageList != nullptr)
    {
        PubSecAddSubImages(ptInfo, ptSlice->ptSubImageList, static_cast<s32>(ptSlice->dwSubImageNum));
    }
    return ptElement;
}

cJSON* AppendFile(cJSON* ptArray, const TPubSecFileInfo* ptFile)
{
    cJSON* ptElement = PubSecJsonAppendObject(ptArray);
    PubSecAddMembers(PubSecJsonAddObject(ptElement, "FileInfo"), pubsec_members::file::c_tTable, ptFile);
    return ptElement;
}

} // namespace

char* _PubSecVideoSliceGatherJSON(const TPubSecVideoSliceObj* ptObj)
{
    if (ptObj == nullptr || (ptObj->ptVideoSlice == nullptr && ptObj->nVideoSliceNum > 0))
    {
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    cJSON* ptList = PubSecJsonAddObject(ptRoot, "VideoSliceListObject");
    cJSON* ptArray = PubSecJsonAddArray(ptList, "VideoSlice");
    cJSON* ptLast = nullptr;
    for (s32 nSlice = 0; nSlice < ptObj->nVideoSliceNum; nSlice++)
    {
        ptLast = AppendSlice(ptArray, &ptObj->ptVideoSlice[nSlice]);
    }
    /* Without a slice there is no element to stand in: the objects and the data are dropped. */
    if (ptLast != nullptr)
    {
        AddSliceObjects(ptLast, ptObj);
        AddData(ptLast, ptObj);
    }
    return PubSecJsonPrintIf(ptRoot, ptList);
}

char* _PubSecFileGatherJSON(const TPubSecVideoSliceObj* ptObj)
{
    if (ptObj == nullptr || (ptObj->ptFile == nullptr && ptObj->nFileNum > 0))
    {
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    cJSON* ptList = PubSecJsonAddObject(ptRoot, "FileListObject");
    cJSON* ptArray = PubSecJsonAddArray(ptList, "File");
    cJSON* ptLast = nullptr;
    for (s32 nFile = 0; nFile < ptObj->nFileNum; nFile++)
    {
        ptLast = AppendFile(ptArray, &ptObj->ptFile[nFile]);
    }
    if (ptLast != nullptr)
    {
        AddFileObjects(ptLast, ptObj);
        AddData(ptLast, ptObj);
    }
    return PubSecJsonPrintIf(ptRoot, ptList);
}

char* _PubSecVideoDataJSON(const char* pchData)
{
    cJSON* ptRoot = pchData == nullptr ? nullptr : cJSON_CreateObject();
    cJSON* ptObject = PubSecJsonAddObject(ptRoot, "VideoDataObject");
    PubSecJsonAddText(ptObject, "VData", pchData);
    return PubSecJsonPrintIf(ptRoot, ptObject);
}
