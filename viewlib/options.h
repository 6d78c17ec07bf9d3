/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/config.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace viewlib
{

/* What the command line of viewlibd asks for. */
struct Options
{
    Config config;
    std::string portFile;
    bool verbose = false;
    bool help = false;
    bool version = false;
};

/* Says which option is wrong, and how. */
class UsageError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/* arguments without the program's name. Throws UsageError. */
Options parseOptions(const std::vector<std::string>& arguments);
std::string helpText();

} // namespace viewlib
