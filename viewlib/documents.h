/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/config.h"
#include "viewlib/stored.h"

#include <cjson/cJSON.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace viewlib
{

/* Where an object is seen in the picture of its source. */
struct Box
{
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/* An object taken out of a document with its pictures, before it is stored. */
struct FoundObject
{
    StoredObject object;
    std::vector<Picture> pictures;
    std::string sourceId; /* the "SourceID" that it has; "" when it has none */
    std::optional<Box> box;
    double width = 0; /* "Width" and "Height" that it tells of itself; 0: it does not */
    double height = 0;
};

struct Findings
{
    std::vector<FoundObject> objects;
    std::string fault; /* what is wrong with the document; empty when nothing is */
};

/* All objects of a document, in the order in which they stand. Takes the pictures out of the tree. What "strict" lets
 * pass becomes a note of the object; now is the time by which times lie in the future. */
Findings findObjects(cJSON* root, const Strict& strict, std::chrono::system_clock::time_point now);

/* The box that four members of an object tell; none when one is missing or all are 0. */
std::optional<Box> boxOf(const cJSON* object);

/* The events of a log document, by the client that they come from. */
Findings findLogEvents(cJSON* root);

/* A block of data for an object announced before: bare base64, or a document that holds it. Anything else has no
 * picture. */
FoundObject dataObject(const std::string& kind, const std::string& id, const std::string& body, bool allowLineBreaks);

/* The member that holds a document's objects of a kind: {"FaceObject", nullptr}, {"Image", "ImageInfo"}. */
struct MemberNames
{
    std::string array;
    const char* inner; /* in each element, the member with the object's own members; null: the element itself */
};
MemberNames memberNames(const std::string& kind);

} // namespace viewlib
