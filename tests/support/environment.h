/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_TESTS_ENVIRONMENT_H
#define PUBSEC_TESTS_ENVIRONMENT_H

#include <cstdlib>

/* The number in an environment variable by which a test is made larger; 0 or no number is none. */
inline unsigned numberFromEnvironment(const char* variable, unsigned otherwise)
{
    const char* const text = std::getenv(variable);
    const unsigned long number = text != nullptr ? std::strtoul(text, nullptr, 10) : 0;
    return number != 0 ? static_cast<unsigned>(number) : otherwise;
}

#endif
