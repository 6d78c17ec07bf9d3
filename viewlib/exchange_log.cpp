/* SPDX-License-Identifier: Apache-2.0 */
#include "exchange_log.h"

#include "exchange_summary.h"
#include "json.h"

#include <charconv>
#include <cstdio>

namespace viewlib
{

namespace
{

const char* const schema = R"(
    CREATE TABLE IF NOT EXISTS exchanges (
        id INTEGER PRIMARY KEY, time INTEGER NOT NULL, client TEXT NOT NULL, device TEXT NOT NULL,
        method TEXT NOT NULL, target TEXT NOT NULL, path TEXT NOT NULL, status INTEGER NOT NULL, code INTEGER,
        reason TEXT NOT NULL, request_bytes INTEGER NOT NULL, answer_bytes INTEGER NOT NULL,
        reading INTEGER NOT NULL, handling INTEGER NOT NULL, fault INTEGER, complete INTEGER NOT NULL,
        post INTEGER NOT NULL, request_headers TEXT NOT NULL, answer_headers TEXT NOT NULL,
        request_body BLOB NOT NULL, answer_body BLOB NOT NULL, request_cut INTEGER NOT NULL,
        answer_cut INTEGER NOT NULL);
    CREATE INDEX IF NOT EXISTS exchanges_by_post ON exchanges (post);
    CREATE INDEX IF NOT EXISTS exchanges_by_time ON exchanges (time);
    PRAGMA user_version=1;
)";

/* What ExchangeLog::read reads. */
#define SUMMARY                                                                                                        \
    "id, time, client, device, method, target, path, status, code, reason, request_bytes, answer_bytes, reading, "     \
    "handling, fault, complete, post"
#define DETAILS SUMMARY ", request_headers, answer_headers, request_body, answer_body, request_cut, answer_cut"

/* What an exchange takes beside its bodies, roughly. */
constexpr std::uint64_t rowBytes = 1024;
#define ROW_BYTES "1024 + length(request_body) + length(answer_body)"

/* What may wait to be written before adding waits as well. */
constexpr std::uint64_t mostQueued = std::uint64_t(64) << 20;
constexpr std::size_t mostRows = 4096;

std::string headerText(const std::vector<Header>& headers)
{
    const Json array(cJSON_CreateArray());
    for (const Header& header : headers)
    {
        cJSON* pair = cJSON_CreateArray();
        cJSON_AddItemToArray(array.get(), pair);
        cJSON_AddItemToArray(pair, cJSON_CreateString(header.name.c_str()));
        cJSON_AddItemToArray(pair, cJSON_CreateString(header.value.c_str()));
    }
    return printJson(array.get());
}

std::string itemText(const cJSON* array, int index)
{
    const char* text = cJSON_GetStringValue(cJSON_GetArrayItem(array, index));
    return text == nullptr ? std::string() : std::string(text);
}

std::vector<Header> parseHeaders(const std::string& text)
{
    std::vector<Header> headers;
    const Json array(parseJson(text));
    const cJSON* pair = nullptr;
    cJSON_ArrayForEach(pair, array.get())
    {
        headers.push_back({itemText(pair, 0), itemText(pair, 1)});
    }
    return headers;
}

std::uint64_t weightOf(const LoggedExchange& row)
{
    return rowBytes + row.requestBody.size() + row.answerBody.size();
}

std::string numbersText(const std::vector<std::int64_t>& numbers)
{
    std::string text = "[";
    for (const std::int64_t number : numbers)
    {
        text += (text.size() == 1 ? "" : ",") + std::to_string(number);
    }
    return text + "]";
}

std::string conditionsOf(const ExchangeFilter& filter)
{
    std::string sql = " FROM exchanges WHERE 1";
    if (!filter.path.empty())
    {
        sql += filter.path.back() == '*' ? " AND substr(path, 1, length(?1)) = ?1" : " AND instr(path, ?1) > 0";
    }
    sql += filter.device.empty() ? "" : " AND device = ?2";
    sql += filter.method.empty() ? "" : " AND method = ?3";
    sql += filter.status.empty() ? "" : filter.status.size() == 1 ? " AND status / 100 = ?4" : " AND status = ?4";
    sql += filter.text.empty()
               ? ""
               : " AND (instr(target, ?5) > 0 OR instr(reason, ?5) > 0 OR instr(request_headers, ?5) > 0 "
                 "OR instr(answer_headers, ?5) > 0 OR instr(request_body, CAST(?5 AS BLOB)) > 0 OR "
                 "instr(answer_body, CAST(?5 AS BLOB)) > 0 OR post IN (SELECT value FROM "
                 "json_each(?6)))";
    return sql;
}

/* Those that the conditions do not have are bound, too, which wants the statement to name ?6. */
void bindFilter(Statement& row, const ExchangeFilter& filter)
{
    std::int64_t status = 0;
    std::from_chars(filter.status.data(), filter.status.data() + filter.status.size(), status);
    const bool beginning = !filter.path.empty() && filter.path.back() == '*';
    row.bind(beginning ? filter.path.substr(0, filter.path.size() - 1) : filter.path)
        .bind(filter.device)
        .bind(filter.method)
        .bind(status)
        .bind(filter.text)
        .bind(numbersText(filter.posts));
}

} // namespace

