/* SPDX-License-Identifier: Apache-2.0 */
/* Sessions as a device has them: the stack on the POSIX platform, its own threads, real time, servers on loopback. */
#ifndef PUBSEC_TESTS_SESSION_REAL_H
#define PUBSEC_TESTS_SESSION_REAL_H

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <viewlib/server.h>

#include <pubsecstack/pubsecstack.h>

#include "tests/support/session_records.h"

class RealSession : public testing::Test
{
  protected:
    /* Starts the stack with a callback and errors logged, and ends all of it: loop, tasks, timers. */
    void SetUp() override;
    void TearDown() override;

    static std::unique_ptr<viewlib::Server> newServer(viewlib::Config config = {});

    /* An enabled platform with the shortest period. */
    static TPubSecPlatRegInfo recordAt(const viewlib::Server& server);

    static void configure(u32 platform, const TPubSecPlatRegInfo& info);

    /* Until the condition holds; false: not in time. */
    static bool waitFor(const std::function<bool()>& condition,
                        std::chrono::milliseconds limit = std::chrono::seconds(8));
    static bool waitForStatus(u32 platform, u32 status);

    /* Status changes as the host heard them: "0->1", "1->0", with the platform first. */
    static std::vector<std::string> told();

    /* Log lines so far that contain the text. */
    static size_t linesWith(const std::string& text);

    /* "Register 401", "Register 200", ... */
    static std::vector<std::string> requestsOf(const viewlib::Server& server);
};

#endif
