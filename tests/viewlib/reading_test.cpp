/* SPDX-License-Identifier: Apache-2.0 */
/* What is stored, read back over HTTP. */
#include "server_fixture.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
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
        start();
        server().registerDevice(device);
    }
};

TEST_F(ReadingTest, ACollectionListsItsObjectsNewestFirst)
{
    EXPECT_EQ(post("/VIID/Images", image).status, 200);
    EXPECT_EQ(postFace().status, 200);
    Result result = get("/VIID/Faces");
    EXPECT_EQ(result.status, 200);
    EXPECT_EQ(result.body, R"({"FaceListObject":{"TotalNum":2,"RecordStartNo":1,"PageRecordNum":100,"FaceObject":[)"
                           R"({"FaceID":"face-1"},)"
                           R"({"FaceID":"f","SubImageList":{"SubImageInfoObject":[{"Type":"11"}]}}]}})");
    EXPECT_THAT(result.headers, Contains("Content-Type: application/VIID+JSON;charset=UTF-8"));
    result = get("/VIID/Images");
    EXPECT_EQ(result.body, R"({"ImageListObject":{"TotalNum":1,"RecordStartNo":1,"PageRecordNum":100,"Image":[)"
                           R"({"ImageInfo":{"ImageID":"i"}}]}})");
}

TEST_F(ReadingTest, AnEmptyCollectionIsAnEmptyList)
{
    const std::string counts = R"("TotalNum":0,"RecordStartNo":1,"PageRecordNum":100,)";
    const std::pair<const char*, std::string> lists[] = {
        {"/VIID/Images", R"({"ImageListObject":{)" + counts + R"("Image":[]}})"},
        {"/VIID/VideoSlices", R"({"VideoSliceListObject":{)" + counts + R"("VideoSlice":[]}})"},
        {"/VIID/NonMotorIllegalRecords",
         R"({"NonMotorIllegalRecordListObject":{)" + counts + R"("NonMotorIllegalRecordObject":[]}})"},
        {"/VIID/WifiDetector/WifiDatas", R"({"WifiDataListObject":{)" + counts + R"("WifiData":[]}})"},
        {"/VIID/AccessRecords", R"({"AccessRecordListObject":{)" + counts + R"("AccessRecordObject":[]}})"},
        {"/log/event", R"({"LogEventListObject":{)" + counts + R"("LogEventObject":[]}})"},
    };
    for (const auto& [path, body] : lists)
    {
        const Result result = get(path);
        EXPECT_EQ(result.status, 200) << path;
        EXPECT_EQ(result.body, body) << path;
    }
}

TEST_F(ReadingTest, AListIsReadByPages)
{
    std::string faces;
    for (int i = 1; i <= 1001; ++i)
    {
        faces += (i == 1 ? "" : ",") + (R"({"FaceID":")" + std::to_string(i)) + "\"}";
    }
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[)" + faces + "]}}").status, 200);
    const struct
    {
        const char* query;
        std::size_t start;
        std::size_t size;
    } pages[] = {{"", 1, 100},
                 {"?PageRecordNum=1000", 1, 1000},
                 {"?RecordStartNo=2", 2, 100},
                 {"?RecordStartNo=1000&PageRecordNum=3", 1000, 3},
                 {"?PageRecordNum=3&RecordStartNo=1002", 1002, 3}};
    for (const auto& page : pages)
    {
        const std::string body = get(std::string("/VIID/Faces") + page.query).body;
        EXPECT_EQ(at(body, "FaceListObject/TotalNum"), "1001");
        EXPECT_EQ(at(body, "FaceListObject/RecordStartNo"), std::to_string(page.start));
        EXPECT_EQ(at(body, "FaceListObject/PageRecordNum"), std::to_string(page.size));
        const std::size_t shown = page.start > 1001 ? 0 : std::min(page.size, 1002 - page.start);
        for (std::size_t i = 0; i < shown; i += std::max<std::size_t>(1, shown - 1)) /* the first and the last */
        {
            EXPECT_EQ(at(body, "FaceListObject/FaceObject/" + std::to_string(i) + "/FaceID"),
                      '"' + std::to_string(1002 - page.start - i) + '"')
                << page.query;
        }
        EXPECT_EQ(at(body, "FaceListObject/FaceObject/" + std::to_string(shown)), "(missing)") << page.query;
    }
}

TEST_F(ReadingTest, APageThatCannotBeIsRefused)
{
    const std::pair<const char*, const char*> refusals[] = {
        {"RecordStartNo=0", R"("RecordStartNo" is "0", expected a whole number from 1 to 1000000000)"},
        {"RecordStartNo=", R"("RecordStartNo" is "", expected a whole number from 1 to 1000000000)"},
        {"RecordStartNo=-1", R"("RecordStartNo" is "-1", expected a whole number from 1 to 1000000000)"},
        {"RecordStartNo=1000000001",
         R"("RecordStartNo" is "1000000001", expected a whole number from 1 to 1000000000)"},
        {"PageRecordNum=0", R"("PageRecordNum" is "0", expected a whole number from 1 to 1000)"},
        {"PageRecordNum=1001", R"("PageRecordNum" is "1001", expected a whole number from 1 to 1000)"},
        {"RecordStartNo=1&PageRecordNum=1x", R"("PageRecordNum" is "1x", expected a whole number from 1 to 1000)"},
        {"PageRecordNum=99999999999999999999999",
         R"("PageRecordNum" is "99999999999999999999999", expected a whole number from 1 to 1000)"},
        {"FaceID=1", R"("FaceID" is not known here, only RecordStartNo and PageRecordNum are)"},
    };
    for (const auto& [query, text] : refusals)
    {
        const Result result = get(std::string("/VIID/Faces?") + query);
        EXPECT_EQ(result.status, 400) << query;
        EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/0/StatusCode"), "4");
        const std::unique_ptr<cJSON, void (*)(cJSON*)> quoted(cJSON_CreateString(text), cJSON_Delete);
        const std::unique_ptr<char, void (*)(void*)> printed(cJSON_PrintUnformatted(quoted.get()), cJSON_free);
        EXPECT_EQ(at(result.body, "ResponseStatusListObject/ResponseStatusObject/0/StatusString"), printed.get());
    }
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