ExchangeLog::ExchangeLog(const std::string& storage, std::size_t most, std::size_t bodyLimit)
    : m_most(most), m_bodyLimit(bodyLimit)
{
    if (most == 0)
    {
        return;
    }
    const bool inMemory = storage == ":memory:";
    const std::string file = inMemory ? storage : storage + "/exchanges.db";
    m_database = openDatabase(file);
    if (sqlite3_exec(m_database.get(), schema, nullptr, nullptr, nullptr) != SQLITE_OK)
    {
        throw std::runtime_error("cannot open \"" + file + "\": " + sqlite3_errmsg(m_database.get()));
    }
    Statement row(m_database.get(), "SELECT coalesce(sum(" ROW_BYTES "), 0) FROM exchanges");
    row.step();
    m_bytes = static_cast<std::uint64_t>(row.integer());
    if (!inMemory)
    {
        m_writer = std::thread([this] { write(); });
    }
}

ExchangeLog::~ExchangeLog()
{
    {
        const std::lock_guard<std::mutex> lock(m_queueMutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    if (m_writer.joinable())
    {
        m_writer.join();
    }
}

LoggedExchange ExchangeLog::rowOf(const Exchange& exchange) const
{
    LoggedExchange row;
    row.number = static_cast<std::int64_t>(exchange.number);
    row.time = exchange.received;
    row.client = exchange.peer;
    row.device = exchange.device();
    row.method = exchange.method;
    row.target = exchange.target;
    row.path = exchange.path;
    row.status = exchange.status;
    row.requestBytes = exchange.bodyLength;
    row.answerBytes = exchange.answer.size();
    row.reading = exchange.reading;
    row.handling = exchange.handling;
    row.fault = exchange.fault;
    row.complete = exchange.complete;
    row.post = exchange.post;
    row.requestHeaders = exchange.headers;
    row.answerHeaders = exchange.answerHeaders;
    row.requestBody = exchange.post != 0 ? std::string() : exchange.body.substr(0, m_bodyLimit);
    row.requestCut = exchange.post == 0 && exchange.bodyLength > row.requestBody.size();
    row.answerBody = exchange.answer.substr(0, m_bodyLimit);
    row.answerCut = exchange.answer.size() > m_bodyLimit;
    AnswerStatus status = statusOf(exchange.answer);
    row.code = status.code;
    row.reason = status.code.value_or(0) == 0 ? std::string() : std::move(status.text);
    return row;
}

void ExchangeLog::add(LoggedExchange row)
{
    if (m_most == 0)
    {
        return;
    }
    if (!m_writer.joinable())
    {
        std::vector<LoggedExchange> rows;
        rows.push_back(std::move(row));
        insert(rows);
        return;
    }
    {
        std::unique_lock<std::mutex> lock(m_queueMutex);
        m_changed.wait(lock, [&] { return m_queued < mostQueued && m_queue.size() < mostRows; });
        m_queued += weightOf(row);
        m_queue.push_back(std::move(row));
    }
    m_changed.notify_all();
}

/* The writer's thread: takes what waits and writes it in one go. */
void ExchangeLog::write()
{
    std::unique_lock<std::mutex> lock(m_queueMutex);
    for (;;)
    {
        m_changed.wait(lock, [&] { return m_stopping || !m_queue.empty(); });
        if (m_queue.empty())
        {
            return;
        }
        std::vector<LoggedExchange> rows;
        rows.swap(m_queue);
        m_queued = 0;
        m_writing = true;
        lock.unlock();
        m_changed.notify_all();
        try
        {
            insert(rows);
        }
        catch (const std::exception& error) /* the log is not worth the end of the server */
        {
            std::fprintf(stderr, "viewlib: %zu exchanges are not in the log: %s\n", rows.size(), error.what());
        }
        lock.lock();
        m_writing = false;
        m_changed.notify_all();
    }
}

void ExchangeLog::flush() const
{
    std::unique_lock<std::mutex> lock(m_queueMutex);
    m_changed.wait(lock, [&] { return m_queue.empty() && !m_writing; });
}

void ExchangeLog::insert(const std::vector<LoggedExchange>& rows)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Transaction transaction(m_database.get());
    Statement into(m_database.get(), "INSERT OR REPLACE INTO exchanges (" DETAILS ") VALUES (?, ?, ?, ?, ?, ?, ?, ?, "
                                     "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    std::uint64_t added = 0;
    for (const LoggedExchange& row : rows)
    {
        insertOne(into, row);
        added += weightOf(row);
    }
    transaction.commit();
    m_bytes += added;
    const std::int64_t newest = rows.back().number;
    if (newest > static_cast<std::int64_t>(m_most))
    {
        remove("id <= ?", newest - static_cast<std::int64_t>(m_most));
    }
}

void ExchangeLog::insertOne(Statement& into, const LoggedExchange& row)
{
    into.reset()
        .bind(row.number)
        .bind(toMilliseconds(row.time))
        .bind(row.client)
        .bind(row.device)
        .bind(row.method)
        .bind(row.target)
        .bind(row.path)
        .bind(std::int64_t(row.status));
    row.code ? into.bind(*row.code) : into.bindNull();
    into.bind(row.reason)
        .bind(static_cast<std::int64_t>(row.requestBytes))
        .bind(static_cast<std::int64_t>(row.answerBytes))
        .bind(std::int64_t(row.reading.count()))
        .bind(std::int64_t(row.handling.count()));
    row.fault ? into.bind(*row.fault) : into.bindNull();
    into.bind(std::int64_t(row.complete))
        .bind(row.post)
        .bind(headerText(row.requestHeaders))
        .bind(headerText(row.answerHeaders))
        .bindBlob(row.requestBody)
        .bindBlob(row.answerBody)
        .bind(std::int64_t(row.requestCut))
        .bind(std::int64_t(row.answerCut))
        .run();
}

/* With the lock. */
void ExchangeLog::remove(const char* condition, std::int64_t value)
{
    const std::string where = std::string(" FROM exchanges WHERE ") + condition;
    Statement weight(m_database.get(), ("SELECT coalesce(sum(" ROW_BYTES "), 0)" + where).c_str());
    weight.bind(value);
    weight.step();
    const auto freed = static_cast<std::uint64_t>(weight.integer());
    weight.run();
    Statement(m_database.get(), ("DELETE" + where).c_str()).bind(value).run();
    m_bytes -= freed;
}

void ExchangeLog::clear()
{
    if (m_most != 0)
    {
        flush();
        const std::lock_guard<std::mutex> lock(m_mutex);
        remove("id > ?", 0);
    }
}

std::uint64_t ExchangeLog::last() const
{
    if (m_most == 0)
    {
        return 0;
    }
    flush();
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT coalesce(max(id), 0) FROM exchanges");
    row.step();
    return static_cast<std::uint64_t>(row.integer());
}

std::size_t ExchangeLog::count(const ExchangeFilter& filter) const
{
    if (m_most == 0)
    {
        return 0;
    }
    flush();
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), ("SELECT count(*)" + conditionsOf(filter) + " AND ?6 IS NOT NULL").c_str());
    bindFilter(row, filter);
    row.step();
    return static_cast<std::size_t>(row.integer());
}

