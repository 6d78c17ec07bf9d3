/* SPDX-License-Identifier: Apache-2.0 */
/* What a process holds at a moment. */
#ifndef PUBSEC_TESTS_SOAK_USAGE_H
#define PUBSEC_TESTS_SOAK_USAGE_H

#include <cstddef>
#include <string>

struct Usage
{
    size_t heap = 0;     /* bytes in blocks that were taken from the C allocator */
    size_t resident = 0; /* bytes */
    size_t descriptors = 0;
    size_t threads = 0;

    static Usage now();
    Usage least(const Usage& other) const; /* of each */
    std::string text() const;
};

#endif
