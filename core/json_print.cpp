/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Prints a tree as cJSON_PrintUnformatted does, byte for byte, in a block of the right size at once: cJSON's own printer
 * looks at every character of a text three times, one by one, which for a picture of some megabytes takes longer than
 * sending it. One walk over the tree measures, and leaves the lengths in the texts' nodes; a second one writes.
 */
#include <limits.h>
#include <string.h>

#include <cjson/cJSON.h>

#include "core/json_tree.h"

namespace
{

/* The longest whole number with its sign; cJSON's longest other one with what its printer wants to have left over. */
constexpr size_t c_integerSize = 11;
constexpr size_t c_numberSize = 64;

constexpr u64 c_qwOnes = 0x0101010101010101u;
constexpr u64 c_qwTops = 0x8080808080808080u;

/* Not 0 when one of the eight characters is escaped: a control character, '"' or '\\'. */
u64 EscapedOfEight(const char* pchText)
{
    u64 qwText;
    memcpy(&qwText, pchText, sizeof(qwText));
    const u64 qwQuote = qwText ^ c_qwOnes * '"';
    const u64 qwBackslash = qwText ^ c_qwOnes * '\\';
    return ((qwText - c_qwOnes * ' ') & ~qwText) | ((qwQuote - c_qwOnes) & ~qwQuote) |
           ((qwBackslash - c_qwOnes) & ~qwBackslash);
}

/* What stands after the backslash of a short escape; 'u' for a control character without one, 0 for a plain one. */
char EscapeOf(char chText)
{
    switch (chText)
    {
    case '"':
    case '\\':
        return chText;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return static_cast<u8>(chText) < ' ' ? 'u' : '\0';
    }
}

bool HasEscapes(const char* pchText, size_t length)
{
    u64 qwEscaped = 0;
    size_t at = 0;
    for (; at + sizeof(u64) <= length; at += sizeof(u64))
    {
        qwEscaped |= EscapedOfEight(pchText + at);
    }
    bool bEscaped = (qwEscaped & c_qwTops) != 0;
    for (; at < length; at++)
    {
        bEscaped = bEscaped || EscapeOf(pchText[at]) != '\0';
    }
    return bEscaped;
}

/* Characters that a text grows by. */
size_t EscapesOf(const char* pchText, size_t length)
{
    size_t escapes = 0;
    for (size_t at = 0; at < length; at++)
    {
        const char chEscape = EscapeOf(pchText[at]);
        escapes += chEscape == '\0' ? 0 : (chEscape == 'u' ? 5 : 1);
    }
    return escapes;
}

/* The length goes where numbers have their value. */
size_t MeasureText(cJSON* ptNode)
{
    const size_t length = strlen(ptNode->valuestring);
    const bool bEscapes = HasEscapes(ptNode->valuestring, length);
    ptNode->valuedouble = static_cast<double>(length);
    ptNode->valueint = bEscapes ? 1 : 0;
    return length + 2 + (bEscapes ? EscapesOf(ptNode->valuestring, length) : 0);
}

bool IsInteger(const cJSON* ptNode)
{
    const double dValue = ptNode->valuedouble;
    return dValue >= INT_MIN && dValue <= INT_MAX && dValue == static_cast<double>(static_cast<int>(dValue));
}

/* A row of siblings: keys, values, and a comma or the closing bracket behind each. */
size_t Measure(cJSON* ptNode)
{
    size_t size = 0;
    for (; ptNode != nullptr; ptNode = ptNode->next)
    {
        size += ptNode->string != nullptr ? strlen(ptNode->string) + 4 : 1;
        if (cJSON_IsString(ptNode))
        {
            size += MeasureText(ptNode);
        }
        else if (cJSON_IsNumber(ptNode))
        {
            size += IsInteger(ptNode) ? c_integerSize : c_numberSize;
        }
        else
        {
            size += Measure(ptNode->child) + 2;
        }
    }
    return size;
}

char* WriteBytes(char* pchOut, const char* pchBytes, size_t length)
{
    memcpy(pchOut, pchBytes, length);
    return pchOut + length;
}

char* WriteEscaped(char* pchOut, const char* pchText, size_t length)
{
    static constexpr char c_achDigits[] = "0123456789abcdef";
    for (size_t at = 0; at < length; at++)
    {
        const char chEscape = EscapeOf(pchText[at]);
        if (chEscape == '\0')
        {
            *pchOut++ = pchText[at];
            continue;
        }
        *pchOut++ = '\\';
        *pchOut++ = chEscape;
        if (chEscape == 'u')
        {
            pchOut = WriteBytes(pchOut, "00", 2);
            *pchOut++ = c_achDigits[static_cast<u8>(pchText[at]) >> 4];
            *pchOut++ = c_achDigits[pchText[at] & 15];
        }
    }
    return pchOut;
}

char* WriteText(char* pchOut, const cJSON* ptNode)
{
    const size_t length = static_cast<size_t>(ptNode->valuedouble);
    *pchOut++ = '"';
    pchOut = ptNode->valueint != 0 ? WriteEscaped(pchOut, ptNode->valuestring, length)
                                   : WriteBytes(pchOut, ptNode->valuestring, length);
    *pchOut++ = '"';
    return pchOut;
}

char* WriteInteger(char* pchOut, int nValue)
{
    char achDigits[c_integerSize];
    size_t at = sizeof(achDigits);
    unsigned dwLeft = nValue < 0 ? 0u - static_cast<unsigned>(nValue) : static_cast<unsigned>(nValue);
    do
    {
        achDigits[--at] = static_cast<char>('0' + dwLeft % 10);
        dwLeft /= 10;
    } while (dwLeft != 0);
    if (nValue < 0)
    {
        achDigits[--at] = '-';
    }
    return WriteBytes(pchOut, achDigits + at, sizeof(achDigits) - at);
}

/* What is no whole number is left to cJSON. */
char* WriteNumber(char* pchOut, cJSON* ptNode)
{
    if (IsInteger(ptNode))
    {
        return WriteInteger(pchOut, static_cast<int>(ptNode->valuedouble));
    }
    return cJSON_PrintPreallocated(ptNode, pchOut, static_cast<int>(c_numberSize), 0) != 0 ? pchOut + strlen(pchOut)
                                                                                           : pchOut;
}

char* WriteNodes(char* pchOut, cJSON* ptNode);

char* WriteValue(char* pchOut, cJSON* ptNode)
{
    if (cJSON_IsString(ptNode))
    {
        return WriteText(pchOut, ptNode);
    }
    if (cJSON_IsNumber(ptNode))
    {
        return WriteNumber(pchOut, ptNode);
    }
    const bool bArray = cJSON_IsArray(ptNode) != 0;
    *pchOut++ = bArray ? '[' : '{';
    pchOut = WriteNodes(pchOut, ptNode->child);
    *pchOut++ = bArray ? ']' : '}';
    return pchOut;
}

/* A row of siblings with commas between them. Keys are the library's constants and hold nothing to escape. */
char* WriteNodes(char* pchOut, cJSON* ptNode)
{
    for (; ptNode != nullptr; ptNode = ptNode->next)
    {
        if (ptNode->string != nullptr)
        {
            *pchOut++ = '"';
            pchOut = WriteBytes(pchOut, ptNode->string, strlen(ptNode->string));
            pchOut = WriteBytes(pchOut, "\":", 2);
        }
        pchOut = WriteValue(pchOut, ptNode);
        if (ptNode->next != nullptr)
        {
            *pchOut++ = ',';
        }
    }
    return pchOut;
}

} // namespace

char* PubSecJsonPrint(cJSON* ptRoot)
{
    if (ptRoot == nullptr)
    {
        return nullptr;
    }
    char* pchText = static_cast<char*>(cJSON_malloc(Measure(ptRoot) + 1));
    if (pchText != nullptr)
    {
        *WriteNodes(pchText, ptRoot) = '\0';
    }
    cJSON_Delete(ptRoot);
    return pchText;
}
