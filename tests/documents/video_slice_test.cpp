/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of video slices. */
#include <set>

#include "tests/documents/allocations.h"
#include "tests/documents/document.h"

namespace
{

using namespace bare;

/* Every array with one entry, each entry with one sub-image; the counts are the test's. */
struct VideoSlices : testing::Test
{
    VideoSlices()
    {
        put(slices[1].achVideoID, "V2");
        illegalRecords[0].dwIllegalRecordNum = 1;
        documents.ptVideoSlice = slices;
        documents.ptPerson = persons;
        documents.ptFace = faces;
        documents.ptMotorVehicle = motorVehicles;
        documents.ptNonMotorVehicle = nonMotorVehicles;
        documents.ptThing = things;
        documents.ptScene = scenes;
        documents.ptIllegalRecord = illegalRecords;
        documents.ptNonMotorIllegalRecord = nonMotorIllegalRecords;
        setCounts(1);
        documents.nVideoSliceNum = 1;
        documents.pchData = "QUJD";
    }

    void setCounts(s32 count)
    {
        documents.nPersonNum = documents.nFaceNum = documents.nMotorVehicleNum = documents.nNonMotorVehicleNum =
            documents.nThingNum = documents.nSceneNum = count;
        documents.dwNonMotorIllegalRecordNum = count > 0 ? static_cast<u32>(count) : 0;
    }

    /* The same list and number of sub-images for every object. */
    void setSubImages(TPubSecSubImageInfo* given, s32 count)
    {
        persons[0].ptSubImageList = faces[0].ptSubImageList = motorVehicles[0].ptSubImageList =
            nonMotorVehicles[0].ptSubImageList = things[0].ptSubImageList = scenes[0].ptSubImageList =
                illegalRecords[0].ptSubImageList = nonMotorIllegalRecords[0].ptSubImageList = given;
        persons[0].nSubImageNum = faces[0].nSubImageNum = motorVehicles[0].nSubImageNum =
            nonMotorVehicles[0].nSubImageNum = things[0].nSubImageNum = scenes[0].nSubImageNum = count;
        illegalRecords[0].dwSubImageNum = static_cast<u32>(count);
        nonMotorIllegalRecords[0].wSubImageNum = count > 0 ? static_cast<u16>(count) : u16{0};
    }

    /* The eight lists in order, each with the first object and what follows its own members. */
    static std::string lists(const std::string& more)
    {
        const auto one = [&](const std::string& text) { return more.empty() ? text : with(text, more); };
        return join(
            {list("PersonList", "PersonObject", {one(personText("P1"))}),
             list("FaceList", "FaceObject", {one(faceText("F1"))}),
             list("MotorVehicleList", "MotorVehicleObject", {one(motorVehicleText("M1"))}),
             list("NonMotorVehicleList", "NonMotorVehicleObject", {one(nonMotorVehicleText("N1"))}),
             list("ThingList", "ThingObject", {one(thingText("T1"))}),
             list("SceneList", "SceneObject", {one(sceneText("S1"))}),
             list("IllegalRecordList", "IllegalRecordObject", {one(illegalRecordText("R1"))}),
             list("NonMotorIllegalRecordList", "NonMotorIllegalRecord", {one(nonMotorIllegalRecordText("Q1"))})});
    }

    static std::string document(std::initializer_list<std::string> elements)
    {
        return root(list("VideoSliceListObject", "VideoSlice", elements));
    }

    static std::string element(const std::string& sliceMembers, const std::string& more)
    {
        const std::string text = R"({"VideoSliceInfo":)" + sliceMembers + "}";
        return more.empty() ? text : with(text, more);
    }

    std::string built()
    {
        return textOf(_PubSecVideoSliceGatherJSON(&documents));
    }

