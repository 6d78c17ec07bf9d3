/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecplatform.h>
#include <pubsecstack/helpers.h>

#include "core/log.h"

/* Mode of NvrSysTimeSecSwitch: from UTC to the time zone that the device shows. */
constexpr u32 PUBSEC_TO_SHOWN_TIME = 1;

u32 PubSecStackCreat_DateTime(const TPubSecTime* ptTime, char* pchDateTime, u16 wDateTimeLen)
{
    if (wDateTimeLen < PUBSEC_DATE_TIME_SIZE || pchDateTime == nullptr || ptTime == nullptr)
    {
        PUBSEC_ERR("Input param wDateTimeLen=%u,PUBSEC_dateTime=%d,pchId=0x%p, ptParam=%p failed.", wDateTimeLen,
                   PUBSEC_DATE_TIME_SIZE, static_cast<const void*>(pchDateTime), static_cast<const void*>(ptTime));
        return PUBSEC_ERR_PARAM;
    }
    AppSnprintf(pchDateTime, wDateTimeLen, "%04u%02u%02u%02u%02u%02u", ptTime->wYear, ptTime->byMonth, ptTime->byDay,
                ptTime->byHour, ptTime->byMinute, ptTime->bySecond);
    PUBSEC_DBG("DateTime:%s", pchDateTime);
    return PUBSEC_OK;
}

u32 PubSecStackCreat_DateTimeEx(u64 qwMilliseconds, char* pchDateTime, u16 wDateTimeLen)
{
    if (wDateTimeLen < PUBSEC_DATE_TIME_SIZE || pchDateTime == nullptr)
    {
        PUBSEC_ERR("Input param wDateTimeLen=%u,PUBSEC_dateTime=%d, pchDateTime=%p failed.", wDateTimeLen,
                   PUBSEC_DATE_TIME_SIZE, static_cast<const void*>(pchDateTime));
        return PUBSEC_ERR_PARAM;
    }
    u32 dwSeconds = static_cast<u32>(qwMilliseconds / 1000);
    NvrSysTimeSecSwitch(PUBSEC_TO_SHOWN_TIME, &dwSeconds);
    TAppTime tTime = {};
    AppConvertU32ToTime(dwSeconds, &tTime);
    AppSnprintf(pchDateTime, wDateTimeLen, "%04d%02d%02d%02d%02d%02d", tTime.wYear, tTime.byMonth, tTime.byDay,
                tTime.byHour, tTime.byMinute, tTime.bySecond);
    PUBSEC_DBG("DateTime:%s", pchDateTime);
    return PUBSEC_OK;
}
