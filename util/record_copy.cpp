/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecplatform.h>
#include <pubsecstack/records.h>

#include "core/log.h"

/* Null when there is no memory for the copy. */
static char* CopyText(const char* pchText, const char* pchFunction)
{
    const size_t size = AppStrlen(pchText) + 1;
    char* pchCopy = static_cast<char*>(AppMemPoolMallocEx(PubSecLoad(g_hMemPool), size, pchFunction, __LINE__));
    if (pchCopy != nullptr)
    {
        AppMemcpy(pchCopy, pchText, size);
    }
    return pchCopy;
}

/*
 * Gives the source a new array with the entries as they are, and leaves the former one, which the destination has
 * already been given, with copies of the texts. Hosts rely on which of the two records ends with which array.
 */
static void CopySubImages(TPubSecSubImageInfo*& ptSrcList, s32 nNum, const char* pchFunction)
{
    TPubSecSubImageInfo* ptDstList = ptSrcList;
    const size_t size = nNum < 0 ? 0 : static_cast<size_t>(nNum) * sizeof(TPubSecSubImageInfo);
    void* pvBlock = size == 0 ? nullptr : AppMemPoolMallocEx(PubSecLoad(g_hMemPool), size, pchFunction, __LINE__);

    ptSrcList = static_cast<TPubSecSubImageInfo*>(pvBlock);
    if (ptSrcList == nullptr)
    {
        return;
    }
    AppMemcpy(ptSrcList, ptDstList, size);
    for (s32 i = 0; i < nNum; i++)
    {
        if (ptSrcList[i].pchData != nullptr)
        {
            ptDstList[i].pchData = CopyText(ptSrcList[i].pchData, pchFunction);
        }
    }
}

template <typename Record> static u32 CopyObject(const Record* ptSrc, Record* ptDst, const char* pchFunction)
{
    if (ptSrc == nullptr || ptDst == nullptr || ptSrc->nSubImageNum > PUBSEC_COPY_MAX)
    {
        PUBSEC_ERR_AS(pchFunction, "Input param failed.");
        return 0;
    }
    *ptDst = *ptSrc;

    TPubSecSubImageInfo*& ptSrcList = const_cast<Record*>(ptSrc)->ptSubImageList;
    if (ptSrc->nSubImageNum == 0)
    {
        ptSrcList = nullptr;
    }
    else if (ptSrcList != nullptr)
    {
        CopySubImages(ptSrcList, ptSrc->nSubImageNum, pchFunction);
    }
    return 1;
}

u32 PubSecStackDup_TPubSecPersonnelObjInfo(const TPubSecPersonnelObjInfo* ptSrc, TPubSecPersonnelObjInfo* ptDst)
{
    return CopyObject(ptSrc, ptDst, __func__);
}

u32 PubSecStackDup_TPubSecFaceObjInfo(const TPubSecFaceObjInfo* ptSrc, TPubSecFaceObjInfo* ptDst)
{
    return CopyObject(ptSrc, ptDst, __func__);
}

u32 PubSecStackDup_TPubSecMotorVehicleObjInfo(const TPubSecMotorVehicleObjInfo* ptSrc,
                                              TPubSecMotorVehicleObjInfo* ptDst)
{
    return CopyObject(ptSrc, ptDst, __func__);
}

u32 PubSecStackDup_TPubSecNonMotorVehicleObjInfo(const TPubSecNonMotorVehicleObjInfo* ptSrc,
                                                 TPubSecNonMotorVehicleObjInfo* ptDst)
{
    return CopyObject(ptSrc, ptDst, __func__);
}
