/* SPDX-License-Identifier: Apache-2.0 */
#include "report.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace device
{

Report::Report(const std::string& rowsFile)
{
    const int kept = dup(STDOUT_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
    m_file = kept >= 0 ? fdopen(kept, "w") : nullptr;
    if (m_file == nullptr)
    {
        throw std::runtime_error("there is no standard output");
    }
    m_rows = rowsFile.empty() ? nullptr : std::fopen(rowsFile.c_str(), "w");
    if (!rowsFile.empty() && m_rows == nullptr)
    {
        throw std::runtime_error("--rows \"" + rowsFile + "\": " + std::strerror(errno));
    }
}

Report::~Report()
{
    std::fclose(m_file);
    if (m_rows != nullptr)
    {
        std::fclose(m_rows);
    }
}

void Report::line(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(m_file, format, arguments);
    va_end(arguments);
    std::fputc('\n', m_file);
    std::fflush(m_file);
}

void Report::row(const std::string& operation, const std::string& request, bool good, std::string result)
{
    const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; };
    std::replace_if(result.begin(), result.end(), isControl, '?');
    m_failures += good ? 0 : 1;
    line("  %-12s %-36s %s", operation.c_str(), request.c_str(), result.c_str());
    if (m_rows != nullptr)
    {
        std::fprintf(m_rows, "%s\t%s\t%s\n", operation.c_str(), request.c_str(), result.c_str());
    }
}

void Report::row(const std::string& operation, const std::string& request, u32 code, const std::string& remark)
{
    row(operation, request, code == PUBSEC_OK, std::to_string(code) + ' ' + PubSecResultText(code) + remark);
}

unsigned Report::failures() const
{
    return m_failures;
}

int runProgram(const char* name, int count, char** arguments, int (*run)(const Options& options))
{
    try
    {
        const Options options =
            parseOptions(std::vector<std::string>(arguments + (count > 0 ? 1 : 0), arguments + count));
        if (options.help)
        {
            std::fputs(helpText().c_str(), stdout);
            return Good;
        }
        return run(options);
    }
    catch (const UsageError& error)
    {
        std::fprintf(stderr, "%s: %s\nTry %s --help.\n", name, error.what(), name);
        return WrongUsage;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return Failed;
    }
}

} // namespace device
