/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/objects/record_case.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include "tests/support/host_tree.h"

namespace records
{

namespace
{

std::string Quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

std::string Joined(const std::vector<std::string>& members)
{
    std::string text;
    for (const std::string& member : members)
    {
        text += member.empty() ? "" : (text.empty() ? "" : ",") + member;
    }
    return "{" + text + "}";
}

template <typename Value> void Store(unsigned char* bytes, size_t offset, Value value)
{
    memcpy(bytes + offset, &value, sizeof(value));
}

/* A text that tells the members of a record apart, as far as its field's width allows. */
std::string OwnText(size_t ordinal, size_t length)
{
    static const std::string digits = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::string text = {digits[ordinal % digits.size()], digits[ordinal / digits.size() + 10]};
    text.resize(length, '.');
    return text;
}

} // namespace

/* Fills the fields of one object, nested or not, and collects what is to be written. */
class Filler
{
  public:
    Filler(Record& record, unsigned char* bytes, const std::vector<Member>& members)
        : record_(record), bytes_(bytes), members_(members)
    {
    }

    std::string Put(size_t index, State state)
    {
        const Member& member = members_[index];
        PutFlag(member, state);
        const std::string value = PutValue(member, Ordinal(index), state);
        return IsWritten(member, state) ? Quoted(member.key) + ":" + value : "";
    }

    std::string PutAll(State state)
    {
        std::vector<std::string> written;
        for (size_t index = 0; index < members_.size(); index++)
        {
            written.push_back(Put(index, state));
        }
        return Joined(written);
    }

  private:
    /* Members of one field are filled alike. */
    size_t Ordinal(size_t index) const
    {
        const auto same = [&](const Member& other) { return other.offset == members_[index].offset; };
        return static_cast<size_t>(std::find_if(members_.begin(), members_.end(), same) - members_.begin());
    }

    void PutFlag(const Member& member, State state)
    {
        const bool present = state != State::zero && state != State::absent && state != State::inv;
        const u32 flag = present ? (state == State::setBehindFlag ? 0x8000 : 1) : 0;
        if (member.flagSize == sizeof(u16))
        {
            Store(bytes_, member.flag, static_cast<u16>(flag));
        }
        else if (member.flagSize == sizeof(u32))
        {
            Store(bytes_, member.flag, state == State::setBehindFlag ? 0x80000000u : flag);
        }
    }

    bool IsWritten(const Member& member, State state) const
    {
        switch (member.rule)
        {
        case Rule::text:
            return state != State::zero && state != State::absent && state != State::setToZero &&
                   (state != State::inv || member.width < 3);
        case Rule::flag:
        case Rule::pointer:
            return state != State::zero && state != State::absent && state != State::inv;
        case Rule::notMinusOne:
            return state != State::absent && state != State::inv;
        case Rule::behindOne:
            return false;
        default:
            return true;
        }
    }

    std::string PutValue(const Member& member, size_t ordinal, State state)
    {
        switch (member.kind)
        {
        case Kind::text:
            return PutText(member, ordinal, state);
        case Kind::textPointer:
            return PutTextPointer(member, ordinal, state);
        case Kind::objectPointer:
            return PutObjectPointer(member, state);
        case Kind::object:
        case Kind::group:
            return Filler(record_, bytes_ + member.offset, *member.nested).PutAll(state);
        default:
            return PutNumber(member, ordinal, state);
        }
    }

    std::string PutText(const Member& member, size_t ordinal, State state)
    {
        std::string text;
        if (state == State::inv)
        {
            text = std::string("Inv").substr(0, member.width);
        }
        else if (state == State::full)
        {
            text = OwnText(ordinal, member.width);
        }
        else if (state == State::set || state == State::setBehindFlag)
        {
            text = OwnText(ordinal, member.width - 1);
        }
        /* What follows the terminator is not to be seen. */
        memset(bytes_ + member.offset, state == State::zero ? 0 : '#', member.width);
        memcpy(bytes_ + member.offset, text.c_str(), std::min(text.size() + 1, member.width));
        return Quoted(text);
    }

    std::string PutTextPointer(const Member& member, size_t ordinal, State state)
    {
        const bool present = state != State::zero && state != State::absent && state != State::inv;
        std::string text = present && state != State::setToZero ? "text " + std::to_string(ordinal) : "";
        record_.texts_.push_back(std::make_unique<std::string>(text));
        Store(bytes_, member.offset, present ? record_.texts_.back()->c_str() : nullptr);
        return Quoted(text);
    }

    std::string PutObjectPointer(const Member& member, State state)
    {
        if (state == State::zero || state == State::absent || state == State::inv)
        {
            Store(bytes_, member.offset, static_cast<void*>(nullptr));
            return "";
        }
        record_.owned_.push_back(std::make_unique<unsigned char[]>(member.objectSize));
        unsigned char* object = record_.owned_.back().get();
        memset(object, 0xA5, member.objectSize);
        Store(bytes_, member.offset, static_cast<void*>(object));
        return Filler(record_, object, *member.nested).PutAll(state);
    }

