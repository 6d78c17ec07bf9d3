/* SPDX-License-Identifier: Apache-2.0 */
/* What comes from clients that are broken or mean no good: a clear answer, no harm, and no file outside. */
#include "raw_client.h"
#include "server_fixture.h"

#include <stdlib.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

/* The server's data lies in a directory whose neighbourhood nothing may touch. */
class HostileTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        m_parent = testing::TempDir() + "viewlib-hostile-XXXXXX";
        ASSERT_NE(mkdtemp(m_parent.data()), nullptr);
        std::ofstream(m_parent + "/neighbour.txt") << "not yours";
        config.storage = m_parent + "/data";
    }
    void TearDown() override
    {
        server().registerDevice(device);
        EXPECT_TRUE(stillAnswers());
        EXPECT_THAT(outside(), ElementsAre("data", "neighbour.txt"));
        EXPECT_THAT(strange(), testing::IsEmpty());
        std::ifstream file(m_parent + "/neighbour.txt");
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "not yours");
        server().stop();
        std::filesystem::remove_all(m_parent);
    }

    void startRegistered()
    {
        start();
        server().registerDevice(device);
    }

    /* A request in a connection of its own. The head goes without "Host" and the empty line. */
    std::string answerTo(const std::string& head, const std::string& body = "")
    {
        return raw::exchange(server().port(), head + "Host: 127.0.0.1\r\nConnection: close\r\n\r\n" + body);
    }
    int statusOf(const std::string& head, const std::string& body = "")
    {
        return raw::status(answerTo(head, body));
    }
    std::string posting(const std::string& path, const std::string& headers = "") const
    {
        return "POST " + path + " HTTP/1.1\r\nUser-Identify: " + device +
               "\r\nContent-Type: application/VIID+JSON\r\n" + headers;
    }
    int postRaw(const std::string& path, const std::string& body)
    {
        return statusOf(posting(path, "Content-Length: " + std::to_string(body.size()) + "\r\n"), body);
    }

  private:
    /* Connections that have just ended may count for a moment. */
    bool stillAnswers()
    {
        const auto end = std::chrono::steady_clock::now() + 5s;
        while (statusOf("GET /VIID/System/Time HTTP/1.1\r\nUser-Identify: 34020000001190000001\r\n") != 200)
        {
            if (std::chrono::steady_clock::now() > end)
            {
                return false;
            }
            std::this_thread::sleep_for(20ms);
        }
        return true;
    }
    std::vector<std::string> outside() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_parent))
        {
            names.insert(entry.path().filename());
        }
        return {names.begin(), names.end()};
    }
    /* Files inside whose names the server has not chosen itself, or that are no allowed name of an upload. */
    std::vector<std::string> strange() const
    {
        const auto known = testing::Matches(
            testing::MatchesRegex("(viewlib|exchanges)\\.db(-wal|-shm)?|pictures(/[0-9]+\\.[a-z0-9]+)?|"
                                  "uploads(/[A-Za-z0-9_-][A-Za-z0-9._-]*)?"));
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_parent + "/data"))
        {
            const std::string name = entry.path().lexically_relative(m_parent + "/data");
            if (!known(name) || std::filesystem::is_symlink(entry.symlink_status()))
            {
                names.push_back(name);
            }
        }
        return names;
    }

    std::string m_parent;
};

std::string repeated(const std::string& text, std::size_t count)
{
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
    {
        result += text;
    }
    return result;
}

