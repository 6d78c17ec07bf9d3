/* SPDX-License-Identifier: Apache-2.0 */
/* Documents of pictures and of one kind of object, and the lists for trees of the host. */
#include <cjson/cJSON.h>

#include <pubsecstack/documents.h>

#include "objects/documents.h"
#include "tests/support/allocations.h"
#include "tests/support/stack_test.h"

namespace
{

/* ------------------------------------------------------------------------------------------- records and their texts
 */

/* A record with an identifier and nothing else, and what it is written as. */
TPubSecImageObjInfo image(const std::string& id)
{
    TPubSecImageObjInfo record = {};
    stack::put(record.achImageID, id);
    record.nWidth = -1;
    record.nHeight = -1;
    return record;
}

std::string imageText(const std::string& id)
{
    return R"({"ImageID":")" + id +
           R"(","InfoKind":0,"ImageSource":"","StoragePath":"","FileHash":"","FileFormat":"","ShotTime":"","Title":"",)"
           R"("ContentDescription":"","SecurityLevel":"","CollectorName":"","CollectorOrg":""})";
}

TPubSecFaceObjInfo face(const std::string& id)
{
    TPubSecFaceObjInfo record = {};
    stack::put(record.achFaceID, id);
    return record;
}

std::string faceText(const std::string& id, const std::string& subImages = "")
{
    return R"({"FaceID":")" + id +
           R"(","InfoKind":0,"ShotTime":"","LocationMarkTime":"","FaceAppearTime":"","FaceDisAppearTime":"")" +
           subImages + "}";
}

TPubSecPersonnelObjInfo person(const std::string& id)
{
    TPubSecPersonnelObjInfo record = {};
    stack::put(record.achPersonID, id);
    return record;
}

std::string personText(const std::string& id, const std::string& subImages = "")
{
    return R"({"PersonID":")" + id +
           R"(","InfoKind":0,"SourceID":"","LocationMarkTime":"","PersonAppearTime":"","PersonDisAppearTime":"")" +
           subImages + "}";
}

TPubSecMotorVehicleObjInfo motorVehicle(const std::string& id)
{
    TPubSecMotorVehicleObjInfo record = {};
    stack::put(record.achMotorVehicleID, id);
    return record;
}

std::string motorVehicleText(const std::string& id, const std::string& subImages = "")
{
    return R"({"MotorVehicleID":")" + id + R"(","InfoKind":0,"SourceID":"","HasPlate":"0")" + subImages + "}";
}

TPubSecNonMotorVehicleObjInfo nonMotorVehicle(const std::string& id)
{
    TPubSecNonMotorVehicleObjInfo record = {};
    stack::put(record.achNonMotorVehicleID, id);
    for (s32* number :
         {&record.nUsingPropertiesCode, &record.nVehicleLength, &record.nVehicleWidth, &record.nVehicleHeight,
          &record.nFilmColor, &record.nIsModified, &record.nCyclingType, &record.nCyclingPersonNum,
          &record.nSourceFactory, &record.nDeviceClass, &record.nSourceType, &record.nState, &record.nHasHelmet,
          &record.nHasParasol, &record.nHasRainshed, &record.nHasTakeoutBox, &record.nHasPassenger, &record.nHasHood})
    {
        *number = -1;
    }
    record.dSpeed = -1.0;
    record.dShotPlaceLongitude = -1.0;
    record.dShotPlaceLatitude = -1.0;
    return record;
}

std::string nonMotorVehicleText(const std::string& id, const std::string& subImages = "")
{
    return R"({"NonMotorVehicleID":")" + id +
           R"(","InfoKind":0,"SourceID":"","LeftTopX":0,"LeftTopY":0,"RightBtmX":0,"RightBtmY":0,"MarkTime":"",)"
           R"("AppearTime":"","DisappearTime":"","HasPlate":"0","PlateClass":"","PlateColor":"","PlateNo":"",)"
           R"("IsDecked":"0","IsAltered":"0","IsCovered":"0","VehicleColor":"")" +
           subImages + "}";
}

TPubSecThingObjInfo thing(const std::string& id)
{
    TPubSecThingObjInfo record = {};
    stack::put(record.achThingID, id);
    record.nLeftTopX = -1;
    record.nLeftTopY = -1;
    record.nRightBtmX = -1;
    record.nRightBtmY = -1;
    return record;
}

std::string thingText(const std::string& id, const std::string& subImages = "")
{
    return R"({"ThingID":")" + id + R"(","InfoKind":0,"SourceID":"","Name":"","Shape":"","Color":"")" + subImages + "}";
}

