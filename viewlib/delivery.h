/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"

#include <microhttpd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

namespace viewlib
{

class Listener;

int socketOf(MHD_Connection* connection);
bool isSecure(MHD_Connection* connection);

/* Past the HTTP server, on a connection that is not secure. */
void sendRaw(MHD_Connection* connection, const std::string& bytes);

/* A throttled body moves in blocks of so many bytes, each after a pause. */
inline std::uint64_t throttleStep(std::uint64_t bytesPerSecond)
{
    constexpr std::uint64_t stepsPerSecond = 20;
    return std::max<std::uint64_t>(1, bytesPerSecond / stepsPerSecond);
}
inline std::chrono::milliseconds throttlePause(std::uint64_t bytes, std::uint64_t bytesPerSecond)
{
    return std::chrono::milliseconds(1000 * bytes / bytesPerSecond);
}

/* Sends the answer, delays, throttle and cuts included; what it returns goes back to the HTTP server as it stands. */
MHD_Result deliver(Listener& listener, MHD_Connection* connection, const Answer& answer);

} // namespace viewlib
