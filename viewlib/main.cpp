/* SPDX-License-Identifier: Apache-2.0 */
#include "options.h"
#include "text.h"
#include "viewlib/server.h"

#include <pthread.h>
#include <signal.h>

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

void printStart(const viewlib::Server& server, const viewlib::Config& config)
{
    const viewlib::Config defaults;
    const bool standard = config.password == defaults.password;
    const std::string credentials = config.user.empty() ? "registration needs no credentials"
                                                        : "user \"" + config.user + "\", password " +
                                                              (standard ? '"' + config.password + '"' : "as given");
    const std::string place = config.storage == ":memory:" ? "memory" : '"' + config.storage + '"';
    std::printf("viewlibd: listening on %s, %s, data in %s\n", server.url().c_str(), credentials.c_str(),
                place.c_str());
    std::fflush(stdout);
    const bool local = config.address.compare(0, 4, "127.") == 0 || config.address == "::1";
    if (!local && standard)
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

void serve(viewlib::Options options)
{
    /* Blocked before the server starts its threads, so that only sigwait gets them. */
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    options.config.maxExchanges = 0; /* nobody here reads the log */
    if (options.verbose)
    {
        options.config.observer = printExchange;
    }
    viewlib::Server server(options.config);
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