TEST_F(HostileTest, MalformedJsonIsRefused)
{
    startRegistered();
    const std::string face = R"({"FaceListObject":{"FaceObject":[{"FaceID":"f"}]}})";
    const std::vector<std::string> malformed = {
        "",
        " ",
        "{",
        "}",
        "[",
        "]",
        "\"",
        "{\"FaceListObject\"",
        "{\"FaceListObject\":",
        "{\"FaceListObject\":}",
        "{\"FaceListObject\" {}}",
        "{FaceListObject:{}}",
        "{'FaceListObject':{}}",
        "{\"FaceListObject\":{},}",
        "{\"FaceListObject\":{}",
        "{\"FaceListObject\":{}}}",
        face + face,
        face + "garbage",
        face.substr(0, face.size() - 1),
        "// comment\n" + face,
        "{\"FaceListObject\":NaN}",
        "{\"FaceListObject\":tru}",
        "{\"FaceListObject\":\"\\u12\"}",
        "{\"FaceListObject\":\"\\ud800\"}",
        "{\"FaceListObject\":\"\\q\"}",
        "{\"FaceListObject\":\"open}",
        std::string("\0", 1),
        std::string("\0{}", 3),
        std::string("\xFF\xFE{\0}\0", 6),
        repeated("[", 100000),
        repeated("{\"a\":", 100000),
        repeated("[", 100000) + repeated("]", 100000),
        "null",
        "true",
        "7",
        "1e999999",
        "\"FaceListObject\"",
        "[]",
        "{}",
        "{\"FaceListObject\":null}",
        "{\"FaceListObject\":[]}",
        "{\"FaceListObject\":7}",
        "{\"facelistobject\":{}}",
        "{\"ImageListObject\":{}}",
    };
    for (const std::string& body : malformed)
    {
        const std::string answer =
            answerTo(posting("/VIID/Faces", "Content-Length: " + std::to_string(body.size()) + "\r\n"), body);
        EXPECT_EQ(raw::status(answer), 400) << body.substr(0, 100);
        EXPECT_THAT(answer, AnyOf(HasSubstr("\"StatusCode\":7"), HasSubstr("\"StatusCode\":8"))) << body.substr(0, 100);
        EXPECT_EQ(postRaw("/VIID/System/Keepalive", body), 400) << body.substr(0, 100);
    }
    EXPECT_EQ(server().stored().posts, 0U);
}

TEST_F(HostileTest, MembersOfOddTypesDoNoHarm)
{
    startRegistered();
    for (const char* value : {"null", "true", "7", "-1e400", "\"\"", "\"\\u0000\"", "[]", "{}", "[[[]]]", "[null]",
                              "[{\"FaceID\":7}]", "[{\"FaceID\":{}}]", "[7,\"a\",null,[],{}]"})
    {
        for (
            const char* form :
            {R"({"FaceListObject":{"FaceObject":@}})", R"({"FaceListObject":{"FaceObject":[@]}})",
             R"({"FaceListObject":{"FaceObject":[{"FaceID":@}]}})",
             R"({"FaceListObject":{"FaceObject":[{"FaceID":"f","SubImageList":@}]}})",
             R"({"FaceListObject":{"FaceObject":[{"FaceID":"f","SubImageList":{"SubImageInfoObject":@}}]}})",
             R"({"FaceListObject":{"FaceObject":[{"FaceID":"f","SubImageList":{"SubImageInfoObject":[{"Data":@}]}}]}})",
             R"({"KeepaliveObject":{"DeviceID":@}})", R"({"RegisterObject":@})"})
        {
            std::string body = form;
            body.replace(body.find('@'), 1, value);
            EXPECT_THAT(postRaw("/VIID/Faces", body), AnyOf(200, 400)) << body;
            EXPECT_THAT(postRaw("/VIID/System/Keepalive", body), AnyOf(200, 400)) << body;
        }
    }
}

TEST_F(HostileTest, AHundredMegabytesTooManyAreRefused)
{
    startRegistered();
    const std::size_t limit = config.maxBody;
    const std::string block(std::size_t(1) << 20, ' ');
    raw::Client client(server().port());
    client.send(posting("/VIID/Faces",
                        "Connection: close\r\nHost: a\r\nContent-Length: " + std::to_string(limit + 1) + "\r\n\r\n"));
    for (std::size_t sent = 0; sent < limit; sent += block.size())
    {
        client.send(block);
    }
    client.send(" ");
    const std::string answer = client.readAll();
    EXPECT_EQ(raw::status(answer), 413);
    EXPECT_THAT(answer, HasSubstr("the body is larger than 104857600 bytes"));
    EXPECT_EQ(server().exchangesOf("/VIID/Faces").at(0).body, "");
}

TEST_F(HostileTest, AChunkedBodyHasTheSameLimit)
{
    config.maxBody = 10;
    startRegistered();
    const std::string head = posting("/VIID/Faces", "Transfer-Encoding: chunked\r\n");
    EXPECT_EQ(statusOf(head, "b\r\n0123456789a\r\n0\r\n\r\n"), 413);
    EXPECT_EQ(statusOf(head, "6\r\n012345\r\n6\r\n012345\r\n0\r\n\r\n"), 413);
    EXPECT_EQ(statusOf(head, "a\r\n0123456789\r\n0\r\n\r\n"), 400);
}

