/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/session_apache.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace
{

constexpr const char* kProgram = "/usr/sbin/apache2";
constexpr const char* kModules = "/usr/lib/apache2/modules/mod_";

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

std::uint16_t freePort()
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof(address);
    const bool bound = bind(fd, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                       getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    close(fd);
    if (!bound)
    {
        throw std::runtime_error("no free port on 127.0.0.1");
    }
    return ntohs(address.sin_port);
}

std::string makeDirectory()
{
    std::string name = (std::filesystem::temp_directory_path() / "pubsec-apache-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
    {
        throw std::runtime_error("no directory " + name);
    }
    return name;
}

std::string contents(const std::string& path)
{
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> linesOf(const std::string& path)
{
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

std::string loadModules()
{
    std::string lines;
    for (const char* module :
         {"mpm_event", "authn_core", "authn_file", "authz_core", "authz_user", "auth_digest", "lua"})
    {
        lines += std::string("LoadModule ") + module + "_module " + kModules + module + ".so\n";
    }
    return lines;
}

/* The last field is the MD5 digest of "admin:View Library:viewlib". */
constexpr const char* kUsers = "admin:View Library:2f73c4ada8d3b4561f773daf4823d8cf\n";

/* Writes what it gets to "bodies" and answers as the path demands. */
constexpr const char* kScript = R"lua(
function handle(r)
    local file = io.open("@/bodies", "a")
    file:write(r.method, " ", r.uri, " ", r:requestbody() or "", "\n")
    file:close()
    r.content_type = "application/VIID+JSON;charset=UTF-8"
    if r.uri == "/VIID/System/Time" then
        r:puts('{"SystemTimeObject":{"VIIDServerID":"44000000005030000001","TimeMode":"1",' ..
               '"LocalTime":"' .. os.date("%Y%m%d%H%M%S") .. '","TimeZone":""}}')
    else
        r:puts('{"ResponseStatusObject":{"RequestURL":"' .. r.uri .. '","StatusCode":0,"StatusString":"OK"}}')
    end
    return apache2.OK
end
)lua";

void replaceAll(std::string& text, const std::string& what, const std::string& by)
{
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    {
        text.replace(at, what.size(), by);
    }
}

void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream(path) << text;
}

} // namespace

bool Apache::installed()
{
    return access(kProgram, X_OK) == 0 && access((std::string(kModules) + "lua.so").c_str(), R_OK) == 0;
}

Apache::Apache() : m_directory(makeDirectory())
{
    /* Somebody may take the port between its choice and its use. */
    for (int attempt = 0; attempt < 3 && m_port == 0; ++attempt)
    {
        const std::uint16_t port = freePort();
        writeFiles(port);
        start();
        for (int tick = 0; tick < 500 && m_port == 0 && !ended(); ++tick)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            m_port = listening(port) ? port : std::uint16_t(0);
        }
    }
}

Apache::~Apache()
{
    if (m_pid > 0)
    {
        kill(m_pid, SIGTERM);
    }
    for (int tick = 0; tick < 500 && !ended(); ++tick)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    if (m_pid > 0)
    {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
}

void Apache::writeFiles(std::uint16_t port) const
{
    std::string config = loadModules() + R"conf(
ServerRoot "@"
ServerName 127.0.0.1
Listen 127.0.0.1:PORT
DocumentRoot "@"
DefaultRuntimeDir "@"
PidFile "@/pid"
ErrorLog "@/error.log"
LogFormat "%m %U %>s %u" brief
CustomLog "@/access.log" brief
StartServers 1
ServerLimit 1
ThreadsPerChild 8
MaxRequestWorkers 8
MinSpareThreads 1
MaxSpareThreads 8
LuaMapHandler "^/VIID/System/" "@/answer.lua"
<LocationMatch "^/VIID/System/(Un)?Register$">
    AuthType Digest
    AuthName "View Library"
    AuthUserFile "@/users"
    Require valid-user
</LocationMatch>
)conf";
    if (geteuid() == 0)
    {
        config += "User nobody\nGroup nogroup\n";
    }
    std::string script = kScript;
    replaceAll(config, "@", m_directory);
    replaceAll(config, "PORT", std::to_string(port));
    replaceAll(script, "@", m_directory);
    writeFile(m_directory + "/conf", config);
    writeFile(m_directory + "/answer.lua", script);
    writeFile(m_directory + "/users", kUsers);
    std::filesystem::permissions(m_directory, std::filesystem::perms::all); /* the server may be another user */
}

void Apache::start()
{
    const std::string config = m_directory + "/conf";
    std::string words[] = {kProgram, "-f", config, "-DFOREGROUND"};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
    if (posix_spawn(&m_pid, kProgram, nullptr, nullptr, arguments, environ) != 0)
    {
        m_pid = -1;
    }
}

bool Apache::listening(std::uint16_t port) const
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    const bool answered = connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    close(fd);
    return answered;
}

bool Apache::ended()
{
    if (m_pid > 0 && waitpid(m_pid, nullptr, WNOHANG) == m_pid)
    {
        m_pid = -1;
    }
    return m_pid <= 0;
}

std::vector<std::string> Apache::requests() const
{
    return linesOf(m_directory + "/access.log");
}

std::vector<std::string> Apache::bodies() const
{
    return linesOf(m_directory + "/bodies");
}

std::string Apache::log() const
{
    return contents(m_directory + "/error.log");
}
