/* SPDX-License-Identifier: Apache-2.0 */
#include "core/json_tree.h"

#include <string.h>

#include "core/json_leaves.h"

namespace
{

/* Adds a node under a constant key; a node that finds no place is released. */
cJSON* AddNode(cJSON* ptObject, const char* pchKey, cJSON* ptNode)
{
    if (ptNode != nullptr && !cJSON_AddItemToObjectCS(ptObject, pchKey, ptNode))
    {
        cJSON_Delete(ptNode);
        return nullptr;
    }
    return ptNode;
}

/* Refers to a text that is terminated. */
cJSON* NewText(const char* pchText)
{
    size_t length = 0;
    const bool bLong =
        strnlen(pchText, PUBSEC_JSON_LONG_TEXT) == PUBSEC_JSON_LONG_TEXT && PubSecJsonMeasurePlain(pchText, &length);
    return bLong ? PubSecJsonNewLongText(pchText, length) : cJSON_CreateStringReference(pchText);
}

bool OwnLeaves(cJSON* ptParent, cJSON* ptFirst)
{
    bool bOwned = true;
    cJSON* ptNext = nullptr;
    for (cJSON* ptNode = ptFirst; ptNode != nullptr; ptNode = ptNext)
    {
        ptNext = ptNode->next;
        bOwned = OwnLeaves(ptNode, ptNode->child) && bOwned;
        if (!PubSecJsonOwnLeaf(ptNode))
        {
            cJSON_Delete(cJSON_DetachItemViaPointer(ptParent, ptNode));
            bOwned = false;
        }
    }
    return bOwned;
}

} // namespace

cJSON* PubSecJsonAddObject(cJSON* ptObject, const char* pchKey)
{
    return ptObject == nullptr ? nullptr : AddNode(ptObject, pchKey, cJSON_CreateObject());
}

cJSON* PubSecJsonAddArray(cJSON* ptObject, const char* pchKey)
{
    return ptObject == nullptr ? nullptr : AddNode(ptObject, pchKey, cJSON_CreateArray());
}

void PubSecJsonAddNumber(cJSON* ptObject, const char* pchKey, double dValue)
{
    AddNode(ptObject, pchKey, PubSecJsonNewNumber(dValue));
}

void PubSecJsonAddText(cJSON* ptObject, const char* pchKey, const char* pchText)
{
    if (ptObject != nullptr)
    {
        AddNode(ptObject, pchKey, NewText(pchText));
    }
}

void PubSecJsonAddBoundedText(cJSON* ptObject, const char* pchKey, const char* pchText, u32 dwLength, u32 dwCapacity)
{
    if (dwLength < dwCapacity)
    {
        AddNode(ptObject, pchKey,
                dwLength < PUBSEC_JSON_LONG_TEXT ? cJSON_CreateStringReference(pchText) : NewText(pchText));
        return;
    }
    cJSON* ptNode = PubSecJsonNewLeaf(cJSON_String, static_cast<size_t>(dwLength) + 1);
    if (ptNode != nullptr)
    {
        memcpy(ptNode->valuestring, pchText, dwLength);
        AddNode(ptObject, pchKey, ptNode);
    }
}

cJSON* PubSecJsonAppendObject(cJSON* ptArray)
{
    cJSON* ptNode = ptArray == nullptr ? nullptr : cJSON_CreateObject();
    if (ptNode != nullptr && !cJSON_AddItemToArray(ptArray, ptNode))
    {
        cJSON_Delete(ptNode);
        return nullptr;
    }
    return ptNode;
}

const cJSON* PubSecJsonLast(const cJSON* ptObject)
{
    /* By "next", which says no less in a tree that the host linked itself. */
    const cJSON* ptLast = ptObject != nullptr ? ptObject->child : nullptr;
    while (ptLast != nullptr && ptLast->next != nullptr)
    {
        ptLast = ptLast->next;
    }
    return ptLast;
}

bool PubSecJsonOwnAfter(cJSON* ptObject, const cJSON* ptFormerLast)
{
    if (ptObject == nullptr)
    {
        return true;
    }
    return OwnLeaves(ptObject, ptFormerLast != nullptr ? ptFormerLast->next : ptObject->child);
}
