/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <string>

namespace viewlib
{

/* Both as PEM. */
struct Certificate
{
    std::string key;
    std::string certificate;
};

/* A fresh self-signed pair for an address, valid for a year. Throws std::runtime_error. */
Certificate makeCertificate(const std::string& address);

} // namespace viewlib
