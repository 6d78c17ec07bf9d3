/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecplatform.h>
#include <pubsecstack/records.h>

#include "core/log.h"

static bool HasTooManyObjects(const TPubSecDispoNotifyObj& tObject)
{
    return tObject.dwPersonNum > PUBSEC_COPY_MAX || tObject.dwMotorVehicleNum > PUBSEC_COPY_MAX ||
           tObject.dwFaceNum > PUBSEC_COPY_MAX || tObject.dwNonMotorVehicleNum > PUBSEC_COPY_MAX;
}

/* A notification embeds each kind of record once, whatever its count is; so here and in the release. */
static void CopyNotification(const TPubSecDispoNotifyObj& tSrc, TPubSecDispoNotifyObj& tDst)
{
    if (tSrc.dwPersonNum != 0)
    {
        PubSecStackDup_TPubSecPersonnelObjInfo(&tSrc.tPerson, &tDst.tPerson);
    }
    if (tSrc.dwFaceNum != 0)
    {
        PubSecStackDup_TPubSecFaceObjInfo(&tSrc.tFace, &tDst.tFace);
    }
    if (tSrc.dwMotorVehicleNum != 0)
    {
        PubSecStackDup_TPubSecMotorVehicleObjInfo(&tSrc.tMotorVehicle, &tDst.tMotorVehicle);
    }
    if (tSrc.dwNonMotorVehicleNum != 0)
    {
        PubSecStackDup_TPubSecNonMotorVehicleObjInfo(&tSrc.tNonMotorVehicle, &tDst.tNonMotorVehicle);
    }
}

static void ReleaseNotification(s32 nMode, TPubSecDispoNotifyObj& tObject)
{
    if (tObject.dwPersonNum != 0)
    {
        PubSecStackFree_TPubSecPersonnelObjInfo(nMode, &tObject.tPerson);
    }
    if (tObject.dwFaceNum != 0)
    {
        PubSecStackFree_TPubSecFaceObjInfo(nMode, &tObject.tFace);
    }
    if (tObject.dwMotorVehicleNum != 0)
    {
        PubSecStackFree_TPubSecMotorVehicleObjInfo(nMode, &tObject.tMotorVehicle);
    }
    if (tObject.dwNonMotorVehicleNum != 0)
    {
        PubSecStackFree_TPubSecNonMotorVehicleObjInfo(nMode, &tObject.tNonMotorVehicle);
    }
}

u32 PubSecStackDup_TPubsecDispositionNotificationList(TPubsecDispositionNotificationList* ptSrc,
                                                      TPubsecDispositionNotificationList* ptDst)
{
    if (ptSrc == nullptr || ptDst == nullptr || ptSrc->wObjectNum == 0 || ptSrc->wObjectNum > PUBSEC_COPY_MAX ||
        ptSrc->aptDispoNotifyObj == nullptr)
    {
        PUBSEC_ERR("Input param failed.");
        return 0;
    }
    const u32 dwNum = ptSrc->wObjectNum;
    const TPubSecDispoNotifyObj* ptSrcObjects = ptSrc->aptDispoNotifyObj;
    for (u32 i = 0; i < dwNum; i++)
    {
        if (HasTooManyObjects(ptSrcObjects[i]))
        {
            PUBSEC_ERR("Input object num is overflow.");
            return 0;
        }
    }

    const size_t size = dwNum * sizeof(TPubSecDispoNotifyObj);
    void* pvBlock = AppMemPoolMallocEx(PubSecLoad(g_hMemPool), size, __func__, __LINE__);
    *ptDst = {ptSrc->wObjectNum, static_cast<TPubSecDispoNotifyObj*>(pvBlock), ptSrc->dwObjectForm};
    if (pvBlock == nullptr)
    {
        PUBSEC_ERR("malloc aptDispoNotifyObj failed.");
        return 0;
    }
    AppMemcpy(pvBlock, ptSrcObjects, size);
    for (u32 i = 0; i < dwNum; i++)
    {
        CopyNotification(ptSrcObjects[i], ptDst->aptDispoNotifyObj[i]);
    }
    return 1;
}

u32 PubSecStackFree_TPubsecDispositionNotificationList(u32 dwMode, TPubsecDispositionNotificationList* ptList)
{
    if (ptList == nullptr)
    {
        return 0;
    }
    if (ptList->aptDispoNotifyObj == nullptr)
    {
        return 1;
    }
    for (u32 i = 0; i < ptList->wObjectNum; i++)
    {
        ReleaseNotification(static_cast<s32>(dwMode), ptList->aptDispoNotifyObj[i]);
    }
    return 1;
}
