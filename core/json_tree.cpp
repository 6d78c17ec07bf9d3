/* SPDX-License-Identifier: Apache-2.0 */
#include "core/json_tree.h"

#include <limits.h>
#include <string.h>

#include <cjson/cJSON.h>

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

/* What the printer asks for around any value: a number's digits, the terminator and its own margin. */
constexpr size_t c_nodeMargin = 64;

/* Room for the printed tree. Escaped characters take more than they are counted for; the printer then grows the block.
 */
size_t PrintedSize(const cJSON* ptNode)
{
    size_t size = c_nodeMargin;
    for (; ptNode != nullptr; ptNode = ptNode->next)
    {
        size += ptNode->string != nullptr ? strlen(ptNode->string) + 4 : 1;
        if (cJSON_IsString(ptNode))
        {
            size += strlen(ptNode->valuestring) + 2;
        }
        else if (cJSON_IsNumber(ptNode))
        {
            size += 26;
        }
        else
        {
            size += PrintedSize(ptNode->child);
        }
    }
    return size;
}

bool OwnText(cJSON* ptNode)
{
    static char s_achEmpty[] = "";
    const size_t size = strlen(ptNode->valuestring) + 1;
    char* pchCopy = static_cast<char*>(cJSON_malloc(size));
    if (pchCopy == nullptr)
    {
        ptNode->valuestring = s_achEmpty;
        return false;
    }
    memcpy(pchCopy, ptNode->valuestring, size);
    ptNode->valuestring = pchCopy;
    ptNode->type &= ~cJSON_IsReference;
    return true;
}

bool OwnTexts(cJSON* ptFirst)
{
    bool bOwned = true;
    for (cJSON* ptNode = ptFirst; ptNode != nullptr; ptNode = ptNode->next)
    {
        bOwned = OwnTexts(ptNode->child) && bOwned;
        if (cJSON_IsString(ptNode) && (ptNode->type & cJSON_IsReference) != 0)
        {
            bOwned = OwnText(ptNode) && bOwned;
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
    AddNode(ptObject, pchKey, cJSON_CreateNumber(dValue));
}

void PubSecJsonAddText(cJSON* ptObject, const char* pchKey, const char* pchText)
{
    AddNode(ptObject, pchKey, cJSON_CreateStringReference(pchText));
}

void PubSecJsonAddBoundedText(cJSON* ptObject, const char* pchKey, const char* pchText, u32 dwLength, u32 dwCapacity)
{
    if (dwLength < dwCapacity)
    {
        PubSecJsonAddText(ptObject, pchKey, pchText);
        return;
    }
    char* pchCopy = static_cast<char*>(cJSON_malloc(static_cast<size_t>(dwLength) + 1));
    if (pchCopy == nullptr)
    {
        return;
    }
    memcpy(pchCopy, pchText, dwLength);
    pchCopy[dwLength] = '\0';
    cJSON* ptNode = cJSON_CreateStringReference(pchCopy);
    if (ptNode == nullptr)
    {
        cJSON_free(pchCopy);
        return;
    }
    ptNode->type &= ~cJSON_IsReference; /* the node owns the copy */
    AddNode(ptObject, pchKey, ptNode);
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
    return ptObject == nullptr || ptObject->child == nullptr ? nullptr : ptObject->child->prev;
}

bool PubSecJsonOwnAfter(cJSON* ptObject, const cJSON* ptFormerLast)
{
    if (ptObject == nullptr)
    {
        return true;
    }
    return OwnTexts(ptFormerLast != nullptr ? ptFormerLast->next : ptObject->child);
}

char* PubSecJsonPrint(cJSON* ptRoot)
{
    if (ptRoot == nullptr)
    {
        return nullptr;
    }
    const size_t size = PrintedSize(ptRoot);
    char* pchText =
        size <= INT_MAX ? cJSON_PrintBuffered(ptRoot, static_cast<int>(size), 0) : cJSON_PrintUnformatted(ptRoot);
    cJSON_Delete(ptRoot);
    return pchText;
}

char* PubSecJsonPrintIf(cJSON* ptRoot, const cJSON* ptNeeded)
{
    if (ptNeeded == nullptr)
    {
        cJSON_Delete(ptRoot);
        return nullptr;
    }
    return PubSecJsonPrint(ptRoot);
}
