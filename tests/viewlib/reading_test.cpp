/* SPDX-License-Identifier: Apache-2.0 */
/* What is stored, read back over HTTP. */
#include "server_fixture.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>

using client::Result;
using testing::Contains;

namespace
{

/* "\xFF\xD8\xFF\x00picture" and "f", as base64. */
const std::string image = R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":"i"},"FaceList":{"FaceObject":[)"
                          R"({"FaceID":"f","SubImageList":{"SubImageInfoObject":[{"Type":"11","Data":"Zg=="}]}}]},)"
                          R"("Data":"/9j/AHBpY3R1cmU="}]}})";
const std::string picture("\xFF\xD8\xFF\x00picture", 11);

class ReadingTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        config.clock = [this] { return m_now.load(); };
        start();
        server().registerDevice(device);
    }
    Result get(const std::string& path)
    {
        client::Call made;
        made.url = server().url(path);
        made.method = "GET";
        return client::perform(made);
    }

  private:
    std::atomic<std::chrono::system_clock::time_point> m_now{
        std::chrono::system_clock::time_point(std::chrono::seconds(1709222399))}; /* 2024-02-29 15:59:59 UTC */
};

TEST_F(ReadingTest, ACollectionListsItsObjectsNewestFirst)
{
    const char* const zone = std::getenv("TZ");
    const std::string before = zone == nullptr ? "" : zone;
    setenv("TZ", "UTC-8", 1);
    tzset();
    EXPECT_EQ(post("/VIID/Images", image).status, 200);
    EXPECT_EQ(postFace().status, 200);
    const Result result = get("/VIID/Faces");
    zone == nullptr ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
    tzset();
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(result.body,
              R"({"Total":2,"Objects":[)"
              R"({"Id":"face-1","Received":"20240229235959","Device":"34020000001190000001","Bytes":55,"Pictures":[]},)"
              R"({"Id":"f","Received":"20240229235959","Device":"34020000001190000001","Bytes":)" +
                  std::to_string(image.size()) + R"(,"Pictures":["/VIID/Pictures/2"]}]})");
}

TEST_F(ReadingTest, AnEmptyCollectionIsAnEmptyList)
{
    for (const char* path : {"/VIID/Images", "/VIID/WifiDetector/WifiDatas", "/VIID/AccessRecords", "/log/event"})
    {
        const Result result = get(path);
        EXPECT_EQ(result.status, 200) << path;
        EXPECT_EQ(result.body, R"({"Total":0,"Objects":[]})") << path;
    }
}

TEST_F(ReadingTest, ALongListIsCut)
{
    std::string faces;
    for (int i = 1; i <= 1001; ++i)
    {
        faces += (i == 1 ? "" : ",") + (R"({"FaceID":")" + std::to_string(i)) + "\"}";
    }
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[)" + faces + "]}}").status, 200);
    const Result result = get("/VIID/Faces");
    EXPECT_EQ(at(result.body, "Total"), "1001");
    EXPECT_EQ(at(result.body, "Objects/0/Id"), R"("1001")");
    EXPECT_EQ(at(result.body, "Objects/999/Id"), R"("2")");
    EXPECT_EQ(at(result.body, "Objects/1000"), "(missing)");
}

TEST_F(ReadingTest, AnObjectIsShownByTheDocumentItCameInLast)
{
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject": {"FaceObject":[{"FaceID":"f"}]}})").status, 200);
    EXPECT_EQ(get("/VIID/Faces/f").body, R"({"FaceListObject": {"FaceObject":[{"FaceID":"f"}]}})");
    EXPECT_EQ(post("/VIID/Images", image).status, 200);
    EXPECT_EQ(get("/VIID/Faces/f").body, image);
    EXPECT_EQ(get("/VIID/Images/i").body, image);
    const Result result = get("/VIID/Persons/f");
    EXPECT_EQ(result.status, 404);
    EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/0/StatusString"),
              R"("nothing is stored under /VIID/Persons/f")");
}

TEST_F(ReadingTest, PicturesAreShownDecoded)
{
    EXPECT_EQ(post("/VIID/Images", image).status, 200);
    Result result = get("/VIID/Pictures/1");
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(result.body, picture);
    EXPECT_THAT(result.headers, Contains("Content-Type: image/jpeg"));
    result = get("/VIID/Pictures/2");
    EXPECT_EQ(result.body, "f");
    EXPECT_THAT(result.headers, Contains("Content-Type: application/octet-stream"));
    for (const char* path : {"/VIID/Pictures/3", "/VIID/Pictures/x", "/VIID/Pictures/1x", "/VIID/Pictures"})
    {
        EXPECT_EQ(get(path).status, 404) << path;
    }
}

TEST_F(ReadingTest, DataIsShownAsItCameLast)
{
    EXPECT_EQ(get("/VIID/Images/i/Data").status, 404);
    EXPECT_EQ(post("/VIID/Images", image).status, 200);
    EXPECT_EQ(get("/VIID/Images/i/Data").body, picture);
    EXPECT_EQ(post("/VIID/Images/i/Data", "Zm9v").status, 200);
    EXPECT_EQ(get("/VIID/Images/i/Data").body, "foo");
    EXPECT_EQ(get("/VIID/Files/i/Data").status, 404); /* the data of an image of that name is none of a file */
    EXPECT_EQ(post("/VIID/VideoSlices/v/Data", R"({"VideoDataObject":{"VData":"Zm8="}})").status, 200);
    EXPECT_EQ(get("/VIID/VideoSlices/v/Data").body, "fo");
}

TEST_F(ReadingTest, AScriptedDelayLeavesTheMediaTypeAlone)
{
    EXPECT_EQ(post("/VIID/Images", image).status, 200);
    server().script("/VIID/Pictures/1", viewlib::Answer::late(std::chrono::milliseconds(1)));
    EXPECT_THAT(get("/VIID/Pictures/1").headers, Contains("Content-Type: image/jpeg"));
}

TEST_F(ReadingTest, OnlyReadingIsServedBelowACollection)
{
    const Result result = post("/VIID/Faces/f", "{}");
    EXPECT_EQ(result.status, 405);
    EXPECT_THAT(result.headers, Contains("Allow: GET"));
    EXPECT_EQ(post("/VIID/Pictures/1", "{}").status, 405);
    EXPECT_EQ(get("/VIID/System/Keepalive").status, 405);
    EXPECT_EQ(get("/VIID/Faces/f/g").status, 404);
}

TEST_F(ServerTest, ReadingNeedsARegistrationOnlyWhenTold)
{
    config.strict.reading = true;
    start();
    client::Call made = call("/VIID/Faces", "", "GET");
    EXPECT_EQ(client::perform(made).status, 401);
    server().registerDevice(device);
    EXPECT_EQ(client::perform(made).status, 200);
    made.headers.clear();
    EXPECT_EQ(client::perform(made).status, 401);
}

TEST_F(ServerTest, PicturesInFilesAreShown)
{
    std::string directory = testing::TempDir() + "viewlib-XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    config.storage = directory;
    config.strict.registration = false;
    start();
    EXPECT_EQ(post("/VIID/Images", image).status, 200);
    const Result result = client::perform(call("/VIID/Pictures/1", "", "GET"));
    EXPECT_EQ(result.body, picture);
    std::filesystem::remove_all(directory);
}

} // namespace
