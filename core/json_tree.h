/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Trees that refer to what they are made from: keys are constants, texts are the host's memory for the length of the
 * call. Nothing is copied that need not be; a picture of 10 MB is not.
 */
#ifndef PUBSEC_CORE_JSON_TREE_H
#define PUBSEC_CORE_JSON_TREE_H

#include <pubsecstack/types.h>

/* Each adds one member and, where it has one, returns the new node; null when there is no memory or no parent. */
struct cJSON* PubSecJsonAddObject(struct cJSON* ptObject, const char* pchKey);
struct cJSON* PubSecJsonAddArray(struct cJSON* ptObject, const char* pchKey);
void PubSecJsonAddNumber(struct cJSON* ptObject, const char* pchKey, double dValue);

/* pchText, which is not null, is referred to and outlives the tree. */
void PubSecJsonAddText(struct cJSON* ptObject, const char* pchKey, const char* pchText);

/* A field of dwCapacity bytes that holds dwLength characters; copied only when it has no terminator of its own. */
void PubSecJsonAddBoundedText(struct cJSON* ptObject, const char* pchKey, const char* pchText, u32 dwLength,
                              u32 dwCapacity);

/* Appends a new object to an array. */
struct cJSON* PubSecJsonAppendObject(struct cJSON* ptArray);

/*
 * A tree of the host's outlives what its texts are taken from. PubSecJsonOwnAfter replaces what the members after
 * ptFormerLast, and everything below them, refer to by copies; a member whose text cannot be copied is left out, and
 * the result is then false. ptFormerLast is what PubSecJsonLast gave before they were added. A null object has no
 * members.
 */
const struct cJSON* PubSecJsonLast(const struct cJSON* ptObject);
bool PubSecJsonOwnAfter(struct cJSON* ptObject, const struct cJSON* ptFormerLast);

/*
 * Prints the tree unformatted into one block of about the document's size, and deletes it. Null when the tree is null
 * or there is no memory. The text is released with cJSON_free.
 */
char* PubSecJsonPrint(struct cJSON* ptRoot);

/* The same for a document that is not worth sending without this node: null, and the tree deleted, when there is none.
 */
char* PubSecJsonPrintIf(struct cJSON* ptRoot, const struct cJSON* ptNeeded);

#endif
