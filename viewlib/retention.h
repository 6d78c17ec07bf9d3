/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "exchange_log.h"
#include "store.h"
#include "uploads.h"
#include "viewlib/config.h"

#include <atomic>
#include <mutex>

namespace viewlib
{

/*
 * Removes what is too old or does not fit any more, the oldest first: posts with their objects and pictures, exchanges,
 * uploads that nobody writes to. Without a limit it does nothing.
 */
class Retention
{
  public:
    using Time = std::chrono::system_clock::time_point;

    Retention(const Config& config, Store& store, Uploads& uploads, ExchangeLog& log)
        : m_keepBytes(config.keepBytes), m_keepFor(config.keepFor), m_store(store), m_uploads(uploads), m_log(log)
    {
    }

    /* Cheap when there is nothing to do. */
    void apply(Time now);

  private:
    std::uint64_t bytes() const;
    bool removeOldest();

    const std::uint64_t m_keepBytes;
    const std::chrono::milliseconds m_keepFor;
    Store& m_store;
    Uploads& m_uploads;
    ExchangeLog& m_log;
    std::mutex m_mutex;
    Time m_nextLook; /* for what is too old */
};

} // namespace viewlib
