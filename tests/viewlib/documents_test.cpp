/* SPDX-License-Identifier: Apache-2.0 */
/* What is refused of a document, and what becomes a note of its objects. */
#include "server_fixture.h"

#include <functional>

using client::Result;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

const std::string status = "ResponseStatusListObject/ResponseStatusObject/0/";
const std::string imageId = "34020000001190000001022024022923595900001";
const std::string faceId = imageId + "0600001";

/* A PNG's beginning with its size of 800x600, as base64. */
const std::string png = "iVBORw0KGgoAAAANSUhEUgAAAyAAAAJYCAIAAAA=";

std::string quoted(const std::string& text)
{
    const std::unique_ptr<cJSON, void (*)(cJSON*)> tree(cJSON_CreateString(text.c_str()), cJSON_Delete);
    const std::unique_ptr<char, void (*)(void*)> printed(cJSON_PrintUnformatted(tree.get()), cJSON_free);
    return printed.get();
}

class DocumentTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        config.strict.registration = false;
        config.strict.documents = true;
        config.strict.mediaType = true;
    }

    static std::string image()
    {
        return R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":")" + imageId +
               R"(","InfoKind":1,"DeviceID":"34020000001190000001","FileFormat":"Png"},"Data":")" + png + R"("}]}})";
    }
    /* A face without a fault; members come after its own. */
    static std::string face(const std::string& members = "", const std::string& source = imageId)
    {
        return R"({"FaceListObject":{"FaceObject":[{"FaceID":")" + faceId + R"(","InfoKind":1,"SourceID":")" + source +
               R"(","DeviceID":"34020000001190000001")" + (members.empty() ? "" : "," + members) + "}]}}";
    }
    static std::string subImage(const std::string& members)
    {
        return R"("SubImageList":{"SubImageInfoObject":[{)" + members + "}]}";
    }
    std::vector<std::string> notesOf(const std::string& path, const std::string& document)
    {
        const Result result = post(path, document);
        EXPECT_EQ(result.status, 200) << result.body;
        const auto objects = server().objects();
        return objects.empty() ? std::vector<std::string>{"nothing is stored"} : objects.back().notes;
    }
    std::vector<std::string> notesOf(const std::string& members)
    {
        return notesOf("/VIID/Faces", face(members));
    }
};

TEST_F(DocumentTest, AFaultlessOneHasNoNotes)
{
    start();
    EXPECT_THAT(notesOf("/VIID/Images", image()), IsEmpty());
    EXPECT_THAT(
        notesOf(R"("ShotTime":"20240229235959","FaceAppearTime":"","LeftTopX":0,"LeftTopY":0,"RightBtmX":800,)"
                R"("RightBtmY":600,)" +
                subImage(R"("Type":"11","ImageID":")" + imageId + R"(","FileFormat":"Png","Data":")" + png + '"')),
        IsEmpty());
}

TEST_F(DocumentTest, ARefusalNamesObjectMemberValueAndRule)
{
    start();
    const std::string ofFace = "Face \"" + faceId + "\": ";
    const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
        return text.replace(text.find(from), from.size(), to);
    };
    const std::pair<std::string, std::string> refusals[] = {
        {replaced(face(), '"' + faceId + '"', R"("7")"), "Face \"7\": \"FaceID\" is \"7\", expected 48 digits"},
        {replaced(face(), R"("FaceID":")" + faceId + R"(",)", ""),
         "Face number 1: \"FaceID\" is missing, expected 48 digits"},
        {replaced(face(), "0600001\"", "060000x\""),
         "Face \"" + imageId + "060000x\": \"FaceID\" is \"" + imageId + "060000x\", expected 48 digits"},
        {replaced(face(), R"("InfoKind":1,)", ""),
         ofFace + "\"InfoKind\" is missing, expected 0 (other), 1 (automatic) or 2 (manual)"},
        {replaced(face(), R"("InfoKind":1)", R"("InfoKind":3)"),
         ofFace + "\"InfoKind\" is 3, expected 0 (other), 1 (automatic) or 2 (manual)"},
        {replaced(face(), R"("InfoKind":1)", R"("InfoKind":true)"),
         ofFace + "\"InfoKind\" is true, expected 0 (other), 1 (automatic) or 2 (manual)"},
        {face("", ""), ofFace + "\"SourceID\" is empty, expected 41 digits"},
        {face("", "7"), ofFace + "\"SourceID\" is \"7\", expected 41 digits"},
        {face("", std::string(1000, '7')),
         ofFace + "\"SourceID\" is \"" + std::string(63, '7') + "..., expected 41 digits"},
        {replaced(face(), R"(,"DeviceID":"34020000001190000001")", ""),
         ofFace + "\"DeviceID\" is missing, expected 20 digits"},
        {replaced(face(), R"("DeviceID":"34020000001190000001")", R"("DeviceID":34020000001190000001)"),
         ofFace + "\"DeviceID\" is 3.402000000119e+19, expected 20 digits"},
        {face(R"("TollgateID":"1")"), ofFace + "\"TollgateID\" is \"1\", expected 20 digits"},
        {face(R"("ShotTime":"20240230000000")"),
         ofFace + "\"ShotTime\" is \"20240230000000\", expected a time as YYYYMMDDhhmmss"},
        {face(R"("FaceAppearTime":1709222399)"),
         ofFace + "\"FaceAppearTime\" is 1709222399, expected a time as YYYYMMDDhhmmss"},
        {face(R"("LeftTopX":"1")"), ofFace + "\"LeftTopX\" is \"1\", expected a number"},
        {face(subImage(R"("ImageID":"1","Type":"11")")),
         "Face \"" + faceId + "\", sub-image 1: \"ImageID\" is \"1\", expected 41 digits"},
        {face(subImage(R"("ShotTime":"now","Type":"11")")),
         "Face \"" + faceId + "\", sub-image 1: \"ShotTime\" is \"now\", expected a time as YYYYMMDDhhmmss"},
        {face(subImage(R"("Type":"11","Data":"data:image/jpeg;base64,Zm9v")")),
         "\"Data\" of Face \"" + faceId + "\" is not bare base64"},
    };
    for (const auto& [document, text] : refusals)
    {
        const Result result = post("/VIID/Faces", document);
        EXPECT_EQ(result.status, 400) << text;
        EXPECT_EQ(at(result.body, status + "StatusCode"), "8") << text;
        EXPECT_EQ(at(result.body, status + "StatusString"), quoted(text));
    }
    EXPECT_EQ(server().stored().posts, 0U);
}

