/* SPDX-License-Identifier: Apache-2.0 */
#include "options.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <functional>

namespace viewlib
{

namespace
{

constexpr std::uint16_t defaultPort = 8080;
constexpr long long maxSeconds = 366LL * 24 * 60 * 60;

struct Option
{
    const char* name;
    const char* value; /* what it is called in the help; null: the option has none */
    const char* help;
    std::function<void(Options&, const std::string&)> apply;
};

[[noreturn]] void refuse(const char* option, const std::string& value, const std::string& why)
{
    throw UsageError(std::string("--") + option + " \"" + value + "\": " + why);
}

long long number(const char* option, const std::string& value, long long least, long long most)
{
    long long result = 0;
    const auto parsed = std::from_chars(value.data(), value.data() + value.size(), result);
    if (parsed.ec != std::errc() || parsed.ptr != value.data() + value.size() || result < least || result > most)
    {
        refuse(option, value, "expected a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return result;
}

std::string address(const char* option, const std::string& value)
{
    unsigned char bytes[sizeof(in6_addr)];
    if (inet_pton(AF_INET, value.c_str(), bytes) != 1 && inet_pton(AF_INET6, value.c_str(), bytes) != 1)
    {
        refuse(option, value, "expected an IPv4 or IPv6 address such as 127.0.0.1 or ::1");
    }
    return value;
}

constexpr std::size_t maxText = 255;

bool isText(const std::string& value)
{
    const auto printable = [](char c) { return static_cast<unsigned char>(c) >= ' ' && c != 0x7F; };
    return !value.empty() && value.size() <= maxText && std::all_of(value.begin(), value.end(), printable);
}

std::string textRule()
{
    return "expected 1 to " + std::to_string(maxText) + " characters without control characters";
}

std::string text(const char* option, const std::string& value)
{
    if (!isText(value))
    {
        refuse(option, value, textRule());
    }
    return value;
}

/* Never repeated in a message. */
std::string password(const std::string& value)
{
    if (!isText(value))
    {
        throw UsageError("--password: " + textRule());
    }
    return value;
}

/* The user name ends at the first colon of what is hashed. */
std::string userName(const char* option, const std::string& value)
{
    if (value.find(':') != std::string::npos)
    {
        refuse(option, value, "a user name has no colon");
    }
    return text(option, value);
}

std::vector<Algorithm> algorithms(const char* option, const std::string& value)
{
    std::vector<Algorithm> result;
    for (std::size_t from = 0; from <= value.size();)
    {
        const std::size_t end = std::min(value.find(',', from), value.size());
        const std::string name = value.substr(from, end - from);
        if (name != "md5" && name != "sha-256")
        {
            refuse(option, value, "expected md5, sha-256, or both with a comma between them");
        }
        result.push_back(name == "md5" ? Algorithm::Md5 : Algorithm::Sha256);
        from = end + 1;
    }
    return result;
}

struct Leniency
{
    const char* name;
    bool Strict::*field;
    const char* help;
};

constexpr Leniency leniencies[] = {
    {"unregistered", &Strict::registration, "requests of devices that are not registered"},
    {"identity", &Strict::identity, "a DeviceID that is not the one of User-Identify"},
    {"uri", &Strict::digestUri, "a digest made for another uri"},
    {"no-qop", &Strict::digestQop, "a digest without qop"},
    {"replay", &Strict::nonceCount, "a nonce count that was used before"},
    {"line-breaks", &Strict::lineBreaks, "line breaks in base64"},
};

void allow(const char* option, Strict& strict, const std::string& value)
{
    std::string names;
    for (const Leniency& leniency : leniencies)
    {
        if (value == leniency.name)
        {
            strict.*leniency.field = false;
            return;
        }
        names += (names.empty() ? "" : ", ") + std::string(leniency.name);
    }
    refuse(option, value, "expected one of " + names);
}

/* In the order of the help. */
const std::vector<Option>& table()
{
    static const std::vector<Option> options = {
        {"listen", "ADDRESS", "IPv4 or IPv6 address to listen on (127.0.0.1)",
         [](Options& o, const std::string& v) { o.config.address = address("listen", v); }},
        {"port", "N", "port, 0 for any free one (8080)",
         [](Options& o, const std::string& v) {
             o.config.port = static_cast<std::uint16_t>(number("port", v, 0, 65535));
         }},
        {"port-file", "FILE", "write the port to FILE once the server listens",
         [](Options& o, const std::string& v) { o.portFile = text("port-file", v); }},
        {"https", nullptr, "serve HTTPS with a self-signed certificate made at the start",
         [](Options& o, const std::string&) { o.config.https = true; }},
        {"user", "NAME", "user name that registers (admin)",
         [](Options& o, const std::string& v) { o.config.user = userName("user", v); }},
        {"password", "TEXT", "its password (viewlib)",
         [](Options& o, const std::string& v) { o.config.password = password(v); }},
        {"no-auth", nullptr, "let devices register without credentials",
         [](Options& o, const std::string&) { o.config.user.clear(); }},
        {"realm", "TEXT", "realm of the digest (viewlib)",
         [](Options& o, const std::string& v) { o.config.realm = text("realm", v); }},
        {"algorithms", "LIST", "md5, sha-256 or both, in the order of the challenges (md5)",
         [](Options& o, const std::string& v) { o.config.algorithms = algorithms("algorithms", v); }},
        {"nonce-lifetime", "SECONDS", "after which a nonce is stale (300)",
         [](Options& o, const std::string& v) {
             o.config.nonceLifetime = std::chrono::seconds(number("nonce-lifetime", v, 1, maxSeconds));
         }},
        {"registration-lifetime", "SECONDS", "without a keepalive, 0 for ever (270)",
         [](Options& o, const std::string& v) {
             o.config.registrationLifetime = std::chrono::seconds(number("registration-lifetime", v, 0, maxSeconds));
         }},
        {"server-id", "ID", "VIIDServerID in the answer to Time (44000000005030000001)",
         [](Options& o, const std::string& v) { o.config.serverId = text("server-id", v); }},
        {"clock-offset", "SECONDS", "what the clock shown to clients is ahead, or behind when negative (0)",
         [](Options& o, const std::string& v) {
             o.config.clockOffset = std::chrono::seconds(number("clock-offset", v, -maxSeconds, maxSeconds));
         }},
        {"data", "DIR", "keep everything in DIR; without it all is kept in memory and lost at the end",
         [](Options& o, const std::string& v) { o.config.storage = text("data", v); }},
        {"max-body", "BYTES", "larger bodies get 413 (104857600)",
         [](Options& o, const std::string& v) {
             o.config.maxBody = static_cast<std::size_t>(number("max-body", v, 1, 1LL << 29));
         }},
        {"allow", "WHAT", "let WHAT pass (see below); may be given several times",
         [](Options& o, const std::string& v) { allow("allow", o.config.strict, v); }},
        {"strict-media-type", nullptr, "refuse documents that are not application/VIID+JSON",
         [](Options& o, const std::string&) { o.config.strict.mediaType = true; }},
        {"strict-reading", nullptr, "show what is stored to registered devices alone",
         [](Options& o, const std::string&) { o.config.strict.reading = true; }},
        {"verbose", nullptr, "print a line for each request (-v)",
         [](Options& o, const std::string&) { o.verbose = true; }},
        {"help", nullptr, "print this and exit (-h)", [](Options& o, const std::string&) { o.help = true; }},
        {"version", nullptr, "print the version and exit", [](Options& o, const std::string&) { o.version = true; }},
    };
    return options;
}

const Option& find(const std::string& name, const std::string& argument)
{
    const auto found =
        std::find_if(table().begin(), table().end(), [&](const Option& option) { return option.name == name; });
    if (found == table().end())
    {
        throw UsageError("unknown argument \"" + argument + "\"");
    }
    return *found;
}

std::string optionName(const std::string& argument)
{
    if (argument == "-v")
    {
        return "verbose";
    }
    if (argument == "-h")
    {
        return "help";
    }
    return argument.substr(0, 2) == "--" ? argument.substr(2, argument.find('=') - 2) : std::string();
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    options.config.port = defaultPort;
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string& argument = arguments[i];
        const Option& option = find(optionName(argument), argument);
        const std::size_t equals = argument.find('=');
        if (option.value == nullptr && equals != std::string::npos)
        {
            throw UsageError(std::string("--") + option.name + " takes no value");
        }
        if (option.value == nullptr)
        {
            option.apply(options, {});
        }
        else if (equals != std::string::npos)
        {
            option.apply(options, argument.substr(equals + 1));
        }
        else if (++i < arguments.size())
        {
            option.apply(options, arguments[i]);
        }
        else
        {
            throw UsageError(std::string("--") + option.name + " needs a value: " + option.value);
        }
    }
    return options;
}

std::string helpText()
{
    std::string help =
        "Usage: viewlibd [OPTION]...\n"
        "A view library for development: takes registrations and records, keeps them, and is strict.\n\n";
    const auto line = [&help](const std::string& left, const char* right) {
        help += "  " + left + std::string(left.size() < 32 ? 32 - left.size() : 1, ' ') + right + '\n';
    };
    for (const Option& option : table())
    {
        line(std::string("--") + option.name + (option.value == nullptr ? "" : std::string(" ") + option.value),
             option.help);
    }
    help += "\nWHAT of --allow:\n";
    for (const Leniency& leniency : leniencies)
    {
        line(leniency.name, leniency.help);
    }
    return help + "\nExit status: 0 stopped by SIGINT or SIGTERM, 1 failed, 2 wrong arguments.\n";
}

} // namespace viewlib
