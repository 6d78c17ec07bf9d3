/* SPDX-License-Identifier: Apache-2.0 */
/* The system service: the device's clock and time zone, and blocks of the service. */
#include "platform/posix/posix_platform.h"

#include <string.h>

#include "platform/posix/include/pubsecplatform_posix.h"

using namespace posix_platform;

namespace
{

/* Results other than NVR_SYS_OK. */
constexpr u32 kServiceBadArgument = 1001;
constexpr u32 kServiceClockRefused = 1002;

/* Milliseconds that the device's clock is ahead of the machine's. */
pthread_mutex_t g_mutex = PTHREAD_MUTEX_INITIALIZER;
int64_t g_aheadMs = 0;
bool g_mayTouchMachine = false;

int64_t machineClockMs()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

bool setMachineClock(time_t seconds)
{
    timespec instant;
    instant.tv_sec = seconds;
    instant.tv_nsec = 0;
    return clock_settime(CLOCK_REALTIME, &instant) == 0;
}

/* Reads the fields as local time; what is no time of any day (second 60, month 0) is carried over, as mktime does. */
bool toSeconds(const TNvrSysTime& time, time_t* seconds)
{
    tm fields;
    memset(&fields, 0, sizeof(fields));
    fields.tm_year = time.wYear - 1900;
    fields.tm_mon = time.byMonth - 1;
    fields.tm_mday = time.byDay;
    fields.tm_hour = time.byHour;
    fields.tm_min = time.byMinute;
    fields.tm_sec = time.bySecond;
    fields.tm_isdst = -1;
    fields.tm_wday = -1; /* mktime fills it, unless it fails */
    *seconds = mktime(&fields);
    return fields.tm_wday != -1;
}

/* localtime_r need not notice that the zone was changed, tzset does. */
void toLocal(time_t seconds, tm* fields)
{
    tzset();
    memset(fields, 0, sizeof(*fields));
    localtime_r(&seconds, fields);
}

} // namespace

PLATFORM_FUNCTION u32 NvrSysTimeSwitch(u32, TNvrSysTime* ptTime)
{
    return ptTime != nullptr ? NVR_SYS_OK : kServiceBadArgument;
}

PLATFORM_FUNCTION u32 NvrSysSetSystemTime(const TNvrSysTime* ptTime, u32)
{
    time_t seconds = 0;
    if (ptTime == nullptr || !toSeconds(*ptTime, &seconds))
    {
        return kServiceBadArgument;
    }
    MutexGuard guard(g_mutex);
    if (!g_mayTouchMachine)
    {
        g_aheadMs = static_cast<int64_t>(seconds) * 1000 - machineClockMs();
        return NVR_SYS_OK;
    }
    if (!setMachineClock(seconds))
    {
        return kServiceClockRefused;
    }
    g_aheadMs = 0;
    return NVR_SYS_OK;
}

PLATFORM_FUNCTION u32 NvrSysTimeSecSwitch(u32 dwMode, u32* pdwSeconds)
{
    if (pdwSeconds == nullptr)
    {
        return kServiceBadArgument;
    }
    if (dwMode == 1)
    {
        tm fields;
        toLocal(static_cast<time_t>(*pdwSeconds), &fields);
        *pdwSeconds += static_cast<u32>(fields.tm_gmtoff);
    }
    return NVR_SYS_OK;
}

PLATFORM_FUNCTION void NvrSrvFree(void* pvBlock, const char*, u32)
{
    releaseBlock(pvBlock);
}

int64_t PosixPlatformDeviceClockMs(void)
{
    MutexGuard guard(g_mutex);
    return machineClockMs() + g_aheadMs;
}

void PosixPlatformDeviceTime(TNvrSysTime* ptTime)
{
    if (ptTime == nullptr)
    {
        return;
    }
    const int64_t milliseconds = PosixPlatformDeviceClockMs();
    const int64_t seconds = milliseconds / 1000 - (milliseconds % 1000 < 0 ? 1 : 0);
    tm fields;
    toLocal(static_cast<time_t>(seconds), &fields);
    memset(ptTime, 0, sizeof(*ptTime));
    ptTime->wYear = static_cast<u16>(fields.tm_year + 1900);
    ptTime->byMonth = static_cast<u8>(fields.tm_mon + 1);
    ptTime->byDay = static_cast<u8>(fields.tm_mday);
    ptTime->byHour = static_cast<u8>(fields.tm_hour);
    ptTime->byMinute = static_cast<u8>(fields.tm_min);
    ptTime->bySecond = static_cast<u8>(fields.tm_sec);
}

void PosixPlatformAllowMachineClock(s32 nAllow)
{
    MutexGuard guard(g_mutex);
    g_mayTouchMachine = nAllow != 0;
}
