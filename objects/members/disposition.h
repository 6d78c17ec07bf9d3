/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_DISPOSITION_H
#define PUBSEC_OBJECTS_MEMBERS_DISPOSITION_H

#include <pubsecstack/disposition.h>

#include "objects/member_table.h"

namespace pubsec_members::disposition_notification
{

using R = TPubSecDispoNotifyObj;

/* What comes before the embedded objects. */
inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("NotificationID", achNotificationID),
    PS_ALWAYS("DispositionID", achDispositionID),
    PS_ALWAYS("Title", achTitle),
    PS_ALWAYS("TriggerTime", achTriggerTime),
    PS_ALWAYS("CntObjectID", achCntObjectID),
    PS_FLAG("AlarmClass", bAlarmClassValid, nAlarmClass),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::disposition_notification

#endif
