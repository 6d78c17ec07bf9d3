/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/access.h>

#include "tests/objects/demanded.h"

namespace records
{

const std::vector<Member>& AccessRecordMembers()
{
    using R = TPubSecAccessRecordInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("AccessRecordID", achAccessRecordID, 49),
        TEXT("SourceID", achSourceID, 42),
        ALWAYS_TEXT("DeviceID", achDeviceID, 21),
        ALWAYS_TEXT("SecureAccessID", achSecureAccessID, 101),
        ALWAYS_TEXT("AlarmEventCode", achAlarmEventCode, 31),
        ALWAYS("CardID", dwCardID, u32),
        ALWAYS("CardType", nCardType, s32),
        ALWAYS_TEXT("PersonCode", achPersonCode, 65),
        ALWAYS_TEXT("AccessTime", achAccessTime, 15),
        TEXT("AccessDesc", achAccessDesc, 304),
        ALWAYS("PunchAct", nPunchAct, s32),
        ALWAYS("PunchResult", nPunchResult, s32),
        ALWAYS_TEXT("PunchTime", achPunchTime, 15),
        TEXT("EntryTime", achEntryTime, 17),
    };
    return members;
}

} // namespace records
