/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Prints the listing of the public records with the sizes and offsets of the compiler that it is built with. It takes
 * the names from the listing for 64 bits; a new field is added there by hand, with any numbers. How the listings are
 * made anew is told in the CMakeLists.txt beside this file.
 */
#include <stdio.h>

#include <pubsecstack/pubsecstack.h>

#define RECORD(record, size) printf("RECORD(" #record ", %zu)\n", sizeof(record));
#define FIELD(record, field, offset, size)                                                                             \
    printf("FIELD(" #record ", " #field ", %zu, %zu)\n", offsetof(record, field), sizeof(((record*)0)->field));

int main(void)
{
#include "layout_lp64.inc"
    return 0;
}
