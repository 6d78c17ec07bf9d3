/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"
#include "viewlib/config.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace viewlib
{

/* HTTP digest access authentication (RFC 7616) as a server sees it, qop "auth". */
namespace digest
{

/* Parameters by name in lower case, values unquoted. */
using Parameters = std::map<std::string, std::string>;

/* Nothing when the value is not well-formed "Digest name=value, ..." or names a parameter twice. */
std::optional<Parameters> parse(std::string_view headerValue);

std::string hash(Algorithm algorithm, std::string_view text);
const char* name(Algorithm algorithm);

/* What a client with these parameters must send as "response"; without "qop" it is the form of RFC 2069. */
std::string expectedResponse(Algorithm algorithm, const Parameters& parameters, std::string_view method,
                             std::string_view password);

enum class Verdict
{
    Accepted,
    NoCredentials,
    Malformed, /* not a digest, or a parameter is missing or has a value that none may have */
    WrongUser,
    WrongRealm,
    WrongAlgorithm,
    WrongUri,
    QopMissing,
    WrongOpaque,
    WrongHash, /* a wrong password, as a rule */
    StaleNonce,
    Replayed
};
const char* describe(Verdict verdict);

using Time = std::chrono::system_clock::time_point;

/* What a challenge said: the credentials that answer it are held to that. */
struct Terms
{
    std::string realm;
    std::string opaque; /* empty: there was none */
    std::vector<Algorithm> algorithms;
};

/* The nonces that were handed out and the counts that were used with each. */
class Nonces
{
  public:
    Nonces(std::chrono::milliseconds lifetime, bool checkCount) : m_lifetime(lifetime), m_checkCount(checkCount)
    {
    }
    std::string issue(Time now, std::shared_ptr<const Terms> terms);
    std::shared_ptr<const Terms> termsOf(const std::string& nonce) const; /* null: it is not known */
    Verdict use(const std::string& nonce, std::uint32_t count, Time now);

  private:
    struct Issued
    {
        Time when;
        std::shared_ptr<const Terms> terms;
        std::set<std::uint32_t> counts;
    };
    void prune(Time now);

    const std::chrono::milliseconds m_lifetime;
    const bool m_checkCount;
    mutable std::mutex m_mutex;
    std::map<std::string, Issued> m_issued;
};

class Verifier
{
  public:
    explicit Verifier(const Config& config);

    /* The "WWW-Authenticate" values of a 401. */
    std::vector<std::string> challenges(bool stale, Time now, const ChallengeShape& shape = {});

    /* The "Authentication-Info" that gives the client a nonce to go on with. */
    std::string nextNonce(Time now);

    /* authorization is the header's value, empty when there was none. */
    Verdict verify(std::string_view authorization, std::string_view method, std::string_view target, Time now);

  private:
    Verdict check(const Parameters& parameters, std::string_view method, std::string_view target) const;

    const std::string m_user;
    const std::string m_password;
    const Strict m_strict;
    const std::shared_ptr<const Terms> m_terms; /* of a challenge without a shape */
    Nonces m_nonces;
};

} // namespace digest
} // namespace viewlib
