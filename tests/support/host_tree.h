/* SPDX-License-Identifier: Apache-2.0 */
/* A host that gets members added to its tree may do with them whatever it does with its own. */
#ifndef PUBSEC_TESTS_HOST_TREE_H
#define PUBSEC_TESTS_HOST_TREE_H

#include <string>

#include <cjson/cJSON.h>

/* The first key below the node whose value is no ordinary one: raw JSON, or a reference to what others own. */
inline std::string extraordinaryIn(const cJSON* node)
{
    const cJSON* child = nullptr;
    cJSON_ArrayForEach(child, node)
    {
        const std::string below = extraordinaryIn(child);
        const bool isOrdinary =
            (cJSON_IsString(child) || cJSON_IsNumber(child) || cJSON_IsObject(child) || cJSON_IsArray(child)) &&
            (child->type & cJSON_IsReference) == 0;
        if (!below.empty() || !isOrdinary)
        {
            return !below.empty() ? below : child->string != nullptr ? child->string : "(element)";
        }
    }
    return "";
}

#endif
