/* SPDX-License-Identifier: Apache-2.0 */
#include "faults.h"

#include "text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>

namespace viewlib
{

namespace
{

constexpr std::uint64_t wholeRequest = 1000000;
constexpr std::size_t maxRules = 1000;
constexpr std::ptrdiff_t maxUsedUp = 50;

bool isUsedUp(const Fault& fault)
{
    return fault.left && *fault.left == 0;
}

bool fits(const FaultRule& rule, const Exchange& exchange)
{
    return (rule.device == "*" || rule.device == exchange.device()) && pathFits(rule.resource, exchange.path) &&
           (rule.method == "*" || rule.method == exchange.method);
}

/* The lower goes first. */
int rank(const FaultRule& rule, const Exchange& exchange)
{
    return (rule.count ? 0 : 2) + (rule.resource == exchange.path ? 0 : 1);
}

void check(const FaultRule& rule)
{
    if (rule.count && rule.share)
    {
        throw std::invalid_argument("a rule has a count or a share, not both");
    }
    if (rule.count && *rule.count == 0)
    {
        throw std::invalid_argument("a count is 1 or more");
    }
    if (rule.share && !(*rule.share > 0 && *rule.share <= 1))
    {
        throw std::invalid_argument("a share is above 0 and at most 1");
    }
    if (rule.answer.beforeBody && rule.answer.status == 0 && !rule.answer.raw && rule.answer.cut == Cut::None)
    {
        throw std::invalid_argument("an answer before the body needs a status");
    }
}

} // namespace

std::uint64_t Faults::add(FaultRule rule, Origin origin)
{
    check(rule);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (origin == Origin::Rule && m_entries.size() >= maxRules)
    {
        throw std::invalid_argument("there are " + std::to_string(maxRules) + " rules already");
    }
    Entry entry;
    entry.origin = origin;
    entry.fault.number = ++m_last;
    entry.fault.left = rule.count;
    entry.fault.rule = std::move(rule);
    m_entries.push_back(std::move(entry));
    return m_last;
}

bool Faults::remove(std::uint64_t number)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::size_t before = m_entries.size();
    m_entries.remove_if([&](const Entry& entry) { return entry.fault.number == number; });
    return m_entries.size() != before;
}

void Faults::removeStanding(const std::string& resource)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.remove_if([&](const Entry& entry) {
        return entry.origin == Origin::Script && !entry.fault.rule.count && entry.fault.rule.resource == resource;
    });
}

void Faults::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.clear();
}

void Faults::clearScripts()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.remove_if([](const Entry& entry) { return entry.origin == Origin::Script; });
}

std::vector<Fault> Faults::all() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<Fault> found;
    std::transform(m_entries.begin(), m_entries.end(), std::back_inserter(found),
                   [](const Entry& entry) { return entry.fault; });
    return found;
}

std::size_t Faults::active() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return static_cast<std::size_t>(
        std::count_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return !isUsedUp(entry.fault); }));
}

std::size_t Faults::scriptsLeft() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return static_cast<std::size_t>(std::count_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) {
        return entry.origin == Origin::Script && entry.fault.rule.count;
    }));
}

std::vector<Faults::Entries::iterator> Faults::candidates(const Exchange& exchange)
{
    std::vector<Entries::iterator> found;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
    {
        if (!isUsedUp(it->fault) && fits(it->fault.rule, exchange))
        {
            found.push_back(it);
        }
    }
    std::stable_sort(found.begin(), found.end(), [&](Entries::iterator left, Entries::iterator right) {
        return rank(left->fault.rule, exchange) < rank(right->fault.rule, exchange);
    });
    return found;
}

/* Each request adds its share; whenever that makes a whole one, the request is hit. So hits are spread evenly and their
 * number is exact, which is more use to a test than chance. */
bool Faults::inShare(Entry& entry)
{
    if (!entry.fault.rule.share)
    {
        return true;
    }
    entry.due += static_cast<std::uint64_t>(std::llround(*entry.fault.rule.share * double(wholeRequest)));
    if (entry.due < wholeRequest)
    {
        return false;
    }
    entry.due -= wholeRequest;
    return true;
}

std::optional<Faults::Hit> Faults::take(const Exchange& exchange, Stage stage)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool authorized = stage == Stage::Authorized;
    bool open = !authorized; /* false: what does not wait was gone through when the headers were in */
    for (const Entries::iterator entry : candidates(exchange))
    {
        const bool waits = entry->fault.rule.answer.waits();
        if (waits && !authorized)
        {
            return std::nullopt;
        }
        open = open || waits;
        if (open && inShare(*entry))
        {
            return hit(entry);
        }
    }
    return std::nullopt;
}

Faults::Hit Faults::hit(Entries::iterator entry)
{
    Fault& fault = entry->fault;
    ++fault.hits;
    Hit result{fault.number, fault.rule.answer};
    if (fault.left && --*fault.left == 0)
    {
        if (entry->origin == Origin::Script)
        {
            m_entries.erase(entry);
        }
        else
        {
            dropUsedUp();
        }
    }
    return result;
}

/* Rules that are used up are shown for a while, the last ones. */
void Faults::dropUsedUp()
{
    const auto usedUp = [](const Entry& entry) { return isUsedUp(entry.fault); };
    if (std::count_if(m_entries.begin(), m_entries.end(), usedUp) > maxUsedUp)
    {
        m_entries.erase(std::find_if(m_entries.begin(), m_entries.end(), usedUp));
    }
}

} // namespace viewlib
