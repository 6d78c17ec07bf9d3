/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts what the program and its libraries take from the heap: the program that is linked with this has an allocator of
 * its own in front of the C library's.
 */
#ifndef PUBSEC_BENCH_HEAP_METER_H
#define PUBSEC_BENCH_HEAP_METER_H

#include <cstddef>

namespace heap
{

/* Begins anew: no allocations, and the peak is what is held now. */
void begin();

/* Since begin(): calls that gave a block (growing one in place counts too), and the most that was held above the start. */
size_t allocations();
size_t peakBytes();

} // namespace heap

#endif