    template <typename Number> std::string Store32(const Member& member, Number number)
    {
        Store(bytes_, member.offset, number);
        return member.rule == Rule::oneZero ? (number == 1 ? "\"1\"" : "\"0\"") : std::to_string(number);
    }

    /* Absent means -1 under the rule for it, and a value beside a cleared flag under that for flags. */
    std::string PutNumber(const Member& member, size_t ordinal, State state)
    {
        const bool zero = state == State::zero || state == State::setToZero;
        const bool minusOne = member.rule == Rule::notMinusOne && (state == State::absent || state == State::inv);
        if (member.rule == Rule::oneZero)
        {
            return Store32(member, zero ? 0u : (state == State::set ? 1u : 2u));
        }
        if (minusOne)
        {
            PutMinusOne(member);
            return "";
        }
        switch (member.kind)
        {
        case Kind::s32Number:
            return Store32(member, zero ? 0 : (ordinal % 2 == 0 ? INT_MAX : INT_MIN + 150) - static_cast<s32>(ordinal));
        case Kind::u32Number:
            return Store32(member, zero ? 0 : UINT_MAX - static_cast<u32>(ordinal));
        case Kind::u64Number:
            Store(bytes_, member.offset, zero ? u64{0} : u64{1} << 50 | ordinal);
            return zero ? "0" : std::to_string(u64{1} << 50 | ordinal);
        case Kind::f32Number:
            Store(bytes_, member.offset, zero ? 0.0F : static_cast<float>(ordinal) + 0.5F);
            return zero ? "0" : std::to_string(ordinal) + ".5";
        default:
            Store(bytes_, member.offset, zero ? 0.0 : -static_cast<double>(ordinal) - 0.875);
            return zero ? "0" : "-" + std::to_string(ordinal) + ".875";
        }
    }

    void PutMinusOne(const Member& member)
    {
        if (member.kind == Kind::s32Number)
        {
            Store(bytes_, member.offset, s32{-1});
        }
        else if (member.kind == Kind::f32Number)
        {
            Store(bytes_, member.offset, -1.0F);
        }
        else
        {
            Store(bytes_, member.offset, -1.0);
        }
    }

    Record& record_;
    unsigned char* bytes_;
    const std::vector<Member>& members_;
};

Record::Record(const Case& subject)
    : case_(subject), bytes_(std::make_unique<unsigned char[]>(subject.size)), expected_(subject.members->size())
{
}

Record::~Record() = default;

void Record::Background(unsigned char byte)
{
    memset(bytes_.get(), byte, case_.size);
}

void Record::Put(size_t index, State state)
{
    expected_[index] = Filler(*this, bytes_.get(), *case_.members).Put(index, state);
}

void Record::PutAll(State state)
{
    for (size_t index = 0; index < expected_.size(); index++)
    {
        Put(index, state);
    }
}

void Record::PutText(size_t index, const std::string& text, const std::string& expected)
{
    const Member& member = (*case_.members)[index];
    memset(bytes_.get() + member.offset, 0, member.width);
    memcpy(bytes_.get() + member.offset, text.data(), std::min(text.size(), member.width));
    expected_[index] = expected;
}

void Record::PutNumber(size_t index, double value, const std::string& expected)
{
    const Member& member = (*case_.members)[index];
    if (member.kind == Kind::s32Number)
    {
        Store(bytes_.get(), member.offset, static_cast<s32>(value));
    }
    else if (member.kind == Kind::f32Number)
    {
        Store(bytes_.get(), member.offset, static_cast<float>(value));
    }
    else
    {
        Store(bytes_.get(), member.offset, value);
    }
    expected_[index] = expected;
}

std::string Record::Expected() const
{
    return Joined(expected_);
}

std::string Record::Encoded() const
{
    return case_.encode(bytes_.get());
}

std::string Printed(const std::function<void(cJSON*)>& encode)
{
    cJSON* object = cJSON_CreateObject();
    encode(object);
    EXPECT_EQ(extraordinaryIn(object), "");
    char* printed = cJSON_PrintUnformatted(object);
    cJSON_Delete(object);
    std::string text = printed != nullptr ? printed : "nothing printed";
    cJSON_free(printed);
    return text;
}

void ExpectSameText(const std::string& actual, const std::string& expected)
{
    if (actual == expected)
    {
        return;
    }
    const size_t shorter = std::min(actual.size(), expected.size());
    const size_t place = static_cast<size_t>(
        std::mismatch(actual.begin(), actual.begin() + static_cast<std::ptrdiff_t>(shorter), expected.begin()).first -
        actual.begin());
    const size_t from = place > 60 ? place - 60 : 0;
    ADD_FAILURE() << "differs at " << place << "\n  written:  ..." << actual.substr(from, 160) << "\n  expected: ..."
                  << expected.substr(from, 160);
}

} // namespace records
