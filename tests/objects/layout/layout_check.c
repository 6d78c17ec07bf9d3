/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Compiles when the public records have the frozen layout: that of machines with 64-bit pointers, or of those with
 * 32-bit pointers and 8-byte alignment for what is 8 bytes long. Hosts and library may be built apart from each other,
 * so a change here breaks every host.
 */
#include <pubsecstack/pubsecstack.h>

struct alignment
{
    char chByte;
    double dValue;
};

#define CONCAT(left, right) left##right
#define NAME(left, right) CONCAT(left, right)
#define RECORD(record, size) typedef char NAME(size_of_line_, __LINE__)[sizeof(record) == (size) ? 1 : -1];
#define FIELD(record, field, offset, size)                                                                             \
    typedef char NAME(                                                                                                 \
        field_of_line_,                                                                                                \
        __LINE__)[offsetof(record, field) == (offset) && sizeof(((record*)0)->field) == (size) ? 1 : -1];

typedef char doubles_are_aligned_to_their_size[offsetof(struct alignment, dValue) == 8 ? 1 : -1];

#if UINTPTR_MAX > 0xFFFFFFFFu
#include "layout_lp64.inc"
#else
#include "layout_ilp32.inc"
#endif