TEST_F(HostileTest, LengthsThatAreWrong)
{
    startRegistered();
    const auto answer = [this](const std::string& headers, const std::string& body) {
        return statusOf(posting("/VIID/Faces", headers), body);
    };
    for (const char* length : {"-1", "abc", "0x10", "1 2", "99999999999999999999999999", "18446744073709551616", "+"})
    {
        EXPECT_THAT(answer(std::string("Content-Length: ") + length + "\r\n", "{}"), AnyOf(400, 413)) << length;
    }
    for (const char* chunks : {"zz\r\n{}\r\n0\r\n\r\n", "-2\r\n{}\r\n0\r\n\r\n", "fffffffffffffffff\r\n{}\r\n0\r\n\r\n",
                               "2\r\n{}garbage\r\n0\r\n\r\n"})
    {
        /* 0: closed without a word, which a client takes for a failure as well. */
        EXPECT_THAT(answer("Transfer-Encoding: chunked\r\n", chunks), AnyOf(0, 400, 413)) << chunks;
    }
    /* Fewer bytes than announced, and then the end: nobody is there to be answered. */
    EXPECT_EQ(answer("Content-Length: 100\r\n", "{}"), 0);
    EXPECT_EQ(server().stored().posts, 0U);

    /* More bytes than announced: those are the next request, and make no sense as one. */
    raw::Client client(server().port());
    client.send(posting("/VIID/Faces", "Host: a\r\nContent-Length: 2\r\n\r\n{}garbage\r\n\r\n"));
    client.endSending();
    EXPECT_EQ(raw::status(client.readAll()), 400);
}

TEST_F(HostileTest, UploadsOfTrickyNamesAreRefused)
{
    start();
    for (const std::string& name : {std::string("../x"),
                                    std::string("..%2Fx"),
                                    std::string("%2e%2e/x"),
                                    std::string("%2e%2e%2fx"),
                                    std::string("a/../../x"),
                                    std::string("..\\x"),
                                    std::string("..%5Cx"),
                                    std::string("a%00b"),
                                    std::string("%00"),
                                    std::string(".hidden"),
                                    std::string("."),
                                    std::string(".."),
                                    std::string("%"),
                                    std::string("%zz"),
                                    std::string("a%20b"),
                                    std::string("/etc/passwd"),
                                    std::string("\xE5\x90\x8D"),
                                    std::string(129, 'a'),
                                    std::string(10000, 'a'),
                                    repeated("../", 50) + "tmp/x",
                                    repeated("%2e%2e%2f", 50) + "x",
                                    std::string("....//x"),
                                    std::string("~root"),
                                    std::string("C:x")})
    {
        for (const char* method : {"POST", "GET", "PUT", "DELETE"})
        {
            const int status =
                statusOf(std::string(method) + " /VIID/Upload/" + name + " HTTP/1.1\r\nContent-Length: 4\r\n", "evil");
            EXPECT_GE(status, 400) << method << ' ' << name.substr(0, 80);
            EXPECT_LT(status, 500) << method << ' ' << name.substr(0, 80);
        }
    }
    EXPECT_TRUE(server().uploads().empty());
}

TEST_F(HostileTest, IdentifiersAreNoPaths)
{
    startRegistered();
    for (const std::string& id : {std::string("../../x"), std::string("/etc/passwd"), std::string("..\\\\x"),
                                  std::string("a\\u0000b"), std::string("%2e%2e%2fx"), std::string(100000, 'a'),
                                  std::string("'; DROP TABLE objects; --"), std::string("<script>alert(1)</script>")})
    {
        EXPECT_THAT(postRaw("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":")" + id +
                                               R"(","SubImageList":{"SubImageInfoObject":[{"ImageID":")" + id +
                                               R"(","Type":")" + id + R"(","FileFormat":")" + id +
                                               R"(","Data":"Zm9v"}]}}]}})"),
                    AnyOf(200, 400))
            << id.substr(0, 80);
    }
    for (const char* path :
         {"/VIID/Files/../../x/Data", "/VIID/Files/..%2F..%2Fx/Data", "/VIID/Images/%00/Data", "/VIID/Images//Data"})
    {
        EXPECT_THAT(postRaw(path, "Zm9v"), AnyOf(200, 400, 404, 405)) << path;
    }
}

