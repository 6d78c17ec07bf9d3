/* SPDX-License-Identifier: Apache-2.0 */
/* What the collections take, keep and refuse. */
#include "server_fixture.h"

#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

using client::Result;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

/* "\xFF\xD8\xFF\x00picture" and "f", as base64. */
const char* const twoPictures =
    R"({"FaceListObject":{"FaceObject":[{"FaceID":"face-1","SubImageList":{"SubImageInfoObject":[)"
    R"({"ImageID":"image-1","Type":"11","FileFormat":"Jpeg","Data":"/9j/AHBpY3R1cmU="},)"
    R"({"ImageID":"image-2","Type":"14","FileFormat":"Jpeg","Data":"Zg=="}]}},{"FaceID":"face-2"}]}})";
const std::string firstPicture("\xFF\xD8\xFF\x00picture", 11);

const std::string firstStatus = "ResponseStatusListObject/ResponseStatusObject/0/";

class StoreTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        config.strict.registration = false;
    }
};

TEST_F(StoreTest, FacesAreKeptWholeAndInParts)
{
    start();
    const Result result = post("/VIID/Faces", twoPictures);
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, firstStatus + "Id"), R"("face-1")");
    EXPECT_EQ(at(result.body, firstStatus + "StatusCode"), "0");
    EXPECT_EQ(at(result.body, firstStatus + "StatusString"), R"("OK")");
    EXPECT_EQ(at(result.body, firstStatus + "RequestURL"), R"("/VIID/Faces")");
    EXPECT_EQ(at(result.body, firstStatus + "LocalTime").size(), 16U);
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/1/Id"), R"("face-2")");
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/2"), "(missing)");

    const auto posts = server().posts("/VIID/Faces");
    ASSERT_EQ(posts.size(), 1U);
    EXPECT_EQ(posts[0].body, twoPictures);
    EXPECT_EQ(posts[0].device, device);
    EXPECT_EQ(posts[0].contentType, "application/VIID+JSON;charset=UTF-8");

    const auto objects = server().objects("Face");
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0].objectId, "face-1");
    EXPECT_EQ(objects[0].post, posts[0].id);
    EXPECT_EQ(objects[0].document, R"({"FaceID":"face-1","SubImageList":{"SubImageInfoObject":[)"
                                   R"({"ImageID":"image-1","Type":"11","FileFormat":"Jpeg"},)"
                                   R"({"ImageID":"image-2","Type":"14","FileFormat":"Jpeg"}]}})");
    EXPECT_EQ(objects[1].document, R"({"FaceID":"face-2"})");

    const auto pictures = server().pictures("face-1");
    ASSERT_EQ(pictures.size(), 2U);
    EXPECT_EQ(pictures[0].bytes, firstPicture);
    EXPECT_EQ(pictures[0].imageId, "image-1");
    EXPECT_EQ(pictures[0].type, "11");
    EXPECT_EQ(pictures[0].format, "Jpeg");
    EXPECT_EQ(pictures[1].bytes, "f");
    EXPECT_THAT(server().pictures("face-2"), IsEmpty());
}

TEST_F(StoreTest, AnImageIsKeptWithItsObjects)
{
    start();
    const Result result =
        post("/VIID/Images",
             R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":"image-1","FileFormat":"Png"},)"
             R"("PersonList":{"PersonObject":[{"PersonID":"person-1","SubImageList":{"SubImageInfoObject":[)"
             R"({"Type":"10","Data":"Zm8="}]}}]},"FaceList":{"FaceObject":[{"FaceID":"face-1"}]},"Data":"Zm9v"}]}})");
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, firstStatus + "Id"), R"("image-1")");
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/1"), "(missing)");
    const auto objects = server().objects();
    ASSERT_EQ(objects.size(), 3U);
    EXPECT_EQ(objects[0].kind + objects[1].kind + objects[2].kind, "ImagePersonFace");
    ASSERT_EQ(server().pictures("image-1").size(), 1U);
    EXPECT_EQ(server().pictures("image-1")[0].bytes, "foo");
    EXPECT_EQ(server().pictures("image-1")[0].type, "");
    EXPECT_EQ(server().pictures("image-1")[0].format, "Png");
    ASSERT_EQ(server().pictures("person-1").size(), 1U);
    EXPECT_EQ(server().pictures("person-1")[0].bytes, "fo");
}

