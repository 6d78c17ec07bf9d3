/* SPDX-License-Identifier: Apache-2.0 */
#include "shapes.h"

#include "json.h"
#include "sqlite.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <optional>
#include <vector>

namespace viewlib
{

namespace
{

const char* const objectKey = "ResponseStatusObject";
const char* const listKey = "ResponseStatusListObject";

struct Statuses
{
    std::vector<Json> all;
    Envelope envelope = Envelope::Usual; /* that they came in */
};

Statuses takeStatuses(cJSON* root)
{
    Statuses statuses;
    cJSON* list = cJSON_GetObjectItemCaseSensitive(root, listKey);
    statuses.envelope = list == nullptr ? Envelope::Object : Envelope::List;
    cJSON* holder = list == nullptr ? root : list;
    cJSON* found = cJSON_GetObjectItemCaseSensitive(holder, objectKey);
    if (cJSON_IsObject(found))
    {
        statuses.all.emplace_back(cJSON_DetachItemViaPointer(holder, found));
    }
    while (cJSON_IsArray(found) && found->child != nullptr)
    {
        statuses.all.emplace_back(cJSON_DetachItemViaPointer(found, found->child));
    }
    return statuses;
}

/* value is JSON. */
void replace(cJSON* object, const char* key, const std::string& value)
{
    cJSON_ReplaceItemInObjectCaseSensitive(object, key, parseJson(value).release());
}

void shapeStatus(cJSON* status, const Answer& answer)
{
    const cJSON* code = cJSON_GetObjectItemCaseSensitive(status, "StatusCode");
    if (answer.statusCode)
    {
        replace(status, "StatusCode", *answer.statusCode);
    }
    else if (answer.statusCodeAsText && cJSON_IsNumber(code))
    {
        replace(status, "StatusCode", '"' + std::to_string(code->valueint) + '"');
    }
    if (answer.statusText)
    {
        cJSON_ReplaceItemInObjectCaseSensitive(status, "StatusString", cJSON_CreateString(answer.statusText->c_str()));
    }
    cJSON* id = cJSON_GetObjectItemCaseSensitive(status, "Id");
    switch (id == nullptr ? StatusId::Usual : answer.statusId)
    {
    case StatusId::Usual:
        break;
    case StatusId::Empty:
        replace(status, "Id", "\"\"");
        break;
    case StatusId::Null:
        replace(status, "Id", "null");
        break;
    case StatusId::UpperCase:
        cJSON* spelled = cJSON_CreateString(cJSON_GetStringValue(id));
        spelled->string = static_cast<char*>(cJSON_malloc(3));
        std::copy_n("ID", 3, spelled->string);
        cJSON_ReplaceItemViaPointer(status, id, spelled);
        break;
    }
}

/* The statuses as an array. */
cJSON* arrayOf(std::vector<Json>& statuses)
{
    cJSON* array = cJSON_CreateArray();
    for (Json& status : statuses)
    {
        cJSON_AddItemToArray(array, status.release());
    }
    return array;
}

Json inList(cJSON* statuses)
{
    Json root(cJSON_CreateObject());
    cJSON_AddItemToObject(cJSON_AddObjectToObject(root.get(), listKey), objectKey, statuses);
    return root;
}

Json inObject(cJSON* status)
{
    Json root(cJSON_CreateObject());
    cJSON_AddItemToObject(root.get(), objectKey, status);
    return root;
}

Json wrap(Envelope envelope, std::vector<Json>& statuses)
{
    Json first(cJSON_Duplicate(statuses.front().get(), 1));
    switch (envelope)
    {
    case Envelope::Object:
        return inObject(first.release());
    case Envelope::BareArray:
        return inObject(arrayOf(statuses));
    case Envelope::BareStatus:
        return first;
    case Envelope::Both: {
        Json root = inObject(first.release());
        cJSON_AddItemToObject(cJSON_AddObjectToObject(root.get(), listKey), objectKey, arrayOf(statuses));
        return root;
    }
    case Envelope::ObjectForArray:
        return inList(first.release());
    case Envelope::EmptyArray:
        return inList(cJSON_CreateArray());
    case Envelope::NullArray:
        return inList(cJSON_CreateNull());
    case Envelope::NullList: {
        Json root(cJSON_CreateObject());
        cJSON_AddNullToObject(root.get(), listKey);
        return root;
    }
    case Envelope::Null:
        return Json(cJSON_CreateNull());
    case Envelope::Usual:
    case Envelope::List:
        break;
    }
    return inList(arrayOf(statuses));
}

std::tm calendar(std::chrono::system_clock::time_point time, const std::optional<std::chrono::minutes>& utcOffset)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    if (utcOffset)
    {
        const std::time_t shifted = seconds + std::chrono::duration_cast<std::chrono::seconds>(*utcOffset).count();
        gmtime_r(&shifted, &parts);
        parts.tm_gmtoff = std::chrono::duration_cast<std::chrono::seconds>(*utcOffset).count();
    }
    else
    {
        localtime_r(&seconds, &parts);
    }
    return parts;
}

std::string formatted(const std::tm& parts, const char* format)
{
    char text[64];
    return std::string(text, std::strftime(text, sizeof text, format, &parts));
}

/* "+08:00" */
std::string numericZone(long seconds)
{
    char text[32];
    const long minutes = std::labs(seconds) / 60;
    std::snprintf(text, sizeof text, "%c%02ld:%02ld", seconds < 0 ? '-' : '+', minutes / 60, minutes % 60);
    return text;
}

/* As JSON. */
std::string timeText(const TimeShape& shape, std::chrono::system_clock::time_point now)
{
    const std::tm parts = calendar(now, shape.utcOffset);
    switch (shape.form)
    {
    case TimeForm::EpochMilliseconds:
        return std::to_string(toMilliseconds(now));
    case TimeForm::EpochSeconds:
        return std::to_string(toMilliseconds(now) / 1000);
    case TimeForm::Rfc3339:
        return '"' + formatted(parts, "%Y-%m-%dT%H:%M:%S") + numericZone(parts.tm_gmtoff) + '"';
    case TimeForm::Digits:
        break;
    }
    return '"' + formatted(parts, "%Y%m%d%H%M%S") + '"';
}

std::uint32_t crc32(const std::string& bytes)
{
    std::uint32_t crc = ~std::uint32_t(0);
    for (const char byte : bytes)
    {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
        {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~crc;
}

void addLittleEndian(std::string& bytes, std::uint32_t value, int count)
{
    for (int i = 0; i < count; ++i)
    {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

} // namespace

std::string shapeStatuses(const std::string& body, const Answer& answer)
{
    const Json root = parseJson(body);
    Statuses statuses = takeStatuses(root.get());
    if (statuses.all.empty())
    {
        return body;
    }
    for (const Json& status : statuses.all)
    {
        shapeStatus(status.get(), answer);
    }
    const Envelope envelope = answer.envelope == Envelope::Usual ? statuses.envelope : answer.envelope;
    return printJson(wrap(envelope, statuses.all).get());
}

std::string shapeTime(const std::string& body, const TimeShape& shape, std::chrono::system_clock::time_point now)
{
    const Json root = parseJson(body);
    cJSON* object = cJSON_GetObjectItemCaseSensitive(root.get(), "SystemTimeObject");
    if (object == nullptr)
    {
        return body;
    }
    replace(object, "LocalTime", timeText(shape, now + shape.offset));
    if (shape.mode)
    {
        replace(object, "TimeMode", *shape.mode);
    }
    if (shape.zone)
    {
        replace(object, "TimeZone", *shape.zone);
    }
    return printJson(root.get());
}

std::string gzip(const std::string& bytes)
{
    constexpr std::size_t largestBlock = 65535;
    std::string result("\x1F\x8B\x08\x00\x00\x00\x00\x00\x00\xFF", 10); /* no flags, no time, unknown system */
    std::size_t from = 0;
    do
    {
        const std::size_t length = std::min(bytes.size() - from, largestBlock);
        const bool last = from + length == bytes.size();
        result += last ? '\x01' : '\x00'; /* a stored block */
        addLittleEndian(result, static_cast<std::uint32_t>(length), 2);
        addLittleEndian(result, ~static_cast<std::uint32_t>(length), 2);
        result.append(bytes, from, length);
        from += length;
    } while (from < bytes.size());
    addLittleEndian(result, crc32(bytes), 4);
    addLittleEndian(result, static_cast<std::uint32_t>(bytes.size()), 4);
    return result;
}

} // namespace viewlib
