/* SPDX-License-Identifier: Apache-2.0 */
#include "resources.h"

#include <string_view>

namespace viewlib
{

/* clang-format off */
static constexpr Resource resources[] = {
    {Kind::Register,   "POST", "/VIID/System/Register",           "", {nullptr, nullptr}, false},
    {Kind::UnRegister, "POST", "/VIID/System/UnRegister",         "", {nullptr, nullptr}, false},
    {Kind::Keepalive,  "POST", "/VIID/System/Keepalive",          "", {nullptr, nullptr}, false},
    {Kind::Time,       "GET",  "/VIID/System/Time",               "", {nullptr, nullptr}, false},
    {Kind::Collection, "POST", "/VIID/Images",                    "Image", {"ImageListObject", "ImageInfoObject"}, true},
    {Kind::Collection, "POST", "/VIID/Faces",                     "Face", {"FaceListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/Persons",                   "Person", {"PersonListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/MotorVehicles",             "MotorVehicle", {"MotorVehicleListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/NonMotorVehicles",          "NonMotorVehicle", {"NonMotorVehicleListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/Things",                    "Thing", {"ThingListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/Scenes",                    "Scene", {"SceneListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/VideoSlices",               "VideoSlice", {"VideoSliceListObject", nullptr}, true},
    {Kind::Collection, "POST", "/VIID/Files",                     "File", {"FileListObject", nullptr}, true},
    {Kind::Collection, "POST", "/VIID/IllegalRecords",            "IllegalRecord", {"IllegalRecordListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/NonMotorIllegalRecords",    "NonMotorIllegalRecord", {"NonMotorIllegalRecordListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/GPSDatas",                  "GPSData", {"GPSDataListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/WifiDetector/WifiDatas",    "WifiDevice", {"WifiDataListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/RFIDDatas",                 "RFIDDevice", {"RFIDDataListObject", nullptr}, false},
    {Kind::Collection, "POST", "/VIID/DispositionNotifications",  "DispositionNotification",
        {"DispositionNotificationListObject", "DispositionNotificationObject"}, false},
    {Kind::LogEvent,   "POST", "/log/event",                      "", {nullptr, nullptr}, false},
};
/* clang-format on */

/* "/VIID/Images/<id>/Data" gives <id> for "/VIID/Images". */
static std::string idBelow(std::string_view collection, std::string_view path)
{
    static constexpr std::string_view tail = "/Data";
    if (path.size() <= collection.size() + 1 + tail.size() || path.substr(0, collection.size()) != collection ||
        path[collection.size()] != '/' || path.substr(path.size() - tail.size()) != tail)
    {
        return {};
    }
    const std::string_view id = path.substr(collection.size() + 1, path.size() - collection.size() - 1 - tail.size());
    return id.find('/') == std::string_view::npos ? std::string(id) : std::string();
}

std::optional<ResourceMatch> findResource(const std::string& path)
{
    for (const Resource& resource : resources)
    {
        if (path == resource.path)
        {
            return ResourceMatch{resource.kind, &resource, {}, resource.method};
        }
        std::string id = resource.hasData ? idBelow(resource.path, path) : std::string();
        if (!id.empty())
        {
            return ResourceMatch{Kind::Data, &resource, std::move(id), "POST"};
        }
    }
    return std::nullopt;
}

} // namespace viewlib
