/* SPDX-License-Identifier: Apache-2.0 */
#include <limits.h>
#include <string.h>

#include "core/json_leaves.h"
#include "core/json_tree.h"

namespace
{

/* What the printer asks for around any value: a number's digits, the terminator and its own margin. */
constexpr size_t c_nodeMargin = 64;
constexpr size_t c_keyMargin = 4;     /* quotes, colon and comma */
constexpr size_t c_elementMargin = 1; /* comma */
constexpr size_t c_numberSize = 26;

struct TPubSecPrintSizes
{
    size_t printed; /* the printer grows its block where this is too little */
    u64 added;      /* by long texts, with their quotes in place of the one character */
};

/* What a long text grows by, in which there is something to escape. In short ones that is not worth a look. */
size_t EscapeSize(const char* pchText)
{
    size_t size = 0;
    for (; *pchText != '\0'; pchText++)
    {
        const u8 byChar = static_cast<u8>(*pchText);
        if (byChar < 0x20)
        {
            size += strchr("\b\f\n\r\t", byChar) != nullptr ? 1 : 5;
        }
        else if (byChar == '"' || byChar == '\\')
        {
            size += 1;
        }
    }
    return size;
}

size_t TextSize(const char* pchText)
{
    const size_t length = strlen(pchText);
    return length + 2 + (length >= PUBSEC_JSON_LONG_TEXT ? EscapeSize(pchText) : 0);
}

void AddSizes(const cJSON* ptNode, TPubSecPrintSizes* ptSizes)
{
    ptSizes->printed += c_nodeMargin;
    for (; ptNode != nullptr; ptNode = ptNode->next)
    {
        ptSizes->printed += ptNode->string != nullptr ? strlen(ptNode->string) + c_keyMargin : c_elementMargin;
        if (ptNode->valuestring != nullptr)
        {
            const TPubSecLongText* ptLong = PubSecJsonLongText(ptNode);
            ptSizes->printed += TextSize(ptNode->valuestring);
            ptSizes->added += ptLong != nullptr ? ptLong->length + 1 : 0;
        }
        else if (cJSON_IsNumber(ptNode))
        {
            ptSizes->printed += c_numberSize;
        }
        else
        {
            AddSizes(ptNode->child, ptSizes);
        }
    }
}

struct TPubSecPlaces
{
    const char* pchRead; /* of the printed tree */
    char* pchWrite;
};

void CopyTo(TPubSecPlaces* ptPlaces, const char* pchText, size_t length)
{
    memcpy(ptPlaces->pchWrite, pchText, length);
    ptPlaces->pchWrite += length;
}

/* The nodes' order is that of their places. */
void FillPlaces(const cJSON* ptNode, TPubSecPlaces* ptPlaces)
{
    for (; ptNode != nullptr; ptNode = ptNode->next)
    {
        const TPubSecLongText* ptLong = PubSecJsonLongText(ptNode);
        if (ptLong != nullptr)
        {
            const char* pchPlace = strchr(ptPlaces->pchRead, PUBSEC_JSON_PLACE);
            CopyTo(ptPlaces, ptPlaces->pchRead, static_cast<size_t>(pchPlace - ptPlaces->pchRead));
            CopyTo(ptPlaces, "\"", 1);
            CopyTo(ptPlaces, ptLong->pchText, ptLong->length);
            CopyTo(ptPlaces, "\"", 1);
            ptPlaces->pchRead = pchPlace + 1;
        }
        FillPlaces(ptNode->child, ptPlaces);
    }
}

/* Takes the printed tree, and gives the document that its long texts are in. */
char* WithLongTexts(const cJSON* ptRoot, char* pchPrinted, u64 added)
{
    const size_t rest = strlen(pchPrinted) + 1;
    char* pchDocument =
        added <= INT_MAX - rest ? static_cast<char*>(cJSON_malloc(rest + static_cast<size_t>(added))) : nullptr;
    if (pchDocument != nullptr)
    {
        TPubSecPlaces tPlaces = {pchPrinted, pchDocument};
        FillPlaces(ptRoot, &tPlaces);
        CopyTo(&tPlaces, tPlaces.pchRead, strlen(tPlaces.pchRead) + 1);
    }
    cJSON_free(pchPrinted);
    return pchDocument;
}

} // namespace

char* PubSecJsonPrint(cJSON* ptRoot)
{
    if (ptRoot == nullptr)
    {
        return nullptr;
    }
    TPubSecPrintSizes tSizes = {};
    AddSizes(ptRoot, &tSizes);
    char* pchText = tSizes.printed <= INT_MAX ? cJSON_PrintBuffered(ptRoot, static_cast<int>(tSizes.printed), 0)
                                              : cJSON_PrintUnformatted(ptRoot);
    if (pchText != nullptr && tSizes.added != 0)
    {
        pchText = WithLongTexts(ptRoot, pchText, tSizes.added);
    }
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