TPubSecSceneObjInfo scene(const std::string& id)
{
    TPubSecSceneObjInfo record = {};
    stack::put(record.achSceneID, id);
    record.nRoadTerraintype = -1;
    return record;
}

std::string sceneText(const std::string& id, const std::string& subImages = "")
{
    return R"({"SceneID":")" + id + R"(","InfoKind":0,"SourceID":"")" + subImages + "}";
}

TPubSecAccessRecordInfo accessRecord(const std::string& id)
{
    TPubSecAccessRecordInfo record = {};
    stack::put(record.achAccessRecordID, id);
    return record;
}

std::string accessRecordText(const std::string& id)
{
    return R"({"AccessRecordID":")" + id +
           R"(","DeviceID":"","SecureAccessID":"","AlarmEventCode":"","CardID":0,"CardType":0,"PersonCode":"",)"
           R"("AccessTime":"","PunchAct":0,"PunchResult":0,"PunchTime":""})";
}

TPubSecSubImageInfo subImage(const std::string& id, char* data = nullptr)
{
    TPubSecSubImageInfo record = {};
    stack::put(record.achImageID, id);
    stack::put(record.achType, "11");
    stack::put(record.achFileFormat, "Jpeg");
    record.nWidth = -1;
    record.nHeight = -1;
    record.pchData = data;
    return record;
}

/* As it stands behind the members of an object. */
std::string subImagesText(const std::string& elements)
{
    return R"(,"SubImageList":{"SubImageInfoObject":[)" + elements + "]}";
}

std::string subImageText(const std::string& id, const std::string& data = "")
{
    return R"({"ImageID":")" + id + R"(","Type":"11","FileFormat":"Jpeg")" +
           (data.empty() ? "" : R"(,"Data":")" + data + "\"") + "}";
}

/* Takes a document, null as "null". */
std::string take(char* text)
{
    if (text == nullptr)
    {
        return "null";
    }
    const std::string copy = text;
    cJSON_free(text);
    return copy;
}

std::string images(const std::string& elements)
{
    return R"({"ImageListObject":{"Image":[)" + elements + "]}}";
}

/* --------------------------------------------------------------------------------------------------- whole pictures */

class PictureTest : public testing::Test
{
  protected:
    PictureTest()
    {
        picture.ptImageInfo = infos;
        picture.nImageNum = 1;
    }

    /* One of everything. */
    void fill()
    {
        picture.ptPersonnel = &thePerson;
        picture.ptFace = &theFace;
        picture.ptMotorVehicle = &theMotorVehicle;
        picture.ptNonMotorVehicle = &theNonMotorVehicle;
        picture.ptThing = &theThing;
        picture.ptScene = &theScene;
        picture.nPersonnelNum = 1;
        picture.nFaceNum = 1;
        picture.nMotorVehicleNum = 1;
        picture.nNonMotorVehicleNum = 1;
        picture.nThingNum = 1;
        picture.nSceneNum = 1;
        picture.ptAccessRecord = &theAccessRecord;
        theAccessRecord.dwRecordNum = 1;
        picture.pchData = "aGVsbG8=";
    }

    std::string gathered()
    {
        return take(_PubSecImageGatherJSON(&picture));
    }

    std::string extended()
    {
        return take(_PubSecImageGatherJSONEX(&picture));
    }

    TPubSecImageObjInfo infos[3] = {image("i0"), image("i1"), image("i2")};
    TPubSecPersonnelObjInfo thePerson = person("p");
    TPubSecFaceObjInfo theFace = face("f");
    TPubSecMotorVehicleObjInfo theMotorVehicle = motorVehicle("m");
    TPubSecNonMotorVehicleObjInfo theNonMotorVehicle = nonMotorVehicle("n");
    TPubSecThingObjInfo theThing = thing("t");
    TPubSecSceneObjInfo theScene = scene("s");
    TPubSecAccessRecordInfo theAccessRecord = accessRecord("a");
    TPubSecIntelliPicObj picture = {};

