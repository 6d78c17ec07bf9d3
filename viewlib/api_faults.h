/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "api.h"
#include "viewlib/fault.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace viewlib
{

/* What is done with rules, with all that hangs on it. */
struct FaultControl
{
    std::function<std::uint64_t(FaultRule)> add;
    std::function<bool(std::uint64_t)> remove;
    std::function<void()> clear;
    std::function<std::vector<Fault>()> all;
};

/* Presets and faults. */
void addFaultEndpoints(Api& api, const FaultControl& control);

} // namespace viewlib
