/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A record's wire members stand once, as a table of rows in writing order; one walker adds them to a JSON object.
 *
 * A row names the member's key, the rule by which it is written, and the field that it is written from. Where the
 * writing order differs from the record's, the order of the rows says so. A key may stand in two rows: the object then
 * carries it twice.
 */
#ifndef PUBSEC_OBJECTS_MEMBER_TABLE_H
#define PUBSEC_OBJECTS_MEMBER_TABLE_H

#include <stddef.h>

#include <type_traits>

#include <pubsecstack/types.h>

enum EPubSecRule : u8
{
    PUBSEC_RULE_ALWAYS,
    PUBSEC_RULE_TEXT,           /* the text is neither empty nor "Inv" */
    PUBSEC_RULE_FLAG,           /* the u32 gate is not 0 */
    PUBSEC_RULE_FLAG16,         /* the u16 gate is not 0 */
    PUBSEC_RULE_NOT_MINUS_ONE,  /* the number is not exactly -1 */
    PUBSEC_RULE_POINTER,        /* the pointer is not null */
    PUBSEC_RULE_POINTER_IF_ONE, /* the pointer is not null and the gate is the text "1" */
};

enum EPubSecKind : u8
{
    PUBSEC_KIND_TEXT, /* char array */
    PUBSEC_KIND_S32,
    PUBSEC_KIND_U32,
    PUBSEC_KIND_U64,
    PUBSEC_KIND_F32,
    PUBSEC_KIND_F64,
    PUBSEC_KIND_ONE_ZERO,       /* 32-bit number written as the text "1" when it is 1, as "0" otherwise */
    PUBSEC_KIND_TEXT_POINTER,   /* pointer to a text; null is written as an empty text where it is written at all */
    PUBSEC_KIND_RECORD,         /* nested object from a record embedded in this one */
    PUBSEC_KIND_RECORD_POINTER, /* nested object from a record that this one points to */
};

struct TPubSecTable;

struct TPubSecMember
{
    const char* pchKey;
    const TPubSecTable* ptNested; /* members of a nested object, null otherwise */
    u16 wOffset;
    u16 wCapacity; /* bytes of a char array, 0 otherwise */
    u16 wGate;     /* offset of what the rule looks at, where that is not the field itself */
    EPubSecRule eRule;
    EPubSecKind eKind;
#ifdef PUBSEC_MEMBER_FIELDS
    const char* pchField; /* for programs that describe the tables; the library does without */
    const char* pchGate;  /* the same as pchField where the rule looks at the field itself */
#endif
};

struct TPubSecTable
{
    const TPubSecMember* ptRows;
    u32 dwRows;
};

template <size_t Rows> constexpr TPubSecTable PubSecTableOf(const TPubSecMember (&atRows)[Rows])
{
    return {atRows, static_cast<u32>(Rows)};
}

template <typename Field> constexpr EPubSecKind PubSecKindOf()
{
    if constexpr (std::is_array_v<Field>)
    {
        static_assert(std::is_same_v<std::remove_extent_t<Field>, char>, "only char arrays are texts");
        return PUBSEC_KIND_TEXT;
    }
    else if constexpr (std::is_same_v<Field, s32>)
    {
        return PUBSEC_KIND_S32;
    }
    else if constexpr (std::is_same_v<Field, u32>)
    {
        return PUBSEC_KIND_U32;
    }
    else if constexpr (std::is_same_v<Field, u64>)
    {
        return PUBSEC_KIND_U64;
    }
    else if constexpr (std::is_same_v<Field, float>)
    {
        return PUBSEC_KIND_F32;
    }
    else if constexpr (std::is_same_v<Field, double>)
    {
        return PUBSEC_KIND_F64;
    }
    else if constexpr (std::is_same_v<Field, char*> || std::is_same_v<Field, const char*>)
    {
        return PUBSEC_KIND_TEXT_POINTER;
    }
    else if constexpr (std::is_pointer_v<Field>)
    {
        return PUBSEC_KIND_RECORD_POINTER;
    }
    else
    {
        static_assert(std::is_class_v<Field>, "no wire form for a field of this type");
        return PUBSEC_KIND_RECORD;
    }
}

/* Whether a rule can be asked of a field (and a gate) of these types. */
template <typename Field, typename Gate> constexpr bool PubSecRuleFits(EPubSecRule eRule)
{
    constexpr EPubSecKind eKind = PubSecKindOf<Field>();
    switch (eRule)
    {
    case PUBSEC_RULE_TEXT:
        return eKind == PUBSEC_KIND_TEXT;
    case PUBSEC_RULE_FLAG:
        return std::is_same_v<Gate, u32>;
    case PUBSEC_RULE_FLAG16:
        return std::is_same_v<Gate, u16>;
    case PUBSEC_RULE_NOT_MINUS_ONE:
        return eKind == PUBSEC_KIND_S32 || eKind == PUBSEC_KIND_F32 || eKind == PUBSEC_KIND_F64;
    case PUBSEC_RULE_POINTER:
        return eKind == PUBSEC_KIND_TEXT_POINTER || eKind == PUBSEC_KIND_RECORD_POINTER;
    case PUBSEC_RULE_POINTER_IF_ONE:
        return eKind == PUBSEC_KIND_RECORD_POINTER && std::is_array_v<Gate>;
    case PUBSEC_RULE_ALWAYS:
        break;
    }
    return true;
}

