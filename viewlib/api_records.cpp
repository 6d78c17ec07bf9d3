/* SPDX-License-Identifier: Apache-2.0 */
#include "api_records.h"

#include "exchange_summary.h"
#include "export.h"
#include "sqlite.h"

namespace viewlib
{

namespace
{

constexpr std::uint64_t defaultLimit = 50;
constexpr std::uint64_t largestLimit = 1000;
constexpr std::size_t mostSiblings = 200;
constexpr std::size_t mostPosts = 100000; /* that a text is looked for in */
constexpr auto lastNumber = static_cast<std::uint64_t>(INT64_MAX);

void addNumber(cJSON* object, const char* name, std::int64_t number)
{
    cJSON_AddNumberToObject(object, name, static_cast<double>(number));
}

std::string pictureUrl(std::int64_t id)
{
    return "/VIID/Pictures/" + std::to_string(id);
}

/* ------------------------------------------------------------------------------------------------------- objects */

void addPictures(cJSON* object, const std::vector<Picture>& pictures)
{
    cJSON* array = cJSON_AddArrayToObject(object, "Pictures");
    for (const Picture& picture : pictures)
    {
        cJSON* entry = cJSON_CreateObject();
        cJSON_AddItemToArray(array, entry);
        addNumber(entry, "Picture", picture.id);
        cJSON_AddStringToObject(entry, "Type", picture.type.c_str());
        addNumber(entry, "Width", picture.width);
        addNumber(entry, "Height", picture.height);
        cJSON_AddStringToObject(entry, "Url", pictureUrl(picture.id).c_str());
    }
}

Json objectSummary(const ShownObject& shown)
{
    Json root(cJSON_CreateObject());
    addNumber(root.get(), "Object", shown.object.id);
    cJSON_AddStringToObject(root.get(), "Kind", shown.object.kind.c_str());
    cJSON_AddStringToObject(root.get(), "Id", shown.object.objectId.c_str());
    cJSON_AddStringToObject(root.get(), "Device", shown.device.c_str());
    addNumber(root.get(), "Received", toMilliseconds(shown.received));
    addNumber(root.get(), "Bytes", static_cast<std::int64_t>(shown.bytes));
    cJSON_AddStringToObject(root.get(), "Path", shown.path.c_str());
    cJSON* notes = cJSON_AddArrayToObject(root.get(), "Notes");
    for (const std::string& note : shown.object.notes)
    {
        cJSON_AddItemToArray(notes, cJSON_CreateString(note.c_str()));
    }
    addPictures(root.get(), shown.pictures);
    return root;
}

cJSON* boxObject(const std::optional<Box>& box)
{
    if (!box)
    {
        return cJSON_CreateNull();
    }
    cJSON* object = cJSON_CreateObject();
    cJSON_AddNumberToObject(object, "LeftTopX", box->left);
    cJSON_AddNumberToObject(object, "LeftTopY", box->top);
    cJSON_AddNumberToObject(object, "RightBtmX", box->right);
    cJSON_AddNumberToObject(object, "RightBtmY", box->bottom);
    return object;
}

/* The picture that an object's box lies in: that of its source, or the scene among its own. */
std::optional<Scene> sceneOf(const Store& store, const ShownObject& shown)
{
    const bool isImage = shown.object.kind == "Image";
    const std::optional<Scene> source = store.sceneOf(isImage ? shown.object.objectId : shown.sourceId);
    if (source && source->picture != 0)
    {
        return source;
    }
    for (const Picture& picture : shown.pictures)
    {
        if (isSceneType(picture.type))
        {
            return Scene{picture.id, picture.width, picture.height};
        }
    }
    return std::nullopt;
}

cJSON* sceneObject(const std::optional<Scene>& scene)
{
    if (!scene)
    {
        return cJSON_CreateNull();
    }
    cJSON* object = cJSON_CreateObject();
    addNumber(object, "Picture", scene->picture);
    cJSON_AddStringToObject(object, "Url", pictureUrl(scene->picture).c_str());
    addNumber(object, "Width", scene->width);
    addNumber(object, "Height", scene->height);
    return object;
}

cJSON* siblingsOf(const Store& store, const ShownObject& shown)
{
    cJSON* array = cJSON_CreateArray();
    const bool isImage = shown.object.kind == "Image";
    const std::string& source = isImage ? shown.object.objectId : shown.sourceId;
    for (const ShownObject& sibling : store.withSource(source, mostSiblings))
    {
        if (sibling.object.id == shown.object.id)
        {
            continue;
        }
        cJSON* entry = cJSON_CreateObject();
        cJSON_AddItemToArray(array, entry);
        addNumber(entry, "Object", sibling.object.id);
        cJSON_AddStringToObject(entry, "Kind", sibling.object.kind.c_str());
        cJSON_AddStringToObject(entry, "Id", sibling.object.objectId.c_str());
        const Json members(parseJson(sibling.object.document));
        cJSON_AddItemToObject(entry, "Box", boxObject(boxOf(members.get())));
    }
    return array;
}

Reply listObjects(const Records& records, const ApiRequest& request)
{
    ObjectFilter filter;
    filter.kind = request.text("Kind");
    filter.device = request.text("Device");
    filter.objectId = request.text("Id");
    filter.notes = request.number("Notes", 0, 0, 1) == 1;
    filter.before = static_cast<std::int64_t>(request.number("Before", 0, 0, lastNumber));
    filter.limit = static_cast<std::size_t>(request.number("Limit", defaultLimit, 1, largestLimit));
    const Json root(cJSON_CreateObject());
    addNumber(root.get(), "Total", static_cast<std::int64_t>(records.store.count(filter)));
    cJSON* array = cJSON_AddArrayToObject(root.get(), "Objects");
    for (const ShownObject& shown : records.store.list(filter))
    {
        cJSON_AddItemToArray(array, objectSummary(shown).release());
    }
    return jsonReply(200, root.get());
}

std::int64_t numberIn(const ApiRequest& request)
{
    return static_cast<std::int64_t>(std::min(request.nameNumber(0), lastNumber));
}

Reply showObject(const Records& records, const ApiRequest& request)
{
    const std::optional<ShownObject> shown = records.store.object(numberIn(request));
    if (!shown)
    {
        throw ApiError(404, "there is no object " + request.names.at(0));
    }
    const Json root = objectSummary(*shown);
    Json members = parseJson(shown->object.document);
    const std::optional<Box> box = boxOf(members.get());
    cJSON_AddItemToObject(root.get(), "Members", members ? members.release() : cJSON_CreateObject());
    addNumber(root.get(), "Post", shown->object.post);
    const std::optional<std::int64_t> exchange = records.log.ofPost(shown->object.post);
    cJSON_AddItemToObject(root.get(), "Exchange",
                          exchange ? cJSON_CreateNumber(static_cast<double>(*exchange)) : cJSON_CreateNull());
    cJSON_AddItemToObject(root.get(), "Box", boxObject(box));
    cJSON_AddItemToObject(root.get(), "Scene", sceneObject(sceneOf(records.store, *shown)));
    cJSON_AddItemToObject(root.get(), "Siblings", siblingsOf(records.store, *shown));
    return jsonReply(200, root.get());
}

Reply listUploads(const Records& records)
{
    const Json root(cJSON_CreateObject());
    cJSON* array = cJSON_AddArrayToObject(root.get(), "Uploads");
    for (const Upload& upload : records.uploads.overview())
    {
        cJSON* entry = cJSON_CreateObject();
        cJSON_AddItemToArray(array, entry);
        cJSON_AddStringToObject(entry, "Name", upload.name.c_str());
        addNumber(entry, "Length", static_cast<std::int64_t>(upload.length));
        cJSON_AddStringToObject(entry, "Hash", upload.md5.c_str());
        addNumber(entry, "Changed", toMilliseconds(upload.changed));
        cJSON_AddStringToObject(entry, "Url", ("/VIID/Upload/" + upload.name).c_str());
    }
    return jsonReply(200, root.get());
}

/* ----------------------------------------------------------------------------------------------------- exchanges */

/* "404", or "4", "4xx" for all that begin so. */
std::string statusFilter(const ApiRequest& request)
{
    std::string status = request.text("Status");
    if (status.size() == 3 && status.compare(1, 2, "xx") == 0)
    {
        status.resize(1);
    }
    if (!status.empty() &&
        ((status.size() != 1 && status.size() != 3) || status.find_first_not_of("0123456789") != std::string::npos))
    {
        throw ApiError(400, "\"Status\" is \"" + request.text("Status") + "\": expected a status such as 404, or 4xx");
    }
    return status;
}

ExchangeFilter exchangeFilter(const Records& records, const ApiRequest& request)
{
    ExchangeFilter filter;
    filter.path = request.text("Path");
    filter.device = request.text("Device");
    filter.method = request.text("Method");
    filter.status = statusFilter(request);
    filter.text = request.text("Text");
    if (!filter.text.empty())
    {
        filter.posts = records.store.postsWith(filter.text, mostPosts);
    }
    filter.before = static_cast<std::int64_t>(request.number("Before", 0, 0, lastNumber));
    filter.limit = static_cast<std::size_t>(request.number("Limit", defaultLimit, 1, largestLimit));
    return filter;
}

Reply listExchanges(const Records& records, const ApiRequest& request)
{
    const ExchangeFilter filter = exchangeFilter(records, request);
    const Json root(cJSON_CreateObject());
    addNumber(root.get(), "Total", static_cast<std::int64_t>(records.log.count(filter)));
    cJSON* array = cJSON_AddArrayToObject(root.get(), "Exchanges");
    records.log.each(filter, false, [&](LoggedExchange&& exchange) {
        cJSON_AddItemToArray(array, summaryOf(exchange).release());
        return true;
    });
    return jsonReply(200, root.get());
}

Reply showExchange(const Records& records, const ApiRequest& request)
{
    std::optional<LoggedExchange> exchange = records.log.find(numberIn(request));
    if (!exchange)
    {
        throw ApiError(404, "there is no exchange " + request.names.at(0));
    }
    fetchBody(*exchange, records.store, records.log.bodyLimit());
    return jsonReply(200, detailsOf(*exchange).get());
}

Reply attachment(std::string body, const char* type, const char* name)
{
    Reply reply(200, std::move(body));
    reply.contentType = type;
    reply.with("Content-Disposition", std::string("attachment; filename=\"") + name + "\"");
    reply.with("Cache-Control", "no-store");
    reply.with("X-Content-Type-Options", "nosniff");
    return reply;
}

} // namespace

void addRecordEndpoints(Api& api, const Records& records)
{
    api.add("GET", "/api/objects", [records](const ApiRequest& request) { return listObjects(records, request); });
    api.add("GET", "/api/objects/*", [records](const ApiRequest& request) { return showObject(records, request); });
    api.add("GET", "/api/uploads", [records](const ApiRequest&) { return listUploads(records); });
    api.add("GET", "/api/exchanges", [records](const ApiRequest& request) { return listExchanges(records, request); });
    api.add("GET", "/api/exchanges/*", [records](const ApiRequest& request) { return showExchange(records, request); });
    api.add("GET", "/api/exchanges.har", [records](const ApiRequest& request) {
        return attachment(exportHar(records.log, records.store, exchangeFilter(records, request), records.scheme),
                          "application/json", "exchanges.har");
    });
    api.add("GET", "/api/exchanges.jsonl", [records](const ApiRequest& request) {
        return attachment(exportLines(records.log, records.store, exchangeFilter(records, request)),
                          "application/x-ndjson", "exchanges.jsonl");
    });
}

} // namespace viewlib
