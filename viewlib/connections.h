/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace viewlib
{

/* One connection, and until when its client has to show a sign of life. */
class Connection
{
  public:
    Connection(std::uint64_t number, int fd) : m_number(number), m_fd(fd)
    {
    }
    std::uint64_t number() const
    {
        return m_number;
    }
    /* It is the client's turn for so long. */
    void expect(std::chrono::milliseconds within)
    {
        m_deadline = (std::chrono::steady_clock::now() + within).time_since_epoch().count();
    }
    /* It is the server's turn. */
    void hold()
    {
        m_deadline = none;
    }

  private:
    friend class Connections;
    using Ticks = std::chrono::steady_clock::rep;
    static constexpr Ticks none = INT64_MAX;

    const std::uint64_t m_number;
    const int m_fd;
    std::atomic<Ticks> m_deadline{none};
};

/*
 * The open connections. Those that keep their server waiting are shut down, however busily they send: a header that
 * comes a byte at a time is no sign of life.
 */
class Connections
{
  public:
    ~Connections()
    {
        stop();
    }

    /* Looks at the deadlines that often. */
    void start(std::chrono::milliseconds interval);
    void stop();

    Connection* add(int fd, std::chrono::milliseconds firstRequestWithin);
    void remove(const Connection* connection);

  private:
    void watch(std::chrono::milliseconds interval);

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::unordered_map<const Connection*, std::unique_ptr<Connection>> m_open;
    std::uint64_t m_count = 0;
    bool m_stopping = false;
    std::thread m_watcher;
};

} // namespace viewlib
