/* SPDX-License-Identifier: Apache-2.0 */
/* The log sink: one line a call, to a stream or to a function of the program. */
#include "platform/posix/posix_platform.h"

#include <string.h>

#include "platform/posix/include/pubsecplatform_posix.h"

using namespace posix_platform;

namespace
{

struct Sink
{
    FILE* file; /* null is the standard error */
    PFPosixPlatformLog callback;
    void* context;
};

pthread_mutex_t g_mutex = PTHREAD_MUTEX_INITIALIZER;
Sink g_sink = {nullptr, nullptr, nullptr};

void setSink(const Sink& sink)
{
    MutexGuard guard(g_mutex);
    g_sink = sink;
}

Sink currentSink()
{
    MutexGuard guard(g_mutex);
    return g_sink;
}

/* Puts the mark of a cut over the end of a full buffer and returns the length of the text. */
size_t markCut(char* line, size_t size, size_t fullLength)
{
    char mark[64];
    const int written = snprintf(mark, sizeof(mark), "...[cut, %zu bytes in all]\n", fullLength);
    const size_t markLength = static_cast<size_t>(written);
    memcpy(line + size - 1 - markLength, mark, markLength + 1);
    return size - 1;
}

} // namespace

PLATFORM_FUNCTION void TlxPrintf(s32, s32, const char* pchFormat, ...)
{
    char line[POSIX_PLATFORM_LOG_LINE_SIZE + 1];
    va_list arguments;
    va_start(arguments, pchFormat);
    const int written = vsnprintf(line, sizeof(line), pchFormat, arguments);
    va_end(arguments);
    if (written < 0)
    {
        return;
    }
    size_t length = static_cast<size_t>(written);
    if (length >= sizeof(line))
    {
        length = markCut(line, sizeof(line), length);
    }

    const Sink sink = currentSink();
    if (sink.callback != nullptr)
    {
        sink.callback(sink.context, line, length);
        return;
    }
    FILE* file = sink.file != nullptr ? sink.file : stderr;
    fwrite(line, 1, length, file);
    fflush(file);
}

void PosixPlatformSetLogFile(FILE* ptFile)
{
    setSink({ptFile, nullptr, nullptr});
}

void PosixPlatformSetLogCallback(PFPosixPlatformLog pfLog, void* pvContext)
{
    setSink({nullptr, pfLog, pvContext});
}
