/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_TESTS_DOCUMENT_H
#define PUBSEC_TESTS_DOCUMENT_H

#include <string>

#include <cjson/cJSON.h>
#include <gmock/gmock.h>

#include "objects/documents.h"
#include "tests/support/transfer_records.h"

/* What a builder printed, released; "(null)" when it gave none. */
inline std::string textOf(char* document)
{
    const std::string text = document != nullptr ? document : "(null)";
    cJSON_free(document);
    return text;
}

constexpr const char* kNone = "(null)";

/* "{...}" around the members of a document's root. */
inline std::string root(const std::string& member)
{
    return "{" + member + "}";
}

#endif
