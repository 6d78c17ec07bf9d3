/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/transfer_peer.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr int kReceiveBuffer = 32768; /* a client's sends soon wait when nothing is read */
constexpr int kSilenceMs = 60000;     /* a client that says nothing for so long has gone astray */

/* Waits until there is something to read; false when the client has left or gone astray. */
bool readable(int fd)
{
    pollfd entry = {fd, POLLIN, 0};
    return poll(&entry, 1, kSilenceMs) == 1;
}

/* One byte at a time, so that nothing of the body is taken with the head. */
std::string readHead(int fd)
{
    std::string head;
    char byte = 0;
    while (head.size() < 65536 && (head.size() < 4 || head.compare(head.size() - 4, 4, "\r\n\r\n") != 0))
    {
        if (!readable(fd) || recv(fd, &byte, 1, 0) != 1)
        {
            break;
        }
        head += byte;
    }
    return head;
}

std::uint64_t declaredLength(const std::string& head)
{
    const std::string name = "\r\nContent-Length: ";
    const size_t at = head.find(name);
    return at == std::string::npos ? 0 : std::stoull(head.substr(at + name.size()));
}

void sendAll(int fd, const std::string& bytes)
{
    size_t sent = 0;
    while (sent < bytes.size())
    {
        const ssize_t step = send(fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (step <= 0)
        {
            return;
        }
        sent += static_cast<size_t>(step);
    }
}

/* Closing then sends a reset, whatever is still unread. */
void resetAtClose(int fd)
{
    const linger none = {1, 0};
    setsockopt(fd, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

} // namespace

TransferPeer::TransferPeer()
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* raw = reinterpret_cast<sockaddr*>(&address);
    m_listening = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_listening < 0 ||
        setsockopt(m_listening, SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer) != 0 ||
        bind(m_listening, raw, length) != 0 || listen(m_listening, 8) != 0 ||
        getsockname(m_listening, raw, &length) != 0)
    {
        throw std::runtime_error("cannot listen on 127.0.0.1");
    }
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { run(); });
}

TransferPeer::~TransferPeer()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    shutdown(m_listening, SHUT_RDWR);
    m_thread.join();
    close(m_listening);
}

void TransferPeer::plan(Plan plan)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_plans.push_back(std::move(plan));
    }
    m_changed.notify_all();
}

std::string TransferPeer::url(const std::string& path) const
{
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

std::vector<TransferPeer::Request> TransferPeer::requests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

bool TransferPeer::nextPlan(Plan* plan)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_ending || !m_plans.empty(); });
    if (m_ending)
    {
        return false;
    }
    *plan = std::move(m_plans.front());
    m_plans.pop_front();
    return true;
}

void TransferPeer::run()
{
    Plan plan;
    while (nextPlan(&plan))
    {
        const int fd = accept(m_listening, nullptr, nullptr);
        if (fd < 0)
        {
            return;
        }
        serve(fd, plan);
        close(fd);
    }
}

void TransferPeer::serve(int fd, const Plan& plan)
{
    Request request;
    request.head = readHead(fd);
    request.declared = declaredLength(request.head);
    readBody(fd, plan, request);
    const std::uint64_t size = request.body.size();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requests.push_back(std::move(request));
    }
    if (plan.atEnd)
    {
        plan.atEnd(size);
    }
    end(fd, plan);
}

void TransferPeer::readBody(int fd, const Plan& plan, Request& request)
{
    const std::uint64_t wanted = std::min(plan.read, request.declared);
    std::string block(65536, '\0');
    while (request.body.size() < wanted)
    {
        const size_t room = static_cast<size_t>(std::min<std::uint64_t>(block.size(), wanted - request.body.size()));
        const ssize_t count = readable(fd) ? recv(fd, block.data(), room, 0) : 0;
        if (count <= 0)
        {
            return;
        }
        request.body.append(block, 0, static_cast<size_t>(count));
        if (plan.atRead)
        {
            plan.atRead(static_cast<size_t>(count));
        }
    }
}

void TransferPeer::end(int fd, const Plan& plan)
{
    switch (plan.then)
    {
    case Then::Answer:
        sendAll(fd, plan.answer);
        return;
    case Then::Cut:
        resetAtClose(fd);
        return;
    case Then::Stall:
        waitForEnd(fd);
        return;
    }
}

/* The client's leaving stays unseen behind what it has sent before. */
void TransferPeer::waitForEnd(int fd)
{
    pollfd entry = {fd, POLLRDHUP, 0};
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_ending && poll(&entry, 1, 0) == 0)
    {
        m_changed.wait_for(lock, std::chrono::milliseconds(20));
    }
}
