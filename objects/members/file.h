/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_MEMBERS_FILE_H
#define PUBSEC_OBJECTS_MEMBERS_FILE_H

#include <pubsecstack/file.h>

#include "objects/member_table.h"

namespace pubsec_members::file
{

using R = TPubSecFileInfo;

inline constexpr TPubSecMember c_atMembers[] = {
    /* identifier and path come earlier than in the record */
    PS_TEXT("FileID", achFileID),
    PS_ALWAYS("InfoKind", dwInfoKind),
    PS_ALWAYS("Source", achSource),
    PS_ALWAYS("FileName", achFileName),
    PS_TEXT("StoragePath", achStoragePath),
    PS_ALWAYS("FileHash", achFileHash),
    PS_ALWAYS("FileFormat", achFileFormat),
    PS_ALWAYS("Title", achTitle),
    PS_TEXT("SecurityLevel", achSecurityLevel),
    PS_TEXT("SubmiterName", achSubmiterName),
    PS_TEXT("SubmiterOrg", achSubmiterOrg),
    PS_TEXT("EntryTime", achEntryTime),
    PS_NOT_MINUS_ONE("FileSize", nFileSize),
    PS_TEXT("XTExpiredDate", achXTExpiredDate),
    PS_TEXT("DeviceType", achDeviceType),
    PS_TEXT("DeviceSNNo", achDeviceSNNo),
    PS_TEXT("ImeiSn", achImeiSn),
    PS_TEXT("APSId", achAPSId),
    PS_TEXT("SelfDefData", achSelfDefData),
};

inline constexpr TPubSecTable c_tTable = PubSecTableOf(c_atMembers);

} // namespace pubsec_members::file

#endif
