/* SPDX-License-Identifier: Apache-2.0 */
/* The page's files and pictures, as a browser gets them. */
#include "server_fixture.h"

using ::testing::Contains;
using ::testing::HasSubstr;

class PageTest : public ServerTest
{
  protected:
    client::Result fetch(const std::string& path)
    {
        client::Call made;
        made.url = server().url(path);
        made.method = "GET";
        return client::perform(made);
    }
    /* "\xFF\xD8\xFF\x00picture" as the picture of a face */
    void postPicture()
    {
        server().registerDevice(device);
        const client::Result result = post(
            "/VIID/Faces",
            R"({"FaceListObject":{"FaceObject":[{"FaceID":"340200000011900000010220260101120000000010600001",)"
            R"("InfoKind":1,"SourceID":"34020000001190000001022026010112000000001","DeviceID":"34020000001190000001",)"
            R"("LeftTopX":1,"LeftTopY":2,"RightBtmX":3,"RightBtmY":4,"SubImageList":{"SubImageInfoObject":[{)"
            R"("ImageID":"34020000001190000001022026010112000000002","EventSort":0,"DeviceID":"34020000001190000001",)"
            R"("StoragePath":"","Type":"11","FileFormat":"Jpeg","ShotTime":"20260101120000","Width":3,"Height":4,)"
            R"("Data":"/9j/AHBpY3R1cmU="}]}}]}})");
        ASSERT_EQ(result.status, 200) << result.body;
    }
};

TEST_F(PageTest, FilesComeWithTheirTypesAndStayThePagesOwn)
{
    start();
    const struct
    {
        const char* path;
        const char* type;
        const char* content;
    } files[] = {
        {"/", "text/html; charset=utf-8", "<!DOCTYPE html>"},
        {"/page/app.js", "text/javascript; charset=utf-8", "import "},
        {"/page/style.css", "text/css; charset=utf-8", ":root {"},
        {"/page/icon.svg", "image/svg+xml", "<svg "},
    };
    for (const auto& file : files)
    {
        const client::Result result = fetch(file.path);
        EXPECT_EQ(result.status, 200) << file.path;
        EXPECT_THAT(result.headers, Contains(std::string("Content-Type: ") + file.type));
        EXPECT_THAT(result.headers, Contains("Content-Security-Policy: default-src 'self'; img-src 'self' data:"));
        EXPECT_THAT(result.headers, Contains("X-Content-Type-Options: nosniff"));
        EXPECT_THAT(result.body, HasSubstr(file.content));
    }
    EXPECT_EQ(fetch("/page/none.js").status, 404);
    EXPECT_EQ(fetch("/page/index.html").status, 404);
    EXPECT_EQ(fetch("/page/../page/app.js").status, 200); /* put right by the client */
}

TEST_F(PageTest, NothingOfAnotherPlaceIsAskedFor)
{
    start();
    for (const char* path : {"/", "/page/app.js", "/page/style.css"})
    {
        std::string text = fetch(path).body;
        for (const char* given : {"http://127.0.0.1", "http://www.w3.org/2000/svg"})
        {
            for (std::size_t at = text.find(given); at != std::string::npos; at = text.find(given))
            {
                text.erase(at, std::string(given).size());
            }
        }
        EXPECT_EQ(text.find("https://"), std::string::npos) << path;
        EXPECT_EQ(text.find("src=\"http"), std::string::npos) << path;
        EXPECT_EQ(text.find("url("), std::string::npos) << path;
        EXPECT_EQ(text.find("innerHTML"), std::string::npos) << path;
    }
}

TEST_F(PageTest, PicturesComeDecodedAndAreNotLogged)
{
    start();
    postPicture();
    const std::size_t logged = server().exchanges().size();
    const client::Result picture = fetch("/api/pictures/1");
    EXPECT_EQ(picture.status, 200);
    EXPECT_THAT(picture.headers, Contains("Content-Type: image/jpeg"));
    EXPECT_THAT(picture.headers, Contains("X-Content-Type-Options: nosniff"));
    EXPECT_THAT(picture.headers, Contains("Content-Security-Policy: default-src 'none'; sandbox"));
    EXPECT_EQ(picture.body, std::string("\xFF\xD8\xFF\x00picture", 11));
    EXPECT_EQ(fetch("/api/pictures/2").body, R"({"error":"there is no picture 2"})");
    EXPECT_EQ(fetch("/api/pictures/2").status, 404);
    EXPECT_EQ(fetch("/api/pictures/x").status, 404);
    EXPECT_EQ(fetch("/api/pictures/18446744073709551615").status, 404);
    EXPECT_EQ(server().exchanges().size(), logged);
}

TEST_F(PageTest, PicturesAreShownWhateverFaultIsSetOnReading)
{
    config.strict.reading = true;
    start();
    postPicture();
    server().always("*", viewlib::Answer(503));
    EXPECT_EQ(fetch("/VIID/Pictures/1").status, 503);
    EXPECT_EQ(fetch("/api/pictures/1").status, 200);
}
