/* SPDX-License-Identifier: Apache-2.0 */
#include "exchange_summary.h"

#include "sqlite.h"

#include <charconv>
#include <chrono>
#include <string_view>

namespace viewlib
{

namespace
{

/* The first status of an envelope, wherever it stands in it. */
const cJSON* findStatus(const cJSON* node, int depth)
{
    if (node == nullptr || depth == 0)
    {
        return nullptr;
    }
    if (cJSON_IsObject(node) && cJSON_GetObjectItemCaseSensitive(node, "StatusCode") != nullptr)
    {
        return node;
    }
    return findStatus(node->child, depth - 1);
}

void addNumber(cJSON* object, const char* name, std::uint64_t number)
{
    cJSON_AddNumberToObject(object, name, static_cast<double>(number));
}

} // namespace

/* Codes are sent as numbers and as texts. */
AnswerStatus statusOf(const std::string& answer)
{
    constexpr int deepest = 4;
    constexpr std::size_t largest = 65536; /* an envelope is small; pictures and documents are not searched */
    AnswerStatus told;
    const Json tree = answer.size() <= largest ? parseJson(answer) : nullptr;
    const cJSON* status = findStatus(tree.get(), deepest);
    const cJSON* code = cJSON_GetObjectItemCaseSensitive(status, "StatusCode");
    if (cJSON_IsNumber(code))
    {
        told.code = code->valueint;
    }
    else if (const char* text = cJSON_GetStringValue(code))
    {
        const std::string_view digits(text);
        std::int64_t value = 0;
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        told.code = parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size()
                        ? std::optional<std::int64_t>(value)
                        : std::nullopt;
    }
    told.text = textOf(status, "StatusString");
    return told;
}

Json summaryOf(const LoggedExchange& exchange)
{
    Json root(cJSON_CreateObject());
    cJSON* object = root.get();
    addNumber(object, "Exchange", static_cast<std::uint64_t>(exchange.number));
    cJSON_AddNumberToObject(object, "Time", static_cast<double>(toMilliseconds(exchange.time)));
    cJSON_AddStringToObject(object, "Client", exchange.client.c_str());
    cJSON_AddStringToObject(object, "Device", exchange.device.c_str());
    cJSON_AddStringToObject(object, "Method", exchange.method.c_str());
    cJSON_AddStringToObject(object, "Path", exchange.path.c_str());
    cJSON_AddNumberToObject(object, "Status", exchange.status);
    cJSON_AddItemToObject(object, "StatusCode",
                          exchange.code ? cJSON_CreateNumber(static_cast<double>(*exchange.code)) : cJSON_CreateNull());
    addNumber(object, "RequestBytes", exchange.requestBytes);
    addNumber(object, "AnswerBytes", exchange.answerBytes);
    const std::chrono::duration<double, std::milli> took = exchange.reading + exchange.handling;
    cJSON_AddNumberToObject(object, "Ms", took.count());
    cJSON_AddItemToObject(object, "Fault",
                          exchange.fault ? cJSON_CreateNumber(static_cast<double>(*exchange.fault))
                                         : cJSON_CreateNull());
    cJSON_AddStringToObject(object, "Reason", exchange.reason.c_str());
    cJSON_AddBoolToObject(object, "Complete", exchange.complete ? 1 : 0);
    return root;
}

} // namespace viewlib
