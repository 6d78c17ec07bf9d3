/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>
#include <string.h>

#include <string>

#include <pubsecstack/helpers.h>

#include "tests/util/host.h"

using host::debugLine;
using host::isError;
using host::state;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

const TPubSecTime kTime = {2024, 1, 2, 3, 4, 5};

std::string fromStamp(u64 milliseconds)
{
    char text[15];
    memset(text, 'x', sizeof(text));
    EXPECT_EQ(PubSecStackCreat_DateTimeEx(milliseconds, text, sizeof(text)), 50u);
    return text;
}

class DateTime : public host::Test
{
};

} // namespace

TEST_F(DateTime, PadsEveryField)
{
    char text[15];
    EXPECT_EQ(PubSecStackCreat_DateTime(&kTime, text, 15), 50u);
    EXPECT_STREQ(text, "20240102030405");
    const TPubSecTime last = {9999, 12, 31, 23, 59, 60};
    EXPECT_EQ(PubSecStackCreat_DateTime(&last, text, 15), 50u);
    EXPECT_STREQ(text, "99991231235960");
    const TPubSecTime zero = {};
    EXPECT_EQ(PubSecStackCreat_DateTime(&zero, text, 15), 50u);
    EXPECT_STREQ(text, "00000000000000");
}

TEST_F(DateTime, FieldsBeyondTheirRangeAreWrittenWithinTheBuffer)
{
    const TPubSecTime wide = {65535, 255, 255, 255, 255, 255};
    char text[32];
    memset(text, 'x', sizeof(text));
    EXPECT_EQ(PubSecStackCreat_DateTime(&wide, text, 15), 50u);
    EXPECT_STREQ(text, "65535255255255");
    EXPECT_EQ(text[15], 'x');
    EXPECT_EQ(PubSecStackCreat_DateTime(&wide, text, 32), 50u);
    EXPECT_STREQ(text, "65535255255255255255");
}

TEST_F(DateTime, TakesAnyBufferOf15OrMore)
{
    char text[65536];
    EXPECT_EQ(PubSecStackCreat_DateTime(&kTime, text, 65535), 50u);
    EXPECT_STREQ(text, "20240102030405");
    strcpy(text, "x");
    EXPECT_EQ(PubSecStackCreat_DateTime(&kTime, text, 14), 80u);
    EXPECT_EQ(PubSecStackCreat_DateTime(&kTime, text, 0), 80u);
    EXPECT_STREQ(text, "x");
}

TEST_F(DateTime, RefusesNull)
{
    char text[15] = "x";
    EXPECT_EQ(PubSecStackCreat_DateTime(nullptr, text, 15), 80u);
    EXPECT_EQ(PubSecStackCreat_DateTime(&kTime, nullptr, 15), 80u);
    EXPECT_STREQ(text, "x");
}

TEST_F(DateTime, Lines)
{
    char text[15];
    char expected[256];
    snprintf(expected, sizeof(expected),
             "Input param wDateTimeLen=%u,PUBSEC_dateTime=%d,pchId=0x%p, ptParam=%p failed.", 14u, 15,
             static_cast<void*>(text), static_cast<const void*>(&kTime));

    PubSecStackCreat_DateTime(&kTime, text, 14);
    EXPECT_THAT(state.lines, IsEmpty());
    logAt(1);
    PubSecStackCreat_DateTime(&kTime, text, 14);
    EXPECT_THAT(state.lines, ElementsAre(isError("PubSecStackCreat_DateTime", expected)));

    state.lines.clear();
    logAt(2);
    PubSecStackCreat_DateTime(&kTime, text, 15);
    EXPECT_THAT(state.lines, IsEmpty());
    logAt(3);
    PubSecStackCreat_DateTime(&kTime, text, 15);
    EXPECT_THAT(state.lines, ElementsAre(debugLine("PubSecStackCreat_DateTime", "DateTime:20240102030405")));
}

TEST_F(DateTime, StampIsBrokenDownFromSeconds)
{
    EXPECT_EQ(fromStamp(0), "19700101000000");
    EXPECT_EQ(fromStamp(999), "19700101000000");
    EXPECT_EQ(fromStamp(1000), "19700101000001");
    EXPECT_EQ(fromStamp(1709251199999), "20240229235959");
    EXPECT_EQ(fromStamp(4294967295999), "21060207062815");
}

TEST_F(DateTime, StampWrapsAt32BitsOfSeconds)
{
    EXPECT_EQ(fromStamp(4294967296000), "19700101000000");
    EXPECT_EQ(fromStamp(4294967296000 + 86400000), "19700102000000");
}

TEST_F(DateTime, StampIsMovedToTheShownTimeZone)
{
    state.switchAdds = 8 * 3600;
    EXPECT_EQ(fromStamp(1709251199999), "20240301075959");
    EXPECT_EQ(state.switchCalls, 1);
    EXPECT_EQ(state.switchMode, 1u);
}

TEST_F(DateTime, StampRefusals)
{
    char text[15] = "x";
    EXPECT_EQ(PubSecStackCreat_DateTimeEx(0, text, 14), 80u);
    EXPECT_EQ(PubSecStackCreat_DateTimeEx(0, nullptr, 15), 80u);
    EXPECT_STREQ(text, "x");
    EXPECT_EQ(state.switchCalls, 0);
}

TEST_F(DateTime, StampLines)
{
    char text[15];
    char expected[256];
    snprintf(expected, sizeof(expected), "Input param wDateTimeLen=%u,PUBSEC_dateTime=%d, pchDateTime=%p failed.", 14u,
             15, static_cast<void*>(text));

    PubSecStackCreat_DateTimeEx(0, text, 14);
    EXPECT_THAT(state.lines, IsEmpty());
    logAt(1);
    PubSecStackCreat_DateTimeEx(0, text, 14);
    EXPECT_THAT(state.lines, ElementsAre(isError("PubSecStackCreat_DateTimeEx", expected)));

    state.lines.clear();
    logAt(2);
    fromStamp(0);
    EXPECT_THAT(state.lines, IsEmpty());
    logAt(3);
    fromStamp(0);
    EXPECT_THAT(state.lines, ElementsAre(debugLine("PubSecStackCreat_DateTimeEx", "DateTime:19700101000000")));
}
