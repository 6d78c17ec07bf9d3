/* SPDX-License-Identifier: Apache-2.0 */
/* The program is killed while devices post; what it had answered is there afterwards. */
#include "client.h"

#include <viewlib/server.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <thread>

extern char** environ;

using namespace std::chrono_literals;

namespace
{

constexpr int clients = 4;

/* 48 digits that are the client's and the number's own. */
std::string faceId(int client, int number)
{
    char text[64];
    std::snprintf(text, sizeof text, "3402000000119000000102202402292359590%04d06%05d", client, number);
    return text;
}

/* The bytes of its picture: nobody else's. 3 * 4096 of them, so that their base64 has no padding. */
std::string pictureOf(const std::string& id)
{
    std::string bytes = "\xFF\xD8\xFF";
    for (unsigned state = static_cast<unsigned>(std::hash<std::string>()(id)); bytes.size() < 12288;)
    {
        state = state * 1664525U + 1013904223U;
        bytes += static_cast<char>(state >> 24);
    }
    return bytes;
}

std::string base64(const std::string& bytes)
{
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i + 2 < bytes.size(); i += 3)
    {
        const auto at = [&](std::size_t k) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[i + k])); };
        const unsigned group = at(0) << 16 | at(1) << 8 | at(2);
        for (const unsigned shift : {18U, 12U, 6U, 0U})
        {
            text += letters[group >> shift & 63];
        }
    }
    return text;
}

class CrashTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        m_directory = testing::TempDir() + "viewlibd-XXXXXX";
        ASSERT_NE(mkdtemp(m_directory.data()), nullptr);
    }
    void TearDown() override
    {
        killServer();
        std::filesystem::remove_all(m_directory);
    }
    std::string data() const
    {
        return m_directory + "/data";
    }

    void serve()
    {
        const std::string portFile = m_directory + "/port";
        const std::string output = m_directory + "/output";
        std::filesystem::remove(portFile);
        std::vector<std::string> arguments = {VIEWLIBD, "--port", "0",       "--port-file", portFile,
                                              "--data", data(),   "--allow", "unregistered"};
        std::vector<char*> raw;
        for (std::string& argument : arguments)
        {
            raw.push_back(argument.data());
        }
        raw.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        for (const int fd : {STDOUT_FILENO, STDERR_FILENO})
        {
            posix_spawn_file_actions_addopen(&actions, fd, output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        }
        ASSERT_EQ(posix_spawn(&m_process, VIEWLIBD, &actions, nullptr, raw.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        const auto end = std::chrono::steady_clock::now() + 30s;
        while (!std::filesystem::exists(portFile) && std::chrono::steady_clock::now() < end)
        {
            std::this_thread::sleep_for(5ms);
        }
        std::ifstream(portFile) >> m_port;
        ASSERT_GT(m_port, 0);
    }
    void killServer()
    {
        if (m_process > 0)
        {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
            m_process = 0;
        }
    }

    /* Posts faces until the connection breaks; keeps the identifiers of those that were answered. */
    void postUntilTheEnd(int number, int round)
    {
        const client::Handle handle = client::newHandle();
        for (int i = 0;; ++i)
        {
            const std::string id = faceId(number + clients * round, i);
            client::Call call;
            call.url = "http://127.0.0.1:" + std::to_string(m_port) + "/VIID/Faces";
            call.headers = {"Content-Type: application/VIID+JSON", "User-Identify: 34020000001190000001"};
            call.body = R"({"FaceListObject":{"FaceObject":[{"FaceID":")" + id +
                        R"(","InfoKind":1,"SourceID":"34020000001190000001022024022923595900001",)"
                        R"("DeviceID":"34020000001190000001","SubImageList":{"SubImageInfoObject":[{"Type":"11",)"
                        R"("FileFormat":"Jpeg","Data":")" +
                        base64(pictureOf(id)) + R"("}]}}]}})";
            if (client::perform(handle.get(), call).status != 200)
            {
                return;
            }
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_answered.push_back(id);
        }
    }
    std::size_t answered()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_answered.size();
    }

    std::vector<std::string> m_answered;

  private:
    std::string m_directory;
    std::mutex m_mutex;
    pid_t m_process = 0;
    int m_port = 0;
};

TEST_F(CrashTest, WhatWasAnsweredIsThereAfterAKill)
{
    for (int round = 0; round < 3; ++round)
    {
        serve();
        const std::size_t before = answered();
        std::vector<std::thread> threads;
        for (int i = 0; i < clients; ++i)
        {
            threads.emplace_back([this, i, round] { postUntilTheEnd(i, round); });
        }
        const auto end = std::chrono::steady_clock::now() + 30s;
        while (answered() < before + 40 && std::chrono::steady_clock::now() < end)
        {
            std::this_thread::sleep_for(1ms);
        }
        killServer();
        for (std::thread& thread : threads)
        {
            thread.join();
        }
        EXPECT_GE(answered(), before + 40);
    }

    viewlib::Config config;
    config.storage = data();
    const viewlib::Server server(config);
    std::map<std::string, std::string> pictures; /* by the face */
    std::map<std::int64_t, std::string> faces;
    for (const viewlib::StoredObject& object : server.objects("Face"))
    {
        faces[object.id] = object.objectId;
        EXPECT_NE(object.document.find(object.objectId), std::string::npos);
    }
    std::size_t files = 0;
    for (const viewlib::Picture& picture : server.pictures())
    {
        pictures[faces.at(picture.object)] = picture.bytes;
        files += picture.file.empty() ? 0 : 1;
    }
    for (const std::string& id : m_answered)
    {
        EXPECT_TRUE(pictures.count(id) == 1 && pictures[id] == pictureOf(id)) << id;
    }
    for (const auto& [id, bytes] : pictures) /* what was not answered is whole all the same */
    {
        EXPECT_TRUE(bytes == pictureOf(id)) << id;
    }
    const auto all = std::filesystem::directory_iterator(data() + "/pictures");
    EXPECT_EQ(static_cast<std::size_t>(std::distance(begin(all), end(all))), files); /* nothing is left over */
    std::printf("%zu posts were answered, %zu are there\n", m_answered.size(), pictures.size());
}

} // namespace
