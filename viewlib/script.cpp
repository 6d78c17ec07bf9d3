/* SPDX-License-Identifier: Apache-2.0 */
#include "script.h"

#include "text.h"

#include <algorithm>

namespace viewlib
{

void Script::once(const std::string& path, Answer answer)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_once.push_back({path, std::move(answer)});
}

void Script::always(const std::string& path, Answer answer)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_always.remove_if([&](const Rule& rule) { return rule.path == path; });
    m_always.push_back({path, std::move(answer)});
}

void Script::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_once.clear();
    m_always.clear();
}

std::size_t Script::left() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_once.size();
}

Script::Rules::iterator Script::find(Rules& rules, const std::string& path)
{
    const auto exact = std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) { return rule.path == path; });
    return exact != rules.end()
               ? exact
               : std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) { return pathFits(rule.path, path); });
}

std::optional<Answer> Script::take(const std::string& path, Stage stage)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool authorized = stage == Stage::Authorized;
    const auto once = find(m_once, path);
    if (once != m_once.end())
    {
        if (once->answer.afterAuth != authorized)
        {
            return std::nullopt;
        }
        Answer answer = std::move(once->answer);
        m_once.erase(once);
        return answer;
    }
    const auto always = find(m_always, path);
    if (always == m_always.end() || always->answer.afterAuth != authorized)
    {
        return std::nullopt;
    }
    return always->answer;
}

} // namespace viewlib
