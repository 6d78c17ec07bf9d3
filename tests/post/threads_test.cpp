/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Posts from many threads while the configuration in force changes under them. The two configurations share neither
 * address nor port, so that a request formed of both finds nobody listening.
 */
#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <memory>
#include <thread>

#include <curl/curl.h>
#include <gmock/gmock.h>

#include <pubsecplatform_posix.h>
#include <pubsecstack/pubsecstack.h>
#include <viewlib/server.h>

#include "core/platform_table.h"
#include "session/session.h"
#include "tests/support/settings.h"

using namespace std::chrono_literals;

namespace
{

/* Calls of curl_global_init at a moment, and the most there were. */
std::atomic<unsigned> g_initialising{0};
std::atomic<unsigned> g_mostInitialising{0};

} // namespace

extern "C"
{
    CURLcode __real_curl_global_init(long flags);
    CURLcode __wrap_curl_global_init(long flags);

    CURLcode __wrap_curl_global_init(long flags)
    {
        const unsigned now = ++g_initialising;
        if (now > g_mostInitialising)
        {
            g_mostInitialising = now;
        }
        std::this_thread::sleep_for(100us);
        const CURLcode result = __real_curl_global_init(flags);
        --g_initialising;
        return result;
    }
}

namespace
{

constexpr unsigned kThreads = 8;
constexpr unsigned kPostsOfAThread = 400; /* each leaves a connection behind in the kernel for a while */

std::unique_ptr<viewlib::Server> serverAt(const std::string& address)
{
    viewlib::Config config;
    config.address = address;
    config.strict.registration = false;
    config.strict.identity = false;
    auto server = std::make_unique<viewlib::Server>(config);
    server->always("/VIID/Faces", viewlib::Answer(200, ""));
    viewlib::Answer silent; /* the session's answers would go to the standard output */
    silent.body = "";
    server->always("/VIID/System/*", silent);
    server->start();
    return server;
}

/* A configuration whose identity says which server it is for. */
TPubSecPlatRegInfo configurationFor(const viewlib::Server& server, const std::string& address, char name)
{
    TPubSecPlatRegInfo info = stack::configuration(address, server.port());
    stack::put(info.achDeviceID, std::string(20, name));
    return info;
}

/* Lets readers through: a table that is written without a pause is read by nobody. */
void pauseAfter(unsigned writes)
{
    if (writes % 101 == 100) /* so that either record of two is the last in turn */
    {
        std::this_thread::sleep_for(50us);
    }
}

class ThreadsTest : public testing::Test
{
  protected:
    ThreadsTest() : first(serverAt("127.0.0.1")), second(serverAt("127.0.0.2"))
    {
        infos[0] = configurationFor(*first, "127.0.0.1", '1');
        infos[1] = configurationFor(*second, "127.0.0.2", '2');
    }

    ~ThreadsTest() override
    {
        PubSecStore(g_bPubSecRegStatus[0], 0u);
    }

    /* Posts from all threads until the time is over; counts what became of the posts. */
    void postFor(std::chrono::steady_clock::duration duration)
    {
        const auto end = std::chrono::steady_clock::now() + duration;
        const auto pause = duration / kPostsOfAThread;
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < kThreads; ++i)
        {
            threads.emplace_back([&] {
                const TPubSecFaceObjInfo face = {};
                for (unsigned post = 0; post < kPostsOfAThread && std::chrono::steady_clock::now() < end; ++post)
                {
                    const u32 result = PubSecPostImageFace(0, &face, 1);
                    ++(result == PUBSEC_OK ? delivered : result == PUBSEC_ERR_NOT_REGISTERED ? refused : lost);
                    std::this_thread::sleep_for(pause);
                }
            });
        }
        for (std::thread& thread : threads)
        {
            thread.join();
        }
    }

    /* Each request has to name the server that it arrived at, and the device that is configured for it. */
    void expectOwnRequestsOnly(const viewlib::Server& server, const TPubSecPlatRegInfo& info)
    {
        const std::string host = std::string(info.achServerIP) + ":" + std::to_string(server.port());
        for (const viewlib::Exchange& exchange : server.exchanges())
        {
            ASSERT_EQ(exchange.header("Host"), host);
            ASSERT_EQ(exchange.header("User-Identify"), info.achDeviceID) << exchange.path;
        }
    }

    /* Makes the calls over and over while the table changes; counts those whose result is not 50. */
    unsigned failuresOf(std::initializer_list<std::function<u32()>> calls)
    {
        PubSecTableWrite(0, &infos[0]);
        std::atomic<bool> stops{false};
        std::atomic<unsigned> failed{0};
        std::thread writer([&] {
            for (unsigned i = 0; !stops; ++i)
            {
                PubSecTableWrite(0, &infos[i % 2]);
                pauseAfter(i);
            }
        });
        std::vector<std::thread> threads;
        for (const std::function<u32()>& call : calls)
        {
            threads.emplace_back([&failed, call] {
                for (unsigned i = 0; i < 200; ++i)
                {
                    failed += call() == PUBSEC_OK ? 0 : 1;
                }
            });
        }
        for (std::thread& thread : threads)
        {
            thread.join();
        }
        stops = true;
        writer.join();
        return failed;
    }

    std::unique_ptr<viewlib::Server> first;
    std::unique_ptr<viewlib::Server> second;
    TPubSecPlatRegInfo infos[2];
    std::atomic<unsigned> delivered{0};
    std::atomic<unsigned> refused{0};
    std::atomic<unsigned> lost{0};
};

