/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/raw_server.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace
{

constexpr int kPollMs = 50;
constexpr int kPatienceMs = 5000; /* for a request that does not come to its end */

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
    const std::size_t body = at < head ? std::strtoul(request.c_str() + at + name.size(), nullptr, 10) : 0;
    return head + 4 + body;
}

bool isReadable(int socket, int milliseconds)
{
    pollfd wanted = {socket, POLLIN, 0};
    return poll(&wanted, 1, milliseconds) == 1;
}

} // namespace

RawServer::RawServer() : m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    sockaddr* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listener, generic, size) != 0 || listen(m_listener, 16) != 0 ||
        getsockname(m_listener, generic, &size) != 0)
    {
        throw std::runtime_error("cannot listen on 127.0.0.1");
    }
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

RawServer::~RawServer()
{
    m_stops = true;
    m_thread.join();
    close(m_listener);
}

std::uint16_t RawServer::port() const
{
    return m_port;
}

void RawServer::answer(const std::string& bytes)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_answer = bytes;
}

std::vector<std::string> RawServer::requests() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_requests;
}

void RawServer::serve()
{
    while (!m_stops)
    {
        if (isReadable(m_listener, kPollMs))
        {
            const int connection = accept(m_listener, nullptr, nullptr);
            serveOne(connection);
            close(connection);
        }
    }
}

void RawServer::serveOne(int connection)
{
    std::string request;
    char block[65536];
    while ((lengthOf(request) == 0 || request.size() < lengthOf(request)) && isReadable(connection, kPatienceMs))
    {
        const ssize_t count = recv(connection, block, sizeof(block), 0);
        if (count <= 0)
        {
            break;
        }
        request.append(block, static_cast<std::size_t>(count));
    }
    std::string bytes;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_requests.push_back(request);
        bytes = m_answer;
    }
    for (std::size_t sent = 0; sent < bytes.size();)
    {
        const ssize_t count = send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
        {
            break;
        }
        sent += static_cast<std::size_t>(count);
    }
}
