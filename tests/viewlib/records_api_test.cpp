/* SPDX-License-Identifier: Apache-2.0 */
/* Objects, uploads and exchanges as the control API shows and exports them. */
#include "server_fixture.h"

#include <cstdlib>
#include <filesystem>

using client::Result;
using testing::Contains;
using testing::HasSubstr;

namespace
{

/* A PNG's beginning with its size of 800x600, as base64. */
const std::string png = "iVBORw0KGgoAAAANSUhEUgAAAyAAAAJYCAIAAAA=";

class RecordsApiTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        config.strict.registration = false;
    }
    /* An image "i" with its picture, and two faces and a person that it is the source of. */
    void postScene()
    {
        EXPECT_EQ(post("/VIID/Images",
                       R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":"i"},"Data":")" + png + R"("}]}})")
                      .status,
                  200);
        EXPECT_EQ(
            post("/VIID/Faces",
                 R"({"FaceListObject":{"FaceObject":[{"FaceID":"f1","SourceID":"i","LeftTopX":1,"LeftTopY":2,)"
                 R"("RightBtmX":3,"RightBtmY":4,"SubImageList":{"SubImageInfoObject":[{"Type":"11","Data":"Zm9v"}]}},)"
                 R"({"FaceID":"f2","SourceID":"i"}]}})")
                .status,
            200);
        EXPECT_EQ(
            post("/VIID/Persons", R"({"PersonListObject":{"PersonObject":[{"PersonID":"p","SourceID":"i"}]}})").status,
            200);
    }
    std::string json(const std::string& path)
    {
        const Result result = get(path);
        EXPECT_EQ(result.status, 200) << path << result.body;
        return result.body;
    }
    std::string idsOf(const std::string& query)
    {
        const std::string body = json("/api/objects" + query);
        std::string ids;
        for (int i = 0; at(body, "Objects/" + std::to_string(i)) != "(missing)"; ++i)
        {
            ids += at(body, "Objects/" + std::to_string(i) + "/Id");
        }
        return ids;
    }
    std::string exchangesOf(const std::string& query)
    {
        const std::string body = json("/api/exchanges" + query);
        std::string numbers;
        for (int i = 0; at(body, "Exchanges/" + std::to_string(i)) != "(missing)"; ++i)
        {
            numbers += at(body, "Exchanges/" + std::to_string(i) + "/Exchange") + " ";
        }
        return numbers;
    }
};

TEST_F(RecordsApiTest, ObjectsAreListedAndFiltered)
{
    start();
    postScene();
    client::Call other = call("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f3"}]}})");
    other.headers = {"User-Identify: other", "Content-Type: application/json"};
    EXPECT_EQ(client::perform(other).status, 200);
    EXPECT_EQ(idsOf(""), R"("f3""p""f2""f1""i")");
    EXPECT_EQ(idsOf("?Kind=Face"), R"("f3""f2""f1")");
    EXPECT_EQ(idsOf("?Device=other"), R"("f3")");
    EXPECT_EQ(idsOf("?Id=p"), R"("p")");
    EXPECT_EQ(idsOf("?Limit=2"), R"("f3""p")");
    EXPECT_EQ(idsOf("?Before=3&Limit=1"), R"("f1")");
    EXPECT_EQ(idsOf("?Kind=Face&Device=34020000001190000001&Before=3"), R"("f1")");
    EXPECT_EQ(at(json("/api/objects?Kind=Face&Limit=1"), "Total"), "3");
    EXPECT_EQ(at(json("/api/objects?Kind=None"), "Total"), "0");
    const std::string first = json("/api/objects?Id=f1");
    EXPECT_EQ(at(first, "Objects/0/Object"), "2");
    EXPECT_EQ(at(first, "Objects/0/Kind"), R"("Face")");
    EXPECT_EQ(at(first, "Objects/0/Device"), R"("34020000001190000001")");
    EXPECT_EQ(at(first, "Objects/0/Path"), R"("/VIID/Faces")");
    EXPECT_EQ(at(first, "Objects/0/Pictures"),
              R"([{"Picture":2,"Type":"11","Width":0,"Height":0,"Url":"/VIID/Pictures/2"}])");
    EXPECT_EQ(at(json("/api/objects?Id=i"), "Objects/0/Pictures"),
              R"([{"Picture":1,"Type":"","Width":800,"Height":600,"Url":"/VIID/Pictures/1"}])");
    EXPECT_EQ(get("/api/objects?Limit=1001").status, 400);
    EXPECT_EQ(get("/api/objects?Before=x").status, 400);
}