    const std::string lists = R"("PersonList":{"PersonObject":[)" + personText("p") +
                              R"(]},"FaceList":{"FaceObject":[)" + faceText("f") +
                              R"(]},"MotorVehicleList":{"MotorVehicleObject":[)" + motorVehicleText("m") +
                              R"(]},"NonMotorVehicleList":{"NonMotorVehicleObject":[)" + nonMotorVehicleText("n") +
                              R"(]},"ThingList":{"ThingObject":[)" + thingText("t") +
                              R"(]},"SceneList":{"SceneObject":[)" + sceneText("s") + "]}";
    const std::string accessList = R"("AccessRecordList":{"AccessRecordObject":[)" + accessRecordText("a") + "]}";
    const std::string data = R"("Data":"aGVsbG8=")";
    const std::string info = R"("ImageInfo":)" + imageText("i0");
};

TEST_F(PictureTest, WithoutObjectsIsItsInformation)
{
    EXPECT_EQ(gathered(), images("{" + info + "}"));
    EXPECT_EQ(extended(), images("{" + info + "}"));
    picture.pchData = "aGVsbG8=";
    EXPECT_EQ(gathered(), images("{" + info + "," + data + "}"));
    EXPECT_EQ(extended(), images("{" + info + "," + data + "}"));
    picture.pchData = "";
    EXPECT_EQ(gathered(), images("{" + info + R"(,"Data":""})"));
}

TEST_F(PictureTest, HasListsAccessRecordsAndDataInThisOrder)
{
    fill();
    EXPECT_EQ(gathered(), images("{" + info + "," + lists + "," + accessList + "," + data + "}"));
}

TEST_F(PictureTest, ExtendedHasItsDataBeforeTheListsAndNoAccessRecords)
{
    fill();
    EXPECT_EQ(extended(), images("{" + info + "," + data + "," + lists + "}"));
}

TEST_F(PictureTest, AListNeedsAPointerAndAPositiveCount)
{
    for (const s32 count : {0, -1, -2147483647 - 1})
    {
        fill();
        picture.ptAccessRecord = nullptr;
        picture.pchData = nullptr;
        for (s32* number : {&picture.nPersonnelNum, &picture.nFaceNum, &picture.nMotorVehicleNum,
                            &picture.nNonMotorVehicleNum, &picture.nThingNum, &picture.nSceneNum})
        {
            *number = count;
        }
        EXPECT_EQ(gathered(), images("{" + info + "}")) << count;
        EXPECT_EQ(extended(), images("{" + info + "}")) << count;
    }
    fill();
    picture.ptAccessRecord = nullptr;
    picture.pchData = nullptr;
    picture.ptPersonnel = nullptr;
    picture.ptFace = nullptr;
    picture.ptMotorVehicle = nullptr;
    picture.ptNonMotorVehicle = nullptr;
    picture.ptThing = nullptr;
    picture.ptScene = nullptr;
    EXPECT_EQ(gathered(), images("{" + info + "}"));
    EXPECT_EQ(extended(), images("{" + info + "}"));
}

TEST_F(PictureTest, EachCountBelongsToItsOwnList)
{
    /* counts 1 to 6 in the order of the counts; arrays long enough for a count taken from another list */
    std::vector<TPubSecPersonnelObjInfo> persons(6);
    std::vector<TPubSecFaceObjInfo> faces(6);
    std::vector<TPubSecMotorVehicleObjInfo> motorVehicles(6);
    std::vector<TPubSecNonMotorVehicleObjInfo> nonMotorVehicles(6);
    std::vector<TPubSecThingObjInfo> things(6);
    std::vector<TPubSecSceneObjInfo> scenes(6);
    picture.ptPersonnel = persons.data();
    picture.ptFace = faces.data();
    picture.ptMotorVehicle = motorVehicles.data();
    picture.ptNonMotorVehicle = nonMotorVehicles.data();
    picture.ptThing = things.data();
    picture.ptScene = scenes.data();
    picture.nPersonnelNum = 1;
    picture.nFaceNum = 2;
    picture.nMotorVehicleNum = 3;
    picture.nNonMotorVehicleNum = 4;
    picture.nThingNum = 5;
    picture.nSceneNum = 6;
    const std::string text = gathered();
    const auto count = [&](const std::string& key) {
        int found = 0;
        for (size_t at = 0; (at = text.find("\"" + key + "\":\"", at)) != std::string::npos; ++at)
        {
            ++found;
        }
        return found;
    };
    EXPECT_EQ(count("PersonAppearTime"), 1);
    EXPECT_EQ(count("FaceID"), 2);
    EXPECT_EQ(count("MotorVehicleID"), 3);
    EXPECT_EQ(count("NonMotorVehicleID"), 4);
    EXPECT_EQ(count("ThingID"), 5);
    EXPECT_EQ(count("SceneID"), 6);
}

