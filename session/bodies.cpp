/* SPDX-License-Identifier: Apache-2.0 */
/* The session's request bodies: one object with the device's identifier. */
#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "core/text.h"
#include "session/session.h"

namespace
{

char* IdentityJson(const char* pchObject, const char* pchDeviceID)
{
    if (pchDeviceID == nullptr)
    {
        return nullptr;
    }
    char achDeviceID[PUBSEC_DEVICE_ID_LEN + 1];
    PubSecCopyText(achDeviceID, sizeof(achDeviceID), pchDeviceID, PUBSEC_DEVICE_ID_LEN);
    cJSON* ptRoot = cJSON_CreateObject();
    cJSON* ptObject = PubSecJsonAddObject(ptRoot, pchObject);
    PubSecJsonAddText(ptObject, "DeviceID", achDeviceID);
    return PubSecJsonPrintIf(ptRoot, ptObject);
}

} // namespace

char* _PubSecUserRegisterJson(const char* pchDeviceID)
{
    return IdentityJson("RegisterObject", pchDeviceID);
}

char* _PubSecUserUnRegisterJson(const char* pchDeviceID)
{
    return IdentityJson("UnRegisterObject", pchDeviceID);
}

char* _PubSecUserKeepaliveJson(const char* pchDeviceID)
{
    return IdentityJson("KeepaliveObject", pchDeviceID);
}
