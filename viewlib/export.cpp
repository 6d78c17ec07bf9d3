/* SPDX-License-Identifier: Apache-2.0 */
#include "export.h"

#include "base64.h"
#include "exchange_summary.h"
#include "text.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace viewlib
{

namespace
{

double milliseconds(std::chrono::microseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

/* A text can stand in JSON when it is UTF-8 without the byte that ends texts. */
bool isText(const std::string& bytes)
{
    return isUtf8(bytes) && bytes.find('\0') == std::string::npos;
}

/* "RequestBody" and what goes with it. What was cut within a character loses that. */
void addBody(cJSON* object, const std::string& name, const std::string& body, bool cut)
{
    const std::string text = cut ? cutUtf8(body) : body;
    if (isText(text))
    {
        cJSON_AddStringToObject(object, name.c_str(), text.c_str());
    }
    else
    {
        cJSON_AddNullToObject(object, name.c_str());
        cJSON_AddStringToObject(object, (name + "Base64").c_str(), encodeBase64(body).c_str());
    }
    cJSON_AddBoolToObject(object, (name + "Cut").c_str(), cut ? 1 : 0);
}

void addHeaders(cJSON* object, const char* name, const std::vector<Header>& headers)
{
    cJSON* array = cJSON_AddArrayToObject(object, name);
    for (const Header& header : headers)
    {
        cJSON* pair = cJSON_CreateArray();
        cJSON_AddItemToArray(array, pair);
        cJSON_AddItemToArray(pair, cJSON_CreateString(header.name.c_str()));
        cJSON_AddItemToArray(pair, cJSON_CreateString(header.value.c_str()));
    }
}

std::string valueOf(const std::vector<Header>& headers, std::string_view name)
{
    const auto found = std::find_if(headers.begin(), headers.end(),
                                    [&](const Header& header) { return sameNoCase(header.name, name); });
    return found == headers.end() ? std::string() : found->value;
}

/* ----------------------------------------------------------------------------------------------------------- HAR */

/* 2024-02-29T23:59:59.123Z */
std::string isoTime(std::chrono::system_clock::time_point time)
{
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    const auto seconds = static_cast<std::time_t>(since >= 0 ? since / 1000 : (since - 999) / 1000);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char text[40];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + length, sizeof text - length, ".%03dZ", static_cast<int>(since - seconds * 1000LL));
    return text;
}

void addPairs(cJSON* object, const char* name, const std::vector<Header>& pairs)
{
    cJSON* array = cJSON_AddArrayToObject(object, name);
    for (const Header& pair : pairs)
    {
        cJSON* entry = cJSON_CreateObject();
        cJSON_AddItemToArray(array, entry);
        cJSON_AddStringToObject(entry, "name", pair.name.c_str());
        cJSON_AddStringToObject(entry, "value", pair.value.c_str());
    }
}

/* As they stand in the target: HAR leaves open whether they are decoded. */
std::vector<Header> queryOf(const std::string& target)
{
    std::vector<Header> pairs;
    const std::size_t mark = target.find('?');
    for (std::size_t from = mark == std::string::npos ? target.size() : mark + 1; from < target.size();)
    {
        const std::size_t end = std::min(target.find('&', from), target.size());
        const std::string part = target.substr(from, end - from);
        const std::size_t equals = std::min(part.find('='), part.size());
        pairs.push_back({part.substr(0, equals), part.substr(std::min(equals + 1, part.size()))});
        from = end + 1;
    }
    return pairs;
}

/* "text", or its base64 where the bytes are none. */
void addText(cJSON* object, const std::string& body, bool cut)
{
    const std::string text = cut ? cutUtf8(body) : body;
    if (isText(text))
    {
        cJSON_AddStringToObject(object, "text", text.c_str());
    }
    else
    {
        cJSON_AddStringToObject(object, "text", encodeBase64(body).c_str());
        cJSON_AddStringToObject(object, "encoding", "base64");
    }
    if (cut)
    {
        cJSON_AddStringToObject(object, "comment", "the server kept only the beginning of this body");
    }
}

void addRequest(cJSON* entry, const LoggedExchange& exchange, const std::string& scheme)
{
    const std::string host = valueOf(exchange.requestHeaders, "Host");
    cJSON* request = cJSON_AddObjectToObject(entry, "request");
    cJSON_AddStringToObject(request, "method", exchange.method.c_str());
    cJSON_AddStringToObject(request, "url",
                            (scheme + "://" + (host.empty() ? "localhost" : host) + exchange.target).c_str());
    cJSON_AddStringToObject(request, "httpVersion", "HTTP/1.1");
    cJSON_AddArrayToObject(request, "cookies");
    addPairs(request, "headers", exchange.requestHeaders);
    addPairs(request, "queryString", queryOf(exchange.target));
    if (exchange.requestBytes > 0)
    {
        cJSON* post = cJSON_AddObjectToObject(request, "postData");
        cJSON_AddStringToObject(post, "mimeType", valueOf(exchange.requestHeaders, "Content-Type").c_str());
        cJSON_AddArrayToObject(post, "params");
        addText(post, exchange.requestBody, exchange.requestCut);
    }
    cJSON_AddNumberToObject(request, "headersSize", -1);
    cJSON_AddNumberToObject(request, "bodySize", static_cast<double>(exchange.requestBytes));
}

void addResponse(cJSON* entry, const LoggedExchange& exchange)
{
    cJSON* response = cJSON_AddObjectToObject(entry, "response");
    cJSON_AddNumberToObject(response, "status", exchange.status);
    cJSON_AddStringToObject(response, "statusText", exchange.reason.c_str());
    cJSON_AddStringToObject(response, "httpVersion", "HTTP/1.1");
    cJSON_AddArrayToObject(response, "cookies");
    addPairs(response, "headers", exchange.answerHeaders);
    cJSON* content = cJSON_AddObjectToObject(response, "content");
    cJSON_AddNumberToObject(content, "size", static_cast<double>(exchange.answerBytes));
    cJSON_AddStringToObject(content, "mimeType", valueOf(exchange.answerHeaders, "Content-Type").c_str());
    addText(content, exchange.answerBody, exchange.answerCut);
    cJSON_AddStringToObject(response, "redirectURL", valueOf(exchange.answerHeaders, "Location").c_str());
    cJSON_AddNumberToObject(response, "headersSize", -1);
    cJSON_AddNumberToObject(response, "bodySize", static_cast<double>(exchange.answerBytes));
}

Json harEntry(const LoggedExchange& exchange, const std::string& scheme)
{
    Json entry(cJSON_CreateObject());
    const double send = milliseconds(exchange.reading);
    const double wait = milliseconds(exchange.handling);
    cJSON_AddStringToObject(entry.get(), "startedDateTime", isoTime(exchange.time - exchange.reading).c_str());
    cJSON_AddNumberToObject(entry.get(), "time", send + wait);
    addRequest(entry.get(), exchange, scheme);
    addResponse(entry.get(), exchange);
    cJSON_AddObjectToObject(entry.get(), "cache");
    cJSON* timings = cJSON_AddObjectToObject(entry.get(), "timings");
    cJSON_AddNumberToObject(timings, "send", send);
    cJSON_AddNumberToObject(timings, "wait", wait);
    cJSON_AddNumberToObject(timings, "receive", 0);
    const std::string comment = "exchange " + std::to_string(exchange.number) + " of " + exchange.client;
    cJSON_AddStringToObject(entry.get(), "comment", comment.c_str());
    return entry;
}

/* What fits of what the filter lets through, each printed, the oldest first. */
std::vector<std::string> collect(const ExchangeLog& log, const Store& store, ExchangeFilter filter,
                                 const std::function<Json(const LoggedExchange&)>& print)
{
    filter.limit = mostExported;
    std::vector<std::string> texts;
    std::size_t bytes = 0;
    log.each(filter, true, [&](LoggedExchange&& exchange) {
        fetchBody(exchange, store, log.bodyLimit());
        std::string text = printJson(print(exchange).get());
        bytes += text.size();
        if (bytes > mostExportedBytes && !texts.empty())
        {
            return false;
        }
        texts.push_back(std::move(text));
        return true;
    });
    std::reverse(texts.begin(), texts.end());
    return texts;
}

} // namespace

Json detailsOf(const LoggedExchange& exchange)
{
    Json root = summaryOf(exchange);
    cJSON_AddStringToObject(root.get(), "Target", exchange.target.c_str());
    addHeaders(root.get(), "RequestHeaders", exchange.requestHeaders);
    addHeaders(root.get(), "AnswerHeaders", exchange.answerHeaders);
    addBody(root.get(), "RequestBody", exchange.requestBody, exchange.requestCut);
    addBody(root.get(), "AnswerBody", exchange.answerBody, exchange.answerCut);
    cJSON* timing = cJSON_AddObjectToObject(root.get(), "Timing");
    cJSON_AddNumberToObject(timing, "Blocked", 0);
    cJSON_AddNumberToObject(timing, "Send", milliseconds(exchange.reading));
    cJSON_AddNumberToObject(timing, "Wait", milliseconds(exchange.handling));
    cJSON_AddNumberToObject(timing, "Receive", 0);
    return root;
}

void fetchBody(LoggedExchange& exchange, const Store& store, std::size_t most)
{
    if (exchange.post != 0)
    {
        exchange.requestBody = store.body(exchange.post, most).value_or("");
        exchange.requestCut = exchange.requestBytes > exchange.requestBody.size();
    }
}

std::string exportHar(const ExchangeLog& log, const Store& store, ExchangeFilter filter, const std::string& scheme)
{
    std::string text =
        R"({"log":{"version":"1.2","creator":{"name":"viewlibd","version":")" VIEWLIB_VERSION R"("},"entries":[)";
    const char* separator = "";
    const auto print = [&](const LoggedExchange& exchange) { return harEntry(exchange, scheme); };
    for (const std::string& entry : collect(log, store, std::move(filter), print))
    {
        text += separator + entry;
        separator = ",\n";
    }
    return text + "]}}\n";
}

std::string exportLines(const ExchangeLog& log, const Store& store, ExchangeFilter filter)
{
    std::string text;
    for (const std::string& line : collect(log, store, std::move(filter), detailsOf))
    {
        text += line + "\n";
    }
    return text;
}

} // namespace viewlib
