/* SPDX-License-Identifier: Apache-2.0 */
/* How bodies leave and answers come in. */
#include <cstdlib>

#include "core/http.h"
#include "tests/support/stack_test.h"

using log_lines::info;
using log_lines::IsError;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

bool s_reallocFails = false;
size_t s_reallocSize = 0;

constexpr size_t kLimit = 16777216; /* bytes of an answer */

} // namespace

PUBSEC_C_BEGIN

void* __real_realloc(void* block, size_t size);

/* The linker sends the library's calls here. */
void* __wrap_realloc(void* block, size_t size)
{
    s_reallocSize = size;
    return s_reallocFails ? nullptr : __real_realloc(block, size);
}

PUBSEC_C_END

namespace
{

class SinkTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        s_reallocFails = false;
        PubSecSinkOpen(&sink);
    }

    void TearDown() override
    {
        s_reallocFails = false;
        PubSecSinkClose(&sink);
        StackTest::TearDown();
    }

    size_t write(std::string data, size_t size, size_t nmemb)
    {
        return _PubSecWriteCB(data.data(), size, nmemb, &sink);
    }

    TPubSecRespBuf sink;
};

TEST_F(SinkTest, StartsAsAnEmptyText)
{
    ASSERT_NE(sink.pchBuf, nullptr);
    EXPECT_EQ(sink.pchBuf[0], '\0');
    EXPECT_EQ(sink.dwLen, 0u);
}

TEST_F(SinkTest, CollectsWhatComesAndStaysTerminated)
{
    EXPECT_EQ(write("abcdef", 2, 3), 6u);
    EXPECT_EQ(s_reallocSize, 7u);
    EXPECT_STREQ(sink.pchBuf, "abcdef");
    EXPECT_EQ(sink.dwLen, 6u);
    EXPECT_EQ(write("ghi", 1, 2), 2u);
    EXPECT_EQ(s_reallocSize, 9u);
    EXPECT_STREQ(sink.pchBuf, "abcdefgh");
    EXPECT_EQ(sink.dwLen, 8u);
}

TEST_F(SinkTest, TakesNothingAsNothing)
{
    EXPECT_EQ(write("abc", 0, 3), 0u);
    EXPECT_EQ(write("abc", 3, 0), 0u);
    EXPECT_EQ(sink.dwLen, 0u);
    EXPECT_STREQ(sink.pchBuf, "");
}

TEST_F(SinkTest, KeepsNulBytes)
{
    EXPECT_EQ(write(std::string("a\0b", 3), 1, 3), 3u);
    EXPECT_EQ(sink.dwLen, 3u);
    EXPECT_EQ(std::string(sink.pchBuf, 4), std::string("a\0b\0", 4));
}

TEST_F(SinkTest, LogsExactlyTheBytesReceived)
{
    logAt(2);
    write("abcdefXYZ", 2, 3);
    write("{\"a\":\"%s\"}", 1, 10);
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info("_PubSecWriteCB", "WriteMemoryCallback size:2 nmemb:3 contents:abcdef"),
                            info("_PubSecWriteCB", "WriteMemoryCallback size:1 nmemb:10 contents:{\"a\":\"%s\"}")));
}

TEST_F(SinkTest, LogsNothingBelowTheInformationLevel)
{
    logAt(1);
    write("abc", 1, 3);
    EXPECT_THAT(fake_platform::logLines(), IsEmpty());
}

TEST_F(SinkTest, ThatCannotGrowTakesNothingAndHoldsNothing)
{
    write("abc", 1, 3);
    logAt(2);
    s_reallocFails = true;
    EXPECT_EQ(write("def", 1, 3), 0u);
    EXPECT_EQ(sink.pchBuf, nullptr); /* the leak checker sees that the former block is gone */
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info("_PubSecWriteCB", "WriteMemoryCallback size:1 nmemb:3 contents:def"),
                            IsError("_PubSecWriteCB", "not enough memory (realloc returned NULL)")));
}

