/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <cjson/cJSON.h>

#include <string>
#include <vector>

namespace viewlib
{

/* What a standard platform asks of an object's members: those that must be there, and the form of what is there. */

/* "kind" with its identifier, or its number in the document when it has none. */
std::string nameOf(const std::string& kind, const std::string& objectId, std::size_t number);

/* What is wrong with an object's own members, each a sentence that names object, member, value and rule. */
std::vector<std::string> memberFaults(const std::string& kind, const std::string& name, const cJSON* object);
std::vector<std::string> subImageFaults(const std::string& name, std::size_t number, const cJSON* subImage);

/* 14 digits that are a date and a time. */
bool isTime(const std::string& text);

/* The members that hold such a time. */
const std::vector<const char*>& timeMembers();

} // namespace viewlib
