/* SPDX-License-Identifier: Apache-2.0 */
#include "retention.h"

#include <algorithm>

namespace viewlib
{

namespace
{

using Oldest = std::optional<Retention::Time>;

/* How many exchanges go at once. */
constexpr std::size_t exchangeStep = 64;

bool earlier(const Oldest& left, const Oldest& right)
{
    return left && (!right || *left <= *right);
}

} // namespace

std::uint64_t Retention::bytes() const
{
    return m_store.bytes() + m_log.bytes() + m_uploads.bytes();
}

/* False: there is nothing to remove. */
bool Retention::removeOldest()
{
    const Oldest post = m_store.oldest();
    const Oldest exchange = m_log.oldest();
    const Oldest upload = m_uploads.oldest();
    if (earlier(post, exchange) && earlier(post, upload))
    {
        m_store.removeOldest();
        m_log.removeUntil(*post);
        return true;
    }
    if (earlier(exchange, upload))
    {
        m_log.removeOldest(exchangeStep);
        return true;
    }
    if (upload)
    {
        m_uploads.removeOldest();
    }
    return upload.has_value();
}

void Retention::apply(Time now)
{
    if (m_keepBytes == 0 && m_keepFor.count() == 0)
    {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    bool more = true;
    while (m_keepBytes != 0 && more && bytes() > m_keepBytes)
    {
        more = removeOldest();
    }
    if (m_keepFor.count() == 0 || now < m_nextLook)
    {
        return;
    }
    const Time limit = now - m_keepFor;
    m_log.removeUntil(limit);
    for (Oldest first = m_store.oldest(); first && *first < limit; first = m_store.oldest())
    {
        m_store.removeOldest();
    }
    for (Oldest first = m_uploads.oldest(); first && *first < limit; first = m_uploads.oldest())
    {
        m_uploads.removeOldest();
    }
    m_nextLook = now + std::min<std::chrono::milliseconds>(m_keepFor / 100, std::chrono::minutes(1));
}

} // namespace viewlib