template <typename Field, typename Gate>
constexpr TPubSecMember PubSecMemberOf(const char* pchKey, EPubSecRule eRule, size_t offset, size_t gate,
                                       const TPubSecTable* ptNested = nullptr)
{
    return {pchKey,
            ptNested,
            static_cast<u16>(offset),
            static_cast<u16>(std::extent_v<Field>),
            static_cast<u16>(gate),
            eRule,
            PubSecKindOf<Field>()
#ifdef PUBSEC_MEMBER_FIELDS
                ,
            nullptr,
            nullptr
#endif
    };
}

constexpr TPubSecMember PubSecMemberAs(TPubSecMember tMember, EPubSecKind eKind)
{
    tMember.eKind = eKind;
    return tMember;
}

#ifdef PUBSEC_MEMBER_FIELDS
constexpr TPubSecMember PubSecMemberNamed(TPubSecMember tMember, const char* pchField, const char* pchGate)
{
    tMember.pchField = pchField;
    tMember.pchGate = pchGate;
    return tMember;
}
#define PS_NAMED(member, field, gate) PubSecMemberNamed(member, field, gate)
#else
#define PS_NAMED(member, field, gate) member
#endif

/*
 * The rows. Each is used where R names the record's type:
 *
 *     using R = TPubSecThingObjInfo;
 *     constexpr TPubSecMember c_atThingMembers[] = {
 *         PS_ALWAYS("ThingID", achThingID),
 *         PS_NOT_MINUS_ONE("LeftTopX", nLeftTopX),
 *         ...
 *     };
 */
template <typename Field, typename Gate, EPubSecRule Rule> constexpr void PubSecCheckRow()
{
    static_assert(PubSecRuleFits<Field, Gate>(Rule), "this rule cannot be asked of this field");
}

#define PS_MEMBER(key, rule, field, gate, nested)                                                                      \
    PS_NAMED((PubSecCheckRow<decltype(R::field), decltype(R::gate), rule>(),                                           \
              PubSecMemberOf<decltype(R::field), decltype(R::gate)>(key, rule, offsetof(R, field), offsetof(R, gate),  \
                                                                    nested)),                                          \
             #field, #gate)

#define PS_ALWAYS(key, field) PS_MEMBER(key, PUBSEC_RULE_ALWAYS, field, field, nullptr)
#define PS_TEXT(key, field) PS_MEMBER(key, PUBSEC_RULE_TEXT, field, field, nullptr)
#define PS_FLAG(key, flag, field) PS_MEMBER(key, PUBSEC_RULE_FLAG, field, flag, nullptr)
#define PS_NOT_MINUS_ONE(key, field) PS_MEMBER(key, PUBSEC_RULE_NOT_MINUS_ONE, field, field, nullptr)
#define PS_POINTER(key, field) PS_MEMBER(key, PUBSEC_RULE_POINTER, field, field, nullptr)

/* A 32-bit number as the text "1" or "0", always written. */
#define PS_ONE_ZERO(key, field) PubSecMemberAs(PS_ALWAYS(key, field), PUBSEC_KIND_ONE_ZERO)

/* Nested objects: from a pointer, from a pointer while a text field is "1", and embedded behind a u16 flag. */
#define PS_OBJECT_POINTER(key, field, table) PS_MEMBER(key, PUBSEC_RULE_POINTER, field, field, &(table))
#define PS_OBJECT_POINTER_IF_ONE(key, text, field, table)                                                              \
    PS_MEMBER(key, PUBSEC_RULE_POINTER_IF_ONE, field, text, &(table))
#define PS_OBJECT_FLAG16(key, flag, field, table) PS_MEMBER(key, PUBSEC_RULE_FLAG16, field, flag, &(table))

/* A nested object made of fields of the record itself. */
#define PS_GROUP(key, table)                                                                                           \
    TPubSecMember                                                                                                      \
    {                                                                                                                  \
        key, &(table), 0, 0, 0, PUBSEC_RULE_ALWAYS, PUBSEC_KIND_RECORD PS_GROUP_FIELD                                  \
    }
#ifdef PUBSEC_MEMBER_FIELDS
#define PS_GROUP_FIELD , nullptr, nullptr
#else
#define PS_GROUP_FIELD
#endif

/*
 * Adds the record's members to the caller's object, in the table's order. Keys are referred to, and texts are too where
 * the field is terminated: the tree is only good for as long as the record stays as it is. A member whose memory cannot
 * be had is left out. A null object or record adds nothing.
 */
void PubSecAddMembers(struct cJSON* ptObject, const TPubSecTable& tTable, const void* pvRecord);

/* The same for a tree that outlives the record: texts are copied, and left out where they cannot be. */
void PubSecAddOwnMembers(struct cJSON* ptObject, const TPubSecTable& tTable, const void* pvRecord);

#endif
