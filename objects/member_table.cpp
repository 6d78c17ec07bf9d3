/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/member_table.h"

#include <cjson/cJSON.h>

#include "core/json_tree.h"
#include "core/text.h"

namespace
{

template <typename Value> Value FieldAt(const u8* pbyRecord, u16 wOffset)
{
    return *reinterpret_cast<const Value*>(pbyRecord + wOffset);
}

const char* TextAt(const u8* pbyRecord, u16 wOffset)
{
    return reinterpret_cast<const char*>(pbyRecord + wOffset);
}

/* "Inv" in a text field says that its value is not known. */
bool IsWorthWriting(const char* pchText, u32 dwLength)
{
    return dwLength != 0 && !(dwLength == 3 && AppMemcmp(pchText, "Inv", 3) == 0);
}

double NumberOf(const TPubSecMember& tMember, const u8* pbyRecord)
{
    switch (tMember.eKind)
    {
    case PUBSEC_KIND_S32:
        return FieldAt<s32>(pbyRecord, tMember.wOffset);
    case PUBSEC_KIND_U32:
        return FieldAt<u32>(pbyRecord, tMember.wOffset);
    case PUBSEC_KIND_U64:
        return static_cast<double>(FieldAt<u64>(pbyRecord, tMember.wOffset));
    case PUBSEC_KIND_F32:
        return static_cast<double>(FieldAt<float>(pbyRecord, tMember.wOffset));
    default:
        return FieldAt<double>(pbyRecord, tMember.wOffset);
    }
}

bool IsWritten(const TPubSecMember& tMember, const u8* pbyRecord)
{
    switch (tMember.eRule)
    {
    case PUBSEC_RULE_FLAG:
        return FieldAt<u32>(pbyRecord, tMember.wGate) != 0;
    case PUBSEC_RULE_FLAG16:
        return FieldAt<u16>(pbyRecord, tMember.wGate) != 0;
    case PUBSEC_RULE_NOT_MINUS_ONE:
        return NumberOf(tMember, pbyRecord) != -1.0;
    case PUBSEC_RULE_POINTER:
        return FieldAt<const void*>(pbyRecord, tMember.wOffset) != nullptr;
    case PUBSEC_RULE_POINTER_IF_ONE:
        return FieldAt<const void*>(pbyRecord, tMember.wOffset) != nullptr &&
               AppStrcmp(TextAt(pbyRecord, tMember.wGate), "1") == 0;
    default:
        return true;
    }
}

void AddText(cJSON* ptObject, const TPubSecMember& tMember, const u8* pbyRecord)
{
    const char* pchText = TextAt(pbyRecord, tMember.wOffset);
    const u32 dwLength = PubSecTextLength(pchText, tMember.wCapacity);
    if (tMember.eRule == PUBSEC_RULE_TEXT && !IsWorthWriting(pchText, dwLength))
    {
        return;
    }
    PubSecJsonAddBoundedText(ptObject, tMember.pchKey, pchText, dwLength, tMember.wCapacity);
}

void AddNested(cJSON* ptObject, const TPubSecMember& tMember, const void* pvRecord)
{
    PubSecAddMembers(PubSecJsonAddObject(ptObject, tMember.pchKey), *tMember.ptNested, pvRecord);
}

void AddMember(cJSON* ptObject, const TPubSecMember& tMember, const u8* pbyRecord)
{
    const char* pchText = nullptr;
    switch (tMember.eKind)
    {
    case PUBSEC_KIND_TEXT:
        AddText(ptObject, tMember, pbyRecord);
        return;
    case PUBSEC_KIND_ONE_ZERO:
        PubSecJsonAddText(ptObject, tMember.pchKey, FieldAt<u32>(pbyRecord, tMember.wOffset) == 1 ? "1" : "0");
        return;
    case PUBSEC_KIND_TEXT_POINTER:
        pchText = FieldAt<const char*>(pbyRecord, tMember.wOffset);
        PubSecJsonAddText(ptObject, tMember.pchKey, pchText != nullptr ? pchText : "");
        return;
    case PUBSEC_KIND_RECORD:
        AddNested(ptObject, tMember, pbyRecord + tMember.wOffset);
        return;
    case PUBSEC_KIND_RECORD_POINTER:
        AddNested(ptObject, tMember, FieldAt<const void*>(pbyRecord, tMember.wOffset));
        return;
    default:
        PubSecJsonAddNumber(ptObject, tMember.pchKey, NumberOf(tMember, pbyRecord));
        return;
    }
}

} // namespace

void PubSecAddMembers(cJSON* ptObject, const TPubSecTable& tTable, const void* pvRecord)
{
    if (ptObject == nullptr || pvRecord == nullptr)
    {
        return;
    }
    const u8* pbyRecord = static_cast<const u8*>(pvRecord);
    for (u32 dwRow = 0; dwRow < tTable.dwRows; dwRow++)
    {
        const TPubSecMember& tMember = tTable.ptRows[dwRow];
        if (IsWritten(tMember, pbyRecord))
        {
            AddMember(ptObject, tMember, pbyRecord);
        }
    }
}

void PubSecAddOwnMembers(cJSON* ptObject, const TPubSecTable& tTable, const void* pvRecord)
{
    const cJSON* ptFormerLast = PubSecJsonLast(ptObject);
    PubSecAddMembers(ptObject, tTable, pvRecord);
    PubSecJsonOwnAfter(ptObject, ptFormerLast);
}
