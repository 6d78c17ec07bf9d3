/* SPDX-License-Identifier: Apache-2.0 */
/* The oldest goes when there is a limit. */
#include "server_fixture.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

using namespace std::chrono_literals;
using testing::ElementsAre;

namespace
{

class RetentionTest : public ServerTest
{
  protected:
    void SetUp() override
    {
        m_directory = testing::TempDir() + "viewlib-XXXXXX";
        ASSERT_NE(mkdtemp(m_directory.data()), nullptr);
        config.storage = m_directory;
        config.strict.registration = false;
        config.clock = [this] { return m_now.load(); };
    }
    void TearDown() override
    {
        close();
        std::filesystem::remove_all(m_directory);
    }

    /* A face with a picture of 3000 bytes. */
    void postPicture(const std::string& id)
    {
        const client::Result result = post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":")" + id +
                                                              R"(","SubImageList":{"SubImageInfoObject":[{"Data":")" +
                                                              std::string(4000, 'A') + R"("}]}}]}})");
        EXPECT_EQ(result.status, 200) << result.body;
    }
    void upload(const std::string& name, std::size_t bytes)
    {
        EXPECT_EQ(post("/VIID/Upload/" + name, std::string(bytes, 'u')).status, 200);
    }
    std::vector<std::string> ids()
    {
        std::vector<std::string> found;
        for (const viewlib::StoredObject& object : server().objects())
        {
            found.push_back(object.objectId);
        }
        return found;
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> found;
        for (const viewlib::Upload& each : server().uploads())
        {
            found.push_back(each.name);
        }
        return found;
    }
    std::size_t files(const std::string& folder) const
    {
        const auto all = std::filesystem::directory_iterator(m_directory + "/" + folder);
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }
    void pass(std::chrono::hours time)
    {
        m_now = m_now.load() + time;
    }

  private:
    std::string m_directory;
    std::atomic<std::chrono::system_clock::time_point> m_now{std::chrono::system_clock::now()};
};

TEST_F(RetentionTest, NothingGoesWithoutALimit)
{
    start();
    postPicture("1");
    pass(24h * 10000);
    postPicture("2");
    EXPECT_THAT(ids(), ElementsAre("1", "2"));
    EXPECT_EQ(at(get("/api/exchanges").body, "Total"), "2");
}

TEST_F(RetentionTest, WhatDoesNotFitGoesTheOldestFirst)
{
    config.keepBytes = 30000; /* a post takes some 7100 with its picture, 1500 more with its exchange */
    start();
    for (int i = 1; i <= 9; ++i)
    {
        postPicture(std::to_string(i));
        pass(1h);
    }
    EXPECT_THAT(ids(), ElementsAre("7", "8", "9"));
    EXPECT_EQ(server().stored().posts, 3U);
    EXPECT_EQ(server().stored().pictures, 3U);
    EXPECT_EQ(files("pictures"), 3U);
    EXPECT_EQ(at(get("/api/exchanges").body, "Total"), "3");
    EXPECT_EQ(at(get("/api/objects").body, "Total"), "3");
    close();
    start();
    EXPECT_THAT(ids(), ElementsAre("7", "8", "9"));
    postPicture("10");
    EXPECT_THAT(ids(), ElementsAre("8", "9", "10"));
    EXPECT_EQ(files("pictures"), 3U);
}

TEST_F(RetentionTest, WhatIsTooOldGoes)
{
    config.keepFor = 24h * 2;
    start();
    postPicture("1");
    upload("one", 10);
    pass(24h);
    postPicture("2");
    upload("two", 10);
    pass(25h);
    EXPECT_EQ(get("/VIID/Faces").status, 200);
    EXPECT_THAT(ids(), ElementsAre("2"));
    EXPECT_THAT(names(), ElementsAre("two"));
    EXPECT_EQ(files("pictures"), 1U);
    EXPECT_EQ(files("uploads"), 1U);
    EXPECT_EQ(at(get("/api/exchanges").body, "Total"), "3");
    pass(24h);
    close();
    start(); /* at the start, too */
    EXPECT_THAT(ids(), testing::IsEmpty());
    EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(RetentionTest, UploadsGoInTheirTurn)
{
    config.keepBytes = 20000;
    start();
    upload("old", 5000);
    pass(1h);
    postPicture("1");
    pass(1h);
    upload("new", 9000);
    EXPECT_THAT(names(), ElementsAre("new"));
    EXPECT_EQ(files("uploads"), 1U);
}

TEST_F(RetentionTest, AnUploadInProgressStays)
{
    config.keepBytes = 20000;
    start();
    upload("whole", 3000);
    viewlib::Answer slow;
    slow.stallAfterRequestBytes = 5000;
    server().script("/VIID/Upload/running", slow);
    std::thread client([&] {
        client::Call made = call("/VIID/Upload/running", std::string(6000, 'r'));
        made.timeoutMs = 60000;
        client::perform(made);
    });
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (names() != std::vector<std::string>{"running", "whole"} && std::chrono::steady_clock::now() < end)
    {
        std::this_thread::sleep_for(5ms);
    }
    pass(1h); /* the running one is the older one from now on */
    for (int i = 0; i < 6; ++i)
    {
        postPicture(std::to_string(i));
    }
    EXPECT_THAT(names(), ElementsAre("running"));
    server().stop();
    client.join();
}

} // namespace
