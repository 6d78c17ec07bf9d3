/* SPDX-License-Identifier: Apache-2.0 */
#include "documents.h"

#include "base64.h"
#include "json.h"
#include "notes.h"
#include "rules.h"
#include "text.h"
#include "viewlib/picture_size.h"

#include <algorithm>
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
    Walk(const Strict& strict, std::chrono::system_clock::time_point now) : m_strict(strict), m_now(now)
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
    void addPicture(FoundObject& found, Picture picture, std::string base64);
    bool stripPrefix(FoundObject& found, std::string& base64);
    void judge(FoundObject& found, const std::vector<std::string>& faults);
    void fail(const std::string& fault);
    std::string detachData(cJSON* object);

    const Strict m_strict;
    const std::chrono::system_clock::time_point m_now;
    Findings m_findings;
    int m_depth = 0; /* of objects within objects */
};

constexpr int deepestObject = 8;

/* The first one is told. */
void Walk::fail(const std::string& fault)
{
    if (m_findings.fault.empty())
    {
        m_findings.fault = shorten(fault);
    }
}

/* Breaches of the standard's rules are refused or noted. */
void Walk::judge(FoundObject& found, const std::vector<std::string>& faults)
{
    for (const std::string& fault : faults)
    {
        if (m_strict.documents)
        {
            fail(fault);
        }
        else
        {
            note(found, "members", fault);
        }
    }
}

std::string Walk::detachData(cJSON* object)
{
    const Json data(cJSON_DetachItemFromObjectCaseSensitive(object, "Data"));
    const char* text = cJSON_GetStringValue(data.get());
    return text == nullptr ? std::string() : std::string(text);
}

/* Takes "data:image/jpeg;base64," away where that is allowed. */
bool Walk::stripPrefix(FoundObject& found, std::string& base64)
{
    if (base64.compare(0, 5, "data:") != 0 || m_strict.dataPrefix)
    {
        return true;
    }
    const std::size_t comma = base64.find(',');
    if (comma == std::string::npos)
    {
        return false;
    }
    note(found, "data-prefix",
         "\"Data\" begins with \"" + base64.substr(0, std::min(comma + 1, std::size_t(64))) + "\"");
    base64.erase(0, comma + 1);
    return true;
}

void Walk::addPicture(FoundObject& found, Picture picture, std::string base64)
{
    if (base64.empty())
    {
        return;
    }
    std::optional<std::string> bytes;
    if (stripPrefix(found, base64))
    {
        bytes = decodeBase64(base64, !m_strict.lineBreaks);
    }
    if (!bytes)
    {
        fail("\"Data\" of " + found.object.kind + " \"" + found.object.objectId + "\" is not bare base64");
        return;
    }
    if (base64.find_first_of("\r\n") != std::string::npos)
    {
        note(found, "line-breaks", "the base64 of a picture has line breaks");
    }
    if (const std::optional<PictureSize> size = pictureSize(*bytes))
    {
        picture.width = size->width;
        picture.height = size->height;
    }
    picture.bytes = std::move(*bytes);
    notePicture(found, picture);
    found.pictures.push_back(std::move(picture));
}

void Walk::addSubImages(cJSON* object, FoundObject& found)
{
    cJSON* list = cJSON_GetObjectItemCaseSensitive(cJSON_GetObjectItemCaseSensitive(object, "SubImageList"),
                                                   "SubImageInfoObject");
    const std::string name = nameOf(found.object.kind, found.object.objectId, m_findings.objects.size() + 1);
    std::size_t number = 0;
    cJSON* subImage = nullptr;
    cJSON_ArrayForEach(subImage, list)
    {
        Picture picture;
        picture.imageId = textOf(subImage, "ImageID");
        picture.type = textOf(subImage, "Type");
        picture.format = textOf(subImage, "FileFormat");
        judge(found, subImageFaults(name, ++number, subImage));
        noteSubImage(found, number, subImage, m_now);
        addPicture(found, std::move(picture), detachData(subImage));
    }
}

void Walk::addObject(const ObjectKind& kind, cJSON* object, const std::string& data)
{
    if (!cJSON_IsObject(object))
    {
        fail(std::string("\"") + kind.key + "\" holds something that is not an object");
        return;
    }
    if (m_depth == deepestObject) /* each is printed with all that is within it */
    {
        fail("objects lie within objects more than " + std::to_string(deepestObject) + " deep");
        return;
    }
    ++m_depth;
    FoundObject found;
    found.object.kind = kind.kind;
    found.object.objectId = textOf(object, kind.idKey);
    found.sourceId = textOf(object, "SourceID");
    found.box = boxOf(object);
    found.width = numberOf(object, "Width");
    found.height = numberOf(object, "Height");
    Picture own;
    own.imageId = textOf(object, "ImageID");
    own.format = textOf(object, "FileFormat");
    judge(found,
          memberFaults(kind.kind, nameOf(kind.kind, found.object.objectId, m_findings.objects.size() + 1), object));
    const std::string inside = detachData(object);
    noteMembers(found, object, m_now);
    addPicture(found, std::move(own), data.empty() ? inside : data);
    addSubImages(object, found);
    const std::size_t index = m_findings.objects.size();
    m_findings.objects.push_back(std::move(found));
    visit(object); /* a notification carries objects of its own, and those their pictures */
    --m_depth;
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

Findings findObjects(cJSON* root, const Strict& strict, std::chrono::system_clock::time_point now)
{
    Walk walk(strict, now);
    walk.visit(root);
    return walk.take();
}

std::optional<Box> boxOf(const cJSON* object)
{
    static constexpr const char* keys[] = {"LeftTopX", "LeftTopY", "RightBtmX", "RightBtmY"};
    double values[4] = {};
    bool any = false;
    for (std::size_t i = 0; i < 4; ++i)
    {
        const cJSON* value = cJSON_GetObjectItemCaseSensitive(object, keys[i]);
        if (!cJSON_IsNumber(value))
        {
            return std::nullopt;
        }
        values[i] = value->valuedouble;
        any = any || value->valuedouble != 0.0;
    }
    return any ? std::optional<Box>(Box{values[0], values[1], values[2], values[3]}) : std::nullopt;
}

MemberNames memberNames(const std::string& kind)
{
    static constexpr struct
    {
        const char* kind;
        const char* array;
        const char* inner;
    } wrapped[] = {{"Image", "Image", "ImageInfo"},
                   {"VideoSlice", "VideoSlice", "VideoSliceInfo"},
                   {"File", "File", "FileInfo"},
                   {"WifiDevice", "WifiData", "WifiDevice"},
                   {"RFIDDevice", "RFIDData", "RFIDDevice"}};
    for (const auto& each : wrapped)
    {
        if (kind == each.kind)
        {
            return {each.array, each.inner};
        }
    }
    return {kind + "Object", nullptr};
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
        if (const std::optional<PictureSize> size = pictureSize(*bytes))
        {
            picture.width = size->width;
            picture.height = size->height;
        }
        picture.bytes = std::move(*bytes);
        found.pictures.push_back(std::move(picture));
    }
    return found;
}

} // namespace viewlib
