/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "json.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace viewlib
{

/* What happens, in order, for those who watch. The last events are kept; a watcher that was away too long is told so. */
class Feed
{
  public:
    explicit Feed(std::size_t limit = 1000) : m_limit(limit)
    {
    }

    /* members is an object with what the event has besides "Seq", "Time" and "Type". */
    void publish(const char* type, std::chrono::system_clock::time_point time, Json members);

    std::uint64_t last() const; /* number of the newest event, from 1; 0: there was none */

    struct Page
    {
        std::uint64_t last = 0;
        bool missed = false;             /* events after the one asked for are no longer there */
        std::vector<std::string> events; /* each as JSON */
    };
    Page after(std::uint64_t number) const;

    /* Until there is an event after that one; false: not in time, or the feed is closed or too many wait already. */
    bool wait(std::uint64_t number, std::chrono::milliseconds time) const;
    bool closed() const;

    void close(); /* ends every wait at once, until open() */
    void open();

  private:
    struct Event
    {
        std::uint64_t number;
        std::string text;
    };

    const std::size_t m_limit;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::deque<Event> m_events;
    std::uint64_t m_last = 0;
    bool m_closed = false;
};

} // namespace viewlib
