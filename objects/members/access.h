/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_ACCESS_H
#define PUBSEC_OBJECTS_MEMBERS_ACCESS_H

#include <pubsecstack/access.h>

#include "objects/member_table.h"

namespace pubsec_members::access_record
{

using R = TPubSecAccessRecordInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    PS_ALWAYS("AccessRecordID", achAccessRecordID),
    PS_TEXT("SourceID", achSourceID),
    PS_ALWAYS("DeviceID", achDeviceID),
    PS_ALWAYS("SecureAccessID", achSecureAccessID),
    PS_ALWAYS("AlarmEventCode", achAlarmEventCode),
    PS_ALWAYS("CardID", dwCardID),
    PS_ALWAYS("CardType", nCardType),
    PS_ALWAYS("PersonCode", achPersonCode),
    PS_ALWAYS("AccessTime", achAccessTime),
    PS_TEXT("AccessDesc", achAccessDesc),
    PS_ALWAYS("PunchAct", nPunchAct),
    PS_ALWAYS("PunchResult", nPunchResult),
    PS_ALWAYS("PunchTime", achPunchTime),
    PS_TEXT("EntryTime", achEntryTime),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::access_record

#endif
