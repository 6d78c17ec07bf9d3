/* SPDX-License-Identifier: Apache-2.0 */
/* The control API: its guards, status, feed, devices and clock. */
#include "api_fixture.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <future>

using namespace std::chrono_literals;
using client::Result;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

class ControlTest : public ApiTest
{
  protected:
    ControlTest()
    {
        config.clock = [this] { return std::chrono::system_clock::time_point(std::chrono::seconds(m_now.load())); };
    }
    void pass(int seconds)
    {
        m_now += seconds;
    }
    Result hosted(const std::string& host, const std::string& path = "/api/status")
    {
        return api("GET", path, "", {"Host: " + host});
    }
    /* The events after that number, as "Type State" or so. */
    std::vector<std::string> events(const std::string& after, const std::vector<std::string>& members)
    {
        const Result result = get("/api/feed?after=" + after);
        const int count = static_cast<int>(std::strtol(at(result.body, "Seq").c_str(), nullptr, 10));
        std::vector<std::string> found;
        for (int i = 0; i < count; ++i)
        {
            const std::string event = at(result.body, "Events/" + std::to_string(i));
            std::string text;
            for (const std::string& member : members)
            {
                text += (text.empty() ? "" : " ") + at(event, member);
            }
            if (event != "(missing)")
            {
                found.push_back(text);
            }
        }
        return found;
    }

  private:
    std::atomic<int> m_now{1709222399}; /* 2024-02-29 15:59:59 UTC */
};

TEST_F(ControlTest, StatusSaysWhatTheServerIsAndHas)
{
    setenv("TZ", "XXX-8", 1);
    tzset();
    config.user = "camera";
    config.algorithms = {viewlib::Algorithm::Sha256, viewlib::Algorithm::Md5};
    start();
    server().registerDevice(device);
    server().registerDevice("34020000001190000002");
    pass(200);
    EXPECT_EQ(keepAlive().status, 200);
    pass(100);
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f","SubImageList":)"
                                  R"({"SubImageInfoObject":[{"Data":"Zm9v"}]}}]}})")
                  .status,
              200);
    EXPECT_EQ(post("/VIID/Upload/file", "foo").status, 200);
    server().addFault(viewlib::preset("gzip"));
    server().setClockOffset(-1h);
    const Result result = get("/api/status");
    EXPECT_EQ(result.status, 200);
    EXPECT_THAT(result.headers, Contains("Content-Type: application/json"));
    EXPECT_THAT(result.headers, Contains("Cache-Control: no-store"));
    EXPECT_THAT(result.headers, Contains("X-Content-Type-Options: nosniff"));
    EXPECT_EQ(at(result.body, "Name"), R"("viewlibd")");
    EXPECT_EQ(at(result.body, "Version"), R"("0.1.0")");
    EXPECT_EQ(at(result.body, "Url"), '"' + server().url() + '"');
    EXPECT_EQ(at(result.body, "User"), R"("camera")");
    EXPECT_EQ(at(result.body, "Data"), "null");
    EXPECT_EQ(at(result.body, "Now"), R"("20240229230459")");
    EXPECT_EQ(at(result.body, "ClockOffsetMs"), "-3600000");
    EXPECT_EQ(at(result.body, "Challenge"), R"("SHA-256, MD5")");
    EXPECT_EQ(at(result.body, "Counts"), R"({"Devices":2,"Online":1,"Objects":1,"Pictures":1,"Uploads":1,)"
                                         R"("Exchanges":3,"Faults":1})");
    unsetenv("TZ");
    tzset();
}

TEST_F(ControlTest, ItsOwnRequestsAreNotInTheLogAndNotSpoilt)
{
    server().always("*", viewlib::Answer(500));
    start();
    EXPECT_EQ(get("/api/status").status, 200);
    EXPECT_EQ(get("/").status, 200);
    EXPECT_EQ(get("/page/no-such-file").status, 404);
    EXPECT_EQ(get("/favicon.ico").status, 404);
    EXPECT_EQ(server().exchanges().size(), 0U);
    EXPECT_EQ(at(get("/api/status").body, "Seq"), "0");
    EXPECT_EQ(get("/VIID/Faces").status, 500);
    EXPECT_EQ(server().exchanges().size(), 1U);
}

