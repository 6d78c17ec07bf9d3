/* SPDX-License-Identifier: Apache-2.0 */
#include "options.h"

#include "fault_json.h"
#include "settings_file.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <functional>
#include <set>
#include <stdexcept>

namespace viewlib
{

namespace
{

constexpr std::uint16_t defaultPort = 8080;
constexpr long long maxSeconds = 366LL * 24 * 60 * 60;
constexpr long long mostKept = 1LL << 50;
constexpr long long mostDays = 36500;

/* What is wrong with a value; whoever knows where it stands says so. */
struct Wrong
{
    std::string why;
};

/*
 * An option of the command line, and a key of the file. Every value is handed on as the text that it is on the command
 * line, a flag as "true" or "false".
 */
struct Option
{
    const char* name;
    const char* value; /* what it is called in the help; null: a flag */
    const char* help;
    SettingType type; /* in the file */
    std::string expected;
    std::function<void(Options&, const std::string&)> apply; /* throws Wrong */
    bool repeatable = false;                                 /* in the file: an array may stand for it */
    bool commandLineOnly = false;
    bool secret = false; /* its value is never repeated */
};

Option number(const char* name, const char* value, const char* help, long long least, long long most,
              const std::function<void(Options&, long long)>& set)
{
    const std::string expected = "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
    const auto apply = [=](Options& options, const std::string& text) {
        long long parsed = 0;
        const auto end = std::from_chars(text.data(), text.data() + text.size(), parsed);
        if (end.ec != std::errc() || end.ptr != text.data() + text.size() || parsed < least || parsed > most)
        {
            throw Wrong{"expected " + expected};
        }
        set(options, parsed);
    };
    return {name, value, help, SettingType::Integer, expected, apply};
}

Option flag(const char* name, const char* help, const std::function<void(Options&, bool)>& set)
{
    const char* const expected = "true or false";
    const auto apply = [=](Options& options, const std::string& text) {
        if (text != "true" && text != "false")
        {
            throw Wrong{std::string("expected ") + expected};
        }
        set(options, text == "true");
    };
    return {name, nullptr, help, SettingType::Boolean, expected, apply};
}

constexpr std::size_t maxText = 255;

std::string textRule()
{
    return "1 to " + std::to_string(maxText) + " characters without control characters";
}

void requireText(const std::string& value)
{
    const auto printable = [](char c) { return static_cast<unsigned char>(c) >= ' ' && c != 0x7F; };
    if (value.empty() || value.size() > maxText || !std::all_of(value.begin(), value.end(), printable))
    {
        throw Wrong{"expected " + textRule()};
    }
}

/* Further demands are made by set, which throws Wrong. */
Option text(const char* name, const char* value, const char* help,
            const std::function<void(Options&, const std::string&)>& set)
{
    const auto apply = [set](Options& options, const std::string& given) {
        requireText(given);
        set(options, given);
    };
    return {name, value, help, SettingType::Text, textRule(), apply};
}

/* One of a few words or of another form of its own, which "expected" tells. */
Option word(const char* name, const char* value, const char* help, const std::string& expected,
            std::function<void(Options&, const std::string&)> apply)
{
    return {name, value, help, SettingType::Text, expected, std::move(apply)};
}

Option repeatable(Option option)
{
    option.repeatable = true;
    return option;
}

Option secret(Option option)
{
    option.secret = true;
    return option;
}

Option commandLineOnly(Option option)
{
    option.commandLineOnly = true;
    return option;
}

const char* const addressRule = "an IPv4 or IPv6 address such as 127.0.0.1 or ::1";

void addAddress(Options& options, const std::string& value)
{
    unsigned char bytes[sizeof(in6_addr)];
    if (inet_pton(AF_INET, value.c_str(), bytes) != 1 && inet_pton(AF_INET6, value.c_str(), bytes) != 1)
    {
        throw Wrong{std::string("expected ") + addressRule};
    }
    options.listen.push_back(value);
}

/* The user name ends at the first colon of what is hashed. */
void setUser(Options& options, const std::string& value)
{
    if (value.find(':') != std::string::npos)
    {
        throw Wrong{"a user name has no colon"};
    }
    options.config.user = value;
    options.noAuth = false;
}

const char* const algorithmsRule = "md5, sha-256, or both with a comma between them";

void setAlgorithms(Options& options, const std::string& value)
{
    std::vector<Algorithm> result;
    for (std::size_t from = 0; from <= value.size();)
    {
        const std::size_t end = std::min(value.find(',', from), value.size());
        const std::string name = value.substr(from, end - from);
        if (name != "md5" && name != "sha-256")
        {
            throw Wrong{std::string("expected ") + algorithmsRule};
        }
        result.push_back(name == "md5" ? Algorithm::Md5 : Algorithm::Sha256);
        from = end + 1;
    }
    options.config.algorithms = result;
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
    {"data-prefix", &Strict::dataPrefix, "base64 after \"data:...,\""},
    {"documents", &Strict::documents, "members that are missing or not in the standard's form"},
    {"media-type", &Strict::mediaType, "documents that are not application/VIID+JSON"},
};

std::string leniencyRule()
{
    std::string names;
    for (const Leniency& leniency : leniencies)
    {
        names += (names.empty() ? "" : ", ") + std::string(leniency.name);
    }
    return "one of " + names;
}

void allow(Options& options, const std::string& value)
{
    const auto found = std::find_if(std::begin(leniencies), std::end(leniencies),
                                    [&](const Leniency& leniency) { return value == leniency.name; });
    if (found == std::end(leniencies))
    {
        throw Wrong{"expected " + leniencyRule()};
    }
    options.config.strict.*found->field = false;
}

const char* const faultRule = "RESOURCE[@DEVICE][ xN| N%]=PRESET";

void addFault(Options& options, const std::string& value)
{
    try
    {
        options.faults.push_back(ruleFromText(value));
    }
    catch (const std::invalid_argument& error)
    {
        throw Wrong{error.what()};
    }
}

/* In the order of the help. */
const std::vector<Option>& table()
{
    using std::chrono::seconds;
    static const std::vector<Option> options = {
        commandLineOnly(text("config", "FILE", "read the options that are not given here from a TOML file",
                             [](Options&, const std::string&) {})),
        repeatable(word("listen", "ADDRESS", "address to listen on, may be given several times (127.0.0.1 and ::1)",
                        addressRule, addAddress)),
        number("port", "N", "port, 0 for any free one (8080)", 0, 65535,
               [](Options& o, long long n) { o.config.port = static_cast<std::uint16_t>(n); }),
        text("port-file", "FILE", "write the port to FILE once the server listens",
             [](Options& o, const std::string& v) { o.portFile = v; }),
        flag("https", "serve HTTPS with a self-signed certificate, made once and kept with the data",
             [](Options& o, bool on) { o.config.https = on; }),
        text("user", "NAME", "user name that registers (admin)", setUser),
        secret(text("password", "TEXT", "its password (viewlib)",
                    [](Options& o, const std::string& v) { o.config.password = v; })),
        flag("no-auth", "let devices register without credentials", [](Options& o, bool on) { o.noAuth = on; }),
        text("realm", "TEXT", "realm of the digest (viewlib)",
             [](Options& o, const std::string& v) { o.config.realm = v; }),
        word("algorithms", "LIST", "md5, sha-256 or both, in the order of the challenges (md5)", algorithmsRule,
             setAlgorithms),
        number("nonce-lifetime", "SECONDS", "after which a nonce is stale (300)", 1, maxSeconds,
               [](Options& o, long long n) { o.config.nonceLifetime = seconds(n); }),
        number("registration-lifetime", "SECONDS", "without a keepalive, 0 for ever (270)", 0, maxSeconds,
               [](Options& o, long long n) { o.config.registrationLifetime = seconds(n); }),
        text("server-id", "ID", "VIIDServerID in the answer to Time (44000000005030000001)",
             [](Options& o, const std::string& v) { o.config.serverId = v; }),
        number("clock-offset", "SECONDS", "what the clock shown to clients is ahead, or behind when negative (0)",
               -maxSeconds, maxSeconds, [](Options& o, long long n) { o.config.clockOffset = seconds(n); }),
        text("data", "DIR", "keep everything in DIR; without it all is kept in memory and lost at the end",
             [](Options& o, const std::string& v) { o.config.storage = v; }),
        number("max-body", "BYTES", "larger bodies get 413 (104857600)", 1, 1LL << 29,
               [](Options& o, long long n) { o.config.maxBody = static_cast<std::size_t>(n); }),
        number("max-connections", "N", "at once; further ones are closed (512)", 1, 16384,
               [](Options& o, long long n) { o.config.maxConnections = static_cast<unsigned>(n); }),
        number("header-timeout", "SECONDS", "for the headers of the first request of a connection (30)", 1, maxSeconds,
               [](Options& o, long long n) { o.config.headerTimeout = seconds(n); }),
        number("idle-timeout", "SECONDS", "between requests, and for a body of which nothing comes (300)", 1,
               maxSeconds, [](Options& o, long long n) { o.config.idleTimeout = seconds(n); }),
        number("keep-bytes", "BYTES", "remove the oldest of what is kept beyond so much, 0 for no limit (0)", 0,
               mostKept, [](Options& o, long long n) { o.config.keepBytes = static_cast<std::uint64_t>(n); }),
        number("keep-days", "DAYS", "remove what is older, 0 for no limit (0)", 0, mostDays,
               [](Options& o, long long n) { o.config.keepFor = std::chrono::hours(24 * n); }),
        repeatable(
            word("allow", "WHAT", "let WHAT pass (see below); may be given several times", leniencyRule(), allow)),
        repeatable(word("fault", "RULE", "spoil answers (see below); may be given several times", faultRule, addFault)),
        flag("strict-media-type", "refuse documents that are not application/VIID+JSON (the default)",
             [](Options& o, bool on) { o.config.strict.mediaType = on; }),
        flag("strict-reading", "show what is stored to registered devices alone",
             [](Options& o, bool on) { o.config.strict.reading = on; }),
        flag("verbose", "print a line for each request (-v)", [](Options& o, bool on) { o.verbose = on; }),
        commandLineOnly(flag("help", "print this and exit (-h)", [](Options& o, bool on) { o.help = on; })),
        commandLineOnly(flag("version", "print the version and exit", [](Options& o, bool on) { o.version = on; })),
    };
    return options;
}

const Option* find(const std::string& name)
{
    const auto found =
        std::find_if(table().begin(), table().end(), [&](const Option& option) { return option.name == name; });
    return found == table().end() ? nullptr : &*found;
}

/* One option as it was given on the command line. */
struct Given
{
    const Option* option;
    std::string value;
};

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

std::vector<Given> split(const std::vector<std::string>& arguments)
{
    std::vector<Given> given;
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string& argument = arguments[i];
        const Option* option = find(optionName(argument));
        if (option == nullptr)
        {
            throw UsageError("unknown argument \"" + argument + "\"");
        }
        const std::size_t equals = argument.find('=');
        if (equals != std::string::npos)
        {
            given.push_back({option, argument.substr(equals + 1)});
        }
        else if (option->value == nullptr)
        {
            given.push_back({option, "true"});
        }
        else if (++i < arguments.size())
        {
            given.push_back({option, arguments[i]});
        }
        else
        {
            throw UsageError(std::string("--") + option->name + " needs a value: " + option->value);
        }
    }
    return given;
}

void apply(Options& options, const Given& given)
{
    try
    {
        given.option->apply(options, given.value);
    }
    catch (const Wrong& wrong)
    {
        const std::string value = given.option->secret ? "" : " \"" + given.value + '"';
        throw UsageError(std::string("--") + given.option->name + value + ": " + wrong.why);
    }
}

std::string keys()
{
    std::string names;
    for (const Option& option : table())
    {
        if (!option.commandLineOnly)
        {
            names += (names.empty() ? "" : ", ") + std::string(option.name);
        }
    }
    return names;
}

void apply(Options& options, const Setting& setting)
{
    const Option* option = find(setting.key);
    if (option == nullptr || option->commandLineOnly)
    {
        throw UsageError(setting.place + ": unknown key \"" + setting.key + "\": expected one of " + keys());
    }
    for (const SettingValue& value : setting.values)
    {
        const std::string shown = option->secret ? setting.key : setting.key + " = " + value.shown;
        try
        {
            if (value.type != option->type || (setting.isArray && !option->repeatable))
            {
                throw Wrong{"expected " + option->expected + (option->repeatable ? ", or an array of such" : "")};
            }
            option->apply(options, value.text);
        }
        catch (const Wrong& wrong)
        {
            throw UsageError(setting.place + ": " + shown + ": " + wrong.why);
        }
    }
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments)
{
    const std::vector<Given> given = split(arguments);
    std::set<std::string> named;
    std::string file;
    for (const Given& one : given)
    {
        named.insert(one.option->name);
        file = one.option->name == std::string("config") ? one.value : file;
    }
    Options options;
    options.config.port = defaultPort;
    options.config.strict.documents = true; /* tests in C++ send fragments, devices do not */
    options.config.strict.mediaType = true;
    for (const Setting& setting : named.count("config") != 0 ? readSettings(file) : std::vector<Setting>())
    {
        Options overruled; /* the command line goes before the file, which has to be right all the same */
        apply(named.count(setting.key) == 0 ? options : overruled, setting);
    }
    for (const Given& one : given)
    {
        apply(options, one);
    }
    if (options.noAuth)
    {
        options.config.user.clear();
    }
    return options;
}

/* In lines as wide as the rest of the help. */
static std::string presetNames()
{
    constexpr std::size_t widest = 100;
    std::string lines;
    std::string line = " ";
    for (const Preset& each : presets())
    {
        if (line.size() + each.name.size() + 2 > widest)
        {
            lines += line + '\n';
            line = " ";
        }
        line += ' ' + each.name;
    }
    return lines + line + '\n';
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
    help +=
        std::string("\nRULE of --fault: ") + faultRule +
        "\n  RESOURCE is a path, the beginning of one followed by *, or *. Without xN (the next N requests) or N% (so\n"
        "  many of them, evenly spread) it holds until it is removed. PRESET is one of\n" +
        presetNames();
    return help + "\nA flag takes \"=false\", too. The keys of the TOML file are the names above, without \"--\".\n"
                  "Exit status: 0 stopped by SIGINT or SIGTERM, 1 failed, 2 wrong arguments or configuration.\n";
}

} // namespace viewlib
