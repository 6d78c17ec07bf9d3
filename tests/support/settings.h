/* SPDX-License-Identifier: Apache-2.0 */
/* Fields and configurations as a host fills them. */
#ifndef PUBSEC_TESTS_SETTINGS_H
#define PUBSEC_TESTS_SETTINGS_H

#include <cstring>
#include <string>

#include <pubsecstack/config.h>

namespace stack
{

/* Fills a text field, with a terminator where there is room for one. */
template <size_t Size> void put(char (&field)[Size], const std::string& text)
{
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), text.size() < Size ? text.size() : Size);
}

inline TPubSecPlatRegInfo configuration(const std::string& address, u32 port)
{
    TPubSecPlatRegInfo info = {};
    info.dwEnable = 1;
    put(info.achDeviceID, "34020000001190000001");
    put(info.achServerIP, address);
    info.dwServerPort = port;
    put(info.achUserName, "admin");
    put(info.achPassword, "viewlib");
    info.dwKeepaliveSec = 60;
    return info;
}

} // namespace stack

#endif
