/* SPDX-License-Identifier: Apache-2.0 */
#include "documents.h"

#include "base64.h"
#include "json.h"

#include <cstring>
#include <optional>

namespace viewlib
{

namespace
{

struct ObjectKind
{
    const char* key; /* the member whose value is the object, or an array of such objects */
    const char* kind;
    const char* idKey;
};

constexpr ObjectKind objectKinds[] = {
    {"ImageInfo", "Image", "ImageID"},
    {"ImageInfoObject", "Image", "ImageID"},
    {"FaceObject", "Face", "FaceID"},
    {"PersonObject", "Person", "PersonID"},
    {"MotorVehicleObject", "MotorVehicle", "MotorVehicleID"},
    {"NonMotorVehicleObject", "NonMotorVehicle", "NonMotorVehicleID"},
    {"ThingObject", "Thing", "ThingID"},
    {"SceneObject", "Scene", "SceneID"},
    {"VideoSliceInfo", "VideoSlice", "VideoID"},
    {"FileInfo", "File", "FileID"},
    {"IllegalRecordObject", "IllegalRecord", "IllegalRecordID"},
    {"NonMotorIllegalRecordObject", "NonMotorIllegalRecord", "IllegalRecordID"},
    {"NonMotorIllegalRecord", "NonMotorIllegalRecord", "IllegalRecordID"},
    {"AccessRecordObject", "AccessRecord", "AccessRecordID"},
    {"GPSDataObject", "GPSData", "GPSID"},
    {"GPSData", "GPSData", "GPSID"}, /* of a WiFi probe */
    {"WifiDevice", "WifiDevice", "WifiDeviceDataID"},
    {"WifiUsersObject", "WifiUser", "WifiUserDataID"},
    {"ImeiObject", "Imei", "ImeiID"},
    {"RFIDDevice", "RFIDDevice", "RFIDDeviceDataID"},
    {"RFIDInfoObject", "RFIDInfo", "RFIDInfoDataID"},
    {"DispositionNotificationObject", "DispositionNotification", "NotificationID"},
};

const ObjectKind* kindOf(const char* key)
{
    for (const ObjectKind& kind : objectKinds)
    {
        if (key != nullptr && std::strcmp(kind.key, key) == 0)
        {
            return &kind;
        }
    }
    return nullptr;
}

/* A walk over one document. */
class Walk
{
  public:
    explicit Walk(bool allowLineBreaks) : m_allowLineBreaks(allowLineBreaks)
    {
    }
    void visit(cJSON* node);
    Findings take()
    {
        return std::move(m_findings);
    }

  private:
    void visitMember(cJSON* member, const std::string& data);
    void addObject(const ObjectKind& kind, cJSON* object, const std::string& data);
    void addSubImages(cJSON* object, FoundObject& found);
    void addPicture(FoundObject& found, Picture picture, const std::string& base64);
    std::string detachData(cJSON* object);

    const bool m_allowLineBreaks;
    Findings m_findings;
};

std::string Walk::detachData(cJSON* object)
{
    const Json data(cJSON_DetachItemFromObjectCaseSensitive(object, "Data"));
    const char* text = cJSON_GetStringValue(data.get());
    return text == nullptr ? std::string() : std::string(text);
}

void Walk::addPicture(FoundObject& found, Picture picture, const std::string& base64)
{
    if (base64.empty())
    {
        return;
    }
    std::optional<std::string> bytes = decodeBase64(base64, m_allowLineBreaks);
    if (!bytes)
    {
        m_findings.fault = "\"Data\" of " + found.object.kind + " \"" + found.object.objectId + "\" is not bare base64";
        return;
    }
    picture.bytes = std::move(*bytes);
    found.pictures.push_back(std::move(picture));
}

void Walk::addSubImages(cJSON* object, FoundObject& found)
{
    cJSON* list = cJSON_GetObjectItemCaseSensitive(cJSON_GetObjectItemCaseSensitive(object, "SubImageList"),
                                                   "SubImageInfoObject");
    cJSON* subImage = nullptr;
    cJSON_ArrayForEach(subImage, list)
    {
        Picture picture;
        picture.imageId = textOf(subImage, "ImageID");
        picture.type = textOf(subImage, "Type");
        picture.format = textOf(subImage, "FileFormat");
        addPicture(found, std::move(picture), detachData(subImage));
    }
}

void Walk::addObject(const ObjectKind& kind, cJSON* object, const std::string& data)
{
    if (!cJSON_IsObject(object))
    {
        m_findings.fault = std::string("\"") + kind.key + "\" holds something that is not an object";
        return;
    }
    FoundObject found;
    found.object.kind = kind.kind;
    found.object.objectId = textOf(object, kind.idKey);
    Picture own;
    own.imageId = textOf(object, "ImageID");
    own.format = textOf(object, "FileFormat");
    const std::string inside = detachData(object);
    addPicture(found, std::move(own), data.empty() ? inside : data);
    addSubImages(object, found);
    const std::size_t index = m_findings.objects.size();
    m_findings.objects.push_back(std::move(found));
    visit(object); /* a notification carries objects of its own, and those their pictures */
    m_findings.objects[index].object.document = printJson(object);
}

/* data is the "Data" beside the member: that of a picture stands next to its "ImageInfo". */
void Walk::visitMember(cJSON* member, const std::string& data)
{
    const ObjectKind* kind = kindOf(member->string);
    if (kind == nullptr)
    {
        visit(member);
    }
    else if (cJSON_IsArray(member))
    {
        cJSON* element = nullptr;
        cJSON_ArrayForEach(element, member)
        {
            addObject(*kind, element, {});
        }
    }
    else
    {
        addObject(*kind, member, data);
    }
}

void Walk::visit(cJSON* node)
{
    const std::string data = cJSON_IsObject(node) ? detachData(node) : std::string();
    cJSON* member = nullptr;
    cJSON_ArrayForEach(member, node)
    {
        visitMember(member, data);
    }
}

} // namespace

Findings findObjects(cJSON* root, bool allowLineBreaks)
{
    Walk walk(allowLineBreaks);
    walk.visit(root);
    return walk.take();
}

Findings findLogEvents(cJSON* root)
{
    Findings findings;
    if (!cJSON_IsArray(root))
    {
        findings.fault = "the document is not an array";
        return findings;
    }
    const cJSON* event = nullptr;
    cJSON_ArrayForEach(event, root)
    {
        FoundObject found;
        found.object.kind = "LogEvent";
        found.object.objectId = textOf(event, "clientId");
        found.object.document = printJson(event);
        findings.objects.push_back(std::move(found));
    }
    return findings;
}

FoundObject dataObject(const std::string& kind, const std::string& id, const std::string& body, bool allowLineBreaks)
{
    FoundObject found;
    found.object.kind = kind + "Data";
    found.object.objectId = id;
    std::string base64 = body;
    const Json tree = parseJson(body);
    if (cJSON_IsObject(tree.get()))
    {
        base64 = textOf(cJSON_GetObjectItemCaseSensitive(tree.get(), "VideoDataObject"), "VData");
    }
    std::optional<std::string> bytes = decodeBase64(base64, allowLineBreaks);
    if (bytes && !bytes->empty())
    {
        Picture picture;
        picture.bytes = std::move(*bytes);
        found.pictures.push_back(std::move(picture));
    }
    return found;
}

} // namespace viewlib