TEST_F(StoreTest, ASingleImageNeedsNoList)
{
    start();
    EXPECT_EQ(post("/VIID/Images", R"({"ImageInfoObject":{"ImageID":"image-1"}})").status, 200);
    ASSERT_EQ(server().objects("Image").size(), 1U);
    EXPECT_EQ(server().objects("Image")[0].objectId, "image-1");
}

TEST_F(StoreTest, EveryCollectionTakesItsOwnDocument)
{
    start();
    const std::pair<const char*, const char*> documents[] = {
        {"/VIID/Images", R"({"ImageListObject":{"Image":[]}})"},
        {"/VIID/Faces", R"({"FaceListObject":{"FaceObject":[]}})"},
        {"/VIID/Persons", R"({"PersonListObject":{"PersonObject":[]}})"},
        {"/VIID/MotorVehicles", R"({"MotorVehicleListObject":{"MotorVehicleObject":[]}})"},
        {"/VIID/NonMotorVehicles", R"({"NonMotorVehicleListObject":{"NonMotorVehicleObject":[]}})"},
        {"/VIID/Things", R"({"ThingListObject":{"ThingObject":[]}})"},
        {"/VIID/Scenes", R"({"SceneListObject":{"SceneObject":[]}})"},
        {"/VIID/VideoSlices", R"({"VideoSliceListObject":{"VideoSlice":[]}})"},
        {"/VIID/Files", R"({"FileListObject":{"File":[]}})"},
        {"/VIID/IllegalRecords", R"({"IllegalRecordListObject":{"IllegalRecordObject":[]}})"},
        {"/VIID/NonMotorIllegalRecords", R"({"NonMotorIllegalRecordListObject":{"NonMotorIllegalRecordObject":[]}})"},
        {"/VIID/GPSDatas", R"({"GPSDataListObject":{"GPSDataObject":[]}})"},
        {"/VIID/WifiDetector/WifiDatas", R"({"WifiDataListObject":{"WifiData":[]}})"},
        {"/VIID/RFIDDatas", R"({"RFIDDataListObject":{"RFIDData":[]}})"},
        {"/VIID/DispositionNotifications",
         R"({"DispositionNotificationListObject":{"DispositionNotificationObject":[]}})"},
        {"/VIID/AccessRecords", R"({"AccessRecordListObject":{"AccessRecordObject":[]}})"},
    };
    std::size_t posts = 0;
    for (const auto& [path, document] : documents)
    {
        EXPECT_EQ(post(path, document).status, 200) << path;
        EXPECT_EQ(server().stored().posts, ++posts) << path;
        EXPECT_EQ(post(path, R"({"Other":{}})").status, 400) << path;
        EXPECT_EQ(server().stored().posts, posts) << path;
    }
}

/* "kind id" of all objects, in the order in which they were stored. */
std::vector<std::string> namesOf(const std::vector<viewlib::StoredObject>& objects)
{
    std::vector<std::string> names;
    for (const viewlib::StoredObject& object : objects)
    {
        names.push_back(object.kind + " " + object.objectId);
    }
    return names;
}

TEST_F(StoreTest, AnImageHasObjectsOfEveryKind)
{
    start();
    EXPECT_EQ(post("/VIID/Images",
                   R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":"i"},)"
                   R"("PersonList":{"PersonObject":[{"PersonID":"p1"},{"PersonID":"p2"}]},)"
                   R"("FaceList":{"FaceObject":[{"FaceID":"f"}]},)"
                   R"("MotorVehicleList":{"MotorVehicleObject":[{"MotorVehicleID":"m"}]},)"
                   R"("NonMotorVehicleList":{"NonMotorVehicleObject":[{"NonMotorVehicleID":"n"}]},)"
                   R"("ThingList":{"ThingObject":[{"ThingID":"t"}]},)"
                   R"("SceneList":{"SceneObject":[{"SceneID":"s"}]},)"
                   R"("AccessRecordList":{"AccessRecordObject":[{"AccessRecordID":"a"}]},"Data":"Zm9v"}]}})")
                  .status,
              200);
    EXPECT_THAT(namesOf(server().objects()),
                ElementsAre("Image i", "Person p1", "Person p2", "Face f", "MotorVehicle m", "NonMotorVehicle n",
                            "Thing t", "Scene s", "AccessRecord a"));
    EXPECT_EQ(server().pictures("i").at(0).bytes, "foo");
}

