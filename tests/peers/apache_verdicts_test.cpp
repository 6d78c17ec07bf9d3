/* SPDX-License-Identifier: Apache-2.0 */
/* Apache's mod_auth_digest and this view library are given the same credentials, and judge them alike. */
#include "tests/support/session_apache.h"
#include "tests/viewlib/client.h"

#include <viewlib/server.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace
{

constexpr const char* kPath = "/VIID/System/Register";
constexpr const char* kBody = R"({"RegisterObject":{"DeviceID":"44010000001190000001"}})";

std::string md5(const std::string& text)
{
    unsigned char bytes[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    EVP_Digest(text.data(), text.size(), bytes, &length, EVP_md5(), nullptr);
    std::string hex;
    for (unsigned i = 0; i < length; ++i)
    {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
        hex += digits;
    }
    return hex;
}

/* What a client puts together. As it stands here it is right but for what the challenge gives. */
struct Credentials
{
    std::string method = "POST"; /* that is hashed */
    std::string password = "viewlib";
    std::string scheme = "Digest";
    std::map<std::string, std::string> parameters = {
        {"username", "admin"}, {"realm", "View Library"}, {"uri", kPath},     {"algorithm", "MD5"},
        {"qop", "auth"},       {"nc", "00000001"},        {"cnonce", "0a4f"},
    };
    std::string response; /* instead of the hash that belongs to all this */
    std::string more;     /* behind it, letter for letter */

    void remove(const char* name)
    {
        parameters.erase(name);
    }
    std::string hash() const
    {
        const auto get = [this](const char* name) {
            const auto found = parameters.find(name);
            return found == parameters.end() ? std::string() : found->second;
        };
        const std::string secret = md5(get("username") + ":" + get("realm") + ":" + password);
        const std::string request = md5(method + ":" + get("uri"));
        const std::string use = get("qop").empty() ? "" : get("nc") + ":" + get("cnonce") + ":" + get("qop") + ":";
        return md5(secret + ":" + get("nonce") + ":" + use + request);
    }
    std::string header() const
    {
        std::string text = "Authorization: " + scheme + " response=\"" + (response.empty() ? hash() : response) + '"';
        for (const auto& [name, value] : parameters)
        {
            const bool bare = name == "nc" || name == "qop" || name == "algorithm";
            text.append(", ").append(name).append("=").append(bare ? value : '"' + value + '"');
        }
        return text + more;
    }
};

struct Case
{
    std::string name;
    std::function<void(Credentials&)> spoil;
    const char* laxer = nullptr; /* why Apache lets it in and this server does not */
};

void set(Credentials& credentials, const char* name, const std::string& value)
{
    credentials.parameters[name] = value;
}

std::vector<Case> cases()
{
    return {
        {"right", [](Credentials&) {}},
        {"right, without algorithm", [](Credentials& c) { c.remove("algorithm"); }},
        {"wrong password", [](Credentials& c) { c.password = "wrong"; }},
        {"wrong hash", [](Credentials& c) { c.response = std::string(32, '0'); }},
        {"short hash", [](Credentials& c) { c.response = "0"; }},
        {"hash of another method", [](Credentials& c) { c.method = "GET"; }},
        {"unknown user", [](Credentials& c) { set(c, "username", "nobody"); }},
        {"empty user", [](Credentials& c) { set(c, "username", ""); }},
        {"no user", [](Credentials& c) { c.remove("username"); }},
        {"another realm", [](Credentials& c) { set(c, "realm", "Elsewhere"); }},
        {"no realm", [](Credentials& c) { c.remove("realm"); }},
        {"another uri", [](Credentials& c) { set(c, "uri", "/VIID/System/UnRegister"); }},
        {"uri of a parent", [](Credentials& c) { set(c, "uri", "/"); }},
        {"uri with a query", [](Credentials& c) { set(c, "uri", std::string(kPath) + "?a=b"); }},
        {"no uri", [](Credentials& c) { c.remove("uri"); }},
        {"invented nonce", [](Credentials& c) { set(c, "nonce", "0123456789abcdef0123456789abcdef"); }},
        {"altered nonce", [](Credentials& c) { c.parameters["nonce"].back() ^= 1; }},
        {"empty nonce", [](Credentials& c) { set(c, "nonce", ""); }},
        {"no nonce", [](Credentials& c) { c.remove("nonce"); }},
        {"unknown algorithm", [](Credentials& c) { set(c, "algorithm", "SHA-512"); }},
        {"algorithm that was not offered", [](Credentials& c) { set(c, "algorithm", "SHA-256"); }},
        {"unknown qop", [](Credentials& c) { set(c, "qop", "auth-conf"); }},
        {"no cnonce", [](Credentials& c) { c.remove("cnonce"); }},
        {"no count", [](Credentials& c) { c.remove("nc"); }},
        {"basic credentials", [](Credentials& c) { c.scheme = "Basic"; }},
        {"no scheme that is known", [](Credentials& c) { c.scheme = "Digested"; }},
        {"qop missing",
         [](Credentials& c) {
             c.remove("qop");
             c.remove("cnonce");
             c.remove("nc");
         }},
        {"count of zero", [](Credentials& c) { set(c, "nc", "00000000"); },
         "Apache keeps no counts as long as AuthDigestNcCheck is off, as it is by default"},
    };
}

bool isGood(long status)
{
    return status >= 200 && status < 300;
}

class ApacheVerdicts : public ::testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        if (Apache::installed())
        {
            apache = std::make_unique<Apache>();
        }
        viewlib::Config config;
        config.realm = "View Library";
        server = std::make_unique<viewlib::Server>(config);
        server->start();
    }
    static void TearDownTestSuite()
    {
        apache.reset();
        server.reset();
    }
    void SetUp() override
    {
        if (!apache)
        {
            GTEST_SKIP() << "Debian's package apache2-bin is not installed";
        }
        ASSERT_TRUE(apache->running()) << apache->log();
    }

    static std::string urlOf(std::uint16_t port)
    {
        return "http://127.0.0.1:" + std::to_string(port) + kPath;
    }
    static client::Result post(std::uint16_t port, const std::string& authorization)
    {
        client::Call call;
        call.url = urlOf(port);
        call.body = kBody;
        call.headers = {"User-Identify: 44010000001190000001", "Content-Type: application/VIID+JSON"};
        if (!authorization.empty())
        {
            call.headers.push_back(authorization);
        }
        return client::perform(call);
    }

    /* What a client that got the server's challenge begins with. */
    static Credentials challenged(std::uint16_t port)
    {
        Credentials credentials;
        for (const std::string& line : post(port, "").headers)
        {
            for (const char* name : {"nonce", "opaque"})
            {
                const std::string label = std::string(" ") + name + "=\"";
                const std::size_t at = line.find(label);
                if (at != std::string::npos)
                {
                    const std::size_t from = at + label.size();
                    credentials.parameters[name] = line.substr(from, line.find('"', from) - from);
                }
            }
        }
        EXPECT_NE(credentials.parameters["nonce"], "") << "port " << port;
        return credentials;
    }
    static long verdict(std::uint16_t port, const Case& tried)
    {
        Credentials credentials = challenged(port);
        tried.spoil(credentials);
        return post(port, credentials.header()).status;
    }

    static std::unique_ptr<Apache> apache;
    static std::unique_ptr<viewlib::Server> server;
};

