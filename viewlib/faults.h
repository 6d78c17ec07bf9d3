/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/exchange.h"
#include "viewlib/fault.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace viewlib
{

/* The rules by which answers are spoilt, those that tests script among them. */
class Faults
{
  public:
    enum class Origin
    {
        Script, /* forgotten as soon as it is used up */
        Rule
    };
    enum class Stage
    {
        HeadersRead, /* takes answers that don't wait for the credentials */
        Authorized   /* takes those that do */
    };

    /* Throws std::invalid_argument for a rule that cannot be. */
    std::uint64_t add(FaultRule rule, Origin origin);
    bool remove(std::uint64_t number);
    void removeStanding(const std::string& resource); /* scripts without a count that are for exactly this resource */
    void clear();
    void clearScripts();

    std::vector<Fault> all() const;
    std::size_t active() const;      /* rules that can still be hit */
    std::size_t scriptsLeft() const; /* scripts with a count */

    struct Hit
    {
        std::uint64_t number;
        Answer answer;
    };
    std::optional<Hit> take(const Exchange& exchange, Stage stage);

  private:
    struct Entry
    {
        Fault fault;
        Origin origin;
        std::uint64_t due = 0; /* what the share has gathered, in millionths of a request */
    };
    using Entries = std::list<Entry>;
    std::vector<Entries::iterator> candidates(const Exchange& exchange);
    static bool inShare(Entry& entry);
    Hit hit(Entries::iterator entry);
    void dropUsedUp();

    mutable std::mutex m_mutex;
    Entries m_entries;
    std::uint64_t m_last = 0;
};

} // namespace viewlib
