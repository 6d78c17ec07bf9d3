/* SPDX-License-Identifier: Apache-2.0 */
#include "listener.h"
#include "options.h"
#include "text.h"
#include "viewlib/server.h"

#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

enum ExitCode
{
    Good = 0,
    Failed = 1,
    WrongUsage = 2
};

/* What clients send is printed without the characters that steer a terminal. */
std::string printable(std::string text)
{
    for (char& c : text)
    {
        c = static_cast<unsigned char>(c) < ' ' || c == 0x7F ? '?' : c;
    }
    return text;
}

void printExchange(const viewlib::Exchange& exchange)
{
    const std::string time = viewlib::localTime(exchange.received);
    const std::string outcome = exchange.status != 0 ? std::to_string(exchange.status) : "no answer";
    std::printf(
        "%s #%llu %s %s %s %s %llu bytes -> %s\n", time.c_str(), static_cast<unsigned long long>(exchange.number),
        exchange.peer.c_str(), printable(exchange.device()).c_str(), printable(exchange.method).c_str(),
        printable(exchange.target).c_str(), static_cast<unsigned long long>(exchange.bodyLength), outcome.c_str());
    std::fflush(stdout);
}

std::string join(const std::vector<std::string>& texts)
{
    std::string joined;
    for (const std::string& text : texts)
    {
        joined += (joined.empty() ? "" : " and ") + text;
    }
    return joined;
}

bool isLoopback(const std::string& address)
{
    return address.compare(0, 4, "127.") == 0 || address == "::1";
}

void printStart(const viewlib::Server& server, const viewlib::Config& config)
{
    const viewlib::Config defaults;
    const bool standard = config.password == defaults.password;
    const bool memory = config.storage == defaults.storage;
    const std::string credentials = config.user.empty() ? "registration needs no credentials"
                                                        : "user \"" + config.user + "\", password " +
                                                              (standard ? '"' + config.password + '"' : "as given");
    const std::string place = memory ? "memory" : '"' + config.storage + '"';
    std::printf("viewlibd: listening on %s, %s, data in %s\n", join(server.urls()).c_str(), credentials.c_str(),
                place.c_str());
    if (config.https)
    {
        std::printf("viewlibd: certificate %s, SHA-256 fingerprint %s\n", memory ? "made for this run" : "kept there",
                    server.certificateFingerprint().c_str());
    }
    std::fflush(stdout);
    const bool local =
        isLoopback(config.address) && std::all_of(config.moreAddresses.begin(), config.moreAddresses.end(), isLoopback);
    if (!local && standard && !config.user.empty())
    {
        std::fprintf(stderr, "viewlibd: warning: other machines can reach it and the password is the standard one\n");
    }
}

/* Renamed into place, so that a script that sees the file sees the whole number. */
void writePort(const std::string& name, unsigned port)
{
    const std::string draft = name + ".new";
    std::ofstream file(draft, std::ios::trunc);
    file << port << '\n';
    file.close();
    if (!file || std::rename(draft.c_str(), name.c_str()) != 0)
    {
        throw std::runtime_error("cannot write the port to \"" + name + "\"");
    }
}

/* A connection takes a descriptor, and so does a picture that is written. */
void allowConnections(unsigned most)
{
    rlimit files{};
    const rlim_t wanted = rlim_t(4) * most + 256;
    if (getrlimit(RLIMIT_NOFILE, &files) == 0 && files.rlim_cur < wanted)
    {
        files.rlim_cur = std::min(wanted, files.rlim_max);
        setrlimit(RLIMIT_NOFILE, &files);
    }
}

void setAddresses(viewlib::Options& options)
{
    std::vector<std::string>& all = options.listen;
    if (all.empty())
    {
        all = {"127.0.0.1"};
        if (viewlib::canListenOn("::1"))
        {
            all.push_back("::1");
        }
    }
    options.config.address = all.front();
    options.config.moreAddresses.assign(all.begin() + 1, all.end());
}

void serve(viewlib::Options options)
{
    /* Blocked before the server starts its threads, so that only sigwait gets them. */
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    setAddresses(options);
    allowConnections(options.config.maxConnections);
    options.config.maxExchanges = 0; /* nobody here reads the log */
    if (options.verbose)
    {
        options.config.observer = printExchange;
    }
    viewlib::Server server(options.config);
    for (const viewlib::FaultRule& fault : options.faults)
    {
        server.addFault(fault);
    }
    server.start();
    printStart(server, options.config);
    if (!options.portFile.empty())
    {
        writePort(options.portFile, server.port());
    }
    int received = 0;
    sigwait(&signals, &received);
    server.stop();
    std::printf("viewlibd: stopped\n");
}

} // namespace

int main(int count, char** arguments)
{
    try
    {
        const viewlib::Options options =
            viewlib::parseOptions(std::vector<std::string>(arguments + (count > 0 ? 1 : 0), arguments + count));
        if (options.help)
        {
            std::fputs(viewlib::helpText().c_str(), stdout);
            return Good;
        }
        if (options.version)
        {
            std::printf("viewlibd %s\n", VIEWLIB_VERSION);
            return Good;
        }
        serve(options);
        return Good;
    }
    catch (const viewlib::UsageError& error)
    {
        std::fprintf(stderr, "viewlibd: %s\nTry viewlibd --help.\n", error.what());
        return WrongUsage;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "viewlibd: %s\n", error.what());
        return Failed;
    }
}
