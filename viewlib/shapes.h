/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"

#include <chrono>
#include <string>

namespace viewlib
{

/* The body with its statuses as the answer wants them; a body without statuses stays as it is. */
std::string shapeStatuses(const std::string& body, const Answer& answer);

/* The answer to Time as the shape wants it; now is the clock that clients are shown. */
std::string shapeTime(const std::string& body, const TimeShape& shape, std::chrono::system_clock::time_point now);

/* As a gzip file, not made smaller: what a reader has to do with it is the same. */
std::string gzip(const std::string& bytes);

} // namespace viewlib
