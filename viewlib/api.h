/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "json.h"
#include "viewlib/answer.h"
#include "viewlib/exchange.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace viewlib
{

using Reply = Answer;

Reply jsonReply(unsigned status, std::string text);
Reply jsonReply(unsigned status, const cJSON* tree);
Reply errorReply(unsigned status, const std::string& text); /* {"error":"text"} */

/* Thrown while a request is served: becomes the reply that says so. */
class ApiError : public std::runtime_error
{
  public:
    ApiError(unsigned status, const std::string& text) : std::runtime_error(text), m_status(status)
    {
    }
    unsigned status() const
    {
        return m_status;
    }

  private:
    unsigned m_status;
};

/* A request that has passed the guards and has an endpoint. Its members throw ApiError for what cannot be. */
struct ApiRequest
{
    const Exchange& exchange;
    std::vector<std::string> names;           /* what stands in place of each '*' of the pattern, decoded */
    std::map<std::string, std::string> query; /* decoded */

    std::string text(const std::string& key) const; /* of the query; empty when it is not there */
    std::uint64_t number(const std::string& key, std::uint64_t fallback, std::uint64_t least, std::uint64_t most) const;
    std::uint64_t nameNumber(std::size_t index) const; /* 404 when it is no number */
    Json body() const;                                 /* an object */
};

/*
 * What viewlibd shows of itself and how it is steered: "/api/..." and the files of its page. Not open to other sites'
 * pages: the Host header must name this server, and what changes something needs a header that they cannot send.
 */
class Api
{
  public:
    using Function = std::function<Reply(const ApiRequest&)>;

    static constexpr std::size_t maxBody = std::size_t(1) << 20;

    explicit Api(std::vector<std::string> addresses) : m_addresses(std::move(addresses))
    {
    }

    /* In a pattern a part of the path that is "*" stands for any one part. All are added before the first request. */
    void add(std::string method, std::string pattern, Function function);

    static bool serves(std::string_view path);
    /* Nothing when the path is none of its own. */
    std::optional<Reply> handle(const Exchange& exchange) const;

  private:
    struct Endpoint
    {
        std::string method;
        std::string pattern;
        Function function;
    };
    std::optional<Reply> refuse(const Exchange& exchange) const;
    Reply call(const Exchange& exchange) const;

    const std::vector<std::string> m_addresses; /* that the server listens on */
    std::vector<Endpoint> m_endpoints;
};

} // namespace viewlib
