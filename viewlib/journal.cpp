/* SPDX-License-Identifier: Apache-2.0 */
#include "journal.h"

#include "text.h"

#include <algorithm>
#include <iterator>

namespace viewlib
{

static std::string valueOf(const std::vector<Header>& headers, std::string_view name)
{
    const auto found = std::find_if(headers.begin(), headers.end(),
                                    [&](const Header& header) { return sameNoCase(header.name, name); });
    return found == headers.end() ? std::string() : found->value;
}

std::string Exchange::header(std::string_view name) const
{
    return valueOf(headers, name);
}

bool Exchange::hasHeader(std::string_view name) const
{
    return std::any_of(headers.begin(), headers.end(),
                       [&](const Header& header) { return sameNoCase(header.name, name); });
}

std::string Exchange::answerHeader(std::string_view name) const
{
    return valueOf(answerHeaders, name);
}

void Journal::add(Exchange& exchange)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        exchange.number = ++m_last;
        if (m_limit == 0)
        {
            return;
        }
        m_exchanges.push_back(exchange);
        if (m_exchanges.size() > m_limit)
        {
            m_exchanges.pop_front();
        }
    }
    m_changed.notify_all();
}

std::vector<Exchange> Journal::of(const std::string& path) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<Exchange> found;
    std::copy_if(m_exchanges.begin(), m_exchanges.end(), std::back_inserter(found),
                 [&](const Exchange& exchange) { return pathFits(path, exchange.path); });
    return found;
}

std::size_t Journal::count(const std::string& path) const
{
    return static_cast<std::size_t>(
        std::count_if(m_exchanges.begin(), m_exchanges.end(),
                      [&](const Exchange& exchange) { return pathFits(path, exchange.path); }));
}

bool Journal::wait(const std::string& path, std::size_t wanted, std::chrono::milliseconds timeout) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return count(path) >= wanted; });
}

void Journal::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_exchanges.clear();
}

} // namespace viewlib
