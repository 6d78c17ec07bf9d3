/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/torture/hostile_server.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace
{

constexpr int kPollMs = 20; /* how long a stop may go unnoticed */

/* How long the request is going to be; 0 while its head is not complete. */
std::size_t lengthOf(const std::string& request)
{
    const std::size_t head = request.find("\r\n\r\n");
    if (head == std::string::npos)
    {
        return 0;
    }
    const std::string name = "\r\nContent-Length: ";
    const std::size_t at = request.find(name);
    return head + 4 + (at < head ? std::strtoul(request.c_str() + at + name.size(), nullptr, 10) : 0);
}

bool isReady(int socket, short events)
{
    pollfd wanted = {socket, events, 0};
    return poll(&wanted, 1, kPollMs) == 1;
}

} // namespace

HostileServer::Peer::Peer(const HostileServer& server, int socket) : m_server(server), m_socket(socket)
{
}

bool HostileServer::Peer::readSome(std::string& bytes)
{
    char block[65536];
    while (!m_server.m_stops)
    {
        if (isReady(m_socket, POLLIN))
        {
            const ssize_t count = recv(m_socket, block, sizeof(block), 0);
            bytes.append(block, count > 0 ? static_cast<std::size_t>(count) : 0);
            return count > 0;
        }
    }
    return false;
}

bool HostileServer::Peer::read(std::string& request)
{
    request.clear();
    while (lengthOf(request) == 0 || request.size() < lengthOf(request))
    {
        if (!readSome(request))
        {
            return false;
        }
    }
    return true;
}

bool HostileServer::Peer::write(const std::string& bytes)
{
    for (std::size_t sent = 0; sent < bytes.size();)
    {
        if (m_server.m_stops)
        {
            return false;
        }
        if (isReady(m_socket, POLLOUT))
        {
            const ssize_t count = send(m_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count <= 0)
            {
                return false;
            }
            sent += static_cast<std::size_t>(count);
        }
    }
    return true;
}

bool HostileServer::Peer::wait(unsigned milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!m_server.m_stops && std::chrono::steady_clock::now() < end)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(std::min<unsigned>(milliseconds, kPollMs)));
    }
    return !m_server.m_stops;
}

void HostileServer::Peer::reset()
{
    const linger now = {1, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
}

HostileServer::HostileServer(Behaviour behaviour)
    : m_behaviour(std::move(behaviour)), m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    sockaddr* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listener, generic, size) != 0 || listen(m_listener, 64) != 0 ||
        getsockname(m_listener, generic, &size) != 0)
    {
        throw std::runtime_error("cannot listen on 127.0.0.1");
    }
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { accept(); });
}

HostileServer::~HostileServer()
{
    m_stops = true;
    m_thread.join();
    while (m_open > 0)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    close(m_listener);
}

std::uint16_t HostileServer::port() const
{
    return m_port;
}

unsigned HostileServer::connections() const
{
    return m_connections;
}

void HostileServer::accept()
{
    while (!m_stops)
    {
        if (isReady(m_listener, POLLIN))
        {
            const int connection = ::accept(m_listener, nullptr, nullptr);
            if (connection >= 0)
            {
                ++m_connections;
                ++m_open;
                std::thread([this, connection] { serve(connection); }).detach();
            }
        }
    }
}

void HostileServer::serve(int connection)
{
    Peer peer(*this, connection);
    m_behaviour(peer);
    close(connection);
    --m_open; /* the last touch of this object */
}
