/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/log_event.h>

#include "tests/objects/demanded.h"

namespace records
{

namespace
{

const std::vector<Member>& ValueMembers()
{
    using R = TPubSecLogInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("TargetID", achTargetID, 256),
    };
    return members;
}

} // namespace

const std::vector<Member>& LogEventMembers()
{
    using R = TPubSecLogInfo;
    static const std::vector<Member> members = {
        ALWAYS_TEXT("clientId", achClientId, 128),
        ALWAYS("clientTime", qwClientTime, u64),
        ALWAYS_TEXT("category", achCategory, 64),
        ALWAYS_TEXT("action", achAction, 16),
        GROUP("value", ValueMembers()),
        ALWAYS("entryTime", qwEntryTime, u64),
        ALWAYS_TEXT("viidId", achViidId, 64),
        ALWAYS_TEXT("softVer", achSoftVer, 64),
        ALWAYS_TEXT("ip", achIp, 64),
        ALWAYS_TEXT("test", achTest, 64),
    };
    return members;
}

} // namespace records
