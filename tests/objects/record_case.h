/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is demanded of a record: its members in writing order, each with its key, its field's type or width, and the
 * rule by which it is written. The lists are written out by hand; nothing here knows the library's own tables.
 *
 * A list is made where R names the record's type:
 *
 *     using R = TPubSecThingObjInfo;
 *     const std::vector<Member> members = {
 *         ALWAYS_TEXT("ThingID", achThingID, 49),
 *         NOT_MINUS_ONE("LeftTopX", nLeftTopX, s32),
 *     };
 */
#ifndef TESTS_OBJECTS_RECORD_CASE_H
#define TESTS_OBJECTS_RECORD_CASE_H

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <pubsecstack/types.h>

struct cJSON;

namespace records
{

enum class Rule
{
    always,
    text,
    flag,
    notMinusOne,
    oneZero,
    pointer,
    behindOne, /* a pointer, while another field is "1", which it never is in the filled records */
};

enum class Kind
{
    text,
    s32Number,
    u32Number,
    u64Number,
    f32Number,
    f64Number,
    textPointer,
    objectPointer,
    object, /* embedded */
    group,  /* made of fields of the record itself */
};

struct Member
{
    const char* key;
    Rule rule;
    Kind kind;
    size_t offset;
    size_t width = 0;         /* of a text */
    size_t declaredWidth = 0; /* of its field in the header */
    size_t flag = 0;          /* offset of the presence flag */
    size_t flagSize = 0;
    size_t objectSize = 0; /* of a nested record */
    const std::vector<Member>* nested = nullptr;
};

template <typename Number> constexpr Kind NumberKind()
{
    if constexpr (std::is_same_v<Number, s32>)
    {
        return Kind::s32Number;
    }
    else if constexpr (std::is_same_v<Number, u32>)
    {
        return Kind::u32Number;
    }
    else if constexpr (std::is_same_v<Number, u64>)
    {
        return Kind::u64Number;
    }
    else if constexpr (std::is_same_v<Number, float>)
    {
        return Kind::f32Number;
    }
    else
    {
        static_assert(std::is_same_v<Number, double>);
        return Kind::f64Number;
    }
}

/* The field's type is part of what is demanded. */
template <typename Demanded, typename Declared> Member Number(const char* key, Rule rule, size_t offset)
{
    static_assert(std::is_same_v<Demanded, Declared>, "the field is of another type");
    return {key, rule, NumberKind<Demanded>(), offset};
}

template <typename Flag> Member Flagged(Member member, size_t flag)
{
    static_assert(std::is_same_v<Flag, u32> || std::is_same_v<Flag, u16>, "not a presence flag");
    member.flag = flag;
    member.flagSize = sizeof(Flag);
    return member;
}

inline Member Nested(const char* key, Rule rule, Kind kind, size_t offset, size_t size,
                     const std::vector<Member>& members)
{
    Member member = {key, rule, kind, offset};
    member.objectSize = size;
    member.nested = &members;
    return member;
}

#define FIELD_TYPE(field) std::remove_reference_t<decltype(R::field)>
#define TEXT_RULE(key, rule, field, width)                                                                             \
    records::Member                                                                                                    \
    {                                                                                                                  \
        key, rule, records::Kind::text, offsetof(R, field), width, sizeof(R::field)                                    \
    }
#define ALWAYS_TEXT(key, field, width) TEXT_RULE(key, records::Rule::always, field, width)
#define TEXT(key, field, width) TEXT_RULE(key, records::Rule::text, field, width)
#define NUMBER_RULE(key, rule, field, type) records::Number<type, FIELD_TYPE(field)>(key, rule, offsetof(R, field))
#define ALWAYS(key, field, type) NUMBER_RULE(key, records::Rule::always, field, type)
#define NOT_MINUS_ONE(key, field, type) NUMBER_RULE(key, records::Rule::notMinusOne, field, type)
#define ONE_ZERO(key, field, type) NUMBER_RULE(key, records::Rule::oneZero, field, type)
#define FLAGGED(key, valid, field, type)                                                                               \
    records::Flagged<FIELD_TYPE(valid)>(NUMBER_RULE(key, records::Rule::flag, field, type), offsetof(R, valid))
#define TEXT_POINTER_RULE(key, rule, field)                                                                            \
    records::Member                                                                                                    \
    {                                                                                                                  \
        key, rule, records::Kind::textPointer, offsetof(R, field)                                                      \
    }
#define ALWAYS_TEXT_POINTER(key, field) TEXT_POINTER_RULE(key, records::Rule::always, field)
#define TEXT_POINTER(key, field) TEXT_POINTER_RULE(key, records::Rule::pointer, field)
#define OBJECT_POINTER(key, field, members)                                                                            \
    records::Nested(key, records::Rule::pointer, records::Kind::objectPointer, offsetof(R, field), sizeof(*R{}.field), \
                    members)
#define OBJECT_BEHIND_ONE(key, field, members)                                                                         \
    records::Nested(key, records::Rule::behindOne, records::Kind::objectPointer, offsetof(R, field),                   \
                    sizeof(*R{}.field), members)
#define OBJECT_FLAGGED(key, valid, field, members)                                                                     \
    records::Flagged<FIELD_TYPE(valid)>(records::Nested(key, records::Rule::flag, records::Kind::object,               \
                                                        offsetof(R, field), sizeof(R::field), members),                \
                                        offsetof(R, valid))
#define GROUP(key, members) records::Nested(key, records::Rule::always, records::Kind::group, 0, sizeof(R), members)

/* A record with the function that writes it. */
struct Case
{
    std::string name;
    size_t size;
    const std::vector<Member>* members;
    std::function<std::string(const void*)> encode; /* gives the printed object */
};

/* Runs an encoder on a new object and prints that. */
std::string Printed(const std::function<void(cJSON*)>& encode);

template <typename Record>
Case CaseOf(const char* name, const std::vector<Member>& members, void (*encode)(cJSON*, const Record*))
{
    return {name, sizeof(Record), &members, [encode](const void* record) {
                return Printed([=](cJSON* object) { encode(object, static_cast<const Record*>(record)); });
            }};
}

/* How a member's field is filled. */
enum class State
{
    zero,          /* all bytes zero */
    absent,        /* as a host marks what it does not know: empty, flag 0 beside a value, -1, null */
    set,           /* a value of its own for each member */
    setBehindFlag, /* as set, with an unusual flag */
    setToZero,     /* present, and 0, or an empty text behind a pointer */
    inv,           /* "Inv" where it fits, for texts; absent for the rest */
    full,          /* as set, texts filling their fields without a terminator */
};

/* A record of a case in memory, with what it points to. */
class Record
{
  public:
    explicit Record(const Case& subject);
    ~Record();
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    /* Fills every byte, those of fields that are not written as well. */
    void Background(unsigned char byte);

    /* Fills one member's field, and notes what is to be written for it. */
    void Put(size_t index, State state);
    void PutAll(State state);

    /* As Put for a text or number of the test's own. */
    void PutText(size_t index, const std::string& text, const std::string& expected);
    void PutNumber(size_t index, double value, const std::string& expected);

    std::string Expected() const;
    std::string Encoded() const;

    template <typename T> T& As()
    {
        return *reinterpret_cast<T*>(bytes_.get());
    }

  private:
    friend class Filler;
    const Case& case_;
    std::unique_ptr<unsigned char[]> bytes_;
    std::vector<std::string> expected_;                   /* a printed member each, or nothing */
    std::vector<std::unique_ptr<unsigned char[]>> owned_; /* nested records */
    std::vector<std::unique_ptr<std::string>> texts_;     /* what text pointers point to */
};

/* Like EXPECT_EQ, but shows the place of the difference. */
void ExpectSameText(const std::string& actual, const std::string& expected);

const std::vector<Case>& AllCases();

} // namespace records

#endif
