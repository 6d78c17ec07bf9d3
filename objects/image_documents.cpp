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

void AddObjects(cJSON* ptElement, const TPubSecIntelliPicObj* ptPicture)
{
    const TPubSecObjectArray atArrays[] = {
        {&c_tPersonKind, ptPicture->ptPersonnel, ptPicture->nPersonnelNum},
        {&c_tFaceKind, ptPicture->ptFace, ptPicture->nFaceNum},
        {&c_tMotorVehicleKind, ptPicture->ptMotorVehicle, ptPicture->nMotorVehicleNum},
        {&c_tNonMotorVehicleKind, ptPicture->ptNonMotorVehicle, ptPicture->nNonMotorVehicleNum},
        {&c_tThingKind, ptPicture->ptThing, ptPicture->nThingNum},
        {&c_tSceneKind, ptPicture->ptScene, ptPicture->nSceneNum},
    };
    for (const TPubSecObjectArray& tArray : atArrays)
    {
        if (tArray.nNum > 0)
        {
            PubSecAddArrayIfGiven(ptElement, tArray, PUBSEC_SUB_IMAGES_IF_ANY);
        }
    }
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
    for (s32 nPicture = 0; ptPictures->ptImageInfo != nullptr && nPicture < ptPictures->nImageNum; nPicture++)
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
