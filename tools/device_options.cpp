/* SPDX-License-Identifier: Apache-2.0 */
#include "device_options.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <functional>

#include <pubsecstack/pubsecstack.h>

namespace device
{

namespace
{

constexpr std::size_t c_deviceIdLength = 20;
/* The session's shortest URL buffer cuts what is longer than this. */
constexpr std::size_t c_urlLength = 63;
constexpr const char* c_longestPath = "/VIID/System/Keepalive";
constexpr unsigned c_longestWait = 600;

[[noreturn]] void refuse(const std::string& option, const std::string& value, const std::string& rule)
{
    throw UsageError("--" + option + " \"" + value + "\": " + rule);
}

bool isNumber(const std::string& value, long& number)
{
    const auto parsed = std::from_chars(value.data(), value.data() + value.size(), number);
    return parsed.ec == std::errc() && parsed.ptr == value.data() + value.size();
}

unsigned number(const std::string& option, const std::string& value, unsigned least, unsigned most)
{
    long result = 0;
    if (!isNumber(value, result) || result < static_cast<long>(least) || result > static_cast<long>(most))
    {
        refuse(option, value, "expected a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return static_cast<unsigned>(result);
}

/* fieldSize is that of the record's field, which keeps a place for the terminator. */
std::string lengthRule(std::size_t fieldSize)
{
    return "expected 1 to " + std::to_string(fieldSize - 1) + " characters";
}

bool fits(const std::string& value, std::size_t fieldSize)
{
    return !value.empty() && value.size() < fieldSize;
}

std::string text(const std::string& option, const std::string& value, std::size_t fieldSize)
{
    if (!fits(value, fieldSize))
    {
        refuse(option, value, lengthRule(fieldSize));
    }
    return value;
}

/* A password is never repeated in a message. */
std::string password(const std::string& value)
{
    if (!fits(value, sizeof(TPubSecPlatRegInfo::achPassword)))
    {
        throw UsageError("--password: " + lengthRule(sizeof(TPubSecPlatRegInfo::achPassword)));
    }
    return value;
}

std::string host(const std::string& option, const std::string& value)
{
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-';
    };
    if (value.empty() || !std::all_of(value.begin(), value.end(), allowed))
    {
        refuse(option, value, "expected an IPv4 address or a host name");
    }
    return text(option, value, sizeof(TPubSecPlatRegInfo::achServerIP));
}

std::string deviceId(const std::string& option, const std::string& value)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (value.size() != c_deviceIdLength || !std::all_of(value.begin(), value.end(), isDigit))
    {
        refuse(option, value, "expected " + std::to_string(c_deviceIdLength) + " digits");
    }
    return value;
}

Box box(const std::string& option, const std::string& value)
{
    long edges[4] = {};
    std::size_t from = 0;
    bool good = std::count(value.begin(), value.end(), ',') == 3;
    for (std::size_t i = 0; i < 4 && good; ++i)
    {
        const std::size_t end = std::min(value.find(',', from), value.size());
        good = isNumber(value.substr(from, end - from), edges[i]) && edges[i] >= 0 && edges[i] <= 65535;
        from = end + 1;
    }
    if (!good || edges[0] >= edges[2] || edges[1] >= edges[3])
    {
        refuse(option, value, "expected LEFT,TOP,RIGHT,BOTTOM from 0 to 65535, LEFT below RIGHT and TOP below BOTTOM");
    }
    return {static_cast<int>(edges[0]), static_cast<int>(edges[1]), static_cast<int>(edges[2]),
            static_cast<int>(edges[3])};
}

/* http[s]://host[:port][/] */
void server(Options& options, const std::string& option, const std::string& value)
{
    const std::size_t colon = value.find("://");
    const std::string scheme = value.substr(0, colon);
    if (colon == std::string::npos || (scheme != "http" && scheme != "https"))
    {
        refuse(option, value, "expected http://HOST[:PORT] or https://HOST[:PORT]");
    }
    std::string rest = value.substr(colon + 3);
    if (!rest.empty() && rest.back() == '/')
    {
        rest.pop_back();
    }
    const std::size_t port = rest.rfind(':');
    options.https = scheme == "https";
    options.host = host(option, rest.substr(0, port));
    options.port = options.https ? 443 : 80;
    if (port != std::string::npos)
    {
        options.port = number(option, rest.substr(port + 1), 1, 65535);
    }
}

struct Option
{
    const char* name;
    const char* value; /* what it is called in the help; null: the option has none */
    const char* help;
    std::function<void(Options&, const std::string& option, const std::string& value)> apply;
};

/* In the order of the help. */
const std::vector<Option>& table()
{
    using Text = const std::string&;
    static const std::vector<Option> options = {
        {"server", "URL", "http://HOST[:PORT] or https://HOST[:PORT]; the same as the next three together", server},
        {"host", "HOST", "the server's IPv4 address or name (127.0.0.1)",
         [](Options& o, Text n, Text v) { o.host = host(n, v); }},
        {"port", "N", "its port (8080)", [](Options& o, Text n, Text v) { o.port = number(n, v, 1, 65535); }},
        {"https", nullptr, "speak HTTPS; the server's certificate is not verified",
         [](Options& o, Text, Text) { o.https = true; }},
        {"user", "NAME", "user name to register with (admin)",
         [](Options& o, Text n, Text v) { o.user = text(n, v, sizeof(TPubSecPlatRegInfo::achUserName)); }},
        {"password", "TEXT", "its password (viewlib)", [](Options& o, Text, Text v) { o.password = password(v); }},
        {"device-id", "ID", "this device's identifier, 20 digits (34020000001190000001)",
         [](Options& o, Text n, Text v) { o.deviceId = deviceId(n, v); }},
        {"picture", "FILE", "the JPEG to report (samples/portrait.jpg)",
         [](Options& o, Text n, Text v) { o.picture = text(n, v, 4096); }},
        {"face", "L,T,R,B", "where the face lies in it: left, top, right, bottom (153,14,301,188)",
         [](Options& o, Text n, Text v) { o.face = box(n, v); }},
        {"wait", "SECONDS", "how long each step of the session may take (20)",
         [](Options& o, Text n, Text v) { o.waitSeconds = number(n, v, 1, c_longestWait); }},
        {"log", "FILE", "write the library's log there",
         [](Options& o, Text n, Text v) { o.logFile = text(n, v, 4096); }},
        {"tour", nullptr, "report one of everything that the library can report",
         [](Options& o, Text, Text) { o.tour = true; }},
        {"rows", "FILE", "write the table of operations there, its fields separated by tabs",
         [](Options& o, Text n, Text v) { o.rowsFile = text(n, v, 4096); }},
        {"help", nullptr, "print this and exit (-h)", [](Options& o, Text, Text) { o.help = true; }},
    };
    return options;
}

const Option& find(const std::string& argument)
{
    std::string name = argument == "-h" ? "help" : std::string();
    if (argument.compare(0, 2, "--") == 0)
    {
        name = argument.substr(2, argument.find('=') - 2);
    }
    const auto found =
        std::find_if(table().begin(), table().end(), [&](const Option& option) { return option.name == name; });
    if (found == table().end())
    {
        throw UsageError("unknown argument \"" + argument + "\"");
    }
    return *found;
}

void checkUrlLength(const Options& options)
{
    const std::size_t length = options.serverUrl().size() + std::strlen(c_longestPath);
    if (length > c_urlLength)
    {
        refuse("host", options.host,
               "too long by " + std::to_string(length - c_urlLength) + " characters: " + options.serverUrl() +
                   c_longestPath + " may have " + std::to_string(c_urlLength));
    }
}

} // namespace

std::string Options::serverUrl() const
{
    return std::string(https ? "https" : "http") + "://" + host + ":" + std::to_string(port);
}

Options parseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string& argument = arguments[i];
        const Option& option = find(argument);
        const std::size_t equals = argument.find('=');
        std::string value;
        if (option.value == nullptr && equals != std::string::npos)
        {
            throw UsageError(std::string("--") + option.name + " takes no value");
        }
        if (option.value != nullptr && equals == std::string::npos && i + 1 == arguments.size())
        {
            throw UsageError(std::string("--") + option.name + " needs a value: " + option.value);
        }
        if (option.value != nullptr)
        {
            value = equals != std::string::npos ? argument.substr(equals + 1) : arguments[++i];
        }
        option.apply(options, option.name, value);
    }
    checkUrlLength(options);
    return options;
}

std::string helpText()
{
    std::string help =
        "Usage: pubsec-device [OPTION]...\n"
        "Registers at a view library as a device, keeps its clock by it, reports a picture with the face "
        "in it, and leaves.\n\n";
    for (const Option& option : table())
    {
        std::string left = std::string("--") + option.name + (option.value == nullptr ? "" : " ");
        left += option.value == nullptr ? "" : option.value;
        left.resize(std::max<std::size_t>(left.size() + 2, 20), ' ');
        help += "  " + left + option.help + '\n';
    }
    return help + "\nExit status: 0 all was delivered, 1 something failed, 2 wrong arguments.\n";
}

} // namespace device
