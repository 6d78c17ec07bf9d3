/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Leaves whose printed form is ready before the tree is printed, as raw nodes of one block each. They spare cJSON the
 * printing of numbers, and the search of long texts for characters to escape.
 */
#ifndef PUBSEC_CORE_JSON_LEAVES_H
#define PUBSEC_CORE_JSON_LEAVES_H

#include <cjson/cJSON.h>

#include <pubsecstack/types.h>

/* A node and size bytes behind it, zeroed, which cJSON_Delete releases as one; null when there is no memory. */
cJSON* PubSecJsonNewLeaf(int nType, size_t size);

/* A number, as digits where cJSON would print it as such. */
cJSON* PubSecJsonNewNumber(double dValue);

/* Texts from this length on are looked at for whether they can stand in the document as they are. */
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

/* Null when the text holds a character that has to be escaped, or there is no memory. */
cJSON* PubSecJsonNewLongText(const char* pchText);

/* What a node stands for, null where it is no long text. */
const TPubSecLongText* PubSecJsonLongText(const cJSON* ptNode);

/* Makes of such a leaf the node that cJSON would have made; false when there is no memory, the text is then empty. */
bool PubSecJsonOwnLeaf(cJSON* ptNode);

#endif
