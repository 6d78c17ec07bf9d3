/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is fuzzed: everything that reads what others wrote, and the builders, whose records a host may fill with
 * anything. Each target aborts where a reader breaks a promise that the sanitizers cannot see.
 */
#ifndef PUBSEC_FUZZ_TARGETS_H
#define PUBSEC_FUZZ_TARGETS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz
{

struct Target
{
    const char* name;
    void (*run)(const std::string& input);
};

extern const Target kTargets[];
extern const size_t kTargetCount;

/* Null where there is none of that name. */
const Target* targetNamed(const std::string& name);

} // namespace fuzz

#endif
