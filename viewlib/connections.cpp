/* SPDX-License-Identifier: Apache-2.0 */
#include "connections.h"

#include <sys/socket.h>

namespace viewlib
{

void Connections::start(std::chrono::milliseconds interval)
{
    m_stopping = false;
    m_watcher = std::thread([this, interval] { watch(interval); });
}

void Connections::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    if (m_watcher.joinable())
    {
        m_watcher.join();
    }
}

Connection* Connections::add(int fd, std::chrono::milliseconds firstRequestWithin)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    auto connection = std::make_unique<Connection>(++m_count, fd);
    connection->expect(firstRequestWithin);
    Connection* const added = connection.get();
    m_open.emplace(added, std::move(connection));
    return added;
}

void Connections::remove(const Connection* connection)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_open.erase(connection);
}

/* The socket is not closed here: that is left to the thread that serves it, which sees its end. */
void Connections::watch(std::chrono::milliseconds interval)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_wake.wait_for(lock, interval, [this] { return m_stopping; }))
    {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        for (const auto& [key, connection] : m_open)
        {
            if (connection->m_deadline < now)
            {
                connection->hold();
                shutdown(connection->m_fd, SHUT_RDWR);
            }
        }
    }
}

} // namespace viewlib
