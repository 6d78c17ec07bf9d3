/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Leaves of one block each. Most are raw nodes, whose printed form is ready before the tree is printed: they spare cJSON
 * the printing of numbers, and the search of long texts for characters to escape.
 */
#ifndef PUBSEC_CORE_JSON_LEAVES_H
#define PUBSEC_CORE_JSON_LEAVES_H

#include <cjson/cJSON.h>

#include <pubsecstack/types.h>

/* A node and size bytes behind it, zeroed, which cJSON_Delete releases as one; null when there is no memory. */
cJSON* PubSecJsonNewLeaf(int nType, size_t size);

/* A number, as digits where cJSON would print it as such. */
cJSON* PubSecJsonNewNumber(double dValue);

/* From this length on it is worth looking whether a text needs no escaping. */
constexpr size_t PUBSEC_JSON_LONG_TEXT = 4096;

/*
 * In place of a long text stands a character that no printed node has in it. It is replaced by the text when the tree
 * has been printed, so that nothing moves the text but the one copy into the document.
 */
constexpr char PUBSEC_JSON_PLACE = '\x01';

struct TPubSecLongText
{
    char achPlace[2];
    const char* pchText; /* referred to */
    size_t length;
};
static_assert(alignof(TPubSecLongText) <= alignof(cJSON), "it stands right behind its node");

/* Whether a text can stand in a document as it is, and then its length. */
bool PubSecJsonMeasurePlain(const char* pchText, size_t* pLength);

cJSON* PubSecJsonNewLongText(const char* pchText, size_t length);

/* What a node stands for, null where it is no long text. */
const TPubSecLongText* PubSecJsonLongText(const cJSON* ptNode);

/* Makes of any leaf that refers to something the node that cJSON would have made; false when there is no memory. */
bool PubSecJsonOwnLeaf(cJSON* ptNode);

#endif
