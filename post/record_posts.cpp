/* SPDX-License-Identifier: Apache-2.0 */
/* Posts of violations, access records, sensor reports, dispositions and log events. None of them reads the answer. */
#include <pubsecstack/documents.h>
#include <pubsecstack/posts.h>

#include "core/log.h"
#include "objects/documents.h"
#include "post/post_procedure.h"

namespace
{

char* IllegalRecordsEx(const TPubSecPost* ptPost)
{
    return _PubSecIllegalRecordJsonEx(ptPost->dwNum, static_cast<const TPubSecIllegalRecordInfo*>(ptPost->pvRecords));
}

char* NonMotorIllegalRecords(const TPubSecPost* ptPost)
{
    const auto* ptRecords = static_cast<const TPubSecNonMotorIllegalRecordInfo*>(ptPost->pvRecords);
    if (ptRecords == nullptr)
    {
        return nullptr;
    }
    PUBSEC_DBG_AS(ptPost->ptKind->pchName, "wIlleRecdrNum=%u,wSubImageNum=%u.", ptPost->dwNum,
                  static_cast<u32>(ptRecords->wSubImageNum));
    return _PubSecNonMotorIllegalRecordJson(static_cast<u16>(ptPost->dwNum), ptRecords);
}

/* What they have in common. */
constexpr TPubSecPostKind RecordKind(const char* pchName, const char* pchPath, PFPubSecEncode pfEncode, u32 dwFlags = 0)
{
    return {pchName,
            dwFlags,
            pchPath,
            pfEncode,
            nullptr,
            PUBSEC_EASY_INIT_FAILED,
            PUBSEC_ERR_CURL_INIT,
            PubSecFillPlainHeaders,
            PUBSEC_ERR_REFUSED};
}

constexpr TPubSecPostKind c_tIllRecd = RecordKind("PubSecPostIllRecd", "/VIID/IllegalRecords",
                                                  PubSecDocumentOf<TPubSecIllegalRecordInfo, _PubSecIllegalRecordJson>);
constexpr TPubSecPostKind c_tIllRecdEx = RecordKind("PubSecPostIllRecdEx", "/VIID/IllegalRecords", IllegalRecordsEx);
constexpr TPubSecPostKind c_tNonMotorIllRecd =
    RecordKind("PubSecPostNonMotorIllRecd", "/VIID/NonMotorIllegalRecords", NonMotorIllegalRecords);
constexpr TPubSecPostKind c_tGps =
    RecordKind("PubSecPostGpsInfo", "/VIID/GPSDatas", PubSecDocumentOf<TPubSecGpsInfo, _PubSecGPSInfoJson>);
constexpr TPubSecPostKind c_tWifi = RecordKind("PubSecPostWifiDeviceMSG", "/VIID/WifiDetector/WifiDatas",
                                               PubSecDocumentOf<TPubSecWifiData, _PubSecWifiDeviceJSON>);
constexpr TPubSecPostKind c_tRfid =
    RecordKind("PubSecPostRFIDMSG", "/VIID/RFIDDatas", PubSecDocumentOf<TPubSecRFIDData, _PubSecRFIDJSON>);

/* To a URL of the caller's. */
constexpr TPubSecPostKind c_tAccRecInf =
    RecordKind("PubSecPostAccRecInf", nullptr, PubSecDocumentOf<TPubSecAccessRecordInfo, _PubSecAccRecInfoJson>);
constexpr TPubSecPostKind c_tAccRecInfList = RecordKind(
    "PubSecPostAccRecInfList", nullptr, PubSecDocumentOf<TPubSecAccessRecordInfo, _PubSecAccRecInfoListJson>);

/* Tests its arguments and the registration itself, with a message of its own. */
constexpr TPubSecPostKind c_tDisposition =
    RecordKind("PubSecPostDispositionNotification", "/VIID/DispositionNotifications",
               PubSecDocumentOf<TPubsecDispositionNotificationList, PubSecDispositionNotificationStructToString>,
               PUBSEC_POST_ANY_PLATFORM);

/* To a collector of the caller's, whether registered or not, as platform 0. */
constexpr TPubSecPostKind c_tLog = RecordKind(
    "PubSecPosLogWriteMSG", nullptr, PubSecDocumentOf<TPubSecLogInfo, _PubSecLogInfoJson>, PUBSEC_POST_ANY_PLATFORM);

u32 PostToUrl(const TPubSecPostKind& tKind, u32 dwPlatform, const void* pvRecords, const char* pchUrl)
{
    const TPubSecPost tPost = {&tKind, dwPlatform, pvRecords, 0, nullptr, pchUrl, nullptr, nullptr};
    return PubSecPostRun(&tPost);
}

} // namespace