    TPubSecVideoSliceInfo slices[2] = {slice("V1"), slice("V2")};
    TPubSecPersonnelObjInfo persons[1] = {person("P1")};
    TPubSecFaceObjInfo faces[1] = {face("F1")};
    TPubSecMotorVehicleObjInfo motorVehicles[1] = {motorVehicle("M1")};
    TPubSecNonMotorVehicleObjInfo nonMotorVehicles[1] = {nonMotorVehicle("N1")};
    TPubSecThingObjInfo things[1] = {thing("T1")};
    TPubSecSceneObjInfo scenes[1] = {scene("S1")};
    TPubSecIllegalRecordInfo illegalRecords[3] = {illegalRecord("R1"), illegalRecord("R2"), illegalRecord("R3")};
    TPubSecNonMotorIllegalRecordInfo nonMotorIllegalRecords[3] = {
        nonMotorIllegalRecord("Q1"), nonMotorIllegalRecord("Q2"), nonMotorIllegalRecord("Q3")};
    TPubSecSubImageInfo images[2] = {subImage("I1"), subImage("I2")};
    TPubSecVideoSliceObj documents = {};
};

TEST_F(VideoSlices, ASliceAlone)
{
    TPubSecVideoSliceObj alone = {};
    alone.ptVideoSlice = slices;
    alone.nVideoSliceNum = 1;
    EXPECT_EQ(textOf(_PubSecVideoSliceGatherJSON(&alone)),
              R"({"VideoSliceListObject":{"VideoSlice":[{"VideoSliceInfo":{"VideoID":"V1","InfoKind":0,)"
              R"("VideoSource":"","StoragePath":"","FileHash":"","FileFormat":"","CodedFormat":"","AudioFlag":0,)"
              R"("ContentDescription":"","ShotPlaceCode":"","SecurityLevel":"","VideoLen":0,"BeginTime":"",)"
              R"("EndTime":"","TimeErr":0,"Width":0,"Height":0,"EntryClerk":"","EntryClerkOrg":""}}]}})");
}

TEST_F(VideoSlices, OptionalMembersOfASlice)
{
    put(slices[0].achDeviceID, "Inv");
    put(slices[0].achTitle, "gate");
    slices[0].bShotPlaceLongitudeValid = 1;
    slices[0].dShotPlaceLongitude = 113.25;
    slices[0].bShotPlaceLatitudeValid = 1;
    slices[0].dShotPlaceLatitude = 23.5;
    TPubSecVideoSliceObj alone = {};
    alone.ptVideoSlice = slices;
    alone.nVideoSliceNum = 1;
    EXPECT_EQ(textOf(_PubSecVideoSliceGatherJSON(&alone)),
              R"({"VideoSliceListObject":{"VideoSlice":[{"VideoSliceInfo":{"VideoID":"V1","InfoKind":0,)"
              R"("VideoSource":"","StoragePath":"","FileHash":"","FileFormat":"","CodedFormat":"","AudioFlag":0,)"
              R"("Title":"gate","ContentDescription":"","ShotPlaceCode":"","ShotPlaceLongitude":113.25,)"
              R"("ShotPlacetLatitude":23.5,"SecurityLevel":"","VideoLen":0,"BeginTime":"","EndTime":"","TimeErr":0,)"
              R"("Width":0,"Height":0,"EntryClerk":"","EntryClerkOrg":""}}]}})");
}

TEST_F(VideoSlices, EverythingInItsOrder)
{
    setSubImages(images, 2);
    slices[0].ptSubImageList = &images[1];
    slices[0].dwSubImageNum = 1;
    EXPECT_EQ(built(),
              document({element(with(sliceText("V1"), subImages({subImageText("I2")})),
                                lists(subImages({subImageText("I1"), subImageText("I2")})) + R"(,"Data":"QUJD")")}));
}

TEST_F(VideoSlices, ObjectsStandInTheLastSlice)
{
    documents.nVideoSliceNum = 2;
    EXPECT_EQ(built(),
              document({element(sliceText("V1"), ""), element(sliceText("V2"), lists("") + R"(,"Data":"QUJD")")}));
}

TEST_F(VideoSlices, WithoutASliceObjectsAndDataAreDropped)
{
    for (const s32 count : {0, -1})
    {
        documents.nVideoSliceNum = count;
        EXPECT_EQ(built(), R"({"VideoSliceListObject":{"VideoSlice":[]}})") << count;
    }
    documents.ptVideoSlice = nullptr;
    EXPECT_EQ(built(), R"({"VideoSliceListObject":{"VideoSlice":[]}})");
}

TEST_F(VideoSlices, NoDocumentWithoutRecords)
{
    EXPECT_EQ(textOf(_PubSecVideoSliceGatherJSON(nullptr)), kNone);
    documents.ptVideoSlice = nullptr;
    EXPECT_EQ(built(), kNone);
}

TEST_F(VideoSlices, AListIsWrittenWheneverItsPointerIsSet)
{
    illegalRecords[0].dwIllegalRecordNum = 0;
    const std::string empty =
        join({list("PersonList", "PersonObject", {}), list("FaceList", "FaceObject", {}),
              list("MotorVehicleList", "MotorVehicleObject", {}),
              list("NonMotorVehicleList", "NonMotorVehicleObject", {}), list("ThingList", "ThingObject", {}),
              list("SceneList", "SceneObject", {}), list("IllegalRecordList", "IllegalRecordObject", {}),
              list("NonMotorIllegalRecordList", "NonMotorIllegalRecord", {}), R"("Data":"QUJD")"});
    for (const s32 count : {0, -1})
    {
        setCounts(count);
        EXPECT_EQ(built(), document({element(sliceText("V1"), empty)})) << count;
    }
}

TEST_F(VideoSlices, EachListAlone)
{
    struct
    {
        const char* name;
        void (*keep)(TPubSecVideoSliceObj&, const TPubSecVideoSliceObj&);
        std::string text;
    } const cases[] = {
        {"person", [](auto& to, auto& from) { to.ptPerson = from.ptPerson; },
         list("PersonList", "PersonObject", {personText("P1")})},
        {"face", [](auto& to, auto& from) { to.ptFace = from.ptFace; },
         list("FaceList", "FaceObject", {faceText("F1")})},
        {"motor vehicle", [](auto& to, auto& from) { to.ptMotorVehicle = from.ptMotorVehicle; },
         list("MotorVehicleList", "MotorVehicleObject", {motorVehicleText("M1")})},
        {"non-motor vehicle", [](auto& to, auto& from) { to.ptNonMotorVehicle = from.ptNonMotorVehicle; },
         list("NonMotorVehicleList", "NonMotorVehicleObject", {nonMotorVehicleText("N1")})},
        {"thing", [](auto& to, auto& from) { to.ptThing = from.ptThing; },
         list("ThingList", "ThingObject", {thingText("T1")})},
        {"scene", [](auto& to, auto& from) { to.ptScene = from.ptScene; },
         list("SceneList", "SceneObject", {sceneText("S1")})},
        {"violation", [](auto& to, auto& from) { to.ptIllegalRecord = from.ptIllegalRecord; },
         list("IllegalRecordList", "IllegalRecordObject", {illegalRecordText("R1")})},
        {"non-motor violation", [](auto& to, auto& from) { to.ptNonMotorIllegalRecord = from.ptNonMotorIllegalRecord; },
         list("NonMotorIllegalRecordList", "NonMotorIllegalRecord", {nonMotorIllegalRecordText("Q1")})},
        {"data", [](auto& to, auto& from) { to.pchData = from.pchData; }, R"("Data":"QUJD")"},
        {"empty data", [](auto& to, auto&) { to.pchData = ""; }, R"("Data":"")"},
    };
    const TPubSecVideoSliceObj whole = documents;
    for (const auto& one : cases)
    {
        documents = whole;
        documents.ptPerson = nullptr;
        documents.ptFace = nullptr;
        documents.ptMotorVehicle = nullptr;
        documents.ptNonMotorVehicle = nullptr;
        documents.ptThing = nullptr;
        documents.ptScene = nullptr;
        documents.ptIllegalRecord = nullptr;
        documents.ptNonMotorIllegalRecord = nullptr;
        documents.pchData = nullptr;
        EXPECT_EQ(built(), document({element(sliceText("V1"), "")})) << one.name;
        one.keep(documents, whole);
        EXPECT_EQ(built(), document({element(sliceText("V1"), one.text)})) << one.name;
    }
}

TEST_F(VideoSlices, SubImagesAreWrittenWheneverTheirPointerIsSet)
{
    const std::string data = R"(,"Data":"QUJD")";
    for (const s32 count : {0, -1})
    {
        setSubImages(images, count);
        slices[0].ptSubImageList = images;
        slices[0].dwSubImageNum = static_cast<u32>(count);
        EXPECT_EQ(built(), document({element(with(sliceText("V1"), subImages({})), lists(subImages({})) + data)}))
            << count;
    }
    setSubImages(nullptr, 2);
    slices[0].ptSubImageList = nullptr;
    slices[0].dwSubImageNum = 2;
    EXPECT_EQ(built(), document({element(sliceText("V1"), lists("") + data)}));
}

TEST_F(VideoSlices, TheFirstViolationSaysHowMany)
{
    illegalRecords[0].dwIllegalRecordNum = 2;
    illegalRecords[1].dwIllegalRecordNum = 9;
    documents.dwNonMotorIllegalRecordNum = 3;
    const std::string text = built();
    EXPECT_THAT(text, testing::HasSubstr(list("IllegalRecordList", "IllegalRecordObject",
                                              {illegalRecordText("R1"), illegalRecordText("R2")})));
    EXPECT_THAT(text, testing::HasSubstr(list("NonMotorIllegalRecordList", "NonMotorIllegalRecord",
                                              {nonMotorIllegalRecordText("Q1"), nonMotorIllegalRecordText("Q2"),
                                               nonMotorIllegalRecordText("Q3")})));
}

/* How many objects a document holds when the count falls from 3 to 1 at any moment of its making. */
std::set<size_t> numbersWhenFalling(const TPubSecVideoSliceObj& documents, u32& count, const std::string& id)
{
    std::set<size_t> numbers;
    for (int moment = 1, last = moment; moment <= last; ++moment)
    {
        count = 3;
        const Allocations allocations([&](int number) {
            count = number == moment ? 1 : count;
            return true;
        });
        const std::string text = textOf(_PubSecVideoSliceGatherJSON(&documents));
        last = Allocations::made();
        size_t found = 0;
        for (size_t at = text.find(id); at != std::string::npos; at = text.find(id, at + 1))
        {
            ++found;
        }
        numbers.insert(found);
    }
    return numbers;
}

TEST_F(VideoSlices, TheNumberOfViolationsIsAskedAgainForEveryOne)
{
    EXPECT_THAT(numbersWhenFalling(documents, illegalRecords[0].dwIllegalRecordNum, R"({"IllegalRecordID":"R)"),
                testing::ElementsAre(1, 2, 3));
}

TEST_F(VideoSlices, TheNumberOfNonMotorViolationsIsAskedOnce)
{
    EXPECT_THAT(numbersWhenFalling(documents, documents.dwNonMotorIllegalRecordNum, R"({"IllegalRecordID":"Q)"),
                testing::ElementsAre(1, 3));
}

TEST_F(VideoSlices, NeitherTheFilesNorWhatIsReservedMatter)
{
    const std::string before = built();
    TPubSecFileInfo someFile = file("D1");
    documents.ptFile = &someFile;
    documents.nFileNum = documents.nFilePersonNum = documents.nFileFaceNum = documents.nFileMotorVehicleNum =
        documents.nFileNonMotorVehicleNum = documents.nFileThingNum = documents.nFileSceneNum = 9;
    documents.dwReserved0 = documents.dwReserved3 = 0xFFFFFFFF;
    documents.pvReserved1 = documents.pvReserved2 = &documents;
    std::memset(documents.adwReserved4, 0xFF, sizeof(documents.adwReserved4));
    std::memset(documents.adwReserved5, 0xFF, sizeof(documents.adwReserved5));
    std::memset(slices[0].abyReserved, 0xFF, sizeof(slices[0].abyReserved));
    EXPECT_EQ(built(), before);
}

TEST(VideoData, IsTheTextInADocument)
{
    EXPECT_EQ(textOf(_PubSecVideoDataJSON("QUJD")), R"({"VideoDataObject":{"VData":"QUJD"}})");
    EXPECT_EQ(textOf(_PubSecVideoDataJSON("")), R"({"VideoDataObject":{"VData":""}})");
    EXPECT_EQ(textOf(_PubSecVideoDataJSON(nullptr)), kNone);
    const std::string large(3000000, '+');
    EXPECT_EQ(textOf(_PubSecVideoDataJSON(large.c_str())), R"({"VideoDataObject":{"VData":")" + large + R"("}})");
}

} // namespace