TEST_F(RecordsApiTest, ObjectsWithNotesAreFound)
{
    config.strict.documents = true;
    start();
    const std::string face =
        R"({"FaceListObject":{"FaceObject":[{"FaceID":"340200000011900000010220240229235959000010600001",)"
        R"("InfoKind":@,"SourceID":"34020000001190000001022024022923595900001",)"
        R"("DeviceID":"34020000001190000001","SubImageList":{"SubImageInfoObject":[{"Type":"14",)"
        R"("ImageID":"34020000001190000001022024022923595900001","Data":"Zm9v"}]}}]}})";
    for (const char* kind : {"1", "\"1\""})
    {
        std::string text = face;
        EXPECT_EQ(post("/VIID/Faces", text.replace(text.find('@'), 1, kind)).status, 200);
    }
    EXPECT_EQ(at(json("/api/objects"), "Total"), "2");
    const std::string noted = json("/api/objects?Notes=1");
    EXPECT_EQ(at(noted, "Total"), "1");
    EXPECT_EQ(at(noted, "Objects/0/Object"), "2");
    EXPECT_EQ(at(noted, "Objects/0/Notes"), R"(["text-number: \"InfoKind\" is the text \"1\", not a number"])");
}

TEST_F(RecordsApiTest, AnObjectIsShownWithItsSceneAndSiblings)
{
    start();
    postScene();
    std::string body = json("/api/objects/2");
    EXPECT_EQ(at(body, "Members/FaceID"), R"("f1")");
    EXPECT_EQ(at(body, "Members/SubImageList/SubImageInfoObject"), R"([{"Type":"11"}])");
    EXPECT_EQ(at(body, "Post"), "2");
    EXPECT_EQ(at(body, "Exchange"), "2");
    EXPECT_EQ(at(body, "Box"), R"({"LeftTopX":1,"LeftTopY":2,"RightBtmX":3,"RightBtmY":4})");
    EXPECT_EQ(at(body, "Scene"), R"({"Picture":1,"Url":"/VIID/Pictures/1","Width":800,"Height":600})");
    EXPECT_EQ(at(body, "Siblings"), R"([{"Object":3,"Kind":"Face","Id":"f2","Box":null},)"
                                    R"({"Object":4,"Kind":"Person","Id":"p","Box":null}])");
    body = json("/api/objects/1"); /* the image shows all that lies in it */
    EXPECT_EQ(at(body, "Box"), "null");
    EXPECT_EQ(at(body, "Scene/Picture"), "1");
    EXPECT_EQ(at(body, "Siblings/0/Box/RightBtmX"), "3");
    EXPECT_EQ(at(body, "Siblings/2/Id"), R"("p")");
    EXPECT_EQ(get("/api/objects/5").status, 404);
    EXPECT_EQ(at(get("/api/objects/5").body, "error"), R"("there is no object 5")");
    EXPECT_EQ(get("/api/objects/x").status, 404);
    EXPECT_EQ(get("/api/objects/99999999999999999999").status, 404);
}

TEST_F(RecordsApiTest, WithoutAnImageTheOwnSceneIsTaken)
{
    start();
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f","SourceID":"none","SubImageList":)"
                                  R"({"SubImageInfoObject":[{"Type":"11","Data":"Zm9v"},{"Type":"14","Data":")" +
                                      png + R"("}]}}]}})")
                  .status,
              200);
    const std::string body = json("/api/objects/1");
    EXPECT_EQ(at(body, "Scene"), R"({"Picture":2,"Url":"/VIID/Pictures/2","Width":800,"Height":600})");
    EXPECT_EQ(at(body, "Siblings"), "[]");
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"g"}]}})").status, 200);
    EXPECT_EQ(at(json("/api/objects/2"), "Scene"), "null");
}

