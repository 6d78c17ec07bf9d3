/* SPDX-License-Identifier: Apache-2.0 */
/* The console: a table of commands, a way to run one line, and a thread that reads lines from a descriptor. */
#include "platform/posix/posix_platform.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "platform/posix/include/pubsecplatform_posix.h"

using namespace posix_platform;

namespace
{

/* ----------------------------------------------------------------------------------------------------- commands */

struct Command
{
    const char* name;
    PFAppCommand run;
    const char* help;
};

constexpr u32 kCommandLimit = 64;

pthread_mutex_t g_commandMutex = PTHREAD_MUTEX_INITIALIZER;
Command g_commands[kCommandLimit] = {};
u32 g_commandCount = 0;

/* The caller holds the mutex. */
Command* findCommand(const char* name)
{
    for (u32 index = 0; index < g_commandCount; ++index)
    {
        if (strcmp(g_commands[index].name, name) == 0)
        {
            return &g_commands[index];
        }
    }
    return nullptr;
}

/* A copy, so that the command runs with the table free. */
bool lookUp(const char* name, Command* command)
{
    MutexGuard guard(g_commandMutex);
    const Command* found = findCommand(name);
    if (found != nullptr)
    {
        *command = *found;
    }
    return found != nullptr;
}

/* ------------------------------------------------------------------------------------------------ running a line */

struct Reply
{
    char* text;
    size_t size;
    size_t length;
};

__attribute__((format(printf, 2, 3))) void append(Reply& reply, const char* format, ...)
{
    if (reply.length + 1 >= reply.size)
    {
        return;
    }
    const size_t room = reply.size - reply.length;
    va_list arguments;
    va_start(arguments, format);
    const int written = vsnprintf(reply.text + reply.length, room, format, arguments);
    va_end(arguments);
    const size_t wanted = written > 0 ? static_cast<size_t>(written) : 0;
    reply.length += wanted < room ? wanted : room - 1;
}

void appendHelp(Reply& reply)
{
    append(reply, "help: lists the commands");
    MutexGuard guard(g_commandMutex);
    for (u32 index = 0; index < g_commandCount; ++index)
    {
        append(reply, "\n%s: %s", g_commands[index].name, g_commands[index].help);
    }
}

u32 runCommand(const char* name, const char* argument, Reply& reply)
{
    Command command;
    if (!lookUp(name, &command))
    {
        append(reply, "unknown command '%s'", name);
        return kBadArgument;
    }
    if (argument == nullptr)
    {
        append(reply, "'%s' needs a number: %s", name, command.help);
        return kBadArgument;
    }
    char* end = nullptr;
    errno = 0;
    const long long value = strtoll(argument, &end, 10);
    if (end == argument || *end != '\0')
    {
        append(reply, "'%s' is not a number", argument);
        return kBadArgument;
    }
    if (errno == ERANGE || value < INT32_MIN || value > INT32_MAX)
    {
        append(reply, "'%s' is not within %d to %d", argument, INT32_MIN, INT32_MAX);
        return kBadArgument;
    }
    append(reply, "%s: %d", name, command.run(static_cast<s32>(value)));
    return kDone;
}

/* ----------------------------------------------------------------------------------------------------- the thread */

struct Console
{
    pthread_t thread;
    int input;
    int output;
    int wake[2]; /* a pipe: its writing end is closed to end the thread */
};

enum class ConsoleState
{
    kIdle,
    kRunning,
    kEnded, /* the input is at its end; the thread is to be joined */
    kStopping
};

pthread_mutex_t g_consoleMutex = PTHREAD_MUTEX_INITIALIZER;
Console g_console = {};
ConsoleState g_consoleState = ConsoleState::kIdle;

void writeAll(int descriptor, const char* text, size_t length)
{
    while (length > 0)
    {
        const ssize_t written = write(descriptor, text, length);
        if (written < 0 && errno != EINTR)
        {
            return;
        }
        if (written > 0)
        {
            text += written;
            length -= static_cast<size_t>(written);
        }
    }
}

void answer(int output, const char* line, bool tooLong)
{
    char text[4096];
    if (tooLong)
    {
        snprintf(text, sizeof(text) - 1, "line longer than %u characters", POSIX_PLATFORM_COMMAND_LINE_SIZE);
    }
    else
    {
        PosixPlatformConsoleExecute(line, text, sizeof(text) - 1);
    }
    const size_t length = strlen(text);
    if (output >= 0 && length > 0)
    {
        text[length] = '\n';
        writeAll(output, text, length + 1);
    }
}

/* Puts characters together to lines. */
struct LineReader
{
    char line[POSIX_PLATFORM_COMMAND_LINE_SIZE + 1];
    size_t length;
    bool tooLong;
};

void endLine(LineReader& reader, int output)
{
    reader.line[reader.length] = '\0';
    answer(output, reader.line, reader.tooLong);
    reader.length = 0;
    reader.tooLong = false;
}

void feed(LineReader& reader, const char* text, size_t length, int output)
{
    for (size_t index = 0; index < length; ++index)
    {
        if (text[index] == '\n')
        {
            endLine(reader, output);
        }
        else if (reader.length < POSIX_PLATFORM_COMMAND_LINE_SIZE)
        {
            reader.line[reader.length++] = text[index];
        }
        else
        {
            reader.tooLong = true;
        }
    }
}

/* True when there is input to read, false when the console is to stop. */
bool waitForInput(const Console& console)
{
    pollfd descriptors[2] = {{console.wake[0], POLLIN, 0}, {console.input, POLLIN, 0}};
    while (poll(descriptors, 2, -1) < 0)
    {
        if (errno != EINTR)
        {
            return false;
        }
    }
    return descriptors[0].revents == 0;
}

void readLines(const Console& console)
{
    LineReader reader = {};
    char buffer[256];
    bool inputEnded = false;
    while (waitForInput(console))
    {
        const ssize_t got = read(console.input, buffer, sizeof(buffer));
        if (got < 0 && (errno == EINTR || errno == EAGAIN))
        {
            continue;
        }
        if (got <= 0)
        {
            inputEnded = true;
            break;
        }
        feed(reader, buffer, static_cast<size_t>(got), console.output);
    }
    if (inputEnded && reader.length > 0) /* the last line need not have an end */
    {
        endLine(reader, console.output);
    }
}

void* runConsole(void* argument)
{
    const Console console = *static_cast<const Console*>(argument);
    pthread_setname_np(pthread_self(), "console");
    readLines(console);
    MutexGuard guard(g_consoleMutex);
    if (g_consoleState == ConsoleState::kRunning)
    {
        g_consoleState = ConsoleState::kEnded;
    }
    return nullptr;
}

/* Wakes and joins the thread. The caller holds the mutex; it is free while the thread comes to its end. */
void endConsole()
{
    g_consoleState = ConsoleState::kStopping;
    close(g_console.wake[1]);
    pthread_mutex_unlock(&g_consoleMutex);
    pthread_join(g_console.thread, nullptr);
    pthread_mutex_lock(&g_consoleMutex);
    close(g_console.wake[0]);
    g_consoleState = ConsoleState::kIdle;
}

} // namespace