void ExchangeLog::each(const ExchangeFilter& filter, bool details,
                       const std::function<bool(LoggedExchange&&)>& function) const
{
    if (m_most == 0)
    {
        return;
    }
    flush();
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::string sql = std::string("SELECT ") + (details ? DETAILS : SUMMARY) + conditionsOf(filter) +
                            " AND ?6 IS NOT NULL AND (?7 = 0 OR id < ?7) ORDER BY id DESC LIMIT ?8";
    Statement row(m_database.get(), sql.c_str());
    bindFilter(row, filter);
    row.bind(filter.before).bind(static_cast<std::int64_t>(filter.limit));
    while (row.step())
    {
        if (!function(read(row, details)))
        {
            return;
        }
    }
}

std::optional<LoggedExchange> ExchangeLog::find(std::int64_t number) const
{
    if (m_most == 0)
    {
        return std::nullopt;
    }
    flush();
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT " DETAILS " FROM exchanges WHERE id = ?");
    row.bind(number);
    return row.step() ? std::optional<LoggedExchange>(read(row, true)) : std::nullopt;
}

std::optional<std::int64_t> ExchangeLog::ofPost(std::int64_t post) const
{
    if (m_most == 0)
    {
        return std::nullopt;
    }
    flush();
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT id FROM exchanges WHERE post = ? LIMIT 1");
    row.bind(post);
    return row.step() ? std::optional<std::int64_t>(row.integer()) : std::nullopt;
}

