/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace viewlib
{

/*
 * Which requests are answered with something else, and with what. Of several rules that fit a request, those with a
 * count go before the others, an exact resource before a beginning, the older before the newer. A request that a share
 * leaves out goes to the next rule.
 */
struct FaultRule
{
    std::string device = "*";           /* as "User-Identify" names it; "*": any */
    std::string resource = "*";         /* a path, or the beginning of one followed by '*' */
    std::string method = "*";           /* "*": any */
    std::optional<std::uint64_t> count; /* so many requests that fit; none: until it is removed */
    std::optional<double> share; /* of the requests that fit, above 0 and up to 1, evenly spread: of 0.25 each fourth */
    std::string preset;          /* the name of the preset it was made from; empty: of none */
    Answer answer;
};

/* A rule that was laid down, and what came of it. */
struct Fault
{
    std::uint64_t number = 0; /* from 1 */
    FaultRule rule;
    std::uint64_t hits = 0;
    std::optional<std::uint64_t> left; /* of its count; 0: used up */
};

/* A rule under a name: what is met in the field. */
struct Preset
{
    std::string name;
    std::string title;
    std::string titleZh;
    FaultRule rule;
};

const std::vector<Preset>& presets();
FaultRule preset(const std::string& name); /* throws std::invalid_argument when there is no such preset */

} // namespace viewlib