TEST_F(StoreTest, SeveralImagesKeepTheirOwnData)
{
    start();
    EXPECT_EQ(post("/VIID/Images",
                   R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":"i1"},"Data":"Zm9v","FaceList":)"
                   R"({"FaceObject":[{"FaceID":"f1"}]}},{"ImageInfo":{"ImageID":"i2"},"Data":"Zm8="}]}})")
                  .status,
              200);
    EXPECT_THAT(namesOf(server().objects()), ElementsAre("Image i1", "Face f1", "Image i2"));
    EXPECT_EQ(server().pictures("i1").at(0).bytes, "foo");
    EXPECT_EQ(server().pictures("i2").at(0).bytes, "fo");
}

TEST_F(StoreTest, ASlicesObjectsAndViolationsAreSplitOut)
{
    start();
    const Result result = post(
        "/VIID/VideoSlices",
        R"({"VideoSliceListObject":{"VideoSlice":[{"VideoSliceInfo":{"VideoID":"v1"}},)"
        R"({"VideoSliceInfo":{"VideoID":"v2","SubImageList":{"SubImageInfoObject":[{"Type":"14","Data":"Zg=="}]}},)"
        R"("PersonList":{"PersonObject":[{"PersonID":"p"}]},)"
        R"("IllegalRecordList":{"IllegalRecordObject":[{"IllegalRecordID":"r1"}]},)"
        R"("NonMotorIllegalRecordList":{"NonMotorIllegalRecord":[{"IllegalRecordID":"r2"}]},"Data":"Zm9v"}]}})");
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/1/Id"), R"("v2")");
    EXPECT_THAT(namesOf(server().objects()), ElementsAre("VideoSlice v1", "VideoSlice v2", "Person p",
                                                         "IllegalRecord r1", "NonMotorIllegalRecord r2"));
    ASSERT_EQ(server().pictures("v2").size(), 2U);
    EXPECT_EQ(server().pictures("v2")[0].bytes, "foo");
    EXPECT_EQ(server().pictures("v2")[1].bytes, "f");
}

TEST_F(StoreTest, AFileIsKeptWithItsObjects)
{
    start();
    EXPECT_EQ(post("/VIID/Files", R"({"FileListObject":{"File":[{"FileInfo":{"FileID":"x","FileFormat":"pdf"},)"
                                  R"("SceneList":{"SceneObject":[{"SceneID":"s"}]},"Data":"Zm9v"}]}})")
                  .status,
              200);
    EXPECT_THAT(namesOf(server().objects()), ElementsAre("File x", "Scene s"));
    EXPECT_EQ(server().pictures("x").at(0).bytes, "foo");
    EXPECT_EQ(server().pictures("x").at(0).format, "pdf");
}

