/* SPDX-License-Identifier: Apache-2.0 */
/* The table in force when readers and writers meet in the middle of a copy: each meeting is arranged, none is luck. */
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <thread>
#include <utility>

#include "core/platform_table.h"
#include "tests/support/stack_test.h"

namespace
{

/* A record on a page of its own: what first reads or writes it is held up while a function runs. */
class WatchedRecord
{
  public:
    explicit WatchedRecord(const TPubSecPlatRegInfo& info)
        : m_size(static_cast<size_t>(sysconf(_SC_PAGESIZE))),
          m_page(mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        static_assert(sizeof(TPubSecPlatRegInfo) <= 4096, "it fits a page");
        *record() = info;
    }

    ~WatchedRecord()
    {
        munmap(m_page, m_size);
    }

    WatchedRecord(const WatchedRecord&) = delete;
    WatchedRecord& operator=(const WatchedRecord&) = delete;

    TPubSecPlatRegInfo* record()
    {
        return static_cast<TPubSecPlatRegInfo*>(m_page);
    }

    /* Runs a copy from or to the record; what it meets takes no memory, for it runs in a signal's handler. */
    template <typename Copy, typename Meet> void copy(const Copy& run, const Meet& meet)
    {
        const std::function<void()> met = std::cref(meet);
        s_watched = this;
        s_meet = &met;
        struct sigaction action = {};
        struct sigaction former = {};
        action.sa_handler = onTouch;
        sigaction(SIGSEGV, &action, &former);
        mprotect(m_page, m_size, PROT_NONE);
        run(record());
        sigaction(SIGSEGV, &former, nullptr);
        EXPECT_EQ(s_meet, nullptr) << "nothing touched the record";
    }

  private:
    static void onTouch(int)
    {
        mprotect(s_watched->m_page, s_watched->m_size, PROT_READ | PROT_WRITE);
        const std::function<void()>* meet = std::exchange(s_meet, nullptr);
        if (meet == nullptr)
        {
            abort(); /* some other fault */
        }
        (*meet)();
    }

    static WatchedRecord* s_watched;
    static const std::function<void()>* s_meet;

    size_t m_size;
    void* m_page;
};

WatchedRecord* WatchedRecord::s_watched;
const std::function<void()>* WatchedRecord::s_meet;

class PlatformTableTest : public StackTest
{
  protected:
    TPubSecPlatRegInfo inForce() const
    {
        TPubSecPlatRegInfo info;
        PubSecTableRead(1, &info);
        return info;
    }

    static bool same(const TPubSecPlatRegInfo& left, const TPubSecPlatRegInfo& right)
    {
        return std::memcmp(&left, &right, sizeof(left)) == 0;
    }

    const TPubSecPlatRegInfo first = stack::configuration("10.0.0.1", 8081);
    const TPubSecPlatRegInfo second = stack::configuration("10.0.0.2", 8082);
};

TEST_F(PlatformTableTest, GivesTheRecordAndItsVersion)
{
    PubSecTableWrite(1, &first);
    TPubSecPlatRegInfo info;
    const u32 version = PubSecTableRead(1, &info);
    EXPECT_TRUE(same(info, first));
    EXPECT_TRUE(PubSecTableIsAt(1, version));
    PubSecTableWrite(1, &first);
    EXPECT_FALSE(PubSecTableIsAt(1, version));
}

TEST_F(PlatformTableTest, AReaderThatAWriterOvertakesReadsAgain)
{
    PubSecTableWrite(1, &first);
    WatchedRecord read(TPubSecPlatRegInfo{});
    u32 version = 0;
    read.copy([&](TPubSecPlatRegInfo* into) { version = PubSecTableRead(1, into); },
              [&] { PubSecTableWrite(1, &second); });
    EXPECT_TRUE(same(*read.record(), second));
    EXPECT_TRUE(PubSecTableIsAt(1, version));
}

/* On a single processor it has to let the writer run. */
TEST_F(PlatformTableTest, AReaderWaitsForAWriter)
{
    PubSecTableWrite(1, &first);
    std::atomic<bool> begun{false};
    std::atomic<bool> waited{false};
    fake_platform::setDelayHook([&](u32, u32) { waited = true; });
    TPubSecPlatRegInfo read = {};
    std::thread reader([&] {
        while (!begun)
        {
            std::this_thread::yield();
        }
        read = inForce();
    });
    WatchedRecord written(second);
    written.copy([](const TPubSecPlatRegInfo* from) { PubSecTableWrite(1, from); },
                 [&] {
                     begun = true;
                     while (!waited)
                     {
                         sched_yield();
                     }
                 });
    reader.join();
    EXPECT_TRUE(same(read, second));
    for (const u32 milliseconds : fake_platform::delays())
    {
        EXPECT_EQ(milliseconds, 1u);
    }
}

u64 processorTime(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return static_cast<u64>(time.tv_sec) * 1000000000u + static_cast<u64>(time.tv_nsec);
}

TEST_F(PlatformTableTest, OfTwoWritersOneWaitsForTheOther)
{
    std::atomic<bool> begun{false};
    std::atomic<bool> writes{false};
    std::thread other([&] {
        while (!begun)
        {
            std::this_thread::yield();
        }
        writes = true;
        PubSecTableWrite(1, &second);
    });
    clockid_t clock = 0;
    ASSERT_EQ(pthread_getcpuclockid(other.native_handle(), &clock), 0);
    WatchedRecord written(first);
    written.copy([](const TPubSecPlatRegInfo* from) { PubSecTableWrite(1, from); },
                 [&] {
                     begun = true;
                     while (!writes)
                     {
                         sched_yield();
                     }
                     /* until it has tried for a while: it cannot end before this one */
                     for (const u64 end = processorTime(clock) + 5000000; processorTime(clock) < end;)
                     {
                         sched_yield();
                     }
                 });
    other.join();
    EXPECT_TRUE(same(inForce(), second));
}

} // namespace
