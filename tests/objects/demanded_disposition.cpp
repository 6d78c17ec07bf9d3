/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/disposition.h>

#include "tests/objects/demanded.h"

namespace records
{

/* What comes before the objects. */
const std::vector<Member>& NotificationMembers()
{
    using R = TPubSecDispoNotifyObj;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("NotificationID", achNotificationID, 34),
        ALWAYS_TEXT("DispositionID", achDispositionID, 34),
        ALWAYS_TEXT("Title", achTitle, 257),
        ALWAYS_TEXT("TriggerTime", achTriggerTime, 15),
        ALWAYS_TEXT("CntObjectID", achCntObjectID, 52),
        FLAGGED("AlarmClass", bAlarmClassValid, nAlarmClass, s32),
    };
    return members;
}

} // namespace records
