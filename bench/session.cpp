/* SPDX-License-Identifier: Apache-2.0 */
#include "session.h"

#include <cstdio>

#include <pubsecplatform_posix.h>

#include "records.h"
#include "report.h"

namespace bench
{

TPubSecPlatRegInfo configuration(const SinkServer& server, u32 keepaliveSeconds)
{
    TPubSecPlatRegInfo info = {};
    info.dwEnable = 1;
    std::snprintf(info.achDeviceID, sizeof(info.achDeviceID), "%s", kDeviceID);
    std::snprintf(info.achServerIP, sizeof(info.achServerIP), "127.0.0.1");
    info.dwServerPort = server.port();
    info.dwKeepaliveSec = keepaliveSeconds;
    return info;
}

void startRegistered(const SinkServer& server, u32 keepaliveSeconds)
{
    PosixPlatformSetLogCallback([](void*, const char*, size_t) {}, nullptr);
    const TPubSecPlatRegInfo info = configuration(server, keepaliveSeconds);
    PubSecStackUpdateRegisterInfo(0, &info);
    if (PubSecStackInit() != PUBSEC_OK)
    {
        fail("the stack does not start");
    }
    for (int tries = 0; PubSecGetRegisterStatus(0) == 0; ++tries)
    {
        if (tries == 500)
        {
            fail("the stack does not register");
        }
        AppDelay(10);
    }
}

void stopStack()
{
    PubSecStackUnInit();
    PosixPlatformStop();
}

} // namespace bench
