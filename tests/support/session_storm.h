/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Everything that hosts and servers can do to the sessions of both platforms, at any time and on as many threads as
 * wanted, on whatever platform the stack runs. What a step does is drawn from a random number.
 */
#ifndef PUBSEC_TESTS_SESSION_STORM_H
#define PUBSEC_TESTS_SESSION_STORM_H

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

#include <viewlib/server.h>

#include <pubsecstack/config.h>

class SessionStorm
{
  public:
    /* The threads' random numbers follow from the seed. */
    SessionStorm(viewlib::Server& first, viewlib::Server& second, u32 seed);
    ~SessionStorm();
    SessionStorm(const SessionStorm&) = delete;
    SessionStorm& operator=(const SessionStorm&) = delete;

    /* Repeats a step on a thread of its own until the end. */
    void repeat(std::function<void(u32 random)> step, std::chrono::milliseconds pause);

    /* Waits for the threads; the servers behave again. */
    void end();

    /* The steps. */
    void post(u32 random);
    void configure(u32 random) const;
    void callDirectly(u32 random) const;
    void misbehave(u32 random) const; /* lost keepalives, redirects, code 10, and good behaviour again */

    /* Posts that were answered with success. */
    u32 posted() const;

    /* An enabled platform with the shortest periods; each platform is a device of its own. */
    static const char* deviceOf(u32 platform);
    static TPubSecPlatRegInfo recordOf(u32 platform, const viewlib::Server& server);

  private:
    viewlib::Server& serverOf(u32 random) const;

    viewlib::Server& m_first;
    viewlib::Server& m_second;
    u32 m_seed;
    std::atomic<u32> m_posted{0};
    std::atomic<bool> m_over{false};
    std::vector<std::thread> m_threads;
};

#endif