TEST_F(RecordsApiTest, DataPostedLaterIsTheScene)
{
    start();
    EXPECT_EQ(post("/VIID/Images", R"({"ImageInfoObject":{"ImageID":"i"}})").status, 200);
    EXPECT_EQ(post("/VIID/Images/i/Data", png).status, 200);
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f","SourceID":"i"}]}})").status, 200);
    EXPECT_EQ(at(json("/api/objects?Kind=Face"), "Objects/0/Object"), "3");
    EXPECT_EQ(at(json("/api/objects/3"), "Scene"),
              R"({"Picture":1,"Url":"/VIID/Pictures/1","Width":800,"Height":600})");
}

TEST_F(RecordsApiTest, UploadsAreListed)
{
    start();
    EXPECT_EQ(at(json("/api/uploads"), "Uploads"), "[]");
    EXPECT_EQ(post("/VIID/Upload/a.ps", "0123456789").status, 200);
    const std::string body = json("/api/uploads");
    EXPECT_EQ(at(body, "Uploads/0/Name"), R"("a.ps")");
    EXPECT_EQ(at(body, "Uploads/0/Length"), "10");
    EXPECT_EQ(at(body, "Uploads/0/Hash"), R"("781e5e245d69b566979b86e28d23f2c7")"); /* as md5sum tells it */
    EXPECT_EQ(at(body, "Uploads/0/Url"), R"("/VIID/Upload/a.ps")");
    EXPECT_GT(std::stod(at(body, "Uploads/0/Changed")), 1.7e12);
}

TEST_F(RecordsApiTest, ExchangesAreFiltered)
{
    start();
    EXPECT_EQ(get("/VIID/Faces").status, 200);                                                                /* 1 */
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"needle"}]}})").status, 200); /* 2 */
    EXPECT_EQ(post("/VIID/Nothing", "{}").status, 404);                                                       /* 3 */
    client::Call other = call("/VIID/Faces?a=b", "hay needle");                                               /* 4 */
    other.headers = {"User-Identify: other"};
    EXPECT_EQ(client::perform(other).status, 400);
    EXPECT_EQ(exchangesOf(""), "4 3 2 1 ");
    EXPECT_EQ(exchangesOf("?Path=Face"), "4 2 1 ");
    EXPECT_EQ(exchangesOf("?Path=/VIID/N*"), "3 ");
    EXPECT_EQ(exchangesOf("?Path=VIID/N*"), "");
    EXPECT_EQ(exchangesOf("?Device=other"), "4 ");
    EXPECT_EQ(exchangesOf("?Method=GET"), "1 ");
    EXPECT_EQ(exchangesOf("?Status=404"), "3 ");
    EXPECT_EQ(exchangesOf("?Status=4xx"), "4 3 ");
    EXPECT_EQ(exchangesOf("?Status=4"), "4 3 ");
    EXPECT_EQ(exchangesOf("?Text=needle"), "4 2 ");
    EXPECT_EQ(exchangesOf("?Text=a%3Db"), "4 ");
    EXPECT_EQ(exchangesOf("?Text=not%20JSON"), "4 ");
    EXPECT_EQ(exchangesOf("?Limit=2"), "4 3 ");
    EXPECT_EQ(exchangesOf("?Before=3&Limit=1"), "2 ");
    EXPECT_EQ(at(json("/api/exchanges?Path=Face&Limit=1"), "Total"), "3");
    for (const char* query : {"Status=4x", "Status=40", "Status=abc", "Limit=0"})
    {
        EXPECT_EQ(get(std::string("/api/exchanges?") + query).status, 400) << query;
    }
}

