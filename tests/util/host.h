/* SPDX-License-Identifier: Apache-2.0 */
/* The host of the helpers' tests: keeps the log lines, and what its clock and its memory were asked for. */
#ifndef PUBSEC_TESTS_UTIL_HOST_H
#define PUBSEC_TESTS_UTIL_HOST_H

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pubsecplatform.h>

namespace host
{

enum class Allocator
{
    heap,
    pool,
    service,
};

struct Release
{
    Allocator allocator;
    void* block; /* null when a null block was given back */
    std::string function;

    bool operator==(const Release& other) const
    {
        return allocator == other.allocator && block == other.block && function == other.function;
    }
};

struct State
{
    std::vector<std::string> lines;

    u32 switchMode = 0;
    u32 switchAdds = 0; /* what the conversion to the shown time adds */
    int switchCalls = 0;

    std::vector<TAppMemPoolHandle> poolsAsked;
    std::vector<size_t> sizesAsked;
    std::vector<std::string> functionsAsked;
    int poolFailsAt = -1; /* which request fails, counted from 0 */
    std::set<void*> blocks;
    std::vector<Release> releases;
};

extern State state;

/* A block that only a release of the stack, or the end of the test, gives back; the next release of it is recorded. */
void* block(size_t size);
char* text(const std::string& content);

/* Starts each test silent and with nothing recorded, and gives back what the test left. */
class Test : public testing::Test
{
  protected:
    Test();
    ~Test() override;

    void logAt(u32 level);
};

/* A line of an error: the tag, the function, any source line, the text, one line end. */
testing::Matcher<const std::string&> isError(const std::string& function, const std::string& text);
std::string debugLine(const std::string& function, const std::string& text);

} // namespace host

#endif
