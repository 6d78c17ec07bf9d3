/* SPDX-License-Identifier: Apache-2.0 */
/* The program as a script starts, uses and stops it. */
#include "client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstring>
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
const std::string face =
    R"({"FaceListObject":{"FaceObject":[{"FaceID":"340200000011900000010220240229235959000010600001","InfoKind":1,)"
    R"("SourceID":"34020000001190000001022024022923595900001","DeviceID":"34020000001190000001",)"
    R"("SubImageList":{"SubImageInfoObject":[{"Type":"11","Data":"Zm9v"}]}}]}})";

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
        raw.reserve(arguments.size() + 1);
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

    /* What the shell would see; 128 and more for a signal, as for one that does not end in good time. */
    static int wait(pid_t process)
    {
        int status = 0;
        const auto end = std::chrono::steady_clock::now() + 20s;
        pid_t ended = 0;
        while ((ended = waitpid(process, &status, WNOHANG)) == 0 && std::chrono::steady_clock::now() < end)
        {
            std::this_thread::sleep_for(2ms);
        }
        if (ended == 0)
        {
            kill(process, SIGKILL);
            ended = waitpid(process, &status, 0);
        }
        EXPECT_EQ(ended, process);
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
    /* What the program says that it listens on when it is told nothing. */
    std::string bothAddresses(const std::string& scheme) const
    {
        return scheme + address() + (hasIpv6() ? " and " + scheme + "[::1]:" + std::to_string(m_port) : "");
    }
    static bool hasIpv6()
    {
        sockaddr_in6 loopback{};
        loopback.sin6_family = AF_INET6;
        loopback.sin6_addr = in6addr_loopback;
        const int fd = socket(AF_INET6, SOCK_STREAM, 0);
        const bool has = fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&loopback), sizeof loopback) == 0;
        close(fd);
        return has;
    }
    int port() const
    {
        return m_port;
    }
    void write(const std::string& name, const std::string& text) const
    {
        std::ofstream(file(name), std::ios::binary) << text;
    }
    long post(const std::string& path, const std::string& body, const std::string& credentials = "",
              const std::string& scheme = "http://", const std::string& type = "application/VIID+JSON")
    {
        client::Call call;
        call.url = scheme + address() + path;
        call.headers = {"User-Identify:" + device, "Content-Type: " + type};
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
    EXPECT_THAT(output(), HasSubstr("viewlibd: listening on " + bothAddresses("http://") +
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
    EXPECT_EQ(post("/VIID/Faces", face), 200);
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
    EXPECT_THAT(output(),
                HasSubstr(bothAddresses("https://") + ", registration needs no credentials, data in memory\n"));
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

TEST_F(ViewlibdTest, IsStrictWithDocumentsUnlessTold)
{
    const std::string bare = R"({"FaceListObject":{"FaceObject":[{"FaceID":"f"}]}})";
    client::Call plain;
    plain.headers = {"User-Identify:" + device, "Content-Type: text/plain"};
    plain.body = face;
    serve({"--allow", "unregistered"});
    plain.url = "http://" + address() + "/VIID/Faces";
    EXPECT_EQ(post("/VIID/Faces", bare), 400);
    EXPECT_EQ(client::perform(plain).status, 415);
    EXPECT_EQ(post("/VIID/Faces", face), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
    serve({"--allow", "unregistered", "--allow=documents", "--allow=media-type"});
    plain.url = "http://" + address() + "/VIID/Faces";
    EXPECT_EQ(post("/VIID/Faces", bare), 200);
    EXPECT_EQ(client::perform(plain).status, 200);
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
         "--allow \"all\": expected one of unregistered, identity, uri, no-qop, replay, line-breaks, data-prefix, "
         "documents, media-type"},
        {{"--fault", "/VIID/Faces"}, "--fault \"/VIID/Faces\": expected RESOURCE[@DEVICE][ xN| N%]=PRESET"},
        {{"--fault", "/VIID/Faces=none"}, "--fault \"/VIID/Faces=none\": there is no preset \"none\""},
        {{"--fault", "Faces=gzip"},
         "--fault \"Faces=gzip\": \"Faces\" is no resource: expected *, a path, or the beginning of one followed by *"},
        {{"--fault", "/VIID/Faces@=gzip"},
         "--fault \"/VIID/Faces@=gzip\": \"\" is no device: expected * or its DeviceID"},
        {{"--fault", "* x0=gzip"},
         "--fault \"* x0=gzip\": \"x0\" is neither xN (the next N requests, 1 to 1000000) nor N% (a share of them, 1 "
         "to 100)"},
        {{"--fault", "* 101%=gzip"},
         "--fault \"* 101%=gzip\": \"101%\" is neither xN (the next N requests, 1 to 1000000) nor N% (a share of them, "
         "1 to 100)"},
        {{"--https=yes"}, "--https \"yes\": expected true or false"},
        {{"--unknown"}, "unknown argument \"--unknown\""},
        {{"--max-connections", "0"}, "--max-connections \"0\": expected a whole number from 1 to 16384"},
        {{"--config"}, "--config needs a value: FILE"},
        {{"file"}, "unknown argument \"file\""},
    };
    for (const auto& [arguments, message] : wrong)
    {
        EXPECT_EQ(run(arguments), 2) << message;
        EXPECT_EQ(errors(), "viewlibd: " + message + "\nTry viewlibd --help.\n");
        EXPECT_EQ(output(), "");
    }
}

TEST_F(ViewlibdTest, FaultsAreLaidDownFromTheStart)
{
    serve({"--allow", "unregistered", "--fault", "/VIID/Faces@34020000001190000001 x2=unavailable", "--fault",
           "/VIID/Persons 50%=unavailable", "--fault=/VIID/Things@34020000001190000002=unavailable"});
    const std::string faces = R"({"FaceListObject":{}})";
    EXPECT_EQ(post("/VIID/Faces", faces), 503);
    EXPECT_EQ(post("/VIID/Faces", faces), 503);
    EXPECT_EQ(post("/VIID/Faces", faces), 200);
    const std::string persons = R"({"PersonListObject":{}})";
    EXPECT_EQ(post("/VIID/Persons", persons), 200);
    EXPECT_EQ(post("/VIID/Persons", persons), 503);
    EXPECT_EQ(post("/VIID/Persons", persons), 200);
    EXPECT_EQ(post("/VIID/Things", R"({"ThingListObject":{}})"), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
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

TEST_F(ViewlibdTest, ListensOnEachAddressThatItIsTold)
{
    serve({"--listen", "127.0.0.1", "--listen=127.0.0.2"});
    client::Call call;
    call.method = "GET";
    for (const char* host : {"127.0.0.1", "127.0.0.2"})
    {
        call.url = std::string("http://") + host + ":" + std::to_string(port()) + "/VIID/Faces";
        EXPECT_EQ(client::perform(call).status, 200) << host;
    }
    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_THAT(output(), HasSubstr("listening on http://" + address() +
                                    " and http://127.0.0.2:" + std::to_string(port()) + ", user"));
}

TEST_F(ViewlibdTest, ListensOnBothLoopbackAddresses)
{
    if (!hasIpv6())
    {
        GTEST_SKIP() << "this machine has no ::1";
    }
    serve({});
    client::Call call;
    call.method = "GET";
    call.url = "http://[::1]:" + std::to_string(port()) + "/VIID/Faces";
    EXPECT_EQ(client::perform(call).status, 200);
    EXPECT_EQ(stop(SIGTERM), 0);
}

TEST_F(ViewlibdTest, APortThatIsTakenOnOneAddressIsTold)
{
    serve({"--listen", "127.0.0.2"});
    const std::string taken = std::to_string(port());
    EXPECT_EQ(spawnAndWait({"--listen", "127.0.0.3", "--listen", "127.0.0.2", "--port", taken}, "second"), 1);
    EXPECT_EQ(contentOf(file("second.err")),
              "viewlibd: cannot listen on 127.0.0.2:" + taken + ": Address already in use\n");
    EXPECT_EQ(stop(SIGTERM), 0);
}

/* The fingerprint that the program printed last. */
std::string fingerprintIn(const std::string& output)
{
    const std::string label = "SHA-256 fingerprint ";
    const std::size_t at = output.find(label);
    return at == std::string::npos ? "" : output.substr(at + label.size(), std::size_t(32) * 3 - 1);
}

TEST_F(ViewlibdTest, TheCertificateIsMadeOnceAndKeptWithTheData)
{
    const std::string data = file("data");
    serve({"--https", "--data", data});
    EXPECT_EQ(registerWith("admin:viewlib", "https://"), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
    const std::string first = fingerprintIn(output());
    EXPECT_THAT(output(), HasSubstr("viewlibd: certificate kept there, SHA-256 fingerprint "));
    EXPECT_THAT(first, testing::MatchesRegex("([0-9A-F][0-9A-F]:)+[0-9A-F][0-9A-F]"));
    struct stat key = {};
    ASSERT_EQ(stat((data + "/viewlib.key").c_str(), &key), 0);
    EXPECT_EQ(key.st_mode & 07777U, 0600U);

    serve({"--https", "--data", data});
    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_EQ(fingerprintIn(output()), first);

    serve({"--https"});
    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_THAT(output(), HasSubstr("viewlibd: certificate made for this run, SHA-256 fingerprint "));
    EXPECT_NE(fingerprintIn(output()), first);
}

TEST_F(ViewlibdTest, ACertificateThatCannotBeUsedIsTold)
{
    const std::string data = file("data");
    serve({"--https", "--data", data});
    EXPECT_EQ(stop(SIGTERM), 0);
    const std::string key = contentOf(data + "/viewlib.key");
    const std::string certificate = contentOf(data + "/viewlib.crt");
    serve({"--https", "--data", file("other")});
    EXPECT_EQ(stop(SIGTERM), 0);
    const std::string otherKey = contentOf(file("other") + "/viewlib.key");

    const auto failure = [&] {
        EXPECT_EQ(run({"--https", "--port", "0", "--data", data}), 1);
        return errors();
    };
    write("data/viewlib.crt", "scribble");
    EXPECT_EQ(failure(), "viewlibd: HTTPS: \"" + data + "/viewlib.crt\": this is no certificate in PEM form\n");
    write("data/viewlib.crt", certificate);
    write("data/viewlib.key", "scribble");
    EXPECT_EQ(failure(), "viewlibd: HTTPS: \"" + data + "/viewlib.key\": this is no private key in PEM form\n");
    write("data/viewlib.key", otherKey);
    EXPECT_EQ(failure(),
              "viewlibd: HTTPS: \"" + data + "/viewlib.crt\": it does not belong to the key in \"viewlib.key\"\n");
    std::filesystem::remove(data + "/viewlib.key");
    EXPECT_EQ(failure(),
              "viewlibd: HTTPS: \"" + data + "/viewlib.key\": it is missing, but \"viewlib.crt\" is there\n");
    std::filesystem::create_directory(data + "/viewlib.key");
    EXPECT_EQ(failure(), "viewlibd: HTTPS: \"" + data + "/viewlib.key\": Is a directory\n");
}

TEST_F(ViewlibdTest, StopsAtOnceWhateverIsOpen)
{
    for (const bool https : {false, true})
    {
        serve(https ? std::vector<std::string>{"--https"} : std::vector<std::string>{});
        sockaddr_in server{};
        server.sin_family = AF_INET;
        server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        server.sin_port = htons(static_cast<std::uint16_t>(port()));
        std::vector<int> open;
        /* Silent ones, half a request line, half a header, half a body. */
        for (const char* begun : {"", "POST /VIID/Fa", "POST /VIID/Faces HTTP/1.1\r\nHost: a\r\nUser-",
                                  "POST /VIID/Faces HTTP/1.1\r\nHost: a\r\nContent-Length: 10\r\n\r\n1234"})
        {
            for (int i = 0; i < 5; ++i)
            {
                open.push_back(socket(AF_INET, SOCK_STREAM, 0));
                ASSERT_EQ(connect(open.back(), reinterpret_cast<sockaddr*>(&server), sizeof server), 0);
                ASSERT_EQ(send(open.back(), begun, std::strlen(begun), MSG_NOSIGNAL),
                          static_cast<ssize_t>(std::strlen(begun)));
            }
        }
        std::this_thread::sleep_for(100ms);
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(stop(SIGTERM), 0);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s) << "https: " << https;
        for (const int fd : open)
        {
            close(fd);
        }
    }
}

class ViewlibdFileTest : public ViewlibdTest
{
  protected:
    void SetUp() override
    {
        ViewlibdTest::SetUp();
        write("empty.toml", "");
        run({"--config", file("empty.toml"), "--version"});
        if (errors().find("was built without toml++") != std::string::npos)
        {
            GTEST_SKIP() << "built without toml++";
        }
    }
};

TEST_F(ViewlibdFileTest, TakesEveryOptionFromAFile)
{
    write("viewlibd.toml", "# what a site uses\n"
                           "listen = [\"127.0.0.1\", \"127.0.0.2\"]\n"
                           "user = \"camera\"\n"
                           "password = \"se\\u0063ret\"\n"
                           "realm = \"a site\"\n"
                           "algorithms = \"sha-256,md5\"\n"
                           "nonce-lifetime = 60\n"
                           "registration-lifetime = 0x3c\n"
                           "server-id = \"44000000005030000009\"\n"
                           "clock-offset = -3600\n"
                           "max-body = 1_000\n"
                           "max-connections = 9\n"
                           "header-timeout = 10\n"
                           "idle-timeout = 20\n"
                           "keep-bytes = 1_000_000\n"
                           "keep-days = 30\n"
                           "allow = [\"replay\", \"line-breaks\"]\n"
                           "https = false\n"
                           "no-auth = false\n"
                           "strict-media-type = true\n"
                           "strict-reading = true\n"
                           "verbose = true\n"
                           "data = \"" +
                               file("data") + "\"\n");
    serve({"--config", file("viewlibd.toml")});
    EXPECT_EQ(registerWith("camera:secret"), 200);
    EXPECT_EQ(post("/VIID/Faces", R"({"FaceListObject":{}})", "", "http://", "text/plain"), 415);
    EXPECT_EQ(post("/VIID/Faces", std::string(1001, ' ')), 413);
    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_THAT(output(), HasSubstr(" and http://127.0.0.2:"));
    EXPECT_THAT(output(), HasSubstr("user \"camera\", password as given, data in \"" + file("data") + "\"\n"));
    EXPECT_THAT(output(), HasSubstr(" POST /VIID/System/Register 54 bytes -> 200\n"));
}

TEST_F(ViewlibdFileTest, TheCommandLineGoesBeforeTheFile)
{
    write("viewlibd.toml", "user = \"camera\"\npassword = \"secret\"\nhttps = true\nlisten = \"127.0.0.2\"\n"
                           "no-auth = true\nverbose = true\n");
    serve({"--config", file("viewlibd.toml"), "--password", "other", "--https=false", "--listen", "127.0.0.1",
           "--no-auth=false"});
    EXPECT_EQ(registerWith("camera:secret"), 401);
    EXPECT_EQ(registerWith("camera:other"), 200);
    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_THAT(output(), HasSubstr("listening on http://" + address() + ", user \"camera\""));
    EXPECT_THAT(output(), HasSubstr("POST /VIID/System/Register"));
}

TEST_F(ViewlibdFileTest, NamesTheLineThatIsWrong)
{
    const std::pair<std::string, std::string> wrong[] = {
        {"port = 8080\nport = 8081\n", ":2: "},
        {"port = \n", ":1: "},
        {"port = \"8080\"\n", ":1: port = '8080': expected a whole number from 0 to 65535\n"},
        {"\n\nport = 65536\n", ":3: port = 65536: expected a whole number from 0 to 65535\n"},
        {"port = 80.5\n", ":1: port = 80.5: expected a whole number from 0 to 65535\n"},
        {"port = [8080]\n", ":1: port = 8080: expected a whole number from 0 to 65535\n"},
        {"user = \"a:b\"\n", ":1: user = 'a:b': a user name has no colon\n"},
        {"user = 7\n", ":1: user = 7: expected 1 to 255 characters without control characters\n"},
        {"https = \"yes\"\n", ":1: https = 'yes': expected true or false\n"},
        {"verbose = 1\n", ":1: verbose = 1: expected true or false\n"},
        {"listen = [\"::1\", \"here\"]\n",
         ":1: listen = 'here': expected an IPv4 or IPv6 address such as 127.0.0.1 or ::1\n"},
        {"listen = [1]\n", ":1: listen = 1: expected an IPv4 or IPv6 address such as 127.0.0.1 or ::1, or an array "
                           "of such\n"},
        {"algorithms = \"sha\"\n", ":1: algorithms = 'sha': expected md5, sha-256, or both with a comma between "
                                   "them\n"},
        {"password = 12345678\n", ":1: password: expected 1 to 255 characters without control characters\n"},
        {"user = \"a\"\nprot = 8080\n", ":2: unknown key \"prot\": expected one of listen, port, port-file, "},
        {"help = true\n", ":1: unknown key \"help\": expected one of listen, "},
        {"config = \"x\"\n", ":1: unknown key \"config\": expected one of listen, "},
        {"[server]\nport = 8080\n", ":1: unknown key \"server\": expected one of listen, "},
        {"[port]\nx = 1\n", ":1: port = "},
    };
    const std::string name = file("viewlibd.toml");
    for (const auto& [text, message] : wrong)
    {
        write("viewlibd.toml", text);
        EXPECT_EQ(run({"--port", "0", "--config", name}), 2) << text;
        EXPECT_THAT(errors(), testing::StartsWith("viewlibd: " + name + message)) << text;
        EXPECT_THAT(errors(), testing::EndsWith("\nTry viewlibd --help.\n"));
        EXPECT_EQ(errors().find("12345678"), std::string::npos);
        EXPECT_EQ(output(), "");
    }
    EXPECT_EQ(run({"--config", file("")}), 2);
    EXPECT_EQ(errors(), "viewlibd: cannot read \"" + file("") + "\": Is a directory\nTry viewlibd --help.\n");
    EXPECT_EQ(run({"--config", file("missing.toml")}), 2);
    EXPECT_EQ(errors(), "viewlibd: cannot read \"" + file("missing.toml") +
                            "\": No such file or directory\nTry viewlibd --help.\n");
}

} // namespace