/* What each kind must have, by a document that has nothing. */
TEST_F(DocumentTest, EachKindMustHaveItsMembers)
{
    start();
    const struct
    {
        const char* path;
        const char* document;
        const char* kind;
        const char* member;
        const char* rule;
        std::vector<std::string> further;
    } kinds[] = {
        {"/VIID/Images", R"({"ImageInfoObject":{@}})", "Image", "ImageID", "41", {"InfoKind", "DeviceID"}},
        {"/VIID/Persons",
         R"({"PersonListObject":{"PersonObject":[{@}]}})",
         "Person",
         "PersonID",
         "48",
         {"InfoKind", "SourceID", "DeviceID"}},
        {"/VIID/MotorVehicles",
         R"({"MotorVehicleListObject":{"MotorVehicleObject":[{@}]}})",
         "MotorVehicle",
         "MotorVehicleID",
         "48",
         {"InfoKind", "SourceID", "DeviceID"}},
        {"/VIID/NonMotorVehicles",
         R"({"NonMotorVehicleListObject":{"NonMotorVehicleObject":[{@}]}})",
         "NonMotorVehicle",
         "NonMotorVehicleID",
         "48",
         {"InfoKind", "SourceID", "DeviceID"}},
        {"/VIID/Things",
         R"({"ThingListObject":{"ThingObject":[{@}]}})",
         "Thing",
         "ThingID",
         "48",
         {"InfoKind", "SourceID", "DeviceID"}},
        {"/VIID/Scenes",
         R"({"SceneListObject":{"SceneObject":[{@}]}})",
         "Scene",
         "SceneID",
         "48",
         {"InfoKind", "SourceID", "DeviceID"}},
        {"/VIID/VideoSlices",
         R"({"VideoSliceListObject":{"VideoSlice":[{"VideoSliceInfo":{@}}]}})",
         "VideoSlice",
         "VideoID",
         "41",
         {"InfoKind", "DeviceID"}},
        {"/VIID/Files", R"({"FileListObject":{"File":[{"FileInfo":{@}}]}})", "File", "FileID", "41", {"InfoKind"}},
        {"/VIID/IllegalRecords",
         R"({"IllegalRecordListObject":{"IllegalRecordObject":[{@}]}})",
         "IllegalRecord",
         "IllegalRecordID",
         "48",
         {"DeviceID"}},
        {"/VIID/AccessRecords", R"({"AccessRecordObject":{@}})", "AccessRecord", "AccessRecordID", "48", {"DeviceID"}},
        {"/VIID/GPSDatas", R"({"GPSDataListObject":{"GPSDataObject":[{@}]}})", "GPSData", "GPSID", "48", {"DeviceID"}},
        {"/VIID/RFIDDatas",
         R"({"RFIDDataListObject":{"RFIDData":[{"RFIDDevice":{@}}]}})",
         "RFIDDevice",
         "RFIDDeviceDataID",
         "41",
         {"DeviceID"}},
        {"/VIID/DispositionNotifications",
         R"({"DispositionNotificationObject":{@}})",
         "DispositionNotification",
         "NotificationID",
         "33",
         {}},
    };
    for (const auto& each : kinds)
    {
        const auto with = [&](const std::string& members) {
            std::string document = each.document;
            return document.replace(document.find('@'), 1, members);
        };
        EXPECT_EQ(at(post(each.path, with("")).body, status + "StatusString"),
                  quoted(std::string(each.kind) + " number 1: \"" + each.member + "\" is missing, expected " +
                         each.rule + " digits"));
        const std::string id(std::stoul(each.rule), '1');
        std::string members = std::string("\"") + each.member + "\":\"" + id + '"';
        for (const std::string& key : each.further)
        {
            const std::string text = at(post(each.path, with(members)).body, status + "StatusString");
            EXPECT_THAT(text, testing::HasSubstr(each.kind + std::string(" \\\"") + id + "\\\": \\\"" + key +
                                                 "\\\" is missing"));
            members += ",\"" + key +
                       "\":" + (key == "InfoKind" ? "1" : '"' + std::string(key == "SourceID" ? 41 : 20, '2') + '"');
        }
        EXPECT_EQ(post(each.path, with(members)).status, 200) << each.kind;
    }
}

