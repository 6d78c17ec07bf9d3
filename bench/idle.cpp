/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the stack costs while it has nothing to do but to stay registered: processor time, and how often its threads
 * wake. Before that, how soon a configuration is followed by its registration.
 */
#include <dirent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "clocks.h"
#include "records.h"
#include "report.h"
#include "session.h"

#include <pubsecplatform_posix.h>

namespace
{

using namespace bench;

constexpr u32 kKeepaliveSeconds = 30;
constexpr double kPassMs = 1000; /* of the register loop */

/* ------------------------------------------------------------------------------------------------------ start-up */

void waitForRegistration(const SinkServer& server)
{
    for (int tries = 0; server.firstRegistration() == 0; ++tries)
    {
        if (tries == 5000)
        {
            fail("no registration came");
        }
        usleep(1000);
    }
}

/* With the stack running, a configuration comes at some moment of a pass of a second. */
void reportNextPass(Report& report, const SinkServer (&servers)[3])
{
    double longest = 0;
    u32 pause = 130;
    for (const SinkServer& server : servers)
    {
        AppDelay(pause);
        pause += 290;
        const TPubSecPlatRegInfo info = configuration(server, kKeepaliveSeconds);
        const long long begin = wallNanoseconds();
        PubSecStackUpdateRegisterInfo(0, &info);
        waitForRegistration(server);
        longest = std::max(longest, static_cast<double>(server.firstRegistration() - begin) / 1e6);
    }
    report.add("configuration to registration, stack running", "a pass of the loop", longest / kPassMs, "",
               atMost(1.03, 2.06), "the longest of 3, at odd moments of the pass");
}

/* ---------------------------------------------------------------------------------------------------------- idle */

/* How often each task's thread has gone to sleep, by its name. */
std::map<std::string, long> sleepsByThread()
{
    std::map<std::string, long> sleeps;
    const std::unique_ptr<DIR, int (*)(DIR*)> tasks(opendir("/proc/self/task"), closedir);
    while (const dirent* const entry = tasks != nullptr ? readdir(tasks.get()) : nullptr)
    {
        const std::string path = std::string("/proc/self/task/") + entry->d_name + "/status";
        FILE* const file = entry->d_name[0] != '.' ? std::fopen(path.c_str(), "r") : nullptr;
        char line[256];
        std::string name;
        while (file != nullptr && std::fgets(line, sizeof(line), file) != nullptr)
        {
            char text[64];
            long count = 0;
            if (std::sscanf(line, "Name: %63s", text) == 1)
            {
                name = text;
            }
            else if (std::sscanf(line, "voluntary_ctxt_switches: %ld", &count) == 1)
            {
                sleeps[name] += count;
            }
        }
        if (file != nullptr)
        {
            std::fclose(file);
        }
    }
    return sleeps;
}

void reportIdle(Report& report, const SinkServer& server, bool isShort)
{
    const unsigned seconds = isShort ? 10 : 60;
    const size_t requests = server.requests();
    const std::map<std::string, long> before = sleepsByThread();
    const long long processor = processNanoseconds();
    AppDelay(seconds * 1000);
    const double used = static_cast<double>(processNanoseconds() - processor) / 1e9;
    std::map<std::string, long> sleeps = sleepsByThread();
    const std::string span = std::to_string(seconds) + " s";
    report.add("registered and idle for " + span + ", processor", "", used, "s", atMost(0.05, 0.2),
               std::to_string(server.requests() - requests) + " keepalives among it");
    long all = 0;
    std::string threads;
    for (auto& [name, count] : sleeps)
    {
        const auto found = before.find(name);
        count -= found != before.end() ? found->second : 0;
        if (name.compare(0, 9, "pubsecsta") == 0)
        {
            all += count;
            threads += (threads.empty() ? "" : ", ") + name + " " + std::to_string(count);
        }
    }
    report.add("  wake-ups in " + span, "", static_cast<double>(all), "", noLimit(), threads);
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = parseOptions(argc, argv);
    const SinkServer server;
    const SinkServer others[3];
    Report report(options);
    const long long begin = wallNanoseconds();
    startRegistered(server, kKeepaliveSeconds);
    report.add("init with a configuration to registration", "a pass of the loop",
               static_cast<double>(server.firstRegistration() - begin) / 1e6 / kPassMs, "", atMost(1, 2),
               "the first pass");
    reportIdle(report, server, options.isShort);
    reportNextPass(report, others);
    stopStack();
    return report.status();
}
