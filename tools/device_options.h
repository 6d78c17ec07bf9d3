/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace device
{

/* Where a face lies in the picture, in pixels. */
struct Box
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/* What the command line asks for. */
struct Options
{
    bool https = false;
    std::string host = "127.0.0.1";
    unsigned port = 8080;
    std::string user = "admin";
    std::string password = "viewlib";
    std::string deviceId = "34020000001190000001";
    std::string picture = "samples/portrait.jpg";
    Box face = {153, 14, 301, 188};
    unsigned waitSeconds = 20;
    std::string logFile; /* empty: no log */
    bool tour = false;
    std::string rowsFile; /* empty: none */
    bool help = false;

    std::string serverUrl() const;
};

/* Says which option is wrong, what was given and what is allowed. */
class UsageError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/* arguments without the program's name. Throws UsageError. */
Options parseOptions(const std::vector<std::string>& arguments);
std::string helpText();

} // namespace device
