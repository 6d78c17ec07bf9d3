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

constexpr char kBasic[] = "PubSecStackCreat_BasicObjectIdType";
constexpr char kImageCnt[] = "PubSecStackCreat_ImageCntObjectIdType";

TPubSecObjectIdParam param(u32 type, u64 serial)
{
    TPubSecObjectIdParam result = {"34020000001190000001", "20240131235959", type, serial};
    return result;
}

TPubSecImageCntIdParam imageParam(u32 type, u64 serial)
{
    TPubSecImageCntIdParam result = {param(1, 7), type, serial};
    return result;
}

std::string basicId(u32 type, u64 serial)
{
    const TPubSecObjectIdParam input = param(type, serial);
    char id[42];
    memset(id, 'x', sizeof(id));
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 42), 50u);
    return id;
}

std::string imageCntId(u32 type, u64 serial)
{
    const TPubSecImageCntIdParam input = imageParam(type, serial);
    char id[49];
    memset(id, 'x', sizeof(id));
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, id, 49), 50u);
    return id;
}

std::string refusal(unsigned length, int limit, const void* id, const void* input)
{
    char text[256];
    snprintf(text, sizeof(text), "Input param wIdLen=%u,PUBSEC_ImageCntObjectIdType=%d,pchId=0x%p, ptParam=%p failed.",
             length, limit, id, input);
    return text;
}

class Identifier : public host::Test
{
};

} // namespace

TEST_F(Identifier, BasicHas41Characters)
{
    EXPECT_EQ(basicId(0, 1), "34020000001190000001"
                             "01"
                             "20240131235959"
                             "00001");
    EXPECT_EQ(basicId(0, 1).size(), 41u);
}

TEST_F(Identifier, BasicKinds)
{
    EXPECT_EQ(basicId(0, 0).substr(20, 2), "01");
    EXPECT_EQ(basicId(1, 0).substr(20, 2), "02");
    EXPECT_EQ(basicId(2, 0).substr(20, 2), "03");
    EXPECT_EQ(basicId(3, 0).substr(20, 2), "99");
    EXPECT_EQ(basicId(5, 0).substr(20, 2), "99");
    EXPECT_EQ(basicId(0xFFFFFFFF, 0).substr(20, 2), "99");
}

TEST_F(Identifier, BasicSerialNumberIsFiveDigits)
{
    EXPECT_EQ(basicId(0, 7).substr(36), "00007");
    EXPECT_EQ(basicId(0, 99999).substr(36), "99999");
    EXPECT_EQ(basicId(0, 100000).substr(36), "00000");
    EXPECT_EQ(basicId(0, 123456).substr(36), "23456");
    EXPECT_EQ(basicId(0, 18446744073709551615u).substr(36), "51615");
}

TEST_F(Identifier, BasicIsCutToAShorterBuffer)
{
    const TPubSecObjectIdParam input = param(0, 1);
    char id[42];
    memset(id, 'x', sizeof(id));
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 10), 50u);
    EXPECT_STREQ(id, "340200000");
    EXPECT_EQ(id[10], 'x');
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 41), 50u);
    EXPECT_STREQ(id, "3402000000119000000101202401312359590000");
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 1), 50u);
    EXPECT_STREQ(id, "");
}

TEST_F(Identifier, BasicWithoutRoomWritesNothing)
{
    logAt(3);
    const TPubSecObjectIdParam input = param(0, 1);
    char id[2] = {'x', 'x'}; /* no terminator to be found */
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 0), 50u);
    EXPECT_EQ(id[0], 'x');
    EXPECT_THAT(state.lines, ElementsAre(debugLine(kBasic, "BasicObjectIdType:")));
}

TEST_F(Identifier, BasicRefusesALongerBuffer)
{
    const TPubSecObjectIdParam input = param(0, 1);
    char id[65536];
    for (const u16 length : {u16{43}, u16{49}, u16{65535}})
    {
        memset(id, 'x', sizeof(id));
        EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, length), 80u);
        EXPECT_EQ(std::string(id, sizeof(id)), std::string(sizeof(id), 'x'));
    }
}

TEST_F(Identifier, BasicRefusesNull)
{
    const TPubSecObjectIdParam input = param(0, 1);
    char id[42] = "x";
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(nullptr, id, 42), 80u);
    EXPECT_STREQ(id, "x");
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, nullptr, 42), 80u);
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(nullptr, nullptr, 42), 80u);
}

TEST_F(Identifier, BasicReadsUnterminatedTextsToTheirEnd)
{
    TPubSecObjectIdParam input = param(0, 1);
    memset(input.achDeviceID, 'D', sizeof(input.achDeviceID));
    memset(input.achDateTime, 'T', sizeof(input.achDateTime));
    char id[42];
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 42), 50u);
    /* 21 + 2 + 18 of the date's 19 characters: the identifier is cut to 41 */
    EXPECT_EQ(std::string(id), std::string(21, 'D') + "01" + std::string(18, 'T'));

    input = param(0, 1);
    memset(input.achDeviceID, 'D', sizeof(input.achDeviceID));
    input.achDateTime[2] = '\0';
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 42), 50u);
    EXPECT_EQ(std::string(id), std::string(21, 'D') + "012000001");
}

