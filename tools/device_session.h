/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <string>

#include <pubsecstack/pubsecstack.h>

#include "device_options.h"

namespace device
{

/* The platform that this device reports to. */
constexpr u32 c_platform = 0;

/*
 * The stack's life in this program: configured and started when it is made, unregistered and stopped when it goes. What
 * happens on the stack's own tasks is learnt from the status callback and from the log. One at a time.
 */
class Session
{
  public:
    explicit Session(const Options& options); /* throws std::runtime_error */
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /* Each waits for as long as the options allow and throws std::runtime_error that says what did not happen. */
    void waitRegistered() const;
    std::string waitKeepalive() const; /* the "StatusCode" of its answer */
    void waitClock() const;
    void leave(); /* the platform is disabled: the stack unregisters and stays away */

  private:
    [[noreturn]] void fail(const std::string& what) const;
    void configure(bool enable) const;

    const Options& m_options;
};

} // namespace device
