/* SPDX-License-Identifier: Apache-2.0 */
/* Ticks and delays. A tick is one millisecond of the monotonic clock. */
#include "platform/posix/posix_platform.h"

#include <errno.h>

using namespace posix_platform;

PLATFORM_FUNCTION void AppDelay(u32 dwMilliseconds)
{
    const timespec until = toTimespec(monotonicNanoseconds() + dwMilliseconds * kNanosecondsPerMillisecond);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR)
    {
    }
}

PLATFORM_FUNCTION u32 AppGetTick(void)
{
    return static_cast<u32>(monotonicNanoseconds() / kNanosecondsPerMillisecond);
}

PLATFORM_FUNCTION u32 AppTickDiff(u32 dwStart, u32 dwEnd)
{
    return dwEnd - dwStart;
}

PLATFORM_FUNCTION u32 AppConvertTickToMS(u32 dwTicks)
{
    return dwTicks;
}

/* Counted by hand, as a 32-bit time_t ends in 2038 and dwSeconds in 2106. */
PLATFORM_FUNCTION void AppConvertU32ToTime(u32 dwSeconds, TAppTime* ptTime)
{
    if (ptTime == nullptr)
    {
        return;
    }
    const u32 secondOfDay = dwSeconds % 86400;
    ptTime->byHour = static_cast<u8>(secondOfDay / 3600);
    ptTime->byMinute = static_cast<u8>(secondOfDay / 60 % 60);
    ptTime->bySecond = static_cast<u8>(secondOfDay % 60);

    /* Days in years that begin on 1 March, so that the leap day is a year's last. 1970-01-01 is day 306 of such a year.
     */
    const u32 day = dwSeconds / 86400 + 719468; /* since 0000-03-01 */
    const u32 era = day / 146097;               /* of 400 years */
    const u32 dayOfEra = day % 146097;
    const u32 yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const u32 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const u32 monthFromMarch = (5 * dayOfYear + 2) / 153;
    const u32 month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    ptTime->byDay = static_cast<u8>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    ptTime->byMonth = static_cast<u8>(month);
    ptTime->wYear = static_cast<u16>(era * 400 + yearOfEra + (month <= 2 ? 1 : 0));
}
