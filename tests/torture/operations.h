/* SPDX-License-Identifier: Apache-2.0 */
/* Every exported function with arguments that take it through all of its steps, and what it may answer when they fail. */
#ifndef PUBSEC_TESTS_TORTURE_OPERATIONS_H
#define PUBSEC_TESTS_TORTURE_OPERATIONS_H

#include <functional>
#include <ostream>
#include <set>
#include <vector>

#include <pubsecstack/types.h>

namespace torture
{

struct Operation
{
    const char* name;          /* an exported function's, or of a course of calls in brackets */
    u32 good;                  /* result of an undisturbed call */
    std::set<u32> disturbed;   /* what else its header states for a failure below it */
    std::function<u32()> call; /* may be called again and again */
};

inline void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

const std::vector<Operation>& operations();

} // namespace torture

#endif
