/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <string>
#include <vector>

namespace viewlib
{

/* Both as PEM. */
struct Certificate
{
    std::string key;
    std::string certificate;
};

/* A fresh self-signed pair for addresses, valid for ten years. Throws std::runtime_error. */
Certificate makeCertificate(const std::vector<std::string>& addresses);

/* The pair that is kept in a directory as "viewlib.key", which only its owner can read, and "viewlib.crt"; made when
 * there is none. Throws std::runtime_error, also for a pair that does not fit or has expired. */
Certificate keptCertificate(const std::string& directory, const std::vector<std::string>& addresses);

/* The SHA-256 of the certificate as browsers and openssl show it: "AB:CD:...". */
std::string fingerprint(const Certificate& certificate);

} // namespace viewlib