TEST_F(PictureTest, ObjectsAreWrittenInTheOrderOfTheirArray)
{
    TPubSecFaceObjInfo faces[] = {face("f0"), face("f1"), face("f2")};
    picture.ptFace = faces;
    picture.nFaceNum = 3;
    EXPECT_EQ(gathered(), images("{" + info + R"(,"FaceList":{"FaceObject":[)" + faceText("f0") + "," + faceText("f1") +
                                 "," + faceText("f2") + "]}}"));
}

TEST_F(PictureTest, SubImagesStandBehindTheMembersOfEachKind)
{
    fill();
    picture.ptAccessRecord = nullptr;
    picture.pchData = nullptr;
    char bytes[] = "Zm9v";
    TPubSecSubImageInfo subs[] = {subImage("x", bytes), subImage("y")};
    const std::string text = subImagesText(subImageText("x", "Zm9v") + "," + subImageText("y"));
    const auto give = [&](auto& record) {
        record.nSubImageNum = 2;
        record.ptSubImageList = subs;
    };
    give(thePerson);
    give(theFace);
    give(theMotorVehicle);
    give(theNonMotorVehicle);
    give(theThing);
    give(theScene);
    const std::string all = R"("PersonList":{"PersonObject":[)" + personText("p", text) +
                            R"(]},"FaceList":{"FaceObject":[)" + faceText("f", text) +
                            R"(]},"MotorVehicleList":{"MotorVehicleObject":[)" + motorVehicleText("m", text) +
                            R"(]},"NonMotorVehicleList":{"NonMotorVehicleObject":[)" + nonMotorVehicleText("n", text) +
                            R"(]},"ThingList":{"ThingObject":[)" + thingText("t", text) +
                            R"(]},"SceneList":{"SceneObject":[)" + sceneText("s", text) + "]}";
    EXPECT_EQ(gathered(), images("{" + info + "," + all + "}"));
    EXPECT_EQ(extended(), images("{" + info + "," + all + "}"));
}

TEST_F(PictureTest, SubImagesNeedAPointerAndAPositiveCount)
{
    TPubSecSubImageInfo sub = subImage("x");
    picture.ptFace = &theFace;
    picture.nFaceNum = 1;
    const std::string bare = images("{" + info + R"(,"FaceList":{"FaceObject":[)" + faceText("f") + "]}}");
    theFace.ptSubImageList = &sub;
    for (const s32 count : {0, -1, -2147483647 - 1})
    {
        theFace.nSubImageNum = count;
        EXPECT_EQ(gathered(), bare) << count;
    }
    theFace.ptSubImageList = nullptr;
    theFace.nSubImageNum = 3;
    EXPECT_EQ(gathered(), bare);
}

/* -------------------------------------------------------------------------------------------- several informations */

TEST_F(PictureTest, TheLastOfSeveralInformationsHasTheRest)
{
    fill();
    picture.nImageNum = 3;
    EXPECT_EQ(gathered(),
              images(R"({"ImageInfo":)" + imageText("i0") + R"(},{"ImageInfo":)" + imageText("i1") +
                     R"(},{"ImageInfo":)" + imageText("i2") + "," + lists + "," + accessList + "," + data + "}"));
}

TEST_F(PictureTest, WithoutAnInformationTheRestIsDropped)
{
    fill();
    for (const s32 count : {0, -1, -2147483647 - 1})
    {
        picture.nImageNum = count;
        EXPECT_EQ(gathered(), images("")) << count;
        EXPECT_EQ(extended(), images("")) << count;
    }
    picture.nImageNum = 2;
    picture.ptImageInfo = nullptr;
    EXPECT_EQ(gathered(), images(""));
    picture.nImageNum = 1;
    EXPECT_EQ(extended(), images(""));
}

TEST_F(PictureTest, NullIsNoDocument)
{
    EXPECT_EQ(take(_PubSecImageGatherJSON(nullptr)), "null");
    EXPECT_EQ(take(_PubSecImageGatherJSONEX(nullptr)), "null");
}

/* ------------------------------------------------------------------------------------------------- several pictures */

