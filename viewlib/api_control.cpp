/* SPDX-License-Identifier: Apache-2.0 */
#include "api_control.h"

#include "digest.h"
#include "json.h"
#include "sqlite.h"
#include "text.h"

#include <algorithm>
#include <cmath>

namespace viewlib
{

namespace
{

constexpr std::uint64_t longestWait = 25;
constexpr std::chrono::milliseconds refreshInterval(500);
constexpr double longestOffset = 366.0 * 24 * 3600 * 1000;

void addTime(cJSON* object, const char* name, std::chrono::system_clock::time_point time)
{
    cJSON_AddNumberToObject(object, name, static_cast<double>(toMilliseconds(time)));
}

void addCount(cJSON* object, const char* name, std::uint64_t count)
{
    cJSON_AddNumberToObject(object, name, static_cast<double>(count));
}

/* How registration is guarded, in a word. */
std::string challengeOf(const Config& config)
{
    std::string names;
    for (const Algorithm algorithm : config.algorithms)
    {
        names += (names.empty() ? "" : ", ") + std::string(digest::name(algorithm));
    }
    return config.user.empty() ? "none" : names;
}

Reply status(const Controlled& of)
{
    const std::vector<Devices::Device> devices = of.devices.all();
    const StoreCounts counts = of.store.counts();
    const Json root(cJSON_CreateObject());
    cJSON_AddStringToObject(root.get(), "Name", "viewlibd");
    cJSON_AddStringToObject(root.get(), "Version", VIEWLIB_VERSION);
    cJSON_AddStringToObject(root.get(), "Url", of.url().c_str());
    cJSON_AddStringToObject(root.get(), "User", of.config.user.c_str());
    if (of.config.storage == ":memory:")
    {
        cJSON_AddNullToObject(root.get(), "Data");
    }
    else
    {
        cJSON_AddStringToObject(root.get(), "Data", of.config.storage.c_str());
    }
    cJSON_AddStringToObject(root.get(), "Now", localTime(of.service.shownTime()).c_str());
    cJSON_AddNumberToObject(root.get(), "ClockOffsetMs", static_cast<double>(of.service.clockOffset().count()));
    cJSON_AddStringToObject(root.get(), "Challenge", challengeOf(of.config).c_str());
    cJSON* list = cJSON_AddObjectToObject(root.get(), "Counts");
    addCount(list, "Devices", devices.size());
    addCount(
        list, "Online",
        static_cast<std::uint64_t>(std::count_if(
            devices.begin(), devices.end(), [](const Devices::Device& device) { return device.registration.online; })));
    addCount(list, "Objects", counts.objects);
    addCount(list, "Pictures", counts.pictures);
    addCount(list, "Uploads", of.uploads.count());
    addCount(list, "Exchanges", of.exchanges());
    addCount(list, "Faults", of.faults());
    addCount(root.get(), "Seq", of.feed.last());
    return jsonReply(200, root.get());
}

Reply devicesReply(Devices& devices)
{
    const Json root(cJSON_CreateObject());
    cJSON* list = cJSON_AddArrayToObject(root.get(), "Devices");
    for (const Devices::Device& device : devices.all())
    {
        const Registration& registration = device.registration;
        cJSON* entry = cJSON_CreateObject();
        cJSON_AddItemToArray(list, entry);
        cJSON_AddStringToObject(entry, "Device", registration.device.c_str());
        cJSON_AddStringToObject(entry, "State", registration.online ? "online" : "offline");
        addTime(entry, "Since", registration.since);
        if (registration.lastKeepalive > registration.since)
        {
            addTime(entry, "LastKeepalive", registration.lastKeepalive);
        }
        else
        {
            cJSON_AddNullToObject(entry, "LastKeepalive");
        }
        addTime(entry, "LastSeen", device.lastSeen);
        cJSON_AddStringToObject(entry, "Address", device.address.c_str());
        addCount(entry, "Posts", device.posts);
        if (device.expires)
        {
            addTime(entry, "Expires", *device.expires);
        }
        else
        {
            cJSON_AddNullToObject(entry, "Expires");
        }
    }
    return jsonReply(200, root.get());
}

/* Done to a device; true when it was there. */
Reply outcome(bool known, const std::string& device)
{
    if (!known)
    {
        throw ApiError(404, "device \"" + device + "\" is not registered");
    }
    const Json empty(cJSON_CreateObject());
    return jsonReply(200, empty.get());
}

Reply feedReply(const Controlled& of, const ApiRequest& request)
{
    const std::uint64_t after = request.number("after", 0, 0, std::uint64_t(1) << 53);
    const std::uint64_t wait = request.number("wait", 0, 0, longestWait);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(wait);
    of.devices.refresh();
    for (;;)
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0 || of.feed.wait(after, std::min(left, refreshInterval)) || of.feed.closed())
        {
            break;
        }
        of.devices.refresh();
    }
    const Feed::Page page = of.feed.after(after);
    std::string text =
        "{\"Seq\":" + std::to_string(page.last) + (page.missed ? ",\"Missed\":true" : "") + ",\"Events\":[";
    for (const std::string& event : page.events)
    {
        text += (text.back() == '[' ? "" : ",") + event;
    }
    return jsonReply(200, text + "]}");
}

Reply setClock(Service& service, const ApiRequest& request)
{
    const Json body = request.body();
    const cJSON* offset = cJSON_GetObjectItemCaseSensitive(body.get(), "OffsetMs");
    if (!cJSON_IsNumber(offset) || std::fabs(offset->valuedouble) > longestOffset ||
        offset->valuedouble != std::floor(offset->valuedouble))
    {
        throw ApiError(400, "\"OffsetMs\" is missing or no whole number within a year");
    }
    service.setClockOffset(std::chrono::milliseconds(static_cast<long long>(offset->valuedouble)));
    const Json root(cJSON_CreateObject());
    cJSON_AddNumberToObject(root.get(), "OffsetMs", offset->valuedouble);
    return jsonReply(200, root.get());
}

} // namespace

void addControlEndpoints(Api& api, const Controlled& controlled)
{
    const Controlled of = controlled;
    api.add("GET", "/api/status", [of](const ApiRequest&) { return status(of); });
    api.add("GET", "/api/feed", [of](const ApiRequest& request) { return feedReply(of, request); });
    api.add("GET", "/api/devices", [of](const ApiRequest&) { return devicesReply(of.devices); });
    api.add("POST", "/api/devices/*/expire", [of](const ApiRequest& request) {
        return outcome(of.devices.expire(request.names.at(0)), request.names.at(0));
    });
    api.add("DELETE", "/api/devices/*", [of](const ApiRequest& request) {
        return outcome(of.devices.forget(request.names.at(0)), request.names.at(0));
    });
    api.add("PUT", "/api/clock", [of](const ApiRequest& request) { return setClock(of.service, request); });
}

} // namespace viewlib
