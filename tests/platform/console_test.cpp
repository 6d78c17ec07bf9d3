/* SPDX-License-Identifier: Apache-2.0 */
/* Console and log sink of the POSIX platform. */
#include <gmock/gmock.h>
#include <pubsecplatform_posix.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/* ------------------------------------------------------------------------------------------------ running a line */

std::atomic<s32> g_last{0};

s32 takeNumber(s32 number)
{
    g_last = number;
    return number * 2;
}

s32 other(s32)
{
    return 77;
}

std::string execute(const char* line, u32* result = nullptr)
{
    char reply[512];
    const u32 code = PosixPlatformConsoleExecute(line, reply, sizeof(reply));
    if (result != nullptr)
    {
        *result = code;
    }
    return reply;
}

class PosixConsole : public testing::Test
{
  protected:
    void SetUp() override
    {
        g_last = 0;
        ASSERT_EQ(AppRegCommand("level", takeNumber, "level N"), 0u);
    }
};

TEST_F(PosixConsole, RunsACommandWithItsFirstNumber)
{
    u32 result = 1;
    EXPECT_EQ(execute("level 2", &result), "level: 4");
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(g_last, 2);
    EXPECT_EQ(execute("  level\t-7 8 nine\r\n"), "level: -14");
    EXPECT_EQ(g_last, -7);
    EXPECT_EQ(execute("level 010"), "level: 20");
}

TEST_F(PosixConsole, SaysWhyALineIsNotRun)
{
    u32 result = 0;
    EXPECT_EQ(execute("x 2", &result), "unknown command 'x'");
    EXPECT_NE(result, 0u);
    EXPECT_EQ(execute("leve 2"), "unknown command 'leve'");
    EXPECT_EQ(execute("level", &result), "'level' needs a number: level N");
    EXPECT_NE(result, 0u);
    EXPECT_EQ(execute("level two", &result), "'two' is not a number");
    EXPECT_NE(result, 0u);
    EXPECT_EQ(execute("level 2x"), "'2x' is not a number");
    EXPECT_EQ(execute("level 2147483648", &result), "'2147483648' is not within -2147483648 to 2147483647");
    EXPECT_NE(result, 0u);
    EXPECT_EQ(execute("level 99999999999999999999"), "'99999999999999999999' is not within -2147483648 to 2147483647");
    EXPECT_EQ(execute(std::string(256, 'x').c_str(), &result), "line longer than 255 characters");
    EXPECT_NE(result, 0u);
    EXPECT_EQ(g_last, 0);
}

TEST_F(PosixConsole, AnEmptyLineDoesNothing)
{
    u32 result = 1;
    EXPECT_EQ(execute(" \r\n", &result), "");
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(execute(nullptr), "");
}

TEST_F(PosixConsole, HelpListsCommands)
{
    EXPECT_THAT(execute("help"), StartsWith("help: lists the commands\n"));
    EXPECT_THAT(execute("help"), HasSubstr("\nlevel: level N"));
}

TEST_F(PosixConsole, AReplyIsCutToItsBuffer)
{
    char reply[8] = "1234567";
    PosixPlatformConsoleExecute("unheard of", reply, 4);
    EXPECT_STREQ(reply, "unk");
    EXPECT_EQ(reply[4], '5');
    EXPECT_EQ(PosixPlatformConsoleExecute("level 3", nullptr, 0), 0u);
    EXPECT_EQ(g_last, 3);
}

TEST_F(PosixConsole, RegisteringANameAgainReplacesIt)
{
    ASSERT_EQ(AppRegCommand("twice", takeNumber, "a"), 0u);
    ASSERT_EQ(AppRegCommand("twice", other, nullptr), 0u);
    EXPECT_EQ(execute("twice 1"), "twice: 77");
    EXPECT_NE(AppRegCommand(nullptr, other, ""), 0u);
    EXPECT_NE(AppRegCommand("none", nullptr, ""), 0u);
}

TEST_F(PosixConsole, TheTableIsBounded)
{
    static std::vector<std::string> names;
    names.reserve(100);
    for (int i = 0; i < 100; ++i)
    {
        names.push_back("full" + std::to_string(i));
    }
    u32 accepted = 0;
    for (const std::string& name : names)
    {
        accepted += AppRegCommand(name.c_str(), other, "") == 0 ? 1u : 0u;
    }
    EXPECT_GT(accepted, 40u);
    EXPECT_LT(accepted, 65u);
    EXPECT_EQ(execute("full0 1"), "full0: 77");
    EXPECT_EQ(AppRegCommand("level", takeNumber, "level N"), 0u);
}

/* ---------------------------------------------------------------------------------------------------- the thread */

class PosixConsoleThread : public PosixConsole
{
  protected:
    void SetUp() override
    {
        PosixConsole::SetUp();
        ASSERT_EQ(pipe(input_), 0);
        ASSERT_EQ(pipe(output_), 0);
    }

    void TearDown() override
    {
        EXPECT_EQ(PosixPlatformConsoleStop(), 0u);
        for (int descriptor : {input_[0], input_[1], output_[0], output_[1]})
        {
            close(descriptor);
        }
    }