std::unique_ptr<Apache> ApacheVerdicts::apache;
std::unique_ptr<viewlib::Server> ApacheVerdicts::server;

TEST_F(ApacheVerdicts, AreTheSame)
{
    for (const Case& tried : cases())
    {
        const long theirs = verdict(apache->port(), tried);
        const long ours = verdict(server->port(), tried);
        EXPECT_LT(theirs, 500) << tried.name;
        EXPECT_LT(ours, 500) << tried.name;
        if (tried.laxer != nullptr)
        {
            EXPECT_TRUE(isGood(theirs) && !isGood(ours))
                << tried.name << ": Apache " << theirs << ", here " << ours << ", though " << tried.laxer;
            continue;
        }
        EXPECT_EQ(isGood(theirs), isGood(ours)) << tried.name << ": Apache " << theirs << ", here " << ours;
        EXPECT_EQ(isGood(ours), tried.name.compare(0, 5, "right") == 0) << tried.name;
    }
}

/* The second use of a count. Apache lets it in: without AuthDigestNcCheck it keeps no counts. */
TEST_F(ApacheVerdicts, ReplaysAreLetInByApacheAlone)
{
    const std::string theirs = challenged(apache->port()).header();
    EXPECT_EQ(post(apache->port(), theirs).status, 200);
    EXPECT_EQ(post(apache->port(), theirs).status, 200);
    const std::string ours = challenged(server->port()).header();
    EXPECT_EQ(post(server->port(), ours).status, 200);
    EXPECT_EQ(post(server->port(), ours).status, 401);
}

/* A nonce is good for several requests, as long as the count goes on. */
TEST_F(ApacheVerdicts, ANonceIsUsedAgain)
{
    for (const std::uint16_t port : {apache->port(), server->port()})
    {
        Credentials credentials = challenged(port);
        for (const char* count : {"00000001", "00000002", "00000003", "0000000a"})
        {
            credentials.parameters["nc"] = count;
            EXPECT_EQ(post(port, credentials.header()).status, 200) << count;
        }
    }
}

/* What one server handed out is nothing to the other. */
TEST_F(ApacheVerdicts, NoncesOfOthersAreRefused)
{
    const Credentials theirs = challenged(apache->port());
    const Credentials ours = challenged(server->port());
    EXPECT_EQ(post(apache->port(), ours.header()).status, 401);
    EXPECT_EQ(post(server->port(), theirs.header()).status, 401);
}

} // namespace