TEST_F(StoreTest, RecordsAndReportsAreSplitOut)
{
    start();
    const struct
    {
        const char* path;
        const char* document;
        std::vector<std::string> names;
    } cases[] = {
        {"/VIID/Persons", R"({"PersonListObject":{"PersonObject":[{"PersonID":"1"}]}})", {"Person 1"}},
        {"/VIID/MotorVehicles",
         R"({"MotorVehicleListObject":{"MotorVehicleObject":[{"MotorVehicleID":"1"}]}})",
         {"MotorVehicle 1"}},
        {"/VIID/NonMotorVehicles",
         R"({"NonMotorVehicleListObject":{"NonMotorVehicleObject":[{"NonMotorVehicleID":"1"}]}})",
         {"NonMotorVehicle 1"}},
        {"/VIID/Things", R"({"ThingListObject":{"ThingObject":[{"ThingID":"1"}]}})", {"Thing 1"}},
        {"/VIID/Scenes", R"({"SceneListObject":{"SceneObject":[{"SceneID":"1"}]}})", {"Scene 1"}},
        {"/VIID/IllegalRecords",
         R"({"IllegalRecordListObject":{"IllegalRecordObject":[{"IllegalRecordID":"1"},{"IllegalRecordID":"2"}]}})",
         {"IllegalRecord 1", "IllegalRecord 2"}},
        {"/VIID/NonMotorIllegalRecords",
         R"({"NonMotorIllegalRecordListObject":{"NonMotorIllegalRecordObject":[{"IllegalRecordID":"1"}]}})",
         {"NonMotorIllegalRecord 1"}},
        {"/VIID/GPSDatas", R"({"GPSDataListObject":{"GPSDataObject":[{"GPSID":"1"}]}})", {"GPSData 1"}},
        {"/VIID/WifiDetector/WifiDatas",
         R"({"WifiDataListObject":{"WifiData":[{"WifiDevice":{"WifiDeviceDataID":"1","GPSData":{"GPSID":"2"}},)"
         R"("WifiUsersList":{"WifiUsersObject":[{"WifiUserDataID":"3"}]},)"
         R"("ImeiList":{"ImeiObject":[{"Longitude":1,"Longitude":1,"ImeiID":"4"}]}}]}})",
         {"WifiDevice 1", "GPSData 2", "WifiUser 3", "Imei 4"}},
        {"/VIID/RFIDDatas",
         R"({"RFIDDataListObject":{"RFIDData":[{"RFIDDevice":{"RFIDDeviceDataID":"1"},)"
         R"("RFIDInfoList":{"RFIDInfoObject":[{"RFIDInfoDataID":"2"}]}}]}})",
         {"RFIDDevice 1", "RFIDInfo 2"}},
        {"/VIID/AccessRecords",
         R"({"AccessRecordListObject":{"AccessRecordObject":[{"AccessRecordID":"1"},{"AccessRecordID":"2"}]}})",
         {"AccessRecord 1", "AccessRecord 2"}},
        {"/VIID/AccessRecords", R"({"AccessRecordObject":{"AccessRecordID":"1"}})", {"AccessRecord 1"}},
        {"/log/event", R"([{"clientId":"1","value":{"TargetID":"x"}}])", {"LogEvent 1"}},
    };
    std::size_t before = 0;
    for (const auto& each : cases)
    {
        const Result result = post(each.path, each.document);
        EXPECT_EQ(result.status, 200) << each.path;
        EXPECT_EQ(server().posts(each.path).back().body, each.document);
        auto names = namesOf(server().objects());
        names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(before));
        EXPECT_EQ(names, each.names) << each.path;
        before += names.size();
    }
}

TEST_F(StoreTest, ANotificationIsKeptWithWhatItNotifiesOf)
{
    start();
    const std::string notification =
        R"({"NotificationID":"n","PersonObject":{"PersonID":"p","SubImageList":{"SubImageInfoObject":)"
        R"([{"Type":"10","Data":"Zm9v"}]}},"DispositionListObject":[{"FaceListObject":{"FaceObject":[{"FaceID":"f"}]}}]})";
    for (const std::string& document :
         {R"({"DispositionNotificationObject":)" + notification + "}",
          R"({"DispositionNotificationListObject":{"DispositionNotificationObject":[)" + notification + "]}}"})
    {
        const Result result = post("/VIID/DispositionNotifications", document);
        EXPECT_EQ(result.status, 200) << document;
        EXPECT_EQ(at(result.body, firstStatus + "Id"), R"("n")");
        EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/1"), "(missing)");
    }
    EXPECT_THAT(namesOf(server().objects()), ElementsAre("DispositionNotification n", "Person p", "Face f",
                                                         "DispositionNotification n", "Person p", "Face f"));
    EXPECT_EQ(server().pictures("p").at(0).bytes, "foo");
    EXPECT_EQ(server().objects().at(0).document.find("Zm9v"), std::string::npos); /* pictures are kept once */
}

TEST_F(StoreTest, DataInsideAnObjectIsItsPicture)
{
    start();
    EXPECT_EQ(post("/VIID/Images", R"({"ImageInfoObject":{"ImageID":"i","Data":"Zm9v"}})").status, 200);
    EXPECT_EQ(server().pictures("i").at(0).bytes, "foo");
    EXPECT_EQ(server().objects().at(0).document, R"({"ImageID":"i"})");
}

