/* SPDX-License-Identifier: Apache-2.0 */
#include "umbrella.inc"

/* A second time has no effect. */
#include <pubsecstack/pubsecstack.h>

typedef char TBytesOfU8[sizeof(u8) == 1 ? 1 : -1];
typedef char TBytesOfU16[sizeof(u16) == 2 ? 1 : -1];
typedef char TBytesOfU32[sizeof(u32) == 4 ? 1 : -1];
typedef char TBytesOfU64[sizeof(u64) == 8 ? 1 : -1];
typedef char TBytesOfS32[sizeof(s32) == 4 && (s32)-1 < 0 ? 1 : -1];
