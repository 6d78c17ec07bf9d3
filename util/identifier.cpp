/* SPDX-License-Identifier: Apache-2.0 */
#include <inttypes.h>

#include <pubsecplatform.h>
#include <pubsecstack/helpers.h>

#include "core/log.h"

constexpr u64 PUBSEC_SERIAL_RANGE = 100000;

/* The first dwNum kinds are numbered from "01"; what is beyond is "99". */
static const char* KindCode(u32 dwKind, u32 dwNum)
{
    static constexpr char c_achCodes[][3] = {"01", "02", "03", "04", "05", "06", "07"};
    return dwKind < dwNum ? c_achCodes[dwKind] : "99";
}

/* What a message shows of a text of which dwSize bytes may be written: nothing at all when there are none. */
static const char* ShownText(const char* pchText, u32 dwSize)
{
    return dwSize == 0 ? "" : pchText;
}

/* Hosts search their logs for this line, so it names the image-content constant for both kinds of identifier. */
#define PUBSEC_ERR_ID_PARAM(wIdLen, dwMost, pchId, ptParam)                                                            \
    PUBSEC_ERR("Input param wIdLen=%u,PUBSEC_ImageCntObjectIdType=%d,pchId=0x%p, ptParam=%p failed.", wIdLen, dwMost,  \
               static_cast<const void*>(pchId), static_cast<const void*>(ptParam))

u32 PubSecStackCreat_BasicObjectIdType(const TPubSecObjectIdParam* ptParam, char* pchId, u16 wIdLen)
{
    constexpr u32 dwKinds = 3;

    if (wIdLen > PUBSEC_OBJECT_ID_SIZE || pchId == nullptr || ptParam == nullptr)
    {
        PUBSEC_ERR_ID_PARAM(wIdLen, PUBSEC_OBJECT_ID_SIZE, pchId, ptParam);
        return PUBSEC_ERR_PARAM;
    }
    AppSnprintf(pchId, wIdLen, "%.*s%s%.*s%05" PRIu64, static_cast<int>(sizeof(ptParam->achDeviceID)),
                ptParam->achDeviceID, KindCode(ptParam->eObjType, dwKinds),
                static_cast<int>(sizeof(ptParam->achDateTime)), ptParam->achDateTime,
                ptParam->qwSerialNo % PUBSEC_SERIAL_RANGE);
    PUBSEC_DBG("BasicObjectIdType:%s", ShownText(pchId, wIdLen));
    return PUBSEC_OK;
}

u32 PubSecStackCreat_ImageCntObjectIdType(const TPubSecImageCntIdParam* ptParam, char* pchId, u16 wIdLen)
{
    constexpr u32 dwKinds = 7;

    if (wIdLen > PUBSEC_IMAGE_CNT_ID_SIZE || pchId == nullptr || ptParam == nullptr)
    {
        PUBSEC_ERR_ID_PARAM(wIdLen, PUBSEC_IMAGE_CNT_ID_SIZE, pchId, ptParam);
        return PUBSEC_ERR_PARAM;
    }
    char achBasic[PUBSEC_OBJECT_ID_SIZE];
    PubSecStackCreat_BasicObjectIdType(&ptParam->tBasic, achBasic, sizeof(achBasic));
    AppSnprintf(pchId, wIdLen, "%s%s%05" PRIu64, achBasic, KindCode(ptParam->eImageCntType, dwKinds),
                ptParam->qwImageSerialNo % PUBSEC_SERIAL_RANGE);
    PUBSEC_DBG("ImageCntObjectIdType:%s", ShownText(pchId, wIdLen));
    return PUBSEC_OK;
}
