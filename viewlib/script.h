/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>

namespace viewlib
{

/* The answers that tests have laid down, by path. */
class Script
{
  public:
    enum class Stage
    {
        HeadersRead, /* takes answers that don't wait for the credentials */
        Authorized   /* takes those that do */
    };

    void once(const std::string& path, Answer answer);
    void always(const std::string& path, Answer answer);
    void clear();
    std::size_t left() const;

    /* The first answer laid down for the path, when it belongs to this stage. Exact paths go before patterns. */
    std::optional<Answer> take(const std::string& path, Stage stage);

  private:
    struct Rule
    {
        std::string path;
        Answer answer;
    };
    using Rules = std::list<Rule>;
    static Rules::iterator find(Rules& rules, const std::string& path);

    mutable std::mutex m_mutex;
    Rules m_once;
    Rules m_always;
};

} // namespace viewlib
