/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of files. */
#include "tests/documents/document.h"

namespace
{

using namespace bare;

/* Two files with every kind of object, each object with a sub-image. */
struct Files : testing::Test
{
    Files()
    {
        persons[0].ptSubImageList = faces[0].ptSubImageList = motorVehicles[0].ptSubImageList =
            nonMotorVehicles[0].ptSubImageList = things[0].ptSubImageList = scenes[0].ptSubImageList = images;
        persons[0].nSubImageNum = faces[0].nSubImageNum = motorVehicles[0].nSubImageNum =
            nonMotorVehicles[0].nSubImageNum = things[0].nSubImageNum = scenes[0].nSubImageNum = 1;
        illegalRecords[0].dwIllegalRecordNum = 1;
        documents.ptFile = files;
        documents.ptPerson = persons;
        documents.ptFace = faces;
        documents.ptMotorVehicle = motorVehicles;
        documents.ptNonMotorVehicle = nonMotorVehicles;
        documents.ptThing = things;
        documents.ptScene = scenes;
        documents.ptIllegalRecord = illegalRecords;
        documents.ptNonMotorIllegalRecord = nonMotorIllegalRecords;
        documents.dwNonMotorIllegalRecordNum = 1;
        documents.nFileNum = 1;
        setCounts(1);
        documents.pchData = "QUJD";
    }

    void setCounts(s32 count)
    {
        documents.nFilePersonNum = documents.nFileFaceNum = documents.nFileMotorVehicleNum =
            documents.nFileNonMotorVehicleNum = documents.nFileThingNum = documents.nFileSceneNum = count;
    }

    static std::string lists()
    {
        return join(
            {list("PersonList", "PersonObject", {personText("P1")}), list("FaceList", "FaceObject", {faceText("F1")}),
             list("MotorVehicleList", "MotorVehicleObject", {motorVehicleText("M1")}),
             list("NonMotorVehicleList", "NonMotorVehicleObject", {nonMotorVehicleText("N1")}),
             list("ThingList", "ThingObject", {thingText("T1")}), list("SceneList", "SceneObject", {sceneText("S1")})});
    }

    static std::string document(std::initializer_list<std::string> elements)
    {
        return root(list("FileListObject", "File", elements));
    }

    static std::string element(const std::string& fileMembers, const std::string& more)
    {
        const std::string text = R"({"FileInfo":)" + fileMembers + "}";
        return more.empty() ? text : with(text, more);
    }

    std::string built()
    {
        return textOf(_PubSecFileGatherJSON(&documents));
    }