TEST_F(PictureTest, ExtendedWritesAsManyPicturesAsTheFirstOnesCount)
{
    fill();
    TPubSecIntelliPicObj pictures[3] = {picture, {}, {}};
    pictures[0].nImageNum = 3;
    pictures[1].ptImageInfo = &infos[1];
    pictures[1].nImageNum = 77;
    pictures[1].pchData = "Zm9v";
    pictures[2].ptImageInfo = &infos[2];
    pictures[2].nImageNum = 0;
    pictures[2].ptFace = &theFace;
    pictures[2].nFaceNum = 1;
    EXPECT_EQ(take(_PubSecImageGatherJSONEX(pictures)),
              images("{" + info + "," + data + "," + lists + R"(},{"ImageInfo":)" + imageText("i1") +
                     R"(,"Data":"Zm9v"},{"ImageInfo":)" + imageText("i2") + R"(,"FaceList":{"FaceObject":[)" +
                     faceText("f") + "]}}"));
}

TEST_F(PictureTest, ExtendedLeavesAPictureWithoutInformationOut)
{
    TPubSecIntelliPicObj pictures[3] = {};
    pictures[0].nImageNum = 3;
    pictures[0].ptImageInfo = &infos[0];
    pictures[1].pchData = "Zm9v";
    pictures[1].ptFace = &theFace;
    pictures[1].nFaceNum = 1;
    pictures[2].ptImageInfo = &infos[2];
    EXPECT_EQ(take(_PubSecImageGatherJSONEX(pictures)),
              images(R"({"ImageInfo":)" + imageText("i0") + R"(},{"ImageInfo":)" + imageText("i2") + "}"));
    pictures[0].ptImageInfo = nullptr; /* and of the first, the document has none */
    EXPECT_EQ(take(_PubSecImageGatherJSONEX(pictures)), images(""));
}

/* --------------------------------------------------------------------------------------------------- access records */

TEST_F(PictureTest, TheFirstAccessRecordSaysHowManyThereAre)
{
    TPubSecAccessRecordInfo records[] = {accessRecord("a0"), accessRecord("a1"), accessRecord("a2")};
    picture.ptAccessRecord = records;
    records[0].dwRecordNum = 3;
    records[1].dwRecordNum = 0;
    records[2].dwRecordNum = 99;
    EXPECT_EQ(gathered(),
              images("{" + info + R"(,"AccessRecordList":{"AccessRecordObject":[)" + accessRecordText("a0") + "," +
                     accessRecordText("a1") + "," + accessRecordText("a2") + "]}}"));
    for (const u32 none : {0u, 0x80000000u, 0xFFFFFFFFu})
    {
        records[0].dwRecordNum = none;
        EXPECT_EQ(gathered(), images("{" + info + "}")) << none;
    }
}

/* ------------------------------------------------------------------------------------------------------ information */

TEST_F(PictureTest, TheSingleDocumentIsTheFirstInformation)
{
    EXPECT_EQ(take(_PubSecImageSingleJson(&picture.ptImageInfo)), R"({"ImageInfoObject":)" + imageText("i0") + "}");
    TPubSecImageObjInfo* const none = nullptr;
    EXPECT_EQ(take(_PubSecImageSingleJson(&none)), "null");
    EXPECT_EQ(take(_PubSecImageSingleJson(nullptr)), "null");
}

TEST_F(PictureTest, AnInformationWithOptionalMembers)
{
    TPubSecImageObjInfo& record = infos[0];
    stack::put(record.achDeviceID, "Inv");
    stack::put(record.achTitle, "Inv");
    stack::put(record.achTitleNote, "inv");
    record.bShotPlaceLongitudeValid = 1;
    record.dShotPlaceLongitude = 121.5;
    record.bVerticalShotAngleValid = 1;
    record.dVerticalShotAngle = -3.25;
    stack::put(record.achHorizontalShotDirection, "1");
    record.nWidth = 1920;
    record.nHeight = 0;
    EXPECT_EQ(take(_PubSecImageSingleJson(&picture.ptImageInfo)),
              R"({"ImageInfoObject":{"ImageID":"i0","InfoKind":0,"ImageSource":"","StoragePath":"","FileHash":"",)"
              R"("FileFormat":"","ShotTime":"","Title":"Inv","TitleNote":"inv","ContentDescription":"",)"
              R"("ShotPlaceLongitude":121.5,"VerticalShotAngle":-3.25,"HorizontalShotDirection":"1",)"
              R"("SecurityLevel":"","Width":1920,"Height":0,"CollectorName":"","CollectorOrg":""}})");
}

