/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/config.h"
#include "viewlib/fault.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace viewlib
{

/* What the command line of viewlibd, and the file that it names, ask for. */
struct Options
{
    Config config;
    std::vector<std::string> listen; /* empty: both loopback addresses, as far as the machine has them */
    std::string portFile;
    std::vector<FaultRule> faults;
    bool noAuth = false;
    bool verbose = false;
    bool help = false;
    bool version = false;
};

/* Says which option or which line of the file is wrong, and how. */
class UsageError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/* arguments without the program's name. What they leave open is taken from the file of --config. Throws UsageError. */
Options parseOptions(const std::vector<std::string>& arguments);
std::string helpText();

} // namespace viewlib
