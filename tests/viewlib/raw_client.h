/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

/* A client that sends exactly the bytes it is told, right or wrong. */
namespace raw
{

class Client
{
  public:
    explicit Client(std::uint16_t port) : m_fd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in server{};
        server.sin_family = AF_INET;
        server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        server.sin_port = htons(port);
        if (connect(m_fd, reinterpret_cast<sockaddr*>(&server), sizeof server) != 0)
        {
            close(m_fd);
            throw std::runtime_error("cannot connect");
        }
    }
    ~Client()
    {
        close(m_fd);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /* False once the server has closed the connection, as far as is known here. */
    bool trySend(const std::string& bytes)
    {
        pollfd state{m_fd, POLLIN | POLLRDHUP, 0};
        if (poll(&state, 1, 0) > 0 && (state.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0)
        {
            return false;
        }
        return ::send(m_fd, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
    }
    /* As much as the server takes. */
    void send(const std::string& bytes)
    {
        for (std::size_t sent = 0; sent < bytes.size();)
        {
            const ssize_t step = ::send(m_fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (step <= 0)
            {
                return;
            }
            sent += static_cast<std::size_t>(step);
        }
    }
    void endSending()
    {
        shutdown(m_fd, SHUT_WR);
    }

    /* What one read gives; empty at the end, and when nothing comes for half a minute. */
    std::string readSome()
    {
        char block[16384];
        pollfd state{m_fd, POLLIN, 0};
        const ssize_t size = poll(&state, 1, 30000) == 1 ? recv(m_fd, block, sizeof block, 0) : -1;
        return size > 0 ? std::string(block, static_cast<std::size_t>(size)) : std::string();
    }
    /* Until the server closes the connection. */
    std::string readAll()
    {
        std::string text;
        for (std::string part = readSome(); !part.empty(); part = readSome())
        {
            text += part;
        }
        return text;
    }

    enum class End
    {
        Closed,
        Reset,
        Quiet /* nothing came for that long */
    };
    /* Everything that comes until the connection ends or nothing more comes for so long; ended() tells which. */
    std::string receive(std::chrono::milliseconds quiet = std::chrono::seconds(30))
    {
        std::string bytes;
        char block[16384];
        pollfd state{m_fd, POLLIN, 0};
        while (poll(&state, 1, static_cast<int>(quiet.count())) == 1)
        {
            const ssize_t size = recv(m_fd, block, sizeof block, 0);
            if (size <= 0)
            {
                m_end = size == 0 ? End::Closed : End::Reset;
                return bytes;
            }
            bytes.append(block, static_cast<std::size_t>(size));
        }
        m_end = End::Quiet;
        return bytes;
    }
    End ended() const
    {
        return m_end;
    }

  private:
    const int m_fd;
    End m_end = End::Quiet;
};

/* In a connection of its own, whose end follows the request. */
inline std::string exchange(std::uint16_t port, const std::string& request)
{
    Client client(port);
    client.send(request);
    client.endSending();
    return client.readAll();
}

/* Of an answer's first line that is not 1xx; 0 without an answer. */
inline int status(const std::string& answer)
{
    std::size_t at = 0;
    while (answer.compare(at, 10, "HTTP/1.1 1") == 0)
    {
        at = answer.find("\r\n\r\n", at);
        at = at == std::string::npos ? answer.size() : at + 4;
    }
    const bool http = answer.size() > at + 12 && answer.compare(at, 7, "HTTP/1.") == 0;
    return http ? std::atoi(answer.c_str() + at + 9) : 0;
}

} // namespace raw
