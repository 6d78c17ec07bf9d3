/* SPDX-License-Identifier: Apache-2.0 */
#include <stdlib.h>

#include <pubsecplatform.h>
#include <pubsecstack/records.h>

#include "core/state.h"

/* Whether a sub-image without a text shows the allocator its null. */
enum EPubSecNullText
{
    PUBSEC_NULL_TEXT_SKIPPED,
    PUBSEC_NULL_TEXT_PASSED,
};

/* Gives a block back in the name of an exported function and clears the pointer to it. */
template <typename Block> static void ReleaseBlock(s32 nMode, Block*& ptBlock, const char* pchFunction)
{
    switch (nMode)
    {
    case PUBSEC_MODE_HEAP:
        free(ptBlock);
        break;
    case PUBSEC_MODE_SERVICE:
        NvrSrvFree(ptBlock, pchFunction, __LINE__);
        break;
    default:
        AppMemPoolFreeEx(PubSecLoad(g_hMemPool), ptBlock, pchFunction, __LINE__);
        break;
    }
    ptBlock = nullptr;
}

static void ReleaseSubImages(s32 nMode, TPubSecSubImageInfo*& ptList, s32 nNum, EPubSecNullText eNullText,
                             const char* pchFunction)
{
    if (ptList == nullptr)
    {
        return;
    }
    for (s32 i = 0; i < nNum; i++)
    {
        if (ptList[i].pchData != nullptr || eNullText == PUBSEC_NULL_TEXT_PASSED)
        {
            ReleaseBlock(nMode, ptList[i].pchData, pchFunction);
        }
    }
    ReleaseBlock(nMode, ptList, pchFunction);
}

template <typename Record> static u32 ReleaseObject(s32 nMode, Record* ptRec, const char* pchFunction)
{
    if (ptRec == nullptr)
    {
        return 0;
    }
    ReleaseSubImages(nMode, ptRec->ptSubImageList, ptRec->nSubImageNum, PUBSEC_NULL_TEXT_SKIPPED, pchFunction);
    return 1;
}

u32 PubSecStackFree_TPubSecPersonnelObjInfo(s32 nMode, TPubSecPersonnelObjInfo* ptRec)
{
    return ReleaseObject(nMode, ptRec, __func__);
}

u32 PubSecStackFree_TPubSecFaceObjInfo(s32 nMode, TPubSecFaceObjInfo* ptRec)
{
    return ReleaseObject(nMode, ptRec, __func__);
}

u32 PubSecStackFree_TPubSecMotorVehicleObjInfo(s32 nMode, TPubSecMotorVehicleObjInfo* ptRec)
{
    return ReleaseObject(nMode, ptRec, __func__);
}

u32 PubSecStackFree_TPubSecNonMotorVehicleObjInfo(s32 nMode, TPubSecNonMotorVehicleObjInfo* ptRec)
{
    return ReleaseObject(nMode, ptRec, __func__);
}

u32 PubSecStackFree_TPubSecImageObjInfo(s32 nMode, TPubSecImageObjInfo* ptRec)
{
    if (ptRec == nullptr)
    {
        return 0;
    }
    if (ptRec->ptFeatureInfo != nullptr)
    {
        ReleaseBlock(nMode, ptRec->ptFeatureInfo->pchFeatureData, __func__);
        ReleaseBlock(nMode, ptRec->ptFeatureInfo, __func__);
    }
    return 1;
}

/* A list of a picture: what each of its records owns, then the array. */
template <typename Record>
static void ReleaseObjects(s32 nMode, Record*& ptList, s32 nNum, u32 (*pfRelease)(s32, Record*),
                           const char* pchFunction)
{
    if (ptList == nullptr)
    {
        return;
    }
    for (s32 i = 0; i < nNum; i++)
    {
        pfRelease(nMode, &ptList[i]);
    }
    ReleaseBlock(nMode, ptList, pchFunction);
}

u32 PubSecStackFree_TPubSecIntelliPicObj(s32 nMode, TPubSecIntelliPicObj* ptRec)
{
    if (ptRec == nullptr)
    {
        return 0;
    }
    /* One image record whatever nImageNum says: in the first picture of an array that is the length of the array. */
    ReleaseObjects(nMode, ptRec->ptImageInfo, 1, PubSecStackFree_TPubSecImageObjInfo, __func__);
    ReleaseObjects(nMode, ptRec->ptMotorVehicle, ptRec->nMotorVehicleNum, PubSecStackFree_TPubSecMotorVehicleObjInfo,
                   __func__);
    ReleaseObjects(nMode, ptRec->ptFace, ptRec->nFaceNum, PubSecStackFree_TPubSecFaceObjInfo, __func__);
    ReleaseObjects(nMode, ptRec->ptPersonnel, ptRec->nPersonnelNum, PubSecStackFree_TPubSecPersonnelObjInfo, __func__);
    ReleaseObjects(nMode, ptRec->ptNonMotorVehicle, ptRec->nNonMotorVehicleNum,
                   PubSecStackFree_TPubSecNonMotorVehicleObjInfo, __func__);
    return 1;
}

u32 PubSecStackFree_TPubSecVideoSliceInfo(s32 nMode, TPubSecVideoSliceInfo* ptRec)
{
    if (ptRec == nullptr)
    {
        return 0;
    }
    ReleaseSubImages(nMode, ptRec->ptSubImageList, static_cast<s32>(ptRec->dwSubImageNum), PUBSEC_NULL_TEXT_PASSED,
                     __func__);
    return 1;
}

u32 PubSecStackFree_TPubsecVideoSliceList(s32 nMode, TPubsecVideoSliceList* ptList)
{
    if (ptList == nullptr)
    {
        return 0;
    }
    /* The array goes with the first slice, and with it the way to any other. */
    if (ptList->ptVideoSlice != nullptr && ptList->dwVideoSliceNum != 0)
    {
        PubSecStackFree_TPubSecVideoSliceInfo(nMode, &ptList->ptVideoSlice[0]);
        ReleaseBlock(nMode, ptList->ptVideoSlice, __func__);
    }
    return 1;
}