TEST_F(PictureTest, TextsAreEscapedAndEndWithTheirFields)
{
    stack::put(theThing.achThingID, std::string(49, 'T'));
    stack::put(theThing.achName, "a\"b\\c/d\n\t\x01\xE5\x8C\x85");
    stack::put(theThing.achColor, "123");
    EXPECT_EQ(take(_PubSecImageThingJSON(&theThing, 1)),
              R"({"ThingListObject":{"ThingObject":[{"ThingID":")" + std::string(49, 'T') +
                  R"(","InfoKind":0,"SourceID":"","Name":"a\"b\\c/d\n\t\u0001)"
                  "\xE5\x8C\x85"
                  R"(","Shape":"","Color":"123"}]}})");
}

TEST_F(PictureTest, APictureOfManyMegabytesIsWrittenWhole)
{
    const std::string large(12u << 20, 'A');
    picture.pchData = large.c_str();
    EXPECT_TRUE(gathered() == images("{" + info + R"(,"Data":")" + large + "\"}"));
}

/* ------------------------------------------------------------------------------------------------- one kind of object
 */

/* A kind of object with its document and its function for trees of the host. */
struct Kind
{
    const char* list;
    const char* object;
    std::string (*document)(u32 count); /* of the records of this file, null for none at all */
    std::string (*nullDocument)(u32 count);
    std::string (*text)(const std::string& id);
    u32 (*add)(cJSON* root, u32 mode, u16 count);
    u32 (*addNull)(cJSON* root, u32 mode, u16 count);
};

constexpr size_t kRecords = 300;

/* Records "0", "1" and so on. */
template <typename Record, Record (*Make)(const std::string&)> const Record* records()
{
    static const std::vector<Record> all = [] {
        std::vector<Record> made;
        for (size_t i = 0; i < kRecords; ++i)
        {
            made.push_back(Make(std::to_string(i)));
        }
        return made;
    }();
    return all.data();
}

template <typename Record, Record (*Make)(const std::string&), char* (*Encode)(const Record*, u32)>
Kind kindOf(const char* list, const char* object, std::string (*text)(const std::string&),
            u32 (*add)(cJSON*, u32, u16) = nullptr, u32 (*addNull)(cJSON*, u32, u16) = nullptr)
{
    return {list,
            object,
            [](u32 count) { return take(Encode(records<Record, Make>(), count)); },
            [](u32 count) { return take(Encode(nullptr, count)); },
            text,
            add,
            addNull};
}

const std::vector<Kind>& kinds()
{
    static const std::vector<Kind> all = {
        kindOf<TPubSecFaceObjInfo, face, _PubSecImageFaceJSON>(
            "FaceListObject", "FaceObject", [](const std::string& id) { return faceText(id); },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecFaceObjectStructToJsonObject(root, mode, count, records<TPubSecFaceObjInfo, face>());
            },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecFaceObjectStructToJsonObject(root, mode, count, nullptr);
            }),
        kindOf<TPubSecPersonnelObjInfo, person, _PubSecImagePersonJSON>(
            "PersonListObject", "PersonObject", [](const std::string& id) { return personText(id); },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecPersonObjectStructToJsonObject(root, mode, count,
                                                            records<TPubSecPersonnelObjInfo, person>());
            },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecPersonObjectStructToJsonObject(root, mode, count, nullptr);
            }),
        kindOf<TPubSecMotorVehicleObjInfo, motorVehicle, _PubSecImageMotorVehicleJSON>(
            "MotorVehicleListObject", "MotorVehicleObject", [](const std::string& id) { return motorVehicleText(id); },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecMotorVehicleObjectStructToJsonObject(root, mode, count,
                                                                  records<TPubSecMotorVehicleObjInfo, motorVehicle>());
            },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecMotorVehicleObjectStructToJsonObject(root, mode, count, nullptr);
            }),
        kindOf<TPubSecNonMotorVehicleObjInfo, nonMotorVehicle, _PubSecImageNonMotorVehicleJSON>(
            "NonMotorVehicleListObject", "NonMotorVehicleObject",
            [](const std::string& id) { return nonMotorVehicleText(id); },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecNonMotorVehicleObjectStructToJsonObject(
                    root, mode, count, records<TPubSecNonMotorVehicleObjInfo, nonMotorVehicle>());
            },
            [](cJSON* root, u32 mode, u16 count) {
                return PubSecNonMotorVehicleObjectStructToJsonObject(root, mode, count, nullptr);
            }),
        kindOf<TPubSecThingObjInfo, thing, _PubSecImageThingJSON>("ThingListObject", "ThingObject",
                                                                  [](const std::string& id) { return thingText(id); }),
        kindOf<TPubSecSceneObjInfo, scene, _PubSecImageSceneJSON>("SceneListObject", "SceneObject",
                                                                  [](const std::string& id) { return sceneText(id); }),
    };
    return all;
}

