/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/file.h>

#include "tests/objects/demanded.h"

namespace records
{

const std::vector<Member>& FileMembers()
{
    using R = TPubSecFileInfo;
    static const std::vector<Member> members = {
        TEXT("FileID", achFileID, 42),
        ALWAYS("InfoKind", dwInfoKind, u32),
        ALWAYS_TEXT("Source", achSource, 3),
        ALWAYS_TEXT("FileName", achFileName, 257),
        TEXT("StoragePath", achStoragePath, 257),
        ALWAYS_TEXT("FileHash", achFileHash, 33),
        ALWAYS_TEXT("FileFormat", achFileFormat, 33),
        ALWAYS_TEXT("Title", achTitle, 257),
        TEXT("SecurityLevel", achSecurityLevel, 2),
        TEXT("SubmiterName", achSubmiterName, 51),
        TEXT("SubmiterOrg", achSubmiterOrg, 101),
        TEXT("EntryTime", achEntryTime, 15),
        NOT_MINUS_ONE("FileSize", nFileSize, s32),
        TEXT("XTExpiredDate", achXTExpiredDate, 15),
        TEXT("DeviceType", achDeviceType, 101),
        TEXT("DeviceSNNo", achDeviceSNNo, 33),
        TEXT("ImeiSn", achImeiSn, 18),
        TEXT("APSId", achAPSId, 21),
        TEXT("SelfDefData", achSelfDefData, 257),
    };
    return members;
}

} // namespace records
