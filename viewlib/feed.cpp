/* SPDX-License-Identifier: Apache-2.0 */
#include "feed.h"

#include "sqlite.h"

#include <utility>

namespace viewlib
{

void Feed::publish(const char* type, std::chrono::system_clock::time_point time, Json members)
{
    /* Printed outside the lock but for its number, which comes first. */
    Json event(cJSON_CreateObject());
    cJSON_AddNumberToObject(event.get(), "Time", static_cast<double>(toMilliseconds(time)));
    cJSON_AddStringToObject(event.get(), "Type", type);
    while (members && members->child != nullptr)
    {
        cJSON* member = cJSON_DetachItemViaPointer(members.get(), members->child);
        const std::string name = member->string;
        if (name == "Time") /* an exchange has its own, the same */
        {
            cJSON_Delete(member);
            continue;
        }
        cJSON_AddItemToObject(event.get(), name.c_str(), member);
    }
    const std::string rest = printJson(event.get()).substr(1);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_last;
        m_events.push_back({m_last, "{\"Seq\":" + std::to_string(m_last) + "," + rest});
        if (m_events.size() > m_limit)
        {
            m_events.pop_front();
        }
    }
    m_changed.notify_all();
}

std::uint64_t Feed::last() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_last;
}

Feed::Page Feed::after(std::uint64_t number) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Page page;
    page.last = m_last;
    /* A number that was never reached is of a server before this one. */
    page.missed = number > m_last || (!m_events.empty() && number + 1 < m_events.front().number);
    for (const Event& event : m_events)
    {
        if (page.missed || event.number > number)
        {
            page.events.push_back(event.text);
        }
    }
    return page;
}

bool Feed::wait(std::uint64_t number, std::chrono::milliseconds time) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, time, [&] { return m_closed || m_last != number; });
    return !m_closed && m_last != number;
}

bool Feed::closed() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_closed;
}

void Feed::close()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_all();
}

void Feed::open()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = false;
}

} // namespace viewlib