TEST_F(SinkTest, TakesSixteenMebibytesAndNotAByteMore)
{
    const std::string half(kLimit / 2, 'a');
    EXPECT_EQ(write(half, 1, half.size()), half.size());
    EXPECT_EQ(write(half, 1, half.size()), half.size());
    EXPECT_EQ(sink.dwLen, kLimit);
    EXPECT_EQ(sink.pchBuf[kLimit], '\0');
    logAt(2);
    s_reallocSize = 0;
    EXPECT_EQ(write("b", 1, 1), 0u);
    EXPECT_EQ(s_reallocSize, 0u);
    EXPECT_EQ(sink.pchBuf, nullptr);
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info("_PubSecWriteCB", "WriteMemoryCallback size:1 nmemb:1 contents:b"),
                            IsError("_PubSecWriteCB", "not enough memory (realloc returned NULL)")));
}

TEST_F(SinkTest, ASizeBeyondMemoryIsRefused)
{
    const size_t huge = ~size_t(0);
    EXPECT_EQ(write("abc", huge, 2), 0u);
    EXPECT_EQ(sink.pchBuf, nullptr);
    PubSecSinkOpen(&sink);
    EXPECT_EQ(write("abc", huge / 2 + 1, 2), 0u);
    EXPECT_EQ(sink.pchBuf, nullptr);
    PubSecSinkOpen(&sink);
    EXPECT_EQ(write("abc", 1, huge), 0u);
    EXPECT_EQ(sink.pchBuf, nullptr);
}

TEST_F(SinkTest, ASizeBeyondMemoryIsToldWithoutABody)
{
    logAt(2);
    EXPECT_EQ(write("abc", size_t{1} << 31, 1), 0u);
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(info("_PubSecWriteCB", "WriteMemoryCallback size:-2147483648 nmemb:1 contents:"),
                            IsError("_PubSecWriteCB", "not enough memory (realloc returned NULL)")));
}

TEST_F(SinkTest, ThatIsFullerThanItMayBeTakesNothing)
{
    sink.dwLen = kLimit + 1;
    s_reallocSize = 0;
    EXPECT_EQ(write("abc", 1, 3), 0u);
    EXPECT_EQ(s_reallocSize, 0u);
    EXPECT_EQ(sink.pchBuf, nullptr);
    EXPECT_EQ(sink.dwLen, 0u);
}

TEST_F(SinkTest, AfterAFailureItStillGrows)
{
    s_reallocFails = true;
    write("abc", 1, 3);
    s_reallocFails = false;
    EXPECT_EQ(write("de", 1, 2), 2u);
    EXPECT_STREQ(sink.pchBuf, "de");
}

/* ------------------------------------------------------------------------------------------------------ request body
 */

class BodyTest : public StackTest
{
  protected:
    /* What one call gives, at most size * nmemb bytes of it. */
    std::string read(size_t size, size_t nmemb)
    {
        char taken[64];
        std::memset(taken, '#', sizeof(taken));
        const size_t count = PubSecReadCB(taken, size, nmemb, &body);
        EXPECT_EQ(taken[count], '#');
        return std::string(taken, count);
    }

    const char* text = "0123456789";
    TPubSecReqBody body = {text, 10};
};

TEST_F(BodyTest, IsGivenInBlocksUntilNothingIsLeft)
{
    EXPECT_EQ(read(2, 2), "0123");
    EXPECT_EQ(body.pchData, text + 4);
    EXPECT_EQ(body.dwLeft, 6u);
    EXPECT_EQ(read(1, 5), "45678");
    EXPECT_EQ(read(1, 5), "9");
    EXPECT_EQ(body.dwLeft, 0u);
    EXPECT_EQ(body.pchData, text + 10);
    EXPECT_EQ(read(1, 5), "");
}

TEST_F(BodyTest, FitsExactly)
{
    EXPECT_EQ(read(5, 2), text);
    EXPECT_EQ(read(5, 2), "");
}

TEST_F(BodyTest, IsNotReadBeyondItsLength)
{
    body.dwLeft = 3;
    EXPECT_EQ(read(1, 64 - 1), "012");
}

TEST_F(BodyTest, GivesNothingIntoNoRoom)
{
    EXPECT_EQ(read(0, 5), "");
    EXPECT_EQ(read(5, 0), "");
    EXPECT_EQ(body.dwLeft, 10u);
}

TEST_F(BodyTest, ThatIsNullGivesNothing)
{
    char taken[4];
    EXPECT_EQ(PubSecReadCB(taken, 1, 4, nullptr), 0u);
    TPubSecReqBody empty = {nullptr, 0};
    EXPECT_EQ(PubSecReadCB(taken, 1, 4, &empty), 0u);
}

} // namespace