LoggedExchange ExchangeLog::read(Statement& row, bool details) const
{
    LoggedExchange found;
    found.number = row.integer();
    found.time = fromMilliseconds(row.integer());
    found.client = row.bytes();
    found.device = row.bytes();
    found.method = row.bytes();
    found.target = row.bytes();
    found.path = row.bytes();
    found.status = static_cast<unsigned>(row.integer());
    found.code = row.optionalInteger();
    found.reason = row.bytes();
    found.requestBytes = static_cast<std::uint64_t>(row.integer());
    found.answerBytes = static_cast<std::uint64_t>(row.integer());
    found.reading = std::chrono::microseconds(row.integer());
    found.handling = std::chrono::microseconds(row.integer());
    found.fault = row.optionalInteger();
    found.complete = row.integer() != 0;
    found.post = row.integer();
    if (details)
    {
        found.requestHeaders = parseHeaders(row.bytes());
        found.answerHeaders = parseHeaders(row.bytes());
        found.requestBody = row.bytes();
        found.answerBody = row.bytes();
        found.requestCut = row.integer() != 0;
        found.answerCut = row.integer() != 0;
    }
    return found;
}

std::optional<ExchangeLog::Time> ExchangeLog::oldest() const
{
    if (m_most == 0)
    {
        return std::nullopt;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT time FROM exchanges ORDER BY id LIMIT 1");
    return row.step() ? std::optional<Time>(fromMilliseconds(row.integer())) : std::nullopt;
}

void ExchangeLog::removeOldest(std::size_t count)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    remove("id IN (SELECT id FROM exchanges ORDER BY id LIMIT ?)", static_cast<std::int64_t>(count));
}

void ExchangeLog::removeUntil(Time time)
{
    if (m_most == 0)
    {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    remove("time <= ?", toMilliseconds(time));
}

} // namespace viewlib
