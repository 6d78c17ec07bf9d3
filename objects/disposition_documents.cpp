/* SPDX-License-Identifier: Apache-2.0 */
/* Disposition notifications: the post's document, and the same for trees of the host's. */
#include <cjson/cJSON.h>

#include <pubsecstack/documents.h>

#include "core/json_tree.h"
#include "core/log.h"
#include "objects/members/disposition.h"
#include "objects/object_lists.h"

namespace
{

/* Counts are 32 bits wide and tested whole; the number is in the low half. */
u16 NumberIn(u32 dwCount)
{
    return static_cast<u16>(dwCount);
}

/* One of the lists of an entry, or one of the objects embedded in a notification. */
struct TPubSecPart
{
    const TPubSecObjectKind* ptKind;
    u32 dwCount;
    u16 wNum;
    const void* pvRecords;
};

template <size_t Parts> u32 AddParts(cJSON* ptObject, u32 dwForm, const TPubSecPart (&atParts)[Parts])
{
    for (const TPubSecPart& tPart : atParts)
    {
        const u32 dwRet = tPart.dwCount == 0
                              ? u32{PUBSEC_OK}
                              : PubSecAddByForm(ptObject, *tPart.ptKind, dwForm, tPart.wNum, tPart.pvRecords);
        if (dwRet != PUBSEC_OK)
        {
            return dwRet;
        }
    }
    return PUBSEC_OK;
}

u32 AddDispositionEntry(cJSON* ptElement, const TPubSecDispositionListObj* ptEntry)
{
    if (ptElement == nullptr)
    {
        return PUBSEC_ERR_FAILED;
    }
    const TPubSecPart atParts[] = {
        {&c_tPersonKind, ptEntry->dwPersonNum, NumberIn(ptEntry->dwPersonNum), ptEntry->ptPerson},
        {&c_tMotorVehicleKind, ptEntry->dwMotorVehicleNum, NumberIn(ptEntry->dwMotorVehicleNum),
         ptEntry->ptMotorVehicle},
        {&c_tFaceKind, ptEntry->dwFaceNum, NumberIn(ptEntry->dwFaceNum), ptEntry->ptFace},
        {&c_tNonMotorVehicleKind, ptEntry->dwNonMotorVehicleNum, NumberIn(ptEntry->dwNonMotorVehicleNum),
         ptEntry->ptNonMotorVehicle},
    };
    return AddParts(ptElement, PUBSEC_FORM_LIST, atParts);
}

u32 AddDispositionList(cJSON* ptParent, u16 wNum, const TPubSecDispositionListObj* ptEntries)
{
    if (ptParent == nullptr || ptEntries == nullptr || wNum == 0 || wNum > PUBSEC_FORM_MAX)
    {
        return PUBSEC_ERR_PARAM;
    }
    cJSON* ptArray = PubSecJsonAddArray(ptParent, "DispositionListObject");
    u32 dwRet = ptArray != nullptr ? PUBSEC_OK : PUBSEC_ERR_FAILED;
    for (u16 wEntry = 0; dwRet == PUBSEC_OK && wEntry < wNum; wEntry++)
    {
        dwRet = AddDispositionEntry(PubSecJsonAppendObject(ptArray), &ptEntries[wEntry]);
    }
    return dwRet;
}

/* An embedded record exists once, whatever its count. */
u32 AddNotification(cJSON* ptElement, const TPubSecDispoNotifyObj* ptNotification)
{
    if (ptElement == nullptr)
    {
        return PUBSEC_ERR_FAILED;
    }
    PubSecAddMembers(ptElement, pubsec_members::disposition_notification::c_tTable, ptNotification);
    const TPubSecPart atParts[] = {
        {&c_tPersonKind, ptNotification->dwPersonNum, 1, &ptNotification->tPerson},
        {&c_tFaceKind, ptNotification->dwFaceNum, 1, &ptNotification->tFace},
        {&c_tMotorVehicleKind, ptNotification->dwMotorVehicleNum, 1, &ptNotification->tMotorVehicle},
        {&c_tNonMotorVehicleKind, ptNotification->dwNonMotorVehicleNum, 1, &ptNotification->tNonMotorVehicle},
    };
    const u32 dwRet = AddParts(ptElement, PUBSEC_FORM_SINGLE, atParts);
    if (dwRet != PUBSEC_OK || ptNotification->dwDispositionNum == 0 || ptNotification->ptDispositionList == nullptr)
    {
        return dwRet;
    }
    return AddDispositionList(ptElement, NumberIn(ptNotification->dwDispositionNum), ptNotification->ptDispositionList);
}

u32 AddNotifications(cJSON* ptParent, u32 dwForm, u16 wNum, const TPubSecDispoNotifyObj* ptObjects)
{
    if (ptParent == nullptr || ptObjects == nullptr || wNum == 0 || wNum > PUBSEC_FORM_MAX)
    {
        return PUBSEC_ERR_PARAM;
    }
    if (dwForm == PUBSEC_FORM_SINGLE && wNum == 1)
    {
        return AddNotification(PubSecJsonAddObject(ptParent, "DispositionNotificationObject"), ptObjects);
    }
    cJSON* ptArray = PubSecJsonAddArray(PubSecJsonAddObject(ptParent, "DispositionNotificationListObject"),
                                        "DispositionNotificationObject");
    u32 dwRet = ptArray != nullptr ? PUBSEC_OK : PUBSEC_ERR_FAILED;
    for (u16 wObject = 0; dwRet == PUBSEC_OK && wObject < wNum; wObject++)
    {
        dwRet = AddNotification(PubSecJsonAppendObject(ptArray), &ptObjects[wObject]);
    }
    return dwRet;
}

} // namespace

char* PubSecDispositionNotificationStructToString(const TPubsecDispositionNotificationList* ptList)
{
    if (ptList == nullptr)
    {
        PUBSEC_ERR("input param invalid(ptList=0x%p).", static_cast<const void*>(ptList));
        return nullptr;
    }
    if (ptList->aptDispoNotifyObj == nullptr || ptList->wObjectNum == 0 || ptList->wObjectNum > PUBSEC_FORM_MAX)
    {
        PUBSEC_ERR("input param invalid(ptList=0x%p, ptList->aptDispoNotifyObj=0x%p,ptList->wObjectNum=%u).",
                   static_cast<const void*>(ptList), static_cast<const void*>(ptList->aptDispoNotifyObj),
                   static_cast<u32>(ptList->wObjectNum));
        return nullptr;
    }
    cJSON* ptRoot = cJSON_CreateObject();
    const u32 dwRet = AddNotifications(ptRoot, ptList->dwObjectForm, ptList->wObjectNum, ptList->aptDispoNotifyObj);
    return PubSecJsonPrintIf(ptRoot, dwRet == PUBSEC_OK ? ptRoot : nullptr);
}

u32 PubSecDispositionNotificationObjectStructToJsonObject(cJSON* ptParent, u32 dwForm, u16 wNum,
                                                          const TPubSecDispoNotifyObj* ptObjects)
{
    const cJSON* ptFormerLast = PubSecJsonLast(ptParent);
    return PubSecOwnAdded(ptParent, ptFormerLast, AddNotifications(ptParent, dwForm, wNum, ptObjects));
}

u32 PubSecDispositionListObjectStructToJsonObject(cJSON* ptParent, u32, u16 wNum,
                                                  const TPubSecDispositionListObj* ptEntries)
{
    const cJSON* ptFormerLast = PubSecJsonLast(ptParent);
    return PubSecOwnAdded(ptParent, ptFormerLast, AddDispositionList(ptParent, wNum, ptEntries));
}
