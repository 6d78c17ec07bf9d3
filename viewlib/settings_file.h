/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <string>
#include <vector>

namespace viewlib
{

enum class SettingType
{
    Boolean,
    Integer,
    Text,
    Other /* a table, a date, a fraction, an array inside an array */
};

struct SettingValue
{
    SettingType type = SettingType::Other;
    std::string text;  /* as it would stand on the command line */
    std::string shown; /* as it stands in the file */
};

/* One key of a file. */
struct Setting
{
    std::string key;
    std::string place; /* "FILE:LINE" */
    bool isArray = false;
    std::vector<SettingValue> values; /* one, or the elements of the array */
};

/* The keys of a TOML file in the order of its lines. Throws UsageError. */
std::vector<Setting> readSettings(const std::string& file);

} // namespace viewlib