TEST_F(DocumentTest, ObjectsWithinObjectsAreBounded)
{
    config.strict.documents = false;
    start();
    const auto nested = [](int depth) {
        std::string text = R"({"FaceListObject":{"FaceObject":{)";
        for (int i = 1; i < depth; ++i)
        {
            text += R"("FaceObject":{)";
        }
        return text + std::string(static_cast<std::size_t>(depth), '}') + "}}";
    };
    EXPECT_EQ(post("/VIID/Faces", nested(8)).status, 200);
    const Result result = post("/VIID/Faces", nested(9));
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, status + "StatusString"), R"("objects lie within objects more than 8 deep")");
}

TEST_F(DocumentTest, ASourceThatIsNoImageIsNoted)
{
    start();
    EXPECT_THAT(notesOf(""),
                ElementsAre("unknown-source: \"SourceID\" \"" + imageId + "\" is no image that was stored"));
    EXPECT_THAT(notesOf(subImage(R"("Type":"14","ImageID":")" + imageId + R"(","Data":")" + png + '"')), IsEmpty());
    EXPECT_THAT(notesOf(""), IsEmpty()); /* now it was stored */
}

TEST_F(DocumentTest, AnImageBesideTheFaceIsItsSource)
{
    start();
    const std::string face = R"({"FaceID":")" + faceId + R"(","InfoKind":1,"SourceID":")" + imageId +
                             R"(","DeviceID":"34020000001190000001"})";
    EXPECT_THAT(notesOf("/VIID/Images", R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":")" + imageId +
                                            R"(","InfoKind":1,"DeviceID":"34020000001190000001"},)"
                                            R"("FaceList":{"FaceObject":[)" +
                                            face + "]}}]}}"),
                IsEmpty());
}

TEST_F(DocumentTest, AVehicleWithoutTollgateIsNoted)
{
    start();
    EXPECT_EQ(post("/VIID/Images", image()).status, 200);
    const std::string vehicle = R"({"MotorVehicleListObject":{"MotorVehicleObject":[{"MotorVehicleID":")" + faceId +
                                R"(","InfoKind":1,"SourceID":")" + imageId + R"(","DeviceID":"34020000001190000001")";
    EXPECT_THAT(notesOf("/VIID/MotorVehicles", vehicle + R"(,"TollgateID":"34020000001190000001"}]}})"), IsEmpty());
    EXPECT_THAT(notesOf("/VIID/MotorVehicles", vehicle + "}]}}"),
                ElementsAre("no-tollgate: there is no \"TollgateID\", which some platforms refuse on vehicles"));
}

