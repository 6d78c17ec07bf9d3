/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSECSTACK_TYPES_H
#define PUBSECSTACK_TYPES_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

/* Integer types of the interface. All texts are NUL-terminated, all numbers are in host order. */
typedef uint8_t u8;
typedef uint16_t u16;
typedef uint32_t u32;
typedef uint64_t u64;
typedef int32_t s32;

/* cJSON's node type. Only a pointer to it crosses the interface; include <cjson/cJSON.h> to work with trees. */
struct cJSON;

#if defined(__GNUC__)
#define PUBSEC_API __attribute__((visibility("default")))
#else
#define PUBSEC_API
#endif

#ifdef __cplusplus
#define PUBSEC_C_BEGIN                                                                                                 \
    extern "C"                                                                                                         \
    {
#define PUBSEC_C_END }
#else
#define PUBSEC_C_BEGIN
#define PUBSEC_C_END
#endif

#endif
