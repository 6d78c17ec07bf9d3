/* SPDX-License-Identifier: Apache-2.0 */
#include "digest.h"

#include "text.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <stdexcept>

namespace viewlib::digest
{

namespace
{

constexpr std::size_t maxNonces = 65536;

bool isTokenCharacter(char c)
{
    static const std::string_view others = "!#$%&'*+-.^_`|~";
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || others.find(c) != std::string_view::npos;
}

void skipBlanks(std::string_view& text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
    {
        text.remove_prefix(1);
    }
}

std::string takeToken(std::string_view& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isTokenCharacter);
    const std::string token(text.begin(), end);
    text.remove_prefix(token.size());
    return token;
}

std::optional<std::string> takeQuoted(std::string_view& text)
{
    std::string value;
    for (std::size_t i = 1; i < text.size(); ++i)
    {
        if (text[i] == '"')
        {
            text.remove_prefix(i + 1);
            return value;
        }
        if (text[i] == '\\' && ++i == text.size())
        {
            break;
        }
        value += text[i];
    }
    return std::nullopt;
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return text;
}

std::string quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char c : text)
    {
        if (c == '"' || c == '\\')
        {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

std::string randomText(int bytes)
{
    unsigned char buffer[32];
    if (RAND_bytes(buffer, bytes) != 1)
    {
        throw std::runtime_error("no random numbers");
    }
    return toHex(buffer, static_cast<std::size_t>(bytes));
}

const std::string& get(const Parameters& parameters, const char* key)
{
    static const std::string none;
    const auto found = parameters.find(key);
    return found == parameters.end() ? none : found->second;
}

bool has(const Parameters& parameters, const char* key)
{
    return parameters.count(key) != 0;
}

std::optional<Algorithm> algorithmNamed(const std::string& text)
{
    if (text.empty() || sameNoCase(text, name(Algorithm::Md5)))
    {
        return Algorithm::Md5;
    }
    if (sameNoCase(text, name(Algorithm::Sha256)))
    {
        return Algorithm::Sha256;
    }
    return std::nullopt;
}

/* The nonce count is eight hexadecimal digits and starts at 1; 0 stands for anything else. */
std::uint32_t nonceCount(const std::string& text)
{
    if (text.size() != 8 || text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
    {
        return 0;
    }
    return static_cast<std::uint32_t>(std::strtoul(text.c_str(), nullptr, 16));
}

bool wellFormed(const Parameters& parameters)
{
    for (const char* key : {"username", "realm", "nonce", "uri", "response"})
    {
        if (!has(parameters, key))
        {
            return false;
        }
    }
    if (!has(parameters, "qop"))
    {
        return true;
    }
    return get(parameters, "qop") == "auth" && !get(parameters, "cnonce").empty() &&
           nonceCount(get(parameters, "nc")) != 0;
}

} // namespace

const char* name(Algorithm algorithm)
{
    return algorithm == Algorithm::Md5 ? "MD5" : "SHA-256";
}

const char* describe(Verdict verdict)
{
    switch (verdict)
    {
    case Verdict::Accepted:
        return "OK";
    case Verdict::NoCredentials:
        return "credentials are required";
    case Verdict::Malformed:
        return "the credentials are not a well-formed digest with qop auth";
    case Verdict::WrongUser:
        return "unknown user name";
    case Verdict::WrongRealm:
        return "the realm is not the one of the challenge";
    case Verdict::WrongAlgorithm:
        return "the algorithm is not one of those offered";
    case Verdict::WrongUri:
        return "the digest's uri is not the request target";
    case Verdict::QopMissing:
        return "a digest without qop is refused";
    case Verdict::WrongOpaque:
        return "opaque was not returned as it was sent";
    case Verdict::WrongHash:
        return "wrong response hash, as with a wrong password";
    case Verdict::StaleNonce:
        return "the nonce is no longer valid";
    case Verdict::Replayed:
        return "the nonce count was used before";
    }
    return "";
}

std::optional<Parameters> parse(std::string_view text)
{
    skipBlanks(text);
    if (!sameNoCase(takeToken(text), "Digest") || text.empty() || (text.front() != ' ' && text.front() != '\t'))
    {
        return std::nullopt;
    }
    Parameters parameters;
    for (;;)
    {
        skipBlanks(text);
        const std::string key = lower(takeToken(text));
        skipBlanks(text);
        if (key.empty() || text.empty() || text.front() != '=')
        {
            return std::nullopt;
        }
        text.remove_prefix(1);
        skipBlanks(text);
        const bool isQuoted = !text.empty() && text.front() == '"';
        const std::optional<std::string> value = isQuoted ? takeQuoted(text) : takeToken(text);
        if (!value || (!isQuoted && value->empty()) || !parameters.emplace(key, *value).second)
        {
            return std::nullopt;
        }
        skipBlanks(text);
        if (text.empty())
        {
            return parameters;
        }
        if (text.front() != ',')
        {
            return std::nullopt;
        }
        text.remove_prefix(1);
    }
}

std::string hash(Algorithm algorithm, std::string_view text)
{
    unsigned char bytes[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    const EVP_MD* method = algorithm == Algorithm::Md5 ? EVP_md5() : EVP_sha256();
    if (EVP_Digest(text.data(), text.size(), bytes, &length, method, nullptr) != 1)
    {
        throw std::runtime_error(std::string("no ") + name(algorithm));
    }
    return toHex(bytes, length);
}

std::string expectedResponse(Algorithm algorithm, const Parameters& parameters, std::string_view method,
                             std::string_view password)
{
    const std::string a1 = get(parameters, "username") + ':' + get(parameters, "realm") + ':' + std::string(password);
    const std::string a2 = std::string(method) + ':' + get(parameters, "uri");
    std::string middle = get(parameters, "nonce");
    if (has(parameters, "qop"))
    {
        middle += ':' + get(parameters, "nc") + ':' + get(parameters, "cnonce") + ':' + get(parameters, "qop");
    }
    return hash(algorithm, hash(algorithm, a1) + ':' + middle + ':' + hash(algorithm, a2));
}

std::string Nonces::issue(Time now, std::shared_ptr<const Terms> terms)
{
    const std::string nonce = randomText(16);
    const std::lock_guard<std::mutex> lock(m_mutex);
    prune(now);
    Issued& issued = m_issued[nonce];
    issued.when = now;
    issued.terms = std::move(terms);
    return nonce;
}

std::shared_ptr<const Terms> Nonces::termsOf(const std::string& nonce) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_issued.find(nonce);
    return found == m_issued.end() ? nullptr : found->second.terms;
}

/* A nonce that is gone is told to the client as stale, just like one whose time is over. */
void Nonces::prune(Time now)
{
    if (m_issued.size() < maxNonces)
    {
        return;
    }
    for (auto it = m_issued.begin(); it != m_issued.end();)
    {
        it = now - it->second.when > m_lifetime ? m_issued.erase(it) : std::next(it);
    }
    if (m_issued.size() >= maxNonces)
    {
        m_issued.clear();
    }
}

Verdict Nonces::use(const std::string& nonce, std::uint32_t count, Time now)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_issued.find(nonce);
    if (found == m_issued.end())
    {
        return Verdict::StaleNonce;
    }
    if (now - found->second.when > m_lifetime)
    {
        m_issued.erase(found);
        return Verdict::StaleNonce;
    }
    const bool fresh = found->second.counts.insert(count).second;
    return fresh || !m_checkCount ? Verdict::Accepted : Verdict::Replayed;
}

Verifier::Verifier(const Config& config)
    : m_user(config.user), m_password(config.password), m_strict(config.strict),
      m_terms(std::make_shared<const Terms>(Terms{config.realm, randomText(8), config.algorithms})),
      m_nonces(config.nonceLifetime, config.strict.nonceCount)
{
}

std::vector<std::string> Verifier::challenges(bool stale, Time now, const ChallengeShape& shape)
{
    Terms terms = *m_terms;
    terms.realm = shape.realm.value_or(terms.realm);
    terms.opaque = shape.opaque ? shape.opaqueText.value_or(terms.opaque) : std::string();
    terms.algorithms = !shape.algorithm           ? std::vector<Algorithm>{Algorithm::Md5}
                       : shape.algorithms.empty() ? terms.algorithms
                                                  : shape.algorithms;
    const auto shared = std::make_shared<const Terms>(std::move(terms));
    std::vector<std::string> values;
    for (const Algorithm algorithm : shared->algorithms)
    {
        const std::string named = shape.quotedAlgorithm ? quoted(name(algorithm)) : name(algorithm);
        values.push_back("Digest realm=" + quoted(shared->realm) + ", qop=\"auth\"" +
                         (shape.algorithm ? ", algorithm=" + named : "") + ", nonce=\"" + m_nonces.issue(now, shared) +
                         '"' + (shape.cnonce ? ", cnonce=\"" + randomText(8) + '"' : "") +
                         (shared->opaque.empty() ? "" : ", opaque=" + quoted(shared->opaque)) +
                         (stale ? ", stale=true" : ""));
    }
    return values;
}

std::string Verifier::nextNonce(Time now)
{
    return "nextnonce=\"" + m_nonces.issue(now, m_terms) + '"';
}

Verdict Verifier::verify(std::string_view authorization, std::string_view method, std::string_view target, Time now)
{
    if (authorization.empty())
    {
        return Verdict::NoCredentials;
    }
    const std::optional<Parameters> parameters = parse(authorization);
    if (!parameters || !wellFormed(*parameters))
    {
        return Verdict::Malformed;
    }
    const Verdict verdict = check(*parameters, method, target);
    if (verdict != Verdict::Accepted)
    {
        return verdict;
    }
    /* The nonce comes last: "stale" tells the client that all but the nonce was right. Without qop there is no count:
       count 0 lets such a nonce be used once. */
    return m_nonces.use(get(*parameters, "nonce"), nonceCount(get(*parameters, "nc")), now);
}

Verdict Verifier::check(const Parameters& parameters, std::string_view method, std::string_view target) const
{
    const std::shared_ptr<const Terms> issued = m_nonces.termsOf(get(parameters, "nonce"));
    const Terms& terms = issued ? *issued : *m_terms;
    const std::optional<Algorithm> algorithm = algorithmNamed(get(parameters, "algorithm"));
    if (!algorithm || std::find(terms.algorithms.begin(), terms.algorithms.end(), *algorithm) == terms.algorithms.end())
    {
        return Verdict::WrongAlgorithm;
    }
    if (m_strict.digestQop && !has(parameters, "qop"))
    {
        return Verdict::QopMissing;
    }
    if (get(parameters, "realm") != terms.realm)
    {
        return Verdict::WrongRealm;
    }
    if (m_strict.digestUri && get(parameters, "uri") != target)
    {
        return Verdict::WrongUri;
    }
    if (has(parameters, "opaque") && get(parameters, "opaque") != terms.opaque)
    {
        return Verdict::WrongOpaque;
    }
    if (get(parameters, "username") != m_user)
    {
        return Verdict::WrongUser;
    }
    const bool same = get(parameters, "response") == expectedResponse(*algorithm, parameters, method, m_password);
    return same ? Verdict::Accepted : Verdict::WrongHash;
}

} // namespace viewlib::digest