PLATFORM_FUNCTION u32 AppRegCommand(const char* pchName, PFAppCommand pfCommand, const char* pchHelp)
{
    if (pchName == nullptr || pfCommand == nullptr)
    {
        return kBadArgument;
    }
    MutexGuard guard(g_commandMutex);
    Command* command = findCommand(pchName);
    if (command == nullptr)
    {
        if (g_commandCount == kCommandLimit)
        {
            return kFull;
        }
        command = &g_commands[g_commandCount++];
    }
    *command = {pchName, pfCommand, pchHelp != nullptr ? pchHelp : ""};
    return kDone;
}

u32 PosixPlatformConsoleExecute(const char* pchLine, char* pchReply, size_t size)
{
    Reply reply = {pchReply, size, 0};
    if (size > 0)
    {
        pchReply[0] = '\0';
    }
    char line[POSIX_PLATFORM_COMMAND_LINE_SIZE + 1];
    const size_t length = pchLine != nullptr ? strlen(pchLine) : 0;
    if (length >= sizeof(line))
    {
        append(reply, "line longer than %u characters", POSIX_PLATFORM_COMMAND_LINE_SIZE);
        return kBadArgument;
    }
    memcpy(line, pchLine != nullptr ? pchLine : "", length);
    line[length] = '\0';

    constexpr const char* kBlanks = " \t\r\n";
    char* rest = nullptr;
    const char* name = strtok_r(line, kBlanks, &rest);
    if (name == nullptr)
    {
        return kDone;
    }
    if (strcmp(name, "help") == 0)
    {
        appendHelp(reply);
        return kDone;
    }
    return runCommand(name, strtok_r(nullptr, kBlanks, &rest), reply);
}

u32 PosixPlatformConsoleStart(int nInput, int nOutput)
{
    MutexGuard guard(g_consoleMutex);
    if (g_consoleState == ConsoleState::kEnded)
    {
        endConsole(); /* its thread only has to return */
    }
    if (g_consoleState != ConsoleState::kIdle || nInput < 0)
    {
        return kBadArgument;
    }
    g_console.input = nInput;
    g_console.output = nOutput;
    if (pipe2(g_console.wake, O_CLOEXEC) != 0)
    {
        return kNoThread;
    }
    if (!startThread(&g_console.thread, nullptr, runConsole, &g_console))
    {
        close(g_console.wake[0]);
        close(g_console.wake[1]);
        return kNoThread;
    }
    g_consoleState = ConsoleState::kRunning;
    return kDone;
}

u32 PosixPlatformConsoleStop(void)
{
    MutexGuard guard(g_consoleMutex);
    if (g_consoleState == ConsoleState::kIdle)
    {
        return kDone;
    }
    if (g_consoleState == ConsoleState::kStopping || pthread_equal(g_console.thread, pthread_self()))
    {
        return kStopping;
    }
    endConsole();
    return kDone;
}
