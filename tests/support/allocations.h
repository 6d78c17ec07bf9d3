/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts the blocks that the library holds: those of the C allocator, which the linker sends here (--wrap=malloc and so
 * on), and those of cJSON, from watch() on.
 */
#ifndef PUBSEC_TESTS_ALLOCATIONS_H
#define PUBSEC_TESTS_ALLOCATIONS_H

#include <cstddef>

namespace allocations
{

/* Begins to count, from 0. Once, or after unwatch(). */
void watch();

/* Puts cJSON's own allocator back. */
void unwatch();

/* Blocks that were taken since and not given back. */
size_t open();

/* Blocks that were taken since. */
size_t taken();

/* After `pass` more blocks of cJSON, the next `times` cannot be had. */
void failCjson(unsigned pass, unsigned times);

} // namespace allocations

#endif
