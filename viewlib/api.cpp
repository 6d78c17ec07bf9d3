/* SPDX-License-Identifier: Apache-2.0 */
#include "api.h"

#include "page.h"
#include "text.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

namespace viewlib
{

namespace
{

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

std::string decode(std::string_view text, bool plusIsBlank)
{
    const auto digit = [](char c) -> int {
        static const std::string_view digits = "0123456789abcdef";
        const char lower = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
        const std::size_t place = digits.find(lower);
        return place == std::string_view::npos ? -1 : static_cast<int>(place);
    };
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const bool escape = text[i] == '%' && i + 2 < text.size() && digit(text[i + 1]) >= 0 && digit(text[i + 2]) >= 0;
        result += escape                          ? static_cast<char>(digit(text[i + 1]) * 16 + digit(text[i + 2]))
                  : text[i] == '+' && plusIsBlank ? ' '
                                                  : text[i];
        i += escape ? 2 : 0;
    }
    return result;
}

std::map<std::string, std::string> parseQuery(std::string_view query)
{
    std::map<std::string, std::string> values;
    for (std::size_t from = 0; from < query.size();)
    {
        const std::size_t end = std::min(query.find('&', from), query.size());
        const std::string_view part = query.substr(from, end - from);
        const std::size_t equals = std::min(part.find('='), part.size());
        if (!part.empty())
        {
            values[decode(part.substr(0, equals), true)] = decode(part.substr(std::min(equals + 1, part.size())), true);
        }
        from = end + 1;
    }
    return values;
}

/* What stands in place of the pattern's '*'s; nothing when the path does not fit. */
std::optional<std::vector<std::string>> matchPattern(std::string_view pattern, std::string_view path)
{
    std::vector<std::string> names;
    for (;;)
    {
        const std::size_t patternEnd = std::min(pattern.find('/'), pattern.size());
        const std::size_t pathEnd = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, pathEnd);
        if (pattern.substr(0, patternEnd) == "*" && !part.empty())
        {
            names.push_back(decode(part, false));
        }
        else if (pattern.substr(0, patternEnd) != part)
        {
            return std::nullopt;
        }
        if (patternEnd == pattern.size() || pathEnd == path.size())
        {
            return patternEnd == pattern.size() && pathEnd == path.size()
                       ? std::optional<std::vector<std::string>>(std::move(names))
                       : std::nullopt;
        }
        pattern.remove_prefix(patternEnd + 1);
        path.remove_prefix(pathEnd + 1);
    }
}

/* An address as bytes, so that it can be compared however it is spelled; empty: not an address. */
std::string addressBytes(const std::string& text)
{
    std::array<char, sizeof(in6_addr)> bytes{};
    if (inet_pton(AF_INET, text.c_str(), bytes.data()) == 1)
    {
        return std::string(bytes.data(), sizeof(in_addr));
    }
    return inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1 ? std::string(bytes.data(), sizeof(in6_addr))
                                                                : std::string();
}

/* "127.0.0.1:8080" is "127.0.0.1", "[::1]:8080" is "::1". */
std::string hostName(const std::string& header)
{
    if (header.empty() || header.front() != '[')
    {
        return header.substr(0, header.find(':'));
    }
    const std::size_t end = header.find(']');
    const bool whole = end != std::string::npos && (end + 1 == header.size() || header[end + 1] == ':');
    return whole ? header.substr(1, end - 1) : std::string();
}

bool isLoopback(const std::string& host)
{
    const std::string bytes = addressBytes(host);
    const bool ipv4 = bytes.size() == sizeof(in_addr) && bytes.front() == 127;
    return ipv4 || sameNoCase(host, "localhost") || (!bytes.empty() && bytes == addressBytes("::1"));
}

bool isPageMethod(const std::string& method)
{
    return method == "GET" || method == "HEAD";
}

/* Answers are those of the moment, and no browser is to guess what they are. */
Reply guarded(Reply reply, const char* caching)
{
    reply.with("Cache-Control", caching);
    reply.with("X-Content-Type-Options", "nosniff");
    return reply;
}

Reply pageReply(const Exchange& exchange)
{
    if (!isPageMethod(exchange.method))
    {
        return errorReply(405, exchange.method + " is not served here").with("Allow", "GET, HEAD");
    }
    const PageFile* file = pageFile(exchange.path);
    if (file == nullptr)
    {
        return errorReply(404, "there is no " + exchange.path);
    }
    Reply reply(200, std::string(file->bytes));
    reply.contentType = file->contentType;
    reply.with("Content-Security-Policy", "default-src 'self'; img-src 'self' data:");
    return guarded(std::move(reply), "no-cache");
}

} // namespace

Reply jsonReply(unsigned status, const cJSON* tree)
{
    return jsonReply(status, printJson(tree));
}

