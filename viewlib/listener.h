/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "certificate.h"
#include "connections.h"
#include "uploads.h"
#include "viewlib/answer.h"
#include "viewlib/config.h"
#include "viewlib/exchange.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

struct MHD_Daemon;

namespace viewlib
{

/* What is known of a request once its headers are in. */
struct Reception
{
    std::optional<Answer> early;          /* waits for the body all the same, unless it says otherwise */
    std::optional<std::int64_t> fault;    /* the rule that it is from */
    std::unique_ptr<UploadWriter> upload; /* where the body goes; none: into the exchange */
    std::optional<std::size_t> maxBody;   /* instead of the listener's */
};

/* What decides the answers. Called by the threads of the connections. */
class Handler
{
  public:
    virtual ~Handler() = default;

    virtual Reception begin(const Exchange& exchange) = 0;
    /* The body is in, too. The answer that comes back has a status unless it is cut before that. */
    virtual Answer finish(Exchange& exchange, Reception reception) = 0;
    /* The connection ended before the body did. */
    virtual void abandon(Exchange& exchange) = 0;
};

/* Whether this machine has the address. */
bool canListenOn(const std::string& address);

/* A port with a thread for each of its connections, so that a slow answer holds up nobody else. */
class Listener
{
  public:
    /* Of the settings it keeps no copy. */
    Listener(Handler& handler, const Config& config) : m_handler(handler), m_config(config)
    {
    }
    ~Listener()
    {
        stop();
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /* On all addresses of the settings. Port 0 takes any free port; returns the port. With a certificate: HTTPS.
     * Throws std::runtime_error. */
    std::uint16_t start(std::uint16_t port, const std::optional<Certificate>& certificate);
    void stop();
    bool running() const
    {
        return m_running;
    }

    /* Sleeps; false as soon as the listener stops. */
    bool pause(std::chrono::milliseconds time);

    Handler& handler()
    {
        return m_handler;
    }
    const Config& config() const
    {
        return m_config;
    }
    Connections& connections()
    {
        return m_connections;
    }

  private:
    void startDaemon(int listening, const std::optional<Certificate>& certificate);

    Handler& m_handler;
    const Config& m_config;
    Connections m_connections;
    std::vector<MHD_Daemon*> m_daemons; /* one for each address */
    std::atomic<bool> m_running{false};

    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stopping = false;
};

} // namespace viewlib
