/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace viewlib
{

/* Instants are kept as milliseconds since 1970. */
inline std::int64_t toMilliseconds(std::chrono::system_clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

inline std::chrono::system_clock::time_point fromMilliseconds(std::int64_t value)
{
    return std::chrono::system_clock::time_point(std::chrono::milliseconds(value));
}

struct CloseDatabase
{
    void operator()(sqlite3* database) const
    {
        sqlite3_close(database);
    }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

/* What was committed outlives the end of the process; the end of the machine may cost the last of it. */
inline Database openDatabase(const std::string& file)
{
    sqlite3* raw = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &raw,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr);
    Database database(raw);
    if (result != SQLITE_OK || sqlite3_busy_timeout(raw, 5000) != SQLITE_OK ||
        sqlite3_exec(raw, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", nullptr, nullptr, nullptr) !=
            SQLITE_OK)
    {
        throw std::runtime_error("cannot open \"" + file + "\": " + sqlite3_errmsg(raw));
    }
    return database;
}

/* A prepared statement: values are bound in order, columns read in order. */
class Statement
{
  public:
    Statement(sqlite3* database, const char* sql) : m_database(database)
    {
        require(sqlite3_prepare_v2(database, sql, -1, &m_statement, nullptr) == SQLITE_OK);
    }
    ~Statement()
    {
        sqlite3_finalize(m_statement);
    }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& bind(const std::string& text)
    {
        require(sqlite3_bind_text64(m_statement, ++m_bound, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8) ==
                SQLITE_OK);
        return *this;
    }
    Statement& bind(std::int64_t value)
    {
        require(sqlite3_bind_int64(m_statement, ++m_bound, value) == SQLITE_OK);
        return *this;
    }
    Statement& bindBlob(const std::string& bytes)
    {
        require(sqlite3_bind_blob64(m_statement, ++m_bound, bytes.data(), bytes.size(), SQLITE_TRANSIENT) == SQLITE_OK);
        return *this;
    }

    Statement& bindNull()
    {
        require(sqlite3_bind_null(m_statement, ++m_bound) == SQLITE_OK);
        return *this;
    }
    /* Ready to be bound and run again. */
    Statement& reset()
    {
        sqlite3_reset(m_statement);
        m_bound = 0;
        return *this;
    }

    /* The next row; false at the end. */
    bool step()
    {
        const int result = sqlite3_step(m_statement);
        require(result == SQLITE_ROW || result == SQLITE_DONE);
        m_column = 0;
        return result == SQLITE_ROW;
    }
    void run()
    {
        while (step())
        {
        }
    }

    std::int64_t integer()
    {
        return sqlite3_column_int64(m_statement, m_column++);
    }
    std::optional<std::int64_t> optionalInteger()
    {
        const bool null = sqlite3_column_type(m_statement, m_column) == SQLITE_NULL;
        const std::int64_t value = integer();
        return null ? std::nullopt : std::optional<std::int64_t>(value);
    }
    /* Texts and blobs alike. */
    std::string bytes()
    {
        const auto* data = static_cast<const char*>(sqlite3_column_blob(m_statement, m_column));
        const int length = sqlite3_column_bytes(m_statement, m_column++);
        return data == nullptr ? std::string() : std::string(data, static_cast<std::size_t>(length));
    }

  private:
    void require(bool done) const
    {
        if (!done)
        {
            throw std::runtime_error(std::string("storage: ") + sqlite3_errmsg(m_database));
        }
    }

    sqlite3* m_database;
    sqlite3_stmt* m_statement = nullptr;
    int m_bound = 0;
    int m_column = 0;
};

/* Rolled back unless it was committed. */
class Transaction
{
  public:
    explicit Transaction(sqlite3* database) : m_database(database)
    {
        Statement(database, "BEGIN IMMEDIATE").run();
    }
    ~Transaction()
    {
        if (!m_done)
        {
            sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit()
    {
        Statement(m_database, "COMMIT").run();
        m_done = true;
    }

  private:
    sqlite3* m_database;
    bool m_done = false;
};

} // namespace viewlib
