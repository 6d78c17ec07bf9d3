/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/exchange.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace viewlib
{

/* The log of exchanges. */
class Journal
{
  public:
    /* last is the number of the last exchange before these. */
    Journal(std::size_t limit, std::uint64_t last) : m_limit(limit), m_last(last)
    {
    }

    void add(Exchange& exchange); /* gives it its number */
    std::vector<Exchange> of(const std::string& path) const;
    bool wait(const std::string& path, std::size_t count, std::chrono::milliseconds timeout) const;
    void clear();

  private:
    std::size_t count(const std::string& path) const;

    const std::size_t m_limit;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::deque<Exchange> m_exchanges;
    std::uint64_t m_last;
};

} // namespace viewlib
