/* SPDX-License-Identifier: Apache-2.0 */
/* What holds for every record: its members, their rules and their order. */
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/objects/record_case.h"

using records::Case;
using records::ExpectSameText;
using records::Kind;
using records::Member;
using records::Record;
using records::Rule;
using records::State;

namespace
{

/* Bytes of fields that no member is made from; a list pointer made of them cannot be followed. */
constexpr unsigned char c_garbage = 0xA5;

class RecordTest : public testing::TestWithParam<Case>
{
  protected:
    const std::vector<Member>& Members() const
    {
        return *GetParam().members;
    }

    void ExpectWritten(State state)
    {
        Record record(GetParam());
        record.Background(state == State::zero ? 0 : c_garbage);
        record.PutAll(state);
        ExpectSameText(record.Encoded(), record.Expected());
    }

    /* Every member in one state, one after the other in another. */
    void ExpectEachAlone(State most, State one)
    {
        for (size_t index = 0; index < Members().size(); index++)
        {
            SCOPED_TRACE(Members()[index].key);
            Record record(GetParam());
            record.Background(c_garbage);
            record.PutAll(most);
            record.Put(index, one);
            ExpectSameText(record.Encoded(), record.Expected());
        }
    }

    /* Writes a text into every text of a rule, where it fits with its terminator. */
    void ExpectTextWritten(const std::string& text)
    {
        Record record(GetParam());
        record.Background(c_garbage);
        record.PutAll(State::absent);
        size_t written = 0;
        for (size_t index = 0; index < Members().size(); index++)
        {
            const Member& member = Members()[index];
            if (member.kind == Kind::text && member.rule == Rule::text && member.width > text.size())
            {
                record.PutText(index, text, std::string("\"") + member.key + "\":\"" + text + "\"");
                written++;
            }
        }
        if (written != 0)
        {
            ExpectSameText(record.Encoded(), record.Expected());
        }
    }

    void ExpectNumberWritten(double value, const char* text, bool whole)
    {
        Record record(GetParam());
        record.Background(c_garbage);
        record.PutAll(State::absent);
        for (size_t index = 0; index < Members().size(); index++)
        {
            const Member& member = Members()[index];
            if (member.rule == Rule::notMinusOne && whole == (member.kind == Kind::s32Number))
            {
                record.PutNumber(index, value, std::string("\"") + member.key + "\":" + text);
            }
        }
        ExpectSameText(record.Encoded(), record.Expected());
    }
};

TEST_P(RecordTest, TextsAreAsWideAsDemanded)
{
    for (const Member& member : Members())
    {
        EXPECT_EQ(member.declaredWidth, member.width) << member.key;
    }
}

TEST_P(RecordTest, AllBytesZero)
{
    ExpectWritten(State::zero);
}

TEST_P(RecordTest, NothingKnown)
{
    ExpectWritten(State::absent);
}

TEST_P(RecordTest, EverythingSet)
{
    ExpectWritten(State::set);
}

TEST_P(RecordTest, AnyFlagButZeroIsPresence)
{
    ExpectWritten(State::setBehindFlag);
}

TEST_P(RecordTest, ZeroIsAValue)
{
    ExpectWritten(State::setToZero);
}

TEST_P(RecordTest, InvInEveryText)
{
    ExpectWritten(State::inv);
}

TEST_P(RecordTest, TextsWithoutTerminatorEndWithTheirFields)
{
    ExpectWritten(State::full);
}

TEST_P(RecordTest, EachMemberAlone)
{
    ExpectEachAlone(State::absent, State::set);
}

TEST_P(RecordTest, EachMemberMissing)
{
    ExpectEachAlone(State::set, State::absent);
}

TEST_P(RecordTest, EachMemberInv)
{
    ExpectEachAlone(State::set, State::inv);
}

TEST_P(RecordTest, OnlyInvItselfIsTheMark)
{
    for (const char* text : {"I", "In", "inv", "INV", "Inv ", " Inv", "Inv1", "Invalid"})
    {
        SCOPED_TRACE(text);
        ExpectTextWritten(text);
    }
}

TEST_P(RecordTest, NeighboursOfMinusOneAreWritten)
{
    ExpectNumberWritten(0, "0", true);
    ExpectNumberWritten(1, "1", true);
    ExpectNumberWritten(-2, "-2", true);
    ExpectNumberWritten(2147483647, "2147483647", true);
    ExpectNumberWritten(-2147483648.0, "-2147483648", true);
    ExpectNumberWritten(0, "0", false);
    ExpectNumberWritten(-0.5, "-0.5", false);
    ExpectNumberWritten(-1.5, "-1.5", false);
    ExpectNumberWritten(1, "1", false);
}

INSTANTIATE_TEST_SUITE_P(Records, RecordTest, testing::ValuesIn(records::AllCases()),
                         [](const testing::TestParamInfo<Case>& parameter) { return parameter.param.name; });

} // namespace