    TPubSecFileInfo files[2] = {file("D1"), file("D2")};
    TPubSecPersonnelObjInfo persons[1] = {person("P1")};
    TPubSecFaceObjInfo faces[1] = {face("F1")};
    TPubSecMotorVehicleObjInfo motorVehicles[1] = {motorVehicle("M1")};
    TPubSecNonMotorVehicleObjInfo nonMotorVehicles[1] = {nonMotorVehicle("N1")};
    TPubSecThingObjInfo things[1] = {thing("T1")};
    TPubSecSceneObjInfo scenes[1] = {scene("S1")};
    TPubSecIllegalRecordInfo illegalRecords[1] = {illegalRecord("R1")};
    TPubSecNonMotorIllegalRecordInfo nonMotorIllegalRecords[1] = {nonMotorIllegalRecord("Q1")};
    TPubSecSubImageInfo images[1] = {subImage("I1")};
    TPubSecVideoSliceObj documents = {};
};

TEST_F(Files, AFileAlone)
{
    TPubSecVideoSliceObj alone = {};
    alone.ptFile = files;
    alone.nFileNum = 1;
    put(files[0].achFileID, "");
    EXPECT_EQ(textOf(_PubSecFileGatherJSON(&alone)),
              R"({"FileListObject":{"File":[{"FileInfo":{"InfoKind":0,"Source":"","FileName":"","FileHash":"",)"
              R"("FileFormat":"","Title":""}}]}})");
}

TEST_F(Files, TheSizeIsLeftOutForMinusOneAlone)
{
    TPubSecVideoSliceObj alone = {};
    alone.ptFile = files;
    alone.nFileNum = 2;
    files[0].nFileSize = 0;
    files[1].nFileSize = -2;
    put(files[1].achStoragePath, "/d/2");
    EXPECT_EQ(textOf(_PubSecFileGatherJSON(&alone)),
              R"({"FileListObject":{"File":[{"FileInfo":{"FileID":"D1","InfoKind":0,"Source":"","FileName":"",)"
              R"("FileHash":"","FileFormat":"","Title":"","FileSize":0}},{"FileInfo":{"FileID":"D2","InfoKind":0,)"
              R"("Source":"","FileName":"","StoragePath":"/d/2","FileHash":"","FileFormat":"","Title":"",)"
              R"("FileSize":-2}}]}})");
    files[0].nFileSize = -1;
    alone.nFileNum = 1;
    EXPECT_EQ(textOf(_PubSecFileGatherJSON(&alone)), document({element(fileText("D1"), "")}));
}

TEST_F(Files, ObjectsStandInTheLastFileWithoutSubImagesOrViolations)
{
    EXPECT_EQ(built(), document({element(fileText("D1"), lists() + R"(,"Data":"QUJD")")}));
    documents.nFileNum = 2;
    EXPECT_EQ(built(), document({element(fileText("D1"), ""), element(fileText("D2"), lists() + R"(,"Data":"QUJD")")}));
}

TEST_F(Files, WithoutAFileObjectsAndDataAreDropped)
{
    for (const s32 count : {0, -1})
    {
        documents.nFileNum = count;
        EXPECT_EQ(built(), R"({"FileListObject":{"File":[]}})") << count;
    }
    documents.ptFile = nullptr;
    EXPECT_EQ(built(), R"({"FileListObject":{"File":[]}})");
}

TEST_F(Files, NoDocumentWithoutRecords)
{
    EXPECT_EQ(textOf(_PubSecFileGatherJSON(nullptr)), kNone);
    documents.ptFile = nullptr;
    EXPECT_EQ(built(), kNone);
}

TEST_F(Files, AListIsWrittenWheneverItsPointerIsSet)
{
    const std::string empty = join(
        {list("PersonList", "PersonObject", {}), list("FaceList", "FaceObject", {}),
         list("MotorVehicleList", "MotorVehicleObject", {}), list("NonMotorVehicleList", "NonMotorVehicleObject", {}),
         list("ThingList", "ThingObject", {}), list("SceneList", "SceneObject", {}), R"("Data":"QUJD")"});
    for (const s32 count : {0, -1})
    {
        setCounts(count);
        EXPECT_EQ(built(), document({element(fileText("D1"), empty)})) << count;
    }
}

TEST_F(Files, AListIsLeftOutWithoutItsPointer)
{
    documents.ptFace = nullptr;
    documents.ptThing = nullptr;
    documents.pchData = nullptr;
    EXPECT_EQ(built(),
              document({element(fileText("D1"),
                                join({list("PersonList", "PersonObject", {personText("P1")}),
                                      list("MotorVehicleList", "MotorVehicleObject", {motorVehicleText("M1")}),
                                      list("NonMotorVehicleList", "NonMotorVehicleObject", {nonMotorVehicleText("N1")}),
                                      list("SceneList", "SceneObject", {sceneText("S1")})}))}));
}

TEST_F(Files, NeitherTheSlicesNorTheirCountsMatter)
{
    const std::string before = built();
    TPubSecVideoSliceInfo someSlice = slice("V1");
    documents.ptVideoSlice = &someSlice;
    documents.nVideoSliceNum = documents.nPersonNum = documents.nFaceNum = documents.nMotorVehicleNum =
        documents.nNonMotorVehicleNum = documents.nThingNum = documents.nSceneNum = 9;
    std::memset(documents.adwReserved4, 0xFF, sizeof(documents.adwReserved4));
    std::memset(documents.adwReserved5, 0xFF, sizeof(documents.adwReserved5));
    EXPECT_EQ(built(), before);
}

/* One record fills both documents when both blocks of counts are set. */
TEST_F(Files, OneCollectionMakesBothDocuments)
{
    TPubSecVideoSliceInfo someSlice = slice("V1");
    TPubSecFaceObjInfo twoFaces[2] = {face("F1"), face("F2")};
    TPubSecVideoSliceObj both = {};
    both.ptFile = files;
    both.ptVideoSlice = &someSlice;
    both.ptFace = twoFaces;
    both.nVideoSliceNum = both.nFileNum = 1;
    both.nFaceNum = 1;
    both.nFileFaceNum = 2;
    EXPECT_EQ(textOf(_PubSecFileGatherJSON(&both)),
              document({element(fileText("D1"), list("FaceList", "FaceObject", {faceText("F1"), faceText("F2")}))}));
    EXPECT_EQ(textOf(_PubSecVideoSliceGatherJSON(&both)),
              root(list("VideoSliceListObject", "VideoSlice",
                        {R"({"VideoSliceInfo":)" + sliceText("V1") + "," +
                         list("FaceList", "FaceObject", {faceText("F1")}) + "}"})));
}

} // namespace
