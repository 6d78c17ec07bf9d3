/* SPDX-License-Identifier: Apache-2.0 */
#include "json.h"

#include <new>

namespace viewlib
{

Json parseJson(const std::string& text)
{
    const char* end = nullptr;
    Json tree(cJSON_ParseWithLengthOpts(text.data(), text.size(), &end, 0));
    if (tree == nullptr)
    {
        return nullptr;
    }
    const std::size_t rest = text.find_first_not_of(" \t\r\n", static_cast<std::size_t>(end - text.data()));
    return rest == std::string::npos ? std::move(tree) : nullptr;
}

std::string printJson(const cJSON* tree)
{
    char* text = cJSON_PrintUnformatted(tree);
    if (text == nullptr)
    {
        throw std::bad_alloc();
    }
    std::string copy(text);
    cJSON_free(text);
    return copy;
}

std::string textOf(const cJSON* object, const char* key)
{
    const char* value = cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object, key));
    return value == nullptr ? std::string() : std::string(value);
}

double numberOf(const cJSON* object, const char* key)
{
    const cJSON* value = cJSON_GetObjectItemCaseSensitive(object, key);
    return cJSON_IsNumber(value) ? value->valuedouble : 0.0;
}

int countOf(const cJSON* object, const char* key)
{
    constexpr double most = 1000000000.0;
    const double value = numberOf(object, key);
    return value >= 0.0 && value <= most ? static_cast<int>(value) : 0;
}

} // namespace viewlib
