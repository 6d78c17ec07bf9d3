/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_LOG_EVENT_H
#define PUBSEC_OBJECTS_MEMBERS_LOG_EVENT_H

#include <pubsecstack/log_event.h>

#include "objects/member_table.h"

namespace pubsec_members::log_event
{

using R = TPubSecLogInfo;

inline constexpr TPubSecMember c_atValueMembers[] = {
    PS_ALWAYS("TargetID", achTargetID),
};

inline constexpr TPubSecTable c_tValueTable = PubSecTableOf(c_atValueMembers);

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("clientId", achClientId),
    PS_ALWAYS("clientTime", qwClientTime),
    PS_ALWAYS("category", achCategory),
    PS_ALWAYS("action", achAction),
    PS_GROUP("value", c_tValueTable),
    /* the time of entry comes before the identifier */
    PS_ALWAYS("entryTime", qwEntryTime),
    PS_ALWAYS("viidId", achViidId),
    PS_ALWAYS("softVer", achSoftVer),
    PS_ALWAYS("ip", achIp),
    PS_ALWAYS("test", achTest),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::log_event

#endif
