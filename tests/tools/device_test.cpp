/* SPDX-License-Identifier: Apache-2.0 */
/* The device program as a user runs it, against a view library in this process. */
#include <cjson/cJSON.h>

#include <fstream>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/program.h"
#include "viewlib/server.h"

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace
{

const std::string c_device = "34020000001190000001";

class DeviceTest : public ::testing::Test
{
  protected:
    Ended run(viewlib::Server& server, std::vector<std::string> more = {})
    {
        std::vector<std::string> arguments = {"--server", server.url(), "--picture", SAMPLE_PICTURE};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runProgram(PUBSEC_DEVICE, arguments);
    }
};

viewlib::StoredObject only(const std::vector<viewlib::StoredObject>& objects)
{
    EXPECT_EQ(objects.size(), 1u);
    return objects.empty() ? viewlib::StoredObject() : objects[0];
}

/* A member as it is printed, "" when there is none. */
std::string member(const std::string& document, const char* key)
{
    const std::unique_ptr<cJSON, void (*)(cJSON*)> tree(cJSON_Parse(document.c_str()), cJSON_Delete);
    const cJSON* found = cJSON_GetObjectItemCaseSensitive(tree.get(), key);
    if (cJSON_IsString(found))
    {
        return found->valuestring;
    }
    const std::unique_ptr<char, void (*)(void*)> text(cJSON_PrintUnformatted(found), cJSON_free);
    return text ? text.get() : "";
}

} // namespace

TEST_F(DeviceTest, DeliversAndLeaves)
{
    viewlib::Server server;
    server.start();
    const Ended ended = run(server);
    EXPECT_EQ(ended.code, 0) << ended.errors;
    EXPECT_EQ(ended.errors, "");
    EXPECT_THAT(ended.output, HasSubstr("  register     POST /VIID/System/Register           registered"));
    EXPECT_THAT(ended.output,
                HasSubstr("  keepalive    POST /VIID/System/Keepalive          answered with status code 0\n"));
    EXPECT_THAT(ended.output,
                HasSubstr("  set clock    GET /VIID/System/Time                from 2000-01-01 00:00:00 to "));
    EXPECT_THAT(ended.output, HasSubstr("  post image   POST /VIID/Images                    50 success"));
    EXPECT_THAT(ended.output, HasSubstr("  post face    POST /VIID/Faces                     50 success\n"));
    EXPECT_THAT(ended.output, HasSubstr("  unregister   POST /VIID/System/UnRegister         the server was told\n"));
    EXPECT_EQ(server.exchangesOf("/VIID/System/Keepalive").size(), 1u);
    EXPECT_EQ(server.exchangesOf("/VIID/System/Time").size(), 2u);
    EXPECT_TRUE(server.registrations().empty());
}

TEST_F(DeviceTest, ReportsOneOfEverythingOnATour)
{
    viewlib::Config config;
    config.strict.documents = true;
    config.strict.mediaType = true;
    viewlib::Server server(config);
    server.start();
    const Ended ended = run(server, {"--tour"});
    EXPECT_EQ(ended.code, 0) << ended.errors << ended.output;
    for (const char* kind : {"Image", "Face", "Person", "MotorVehicle", "NonMotorVehicle", "Thing", "Scene",
                             "VideoSlice", "File", "IllegalRecord", "AccessRecord", "GPSData", "WifiDevice",
                             "RFIDDevice", "DispositionNotification", "LogEvent"})
    {
        EXPECT_FALSE(server.objects(kind).empty()) << kind;
    }
    for (const viewlib::StoredObject& object : server.objects())
    {
        EXPECT_THAT(object.notes, testing::IsEmpty()) << object.kind << ' ' << object.document;
    }
    EXPECT_EQ(server.posts("/VIID/Images/*").size(), 1u);
    EXPECT_EQ(server.posts("/VIID/VideoSlices/*").size(), 1u);
    ASSERT_EQ(server.uploads().size(), 1u);
    EXPECT_EQ(server.uploads()[0].length, 307200u);
    EXPECT_THAT(ended.output, HasSubstr("50 HTTP 200, the server holds 131072 bytes"));
}