TEST_F(HostileTest, NoFileCanBeReadFromOutside)
{
    startRegistered();
    for (const char* path :
         {"/../neighbour.txt", "/VIID/Pictures/../../neighbour.txt", "/VIID/Pictures/..%2f..%2fneighbour.txt",
          "/VIID/Upload/../viewlib.db", "/VIID/Upload/..%2Fviewlib.db", "/VIID/Upload/%2e%2e/%2e%2e/neighbour.txt",
          "/page/../viewlib.db", "/page/..%2fviewlib.db", "/page//etc/passwd", "/api/../neighbour.txt", "//etc/passwd",
          "/VIID/Pictures/-1", "/VIID/Pictures/99999999999999999999", "/VIID/Pictures/1;x"})
    {
        const std::string answer =
            answerTo(std::string("GET ") + path + " HTTP/1.1\r\nUser-Identify: " + device + "\r\n");
        EXPECT_THAT(raw::status(answer), AnyOf(400, 404, 405)) << path;
        EXPECT_EQ(answer.find("not yours"), std::string::npos) << path;
        EXPECT_EQ(answer.find("SQLite format"), std::string::npos) << path;
        EXPECT_EQ(answer.find("root:"), std::string::npos) << path;
    }
}

TEST_F(HostileTest, FloodsOfHeadersAreRefused)
{
    startRegistered();
    const std::string line = "GET /VIID/Faces HTTP/1.1\r\n";
    const auto refused = AnyOf(0, 400, 413, 414, 431);
    EXPECT_THAT(statusOf(line + repeated("X-Flood: 0123456789\r\n", 50000)), refused);
    EXPECT_THAT(statusOf(line + "X-Flood: " + std::string(std::size_t(1) << 20, 'a') + "\r\n"), refused);
    EXPECT_THAT(statusOf(line + std::string(std::size_t(1) << 20, 'a') + ": x\r\n"), refused);
    EXPECT_THAT(statusOf("GET /VIID/Faces?" + std::string(std::size_t(1) << 20, 'a') + " HTTP/1.1\r\n"), refused);
    EXPECT_THAT(statusOf(std::string(std::size_t(1) << 20, 'G') + " / HTTP/1.1\r\n"), refused);
    EXPECT_THAT(statusOf("GET  \r\n"), AnyOf(0, 400));
    EXPECT_THAT(statusOf("\x16\x03\x01\x02\x01\x01\r\n"), AnyOf(0, 400)); /* TLS to a port of HTTP */
}

/* The HTTP library ends the target there: what is left is a name like any other. */
TEST_F(HostileTest, ANulByteEndsTheName)
{
    start();
    EXPECT_EQ(statusOf(std::string("POST /VIID/Upload/nul\0/../../x HTTP/1.1\r\nContent-Length: 4\r\n", 60), "evil"),
              200);
    ASSERT_EQ(server().uploads().size(), 1U);
    EXPECT_EQ(server().uploads().at(0).name, "nul");
}

/* A header that comes a byte at a time holds its connection for the header timeout and no longer. */
TEST_F(HostileTest, SlowHeadersAreCutOff)
{
    config.headerTimeout = 1s;
    config.maxConnections = 20;
    startRegistered();
    std::vector<std::unique_ptr<raw::Client>> slow;
    for (int i = 0; i < 30; ++i)
    {
        slow.push_back(std::make_unique<raw::Client>(server().port()));
    }
    const std::string header = "GET /VIID/Faces HTTP/1.1\r\nHost: 127.0.0.1\r\nX-Slow: " + std::string(400, 'a');
    std::size_t open = slow.size();
    std::size_t sent = 0;
    const auto begin = std::chrono::steady_clock::now();
    for (; open != 0 && sent < header.size(); ++sent)
    {
        open = 0;
        for (const auto& client : slow)
        {
            open += client->trySend(header.substr(sent, 1)) ? 1U : 0U;
        }
        std::this_thread::sleep_for(50ms);
    }
    EXPECT_EQ(open, 0U) << "after " << sent << " bytes";
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 900ms) << "those within the limit had their time";
    EXPECT_TRUE(server().exchanges().empty());
}

