/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "uploads.h"
#include "viewlib/answer.h"
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

struct MHD_Daemon;

namespace viewlib
{

/* What is known of a request once its headers are in. */
struct Reception
{
    std::optional<Answer> early;          /* waits for the body all the same */
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

/* A port with a thread for each of its connections, so that a slow answer holds up nobody else. */
class Listener
{
  public:
    Listener(Handler& handler, std::size_t maxBody) : m_handler(handler), m_maxBody(maxBody)
    {
    }
    ~Listener()
    {
        stop();
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /* Port 0 takes any free port; returns the port. Throws std::runtime_error. */
    std::uint16_t start(const std::string& address, std::uint16_t port, bool https);
    void stop();
    bool running() const
    {
        return m_daemon != nullptr;
    }

    /* Sleeps; false as soon as the listener stops. */
    bool pause(std::chrono::milliseconds time);

    Handler& handler()
    {
        return m_handler;
    }
    std::size_t maxBody() const
    {
        return m_maxBody;
    }
    std::uint64_t nextConnection()
    {
        return ++m_connections;
    }

  private:
    Handler& m_handler;
    const std::size_t m_maxBody;
    std::atomic<MHD_Daemon*> m_daemon{nullptr};
    std::atomic<std::uint64_t> m_connections{0};

    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stopping = false;
};

} // namespace viewlib