TEST_F(StoreTest, LogEventsAreAnArray)
{
    start();
    const Result result = post("/log/event", R"({"clientId":"1"})");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, firstStatus + "StatusCode"), "8");
    EXPECT_EQ(post("/log/event", "[").status, 400);
    EXPECT_EQ(server().stored().posts, 0U);
}

TEST_F(StoreTest, DataIsDecodedWhereItIsBase64)
{
    start();
    const Result result = post("/VIID/Images/image-1/Data", "Zm9v");
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(at(result.body, firstStatus + "Id"), R"("image-1")");
    EXPECT_EQ(post("/VIID/VideoSlices/slice-1/Data", R"({"VideoDataObject":{"VData":"Zm8="}})").status, 200);
    EXPECT_EQ(post("/VIID/Files/file-1/Data", "not base64").status, 200);
    ASSERT_EQ(server().objects("ImageData").size(), 1U);
    EXPECT_EQ(server().pictures("image-1").at(0).bytes, "foo");
    EXPECT_EQ(server().pictures("slice-1").at(0).bytes, "fo");
    EXPECT_THAT(server().pictures("file-1"), IsEmpty());
    EXPECT_EQ(server().posts("/VIID/Files/file-1/Data").at(0).body, "not base64");
    EXPECT_EQ(post("/VIID/Faces/face-1/Data", "Zm9v").status, 404);
    EXPECT_EQ(post("/VIID/Images//Data", "Zm9v").status, 404);
}

TEST_F(StoreTest, LogEventsNeedNoRegistration)
{
    config.strict.registration = true;
    start();
    EXPECT_EQ(post("/log/event", R"([{"clientId":"x"}])").status, 200);
    EXPECT_EQ(server().posts("/log/event").at(0).body, R"([{"clientId":"x"}])");
}

TEST_F(StoreTest, WhatIsWrongIsRefusedWithItsReasonAndNotKept)
{
    start();
    Result result = post("/VIID/Faces", R"({"FaceListObject":)");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, firstStatus + "StatusCode"), "7");
    result = post("/VIID/Faces", R"({"FaceListObject":{}} {})");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, firstStatus + "StatusCode"), "7");
    result = post("/VIID/Faces", R"({"PersonListObject":{}})");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, firstStatus + "StatusCode"), "8");
    EXPECT_EQ(at(result.body, firstStatus + "StatusString"), R"("the document has no \"FaceListObject\"")");
    result = post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"face-1","SubImageList":)"
                                 R"({"SubImageInfoObject":[{"Data":"data:image/jpeg;base64,Zm9v"}]}}]}})");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(at(result.body, firstStatus + "StatusCode"), "8");
    EXPECT_EQ(at(result.body, firstStatus + "StatusString"), R"("\"Data\" of Face \"face-1\" is not bare base64")");
    result = post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[7]}})");
    EXPECT_EQ(result.status, 400);
    EXPECT_EQ(server().stored().posts, 0U);
    EXPECT_EQ(server().stored().objects, 0U);
}

TEST_F(StoreTest, LineBreaksInBase64AreRefusedUnlessTold)
{
    const char* const broken = R"({"FaceListObject":{"FaceObject":[{"FaceID":"face-1","SubImageList":)"
                               R"({"SubImageInfoObject":[{"Data":"Zm9v\nYmFy"}]}}]}})";
    start();
    EXPECT_EQ(post("/VIID/Faces", broken).status, 400);

    viewlib::Config lenient = config;
    lenient.strict.lineBreaks = false;
    viewlib::Server second(lenient);
    second.start();
    client::Call made = call("/VIID/Faces", broken);
    made.url = second.url("/VIID/Faces");
    EXPECT_EQ(client::perform(made).status, 200);
    EXPECT_EQ(second.pictures("face-1").at(0).bytes, "foobar");
}

TEST_F(StoreTest, TheMediaTypeCountsWhenTold)
{
    config.strict.mediaType = true;
    start();
    EXPECT_EQ(postFace().status, 200);
    client::Call plain = call("/VIID/Faces", R"({"FaceListObject":{}})");
    plain.headers = {"Content-Type: text/plain"};
    EXPECT_EQ(client::perform(plain).status, 415);
    plain.headers = {"Content-Type: application/json"};
    EXPECT_EQ(client::perform(plain).status, 200);
}