/* The same behind a first request that was in order. */
TEST_F(HostileTest, SlowHeadersOfALaterRequestAreCutOff)
{
    config.idleTimeout = 1s;
    startRegistered();
    raw::Client client(server().port());
    client.send("GET /VIID/Faces HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
    EXPECT_EQ(raw::status(client.readSome()), 200);
    std::size_t sent = 0;
    while (sent < 400 && client.trySend("G"))
    {
        ++sent;
        std::this_thread::sleep_for(50ms);
    }
    EXPECT_LT(sent, 400U);
}

TEST_F(HostileTest, ABodyThatDoesNotComeIsCutOff)
{
    config.idleTimeout = 1s;
    startRegistered();
    raw::Client client(server().port());
    client.send(posting("/VIID/Faces", "Host: a\r\nContent-Length: 100\r\n\r\n{\"Face"));
    EXPECT_EQ(client.readAll(), "");
    ASSERT_TRUE(server().waitFor("/VIID/Faces", 1));
    EXPECT_FALSE(server().exchangesOf("/VIID/Faces").at(0).complete);
}

/* A body that keeps coming may take as long as it takes; so may an answer that is told to be late. */
TEST_F(HostileTest, SlowButSteadyClientsAreServed)
{
    config.headerTimeout = 1500ms;
    config.idleTimeout = 1500ms;
    startRegistered();
    server().script("/VIID/Faces", viewlib::Answer::late(2s));
    const std::string body = R"({"FaceListObject":{}})";
    raw::Client client(server().port());
    client.send(posting("/VIID/Faces",
                        "Host: a\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n"));
    for (const char c : body)
    {
        client.send(std::string(1, c));
        std::this_thread::sleep_for(100ms);
    }
    EXPECT_EQ(raw::status(client.readAll()), 200);
}

TEST_F(HostileTest, ConnectionsAreBounded)
{
    config.maxConnections = 10;
    config.headerTimeout = 2s;
    startRegistered();
    std::vector<std::unique_ptr<raw::Client>> idle;
    for (int i = 0; i < 40; ++i)
    {
        idle.push_back(std::make_unique<raw::Client>(server().port()));
    }
    /* Those beyond the limit see the end at once or, where the kernel holds them, once others have gone. */
    for (const auto& client : idle)
    {
        EXPECT_EQ(client->readAll(), "");
    }
}

/* Makes requests that are nearly right. The same seed makes the same ones. */
class Mutator
{
  public:
    explicit Mutator(std::uint32_t seed) : m_random(seed)
    {
    }
    std::string next()
    {
        std::string text = pick(seeds());
        for (std::size_t i = 1 + below(4); i != 0; --i)
        {
            mutate(text);
        }
        return text;
    }

  private:
    std::size_t below(std::size_t bound)
    {
        return m_random() % bound;
    }
    std::string pick(const std::vector<std::string>& texts)
    {
        return texts[below(texts.size())];
    }
    void mutate(std::string& text)
    {
        if (text.empty())
        {
            return;
        }
        const std::size_t at = below(text.size());
        const std::size_t length = 1 + below(std::min<std::size_t>(16, text.size() - at));
        switch (below(8))
        {
        case 0:
            text[at] = static_cast<char>(below(256));
            break;
        case 1:
            text[at] = static_cast<char>(text[at] ^ (1 << below(8)));
            break;
        case 2:
            text.erase(at, length);
            break;
        case 3:
            text.insert(at, text.substr(at, length));
            break;
        case 4:
            text.insert(at, pick(tokens()));
            break;
        case 5:
            text.replace(at, length, pick(tokens()));
            break;
        case 6:
            text.insert(at, text.substr(below(text.size()), 200));
            break;
        default:
            text.resize(text.size() - below(std::min<std::size_t>(text.size(), 40)));
            break;
        }
    }
    static const std::vector<std::string>& tokens()
    {
        static const std::vector<std::string> texts = {"\r\n",
                                                       "\r\n\r\n",
                                                       ":",
                                                       "/",
                                                       "../",
                                                       "%2e%2e%2f",
                                                       "%00",
                                                       std::string(1, '\0'),
                                                       "\xFF",
                                                       "{",
                                                       "}",
                                                       "[",
                                                       "]",
                                                       "\"",
                                                       "\\u0000",
                                                       "null",
                                                       "-1",
                                                       "4294967296",
                                                       "18446744073709551615",
                                                       "0",
                                                       "chunked",
                                                       "Transfer-Encoding: chunked\r\n",
                                                       "Content-Length: 5\r\n",
                                                       "Expect: 100-continue\r\n",
                                                       "Authorization: Digest a=\"\r\n",
                                                       ",",
                                                       "=",
                                                       ";",
                                                       "?",
                                                       "position=",
                                                       "&",
                                                       "HTTP/1.0",
                                                       "HTTP/9.9",
                                                       std::string(300, 'A'),
                                                       "GET ",
                                                       "Zm9v",
                                                       "====",
                                                       "%",
                                                       "'",
                                                       "--"};
        return texts;
    }
    static std::string post(const std::string& path, const std::string& body, const std::string& more = "")
    {
        return "POST " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nUser-Identify: 34020000001190000001\r\n" + more +
               "Content-Type: application/VIID+JSON\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
               body;
    }
    static std::string get(const std::string& path)
    {
        return "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nUser-Identify: 34020000001190000001\r\n\r\n";
    }
    static const std::vector<std::string>& seeds()
    {
        static const std::vector<std::string> requests = {
            post("/VIID/System/Register", R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})",
                 "Authorization: Digest username=\"admin\", realm=\"viewlib\", nonce=\"0123456789abcdef\", "
                 "uri=\"/VIID/System/Register\", qop=auth, nc=00000001, cnonce=\"abc\", algorithm=MD5, "
                 "opaque=\"0123456789abcdef\", response=\"0123456789abcdef0123456789abcdef\"\r\n"),
            post("/VIID/System/Keepalive", R"({"KeepaliveObject":{"DeviceID":"34020000001190000001"}})"),
            post(
                "/VIID/Faces",
                R"({"FaceListObject":{"FaceObject":[{"FaceID":"340200000011900000010220240229235959000010600001",)"
                R"("InfoKind":1,"SourceID":"34020000001190000001022024022923595900001","DeviceID":)"
                R"("34020000001190000001","LeftTopX":1,"SubImageList":{"SubImageInfoObject":[{"ImageID":"i","Type":"11",)"
                R"("FileFormat":"Jpeg","ShotTime":"20240229235959","Data":"/9j/4AAQ"}]}}]}})"),
            post("/VIID/Images", R"({"ImageListObject":{"Image":[{"ImageInfo":{"ImageID":"i"},"Data":"Zm9v",)"
                                 R"("FaceList":{"FaceObject":[{"FaceID":"f"}]}}]}})"),
            post("/VIID/MotorVehicles", R"({"MotorVehicleListObject":{"MotorVehicleObject":[{"PlateNo":"A"}]}})"),
            post("/VIID/Files/abc/Data", "Zm9vYmFy"),
            post("/VIID/Upload/video.ps?position=0", "0123456789"),
            post("/log/event", R"([{"a":1}])"),
            get("/VIID/System/Time"),
            get("/VIID/Faces?RecordStartNo=1&PageRecordNum=10"),
            get("/VIID/Faces/340200000011900000010220240229235959000010600001"),
            get("/VIID/Pictures/1"),
            get("/VIID/Upload/video.ps"),
            get("/api/status"),
            get("/api/exchanges?Path=/VIID/*&Limit=5"),
            get("/"),
        };
        return requests;
    }

    std::mt19937 m_random;
};

std::uint32_t fromEnvironment(const char* name, std::uint32_t fallback)
{
    const char* const text = std::getenv(name);
    return text == nullptr ? fallback : static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10));
}

TEST_F(HostileTest, MutatedRequestsAreAnswered)
{
    const std::uint32_t count = fromEnvironment("MUTATED_REQUESTS", 1000);
    config.maxExchanges = 100;
    startRegistered();
    Mutator mutator(fromEnvironment("MUTATION_SEED", 1400));
    std::map<int, std::uint32_t> statuses;
    for (std::uint32_t i = 0; i < count; ++i)
    {
        const std::string request = mutator.next();
        const int status = raw::status(raw::exchange(server().port(), request));
        ++statuses[status];
        ASSERT_TRUE(status == 0 || (status >= 200 && status < 600)) << request;
        ASSERT_NE(status, 500) << request; /* the server itself failed */
    }
    EXPECT_GT(statuses[200], count / 100) << "nothing of it was near enough to a good request";
    EXPECT_GT(statuses[400], count / 100);
}

} // namespace
