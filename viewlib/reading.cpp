/* SPDX-License-Identifier: Apache-2.0 */
#include "reading.h"

#include "json.h"
#include "text.h"

#include <charconv>
#include <cstdint>

namespace viewlib
{

namespace
{

constexpr std::size_t longestList = 1000;

Answer list(const Store& store, const std::string& kind)
{
    Json root(cJSON_CreateObject());
    cJSON_AddNumberToObject(root.get(), "Total", static_cast<double>(store.count(kind)));
    cJSON* array = cJSON_AddArrayToObject(root.get(), "Objects");
    for (const ListedObject& object : store.newest(kind, longestList))
    {
        cJSON* entry = cJSON_CreateObject();
        cJSON_AddItemToArray(array, entry);
        cJSON_AddStringToObject(entry, "Id", object.objectId.c_str());
        cJSON_AddStringToObject(entry, "Received", localTime(object.received).c_str());
        cJSON_AddStringToObject(entry, "Device", object.device.c_str());
        cJSON_AddNumberToObject(entry, "Bytes", static_cast<double>(object.bytes));
        cJSON* pictures = cJSON_AddArrayToObject(entry, "Pictures");
        for (const std::int64_t id : object.pictures)
        {
            const std::string path = "/VIID/Pictures/" + std::to_string(id);
            cJSON_AddItemToArray(pictures, cJSON_CreateString(path.c_str()));
        }
    }
    return Answer(200, printJson(root.get()));
}

std::optional<Answer> pictureAnswer(std::optional<Picture> picture)
{
    if (!picture)
    {
        return std::nullopt;
    }
    const char* type = imageTypeOf(picture->bytes).mediaType;
    Answer answer(200, std::move(picture->bytes));
    answer.contentType = type;
    return answer;
}

std::optional<Picture> pictureAt(const Store& store, const std::string& id)
{
    std::int64_t number = 0;
    const auto parsed = std::from_chars(id.data(), id.data() + id.size(), number);
    return parsed.ec == std::errc() && parsed.ptr == id.data() + id.size() ? store.picture(number) : std::nullopt;
}

std::optional<Answer> document(const Store& store, const ResourceMatch& match)
{
    std::optional<std::string> text = store.documentWith(match.resource->objects, match.id);
    return text ? std::optional<Answer>(Answer(200, *std::move(text))) : std::nullopt;
}

} // namespace

std::optional<Answer> showStored(const Store& store, const ResourceMatch& match)
{
    switch (match.kind)
    {
    case Kind::Member:
        return document(store, match);
    case Kind::Data:
        return pictureAnswer(store.dataOf(match.resource->objects, match.id));
    case Kind::Picture:
        return pictureAnswer(pictureAt(store, match.id));
    default:
        return list(store, match.resource->objects);
    }
}

} // namespace viewlib