    void type(const std::string& text)
    {
        ASSERT_EQ(write(input_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    /* One line of answer; what has come when none follows within ten seconds. */
    std::string answer()
    {
        std::string line;
        pollfd descriptor = {output_[0], POLLIN, 0};
        while ((line.empty() || line.back() != '\n') && poll(&descriptor, 1, 10000) == 1)
        {
            char next = 0;
            if (read(output_[0], &next, 1) != 1)
            {
                break;
            }
            line.push_back(next);
        }
        return line;
    }

    int input_[2] = {-1, -1};
    int output_[2] = {-1, -1};
};

TEST_F(PosixConsoleThread, RunsLinesWhileTheProgramRuns)
{
    ASSERT_EQ(PosixPlatformConsoleStart(input_[0], output_[1]), 0u);
    type("level 2\nlev");
    EXPECT_EQ(answer(), "level: 4\n");
    type("el 3\n\nx\n");
    EXPECT_EQ(answer(), "level: 6\n");
    EXPECT_EQ(answer(), "unknown command 'x'\n");
}

TEST_F(PosixConsoleThread, ALongLineIsRefusedWhole)
{
    ASSERT_EQ(PosixPlatformConsoleStart(input_[0], output_[1]), 0u);
    type("level " + std::string(400, '1') + "\nlevel 1\n");
    EXPECT_EQ(answer(), "line longer than 255 characters\n");
    EXPECT_EQ(answer(), "level: 2\n");
}

TEST_F(PosixConsoleThread, StopsWhileItWaits)
{
    ASSERT_EQ(PosixPlatformConsoleStart(input_[0], output_[1]), 0u);
    EXPECT_NE(PosixPlatformConsoleStart(input_[0], output_[1]), 0u);
    type("level 9"); /* no end of line: must not be run */
    AppDelay(20);
    EXPECT_EQ(PosixPlatformConsoleStop(), 0u);
    EXPECT_EQ(g_last, 0);
    EXPECT_EQ(PosixPlatformConsoleStop(), 0u);
    ASSERT_EQ(PosixPlatformConsoleStart(input_[0], output_[1]), 0u);
    type("level 5\n");
    EXPECT_EQ(answer(), "level: 10\n");
}

TEST_F(PosixConsoleThread, EndsWithItsInputAndStartsAgain)
{
    ASSERT_EQ(PosixPlatformConsoleStart(input_[0], output_[1]), 0u);
    type("level 4"); /* the last line needs no end */
    close(input_[1]);
    EXPECT_EQ(answer(), "level: 8\n");
    close(input_[0]);
    ASSERT_EQ(pipe(input_), 0);
    u32 result = 1;
    for (int i = 0; i < 1000 && result != 0; ++i)
    {
        AppDelay(1);
        result = PosixPlatformConsoleStart(input_[0], output_[1]);
    }
    ASSERT_EQ(result, 0u);
    type("level 6\n");
    EXPECT_EQ(answer(), "level: 12\n");
}

TEST_F(PosixConsoleThread, ReadsAFifoThatItsWritersLeave)
{
    char folder[] = "/tmp/console-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string path = std::string(folder) + "/fifo";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int fifo = open(path.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(fifo, 0);
    ASSERT_EQ(PosixPlatformConsoleStart(fifo, output_[1]), 0u);
    for (const char* line : {"level 1\n", "level 2\n"})
    {
        const int writer = open(path.c_str(), O_WRONLY | O_CLOEXEC);
        ASSERT_EQ(write(writer, line, 8), 8);
        close(writer);
        EXPECT_EQ(answer(), line[6] == '1' ? "level: 2\n" : "level: 4\n");
    }
    EXPECT_EQ(PosixPlatformConsoleStop(), 0u);
    close(fifo);
    unlink(path.c_str());
    rmdir(folder);
}

TEST_F(PosixConsoleThread, NeedsNoOutput)
{
    ASSERT_EQ(PosixPlatformConsoleStart(input_[0], -1), 0u);
    type("level 7\n");
    for (int i = 0; i < 5000 && g_last != 7; ++i)
    {
        AppDelay(1);
    }
    EXPECT_EQ(g_last, 7);
}

TEST_F(PosixConsoleThread, ACommandCannotStopIt)
{
    AppRegCommand(
        "level", [](s32) { return PosixPlatformConsoleStop() != 0 ? 1 : 0; }, "");
    ASSERT_EQ(PosixPlatformConsoleStart(input_[0], output_[1]), 0u);
    type("level 0\n");
    EXPECT_EQ(answer(), "level: 1\n");
}

TEST_F(PosixConsoleThread, ABadDescriptorEndsIt)
{
    EXPECT_NE(PosixPlatformConsoleStart(-1, -1), 0u);
    const int closed = dup(input_[0]);
    close(closed);
    ASSERT_EQ(PosixPlatformConsoleStart(closed, output_[1]), 0u);
    EXPECT_EQ(PosixPlatformConsoleStop(), 0u);
}

/* ------------------------------------------------------------------------------------------------------ log sink */

std::string contentOf(FILE* file)
{
    std::string content;
    std::rewind(file);
    char buffer[4096];
    for (size_t got = 0; (got = std::fread(buffer, 1, sizeof(buffer), file)) > 0;)
    {
        content.append(buffer, got);
    }
    return content;
}

class PosixLog : public testing::Test
{
  protected:
    void TearDown() override
    {
        PosixPlatformSetLogFile(nullptr);
    }
};

struct Lines
{
    std::mutex mutex;
    std::vector<std::string> lines;
};

void keepLine(void* context, const char* line, size_t length)
{
    Lines* lines = static_cast<Lines*>(context);
    EXPECT_EQ(line[length], '\0');
    const std::lock_guard<std::mutex> guard(lines->mutex);
    lines->lines.emplace_back(line, length);
}

TEST_F(PosixLog, GoesToTheStandardErrorAtStart)
{
    testing::internal::CaptureStderr();
    TlxPrintf(1, 0, "[PubSecStack INF] %s: %d\n", "f", 5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[PubSecStack INF] f: 5\n");
}

TEST_F(PosixLog, GoesToAStreamAndBack)
{
    FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    PosixPlatformSetLogFile(file);
    TlxPrintf(1, 0, "a %s\n", "line");
    TlxPrintf(1, 0, "no end");
    PosixPlatformSetLogFile(nullptr);
    testing::internal::CaptureStderr();
    TlxPrintf(1, 0, "elsewhere\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "elsewhere\n");
    EXPECT_EQ(contentOf(file), "a line\nno end");
    std::fclose(file);
}

TEST_F(PosixLog, GoesToAFunction)
{
    Lines lines;
    PosixPlatformSetLogCallback(keepLine, &lines);
    TlxPrintf(1, 0, "%s\r\n", "x");
    EXPECT_THAT(lines.lines, testing::ElementsAre("x\r\n"));
}

TEST_F(PosixLog, TheFunctionMayLogItself)
{
    static int depth;
    depth = 0;
    PosixPlatformSetLogCallback(
        [](void*, const char*, size_t) {
            if (++depth < 3)
            {
                TlxPrintf(1, 0, "again\n");
            }
        },
        nullptr);
    TlxPrintf(1, 0, "once\n");
    EXPECT_EQ(depth, 3);
}

TEST_F(PosixLog, ALongLineIsCutWithAMark)
{
    Lines lines;
    PosixPlatformSetLogCallback(keepLine, &lines);
    const std::string longest(4095, 'x');
    TlxPrintf(1, 0, "%s\n", longest.c_str());
    const std::string tooLong(4096, 'y');
    TlxPrintf(1, 0, "%s\n", tooLong.c_str());
    const std::string huge(1000000, 'z');
    TlxPrintf(1, 0, "%s\n", huge.c_str());
    ASSERT_EQ(lines.lines.size(), 3u);
    EXPECT_EQ(lines.lines[0], longest + "\n");
    EXPECT_EQ(lines.lines[1].size(), 4096u);
    EXPECT_THAT(lines.lines[1], EndsWith("yyy...[cut, 4097 bytes in all]\n"));
    EXPECT_EQ(lines.lines[2].size(), 4096u);
    EXPECT_THAT(lines.lines[2], StartsWith("zzz"));
    EXPECT_THAT(lines.lines[2], EndsWith("zzz...[cut, 1000001 bytes in all]\n"));
}

TEST_F(PosixLog, LinesOfSeveralThreadsStayWhole)
{
    FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    PosixPlatformSetLogFile(file);
    auto work = [](char letter) {
        const std::string text(200, letter);
        for (int i = 0; i < 500; ++i)
        {
            TlxPrintf(1, 0, "%s\n", text.c_str());
        }
    };
    std::thread first(work, 'a');
    std::thread second(work, 'b');
    work('c');
    first.join();
    second.join();
    PosixPlatformSetLogFile(nullptr);

    const std::string content = contentOf(file);
    std::fclose(file);
    EXPECT_EQ(content.size(), 1500u * 201u);
    for (size_t start = 0; start + 201 <= content.size(); start += 201)
    {
        const std::string line = content.substr(start, 201);
        ASSERT_EQ(line, std::string(200, line[0]) + "\n");
    }
}

TEST_F(PosixLog, TheSinkMayBeChangedWhileThreadsLog)
{
    static Lines lines;
    std::atomic<bool> done{false};
    std::thread logger([&] {
        while (!done)
        {
            TlxPrintf(1, 0, "line\n");
        }
    });
    FILE* file = std::tmpfile();
    for (int i = 0; i < 50; ++i)
    {
        PosixPlatformSetLogFile(file);
        AppDelay(1);
        PosixPlatformSetLogCallback(keepLine, &lines);
    }
    done = true;
    logger.join();
    PosixPlatformSetLogFile(nullptr);
    std::fclose(file);
    for (const std::string& line : lines.lines)
    {
        ASSERT_EQ(line, "line\n");
    }
}

} // namespace
