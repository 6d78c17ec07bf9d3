/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <cjson/cJSON.h>

#include <memory>
#include <string>

namespace viewlib
{

struct JsonDelete
{
    void operator()(cJSON* tree) const
    {
        cJSON_Delete(tree);
    }
};
using Json = std::unique_ptr<cJSON, JsonDelete>;

/* Null when the text is not JSON, or more than one value. */
Json parseJson(const std::string& text);
std::string printJson(const cJSON* tree);

/* The text of a member; empty when it is not there or not a text. */
std::string textOf(const cJSON* object, const char* key);
/* The number of a member; 0 when it is not there or not a number. */
double numberOf(const cJSON* object, const char* key);
/* The same of something that is counted; 0 when it is out of range, too. */
int countOf(const cJSON* object, const char* key);

} // namespace viewlib