std::string listText(const Kind& kind, size_t count)
{
    std::string elements;
    for (size_t i = 0; i < count; ++i)
    {
        elements += (i > 0 ? "," : "") + kind.text(std::to_string(i));
    }
    return "\"" + std::string(kind.list) + "\":{\"" + kind.object + "\":[" + elements + "]}";
}

TEST(ListDocumentTest, HasOneObjectARecord)
{
    for (const Kind& kind : kinds())
    {
        EXPECT_EQ(kind.document(1), "{" + listText(kind, 1) + "}");
        EXPECT_EQ(kind.document(3), "{" + listText(kind, 3) + "}");
        EXPECT_EQ(kind.document(kRecords), "{" + listText(kind, kRecords) + "}"); /* no limit here */
    }
}

TEST(ListDocumentTest, OfNoRecordsIsAnEmptyList)
{
    for (const Kind& kind : kinds())
    {
        EXPECT_EQ(kind.document(0), "{" + listText(kind, 0) + "}");
        EXPECT_EQ(kind.nullDocument(0), "{" + listText(kind, 0) + "}");
    }
}

TEST(ListDocumentTest, OfANullArrayIsNone)
{
    for (const Kind& kind : kinds())
    {
        EXPECT_EQ(kind.nullDocument(1), "null") << kind.object;
        EXPECT_EQ(kind.nullDocument(0xFFFFFFFFu), "null") << kind.object;
    }
}

TEST(ListDocumentTest, HasTheSubImagesOfEachRecord)
{
    TPubSecSubImageInfo subs[] = {subImage("x"), subImage("y")};
    TPubSecSceneObjInfo scenes[] = {scene("0"), scene("1")};
    scenes[1].nSubImageNum = 2;
    scenes[1].ptSubImageList = subs;
    EXPECT_EQ(take(_PubSecImageSceneJSON(scenes, 2)),
              R"({"SceneListObject":{"SceneObject":[)" + sceneText("0") + "," +
                  sceneText("1", subImagesText(subImageText("x") + "," + subImageText("y"))) + "]}}");
}

/* -------------------------------------------------------------------------------------------------- trees of the host
 */

class HostTreeTest : public testing::Test
{
  protected:
    HostTreeTest() : root(cJSON_CreateObject())
    {
    }

    ~HostTreeTest() override
    {
        cJSON_Delete(root);
    }

    std::string printed() const
    {
        return take(cJSON_PrintUnformatted(root));
    }

    void renew()
    {
        cJSON_Delete(root);
        root = cJSON_CreateObject();
    }

    static std::vector<Kind> treeKinds()
    {
        return {kinds().begin(), kinds().begin() + 4};
    }

    cJSON* root;
};

TEST_F(HostTreeTest, ModeOneWithOneRecordIsASingleObject)
{
    for (const Kind& kind : treeKinds())
    {
        renew();
        EXPECT_EQ(kind.add(root, 1, 1), 50u);
        EXPECT_EQ(printed(), "{\"" + std::string(kind.object) + "\":" + kind.text("0") + "}");
    }
}

TEST_F(HostTreeTest, AnyOtherModeOrNumberIsAList)
{
    for (const Kind& kind : treeKinds())
    {
        for (const auto& [mode, count] :
             std::vector<std::pair<u32, u16>>{{1, 2}, {1, 256}, {0, 1}, {2, 1}, {0xFFFFFFFF, 1}, {0, 256}, {2, 3}})
        {
            renew();
            EXPECT_EQ(kind.add(root, mode, count), 50u) << mode << " " << count;
            EXPECT_EQ(printed(), "{" + listText(kind, count) + "}") << mode << " " << count;
        }
    }
}

TEST_F(HostTreeTest, BadArgumentsAddNothing)
{
    for (const Kind& kind : treeKinds())
    {
        for (const u32 mode : {0u, 1u, 2u})
        {
            EXPECT_EQ(kind.add(nullptr, mode, 1), 80u);
            EXPECT_EQ(kind.addNull(root, mode, 1), 80u);
            EXPECT_EQ(kind.addNull(root, mode, 0), 80u);
            EXPECT_EQ(kind.add(root, mode, 0), 80u);
            EXPECT_EQ(kind.add(root, mode, 257), 80u);
            EXPECT_EQ(kind.add(root, mode, 65535), 80u);
        }
    }
    EXPECT_EQ(printed(), "{}");
}

