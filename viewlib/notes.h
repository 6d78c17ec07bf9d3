/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "documents.h"

namespace viewlib
{

class Store;

/* What is tolerated in an object but unwise becomes a note "code: sentence". */

/* What the object's own members show. object still holds everything but the pictures' data. */
void noteMembers(FoundObject& found, const cJSON* object, std::chrono::system_clock::time_point now);
void noteSubImage(FoundObject& found, std::size_t number, const cJSON* subImage,
                  std::chrono::system_clock::time_point now);
void notePicture(FoundObject& found, const Picture& picture);
void note(FoundObject& found, const char* code, const std::string& sentence);

/* What only the rest of the document and what is stored show: the source of each object, and whether its box lies in it. */
void noteSources(Findings& findings, const Store& store);

} // namespace viewlib