TEST_F(ThreadsTest, ARequestIsNeverMadeOfTwoConfigurations)
{
    PubSecTableWrite(0, &infos[0]);
    PubSecStore(g_bPubSecRegStatus[0], 1u);
    std::atomic<bool> stops{false};
    std::thread writer([&] {
        for (unsigned i = 0; !stops; ++i)
        {
            PubSecTableWrite(0, &infos[i % 2]);
            pauseAfter(i);
        }
    });
    postFor(2s);
    stops = true;
    writer.join();

    EXPECT_EQ(lost, 0u);
    EXPECT_EQ(refused, 0u);
    expectOwnRequestsOnly(*first, infos[0]);
    expectOwnRequestsOnly(*second, infos[1]);
    const size_t atFirst = first->exchangesOf("/VIID/Faces").size();
    const size_t atSecond = second->exchangesOf("/VIID/Faces").size();
    EXPECT_EQ(atFirst + atSecond, delivered);
    EXPECT_GT(atFirst, 0u);
    EXPECT_GT(atSecond, 0u);
}

TEST_F(ThreadsTest, NorIsOneOfTheSession)
{
    const std::string time = "{\"SystemTimeObject\":{\"VIIDServerID\":\"1\",\"TimeMode\":\"1\",\"LocalTime\":"
                             "\"20240229235959\",\"TimeZone\":\"UTC+8\"}}";
    first->always("/VIID/System/Time", viewlib::Answer(200, time));
    second->always("/VIID/System/Time", viewlib::Answer(200, time));
    const auto keepalive = [] { return _PubSecPostUserKeepAliveMsg(0); };
    const auto clock = [] {
        TPubSecSystemTime answer = {};
        return PubSecGetSystemTimeMsg(0, &answer);
    };
    const auto unregistration = [] {
        PubSecStore(g_bPubSecRegStatus[0], 1u);
        return PubSecPostUserUnRegisterMsg(0);
    };
    EXPECT_EQ(failuresOf({keepalive, clock, unregistration}), 0u);
    for (const char* path : {"/VIID/System/Keepalive", "/VIID/System/Time", "/VIID/System/UnRegister"})
    {
        EXPECT_GT(first->exchangesOf(path).size(), 0u) << path;
        EXPECT_GT(second->exchangesOf(path).size(), 0u) << path;
    }
    expectOwnRequestsOnly(*first, infos[0]);
    expectOwnRequestsOnly(*second, infos[1]);
}

TEST_F(ThreadsTest, TwoWritersLeaveOneOfTheirRecords)
{
    PubSecTableWrite(1, &infos[0]);
    std::atomic<bool> stops{false};
    std::vector<std::thread> writers;
    for (const TPubSecPlatRegInfo& info : infos)
    {
        writers.emplace_back([&stops, &info] {
            for (unsigned i = 0; !stops; ++i)
            {
                PubSecTableWrite(1, &info);
                pauseAfter(i);
            }
        });
    }
    unsigned torn = 0;
    unsigned reads = 0;
    for (const auto end = std::chrono::steady_clock::now() + 1s; std::chrono::steady_clock::now() < end; ++reads)
    {
        TPubSecPlatRegInfo read;
        PubSecTableRead(1, &read);
        const bool whole =
            std::memcmp(&read, &infos[0], sizeof(read)) == 0 || std::memcmp(&read, &infos[1], sizeof(read)) == 0;
        torn += whole ? 0 : 1;
    }
    stops = true;
    for (std::thread& writer : writers)
    {
        writer.join();
    }
    EXPECT_EQ(torn, 0u);
    EXPECT_GT(reads, 100u);
    const TPubSecPlatRegInfo empty = {};
    PubSecTableWrite(1, &empty);
}

TEST_F(ThreadsTest, PostsOutliveTheRegisterLoopsChangesOfServer)
{
    ASSERT_EQ(PubSecStackUpdateRegisterInfo(0, &infos[0]), 50u);
    ASSERT_EQ(PubSecStackInit(), 50u);
    std::atomic<bool> stops{false};
    std::thread host([&] {
        for (unsigned i = 1; !stops; ++i)
        {
            std::this_thread::sleep_for(300ms);
            PubSecStackUpdateRegisterInfo(0, &infos[i % 2]);
        }
    });
    postFor(4s);
    stops = true;
    host.join();
    PubSecStackUnInit();
    ASSERT_EQ(PosixPlatformStop(), 0u);

    EXPECT_EQ(lost, 0u);
    EXPECT_GT(delivered, 0u);
    expectOwnRequestsOnly(*first, infos[0]);
    expectOwnRequestsOnly(*second, infos[1]);
    EXPECT_EQ(first->exchangesOf("/VIID/Faces").size() + second->exchangesOf("/VIID/Faces").size(), delivered);
}

/* libcurl leaves it to its callers. */
TEST_F(ThreadsTest, LibcurlIsInitialisedByOneThreadAtATime)
{
    g_mostInitialising = 0;
    const auto keepalive = [] { return _PubSecPostUserKeepAliveMsg(0); };
    EXPECT_EQ(failuresOf({keepalive, keepalive, keepalive, keepalive}), 0u);
    EXPECT_EQ(g_mostInitialising, 1u);
}

} // namespace
