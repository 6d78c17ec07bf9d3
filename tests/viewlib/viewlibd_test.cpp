/* SPDX-License-Identifier: Apache-2.0 */
/* The program as a script starts, uses and stops it. */
#include "client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

extern char** environ;

using namespace std::chrono_literals;
using testing::HasSubstr;

namespace
{

const std::string device = "34020000001190000001";

std::string contentOf(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

class ViewlibdTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        m_directory = testing::TempDir() + "viewlibd-XXXXXX";
        ASSERT_NE(mkdtemp(m_directory.data()), nullptr);
    }
    void TearDown() override
    {
        if (m_process > 0)
        {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
        std::filesystem::remove_all(m_directory);
    }

    std::string file(const std::string& name) const
    {
        return m_directory + "/" + name;
    }
    std::string output() const
    {
        return contentOf(file("main.out"));
    }
    std::string errors() const
    {
        return contentOf(file("main.err"));
    }

    /* Its output goes to <name>.out and <name>.err. */
    pid_t spawn(std::vector<std::string> arguments, const std::string& name) const
    {
        arguments.insert(arguments.begin(), VIEWLIBD);
        std::vector<char*> raw;
        for (std::string& argument : arguments)
        {
            raw.push_back(argument.data());
        }
        raw.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, file(name + ".out").c_str(), flags, 0600);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, file(name + ".err").c_str(), flags, 0600);
        pid_t process = 0;
        EXPECT_EQ(posix_spawn(&process, VIEWLIBD, &actions, nullptr, raw.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        return process;
    }

    /* What the shell would see; 128 and more for a signal. */
    static int wait(pid_t process)
    {
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    int spawnAndWait(const std::vector<std::string>& arguments, const std::string& name) const
    {
        return wait(spawn(arguments, name));
    }

    /* Starts it on a free port, as scripts do, and waits for that port. */
    void serve(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--port", "0", "--port-file", file("port")});
        ASSERT_EQ(m_process, 0);
        std::filesystem::remove(file("port"));
        m_process = spawn(arguments, "main");
        const auto end = std::chrono::steady_clock::now() + 20s;
        while (!std::filesystem::exists(file("port")) && std::chrono::steady_clock::now() < end)
        {
            std::this_thread::sleep_for(5ms);
        }
        m_port = std::atoi(contentOf(file("port")).c_str());
        ASSERT_GT(m_port, 0) << output() << errors();
    }

    int stop(int signal)
    {
        kill(m_process, signal);
        const int code = wait(m_process);
        m_process = 0;
        return code;
    }
    int run(const std::vector<std::string>& arguments) const
    {
        return spawnAndWait(arguments, "main");
    }

    std::string address() const
    {
        return "127.0.0.1:" + std::to_string(m_port);
    }
    long post(const std::string& path, const std::string& body, const std::string& credentials = "",
              const std::string& scheme = "http://")
    {
        client::Call call;
        call.url = scheme + address() + path;
        call.headers = {"User-Identify:" + device};
        call.body = body;
        call.credentials = credentials;
        return client::perform(call).status;
    }
    long registerWith(const std::string& credentials, const std::string& scheme = "http://")
    {
        return post("/VIID/System/Register", R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})", credentials,
                    scheme);
    }

  private:
    std::string m_directory;
    pid_t m_process = 0;
    int m_port = 0;
};

TEST_F(ViewlibdTest, ServesUntilItIsTerminated)
{
    serve({"-v"});
    EXPECT_EQ(registerWith("admin:viewlib"), 200);
    EXPECT_EQ(post("/VIID/Faces?a=b", R"({"FaceListObject":{}})"), 200);
    EXPECT_EQ(post("/VIID/Upload/file", "0123456789"), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_THAT(output(), HasSubstr("viewlibd: listening on http://" + address() +
                                    ", user \"admin\", password \"viewlib\", data in memory\n"));
    EXPECT_THAT(output(), HasSubstr(device + " POST /VIID/System/Register 0 bytes -> 401\n"));
    EXPECT_THAT(output(), HasSubstr(device + " POST /VIID/System/Register 54 bytes -> 200\n"));
    EXPECT_THAT(output(), HasSubstr(device + " POST /VIID/Faces?a=b 21 bytes -> 200\n"));
    EXPECT_THAT(output(), HasSubstr(" POST /VIID/Upload/file 10 bytes -> 200\n"));
    EXPECT_EQ(errors(), "");
}

TEST_F(ViewlibdTest, KeepsItsDataInADirectory)
{
    const std::string data = file("data");
    serve({"--user=camera", "--password=secret", "--data", data});
    EXPECT_EQ(registerWith("camera:wrong"), 401);
    EXPECT_EQ(registerWith("camera:secret"), 200);
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"f","SubImageList":)"
                                  R"({"SubImageInfoObject":[{"Data":"Zm9v"}]}}]}})"),
              200);
    EXPECT_EQ(stop(SIGINT), 0);
    EXPECT_THAT(output(), HasSubstr("user \"camera\", password as given, data in \"" + data + "\"\n"));
    EXPECT_EQ(output().find("secret"), std::string::npos);
    EXPECT_EQ(contentOf(data + "/pictures/00000001.bin"), "foo");
    serve({"--data", data});
    EXPECT_EQ(post("/VIID/System/Keepalive", R"({"KeepaliveObject":{"DeviceID":"34020000001190000001"}})"), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
}