TEST_F(DocumentTest, WhatIsOddInAFaceIsNoted)
{
    const std::chrono::system_clock::time_point now(std::chrono::seconds(1709222399));
    config.clock = [now] { return now; };
    const std::time_t later = 1709222399 + 61;
    std::tm parts{};
    localtime_r(&later, &parts);
    char time[15];
    std::strftime(time, sizeof time, "%Y%m%d%H%M%S", &parts);
    start();
    EXPECT_EQ(post("/VIID/Images", image()).status, 200);
    const auto box = [](const char* left, const char* top, const char* right, const char* bottom) {
        return std::string(R"("LeftTopX":)") + left + R"(,"LeftTopY":)" + top + R"(,"RightBtmX":)" + right +
               R"(,"RightBtmY":)" + bottom;
    };
    const std::pair<std::string, std::string> notes[] = {
        {subImage(R"("Type":"15")"),
         "sub-image-type: sub-image 1: \"Type\" \"15\" is none of 01, 02, 09, 10, 11, 12, 13, 14 and 100"},
        {subImage(""), "sub-image-type: sub-image 1: \"Type\" \"\" is none of 01, 02, 09, 10, 11, 12, 13, 14 and 100"},
        {std::string(R"("ShotTime":")") + time + '"',
         std::string("future: \"ShotTime\" ") + time + " lies 61 s in the future"},
        {subImage(std::string(R"("Type":"11","ShotTime":")") + time + '"'),
         std::string("future: sub-image 1: \"ShotTime\" ") + time + " lies 61 s in the future"},
        {box("1", "2", "801", "4"), "box-outside: the box 1,2 to 801,4 lies outside its picture of 800x600"},
        {box("1", "2", "3", "600.5"), "box-outside: the box 1,2 to 3,600.5 lies outside its picture of 800x600"},
        {box("-1", "2", "3", "4"), "box-outside: the box -1,2 to 3,4 lies outside its picture of 800x600"},
        {box("5", "2", "5", "4"), "box-empty: the box 5,2 to 5,4 has no area"},
        {R"("Name":"a","Name":"b")", "repeated-key: \"Name\" stands there more than once"},
        {R"("Name":{"a":1,"a":2})", "repeated-key: \"a\" stands there more than once"},
        {subImage(R"("Type":"11","FileFormat":"Jpeg","Data":")" + png + '"'),
         "format: a picture is said to be \"Jpeg\" and is image/png"},
    };
    for (const auto& [members, note] : notes)
    {
        EXPECT_THAT(notesOf(members), ElementsAre(note)) << members;
    }
    EXPECT_THAT(notesOf(box("0", "0", "0", "0")), IsEmpty());
    std::string text = face();
    text.replace(text.find(R"("InfoKind":1)"), 12, R"("InfoKind":"1")");
    EXPECT_THAT(notesOf("/VIID/Faces", text), ElementsAre("text-number: \"InfoKind\" is the text \"1\", not a number"));
}

TEST_F(DocumentTest, ABoxOutsideTheOwnSceneIsNoted)
{
    start();
    const auto notes = notesOf(R"("LeftTopX":1,"LeftTopY":1,"RightBtmX":801,"RightBtmY":2,)" +
                               subImage(R"("Type":"14","Data":")" + png + '"'));
    EXPECT_THAT(notes, testing::Contains("box-outside: the box 1,1 to 801,2 lies outside its picture of 800x600"));
}

TEST_F(DocumentTest, WhatIsAllowedIsNoted)
{
    config.strict.lineBreaks = false;
    config.strict.dataPrefix = false;
    config.strict.documents = false;
    config.strict.mediaType = false;
    start();
    EXPECT_EQ(post("/VIID/Images", image()).status, 200);
    EXPECT_THAT(notesOf(subImage(R"("Type":"11","Data":"Zm9v\nYmFy")")),
                ElementsAre("line-breaks: the base64 of a picture has line breaks"));
    EXPECT_THAT(notesOf(subImage(R"("Type":"11","Data":"data:image/jpeg;base64,Zm9v")")),
                ElementsAre("data-prefix: \"Data\" begins with \"data:image/jpeg;base64,\""));
    EXPECT_EQ(server().pictures().back().bytes, "foo");
    EXPECT_THAT(
        notesOf("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f"}]}})"),
        ElementsAre("members: Face \"f\": \"FaceID\" is \"f\", expected 48 digits",
                    "members: Face \"f\": \"InfoKind\" is missing, expected 0 (other), 1 (automatic) or 2 (manual)",
                    "members: Face \"f\": \"SourceID\" is missing, expected 41 digits",
                    "members: Face \"f\": \"DeviceID\" is missing, expected 20 digits"));
    client::Call plain = call("/VIID/Faces", face());
    plain.headers = {"Content-Type: text/plain"};
    EXPECT_EQ(client::perform(plain).status, 200);
    EXPECT_THAT(server().objects().back().notes,
                ElementsAre("media-type: \"text/plain\" is not application/VIID+JSON"));
}

TEST_F(DocumentTest, NotesAreBounded)
{
    config.strict.documents = false;
    start();
    std::string members = R"("Name":1)";
    for (int i = 0; i < 1000; ++i)
    {
        members += R"(,"Name":1)";
    }
    EXPECT_EQ(notesOf(members).size(), 50U);
    EXPECT_LT(notesOf("/VIID/Faces", face("", std::string(100000, '7'))).at(0).size(), 500U);
}

} // namespace
