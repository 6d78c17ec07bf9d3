/* SPDX-License-Identifier: Apache-2.0 */
/* What the collections take, keep and refuse. */
#include "server_fixture.h"

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
    EXPECT_THAT(result.headers, testing::Contains("Allow: POST"));
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

TEST_F(DirectoryTest, WhatWasStoredAndRegisteredOutlivesTheServer)
{
    {
        viewlib::Server first(config);
        first.start();
        first.registerDevice(device);
        client::Call made = call("/VIID/Faces", twoPictures);
        made.url = first.url("/VIID/Faces");
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

TEST_F(DirectoryTest, APlaceThatCannotBeADirectoryIsRefused)
{
    std::ofstream(config.storage) << "a file";
    EXPECT_THROW(server(), std::runtime_error);
}

} // namespace
