/* SPDX-License-Identifier: Apache-2.0 */
#include "core/json_leaves.h"

#include <math.h>
#include <string.h>

namespace
{

/* cJSON asks for 15 significant digits, so whole numbers below this are printed without an exponent. */
constexpr double c_wholeLimit = 1e15;
constexpr u32 c_wholeSize = 1 + 15 + 1;

/* Of a node's type word: what it is. The rest says what belongs to it. */
constexpr int c_typeMask = 0xFF;

bool IsWhole(double dValue)
{
    return dValue > -c_wholeLimit && dValue < c_wholeLimit &&
           dValue == static_cast<double>(static_cast<int64_t>(dValue)) && !(dValue == 0.0 && signbit(dValue));
}

void PrintWhole(int64_t sqValue, char* pchOut)
{
    char achDigits[c_wholeSize];
    char* const pchEnd = achDigits + sizeof(achDigits);
    char* pchFirst = pchEnd;
    u64 qwLeft = static_cast<u64>(sqValue < 0 ? -sqValue : sqValue);
    *--pchFirst = '\0';
    do
    {
        *--pchFirst = static_cast<char>('0' + qwLeft % 10);
        qwLeft /= 10;
    } while (qwLeft != 0);
    if (sqValue < 0)
    {
        *--pchFirst = '-';
    }
    memcpy(pchOut, pchFirst, static_cast<size_t>(pchEnd - pchFirst));
}

/* Read piece by piece, so that what is measured is still at hand when it is looked at. */
constexpr size_t c_piece = 4096;

inline bool IsPlain(const char* pchText, size_t length)
{
    const u8* pbyText = reinterpret_cast<const u8*>(pchText);
    u8 byToEscape = 0;
    for (size_t index = 0; index < length; index++)
    {
        /* Without branches: compilers make vectors of this. */
        const u8 byChar = pbyText[index];
        byToEscape |= static_cast<u8>((byChar < 0x20) | (byChar == '"') | (byChar == '\\'));
    }
    return byToEscape == 0;
}

/* The node keeps what else its type says, about its key. */
void BecomeOwn(cJSON* ptNode, int nType, char* pchText)
{
    ptNode->type = (ptNode->type & ~(c_typeMask | cJSON_IsReference)) | nType;
    ptNode->valuestring = pchText;
}

bool OwnText(cJSON* ptNode, const char* pchText, size_t length)
{
    char* pchCopy = static_cast<char*>(cJSON_malloc(length + 1));
    if (pchCopy == nullptr)
    {
        return false;
    }
    memcpy(pchCopy, pchText, length);
    pchCopy[length] = '\0';
    BecomeOwn(ptNode, cJSON_String, pchCopy);
    return true;
}

} // namespace

cJSON* PubSecJsonNewLeaf(int nType, size_t size)
{
    cJSON* ptNode = static_cast<cJSON*>(cJSON_malloc(sizeof(cJSON) + size));
    if (ptNode != nullptr)
    {
        memset(ptNode, 0, sizeof(cJSON) + size);
        ptNode->type = nType | cJSON_IsReference;
        ptNode->valuestring = reinterpret_cast<char*>(ptNode + 1);
    }
    return ptNode;
}

cJSON* PubSecJsonNewNumber(double dValue)
{
    if (!IsWhole(dValue))
    {
        return cJSON_CreateNumber(dValue);
    }
    cJSON* ptNode = PubSecJsonNewLeaf(cJSON_Raw, c_wholeSize);
    if (ptNode != nullptr)
    {
        cJSON_SetNumberHelper(ptNode, dValue);
        PrintWhole(static_cast<int64_t>(dValue), ptNode->valuestring);
    }
    return ptNode;
}

bool PubSecJsonMeasurePlain(const char* pchText, size_t* pLength)
{
    const char* pchPiece = pchText;
    size_t length = strnlen(pchPiece, c_piece);
    while (length == c_piece)
    {
        if (!IsPlain(pchPiece, c_piece))
        {
            return false;
        }
        pchPiece += c_piece;
        length = strnlen(pchPiece, c_piece);
    }
    *pLength = static_cast<size_t>(pchPiece - pchText) + length;
    return IsPlain(pchPiece, length);
}

cJSON* PubSecJsonNewLongText(const char* pchText, size_t length)
{
    cJSON* ptNode = PubSecJsonNewLeaf(cJSON_Raw, sizeof(TPubSecLongText));
    if (ptNode != nullptr)
    {
        TPubSecLongText* ptLong = reinterpret_cast<TPubSecLongText*>(ptNode + 1);
        ptLong->achPlace[0] = PUBSEC_JSON_PLACE;
        ptLong->pchText = pchText;
        ptLong->length = length;
    }
    return ptNode;
}

const TPubSecLongText* PubSecJsonLongText(const cJSON* ptNode)
{
    return cJSON_IsRaw(ptNode) && ptNode->valuestring[0] == PUBSEC_JSON_PLACE
               ? reinterpret_cast<const TPubSecLongText*>(ptNode + 1)
               : nullptr;
}

bool PubSecJsonOwnLeaf(cJSON* ptNode)
{
    if ((ptNode->type & cJSON_IsReference) == 0)
    {
        return true;
    }
    const TPubSecLongText* ptLong = PubSecJsonLongText(ptNode);
    if (ptLong != nullptr)
    {
        return OwnText(ptNode, ptLong->pchText, ptLong->length);
    }
    if (cJSON_IsString(ptNode))
    {
        return OwnText(ptNode, ptNode->valuestring, strlen(ptNode->valuestring));
    }
    if (cJSON_IsRaw(ptNode))
    {
        BecomeOwn(ptNode, cJSON_Number, nullptr);
    }
    return true;
}
