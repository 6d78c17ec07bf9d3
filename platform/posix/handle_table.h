/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Handles that may be kept for ever: numbers of slots, each with a generation that grows when the slot is used again.
 * A handle whose object has gone is recognised, never followed. The caller's lock guards the table.
 */
#ifndef PUBSEC_HANDLE_TABLE_H
#define PUBSEC_HANDLE_TABLE_H

#include <stdint.h>

#include <pubsecstack/types.h>

namespace posix_platform
{

enum class HandleKind : u8
{
    kNone,
    kManager,
    kTask,
    kTimer
};

/*
 * Bits of a handle that number the slot, from 1 so that no handle is null; the rest is the generation. 64-bit: 65535
 * live objects and 2^48 uses of each slot. 32-bit: 4095 objects and 2^20 uses of each slot; the slot that has been free
 * longest is used next, so a number comes back after 67 million timers at the earliest.
 */
constexpr u32 kSlotBits = sizeof(uintptr_t) >= 8 ? 16 : 12;
constexpr u32 kSlotLimit = (1u << kSlotBits) - 1;

struct HandleSlot
{
    uintptr_t generation;
    void* object;
    u32 nextFree; /* index + 1, 0 at the end */
    HandleKind kind;
};

struct HandleTable
{
    HandleSlot* slots;
    u32 size;
    u32 firstFree; /* index + 1, 0 for none */
    u32 lastFree;
};

/* Gives a handle for the object, or 0 when the table is full or memory is out. */
uintptr_t addHandle(HandleTable& table, HandleKind kind, void* object);

/* The object of a handle, or null when it has gone or is of another kind. */
void* findHandle(const HandleTable& table, HandleKind kind, uintptr_t handle);

/* Voids a handle for ever. The object is the caller's to release. */
void dropHandle(HandleTable& table, uintptr_t handle);

} // namespace posix_platform

#endif
