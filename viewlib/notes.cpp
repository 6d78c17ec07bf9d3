/* SPDX-License-Identifier: Apache-2.0 */
#include "notes.h"

#include "json.h"
#include "rules.h"
#include "store.h"
#include "text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <set>
#include <string_view>
#include <unordered_map>

namespace viewlib
{

namespace
{

/* The clocks of a device and its server never agree to the second. */
constexpr auto clockTolerance = std::chrono::seconds(60);

constexpr std::size_t mostNotes = 50;

constexpr const char* subImageTypes[] = {"01", "02", "09", "10", "11", "12", "13", "14", "100"};

struct Size
{
    double width = 0;
    double height = 0;
};

void noteTimes(FoundObject& found, const std::string& where, const cJSON* object,
               std::chrono::system_clock::time_point now)
{
    for (const char* key : timeMembers())
    {
        const std::string text = textOf(object, key);
        const auto time = isTime(text) ? parseLocalTime(text) : std::nullopt;
        if (time && *time > now + clockTolerance)
        {
            const auto ahead = std::chrono::duration_cast<std::chrono::seconds>(*time - now).count();
            std::string sentence = where;
            sentence.append("\"").append(key).append("\" ").append(text).append(" lies ");
            note(found, "future", sentence.append(std::to_string(ahead)).append(" s in the future"));
        }
    }
}

/* In the object itself and what is nested in it. */
void noteRepeatedKeys(FoundObject& found, const std::string& where, const cJSON* node)
{
    std::set<std::string_view> keys;
    const cJSON* member = nullptr;
    cJSON_ArrayForEach(member, node)
    {
        if (cJSON_IsObject(node) && member->string != nullptr && !keys.insert(member->string).second)
        {
            note(found, "repeated-key", where + "\"" + member->string + "\" stands there more than once");
        }
        if (cJSON_IsObject(member) || cJSON_IsArray(member))
        {
            noteRepeatedKeys(found, where, member);
        }
    }
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

void noteBox(FoundObject& found, const Size& size)
{
    if (!found.box)
    {
        return;
    }
    const Box& box = *found.box;
    const std::string shown =
        "the box " + number(box.left) + "," + number(box.top) + " to " + number(box.right) + "," + number(box.bottom);
    if (box.right <= box.left || box.bottom <= box.top)
    {
        note(found, "box-empty", shown + " has no area");
    }
    else if (box.left < 0 || box.top < 0 ||
             (size.width > 0 && size.height > 0 && (box.right > size.width || box.bottom > size.height)))
    {
        const std::string picture =
            size.width > 0 ? "its picture of " + number(size.width) + "x" + number(size.height) : "its picture";
        note(found, "box-outside", shown + " lies outside " + picture);
    }
}

/* What the sources of a document's objects are, by their identifier. */
class Sources
{
  public:
    Sources(const Findings& findings, const Store& store) : m_store(store)
    {
        for (const FoundObject& found : findings.objects)
        {
            if (found.object.kind == "Image")
            {
                add(found.object.objectId, {found.width, found.height});
            }
            for (const Picture& picture : found.pictures)
            {
                add(picture.imageId, {double(picture.width), double(picture.height)});
            }
        }
    }
    /* Nothing when there is no such image. */
    std::optional<Size> find(const std::string& id)
    {
        const auto known = m_sizes.find(id);
        if (known != m_sizes.end() && known->second.width > 0)
        {
            return known->second;
        }
        const std::optional<Scene> scene = m_store.sceneOf(id);
        if (!scene)
        {
            return known != m_sizes.end() ? std::optional<Size>(known->second) : std::nullopt;
        }
        const Size size = {double(scene->width), double(scene->height)};
        m_sizes[id] = size;
        return size;
    }

  private:
    void add(const std::string& id, const Size& size)
    {
        if (!id.empty())
        {
            Size& kept = m_sizes[id];
            kept = size.width > 0 && size.height > 0 ? size : kept;
        }
    }
    const Store& m_store;
    std::unordered_map<std::string, Size> m_sizes;
};

/* The scene among an object's own pictures. */
Size ownScene(const FoundObject& found)
{
    const auto scene = std::find_if(found.pictures.begin(), found.pictures.end(),
                                    [](const Picture& picture) { return isSceneType(picture.type); });
    return scene == found.pictures.end() ? Size{} : Size{double(scene->width), double(scene->height)};
}

} // namespace

void note(FoundObject& found, const char* code, const std::string& sentence)
{
    if (found.object.notes.size() < mostNotes)
    {
        found.object.notes.push_back(shorten(std::string(code) + ": " + sentence));
    }
}

void noteMembers(FoundObject& found, const cJSON* object, std::chrono::system_clock::time_point now)
{
    noteTimes(found, "", object, now);
    noteRepeatedKeys(found, "", object);
    if (found.object.kind == "MotorVehicle" && textOf(object, "TollgateID").empty())
    {
        note(found, "no-tollgate", "there is no \"TollgateID\", which some platforms refuse on vehicles");
    }
    const cJSON* infoKind = cJSON_GetObjectItemCaseSensitive(object, "InfoKind");
    if (cJSON_IsString(infoKind))
    {
        note(found, "text-number",
             "\"InfoKind\" is the text \"" + std::string(infoKind->valuestring) + "\", not a number");
    }
}

void noteSubImage(FoundObject& found, std::size_t number, const cJSON* subImage,
                  std::chrono::system_clock::time_point now)
{
    const std::string where = "sub-image " + std::to_string(number) + ": ";
    const std::string type = textOf(subImage, "Type");
    if (std::find_if(std::begin(subImageTypes), std::end(subImageTypes),
                     [&](const char* known) { return type == known; }) == std::end(subImageTypes))
    {
        note(found, "sub-image-type",
             where + "\"Type\" \"" + type + "\" is none of 01, 02, 09, 10, 11, 12, 13, 14 and 100");
    }
    noteTimes(found, where, subImage, now);
}

void notePicture(FoundObject& found, const Picture& picture)
{
    const char* const start = imageTypeOf(picture.bytes).mediaType;
    const bool jpeg = sameNoCase(picture.format, "jpeg") || sameNoCase(picture.format, "jpg");
    const bool png = sameNoCase(picture.format, "png");
    if ((jpeg && std::strcmp(start, "image/jpeg") != 0) || (png && std::strcmp(start, "image/png") != 0))
    {
        note(found, "format", "a picture is said to be \"" + picture.format + "\" and is " + start);
    }
}

void noteSources(Findings& findings, const Store& store)
{
    Sources sources(findings, store);
    for (FoundObject& found : findings.objects)
    {
        std::optional<Size> size;
        if (!found.sourceId.empty())
        {
            size = sources.find(found.sourceId);
            if (!size)
            {
                note(found, "unknown-source", "\"SourceID\" \"" + found.sourceId + "\" is no image that was stored");
            }
        }
        noteBox(found, size && size->width > 0 ? *size : ownScene(found));
    }
}

} // namespace viewlib