TEST_F(StoreTest, UnknownPathsAndMethodsAreRefused)
{
    start();
    EXPECT_EQ(post("/VIID/Nothing", "{}").status, 404);
    EXPECT_EQ(post("/VIID/faces", "{}").status, 404);
    const Result result = client::perform(call("/VIID/Faces", "", "DELETE"));
    EXPECT_EQ(result.status, 405);
    EXPECT_THAT(result.headers, testing::Contains("Allow: GET, POST"));
}

TEST_F(StoreTest, ABodyUpToTheLimitIsTakenAndOneAboveGets413)
{
    config.maxBody = 100000;
    start();
    const std::string document = R"({"FaceListObject":{}})";
    const std::string full = document + std::string(100000 - document.size(), ' ');
    EXPECT_EQ(post("/VIID/Faces", full).status, 200);
    const Result result = post("/VIID/Faces", full + " ");
    EXPECT_EQ(result.code, CURLE_OK);
    EXPECT_EQ(result.status, 413);
    EXPECT_EQ(server().stored().posts, 1U);
    const auto exchanges = server().exchanges();
    EXPECT_EQ(exchanges.at(0).body, full);
    EXPECT_TRUE(exchanges.at(1).oversized);
    EXPECT_THAT(exchanges.at(1).body, IsEmpty());
}

TEST_F(StoreTest, ABodyOfManyMegabytesArrivesWhole)
{
    start();
    std::string body = R"({"FaceListObject":{},"x":")";
    for (int i = 0; body.size() < (std::size_t(8) << 20); ++i)
    {
        body += std::to_string(i) + ',';
    }
    body += "\"}";
    EXPECT_EQ(post("/VIID/Faces", body).status, 200);
    EXPECT_TRUE(server().posts().at(0).body == body);
}

class DirectoryTest : public StoreTest
{
  protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        m_directory = testing::TempDir() + "viewlib-XXXXXX";
        ASSERT_NE(mkdtemp(m_directory.data()), nullptr);
        config.storage = m_directory + "/data";
    }
    void TearDown() override
    {
        std::filesystem::remove_all(m_directory);
    }

  private:
    std::string m_directory;
};

TEST_F(DirectoryTest, PicturesAreFilesWithTheBytesThatWereSent)
{
    start();
    EXPECT_EQ(post("/VIID/Faces", twoPictures).status, 200);
    const auto pictures = server().pictures();
    ASSERT_EQ(pictures.size(), 2U);
    EXPECT_EQ(pictures[0].file, "pictures/00000001.jpg");
    EXPECT_EQ(pictures[1].file, "pictures/00000002.bin");
    EXPECT_EQ(pictures[0].bytes, firstPicture);
    std::ifstream file(config.storage + "/" + pictures[0].file, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), firstPicture);
}

TEST_F(DirectoryTest, IdentifiersNeverNameFiles)
{
    start();
    EXPECT_EQ(post("/VIID/Faces",
                   R"({"FaceListObject":{"FaceObject":[{"FaceID":"../../f","SubImageList":)"
                   R"({"SubImageInfoObject":[{"ImageID":"/etc/x","FileFormat":"/../x","Data":"Zm9v"}]}}]}})")
                  .status,
              200);
    for (const std::string target : {"/VIID/Images/../Data", "/VIID/Images/..%2F..%2Fx/Data", "/VIID/Images/%00/Data"})
    {
        client::Call made = call("", "Zm9v");
        made.rawTarget = target;
        EXPECT_EQ(client::perform(made).status, 200) << target; /* an odd identifier, no more */
    }
    client::Call made = call("", "Zm9v");
    made.rawTarget = "/VIID/Images/../../x/Data";
    EXPECT_EQ(client::perform(made).status, 404);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(config.storage + "/.."))
    {
        if (entry.is_regular_file())
        {
            names.push_back(entry.path().lexically_relative(config.storage + "/..").string());
        }
    }
    EXPECT_THAT(names, testing::Each(testing::AnyOf(testing::StartsWith("data/viewlib.db"),
                                                    testing::StartsWith("data/exchanges.db"),
                                                    testing::ContainsRegex("^data/pictures/0000000[1-4]\\.bin$"))));
    EXPECT_EQ(server().pictures().size(), 4U);
}

