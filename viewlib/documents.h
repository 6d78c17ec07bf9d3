/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/stored.h"

#include <cjson/cJSON.h>

#include <string>
#include <vector>

namespace viewlib
{

/* An object taken out of a document with its pictures, before it is stored. */
struct FoundObject
{
    StoredObject object;
    std::vector<Picture> pictures;
};

struct Findings
{
    std::vector<FoundObject> objects;
    std::string fault; /* what is wrong with the document; empty when nothing is */
};

/* All objects of a document, in the order in which they stand. Takes the pictures out of the tree. */
Findings findObjects(cJSON* root, bool allowLineBreaks);

/* The events of a log document, by the client that they come from. */
Findings findLogEvents(cJSON* root);

/* A block of data for an object announced before: bare base64, or a document that holds it. Anything else has no
 * picture. */
FoundObject dataObject(const std::string& kind, const std::string& id, const std::string& body, bool allowLineBreaks);

} // namespace viewlib