TEST_F(ViewlibdTest, ServesHttpsAndStrangersWhenTold)
{
    serve({"--https", "--no-auth", "--allow", "unregistered"});
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{}})", "", "https://"), 200);
    EXPECT_EQ(registerWith("", "https://"), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_THAT(output(), HasSubstr("https://" + address() + ", registration needs no credentials, data in memory\n"));
}

TEST_F(ViewlibdTest, ShowsWhatIsStoredUnlessTold)
{
    client::Call call;
    call.method = "GET";
    serve({});
    call.url = "http://" + address() + "/VIID/Faces";
    EXPECT_EQ(client::perform(call).status, 200);
    EXPECT_EQ(stop(SIGTERM), 0);
    serve({"--strict-reading"});
    call.url = "http://" + address() + "/VIID/Faces";
    EXPECT_EQ(client::perform(call).status, 401);
    EXPECT_EQ(stop(SIGTERM), 0);
}

TEST_F(ViewlibdTest, TellsWhatItCannotDo)
{
    serve({});
    const std::string port = address().substr(address().find(':') + 1);
    EXPECT_EQ(spawnAndWait({"--port", port}, "second"), 1);
    EXPECT_EQ(contentOf(file("second.err")), "viewlibd: cannot listen on " + address() + ": Address already in use\n");
    EXPECT_EQ(spawnAndWait({"--port", "0", "--data", file("port") + "/data"}, "third"), 1);
    EXPECT_THAT(contentOf(file("third.err")),
                testing::StartsWith("viewlibd: cannot make the directory \"" + file("port")));
    EXPECT_EQ(stop(SIGTERM), 0);
}

TEST_F(ViewlibdTest, NamesTheArgumentThatIsWrong)
{
    const std::pair<std::vector<std::string>, std::string> wrong[] = {
        {{"--port", "65536"}, "--port \"65536\": expected a whole number from 0 to 65535"},
        {{"--port", "8o8o"}, "--port \"8o8o\": expected a whole number from 0 to 65535"},
        {{"--port="}, "--port \"\": expected a whole number from 0 to 65535"},
        {{"--port"}, "--port needs a value: N"},
        {{"--nonce-lifetime", "0"}, "--nonce-lifetime \"0\": expected a whole number from 1 to 31622400"},
        {{"--max-body", "536870913"}, "--max-body \"536870913\": expected a whole number from 1 to 536870912"},
        {{"--listen", "localhost"},
         "--listen \"localhost\": expected an IPv4 or IPv6 address such as 127.0.0.1 or ::1"},
        {{"--user", "a:b"}, "--user \"a:b\": a user name has no colon"},
        {{"--password", ""}, "--password: expected 1 to 255 characters without control characters"},
        {{"--algorithms", "md5,sha"},
         "--algorithms \"md5,sha\": expected md5, sha-256, or both with a comma between them"},
        {{"--allow", "all"},
         "--allow \"all\": expected one of unregistered, identity, uri, no-qop, replay, line-breaks"},
        {{"--https=yes"}, "--https takes no value"},
        {{"--unknown"}, "unknown argument \"--unknown\""},
        {{"file"}, "unknown argument \"file\""},
    };
    for (const auto& [arguments, message] : wrong)
    {
        EXPECT_EQ(run(arguments), 2) << message;
        EXPECT_EQ(errors(), "viewlibd: " + message + "\nTry viewlibd --help.\n");
        EXPECT_EQ(output(), "");
    }
}

TEST_F(ViewlibdTest, PrintsItsHelpAndVersion)
{
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_THAT(output(), testing::StartsWith("Usage: viewlibd [OPTION]...\n"));
    EXPECT_THAT(output(), HasSubstr("\n  --registration-lifetime SECONDS"));
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(output().substr(0, 9), "viewlibd ");
}

TEST_F(ViewlibdTest, AListOfAlgorithmsIsTaken)
{
    serve({"--algorithms", "sha-256,md5"});
    EXPECT_EQ(registerWith("admin:viewlib"), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
}

} // namespace
