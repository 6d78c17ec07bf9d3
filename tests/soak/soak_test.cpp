/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A device that runs for long: what it holds after many posts and registrations is what it held after a few. The number
 * of posts and of cycles is taken from the environment variables SOAK_POSTS and SOAK_CYCLES.
 */
#include <algorithm>
#include <cinttypes>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <pubsecplatform_posix.h>

#include "tests/soak/usage.h"
#include "tests/soak/view_library.h"
#include "tests/support/environment.h"
#include "tests/support/session_records.h"
#include "tests/torture/records.h"
#include "tests/torture/silence.h"

using std::chrono::milliseconds;

/* Passes and timers come a thousand and fifty times as fast as on a device. */
extern "C"
{
    TAppTimerHandle __real_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);
    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext);
    void __wrap_AppDelay(u32 dwMilliseconds);

    TAppTimerHandle __wrap_AppTaskSetTimer(TAppTaskHandle hTask, u32 dwMilliseconds, PFAppTimer pfHandler,
                                           const void* pvContext)
    {
        return __real_AppTaskSetTimer(hTask, std::max(1u, dwMilliseconds / 50), pfHandler, pvContext);
    }

    void __wrap_AppDelay(u32 dwMilliseconds)
    {
        std::this_thread::sleep_for(std::chrono::microseconds(dwMilliseconds));
    }
}

namespace
{

constexpr size_t kSlack = 64 * 1024; /* of heap: blocks that one moment holds and another does not */

/* The sanitizers keep what is released for a while, and have an allocator that tells less. */
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMeasuresMemory = false;
#else
constexpr bool kMeasuresMemory = true;
#endif

class Soak : public testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        s_server = new ViewLibrary;
    }

    static void TearDownTestSuite()
    {
        delete s_server;
    }

    void SetUp() override
    {
        resetStack();
        PosixPlatformSetLogCallback([](void*, const char*, size_t) {}, nullptr);
        ASSERT_EQ(PubSecStackInit(), 50u);
    }

    void TearDown() override
    {
        PubSecStackUnInit();
        EXPECT_EQ(PosixPlatformStop(), 0u);
        EXPECT_EQ(PosixPlatformPoolBlocks(), 0);
        PosixPlatformSetLogCallback(nullptr, nullptr);
        resetStack();
    }

    static bool become(u32 status)
    {
        TPubSecPlatRegInfo info = recordFor(s_server->port());
        info.dwEnable = status;
        info.dwKeepaliveSec = 1;
        info.dwSyncTimeMin = 1;
        PubSecStackUpdateRegisterInfo(0, &info);
        return comesTrue([status] { return PubSecGetRegisterStatus(0) == status; });
    }

    template <typename Condition> static bool comesTrue(Condition condition)
    {
        for (int tries = 0; !condition(); ++tries)
        {
            if (tries == 20000)
            {
                return false;
            }
            std::this_thread::sleep_for(milliseconds(1));
        }
        return true;
    }

    /* Remembers what is held between keepalives, and shows it. */
    void sample(unsigned done)
    {
        Usage least = Usage::now();
        for (int moment = 0; moment < 10; ++moment)
        {
            std::this_thread::sleep_for(milliseconds(3));
            least = least.least(Usage::now());
        }
        m_samples.push_back(least);
        std::fprintf(stderr, "  after %7u: %s\n", done, m_samples.back().text().c_str());
    }

    /* Of the second half of the samples none is above those of the first half, but for a little. */
    void expectFlat() const
    {
        const auto half = m_samples.begin() + static_cast<std::ptrdiff_t>(m_samples.size() / 2);
        const auto largest = [](auto from, auto to, size_t Usage::*what) {
            size_t most = 0;
            for (; from != to; ++from)
            {
                most = std::max(most, (*from).*what);
            }
            return most;
        };
        const auto growth = [&](size_t Usage::*what) {
            const size_t before = largest(m_samples.begin(), half, what);
            const size_t after = largest(half, m_samples.end(), what);
            return after > before ? after - before : 0;
        };
        ASSERT_GE(m_samples.size(), 10u);
        EXPECT_EQ(growth(&Usage::descriptors), 0u);
        EXPECT_EQ(growth(&Usage::threads), 0u);
        if (kMeasuresMemory)
        {
            EXPECT_LE(growth(&Usage::heap), kSlack);
            EXPECT_LE(growth(&Usage::resident), 1024u * 1024u);
        }
    }

    static ViewLibrary* s_server;

  private:
    std::vector<Usage> m_samples;
};

