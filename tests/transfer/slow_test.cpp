/* SPDX-License-Identifier: Apache-2.0 */
/* Time-outs as they are, on the platform that programs run on: each test takes half a minute or a little more. */
#include <chrono>
#include <future>
#include <map>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <viewlib/server.h>

#include "core/state.h"
#include "tests/support/transfer_files.h"
#include "tests/support/transfer_peer.h"
#include "tests/support/transfer_records.h"
#include "tests/transfer/operations.h"

namespace
{

using std::chrono::milliseconds;
using std::chrono::seconds;

struct Outcome
{
    u32 result;
    milliseconds took;
};

std::future<Outcome> inBackground(std::function<u32()> call)
{
    return std::async(std::launch::async, [call = std::move(call)] {
        const auto begin = std::chrono::steady_clock::now();
        const u32 result = call();
        return Outcome{result, std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin)};
    });
}

void expectWithin(const Outcome& outcome, u32 result, seconds about)
{
    EXPECT_EQ(outcome.result, result);
    EXPECT_GE(outcome.took, about - milliseconds(300));
    EXPECT_LE(outcome.took, about + milliseconds(2500));
}

/* Platform 0 registered at this port of loopback. */
void connectTo(u16 port)
{
    TPubSecPlatRegInfo& info = g_atPubSecStackGlobalCommon[0];
    info = {};
    bare::put(info.achDeviceID, "34020000001190000001");
    bare::put(info.achServerIP, "127.0.0.1");
    info.dwServerPort = port;
    g_bPubSecRegStatus[0] = 1;
}

/* The posts of pictures and their objects, which are bounded too. */
std::map<std::string, std::function<u32()>> picturePosts()
{
    static TPubSecImageObjInfo image = {};
    static TPubSecIntelliPicObj picture = {};
    picture.ptImageInfo = &image;
    picture.nImageNum = 1;
    return {{"PubSecPostImage", [] { return PubSecPostImage(0, &picture, nullptr); }},
            {"PubSecPostImageEX", [] { return PubSecPostImageEX(0, &picture, 0); }},
            {"PubSecPostImageSingle", [] { return PubSecPostImageSingle(0, &picture.ptImageInfo); }},
            {"PubSecPostImageFace", [] { return PubSecPostImageFace(0, nullptr, 0); }},
            {"PubSecPostImagePerson", [] { return PubSecPostImagePerson(0, nullptr, 0); }},
            {"PubSecPostImageMotorVehicle", [] { return PubSecPostImageMotorVehicle(0, nullptr, 0); }},
            {"PubSecPostImageNonMotVeh", [] { return PubSecPostImageNonMotVeh(0, nullptr, 0); }},
            {"PubSecPostImageThing", [] { return PubSecPostImageThing(0, nullptr, 0); }},
            {"PubSecPostImageScene", [] { return PubSecPostImageScene(0, nullptr, 0); }}};
}

TEST(SlowTransfers, PostsWaitThirtySecondsForAnAnswerButThoseOfSlicesWaitOn)
{
    viewlib::Answer late(200, "");
    late.delay = seconds(34);
    viewlib::Server server;
    server.always("*", late);
    server.start();
    connectTo(server.port());
    const Where where = {server.url("/doors"), "127.0.0.1", server.port()};
    const std::string state = server.url("/state");

    std::map<std::string, std::future<Outcome>> bounded;
    std::map<std::string, std::future<Outcome>> unbounded;
    for (const Operation& operation : operations())
    {
        (operation.bounded ? bounded : unbounded)[operation.name] =
            inBackground([&operation, where] { return operation.call(0, where); });
    }
    for (const auto& [name, call] : picturePosts())
    {
        bounded[name] = inBackground(call);
    }
    bounded["PubSecGetTransDataInf"] =
        inBackground([state] { return PubSecGetTransDataInf(0, nullptr, state.c_str(), nullptr); });
    for (auto& [name, outcome] : bounded)
    {
        SCOPED_TRACE(name);
        expectWithin(outcome.get(), 76, seconds(30));
    }
    EXPECT_EQ(unbounded.size(), 3u);
    for (auto& [name, outcome] : unbounded)
    {
        SCOPED_TRACE(name);
        expectWithin(outcome.get(), 50, seconds(34));
    }
}

TEST(SlowTransfers, AnUploadIsLeftWhenNoBlockWasReadForThirtySeconds)
{
    const TransferFile file(std::uint64_t(64) << 20, "");
    TransferPeer peer;
    TransferPeer::Plan plan;
    plan.read = 100000;
    plan.then = TransferPeer::Then::Stall;
    peer.plan(plan);
    const std::string url = peer.url("/store");
    expectWithin(inBackground([&] { return PubSecCurlUpLoadFile(url.c_str(), file.path(), 0); }).get(), 76,
                 seconds(30));
}

/* Listens, accepts nobody, and has no room for one more. */
class FullListener
{
  public:
    FullListener()
    {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof m_address;
        m_listening = socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(bind(m_listening, raw(), length), 0);
        EXPECT_EQ(listen(m_listening, 0), 0);
        EXPECT_EQ(getsockname(m_listening, raw(), &length), 0);
        for (int& waiting : m_waiting)
        {
            waiting = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            (void)connect(waiting, raw(), length);
        }
    }

    ~FullListener()
    {
        for (const int waiting : m_waiting)
        {
            close(waiting);
        }
        close(m_listening);
    }

    FullListener(const FullListener&) = delete;
    FullListener& operator=(const FullListener&) = delete;

    u16 port() const
    {
        return ntohs(m_address.sin_port);
    }

  private:
    sockaddr* raw()
    {
        return reinterpret_cast<sockaddr*>(&m_address);
    }

    sockaddr_in m_address = {};
    int m_listening = -1;
    int m_waiting[4] = {-1, -1, -1, -1};
};

TEST(SlowTransfers, AConnectionIsTriedForThirtySecondsAndForAnUploadFifteen)
{
    const FullListener listener;
    connectTo(listener.port());
    const TransferFile file("content");
    const Where where = {"http://127.0.0.1:" + std::to_string(listener.port()) + "/doors", "127.0.0.1",
                         listener.port()};
    std::future<Outcome> upload = inBackground([&] { return PubSecCurlUpLoadFile(where.url.c_str(), file.path(), 0); });
    std::map<std::string, std::future<Outcome>> posts;
    for (const Operation& operation : operations())
    {
        posts[operation.name] = inBackground([&operation, where] { return operation.call(0, where); });
    }
    expectWithin(upload.get(), 76, seconds(15));
    for (auto& [name, outcome] : posts)
    {
        SCOPED_TRACE(name);
        expectWithin(outcome.get(), 76, seconds(30));
    }
}

} // namespace
