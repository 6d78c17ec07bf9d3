/* SPDX-License-Identifier: Apache-2.0 */
#include "viewlib/digest.h"

#include <gtest/gtest.h>

using namespace viewlib;
using namespace viewlib::digest;
using namespace std::chrono_literals;

namespace
{

/* The example of RFC 7616, section 3.9.1. */
const Parameters rfcParameters = {{"username", "Mufasa"},
                                  {"realm", "http-auth@example.org"},
                                  {"uri", "/dir/index.html"},
                                  {"nonce", "7ypf/xlj9XXwfDPEoM4URrv/xwf94BcCAzFZH4GiTo0v"},
                                  {"nc", "00000001"},
                                  {"cnonce", "f2/wE4q74E6zIJEtWaHKaf5wv/H5QzzpXusqGemxURZJ"},
                                  {"qop", "auth"}};

TEST(DigestHash, KnowsTheDigestsOfAnEmptyText)
{
    EXPECT_EQ(hash(Algorithm::Md5, ""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(hash(Algorithm::Sha256, ""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(DigestResponse, AgreesWithTheExampleOfRfc7616ForMd5)
{
    EXPECT_EQ(expectedResponse(Algorithm::Md5, rfcParameters, "GET", "Circle of Life"),
              "8ca523f5e9506fed4657c9700eebdbec");
}

TEST(DigestResponse, AgreesWithTheExampleOfRfc7616ForSha256)
{
    EXPECT_EQ(expectedResponse(Algorithm::Sha256, rfcParameters, "GET", "Circle of Life"),
              "753927fa0e85d155564e2e272a28d1802ca10daf4496794697cf8db5856cb6c1");
}

/* The example of RFC 2069 with the erratum's response. */
TEST(DigestResponse, LeavesOutTheCountsWithoutQop)
{
    const Parameters parameters = {{"username", "Mufasa"},
                                   {"realm", "testrealm@host.com"},
                                   {"nonce", "dcd98b7102dd2f0e8b11d0f600bfb0c093"},
                                   {"uri", "/dir/index.html"}};
    EXPECT_EQ(expectedResponse(Algorithm::Md5, parameters, "GET", "CircleOfLife"), "1949323746fe6a43ef61f9606e7febea");
}

TEST(DigestParse, ReadsTokensAndQuotedTexts)
{
    const auto parameters = parse("Digest username=\"a \\\"b\\\\\", NC=00000001 , qop=auth,uri=\"/x?y=1,2\"");
    ASSERT_TRUE(parameters);
    const Parameters expected = {{"username", "a \"b\\"}, {"nc", "00000001"}, {"qop", "auth"}, {"uri", "/x?y=1,2"}};
    EXPECT_EQ(*parameters, expected);
}

TEST(DigestParse, TakesTheSchemeInAnyCase)
{
    EXPECT_TRUE(parse("dIGEST a=b"));
}

TEST(DigestParse, RefusesWhatIsNotWellFormed)
{
    for (const char* text : {"", "Digest", "Digest ", "Basic a=b", "Digesta=b", "Digest a", "Digest a=", "Digest a=b,",
                             "Digest a=b c=d", "Digest a=\"b", "Digest a=\"b\\", "Digest =b", "Digest a=b, A=c"})
    {
        EXPECT_FALSE(parse(text)) << text;
    }
}

/* A client that answers a challenge by the book, and whose answer a test can then spoil. */
class VerifierTest : public ::testing::Test
{
  protected:
    VerifierTest()
    {
        config.user = "camera";
        config.password = "secret";
        config.realm = "a \"realm\"";
        config.nonceLifetime = 60s;
    }

    Verifier& verifier()
    {
        if (!m_verifier)
        {
            m_verifier = std::make_unique<Verifier>(config);
        }
        return *m_verifier;
    }

    Parameters challenged(std::size_t which = 0)
    {
        const Parameters challenge = parse(verifier().challenges(false, now).at(which)).value();
        return {{"username", "camera"},
                {"realm", challenge.at("realm")},
                {"nonce", challenge.at("nonce")},
                {"opaque", challenge.at("opaque")},
                {"algorithm", challenge.at("algorithm")},
                {"uri", target},
                {"qop", "auth"},
                {"nc", "00000001"},
                {"cnonce", "0123456789abcdef"}};
    }

    static std::string quote(const std::string& text)
    {
        std::string quoted;
        for (const char c : text)
        {
            quoted += c == '"' ? "\\\"" : std::string(1, c);
        }
        return '"' + quoted + '"';
    }

    static std::string header(const Parameters& parameters)
    {
        std::string text = "Digest ";
        for (const auto& [key, value] : parameters)
        {
            text += (text.size() > 7 ? ", " : "") + key + "=" + quote(value);
        }
        return text;
    }

    Parameters sign(Parameters parameters, const std::string& password = "secret")
    {
        const Algorithm algorithm = parameters["algorithm"] == "SHA-256" ? Algorithm::Sha256 : Algorithm::Md5;
        parameters["response"] = expectedResponse(algorithm, parameters, "POST", password);
        return parameters;
    }

    Verdict verify(const Parameters& parameters)
    {
        return verifier().verify(header(parameters), "POST", target, now);
    }

    Config config;
    Time now = Time(std::chrono::hours(500000));
    const std::string target = "/VIID/System/Register";

  private:
    std::unique_ptr<Verifier> m_verifier;
};

TEST_F(VerifierTest, ChallengeCarriesRealmQopAlgorithmNonceAndOpaque)
{
    const std::string challenge = verifier().challenges(false, now).at(0);
    EXPECT_EQ(challenge.substr(0, 62), "Digest realm=\"a \\\"realm\\\"\", qop=\"auth\", algorithm=MD5, nonce=\"");
    EXPECT_EQ(challenge.find("stale"), std::string::npos);
    EXPECT_NE(verifier().challenges(true, now).at(0).find(", stale=true"), std::string::npos);
}

TEST_F(VerifierTest, EveryChallengeHasANonceOfItsOwn)
{
    EXPECT_NE(challenged()["nonce"], challenged()["nonce"]);
}

TEST_F(VerifierTest, AcceptsTheRightAnswer)
{
    EXPECT_EQ(verify(sign(challenged())), Verdict::Accepted);
}

TEST_F(VerifierTest, OffersSha256BesideMd5InTheOrderOfTheSettings)
{
    config.algorithms = {Algorithm::Sha256, Algorithm::Md5};
    EXPECT_EQ(challenged(0)["algorithm"], "SHA-256");
    EXPECT_EQ(challenged(1)["algorithm"], "MD5");
    EXPECT_EQ(verify(sign(challenged(0))), Verdict::Accepted);
    EXPECT_EQ(verify(sign(challenged(1))), Verdict::Accepted);
}

TEST_F(VerifierTest, RefusesAnAlgorithmThatWasNotOffered)
{
    Parameters parameters = challenged();
    parameters["algorithm"] = "SHA-256";
    EXPECT_EQ(verify(sign(parameters)), Verdict::WrongAlgorithm);
    parameters["algorithm"] = "MD5-sess";
    EXPECT_EQ(verify(sign(parameters)), Verdict::WrongAlgorithm);
}

TEST_F(VerifierTest, TakesAMissingAlgorithmForMd5)
{
    Parameters parameters = challenged();
    parameters.erase("algorithm");
    EXPECT_EQ(verify(sign(parameters)), Verdict::Accepted);
}

TEST_F(VerifierTest, RefusesAWrongPassword)
{
    EXPECT_EQ(verify(sign(challenged(), "Secret")), Verdict::WrongHash);
}

TEST_F(VerifierTest, RefusesAHashMadeForAnotherMethod)
{
    EXPECT_EQ(verifier().verify(header(sign(challenged())), "GET", target, now), Verdict::WrongHash);
}

TEST_F(VerifierTest, RefusesAnUnknownUser)
{
    Parameters parameters = challenged();
    parameters["username"] = "Camera";
    EXPECT_EQ(verify(sign(parameters)), Verdict::WrongUser);
}

TEST_F(VerifierTest, RefusesAnotherRealm)
{
    Parameters parameters = challenged();
    parameters["realm"] = "a realm";
    EXPECT_EQ(verify(sign(parameters)), Verdict::WrongRealm);
}

TEST_F(VerifierTest, RefusesAnOpaqueThatWasChanged)
{
    Parameters parameters = challenged();
    parameters["opaque"] += "0";
    EXPECT_EQ(verify(sign(parameters)), Verdict::WrongOpaque);
}

TEST_F(VerifierTest, RefusesAUriThatIsNotTheTarget)
{
    Parameters parameters = challenged();
    parameters["uri"] = "/VIID/System/Register?";
    EXPECT_EQ(verify(sign(parameters)), Verdict::WrongUri);
}

TEST_F(VerifierTest, LooksAwayFromTheUriWhenTold)
{
    config.strict.digestUri = false;
    Parameters parameters = challenged();
    parameters["uri"] = "/VIID/System/Register?";
    EXPECT_EQ(verify(sign(parameters)), Verdict::Accepted);
}

Parameters withoutQop(Parameters parameters)
{
    for (const char* key : {"qop", "nc", "cnonce"})
    {
        parameters.erase(key);
    }
    return parameters;
}

TEST_F(VerifierTest, RefusesADigestWithoutQop)
{
    EXPECT_EQ(verify(sign(withoutQop(challenged()))), Verdict::QopMissing);
}

TEST_F(VerifierTest, TakesADigestWithoutQopOncePerNonceWhenTold)
{
    config.strict.digestQop = false;
    const Parameters parameters = sign(withoutQop(challenged()));
    EXPECT_EQ(verify(parameters), Verdict::Accepted);
    EXPECT_EQ(verify(parameters), Verdict::Replayed);
}

TEST_F(VerifierTest, RefusesAReplayedNonceCount)
{
    Parameters parameters = challenged();
    EXPECT_EQ(verify(sign(parameters)), Verdict::Accepted);
    EXPECT_EQ(verify(sign(parameters)), Verdict::Replayed);
    parameters["nc"] = "00000002";
    EXPECT_EQ(verify(sign(parameters)), Verdict::Accepted);
}

TEST_F(VerifierTest, TakesCountsOutOfOrder)
{
    Parameters parameters = challenged();
    parameters["nc"] = "0000000A";
    EXPECT_EQ(verify(sign(parameters)), Verdict::Accepted);
    parameters["nc"] = "00000009";
    EXPECT_EQ(verify(sign(parameters)), Verdict::Accepted);
    parameters["nc"] = "0000000a";
    EXPECT_EQ(verify(sign(parameters)), Verdict::Replayed);
}

TEST_F(VerifierTest, AWrongHashDoesNotUseUpTheCount)
{
    const Parameters parameters = challenged();
    EXPECT_EQ(verify(sign(parameters, "wrong")), Verdict::WrongHash);
    EXPECT_EQ(verify(sign(parameters)), Verdict::Accepted);
}

TEST_F(VerifierTest, LooksAwayFromTheCountWhenTold)
{
    config.strict.nonceCount = false;
    const Parameters parameters = sign(challenged());
    EXPECT_EQ(verify(parameters), Verdict::Accepted);
    EXPECT_EQ(verify(parameters), Verdict::Accepted);
}

TEST_F(VerifierTest, ANonceIsStaleAfterItsLifetime)
{
    const Parameters first = sign(challenged());
    const Parameters second = sign(challenged());
    now += 60s;
    EXPECT_EQ(verify(first), Verdict::Accepted);
    now += 1ms;
    EXPECT_EQ(verify(second), Verdict::StaleNonce);
}

TEST_F(VerifierTest, AForeignNonceIsStaleOnlyWithTheRightPassword)
{
    Parameters parameters = challenged();
    parameters["nonce"] = "made up";
    EXPECT_EQ(verify(sign(parameters)), Verdict::StaleNonce);
    EXPECT_EQ(verify(sign(parameters, "wrong")), Verdict::WrongHash);
}

TEST_F(VerifierTest, NoHeaderIsNoCredentials)
{
    EXPECT_EQ(verifier().verify("", "POST", target, now), Verdict::NoCredentials);
}

TEST_F(VerifierTest, RefusesWhatIsNotACompleteDigest)
{
    EXPECT_EQ(verifier().verify("Basic Y2FtZXJhOnNlY3JldA==", "POST", target, now), Verdict::Malformed);
    for (const char* key : {"username", "realm", "nonce", "uri", "response", "nc", "cnonce"})
    {
        Parameters parameters = sign(challenged());
        parameters.erase(key);
        EXPECT_EQ(verify(parameters), Verdict::Malformed) << key;
    }
}

TEST_F(VerifierTest, RefusesCountsAndQopsThatAreNone)
{
    for (const char* count : {"00000000", "1", "000000001", "0000000g", ""})
    {
        Parameters parameters = challenged();
        parameters["nc"] = count;
        EXPECT_EQ(verify(sign(parameters)), Verdict::Malformed) << count;
    }
    Parameters parameters = challenged();
    parameters["qop"] = "auth-int";
    EXPECT_EQ(verify(sign(parameters)), Verdict::Malformed);
}

} // namespace
