/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of traffic violations. */
#include "tests/documents/document.h"

namespace
{

using namespace bare;

std::string document(std::initializer_list<std::string> records)
{
    return root(list("IllegalRecordListObject", "IllegalRecordObject", records));
}

std::string nonMotorDocument(std::initializer_list<std::string> records)
{
    return root(list("NonMotorIllegalRecordListObject", "NonMotorIllegalRecordObject", records));
}

TEST(Violations, AreAsManyAsTheFirstOneSays)
{
    TPubSecIllegalRecordInfo records[3] = {illegalRecord("R1"), illegalRecord("R2"), illegalRecord("R3")};
    records[0].dwIllegalRecordNum = 2;
    records[1].dwIllegalRecordNum = 9;
    EXPECT_EQ(textOf(_PubSecIllegalRecordJson(records)), document({illegalRecordText("R1"), illegalRecordText("R2")}));
    records[0].dwIllegalRecordNum = 0;
    EXPECT_EQ(textOf(_PubSecIllegalRecordJson(records)), R"({"IllegalRecordListObject":{"IllegalRecordObject":[]}})");
}

TEST(Violations, OfTheShortFormHaveNoSubImages)
{
    TPubSecSubImageInfo images[1] = {subImage("I1")};
    TPubSecIllegalRecordInfo record = illegalRecord("R1");
    record.dwIllegalRecordNum = 1;
    record.dwSubImageNum = 1;
    record.ptSubImageList = images;
    EXPECT_EQ(textOf(_PubSecIllegalRecordJson(&record)), document({illegalRecordText("R1")}));
}

TEST(Violations, OfTheLongFormAreAsManyAsGiven)
{
    TPubSecSubImageInfo images[2] = {subImage("I1"), subImage("I2")};
    TPubSecIllegalRecordInfo records[3] = {illegalRecord("R1"), illegalRecord("R2"), illegalRecord("R3")};
    records[0].dwIllegalRecordNum = 1;
    records[0].dwSubImageNum = 2;
    records[0].ptSubImageList = images;
    records[1].dwSubImageNum = 2; /* without a list */
    records[2].ptSubImageList = images;
    EXPECT_EQ(textOf(_PubSecIllegalRecordJsonEx(3, records)),
              document({with(illegalRecordText("R1"), subImages({subImageText("I1"), subImageText("I2")})),
                        illegalRecordText("R2"), with(illegalRecordText("R3"), subImages({}))}));
    EXPECT_EQ(textOf(_PubSecIllegalRecordJsonEx(0, records)), document({}));
}

TEST(Violations, OptionalMembers)
{
    TPubSecIllegalRecordInfo record = illegalRecord("R1");
    put(record.achDeviceID, "44010000001190000001");
    put(record.achTollgateID, "G7");
    record.nHasPlate = 2;
    record.dSpeed = 0.0;
    record.pchMotorVehicleIDs = "M1,M2";
    record.pchVideoIDs = "";
    EXPECT_EQ(textOf(_PubSecIllegalRecordJsonEx(1, &record)),
              R"({"IllegalRecordListObject":{"IllegalRecordObject":[{"IllegalRecordID":"R1","SourceID":"",)"
              R"("TollgateID":"G7","DeviceID":"44010000001190000001","HasPlate":"0","Speed":0,)"
              R"("MotorVehicleIDs":"M1,M2","VideoIDs":""}]}})");
    record.nHasPlate = 1;
    record.dSpeed = -1.0;
    record.pchMotorVehicleIDs = nullptr;
    record.pchVideoIDs = nullptr;
    EXPECT_EQ(textOf(_PubSecIllegalRecordJsonEx(1, &record)),
              R"({"IllegalRecordListObject":{"IllegalRecordObject":[{"IllegalRecordID":"R1","SourceID":"",)"
              R"("TollgateID":"G7","DeviceID":"44010000001190000001","HasPlate":"1"}]}})");
}

TEST(NonMotorViolations, WithTheirSubImages)
{
    TPubSecSubImageInfo images[2] = {subImage("I1"), subImage("I2")};
    TPubSecNonMotorIllegalRecordInfo records[3] = {nonMotorIllegalRecord("Q1"), nonMotorIllegalRecord("Q2"),
                                                   nonMotorIllegalRecord("Q3")};
    records[0].wSubImageNum = 2;
    records[0].ptSubImageList = images;
    records[1].wSubImageNum = 2; /* without a list */
    records[2].ptSubImageList = images;
    put(records[2].achIllgealPerson, "someone");
    EXPECT_EQ(
        textOf(_PubSecNonMotorIllegalRecordJson(3, records)),
        nonMotorDocument({with(nonMotorIllegalRecordText("Q1"), subImages({subImageText("I1"), subImageText("I2")})),
                          nonMotorIllegalRecordText("Q2"),
                          with(nonMotorIllegalRecordText("Q3"), R"("IllgealPerson":"someone",)" + subImages({}))}));
    EXPECT_EQ(textOf(_PubSecNonMotorIllegalRecordJson(0, records)),
              R"({"NonMotorIllegalRecordListObject":{"NonMotorIllegalRecordObject":[]}})");
}

/* A count of more than half of 16 bits is no negative one. */
TEST(NonMotorViolations, SubImagesAreCountedWithoutSign)
{
    std::vector<TPubSecSubImageInfo> images(0x8001, subImage("I"));
    TPubSecNonMotorIllegalRecordInfo record = nonMotorIllegalRecord("Q1");
    record.wSubImageNum = 0x8001;
    record.ptSubImageList = images.data();
    const size_t empty = nonMotorDocument({with(nonMotorIllegalRecordText("Q1"), subImages({}))}).size();
    EXPECT_EQ(textOf(_PubSecNonMotorIllegalRecordJson(1, &record)).size(),
              empty + 0x8001 * subImageText("I").size() + 0x8000);
}

TEST(AllViolations, NoDocumentWithoutRecords)
{
    EXPECT_EQ(textOf(_PubSecIllegalRecordJson(nullptr)), kNone);
    for (const u16 count : {u16{0}, u16{1}})
    {
        EXPECT_EQ(textOf(_PubSecIllegalRecordJsonEx(count, nullptr)), kNone) << count;
        EXPECT_EQ(textOf(_PubSecNonMotorIllegalRecordJson(count, nullptr)), kNone) << count;
    }
}

} // namespace