TEST_F(HostTreeTest, WhatTheHostHasInItStays)
{
    char text[] = "the host's own";
    cJSON_AddItemToObject(root, "reference", cJSON_CreateStringReference(text));
    cJSON_AddStringToObject(root, "copy", "c");
    cJSON_AddNumberToObject(root, "number", 7);
    EXPECT_EQ(kinds()[0].add(root, 1, 1), 50u);
    EXPECT_EQ(kinds()[1].add(root, 0, 1), 50u);
    cJSON_AddStringToObject(root, "last", "l");
    text[0] = 'T'; /* still the host's text that is referred to */
    EXPECT_EQ(printed(), R"({"reference":"The host's own","copy":"c","number":7,"FaceObject":)" + faceText("0") +
                             R"(,"PersonListObject":{"PersonObject":[)" + personText("0") + R"(]},"last":"l"})");
}

TEST_F(HostTreeTest, AddingTwiceAddsTwice)
{
    EXPECT_EQ(kinds()[0].add(root, 1, 1), 50u);
    EXPECT_EQ(kinds()[0].add(root, 1, 1), 50u);
    EXPECT_EQ(printed(), R"({"FaceObject":)" + faceText("0") + R"(,"FaceObject":)" + faceText("0") + "}");
}

TEST_F(HostTreeTest, ATreeThatWasParsedIsAsGood)
{
    cJSON_Delete(root);
    root = cJSON_Parse(R"({"a":"b","c":[1,{"d":"e"}]})");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(kinds()[2].add(root, 1, 1), 50u);
    EXPECT_EQ(printed(), R"({"a":"b","c":[1,{"d":"e"}],"MotorVehicleObject":)" + motorVehicleText("0") + "}");
}

TEST_F(HostTreeTest, TheTextsAreTheTreesOwn)
{
    auto* data = new char[8];
    std::memcpy(data, "Zm9v", 5);
    auto* feature = new char[8];
    std::memcpy(feature, "feature", 8);
    auto* sub = new TPubSecSubImageInfo(subImage("x", data));
    sub->wFeatureValid = 1;
    sub->tFeatureInfo.pchFeatureData = feature;
    auto* record = new TPubSecFaceObjInfo(face("f"));
    stack::put(record->achName, "name");
    stack::put(record->achDeviceSNNo, std::string(33, 'n')); /* not terminated */
    record->nSubImageNum = 1;
    record->ptSubImageList = sub;
    EXPECT_EQ(PubSecFaceObjectStructToJsonObject(root, 1, 1, record), 50u);
    EXPECT_EQ(PubSecFaceObjectStructToJsonObject(root, 0, 1, record), 50u);
    const std::string before = printed();
    EXPECT_THAT(before, testing::HasSubstr(R"("Data":"Zm9v","FeatureInfoObject":{"Vendor":"","AlgorithmVersion":"",)"
                                           R"("FeatureData":"feature"})"));
    std::memset(static_cast<void*>(record), 'Z', sizeof(*record));
    std::memset(static_cast<void*>(sub), 'Z', sizeof(*sub));
    std::memset(data, 'Z', 8);
    std::memset(feature, 'Z', 8);
    delete record;
    delete sub;
    delete[] data;
    delete[] feature;
    EXPECT_EQ(printed(), before);
}

TEST_F(HostTreeTest, WithoutMemoryWhatWasAddedStays)
{
    TPubSecSubImageInfo sub = subImage("x");
    TPubSecFaceObjInfo faces[] = {face("0"), face("1")};
    faces[0].nSubImageNum = 1;
    faces[0].ptSubImageList = &sub;
    cJSON_Delete(root);
    allocations::watch();
    for (unsigned pass = 0; pass < 80; ++pass)
    {
        root = cJSON_CreateObject();
        allocations::failCjson(pass, 1000);
        const u32 result = PubSecFaceObjectStructToJsonObject(root, pass % 2, pass % 2 == 1 ? 1 : 2, faces);
        allocations::failCjson(0, 0);
        EXPECT_TRUE(result == 50 || result == 51) << result;
        if (pass < 5 || pass >= 70)
        {
            EXPECT_EQ(result, pass < 5 ? 51u : 50u) << pass;
        }
        EXPECT_NE(printed(), "null"); /* every text of the tree can still be read */
        cJSON_Delete(root);
        EXPECT_EQ(allocations::open(), 0u) << pass;
    }
    allocations::unwatch();
    root = nullptr;
}

} // namespace
