/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/soak/view_library.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/torture/hostile_server.h"

namespace
{

using Peer = HostileServer::Peer;

std::string answerOf(const std::string& status, const std::string& headers, const std::string& body)
{
    return "HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
           body;
}

/* The answer to a request, which is counted. */
std::string accept(const std::string& request, ViewLibrary::Counts& counts)
{
    const std::string line = request.substr(0, request.find("\r\n"));
    const auto asks = [&line](const char* path) { return line.find(path) != std::string::npos; };
    const bool registers = asks("/VIID/System/Register ");
    if (registers || asks("/VIID/System/UnRegister "))
    {
        if (request.find("\r\nAuthorization: Digest ") == std::string::npos)
        {
            return answerOf("401 Unauthorized",
                            "WWW-Authenticate: Digest realm=\"viewlib\", qop=\"auth\", nonce=\"4b5c6d\"\r\n", "");
        }
        ++(registers ? counts.registrations : counts.unregistrations);
        return answerOf("200 OK", "", "");
    }
    if (asks("/VIID/System/Time"))
    {
        ++counts.clockQueries;
        return answerOf("200 OK", "",
                        "{\"SystemTimeObject\":{\"VIIDServerID\":\"1\",\"TimeMode\":\"1\",\"LocalTime\":"
                        "\"20240229235959\",\"TimeZone\":\"UTC+8\"}}");
    }
    ++(asks("/VIID/System/Keepalive") ? counts.keepalives : counts.posts);
    return answerOf("200 OK", "",
                    "{\"ResponseStatusObject\":{\"RequestURL\":\"\",\"StatusCode\":0,\"StatusString\":\"OK\","
                    "\"Id\":\"\",\"LocalTime\":\"20240229235959\"}}");
}

[[noreturn]] void serveForever(ViewLibrary::Counts& counts)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    HostileServer server([&counts](Peer& peer) {
        std::string request;
        while (peer.read(request) && peer.write(accept(request, counts)))
        {
        }
    });
    counts.port = server.port();
    for (;;)
    {
        pause();
    }
}

} // namespace

ViewLibrary::ViewLibrary()
{
    void* const place = mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED)
    {
        throw std::runtime_error("no memory to share with the view library");
    }
    m_counts = new (place) Counts{};
    m_process = fork();
    if (m_process == 0)
    {
        serveForever(*m_counts);
    }
    for (int tries = 0; m_counts->port == 0; ++tries)
    {
        if (m_process < 0 || tries == 1000)
        {
            throw std::runtime_error("the view library does not start");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

ViewLibrary::~ViewLibrary()
{
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
    munmap(m_counts, sizeof(Counts));
}

std::uint16_t ViewLibrary::port() const
{
    return static_cast<std::uint16_t>(m_counts->port);
}

const ViewLibrary::Counts& ViewLibrary::counts() const
{
    return *m_counts;
}
