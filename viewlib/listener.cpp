/* SPDX-License-Identifier: Apache-2.0 */
#include "listener.h"

#include "delivery.h"

#include <microhttpd.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

namespace viewlib
{

namespace
{

/* A request while it comes in. */
struct Transfer
{
    Exchange exchange;
    Reception reception;
    Connection* connection = nullptr;
    bool begun = false;
    bool finished = false;
    std::string trailing; /* sent after the answer */
};

struct Address
{
    sockaddr_storage storage{};
    socklen_t length = 0;
};

std::runtime_error failure(const std::string& what, int error)
{
    return std::runtime_error(what + ": " + std::strerror(error));
}

Address parseAddress(const std::string& text, std::uint16_t port)
{
    Address address;
    auto* ipv4 = reinterpret_cast<sockaddr_in*>(&address.storage);
    auto* ipv6 = reinterpret_cast<sockaddr_in6*>(&address.storage);
    if (inet_pton(AF_INET, text.c_str(), &ipv4->sin_addr) == 1)
    {
        ipv4->sin_family = AF_INET;
        ipv4->sin_port = htons(port);
        address.length = sizeof *ipv4;
    }
    else if (inet_pton(AF_INET6, text.c_str(), &ipv6->sin6_addr) == 1)
    {
        ipv6->sin6_family = AF_INET6;
        ipv6->sin6_port = htons(port);
        address.length = sizeof *ipv6;
    }
    else
    {
        throw std::runtime_error("\"" + text + "\" is not an IPv4 or IPv6 address");
    }
    return address;
}

/* "127.0.0.1:8080" or "[::1]:8080" */
std::string describe(const sockaddr* address)
{
    char text[INET6_ADDRSTRLEN] = "";
    if (address->sa_family == AF_INET6)
    {
        const auto* ipv6 = reinterpret_cast<const sockaddr_in6*>(address);
        inet_ntop(AF_INET6, &ipv6->sin6_addr, text, sizeof text);
        return "[" + std::string(text) + "]:" + std::to_string(ntohs(ipv6->sin6_port));
    }
    const auto* ipv4 = reinterpret_cast<const sockaddr_in*>(address);
    inet_ntop(AF_INET, &ipv4->sin_addr, text, sizeof text);
    return std::string(text) + ":" + std::to_string(ntohs(ipv4->sin_port));
}

class Socket
{
  public:
    explicit Socket(int fd) : m_fd(fd)
    {
    }
    ~Socket()
    {
        if (m_fd >= 0)
        {
            close(m_fd);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    int get() const
    {
        return m_fd;
    }
    int release()
    {
        const int fd = m_fd;
        m_fd = -1;
        return fd;
    }

  private:
    int m_fd;
};

/* The address that was asked for is in the message of every failure. */
int listenOn(const Address& address)
{
    const auto* raw = reinterpret_cast<const sockaddr*>(&address.storage);
    const std::string where = "cannot listen on " + describe(raw);
    Socket socketFd(socket(raw->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    if (socketFd.get() < 0 || setsockopt(socketFd.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        (raw->sa_family == AF_INET6 && setsockopt(socketFd.get(), IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on) != 0) ||
        bind(socketFd.get(), raw, address.length) != 0 || listen(socketFd.get(), SOMAXCONN) != 0)
    {
        throw failure(where, errno);
    }
    return socketFd.release();
}

std::uint16_t portOf(int fd)
{
    Address address;
    address.length = sizeof address.storage;
    getsockname(fd, reinterpret_cast<sockaddr*>(&address.storage), &address.length);
    return ntohs(address.storage.ss_family == AF_INET6
                     ? reinterpret_cast<const sockaddr_in6*>(&address.storage)->sin6_port
                     : reinterpret_cast<const sockaddr_in*>(&address.storage)->sin_port);
}

void* onRequestLine(void*, const char* target, MHD_Connection*)
{
    auto transfer = std::make_unique<Transfer>();
    Exchange& exchange = transfer->exchange;
    exchange.target = target;
    const std::size_t mark = exchange.target.find('?');
    exchange.path = exchange.target.substr(0, mark);
    exchange.query = mark == std::string::npos ? std::string() : exchange.target.substr(mark + 1);
    return transfer.release();
}

MHD_Result onHeader(void* context, MHD_ValueKind, const char* name, const char* value)
{
    static_cast<Exchange*>(context)->headers.push_back({name, value == nullptr ? "" : value});
    return MHD_YES;
}

/* The end is told before the socket is closed, so that no other connection has its number by then. */
void onConnection(void* context, MHD_Connection* connection, void** connectionContext,
                  MHD_ConnectionNotificationCode code)
{
    Listener& listener = *static_cast<Listener*>(context);
    if (code == MHD_CONNECTION_NOTIFY_STARTED)
    {
        *connectionContext = listener.connections().add(socketOf(connection), listener.config().headerTimeout);
        return;
    }
    listener.connections().remove(static_cast<const Connection*>(*connectionContext));
    *connectionContext = nullptr;
}

Connection* connectionOf(MHD_Connection* connection)
{
    const MHD_ConnectionInfo* context = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
    return context == nullptr ? nullptr : static_cast<Connection*>(context->socket_context);
}

void readHeaders(MHD_Connection* connection, const char* method, Exchange& exchange)
{
    exchange.arrived = std::chrono::steady_clock::now();
    exchange.method = method;
    MHD_get_connection_values(connection, MHD_HEADER_KIND, onHeader, &exchange);
    const MHD_ConnectionInfo* peer = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    if (peer != nullptr)
    {
        exchange.peer = describe(peer->client_addr);
    }
}

/* Until the client has gone or the listener stops. A client with unsent data that goes away is not seen to: TCP tells
 * only those who read on. */
void stall(Listener& listener, MHD_Connection* connection)
{
    constexpr std::chrono::milliseconds interval(20);
    pollfd client{socketOf(connection), POLLRDHUP, 0};
    while (poll(&client, 1, 0) == 0 && listener.pause(interval))
    {
    }
}

/* How much of the body is read before the answer's cut or stall. */
std::uint64_t readingLimit(const Transfer& transfer)
{
    constexpr std::uint64_t none = std::numeric_limits<std::uint64_t>::max();
    const std::optional<Answer>& early = transfer.reception.early;
    return early ? std::min(early->cutAfterRequestBytes.value_or(none), early->stallAfterRequestBytes.value_or(none))
                 : none;
}

/* Whether the request goes on; where it does not, its connection is to be closed. */
MHD_Result goOn(Listener& listener, MHD_Connection* connection, const Transfer& transfer)
{
    const UploadWriter* upload = transfer.reception.upload.get();
    if (upload != nullptr && upload->outcome() == UploadWriter::Outcome::TakenOver)
    {
        return MHD_NO;
    }
    if (transfer.exchange.bodyLength < readingLimit(transfer))
    {
        transfer.connection->expect(listener.config().idleTimeout);
        return MHD_YES;
    }
    const std::optional<std::uint64_t>& stallAfter = transfer.reception.early->stallAfterRequestBytes;
    if (stallAfter && *stallAfter <= transfer.exchange.bodyLength)
    {
        stall(listener, connection);
    }
    return MHD_NO;
}

MHD_Result finishTransfer(Listener& listener, MHD_Connection* connection, Transfer& transfer)
{
    transfer.connection->hold();
    transfer.finished = true;
    const Answer answer = listener.handler().finish(transfer.exchange, std::move(transfer.reception));
    transfer.trailing = answer.trailing;
    return deliver(listener, connection, answer);
}

MHD_Result beginTransfer(Listener& listener, MHD_Connection* connection, const char* method, Transfer& transfer)
{
    transfer.begun = true;
    transfer.connection = connectionOf(connection);
    transfer.connection->hold();
    transfer.exchange.connection = transfer.connection->number();
    readHeaders(connection, method, transfer.exchange);
    transfer.reception = listener.handler().begin(transfer.exchange);
    const std::optional<Answer>& early = transfer.reception.early;
    if (early && !listener.pause(early->delayBeforeReading))
    {
        return MHD_NO;
    }
    return early && early->beforeBody ? finishTransfer(listener, connection, transfer)
                                      : goOn(listener, connection, transfer);
}

/* A body that is not taken is read to its end and forgotten: a client that is still sending would not see the answer.
 */
void keepBody(const Listener& listener, Transfer& transfer, const char* data, std::size_t size)
{
    Exchange& exchange = transfer.exchange;
    exchange.bodyLength += size;
    if (transfer.reception.upload)
    {
        transfer.reception.upload->write(data, size);
        return;
    }
    if (exchange.oversized ||
        size > transfer.reception.maxBody.value_or(listener.config().maxBody) - exchange.body.size())
    {
        exchange.oversized = true;
        exchange.body.clear();
        exchange.body.shrink_to_fit();
        return;
    }
    exchange.body.append(data, size);
}

/* At the pace of the throttle; false when the listener stops. */
bool readPaced(Listener& listener, Transfer& transfer, const char* data, std::size_t size)
{
    const std::uint64_t rate = transfer.reception.early ? transfer.reception.early->requestBytesPerSecond : 0;
    const std::size_t most = rate == 0 ? size : static_cast<std::size_t>(throttleStep(rate));
    while (size != 0)
    {
        const std::size_t step = std::min(size, most);
        if (rate != 0 && !listener.pause(throttlePause(step, rate)))
        {
            return false;
        }
        keepBody(listener, transfer, data, step);
        data += step;
        size -= step;
    }
    return true;
}

MHD_Result readBody(Listener& listener, MHD_Connection* connection, Transfer& transfer, const char* data,
                    std::size_t size)
{
    transfer.connection->hold();
    const std::uint64_t room = readingLimit(transfer) - transfer.exchange.bodyLength;
    if (!readPaced(listener, transfer, data, static_cast<std::size_t>(std::min<std::uint64_t>(size, room))))
    {
        return MHD_NO;
    }
    return goOn(listener, connection, transfer);
}

MHD_Result serve(Listener& listener, MHD_Connection* connection, const char* method, const char* data,
                 std::size_t* size, Transfer& transfer)
{
    if (!transfer.begun)
    {
        return beginTransfer(listener, connection, method, transfer);
    }
    if (*size != 0)
    {
        const std::size_t arrived = *size;
        *size = 0;
        return readBody(listener, connection, transfer, data, arrived);
    }
    transfer.exchange.complete = true;
    return finishTransfer(listener, connection, transfer);
}

/* Nothing is thrown through the HTTP server, which is C. */
MHD_Result onRequest(void* context, MHD_Connection* connection, const char*, const char* method, const char*,
                     const char* data, std::size_t* size, void** requestContext)
{
    try
    {
        return serve(*static_cast<Listener*>(context), connection, method, data, size,
                     *static_cast<Transfer*>(*requestContext));
    }
    catch (const std::exception&)
    {
        return MHD_NO;
    }
}

void onCompleted(void* context, MHD_Connection* connection, void** requestContext, MHD_RequestTerminationCode code)
{
    const std::unique_ptr<Transfer> transfer(static_cast<Transfer*>(*requestContext));
    *requestContext = nullptr;
    Listener& listener = *static_cast<Listener*>(context);
    if (transfer && transfer->begun && !transfer->finished)
    {
        listener.handler().abandon(transfer->exchange);
    }
    if (transfer && code == MHD_REQUEST_TERMINATED_COMPLETED_OK && !isSecure(connection))
    {
        sendRaw(connection, transfer->trailing);
    }
    if (Connection* const open = connectionOf(connection))
    {
        open->expect(listener.config().idleTimeout);
    }
}

/* One socket for each address, all on one port. */
std::vector<std::unique_ptr<Socket>> listenOnAll(const std::vector<std::string>& addresses, std::uint16_t port)
{
    std::vector<std::unique_ptr<Socket>> sockets;
    for (const std::string& address : addresses)
    {
        sockets.push_back(std::make_unique<Socket>(listenOn(parseAddress(address, port))));
        port = portOf(sockets.back()->get());
    }
    return sockets;
}

/* The port that is free on one address may be taken on another. */
std::vector<std::unique_ptr<Socket>> listenOnAnyPort(const std::vector<std::string>& addresses)
{
    constexpr int attempts = 20;
    for (int attempt = 1;; ++attempt)
    {
        try
        {
            return listenOnAll(addresses, 0);
        }
        catch (const std::runtime_error&)
        {
            if (attempt == attempts || addresses.size() == 1)
            {
                throw;
            }
        }
    }
}

} // namespace

bool canListenOn(const std::string& address)
{
    const Address parsed = parseAddress(address, 0);
    const auto* raw = reinterpret_cast<const sockaddr*>(&parsed.storage);
    const Socket probe(socket(raw->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return probe.get() >= 0 && bind(probe.get(), raw, parsed.length) == 0;
}

std::uint16_t Listener::start(std::uint16_t port, const std::optional<Certificate>& certificate)
{
    const std::vector<std::string> addresses = m_config.addresses();
    const auto sockets = port == 0 ? listenOnAnyPort(addresses) : listenOnAll(addresses, port);
    const std::uint16_t chosen = portOf(sockets.front()->get());
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = false;
    }
    constexpr std::chrono::milliseconds longest(1000);
    m_connections.start(std::min({longest, m_config.headerTimeout / 4, m_config.idleTimeout / 4}));
    m_running = true;
    for (const std::unique_ptr<Socket>& listening : sockets)
    {
        try
        {
            startDaemon(listening->get(), certificate);
        }
        catch (...)
        {
            stop();
            throw;
        }
        listening->release();
    }
    return chosen;
}

void Listener::startDaemon(int listening, const std::optional<Certificate>& certificate)
{
    const Certificate pair = certificate.value_or(Certificate{});
    MHD_OptionItem security[] = {{MHD_OPTION_HTTPS_MEM_KEY, 0, const_cast<char*>(pair.key.c_str())},
                                 {MHD_OPTION_HTTPS_MEM_CERT, 0, const_cast<char*>(pair.certificate.c_str())},
                                 {MHD_OPTION_END, 0, nullptr}};
    if (!certificate)
    {
        security[0].option = MHD_OPTION_END;
    }
    const unsigned flags = MHD_USE_THREAD_PER_CONNECTION | MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_POLL |
                           MHD_USE_ITC | (certificate ? unsigned(MHD_USE_TLS) : 0U);
    /* clang-format off */
    MHD_Daemon* daemon = MHD_start_daemon(flags, 0, nullptr, nullptr, onRequest, this,
                                          MHD_OPTION_LISTEN_SOCKET, listening,
                                          MHD_OPTION_URI_LOG_CALLBACK, onRequestLine, this,
                                          MHD_OPTION_NOTIFY_COMPLETED, onCompleted, this,
                                          MHD_OPTION_NOTIFY_CONNECTION, onConnection, this,
                                          MHD_OPTION_CONNECTION_MEMORY_LIMIT, std::size_t(256) << 10,
                                          MHD_OPTION_CONNECTION_LIMIT, m_config.maxConnections,
                                          MHD_OPTION_ARRAY, security,
                                          MHD_OPTION_END);
    /* clang-format on */
    if (daemon == nullptr)
    {
        throw std::runtime_error("the HTTP server cannot be started on port " + std::to_string(portOf(listening)));
    }
    m_daemons.push_back(daemon);
}

void Listener::stop()
{
    if (!m_running.exchange(false))
    {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    for (MHD_Daemon* daemon : m_daemons)
    {
        MHD_stop_daemon(daemon);
    }
    m_daemons.clear();
    m_connections.stop();
}

bool Listener::pause(std::chrono::milliseconds time)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_wake.wait_for(lock, time, [this] { return m_stopping; });
}

} // namespace viewlib
