/* SPDX-License-Identifier: Apache-2.0 */
#include "resources.h"

#include <string_view>

namespace viewlib
{

/* clang-format off */
static constexpr Resource resources[] = {
    {Kind::Register,   "/VIID/System/Register",           "", {nullptr, nullptr}, false},
    {Kind::UnRegister, "/VIID/System/UnRegister",         "", {nullptr, nullptr}, false},
    {Kind::Keepalive,  "/VIID/System/Keepalive",          "", {nullptr, nullptr}, false},
    {Kind::Time,       "/VIID/System/Time",               "", {nullptr, nullptr}, false},
    {Kind::Collection, "/VIID/Images",                    "Image", {"ImageListObject", "ImageInfoObject"}, true},
    {Kind::Collection, "/VIID/Faces",                     "Face", {"FaceListObject", nullptr}, false},
    {Kind::Collection, "/VIID/Persons",                   "Person", {"PersonListObject", nullptr}, false},
    {Kind::Collection, "/VIID/MotorVehicles",             "MotorVehicle", {"MotorVehicleListObject", nullptr}, false},
    {Kind::Collection, "/VIID/NonMotorVehicles",          "NonMotorVehicle", {"NonMotorVehicleListObject", nullptr}, false},
    {Kind::Collection, "/VIID/Things",                    "Thing", {"ThingListObject", nullptr}, false},
    {Kind::Collection, "/VIID/Scenes",                    "Scene", {"SceneListObject", nullptr}, false},
    {Kind::Collection, "/VIID/VideoSlices",               "VideoSlice", {"VideoSliceListObject", nullptr}, true},
    {Kind::Collection, "/VIID/Files",                     "File", {"FileListObject", nullptr}, true},
    {Kind::Collection, "/VIID/IllegalRecords",            "IllegalRecord", {"IllegalRecordListObject", nullptr}, false},
    {Kind::Collection, "/VIID/NonMotorIllegalRecords",    "NonMotorIllegalRecord", {"NonMotorIllegalRecordListObject", nullptr}, false},
    {Kind::Collection, "/VIID/GPSDatas",                  "GPSData", {"GPSDataListObject", nullptr}, false},
    {Kind::Collection, "/VIID/WifiDetector/WifiDatas",    "WifiDevice", {"WifiDataListObject", nullptr}, false},
    {Kind::Collection, "/VIID/RFIDDatas",                 "RFIDDevice", {"RFIDDataListObject", nullptr}, false},
    {Kind::Collection, "/VIID/DispositionNotifications",  "DispositionNotification",
        {"DispositionNotificationListObject", "DispositionNotificationObject"}, false},
    {Kind::Collection, "/VIID/AccessRecords",             "AccessRecord", {"AccessRecordListObject", "AccessRecordObject"}, false},
    {Kind::Picture,    "/VIID/Pictures",                  "", {nullptr, nullptr}, false},
    {Kind::Upload,     "/VIID/Upload",                    "", {nullptr, nullptr}, false},
    {Kind::LogEvent,   "/log/event",                      "LogEvent", {nullptr, nullptr}, false},
};
/* clang-format on */

/* What follows the resource's path and a '/'; empty when the path is another. */
static std::string_view below(std::string_view resource, std::string_view path)
{
    const bool fits =
        path.size() > resource.size() && path.substr(0, resource.size()) == resource && path[resource.size()] == '/';
    return fits ? path.substr(resource.size() + 1) : std::string_view();
}

/* Whether its own path is nothing, only what lies below it. */
static bool needsMember(Kind kind)
{
    return kind == Kind::Upload || kind == Kind::Picture;
}

/* rest is "<id>" or "<id>/Data". */
static std::optional<ResourceMatch> findBelow(const Resource& resource, std::string_view rest)
{
    const std::size_t slash = rest.find('/');
    const std::string_view id = rest.substr(0, slash);
    if (id.empty())
    {
        return std::nullopt;
    }
    if (slash == std::string_view::npos && needsMember(resource.kind))
    {
        return ResourceMatch{resource.kind, &resource, std::string(id)};
    }
    if (slash == std::string_view::npos && resource.kind == Kind::Collection)
    {
        return ResourceMatch{Kind::Member, &resource, std::string(id)};
    }
    if (slash != std::string_view::npos && resource.hasData && rest.substr(slash) == "/Data")
    {
        return ResourceMatch{Kind::Data, &resource, std::string(id)};
    }
    return std::nullopt;
}

std::optional<ResourceMatch> findResource(const std::string& path)
{
    for (const Resource& resource : resources)
    {
        if (path == resource.path && !needsMember(resource.kind))
        {
            return ResourceMatch{resource.kind, &resource, {}};
        }
        if (std::optional<ResourceMatch> match = findBelow(resource, below(resource.path, path)))
        {
            return match;
        }
    }
    return std::nullopt;
}

bool ResourceMatch::allows(const std::string& method) const
{
    switch (kind)
    {
    case Kind::Register:
    case Kind::UnRegister:
    case Kind::Keepalive:
        return method == "POST";
    case Kind::Time:
    case Kind::Member:
    case Kind::Picture:
        return method == "GET";
    case Kind::Collection:
    case Kind::Data:
    case Kind::Upload:
    case Kind::LogEvent:
        break;
    }
    return method == "GET" || method == "POST";
}

const char* ResourceMatch::methods() const
{
    return !allows("POST") ? "GET" : !allows("GET") ? "POST" : "GET, POST";
}

} // namespace viewlib