TEST_F(ControlTest, ThePageIsServedWithItsHeaders)
{
    start();
    const Result result = get("/");
    EXPECT_EQ(result.status, 200);
    EXPECT_THAT(result.body, StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(result.headers, Contains("Content-Security-Policy: default-src 'self'; img-src 'self' data:"));
    EXPECT_THAT(result.headers, Contains("X-Content-Type-Options: nosniff"));
    EXPECT_THAT(result.headers, Contains("Cache-Control: no-cache"));
    const Result posted = api("POST", "/", "{}");
    EXPECT_EQ(error(posted), R"(405 "POST is not served here")");
    EXPECT_THAT(posted.headers, Contains("Allow: GET, HEAD"));
}

TEST_F(ControlTest, OnlyItsOwnNamesAreServed)
{
    start();
    for (const char* host : {"127.0.0.1", "127.0.0.1:8080", "127.9.9.9:1", "localhost", "LocalHost:8080", "[::1]:8080",
                             "[::1]", "[0:0:0:0:0:0:0:1]:8080"})
    {
        EXPECT_EQ(hosted(host).status, 200) << host;
        EXPECT_EQ(hosted(host, "/").status, 200) << host;
    }
    for (const char* host : {"evil.test", "evil.test:8080", "127.0.0.1.evil.test", "localhost.evil.test", "192.0.2.1",
                             "[::2]:8080", "1270.0.1", "[::1", "[::1]evil.test", "0.0.0.0"})
    {
        EXPECT_EQ(error(hosted(host)),
                  std::string(R"(403 "the Host header \")") + host + R"(\" is none of this server's")")
            << host;
        EXPECT_EQ(hosted(host, "/").status, 403) << host;
    }
    client::Call made = call("/VIID/Faces", "", "GET"); /* devices may call it what they like */
    made.headers.push_back("Host: view.library");
    EXPECT_EQ(client::perform(made).status, 200);
}

TEST_F(ControlTest, AServerOnEveryAddressIsServedByAnyAddressButNoName)
{
    config.address = "0.0.0.0";
    start();
    client::Call made;
    made.method = "GET";
    made.url = "http://127.0.0.1:" + std::to_string(server().port()) + "/api/status";
    made.headers = {"Host: 192.0.2.1:8080"};
    EXPECT_EQ(client::perform(made).status, 200);
    made.headers = {"Host: evil.test"};
    EXPECT_EQ(client::perform(made).status, 403);
}

TEST_F(ControlTest, WhatChangesSomethingNeedsAHeaderThatForeignPagesCannotSend)
{
    start();
    for (const char* type : {"Content-Type: text/plain", "Content-Type: application/x-www-form-urlencoded",
                             "Content-Type: multipart/form-data; boundary=x", "Content-Type: application/jsonp"})
    {
        const Result result = api("PUT", "/api/clock", R"({"OffsetMs":1})", {type});
        EXPECT_EQ(error(result),
                  std::string("415 \"Content-Type is \\\"") + (type + 14) + "\\\": expected application/json\"");
        EXPECT_EQ(api("POST", "/api/faults", R"({"Preset":"gzip"})", {type}).status, 415);
    }
    EXPECT_EQ(error(api("PUT", "/api/clock", R"({"OffsetMs":1})", {"Content-Type:"})),
              R"(415 "Content-Type is \"\": expected application/json")");
    EXPECT_EQ(error(api("DELETE", "/api/faults", "", {"Content-Type:"})),
              R"(403 "a DELETE needs the header X-Viewlibd: 1")");
    EXPECT_EQ(api("DELETE", "/api/faults", "", {"Content-Type:", "X-Viewlibd: 0"}).status, 403);
    EXPECT_EQ(api("DELETE", "/api/faults", "", {"Content-Type:", "X-Viewlibd: 1"}).status, 200);
    EXPECT_EQ(api("DELETE", "/api/faults", "{}", {"Content-Type: text/plain", "X-Viewlibd: 1"}).status, 415);
    EXPECT_EQ(api("PUT", "/api/clock", R"({"OffsetMs":1})", {"Content-Type: Application/JSON; charset=utf-8"}).status,
              200);
    EXPECT_EQ(api("OPTIONS", "/api/clock", "", {"Content-Type:"}).status, 415); /* no leave for other sites */
    EXPECT_TRUE(server().faults().empty());
}

TEST_F(ControlTest, UnknownPathsMethodsAndSizesAreNamed)
{
    start();
    EXPECT_EQ(error(get("/api")), R"(404 "there is no /api")");
    EXPECT_EQ(error(get("/api/")), R"(404 "there is no /api/")");
    EXPECT_EQ(error(get("/api/nothing")), R"(404 "there is no /api/nothing")");
    EXPECT_EQ(error(get("/api/status/")), R"(404 "there is no /api/status/")");
    EXPECT_EQ(error(get("/api/devices//expire")), R"(404 "there is no /api/devices//expire")");
    Result result = api("PUT", "/api/faults", "{}");
    EXPECT_EQ(error(result), R"(405 "PUT is not served here")");
    EXPECT_THAT(result.headers, Contains("Allow: GET, POST, DELETE"));
    result = api("POST", "/api/faults", std::string((std::size_t(1) << 20) + 1, ' '));
    EXPECT_EQ(error(result), R"(413 "the body is larger than 1048576 bytes")");
}

TEST_F(ControlTest, TheClockIsSet)
{
    start();
    EXPECT_EQ(api("PUT", "/api/clock", R"({"OffsetMs":-3600000})").body, R"({"OffsetMs":-3600000})");
    EXPECT_EQ(at(get("/api/status").body, "ClockOffsetMs"), "-3600000");
    for (const char* body : {"{}", R"({"OffsetMs":"1"})", R"({"OffsetMs":1.5})", R"({"OffsetMs":1e12})"})
    {
        EXPECT_EQ(error(api("PUT", "/api/clock", body)),
                  R"(400 "\"OffsetMs\" is missing or no whole number within a year")")
            << body;
    }
    EXPECT_EQ(error(api("PUT", "/api/clock", "{")), R"(400 "the body is not JSON")");
    EXPECT_EQ(error(api("PUT", "/api/clock", "[]")), R"(400 "the body is not a JSON object")");
    EXPECT_EQ(at(get("/api/status").body, "ClockOffsetMs"), "-3600000");
}

TEST_F(ControlTest, DevicesAreListedWithWhatIsSeenOfThem)
{
    start();
    EXPECT_EQ(get("/api/devices").body, R"({"Devices":[]})");
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    const std::string first = "Devices/0/";
    Result result = get("/api/devices");
    EXPECT_EQ(at(result.body, first + "Device"), R"("34020000001190000001")");
    EXPECT_EQ(at(result.body, first + "State"), R"("online")");
    EXPECT_EQ(at(result.body, first + "Since"), "1709222399000");
    EXPECT_EQ(at(result.body, first + "LastKeepalive"), "null");
    EXPECT_EQ(at(result.body, first + "LastSeen"), "1709222399000");
    EXPECT_THAT(at(result.body, first + "Address"), StartsWith(R"("127.0.0.1:)"));
    EXPECT_EQ(at(result.body, first + "Posts"), "0");
    EXPECT_EQ(at(result.body, first + "Expires"), "1709222669000"); /* 270 s later */
    pass(10);
    EXPECT_EQ(keepAlive().status, 200);
    pass(10);
    EXPECT_EQ(postFace().status, 200);
    result = get("/api/devices");
    EXPECT_EQ(at(result.body, first + "LastKeepalive"), "1709222409000");
    EXPECT_EQ(at(result.body, first + "LastSeen"), "1709222419000");
    EXPECT_EQ(at(result.body, first + "Posts"), "1");
    EXPECT_EQ(at(result.body, first + "Expires"), "1709222679000");
    pass(261);
    EXPECT_EQ(at(get("/api/devices").body, first + "State"), R"("offline")");
}

TEST_F(ControlTest, ARegistrationForEverHasNoEndButCanBeEnded)
{
    config.registrationLifetime = 0s;
    start();
    server().registerDevice(device);
    EXPECT_EQ(at(get("/api/devices").body, "Devices/0/Expires"), "null");
    EXPECT_EQ(api("POST", "/api/devices/34020000001190000001/expire", "{}").status, 200);
    EXPECT_EQ(at(get("/api/devices").body, "Devices/0/State"), R"("offline")");
    EXPECT_EQ(keepAlive().status, 401);
}

TEST_F(ControlTest, DevicesAreExpiredAndForgotten)
{
    start();
    server().registerDevice(device);
    const std::string path = "/api/devices/34020000001190000001";
    EXPECT_EQ(api("POST", path + "/expire", "{}").body, "{}");
    Result result = keepAlive();
    EXPECT_EQ(result.status, 401);
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusString"),
              R"("the registration of device \"34020000001190000001\" has expired")");
    EXPECT_EQ(at(get("/api/devices").body, "Devices/0/State"), R"("offline")");
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    EXPECT_EQ(keepAlive().status, 200);

    EXPECT_EQ(api("DELETE", path).status, 200);
    result = keepAlive();
    EXPECT_EQ(at(result.body, "ResponseStatusObject/StatusString"),
              R"("device \"34020000001190000001\" is not registered")");
    EXPECT_EQ(get("/api/devices").body, R"({"Devices":[]})");
    EXPECT_EQ(error(api("DELETE", path)), R"(404 "device \"34020000001190000001\" is not registered")");
    EXPECT_EQ(error(api("POST", "/api/devices/a%20b/expire", "{}")), R"(404 "device \"a b\" is not registered")");
}

TEST_F(ControlTest, TheFeedTellsWhatHappens)
{
    start();
    EXPECT_EQ(get("/api/feed?after=0").body, R"({"Seq":0,"Events":[]})");
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    EXPECT_EQ(postFace().status, 200);
    server().addFault(viewlib::preset("unavailable"));
    EXPECT_EQ(postFace().status, 503);
    const Result result = get("/api/feed");
    const std::vector<std::string> types = events("0", {"Type"});
    EXPECT_EQ(std::count(types.begin(), types.end(), R"("exchange")"), 4);
    EXPECT_EQ(std::count(types.begin(), types.end(), R"("fault")"), 2);
    EXPECT_EQ(std::count(types.begin(), types.end(), R"("device")"), 1);
    EXPECT_EQ(at(result.body, "Events/0/Seq"), "1");
    EXPECT_EQ(at(result.body, "Events/0/Time"), "1709222399000");
    const std::string last = "Events/" + std::to_string(types.size() - 1) + "/";
    EXPECT_EQ(at(result.body, last + "Type"), R"("exchange")");
    EXPECT_EQ(at(result.body, last + "Exchange"), "4");
    EXPECT_THAT(at(result.body, last + "Client"), StartsWith(R"("127.0.0.1:)"));
    EXPECT_EQ(at(result.body, last + "Device"), R"("34020000001190000001")");
    EXPECT_EQ(at(result.body, last + "Method"), R"("POST")");
    EXPECT_EQ(at(result.body, last + "Path"), R"("/VIID/Faces")");
    EXPECT_EQ(at(result.body, last + "Status"), "503");
    EXPECT_EQ(at(result.body, last + "StatusCode"), "1");
    EXPECT_EQ(at(result.body, last + "RequestBytes"), "55");
    EXPECT_EQ(at(result.body, last + "Fault"), "1");
    EXPECT_EQ(at(result.body, last + "Reason"), R"("Fail")");
    EXPECT_EQ(at(result.body, last + "Complete"), "true");
    EXPECT_EQ(at(get("/api/feed?after=2").body, "Events/0/Seq"), "3");
    EXPECT_EQ(at(get("/api/feed?after=2").body, "Missed"), "(missing)");
}

TEST_F(ControlTest, TheFeedTellsOfDevices)
{
    start();
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    pass(271);
    get("/api/feed");
    EXPECT_EQ(keepAlive().status, 401);
    EXPECT_EQ(registerWith("admin:viewlib").status, 200);
    server().forgetRegistrations();
    std::vector<std::string> found;
    for (const std::string& event : events("0", {"Type", "Device", "State"}))
    {
        if (event.find("\"device\"") == 0)
        {
            found.push_back(event);
        }
    }
    EXPECT_THAT(found, testing::ElementsAre(R"("device" "34020000001190000001" "online")",
                                            R"("device" "34020000001190000001" "offline")",
                                            R"("device" "34020000001190000001" "online")",
                                            R"("device" "34020000001190000001" "gone")"));
}

TEST_F(ControlTest, TheFeedKeepsAThousandEvents)
{
    start();
    const client::Handle handle = client::newHandle();
    const client::Call made = call("/nothing", "", "GET");
    for (int i = 0; i < 1010; ++i)
    {
        client::perform(handle.get(), made);
    }
    Result result = get("/api/feed?after=5");
    EXPECT_EQ(at(result.body, "Seq"), "1010");
    EXPECT_EQ(at(result.body, "Missed"), "true");
    EXPECT_EQ(at(result.body, "Events/0/Seq"), "11");
    EXPECT_EQ(at(result.body, "Events/999/Seq"), "1010");
    EXPECT_EQ(at(result.body, "Events/1000"), "(missing)");
    result = get("/api/feed?after=10");
    EXPECT_EQ(at(result.body, "Missed"), "(missing)");
    EXPECT_EQ(at(result.body, "Events/0/Seq"), "11");
    result = get("/api/feed?after=2000"); /* of a server before this one */
    EXPECT_EQ(at(result.body, "Missed"), "true");
    EXPECT_EQ(at(result.body, "Events/0/Seq"), "11");
}

TEST_F(ControlTest, APollWaitsForAnEvent)
{
    start();
    auto poll = std::async(std::launch::async, [this] { return get("/api/feed?after=0&wait=20"); });
    EXPECT_EQ(poll.wait_for(300ms), std::future_status::timeout);
    EXPECT_EQ(postFace().status, 401);
    const Result result = poll.get();
    EXPECT_LT(result.seconds, 15.0);
    EXPECT_EQ(at(result.body, "Events/0/Type"), R"("exchange")");
}

TEST_F(ControlTest, APollWithoutAnEventEndsInTime)
{
    start();
    const Result result = get("/api/feed?after=0&wait=1");
    EXPECT_EQ(result.body, R"({"Seq":0,"Events":[]})");
    EXPECT_GE(result.seconds, 1.0);
}

TEST_F(ControlTest, APollSeesARegistrationExpire)
{
    start();
    server().registerDevice(device);
    get("/api/feed"); /* online */
    auto poll = std::async(std::launch::async, [this] { return get("/api/feed?after=1&wait=20"); });
    pass(271);
    const Result result = poll.get();
    EXPECT_LT(result.seconds, 15.0);
    EXPECT_EQ(at(result.body, "Events/0/State"), R"("offline")");
}

TEST_F(ControlTest, StopEndsEveryPollAtOnce)
{
    start();
    std::vector<std::future<Result>> polls;
    for (int i = 0; i < 20; ++i)
    {
        polls.push_back(std::async(std::launch::async, [this] { return get("/api/feed?after=0&wait=25"); }));
    }
    EXPECT_EQ(polls.back().wait_for(300ms), std::future_status::timeout);
    const auto begin = std::chrono::steady_clock::now();
    server().stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
    for (auto& each : polls)
    {
        EXPECT_LT(each.get().seconds, 15.0);
    }
    start();
    EXPECT_EQ(get("/api/feed?after=0&wait=0").status, 200);
}

TEST_F(ControlTest, NumbersOfAPollAreChecked)
{
    start();
    EXPECT_EQ(error(get("/api/feed?after=x")),
              R"(400 "\"after\" is \"x\": expected a whole number from 0 to 9007199254740992")");
    EXPECT_EQ(error(get("/api/feed?after=-1")),
              R"(400 "\"after\" is \"-1\": expected a whole number from 0 to 9007199254740992")");
    EXPECT_EQ(error(get("/api/feed?wait=26")), R"(400 "\"wait\" is \"26\": expected a whole number from 0 to 25")");
}

} // namespace
