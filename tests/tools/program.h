/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <string>
#include <vector>

/* How a program ended, and what it printed. */
struct Ended
{
    int code = -1; /* -1: by a signal, or it could not be started */
    std::string output;
    std::string errors;
};

Ended runProgram(const std::string& program, std::vector<std::string> arguments);

std::string contentOf(const std::string& file);