TEST_F(RecordsApiTest, AnExchangeIsShownWhole)
{
    config.storedBody = 10;
    start();
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[]}})").status, 200);
    EXPECT_EQ(post("/VIID/Faces", "123456789\xE4\xB8\xAD").status, 400);
    EXPECT_EQ(post("/VIID/Faces", "\xFF\xFE").status, 400);
    std::string body = json("/api/exchanges/1");
    EXPECT_EQ(at(body, "Method"), R"("POST")");
    EXPECT_EQ(at(body, "Target"), R"("/VIID/Faces")");
    EXPECT_EQ(at(body, "Status"), "200");
    EXPECT_EQ(at(body, "StatusCode"), "0");
    EXPECT_EQ(at(body, "Reason"), R"("")");
    EXPECT_EQ(at(body, "Complete"), "true");
    EXPECT_EQ(at(body, "Fault"), "null");
    EXPECT_EQ(at(body, "RequestBytes"), "36");
    EXPECT_EQ(at(body, "RequestBody"), R"("{\"FaceList")"); /* of the document that is stored whole */
    EXPECT_EQ(at(body, "RequestBodyCut"), "true");
    EXPECT_EQ(at(body, "AnswerBody"), R"("{\"Response")");
    EXPECT_EQ(at(body, "AnswerBodyCut"), "true");
    EXPECT_THAT(at(body, "RequestHeaders"), HasSubstr(R"(["User-Identify","34020000001190000001"])"));
    EXPECT_THAT(at(body, "AnswerHeaders"), HasSubstr(R"(["Content-Type","application/VIID+JSON;charset=UTF-8"])"));
    for (const char* time : {"Blocked", "Send", "Wait", "Receive"})
    {
        EXPECT_GE(std::stod(at(body, std::string("Timing/") + time)), 0.0) << time;
    }
    body = json("/api/exchanges/2");
    EXPECT_EQ(at(body, "RequestBody"), R"("123456789")"); /* not within a character */
    EXPECT_EQ(at(body, "StatusCode"), "7");
    EXPECT_EQ(at(body, "Reason"), R"("the body is not JSON")");
    body = json("/api/exchanges/3");
    EXPECT_EQ(at(body, "RequestBody"), "null");
    EXPECT_EQ(at(body, "RequestBodyBase64"), R"("//4=")");
    EXPECT_EQ(at(body, "RequestBodyCut"), "false");
    EXPECT_EQ(get("/api/exchanges/4").status, 404);
}

TEST_F(RecordsApiTest, ExchangesOutliveTheServerAndTheirNumbersGoOn)
{
    std::string directory = testing::TempDir() + "viewlib-XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    config.storage = directory;
    start();
    postFace();
    postFace();
    close();
    start();
    EXPECT_EQ(exchangesOf(""), "2 1 ");
    postFace();
    EXPECT_EQ(exchangesOf(""), "3 2 1 ");
    EXPECT_EQ(server().exchanges().at(0).number, 3U);
    EXPECT_EQ(at(json("/api/exchanges/2"), "RequestBody"), at(json("/api/exchanges/3"), "RequestBody"));
    close();
    std::filesystem::remove_all(directory);
}

TEST_F(RecordsApiTest, OnlyTheNewestExchangesAreKept)
{
    config.storedExchanges = 2;
    start();
    for (int i = 0; i < 4; ++i)
    {
        postFace();
    }
    EXPECT_EQ(exchangesOf(""), "4 3 ");
    close();
    config.storedExchanges = 0;
    start();
    postFace();
    EXPECT_EQ(exchangesOf(""), "");
    EXPECT_EQ(server().exchanges().size(), 1U);
}

TEST_F(RecordsApiTest, TheHarIsOneOfVersion12)
{
    start();
    EXPECT_EQ(get("/VIID/Faces?RecordStartNo=1&PageRecordNum=2").status, 200);
    EXPECT_EQ(post("/VIID/Images/i/Data", png).status, 200);
    EXPECT_EQ(get("/VIID/Pictures/1").status, 200);
    server().script("/VIID/Faces", viewlib::Answer::redirect(302, "http://127.0.0.1:1/"));
    EXPECT_EQ(postFace().status, 302);
    Result result = get("/api/exchanges.har");
    EXPECT_EQ(result.status, 200);
    EXPECT_THAT(result.headers, Contains("Content-Type: application/json"));
    EXPECT_THAT(result.headers, Contains("Content-Disposition: attachment; filename=\"exchanges.har\""));
    const std::string& har = result.body;
    EXPECT_EQ(at(har, "log/version"), R"("1.2")");
    EXPECT_EQ(at(har, "log/creator/name"), R"("viewlibd")");
    EXPECT_NE(at(har, "log/creator/version"), "(missing)");
    EXPECT_EQ(at(har, "log/entries/4"), "(missing)");
    for (int i = 0; i < 4; ++i) /* what the format demands of each entry */
    {
        const std::string entry = "log/entries/" + std::to_string(i) + "/";
        EXPECT_THAT(at(har, entry + "startedDateTime"), testing::MatchesRegex("\"[0-9-]{10}T[0-9:]{8}\\.[0-9]{3}Z\""));
        const double sum = std::stod(at(har, entry + "timings/send")) + std::stod(at(har, entry + "timings/wait")) +
                           std::stod(at(har, entry + "timings/receive"));
        EXPECT_NEAR(std::stod(at(har, entry + "time")), sum, 0.001);
        EXPECT_EQ(at(har, entry + "cache"), "{}");
        EXPECT_EQ(at(har, entry + "request/httpVersion"), R"("HTTP/1.1")");
        EXPECT_EQ(at(har, entry + "request/cookies"), "[]");
        EXPECT_EQ(at(har, entry + "request/headersSize"), "-1");
        EXPECT_NE(at(har, entry + "request/headers/0/name"), "(missing)");
        EXPECT_EQ(at(har, entry + "response/cookies"), "[]");
        EXPECT_EQ(at(har, entry + "response/headersSize"), "-1");
        for (const char* key : {"request/bodySize", "response/statusText", "response/httpVersion", "response/headers",
                                "response/content/size", "response/content/mimeType", "response/bodySize"})
        {
            EXPECT_NE(at(har, entry + key), "(missing)") << key;
        }
    }
    EXPECT_EQ(at(har, "log/entries/0/request/method"), R"("GET")");
    EXPECT_EQ(at(har, "log/entries/0/request/url"),
              '"' + server().url("/VIID/Faces?RecordStartNo=1&PageRecordNum=2") + '"');
    EXPECT_EQ(at(har, "log/entries/0/request/queryString"),
              R"([{"name":"RecordStartNo","value":"1"},{"name":"PageRecordNum","value":"2"}])");
    EXPECT_EQ(at(har, "log/entries/0/request/postData"), "(missing)");
    EXPECT_EQ(at(har, "log/entries/1/request/postData/text"), '"' + png + '"');
    EXPECT_EQ(at(har, "log/entries/1/request/postData/mimeType"), R"("application/VIID+JSON;charset=UTF-8")");
    EXPECT_EQ(at(har, "log/entries/2/response/content/encoding"), R"("base64")");
    EXPECT_EQ(at(har, "log/entries/2/response/content/text"), '"' + png + '"');
    EXPECT_EQ(at(har, "log/entries/3/response/status"), "302");
    EXPECT_EQ(at(har, "log/entries/3/response/redirectURL"), R"("http://127.0.0.1:1/")");
    result = get("/api/exchanges.har?Method=GET");
    EXPECT_EQ(at(result.body, "log/entries/1/request/method"), R"("GET")");
    EXPECT_EQ(at(result.body, "log/entries/2"), "(missing)");
}

TEST_F(RecordsApiTest, LinesAreOneOfJsonForEachExchange)
{
    start();
    EXPECT_EQ(get("/api/exchanges.jsonl").body, "");
    EXPECT_EQ(at(get("/api/exchanges.har").body, "log/entries"), "[]");
    postFace();
    keepAlive();
    const Result result = get("/api/exchanges.jsonl");
    EXPECT_THAT(result.headers, Contains("Content-Type: application/x-ndjson"));
    const std::size_t end = result.body.find('\n');
    ASSERT_NE(end, std::string::npos);
    EXPECT_EQ(at(result.body.substr(0, end), "Exchange"), "1");
    EXPECT_THAT(at(result.body.substr(0, end), "RequestBody"), HasSubstr("face-1"));
    EXPECT_EQ(at(result.body.substr(end + 1), "Exchange"), "2");
    EXPECT_EQ(result.body.find('\n', end + 1), result.body.size() - 1);
    EXPECT_EQ(at(get("/api/exchanges.jsonl?Path=Keepalive").body, "Exchange"), "2");
}

TEST_F(RecordsApiTest, AnExportIsBounded)
{
    config.maxExchanges = 0;
    start();
    const std::string large = std::string(std::size_t(1) << 20, 'x');
    for (int i = 0; i < 66; ++i)
    {
        EXPECT_EQ(post("/VIID/Faces", large).status, 400);
    }
    const std::string lines = get("/api/exchanges.jsonl").body;
    EXPECT_LT(lines.size(), std::size_t(64) << 20);
    EXPECT_GT(lines.size(), std::size_t(60) << 20);
    EXPECT_EQ(at(lines.substr(lines.rfind('\n', lines.size() - 2) + 1), "Exchange"), "66"); /* the newest */
}

} // namespace
