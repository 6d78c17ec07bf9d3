/* SPDX-License-Identifier: Apache-2.0 */
#include "reading.h"

#include "documents.h"
#include "text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace viewlib
{

namespace
{

constexpr std::size_t largestPage = 1000;
constexpr std::size_t lastRecord = 1000000000;

struct PageKey
{
    const char* name;
    std::size_t Page::*field;
    std::size_t most;
};
constexpr PageKey pageKeys[] = {{"RecordStartNo", &Page::start, lastRecord},
                                {"PageRecordNum", &Page::size, largestPage}};

/* One "name=value" of a query; what is wrong with it, or nothing. */
std::string readPart(std::string_view part, Page& page)
{
    const std::size_t equals = std::min(part.find('='), part.size());
    const std::string name(part.substr(0, equals));
    const std::string value(part.substr(std::min(equals + 1, part.size())));
    for (const PageKey& key : pageKeys)
    {
        if (name != key.name)
        {
            continue;
        }
        std::size_t number = 0;
        const auto parsed = std::from_chars(value.data(), value.data() + value.size(), number);
        const bool good =
            parsed.ec == std::errc() && parsed.ptr == value.data() + value.size() && number >= 1 && number <= key.most;
        page.*key.field = good ? number : page.*key.field;
        std::string fault;
        if (!good)
        {
            fault.append("\"").append(name).append("\" is \"").append(value);
            fault.append("\", expected a whole number from 1 to ").append(std::to_string(key.most));
        }
        return shorten(std::move(fault));
    }
    return shorten("\"" + name + "\" is not known here, only RecordStartNo and PageRecordNum are");
}

/* {"FaceListObject":{"TotalNum":..,"RecordStartNo":..,"PageRecordNum":..,"FaceObject":[...]}}, the newest first. */
Answer list(const Store& store, const Resource& resource, const Page& page)
{
    const MemberNames names = memberNames(resource.objects);
    const std::string root =
        resource.roots[0] != nullptr ? resource.roots[0] : std::string(resource.objects) + "ListObject";
    std::string text = "{\"" + root + "\":{\"TotalNum\":" + std::to_string(store.count(resource.objects)) +
                       ",\"RecordStartNo\":" + std::to_string(page.start) +
                       ",\"PageRecordNum\":" + std::to_string(page.size) + ",\"" + names.array + "\":[";
    const char* separator = "";
    for (const std::string& document : store.documents(resource.objects, page.start - 1, page.size))
    {
        text += separator;
        text += names.inner != nullptr ? std::string("{\"") + names.inner + "\":" + document + "}" : document;
        separator = ",";
    }
    return Answer(200, text + "]}}");
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

PageQuery parsePage(const std::string& query)
{
    PageQuery result;
    for (std::size_t from = 0; from < query.size() && result.fault.empty();)
    {
        const std::size_t end = std::min(query.find('&', from), query.size());
        if (end > from)
        {
            result.fault = readPart(std::string_view(query).substr(from, end - from), result.page);
        }
        from = end + 1;
    }
    return result;
}

std::optional<Answer> showStored(const Store& store, const ResourceMatch& match, const Page& page)
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
        return list(store, *match.resource, page);
    }
}

} // namespace viewlib
