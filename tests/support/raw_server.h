/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A server that answers with exactly the bytes it was told and keeps exactly the bytes it got: one request a
 * connection, on a free port of 127.0.0.1.
 */
#ifndef PUBSEC_TESTS_RAW_SERVER_H
#define PUBSEC_TESTS_RAW_SERVER_H

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class RawServer
{
  public:
    /* Throws std::runtime_error where it cannot listen. */
    RawServer();
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    std::uint16_t port() const;

    /* What every request from here on gets; the connection is closed behind it. */
    void answer(const std::string& bytes);

    /* The requests so far, head and body, as they came. */
    std::vector<std::string> requests() const;

  private:
    void serve();
    void serveOne(int connection);

    int m_listener;
    std::uint16_t m_port = 0;
    std::atomic<bool> m_stops{false};
    mutable std::mutex m_mutex;
    std::string m_answer;
    std::vector<std::string> m_requests;
    std::thread m_thread;
};

#endif
