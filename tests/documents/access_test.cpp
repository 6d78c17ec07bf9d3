/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of access records. */
#include "tests/documents/document.h"

namespace
{

using namespace bare;

TEST(AccessRecords, OneAlone)
{
    TPubSecAccessRecordInfo record = accessRecord("A1");
    put(record.achSourceID, "Inv");
    record.dwCardID = 4294967295u;
    record.nCardType = -1;
    record.dwRecordNum = 0; /* says nothing about a single one */
    EXPECT_EQ(textOf(_PubSecAccRecInfoJson(&record)),
              R"({"AccessRecordObject":{"AccessRecordID":"A1","DeviceID":"","SecureAccessID":"","AlarmEventCode":"",)"
              R"("CardID":4294967295,"CardType":-1,"PersonCode":"","AccessTime":"","PunchAct":0,"PunchResult":0,)"
              R"("PunchTime":""}})");
}

TEST(AccessRecords, TheFirstSaysHowMany)
{
    TPubSecAccessRecordInfo records[3] = {accessRecord("A1"), accessRecord("A2"), accessRecord("A3")};
    records[0].dwRecordNum = 3;
    records[1].dwRecordNum = 0;
    records[2].dwRecordNum = 77;
    put(records[1].achSourceID, "S");
    put(records[1].achEntryTime, "20260101000000");
    EXPECT_EQ(textOf(_PubSecAccRecInfoListJson(records)),
              root(list("AccessRecordListObject", "AccessRecordObject",
                        {accessRecordText("A1"),
                         R"({"AccessRecordID":"A2","SourceID":"S","DeviceID":"","SecureAccessID":"",)"
                         R"("AlarmEventCode":"","CardID":0,"CardType":0,"PersonCode":"","AccessTime":"","PunchAct":0,)"
                         R"("PunchResult":0,"PunchTime":"","EntryTime":"20260101000000"})",
                         accessRecordText("A3")})));
}

TEST(AccessRecords, ACountThatIsNotAboveZeroIsAnEmptyList)
{
    TPubSecAccessRecordInfo record = accessRecord("A1");
    for (const u32 count : {0u, 0x80000000u, 0xFFFFFFFFu})
    {
        record.dwRecordNum = count;
        EXPECT_EQ(textOf(_PubSecAccRecInfoListJson(&record)), R"({"AccessRecordListObject":{"AccessRecordObject":[]}})")
            << count;
    }
}

TEST(AccessRecords, WhatIsReservedDoesNotMatter)
{
    TPubSecAccessRecordInfo record = accessRecord("A1");
    std::memset(record.abyReserved1, 0xFF, sizeof(record.abyReserved1));
    std::memset(record.abyReserved2, 0xFF, sizeof(record.abyReserved2));
    EXPECT_EQ(textOf(_PubSecAccRecInfoJson(&record)), root(R"("AccessRecordObject":)" + accessRecordText("A1")));
}

TEST(AccessRecords, NoDocumentWithoutRecords)
{
    EXPECT_EQ(textOf(_PubSecAccRecInfoJson(nullptr)), kNone);
    EXPECT_EQ(textOf(_PubSecAccRecInfoListJson(nullptr)), kNone);
}

} // namespace