TEST_F(Identifier, BasicCopiesShortTextsAsTheyStand)
{
    TPubSecObjectIdParam input = {};
    input.qwSerialNo = 42;
    char id[42];
    EXPECT_EQ(PubSecStackCreat_BasicObjectIdType(&input, id, 42), 50u);
    EXPECT_STREQ(id, "0100042");
}

TEST_F(Identifier, BasicErrorLine)
{
    const TPubSecObjectIdParam input = param(0, 1);
    char id[64];
    PubSecStackCreat_BasicObjectIdType(&input, id, 43);
    EXPECT_THAT(state.lines, IsEmpty());
    for (const u32 level : {1u, 2u, 3u, 4u})
    {
        logAt(level);
        state.lines.clear();
        PubSecStackCreat_BasicObjectIdType(&input, id, 43);
        EXPECT_THAT(state.lines, ElementsAre(isError(kBasic, refusal(43, 42, id, &input)))) << level;
    }
    state.lines.clear();
    PubSecStackCreat_BasicObjectIdType(nullptr, nullptr, 5);
    EXPECT_THAT(state.lines, ElementsAre(isError(kBasic, refusal(5, 42, nullptr, nullptr))));
}

TEST_F(Identifier, BasicDebugLine)
{
    for (const u32 level : {0u, 1u, 2u})
    {
        logAt(level);
        basicId(1, 7);
        EXPECT_THAT(state.lines, IsEmpty()) << level;
    }
    for (const u32 level : {3u, 4u})
    {
        logAt(level);
        state.lines.clear();
        basicId(1, 7);
        EXPECT_THAT(state.lines,
                    ElementsAre(debugLine(kBasic, "BasicObjectIdType:34020000001190000001022024013123595900007")))
            << level;
    }
}

TEST_F(Identifier, ImageCntHas48Characters)
{
    EXPECT_EQ(imageCntId(5, 123456), "34020000001190000001"
                                     "02"
                                     "20240131235959"
                                     "00007"
                                     "06"
                                     "23456");
    EXPECT_EQ(imageCntId(5, 123456).size(), 48u);
}

TEST_F(Identifier, ImageCntKinds)
{
    EXPECT_EQ(imageCntId(0, 0).substr(41, 2), "01");
    EXPECT_EQ(imageCntId(1, 0).substr(41, 2), "02");
    EXPECT_EQ(imageCntId(2, 0).substr(41, 2), "03");
    EXPECT_EQ(imageCntId(3, 0).substr(41, 2), "04");
    EXPECT_EQ(imageCntId(4, 0).substr(41, 2), "05");
    EXPECT_EQ(imageCntId(5, 0).substr(41, 2), "06");
    EXPECT_EQ(imageCntId(6, 0).substr(41, 2), "07");
    EXPECT_EQ(imageCntId(7, 0).substr(41, 2), "99");
    EXPECT_EQ(imageCntId(0xFFFFFFFF, 0).substr(41, 2), "99");
}

TEST_F(Identifier, ImageCntSerialNumberIsFiveDigits)
{
    EXPECT_EQ(imageCntId(0, 7).substr(43), "00007");
    EXPECT_EQ(imageCntId(0, 100000).substr(43), "00000");
    EXPECT_EQ(imageCntId(0, 18446744073709551615u).substr(43), "51615");
}

TEST_F(Identifier, ImageCntIsCutToAShorterBuffer)
{
    const TPubSecImageCntIdParam input = imageParam(5, 9);
    char id[49];
    memset(id, 'x', sizeof(id));
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, id, 44), 50u);
    EXPECT_STREQ(id, "3402000000119000000102202401312359590000706");
    EXPECT_EQ(id[44], 'x');
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, id, 10), 50u);
    EXPECT_STREQ(id, "340200000");
    id[0] = 'x';
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, id, 0), 50u);
    EXPECT_EQ(id[0], 'x');
}

TEST_F(Identifier, ImageCntTakesAtMost41CharactersOfTheObjectIdentifier)
{
    TPubSecImageCntIdParam input = imageParam(5, 9);
    memset(input.tBasic.achDateTime, 'T', sizeof(input.tBasic.achDateTime));
    char id[49];
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, id, 49), 50u);
    EXPECT_EQ(std::string(id), "3402000000119000000102" + std::string(19, 'T') + "0600009");
}

TEST_F(Identifier, ImageCntRefusals)
{
    const TPubSecImageCntIdParam input = imageParam(5, 9);
    char id[64] = "x";
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, id, 50), 80u);
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, id, 65535), 80u);
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(nullptr, id, 49), 80u);
    EXPECT_EQ(PubSecStackCreat_ImageCntObjectIdType(&input, nullptr, 49), 80u);
    EXPECT_STREQ(id, "x");
    EXPECT_THAT(state.lines, IsEmpty());

    logAt(1);
    PubSecStackCreat_ImageCntObjectIdType(&input, id, 50);
    EXPECT_THAT(state.lines, ElementsAre(isError(kImageCnt, refusal(50, 49, id, &input))));
}

TEST_F(Identifier, ImageCntDebugLines)
{
    logAt(2);
    imageCntId(5, 9);
    EXPECT_THAT(state.lines, IsEmpty());
    logAt(3);
    imageCntId(5, 9);
    EXPECT_THAT(
        state.lines,
        ElementsAre(debugLine(kBasic, "BasicObjectIdType:34020000001190000001022024013123595900007"),
                    debugLine(kImageCnt, "ImageCntObjectIdType:340200000011900000010220240131235959000070600009")));
}
