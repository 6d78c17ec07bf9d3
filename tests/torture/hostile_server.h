/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A server on a free port of 127.0.0.1 that does with each connection what it is told: a function that reads and writes
 * the socket as it likes, on a thread of its own.
 *
 *     HostileServer server([](HostileServer::Peer& peer) {
 *         std::string request;
 *         while (peer.read(request))
 *             peer.write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
 *     });
 */
#ifndef PUBSEC_TESTS_TORTURE_HOSTILE_SERVER_H
#define PUBSEC_TESTS_TORTURE_HOSTILE_SERVER_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

class HostileServer
{
  public:
    class Peer
    {
      public:
        Peer(const HostileServer& server, int socket);

        /* The next request, its head and as much body as its Content-Length tells. False at the connection's end. */
        bool read(std::string& request);

        /* At least one byte of whatever comes. False at the connection's end. */
        bool readSome(std::string& bytes);

        /* False when the other side has gone, or the server stops. */
        bool write(const std::string& bytes);

        /* False when the server stops meanwhile. */
        bool wait(unsigned milliseconds);

        /* Ends the connection with a reset. */
        void reset();

      private:
        const HostileServer& m_server;
        int m_socket;
    };

    using Behaviour = std::function<void(Peer& peer)>;

    /* Throws std::runtime_error where it cannot listen. */
    explicit HostileServer(Behaviour behaviour);
    ~HostileServer();
    HostileServer(const HostileServer&) = delete;
    HostileServer& operator=(const HostileServer&) = delete;

    std::uint16_t port() const;

    /* Connections so far. */
    unsigned connections() const;

  private:
    void accept();
    void serve(int connection);

    Behaviour m_behaviour;
    int m_listener;
    std::uint16_t m_port = 0;
    std::atomic<bool> m_stops{false};
    std::atomic<unsigned> m_connections{0};
    std::atomic<unsigned> m_open{0}; /* connections whose threads still run */
    std::thread m_thread;
};

#endif
