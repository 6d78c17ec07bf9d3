/* SPDX-License-Identifier: Apache-2.0 */
/* The nine posts of images and objects: what each is demanded to be, and a call of each. */
#ifndef PUBSEC_TESTS_IMAGE_OPERATIONS_H
#define PUBSEC_TESTS_IMAGE_OPERATIONS_H

#include <ostream>
#include <string>
#include <vector>

#include <pubsecstack/picture.h>
#include <pubsecstack/posts.h>

namespace image_operations
{

struct Operation
{
    const char* name;
    const char* path;
    bool readsAnswer;
    bool goesOnWithoutHeaders;
    u32 code400;
    u32 (*post)(u32 platform);         /* the records of this file */
    u32 (*postNull)(u32 platform);     /* a null record */
    u32 (*postNullList)(u32 platform); /* a null array of no objects; null for the posts without a count */
    char* (*document)();               /* what the builder makes of the records of this file; for cJSON_free */
};

/* Shows an operation by its name where a test fails. */
inline void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

const std::vector<Operation>& all();

/* The same picture that PubSecPostImage of the list posts. */
const TPubSecIntelliPicObj& picture();

} // namespace image_operations

#endif