Reply jsonReply(unsigned status, std::string text)
{
    Reply reply(status, std::move(text));
    reply.contentType = "application/json";
    return guarded(std::move(reply), "no-store");
}

Reply errorReply(unsigned status, const std::string& text)
{
    const Json root(cJSON_CreateObject());
    cJSON_AddStringToObject(root.get(), "error", text.c_str());
    return jsonReply(status, root.get());
}

std::string ApiRequest::text(const std::string& key) const
{
    const auto found = query.find(key);
    return found == query.end() ? std::string() : found->second;
}

std::uint64_t ApiRequest::number(const std::string& key, std::uint64_t fallback, std::uint64_t least,
                                 std::uint64_t most) const
{
    const std::string value = text(key);
    if (value.empty())
    {
        return fallback;
    }
    std::uint64_t result = 0;
    const auto parsed = std::from_chars(value.data(), value.data() + value.size(), result);
    if (parsed.ec != std::errc() || parsed.ptr != value.data() + value.size() || result < least || result > most)
    {
        throw ApiError(400, "\"" + key + "\" is \"" + value + "\": expected a whole number from " +
                                std::to_string(least) + " to " + std::to_string(most));
    }
    return result;
}

std::uint64_t ApiRequest::nameNumber(std::size_t index) const
{
    const std::string& name = names.at(index);
    std::uint64_t result = 0;
    const auto parsed = std::from_chars(name.data(), name.data() + name.size(), result);
    if (parsed.ec != std::errc() || parsed.ptr != name.data() + name.size())
    {
        throw ApiError(404, "there is no " + exchange.path);
    }
    return result;
}

Json ApiRequest::body() const
{
    Json tree = parseJson(exchange.body);
    if (!tree)
    {
        throw ApiError(400, "the body is not JSON");
    }
    if (!cJSON_IsObject(tree.get()))
    {
        throw ApiError(400, "the body is not a JSON object");
    }
    return tree;
}

void Api::add(std::string method, std::string pattern, Function function)
{
    m_endpoints.push_back({std::move(method), std::move(pattern), std::move(function)});
}

bool Api::serves(std::string_view path)
{
    return path == "/" || path == "/api" || path == "/favicon.ico" || startsWith(path, "/api/") ||
           startsWith(path, "/page/");
}

std::optional<Reply> Api::handle(const Exchange& exchange) const
{
    if (!serves(exchange.path))
    {
        return std::nullopt;
    }
    if (std::optional<Reply> refusal = refuse(exchange))
    {
        return refusal;
    }
    return startsWith(exchange.path, "/api") ? call(exchange) : pageReply(exchange);
}

std::optional<Reply> Api::refuse(const Exchange& exchange) const
{
    const std::string host = hostName(exchange.header("Host"));
    const std::string bytes = addressBytes(host);
    const bool own =
        !bytes.empty() && std::any_of(m_addresses.begin(), m_addresses.end(), [&](const std::string& each) {
            return each == "0.0.0.0" || each == "::" || addressBytes(each) == bytes;
        });
    if (!own && !isLoopback(host)) /* a name that was made to point here */
    {
        return errorReply(403, "the Host header \"" + exchange.header("Host") + "\" is none of this server's");
    }
    if (isPageMethod(exchange.method) || !startsWith(exchange.path, "/api"))
    {
        return std::nullopt;
    }
    if (exchange.oversized)
    {
        return errorReply(413, "the body is larger than " + std::to_string(maxBody) + " bytes");
    }
    if (exchange.method == "DELETE" && exchange.bodyLength == 0)
    {
        return exchange.header("X-Viewlibd") == "1" ? std::optional<Reply>()
                                                    : errorReply(403, "a DELETE needs the header X-Viewlibd: 1");
    }
    const std::string type = exchange.header("Content-Type");
    std::string media = type.substr(0, type.find(';'));
    media.erase(media.find_last_not_of(" \t") + 1);
    return sameNoCase(media, "application/json")
               ? std::optional<Reply>()
               : errorReply(415, "Content-Type is \"" + type + "\": expected application/json");
}

Reply Api::call(const Exchange& exchange) const
{
    std::string allowed;
    for (const Endpoint& endpoint : m_endpoints)
    {
        std::optional<std::vector<std::string>> names = matchPattern(endpoint.pattern, exchange.path);
        if (!names)
        {
            continue;
        }
        if (endpoint.method != exchange.method)
        {
            allowed += (allowed.empty() ? "" : ", ") + endpoint.method;
            continue;
        }
        try
        {
            return endpoint.function({exchange, *std::move(names), parseQuery(exchange.query)});
        }
        catch (const ApiError& error)
        {
            return errorReply(error.status(), error.what());
        }
    }
    return allowed.empty() ? errorReply(404, "there is no " + exchange.path)
                           : errorReply(405, exchange.method + " is not served here").with("Allow", allowed);
}

} // namespace viewlib
