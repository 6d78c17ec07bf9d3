/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "sqlite.h"
#include "viewlib/exchange.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace viewlib
{

/* An exchange as it is kept: what a list needs, and with its details the rest. */
struct LoggedExchange
{
    std::int64_t number = 0;
    std::chrono::system_clock::time_point time;
    std::string client;
    std::string device;
    std::string method;
    std::string target;
    std::string path;
    unsigned status = 0;
    std::optional<std::int64_t> code; /* of the answer's first status */
    std::string reason;               /* its text */
    std::uint64_t requestBytes = 0;
    std::uint64_t answerBytes = 0;
    std::chrono::microseconds reading{0};
    std::chrono::microseconds handling{0};
    std::optional<std::int64_t> fault;
    bool complete = false;
    std::int64_t post = 0; /* the document that has the request's body; 0: it is in here */

    std::vector<Header> requestHeaders;
    std::vector<Header> answerHeaders;
    std::string requestBody;
    std::string answerBody;
    bool requestCut = false; /* not all of the body was kept */
    bool answerCut = false;
};

struct ExchangeFilter
{
    std::string path; /* a part of it; with '*' at the end its beginning */
    std::string device;
    std::string method;
    std::string status;              /* "404", or "4" for all of 400 to 499 */
    std::string text;                /* in target, reason, headers or bodies */
    std::vector<std::int64_t> posts; /* whose documents have that text */
    std::int64_t before = 0;         /* only those with a smaller number; 0: all */
    std::size_t limit = 50;
};

/*
 * Exchanges as they are shown and exported. Kept in a database of its own, in a directory by a thread of its own, so
 * that no answer waits for it: the end of the process may cost the last of them.
 */
class ExchangeLog
{
  public:
    using Time = std::chrono::system_clock::time_point;

    /* most 0: nothing is kept. The directory exists. */
    ExchangeLog(const std::string& storage, std::size_t most, std::size_t bodyLimit);
    ~ExchangeLog();
    ExchangeLog(const ExchangeLog&) = delete;
    ExchangeLog& operator=(const ExchangeLog&) = delete;

    LoggedExchange rowOf(const Exchange& exchange) const;
    void add(LoggedExchange row);
    void clear();

    /* These wait until what was added is there. */
    std::uint64_t last() const; /* the highest number; 0: there is none */
    std::size_t count(const ExchangeFilter& filter) const;
    /* The newest first, until the function returns false. */
    void each(const ExchangeFilter& filter, bool details, const std::function<bool(LoggedExchange&&)>& function) const;
    std::optional<LoggedExchange> find(std::int64_t number) const; /* with its details */
    std::optional<std::int64_t> ofPost(std::int64_t post) const;

    std::size_t bodyLimit() const
    {
        return m_bodyLimit;
    }
    std::uint64_t bytes() const
    {
        return m_bytes;
    }
    std::optional<Time> oldest() const;
    void removeOldest(std::size_t count);
    void removeUntil(Time time); /* that time included */

  private:
    void write();
    void insert(const std::vector<LoggedExchange>& rows);
    void insertOne(Statement& into, const LoggedExchange& row);
    void flush() const;
    LoggedExchange read(Statement& row, bool details) const;
    void remove(const char* condition, std::int64_t value);

    const std::size_t m_most;
    const std::size_t m_bodyLimit;
    mutable std::mutex m_mutex; /* of the database */
    Database m_database;
    std::atomic<std::uint64_t> m_bytes{0};

    mutable std::mutex m_queueMutex;
    mutable std::condition_variable m_changed;
    std::vector<LoggedExchange> m_queue;
    std::uint64_t m_queued = 0; /* bytes of bodies in it */
    bool m_writing = false;
    bool m_stopping = false;
    std::thread m_writer; /* in a directory only */
};

} // namespace viewlib
