/* SPDX-License-Identifier: Apache-2.0 */
#include "platform/posix/handle_table.h"

#include <stdlib.h>

namespace posix_platform
{

namespace
{

constexpr u32 kFirstSize = 64;

void appendFree(HandleTable& table, u32 index)
{
    table.slots[index].nextFree = 0;
    if (table.lastFree == 0)
    {
        table.firstFree = index + 1;
    }
    else
    {
        table.slots[table.lastFree - 1].nextFree = index + 1;
    }
    table.lastFree = index + 1;
}

bool grow(HandleTable& table)
{
    const u32 doubled = table.size == 0 ? kFirstSize : table.size * 2;
    const u32 size = doubled < kSlotLimit ? doubled : kSlotLimit;
    if (size == table.size)
    {
        return false;
    }
    HandleSlot* slots = static_cast<HandleSlot*>(realloc(table.slots, size * sizeof(HandleSlot)));
    if (slots == nullptr)
    {
        return false;
    }
    const u32 formerSize = table.size;
    table.slots = slots;
    table.size = size;
    for (u32 index = formerSize; index < size; ++index)
    {
        slots[index] = {0, nullptr, 0, HandleKind::kNone};
        appendFree(table, index);
    }
    return true;
}

HandleSlot* slotOf(const HandleTable& table, uintptr_t handle)
{
    const uintptr_t number = handle & kSlotLimit;
    if (number == 0 || number > table.size)
    {
        return nullptr;
    }
    HandleSlot* slot = &table.slots[number - 1];
    return slot->kind != HandleKind::kNone && slot->generation == handle >> kSlotBits ? slot : nullptr;
}

} // namespace

uintptr_t addHandle(HandleTable& table, HandleKind kind, void* object)
{
    if (table.firstFree == 0 && !grow(table))
    {
        return 0;
    }
    const u32 number = table.firstFree;
    HandleSlot& slot = table.slots[number - 1];
    table.firstFree = slot.nextFree;
    if (table.firstFree == 0)
    {
        table.lastFree = 0;
    }
    /* Counted in the bits that a handle has for it. */
    slot.generation = (slot.generation + 1) & (UINTPTR_MAX >> kSlotBits);
    slot.object = object;
    slot.kind = kind;
    return slot.generation << kSlotBits | number;
}

void* findHandle(const HandleTable& table, HandleKind kind, uintptr_t handle)
{
    const HandleSlot* slot = slotOf(table, handle);
    return slot != nullptr && slot->kind == kind ? slot->object : nullptr;
}

void dropHandle(HandleTable& table, uintptr_t handle)
{
    HandleSlot* slot = slotOf(table, handle);
    if (slot != nullptr)
    {
        slot->kind = HandleKind::kNone;
        slot->object = nullptr;
        appendFree(table, static_cast<u32>(slot - table.slots));
    }
}

} // namespace posix_platform