TEST_F(DirectoryTest, WhatWasStoredAndRegisteredOutlivesTheServer)
{
    {
        viewlib::Server first(config);
        first.start();
        first.registerDevice(device);
        client::Call made;
        made.url = first.url("/VIID/Faces");
        made.headers = {std::string("User-Identify:") + device};
        made.body = twoPictures;
        EXPECT_EQ(client::perform(made).status, 200);
    }
    EXPECT_TRUE(server().registered(device));
    EXPECT_EQ(server().objects("Face").size(), 2U);
    EXPECT_EQ(server().pictures("face-1").at(0).bytes, firstPicture);
}

TEST_F(DirectoryTest, AStorageFaultIsAnsweredAndNothingIsHalfKept)
{
    start();
    std::filesystem::remove_all(config.storage + "/pictures");
    const Result result = post("/VIID/Faces", twoPictures);
    EXPECT_EQ(result.status, 500);
    EXPECT_EQ(at(result.body, firstStatus + "StatusCode"), "1");
    EXPECT_EQ(server().stored().posts, 0U);
    EXPECT_EQ(server().stored().objects, 0U);
}

TEST_F(DirectoryTest, OneServerAtATimeHasTheDirectory)
{
    start();
    try
    {
        viewlib::Server second(config);
        FAIL() << "the second server opened the directory";
    }
    catch (const std::runtime_error& error)
    {
        EXPECT_EQ(std::string(error.what()), "the directory \"" + config.storage + "\" is in use by another server");
    }
}

TEST_F(DirectoryTest, WhatAnEndLeftOfAPostIsRemovedAtTheStart)
{
    start();
    EXPECT_EQ(post("/VIID/Faces", twoPictures).status, 200);
    close();
    for (const char* name : {"00000003.jpg", "00000001.png", "123456789.bin", "notes.txt", "0001.jpg"})
    {
        std::ofstream(config.storage + "/pictures/" + name) << "stray";
    }
    start();
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(config.storage + "/pictures"))
    {
        names.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("00000001.jpg", "00000002.bin", "notes.txt", "0001.jpg"));
    EXPECT_EQ(server().pictures("face-1").at(0).bytes, firstPicture);
    EXPECT_EQ(post("/VIID/Faces", twoPictures).status, 200);
    EXPECT_EQ(server().pictures().back().file, "pictures/00000004.bin");
}

/* As the first version laid it out. */
TEST_F(DirectoryTest, ADatabaseOfTheFirstFormIsTakenOver)
{
    std::filesystem::create_directories(config.storage + "/pictures");
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open((config.storage + "/viewlib.db").c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, R"(
        CREATE TABLE registrations (device TEXT PRIMARY KEY, since INTEGER NOT NULL, keepalive INTEGER NOT NULL);
        CREATE TABLE posts (id INTEGER PRIMARY KEY, received INTEGER NOT NULL, device TEXT NOT NULL,
            path TEXT NOT NULL, type TEXT NOT NULL, body BLOB NOT NULL);
        CREATE TABLE objects (id INTEGER PRIMARY KEY, post INTEGER NOT NULL REFERENCES posts (id), kind TEXT NOT NULL,
            object TEXT NOT NULL, document TEXT NOT NULL);
        CREATE TABLE pictures (id INTEGER PRIMARY KEY, object INTEGER NOT NULL REFERENCES objects (id),
            image TEXT NOT NULL, type TEXT NOT NULL, format TEXT NOT NULL, file TEXT NOT NULL, bytes BLOB);
        INSERT INTO posts VALUES (1, 1709222399000, 'd', '/VIID/Faces', '', '{}');
        INSERT INTO objects VALUES (1, 1, 'Face', 'old', '{"FaceID":"old"}');)",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
    start();
    EXPECT_EQ(server().objects("Face").at(0).objectId, "old");
    EXPECT_EQ(post("/VIID/Faces", twoPictures).status, 200);
    EXPECT_EQ(server().objects("Face").size(), 3U);
    close();
    start();
    EXPECT_EQ(server().objects("Face").size(), 3U);
}

TEST_F(DirectoryTest, APlaceThatCannotBeADirectoryIsRefused)
{
    std::ofstream(config.storage) << "a file";
    EXPECT_THROW(server(), std::runtime_error);
}

} // namespace
