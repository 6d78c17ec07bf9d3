/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "resources.h"
#include "store.h"
#include "viewlib/answer.h"

#include <optional>

namespace viewlib
{

/* What is stored, as a GET of its resource shows it; nothing when there is no such thing. */
std::optional<Answer> showStored(const Store& store, const ResourceMatch& match);

} // namespace viewlib
