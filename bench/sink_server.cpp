/* SPDX-License-Identifier: Apache-2.0 */
#include "sink_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <strings.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <thread>
#include <vector>

#include "clocks.h"
#include "report.h"

namespace bench
{

struct SinkServer::Shared
{
    std::atomic<size_t> requests{0};
    std::atomic<size_t> bodyBytes{0};
    std::atomic<long long> firstRegistration{0};
};

namespace
{

constexpr unsigned kThreads = 8;

/* As servers answer a post: a list of statuses. An upload's answer would go to the standard output, so it is empty. */
constexpr char kAnswer[] =
    "{\"ResponseStatusListObject\":{\"ResponseStatusObject\":[{\"Id\":\"34020000001190000001022026112112"
    "480000001\",\"LocalTime\":\"20261121124800\",\"RequestURL\":\"/VIID/Faces\",\"StatusCode\":0,"
    "\"StatusString\":\"OK\"}]}}";
constexpr char kUploadPath[] = "/upload";
constexpr char kRegisterPath[] = "/VIID/System/Register";

/* One connection: requests one after another until the peer closes. */
class Connection
{
  public:
    Connection(int socket, SinkServer::Shared& shared) : m_socket(socket), m_shared(shared)
    {
        const int on = 1;
        setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    }

    ~Connection()
    {
        close(m_socket);
    }

    void serve()
    {
        while (readHead() && skipBody() && answer())
        {
        }
    }

  private:
    bool readHead()
    {
        size_t end = 0;
        while ((end = m_input.find("\r\n\r\n")) == std::string::npos)
        {
            char piece[16384];
            const ssize_t count = recv(m_socket, piece, sizeof(piece), 0);
            if (count <= 0)
            {
                return false;
            }
            m_input.append(piece, static_cast<size_t>(count));
        }
        const std::string head = m_input.substr(0, end + 2);
        m_input.erase(0, end + 4);
        m_bodyLeft = contentLength(head);
        m_isUpload = head.find(kUploadPath) < head.find('\r');
        m_isRegistration = head.find(kRegisterPath) < head.find('\r');
        return true;
    }

    static size_t contentLength(const std::string& head)
    {
        static constexpr char kName[] = "\r\nContent-Length:";
        const char* const field = strcasestr(head.c_str(), kName);
        return field != nullptr ? std::strtoull(field + sizeof(kName) - 1, nullptr, 10) : 0;
    }

    /* The kernel is told to drop what it has: nothing is copied. */
    bool skipBody()
    {
        size_t left = m_bodyLeft;
        const size_t held = std::min(left, m_input.size());
        m_input.erase(0, held);
        left -= held;
        while (left > 0)
        {
            const ssize_t count = recv(m_socket, nullptr, left, MSG_TRUNC);
            if (count <= 0)
            {
                return false;
            }
            left -= static_cast<size_t>(count);
        }
        return true;
    }

    bool answer()
    {
        const char* const body = m_isUpload ? "" : kAnswer;
        const std::string text = "HTTP/1.1 200 OK\r\nContent-Type: application/VIID+JSON;charset=UTF-8\r\n"
                                 "Content-Length: " +
                                 std::to_string(std::strlen(body)) + "\r\n\r\n" + body;
        m_shared.bodyBytes += m_bodyLeft;
        ++m_shared.requests;
        if (m_isRegistration)
        {
            long long none = 0;
            m_shared.firstRegistration.compare_exchange_strong(none, wallNanoseconds());
        }
        return send(m_socket, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
    }

    int m_socket;
    SinkServer::Shared& m_shared;
    std::string m_input;
    size_t m_bodyLeft = 0;
    bool m_isUpload = false;
    bool m_isRegistration = false;
};

int listenOnLoopback(unsigned short& port)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 64) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    {
        fail(std::string("no socket to listen on: ") + std::strerror(errno));
    }
    port = ntohs(address.sin_port);
    return listener;
}

[[noreturn]] void serveForever(int listener, SinkServer::Shared& shared)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const auto work = [listener, &shared] {
        for (;;)
        {
            const int peer = accept(listener, nullptr, nullptr);
            if (peer >= 0)
            {
                Connection(peer, shared).serve();
            }
        }
    };
    std::vector<std::thread> others;
    for (unsigned index = 1; index < kThreads; ++index)
    {
        others.emplace_back(work);
    }
    work();
    std::abort();
}

} // namespace

SinkServer::SinkServer()
{
    void* const place = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED)
    {
        fail("no memory to share with the server");
    }
    m_shared = new (place) Shared;
    const int listener = listenOnLoopback(m_port);
    m_process = fork();
    if (m_process < 0)
    {
        fail("no process for the server");
    }
    if (m_process == 0)
    {
        serveForever(listener, *m_shared);
    }
    close(listener);
}

SinkServer::~SinkServer()
{
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
    munmap(m_shared, sizeof(Shared));
}

std::string SinkServer::url(const std::string& path) const
{
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

size_t SinkServer::requests() const
{
    return m_shared->requests;
}

size_t SinkServer::bodyBytes() const
{
    return m_shared->bodyBytes;
}

long long SinkServer::firstRegistration() const
{
    return m_shared->firstRegistration;
}

} // namespace bench