TEST_F(DeviceTest, KeepsTheServersAnswersOutOfItsOutput)
{
    viewlib::Server server;
    server.start();
    const Ended ended = run(server);
    EXPECT_EQ(ended.code, 0) << ended.errors;
    EXPECT_THAT(ended.output, Not(HasSubstr("ResponseStatus"))); /* the answer to the registration is left to libcurl */
}

TEST_F(DeviceTest, ReportsTheFaceAndItsImage)
{
    viewlib::Server server;
    server.start();
    ASSERT_EQ(run(server).code, 0);
    const viewlib::StoredObject image = only(server.objects("Image"));
    const viewlib::StoredObject face = only(server.objects("Face"));
    EXPECT_THAT(image.objectId, MatchesRegex("34020000001190000001"
                                             "02"
                                             "[0-9]{14}"
                                             "00001"));
    EXPECT_EQ(face.objectId, image.objectId + "06"
                                              "00001");
    EXPECT_EQ(member(face.document, "SourceID"), image.objectId);
    EXPECT_EQ(member(face.document, "DeviceID"), c_device);
    EXPECT_EQ(member(face.document, "LeftTopX"), "153");
    EXPECT_EQ(member(face.document, "LeftTopY"), "14");
    EXPECT_EQ(member(face.document, "RightBtmX"), "301");
    EXPECT_EQ(member(face.document, "RightBtmY"), "188");
}

TEST_F(DeviceTest, DescribesThePictureAndSendsItWhole)
{
    viewlib::Server server;
    server.start();
    ASSERT_EQ(run(server).code, 0);
    const std::vector<viewlib::StoredPost> posts = server.posts("/VIID/Images");
    ASSERT_EQ(posts.size(), 1u);
    EXPECT_THAT(posts[0].body, HasSubstr(R"("FileHash":"d99d131120cadf28607e69fb6dbf3035")")); /* as md5sum tells it */
    EXPECT_THAT(posts[0].body, HasSubstr(R"("FileSize":60279)"));
    EXPECT_THAT(posts[0].body, HasSubstr(R"("Width":512,"Height":512)"));
    const std::vector<viewlib::Picture> pictures = server.pictures();
    ASSERT_EQ(pictures.size(), 2u);
    EXPECT_EQ(pictures[1].type, "14");
    EXPECT_EQ(pictures[1].format, "Jpeg");
    const std::string sent = contentOf(SAMPLE_PICTURE);
    ASSERT_EQ(sent.size(), 60279u);
    EXPECT_TRUE(pictures[0].bytes == sent);
    EXPECT_TRUE(pictures[1].bytes == sent);
}

TEST_F(DeviceTest, SpeaksHttpsWithOtherCredentialsAndAnotherIdentifier)
{
    viewlib::Config config;
    config.https = true;
    config.user = "someone";
    config.password = "else";
    viewlib::Server server(config);
    server.start();
    const Ended ended = run(
        server, {"--user", "someone", "--password=else", "--device-id", "11010500001310000007", "--face", "1,2,3,4"});
    EXPECT_EQ(ended.code, 0) << ended.errors;
    const viewlib::StoredObject face = only(server.objects("Face"));
    EXPECT_THAT(face.objectId, MatchesRegex("11010500001310000007[0-9]{28}"));
    EXPECT_EQ(member(face.document, "RightBtmY"), "4");
    EXPECT_THAT(ended.output, Not(HasSubstr("else")));
}

TEST_F(DeviceTest, SaysThatItsCredentialsAreRefused)
{
    viewlib::Server server;
    server.start();
    const Ended ended = run(server, {"--password", "wrong", "--wait", "2"});
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("the server did not accept the registration of device " + c_device +
                                        " for user \"admin\" within 2 s (" + server.url() + ")"));
    EXPECT_TRUE(server.objects().empty());
}

TEST_F(DeviceTest, SaysThatNobodyListens)
{
    viewlib::Server server;
    server.start();
    server.stop();
    const Ended ended = run(server, {"--wait", "1"});
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("the server did not accept the registration"));
}

TEST_F(DeviceTest, SaysThatAPostFailedAndLeavesAllTheSame)
{
    viewlib::Server server;
    server.script("/VIID/Faces", viewlib::Answer(503));
    server.start();
    const Ended ended = run(server);
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.output, HasSubstr("  post image   POST /VIID/Images                    50 success"));
    EXPECT_THAT(ended.output, HasSubstr("  post face    POST /VIID/Faces                     73 HTTP above 500\n"));
    EXPECT_THAT(ended.errors, HasSubstr("1 of the requests failed"));
    EXPECT_TRUE(server.registrations().empty());
}