ViewLibrary* Soak::s_server;

/* A post of each kind in turn. */
u32 post(unsigned number, torture::Records& records)
{
    switch (number % 8)
    {
    case 0:
        return PubSecPostImageFace(0, records.faces, 2);
    case 1:
        return PubSecPostImagePerson(0, records.persons, 2);
    case 2:
        return PubSecPostImageMotorVehicle(0, records.motorVehicles, 2);
    case 3:
        return PubSecPostImageData(0, "34020000001190000001022024022923595900001", records.text);
    case 4:
        return PubSecPostGpsInfo(0, &records.gps);
    case 5:
        return PubSecPostRFIDMSG(0, &records.rfid);
    case 6:
        return PubSecPostIllRecd(0, records.violations);
    default:
        return PubSecPostDispositionNotification(0, &records.notificationList);
    }
}

TEST_F(Soak, PostsLeaveNothingBehind)
{
    constexpr unsigned kThreads = 2;
    constexpr unsigned kParts = 20;
    const unsigned part = std::max(1u, numberFromEnvironment("SOAK_POSTS", 200000) / kThreads / kParts);
    const Silence silence;
    const torture::Source everything = torture::everything();
    torture::Records records[kThreads] = {torture::Records(everything), torture::Records(everything)};
    const std::uint64_t postsBefore = s_server->counts().posts;
    ASSERT_TRUE(become(1));
    for (unsigned done = 0; done < kParts; ++done)
    {
        std::vector<std::thread> threads;
        std::atomic<unsigned> failed{0};
        for (torture::Records& mine : records)
        {
            threads.emplace_back([&mine, &failed, part] {
                for (unsigned number = 0; number < part; ++number)
                {
                    failed += post(number, mine) == 50 ? 0 : 1;
                }
            });
        }
        for (std::thread& thread : threads)
        {
            thread.join();
        }
        ASSERT_EQ(failed, 0u);
        sample((done + 1) * part * kThreads);
    }
    expectFlat();
    EXPECT_EQ(s_server->counts().posts - postsBefore, std::uint64_t{part} * kThreads * kParts);
    EXPECT_GT(s_server->counts().keepalives, 0u);
    EXPECT_TRUE(become(0));
}

TEST_F(Soak, RegistrationsLeaveNothingBehind)
{
    constexpr unsigned kParts = 20;
    const unsigned part = std::max(1u, numberFromEnvironment("SOAK_CYCLES", 2000) / kParts);
    const std::uint64_t registrationsBefore = s_server->counts().registrations;
    const std::uint64_t unregistrationsBefore = s_server->counts().unregistrations;
    for (unsigned done = 0; done < kParts; ++done)
    {
        for (unsigned cycle = 0; cycle < part; ++cycle)
        {
            const std::uint64_t keepalives = s_server->counts().keepalives;
            const std::uint64_t clockQueries = s_server->counts().clockQueries;
            ASSERT_TRUE(become(1));
            if (cycle == 0) /* the others end before their timers are due */
            {
                ASSERT_TRUE(comesTrue([&] { return s_server->counts().keepalives > keepalives; }));
                ASSERT_TRUE(comesTrue([&] { return s_server->counts().clockQueries > clockQueries; }));
            }
            ASSERT_TRUE(become(0));
        }
        std::this_thread::sleep_for(milliseconds(100)); /* timers that were armed have run out */
        sample((done + 1) * part);
    }
    expectFlat();
    EXPECT_EQ(s_server->counts().registrations - registrationsBefore, std::uint64_t{part} * kParts);
    EXPECT_EQ(s_server->counts().unregistrations - unregistrationsBefore, std::uint64_t{part} * kParts);
}

} // namespace
