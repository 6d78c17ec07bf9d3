/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Sessions on the fake clock: the stack on the fake platform, a view library on loopback. A pass of the register loop
 * is a call, the second that follows it is virtual, and every request is known with the virtual time at which it was
 * made.
 */
#ifndef PUBSEC_TESTS_SESSION_FIXTURE_H
#define PUBSEC_TESTS_SESSION_FIXTURE_H

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <viewlib/server.h>

#include "core/core.h"
#include "core/http.h"
#include "core/state.h"
#include "session/session.h"
#include "tests/support/fake_platform_fixture.h"
#include "tests/support/session_records.h"

/* A status callback as it came. */
struct Told
{
    u32 slot;
    u32 platform;
    u32 status;
    TPubSecPlatRegInfo info;
    u64 at;                /* virtual time */
    size_t requestsBefore; /* that the test's first server had seen */
};

/* Forgets what was told. */
void clearTold();

/* "0:1->0" for slot 0, platform 1, status 0. */
std::string shortForm(const Told& told);

/* ERR lines carry the source line, which no test knows. */
MATCHER_P2(Err, function, text, std::string("is the error line of ") + function + ": " + text)
{
    const std::string head = std::string("[PubSecStack ERR] ") + function + ":";
    const std::string tail = std::string(" ") + text + "\n";
    if (arg.size() <= head.size() + tail.size() || arg.compare(0, head.size(), head) != 0 ||
        arg.compare(arg.size() - tail.size(), tail.size(), tail) != 0)
    {
        return false;
    }
    const std::string line = arg.substr(head.size(), arg.size() - head.size() - tail.size());
    return line.find_first_not_of("0123456789") == std::string::npos;
}

inline std::string Inf(const std::string& function, const std::string& text)
{
    return "[PubSecStack INF] " + function + ": " + text + "\n";
}

inline std::string Dbg(const std::string& function, const std::string& text)
{
    return "[PubSecStack DBG] " + function + ": " + text + "\n";
}

class SessionTest : public FakePlatformTest
{
  protected:
    SessionTest();
    void SetUp() override;
    void TearDown() override;

    /* A further server; like the first it lives by the virtual clock. */
    std::unique_ptr<viewlib::Server> newServer(viewlib::Config config = {});

    /* Settings of the first server. */
    virtual viewlib::Config serverConfig() const;

    /* Makes both callbacks known. */
    void listen();
    std::vector<Told> told() const;
    std::vector<std::string> toldShort() const;

    void configure(u32 platform, const TPubSecPlatRegInfo& info);

    /* Passes of the register loop, each followed by its second of virtual time. */
    void passes(u32 count = 1);

    /* One pass; the function is called at its end, before any time has passed. */
    void passThen(const std::function<void()>& atEnd);

    /* One pass that registers platform 0 (or the given one) at the first server. */
    void registerPlatform(const TPubSecPlatRegInfo& info, u32 platform = 0);

    /* "Register 401", "Register 200", "Keepalive 200", ... as the first server saw them, or another one. */
    std::vector<std::string> requests() const;
    static std::vector<std::string> requestsOf(const viewlib::Server& from);

    /* When the first server was asked, in virtual milliseconds. */
    std::vector<u64> timesOf(const std::string& path) const;

    /* Timers of a platform that are armed now. */
    static std::vector<fake_platform::Timer> keepaliveTimers(u32 platform = 0);
    static std::vector<fake_platform::Timer> clockTimers(u32 platform = 0);

    /* Log lines since the last call. */
    std::vector<std::string> newLines();

    std::unique_ptr<viewlib::Server> server;

  private:
    void seen(const viewlib::Exchange& exchange);

    mutable std::mutex m_mutex;
    std::map<std::uint64_t, u64> m_times; /* of the first server's exchanges, by their number */
    size_t m_linesRead = 0;
};

#endif
