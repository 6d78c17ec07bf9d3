/* SPDX-License-Identifier: Apache-2.0 */
/* Records and state that all session tests share, on whatever platform they run. */
#ifndef PUBSEC_TESTS_SESSION_RECORDS_H
#define PUBSEC_TESTS_SESSION_RECORDS_H

#include <string>

#include <pubsecstack/config.h>

constexpr const char* kDevice = "44010000001190000001";
constexpr const char* kRegister = "/VIID/System/Register";
constexpr const char* kUnRegister = "/VIID/System/UnRegister";
constexpr const char* kKeepalive = "/VIID/System/Keepalive";
constexpr const char* kTime = "/VIID/System/Time";

/* Puts a text into a field, zeros behind it. */
template <size_t Size> void setText(char (&field)[Size], const std::string& text)
{
    const std::string padded = text + std::string(Size, '\0');
    padded.copy(field, Size);
}

/* An enabled platform at a server on 127.0.0.1, with the credentials that servers start with. */
TPubSecPlatRegInfo recordFor(u16 port);
TPubSecRegParam paramFor(u16 port);

bool sameRecord(const TPubSecPlatRegInfo& left, const TPubSecPlatRegInfo& right);

/* Everything global as it is at load, so that tests of one process don't see each other. */
void resetStack();

#endif