TEST_F(DeviceTest, SaysThatNoKeepaliveWasAnsweredAndLeaves)
{
    viewlib::Server server;
    server.always("/VIID/System/Keepalive", viewlib::Answer(500));
    server.start();
    const Ended ended = run(server, {"--wait", "5"});
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("no keepalive was answered within 5 s"));
    EXPECT_TRUE(server.registrations().empty());
}

TEST_F(DeviceTest, CountsAKeepaliveThatIsRefusedAsAFailure)
{
    viewlib::Server server;
    server.script("/VIID/System/Keepalive",
                  viewlib::Answer(200, R"({"ResponseStatusObject":{"StatusCode":4,"StatusString":"no"}})"));
    server.start();
    const Ended ended = run(server);
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.output, HasSubstr("answered with status code 4\n"));
}

TEST_F(DeviceTest, SaysThatTheClockWasNotSet)
{
    viewlib::Server server;
    server.always("/VIID/System/Time", viewlib::Answer(500));
    server.start();
    const Ended ended = run(server, {"--wait", "5"});
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("the clock was not set within 5 s"));
    EXPECT_TRUE(server.registrations().empty());
}

TEST_F(DeviceTest, WritesTheLog)
{
    viewlib::Server server;
    server.start();
    const std::string file = testing::TempDir() + "device-log-" + std::to_string(server.port());
    EXPECT_EQ(run(server, {"--log", file}).code, 0);
    const std::string log = contentOf(file);
    std::remove(file.c_str());
    EXPECT_THAT(log, HasSubstr("[PubSecStack INF] _PubSecKeepAliveParseJson: StatusCode:0\n"));
    EXPECT_THAT(log, Not(HasSubstr("viewlib\""))); /* the password */
}

TEST(DeviceArguments, WrongOnesEndWithTwo)
{
    const Ended ended = runProgram(PUBSEC_DEVICE, {"--port", "70000"});
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors, "pubsec-device: --port \"70000\": expected a whole number from 1 to 65535\n"
                            "Try pubsec-device --help.\n");
}

TEST(DeviceArguments, HelpEndsWithZero)
{
    const Ended ended = runProgram(PUBSEC_DEVICE, {"--help"});
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.output, HasSubstr("Usage: pubsec-device [OPTION]...\n"));
    EXPECT_THAT(ended.output, HasSubstr("  --device-id ID      this device's identifier, 20 digits"));
    EXPECT_EQ(ended.errors, "");
}

TEST(DeviceArguments, APictureThatIsMissing)
{
    const Ended ended = runProgram(PUBSEC_DEVICE, {"--picture", "/nowhere/at-all.jpg"});
    EXPECT_EQ(ended.code, 2);
    EXPECT_THAT(ended.errors, HasSubstr("--picture \"/nowhere/at-all.jpg\": cannot be read"));
}

TEST(DeviceArguments, APictureThatIsNone)
{
    const Ended ended = runProgram(PUBSEC_DEVICE, {"--picture", PUBSEC_DEVICE});
    EXPECT_EQ(ended.code, 2);
    EXPECT_THAT(ended.errors, HasSubstr("is not a JPEG"));
}

TEST(DeviceArguments, APictureThatIsTooLarge)
{
    const std::string file = testing::TempDir() + "device-large-picture.jpg";
    std::ofstream(file, std::ios::binary).seekp(16777216).put('x');
    const Ended ended = runProgram(PUBSEC_DEVICE, {"--picture", file});
    std::remove(file.c_str());
    EXPECT_EQ(ended.code, 2);
    EXPECT_THAT(ended.errors, HasSubstr("has 16777217 bytes, expected at most 16777216"));
}

TEST(DeviceArguments, AFaceOutsideThePicture)
{
    const Ended ended = runProgram(PUBSEC_DEVICE, {"--picture", SAMPLE_PICTURE, "--face", "153,14,513,188"});
    EXPECT_EQ(ended.code, 2);
    EXPECT_THAT(ended.errors, HasSubstr("--face: the box ends at 513,188, the picture at 512,512"));
}
