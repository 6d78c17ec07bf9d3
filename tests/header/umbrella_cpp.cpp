/* SPDX-License-Identifier: Apache-2.0 */
#include "umbrella.inc"

#include <type_traits>

#include <pubsecstack/pubsecstack.h>

static_assert(std::is_same_v<u8, uint8_t> && std::is_same_v<u16, uint16_t> && std::is_same_v<u32, uint32_t> &&
                  std::is_same_v<u64, uint64_t> && std::is_same_v<s32, int32_t>,
              "the integer types are those of the standard header");
