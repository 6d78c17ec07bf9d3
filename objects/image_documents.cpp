/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of whole pictures. */
#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "objects/access_lists.h"
#include "objects/documents.h"
#include "objects/members/image.h"
#include "objects/object_lists.h"

namespace
{

void AddList(cJSON* ptElement, const TPubSecObjectKind& tKind, const void* pvRecords, s32 nNum)
{
    if (pvRecords != nullptr && nNum > 0)
    {
        PubSecAddObjectList(ptElement, tKind.pchList, tKind, pvRecords, static_cast<u32>(nNum),
                            PUBSEC_SUB_IMAGES_IF_ANY);
    }
}

void AddObjects(cJSON* ptElement, const TPubSecIntelliPicObj* ptPicture)
{
    AddList(ptElement, c_tPersonKind, ptPicture->ptPersonnel, ptPicture->nPersonnelNum);
    AddList(ptElement, c_tFaceKind, ptPicture->ptFace, ptPicture->nFaceNum);
    AddList(ptElement, c_tMotorVehicleKind, ptPicture->ptMotorVehicle, ptPicture->nMotorVehicleNum);
    AddList(ptElement, c_tNonMotorVehicleKind, ptPicture->ptNonMotorVehicle, ptPicture->nNonMotorVehicleNum);
    AddList(ptElement, c_tThingKind, ptPicture->ptThing, ptPicture->nThingNum);
    AddList(ptElement, c_tSceneKind, ptPicture->ptScene, ptPicture->nSceneNum);
}

void AddData(cJSON* ptElement, const TPubSecIntelliPicObj* ptPicture)
{
    if (ptPicture->pchData != nullptr)
    {
        PubSecJsonAddText(ptElement, "Data", ptPicture->pchData);
    }
}

/* A new element of "Image" with its "ImageInfo". */
cJSON* AppendImage(cJSON* ptArray, const TPubSecImageObjInfo* ptImageInfo)
{
    cJSON* ptElement = PubSecJsonAppendObject(ptArray);
    PubSecAddMembers(PubSecJsonAddObject(ptElement, "ImageInfo"), pubsec_members::image_info::c_tTable, ptImageInfo);
    return ptElement;
}

cJSON* AddImageArray(cJSON* ptRoot)
{
    return PubSecJsonAddArray(PubSecJsonAddObject(ptRoot, "ImageListObject"), "Image");
}

} // namespace

char* _PubSecImageGatherJSON(const TPubSecIntelliPicObj* ptPictures)
{
    if (ptPictures == nullptr)
    {
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    cJSON* ptArray = AddImageArray(ptRoot);
    cJSON* ptLast = nullptr;
    for (s32 nImage = 0; ptPictures->ptImageInfo != nullptr && nImage < ptPictures->nImageNum; nImage++)
    {
        ptLast = AppendImage(ptArray, &ptPictures->ptImageInfo[nImage]);
    }
    /* Without an image there is no element to stand in: the objects and the data are dropped. */
    if (ptLast != nullptr)
    {
        AddObjects(ptLast, ptPictures);
        PubSecAddAccessRecordList(ptLast, ptPictures->ptAccessRecord);
        AddData(ptLast, ptPictures);
    }
    return PubSecJsonPrint(ptRoot);
}

char* _PubSecImageGatherJSONEX(const TPubSecIntelliPicObj* ptPictures)
{
    if (ptPictures == nullptr)
    {
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    cJSON* ptArray = AddImageArray(ptRoot);
    for (s32 nPicture = 0; nPicture < ptPictures->nImageNum; nPicture++)
    {
        const TPubSecIntelliPicObj* ptPicture = &ptPictures[nPicture];
        cJSON* ptElement = ptPicture->ptImageInfo == nullptr ? nullptr : AppendImage(ptArray, ptPicture->ptImageInfo);
        if (ptElement != nullptr)
        {
            AddData(ptElement, ptPicture);
            AddObjects(ptElement, ptPicture);
        }
    }
    return PubSecJsonPrint(ptRoot);
}

char* _PubSecImageSingleJson(TPubSecImageObjInfo* const* pptImage)
{
    if (pptImage == nullptr || *pptImage == nullptr)
    {
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    PubSecAddMembers(PubSecJsonAddObject(ptRoot, "ImageInfoObject"), pubsec_members::image_info::c_tTable, *pptImage);
    return PubSecJsonPrint(ptRoot);
}
