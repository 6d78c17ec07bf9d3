/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "json.h"
#include "viewlib/fault.h"

#include <string>

namespace viewlib
{

/* A rule as the control API takes and shows it. Throws std::invalid_argument that names the member and what it may be. */
FaultRule ruleFromJson(const cJSON* tree);
Json ruleToJson(const FaultRule& rule);

/* "RESOURCE[@DEVICE][ xN| N%]=PRESET" of the command line. Throws std::invalid_argument. */
FaultRule ruleFromText(const std::string& text);

} // namespace viewlib