u32 PubSecPostIllRecd(u32 dwPlatform, const TPubSecIllegalRecordInfo* ptRecords)
{
    return PubSecPostRecords(c_tIllRecd, dwPlatform, ptRecords);
}

u32 PubSecPostIllRecdEx(u32 dwPlatform, u32 dwNum, const TPubSecIllegalRecordInfo* ptRecords)
{
    return PubSecPostRecords(c_tIllRecdEx, dwPlatform, ptRecords, dwNum);
}

u32 PubSecPostNonMotorIllRecd(u32 dwPlatform, u16 wNum, const TPubSecNonMotorIllegalRecordInfo* ptRecords)
{
    return PubSecPostRecords(c_tNonMotorIllRecd, dwPlatform, ptRecords, wNum);
}

u32 PubSecPostAccRecInf(u32 dwPlatform, const TPubSecAccessRecordInfo* ptRecord, const char* pchUrl)
{
    return PostToUrl(c_tAccRecInf, dwPlatform, ptRecord, pchUrl);
}

u32 PubSecPostAccRecInfList(u32 dwPlatform, const TPubSecAccessRecordInfo* ptRecords, const char* pchUrl)
{
    return PostToUrl(c_tAccRecInfList, dwPlatform, ptRecords, pchUrl);
}

u32 PubSecPostGpsInfo(u32 dwPlatform, const TPubSecGpsInfo* ptGps)
{
    return PubSecPostRecords(c_tGps, dwPlatform, ptGps);
}

u32 PubSecPostWifiDeviceMSG(u32 dwPlatform, const TPubSecWifiData* ptWifi)
{
    return PubSecPostRecords(c_tWifi, dwPlatform, ptWifi);
}

u32 PubSecPostRFIDMSG(u32 dwPlatform, const TPubSecRFIDData* ptRfid)
{
    return PubSecPostRecords(c_tRfid, dwPlatform, ptRfid);
}

u32 PubSecPostDispositionNotification(u32 dwPlatform, const TPubsecDispositionNotificationList* ptList)
{
    if (ptList == nullptr || !PubSecIsPlatform(dwPlatform))
    {
        PUBSEC_ERR("input param error(nPlatID=%d,ptList=%p).", static_cast<s32>(dwPlatform),
                   static_cast<const void*>(ptList));
        return PUBSEC_ERR_PARAM;
    }
    if (!PubSecIsRegistered(dwPlatform))
    {
        PUBSEC_ERR("pubsec%d is not registed).", static_cast<s32>(dwPlatform)); /* spelled so */
        return PUBSEC_ERR_NOT_REGISTERED;
    }
    return PubSecPostRecords(c_tDisposition, dwPlatform, ptList);
}

u32 PubSecPosLogWriteMSG(const TPubSecLogInfo* ptLog, const char* pchHost, u32 dwPort)
{
    char achUrl[PUBSEC_POST_URL_SIZE];
    if (pchHost == nullptr)
    {
        return PUBSEC_ERR_FAILED;
    }
    if (dwPort == 0)
    {
        AppSnprintf(achUrl, sizeof(achUrl), "%s%s%s", "http://", pchHost, "/log/event");
    }
    else
    {
        AppSnprintf(achUrl, sizeof(achUrl), "%s%s%s%d%s", "http://", pchHost, ":", static_cast<s32>(dwPort),
                    "/log/event");
    }
    return PostToUrl(c_tLog, 0, ptLog, achUrl);
}
