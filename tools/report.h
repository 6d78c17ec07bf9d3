/* SPDX-License-Identifier: Apache-2.0 */
/* What the programs on the library print, and how they end. */
#pragma once

#include <cstdio>
#include <string>

#include <pubsecstack/pubsecstack.h>

#include "device_options.h"

namespace device
{

enum ExitCode
{
    Good = 0,
    Failed = 1,
    WrongUsage = 2
};

/*
 * Where a program prints. Some operations leave the server's answer to libcurl, which writes it to descriptor 1: what
 * was there at the start is kept for the program alone.
 */
class Report
{
  public:
    explicit Report(const std::string& rowsFile = {}); /* rows go there too, with tabs between their fields */
    ~Report();
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    __attribute__((format(printf, 2, 3))) void line(const char* format, ...);
    /* Texts of the server are shown without the characters that steer a terminal. */
    void row(const std::string& operation, const std::string& request, bool good, std::string result);
    void row(const std::string& operation, const std::string& request, u32 code, const std::string& remark);
    unsigned failures() const;

  private:
    std::FILE* m_file = nullptr;
    std::FILE* m_rows = nullptr;
    unsigned m_failures = 0;
};

/* A program's main: reads the command line, runs, and turns exceptions into messages and exit codes. */
int runProgram(const char* name, int count, char** arguments, int (*run)(const Options& options));

} // namespace device
