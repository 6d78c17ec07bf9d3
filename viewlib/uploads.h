/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/stored.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace viewlib
{

struct HeldFile;

/* The body of one upload on its way into what is held. */
class UploadWriter
{
  public:
    enum class Outcome
    {
        Good,
        BeyondEnd, /* its position lies beyond what is held */
        TakenOver, /* a later upload of the same name has begun */
        Failed
    };

    UploadWriter(std::shared_ptr<HeldFile> file, std::uint64_t position);
    ~UploadWriter();
    UploadWriter(const UploadWriter&) = delete;
    UploadWriter& operator=(const UploadWriter&) = delete;

    void write(const char* data, std::size_t size); /* does nothing once the outcome is not Good */
    Outcome outcome() const
    {
        return m_outcome;
    }
    const std::string& reason() const /* in words, of an outcome that is not Good */
    {
        return m_reason;
    }

  private:
    void begin(std::uint64_t position);
    void fail(Outcome outcome, const std::string& reason);
    void writeFile(const char* data, std::size_t size);

    const std::shared_ptr<HeldFile> m_file;
    std::uint64_t m_turn = 0;
    int m_fd = -1;
    Outcome m_outcome = Outcome::Good;
    std::string m_reason;
};

/*
 * Files that clients stream, by name. What arrives is kept at once, so that an upload that was cut can go on. An upload
 * replaces everything from its position on.
 */
class Uploads
{
  public:
    using Time = std::chrono::system_clock::time_point;

    /* ":memory:", or the data directory, which exists; and what time it is. */
    explicit Uploads(const std::string& storage, std::function<Time()> clock = std::chrono::system_clock::now);
    ~Uploads();
    Uploads(const Uploads&) = delete;
    Uploads& operator=(const Uploads&) = delete;

    /* Names become the names of files: nothing that a directory, a shell or a hidden file is made of. */
    static bool isName(std::string_view name);

    /* name has passed isName. */
    std::unique_ptr<UploadWriter> open(const std::string& name, std::uint64_t position);

    /* Length and hash alone; nothing when no upload of that name has begun. */
    std::optional<Upload> state(const std::string& name) const;
    std::vector<Upload> all() const;      /* with bytes where they are kept in memory */
    std::vector<Upload> overview() const; /* without */

    std::uint64_t bytes() const;
    std::optional<Time> oldest() const; /* when the first of those that nobody writes was written last */
    void removeOldest();                /* that one */
    std::size_t count() const;

  private:
    std::vector<Upload> describeAll(bool bytes) const;
    using Files = std::map<std::string, std::shared_ptr<HeldFile>>;
    Files::const_iterator findOldest() const;

    std::shared_ptr<HeldFile> find(const std::string& name) const;
    std::string fileOf(const std::string& name) const;

    std::string m_directory; /* empty: in memory */
    mutable std::mutex m_mutex;
    Files m_files;
    const std::function<Time()> m_clock;
};

} // namespace viewlib
