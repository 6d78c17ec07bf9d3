/* SPDX-License-Identifier: Apache-2.0 */
#include "settings_file.h"

#include "options.h"

#ifdef VIEWLIB_WITH_TOML

#include "files.h"

#define TOML_HEADER_ONLY 1
#include <toml++/toml.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <utility>

namespace viewlib
{

namespace
{

std::string read(const std::string& file)
{
    FileContent content = readFile(file);
    if (content.error != 0)
    {
        throw UsageError("cannot read \"" + file + "\": " + std::strerror(content.error));
    }
    return std::move(content.bytes);
}

std::string placeOf(const std::string& file, const toml::source_region& region)
{
    return file + ":" + std::to_string(region.begin.line);
}

std::string show(const toml::node& node)
{
    std::ostringstream text;
    node.visit([&text](const auto& value) { text << value; });
    return text.str();
}

SettingValue valueOf(const toml::node& node)
{
    SettingValue value;
    value.shown = show(node);
    value.text = value.shown;
    if (node.is_boolean())
    {
        value.type = SettingType::Boolean;
    }
    else if (const toml::value<std::int64_t>* number = node.as_integer())
    {
        value.type = SettingType::Integer;
        value.text = std::to_string(number->get()); /* 0x1F90 stands in the file as well */
    }
    else if (const toml::value<std::string>* text = node.as_string())
    {
        value.type = SettingType::Text;
        value.text = text->get();
    }
    return value;
}

Setting settingOf(const std::string& file, const toml::key& key, const toml::node& node)
{
    Setting setting;
    setting.key = std::string(key.str());
    setting.place = placeOf(file, key.source());
    if (const toml::array* array = node.as_array())
    {
        setting.isArray = true;
        for (const toml::node& element : *array)
        {
            setting.values.push_back(valueOf(element));
        }
    }
    else
    {
        setting.values.push_back(valueOf(node));
    }
    return setting;
}

} // namespace

std::vector<Setting> readSettings(const std::string& file)
{
    const std::string text = read(file);
    try
    {
        const toml::table table = toml::parse(text, file);
        std::vector<std::pair<toml::source_position, Setting>> found;
        for (const auto& [key, node] : table)
        {
            found.emplace_back(key.source().begin, settingOf(file, key, node));
        }
        std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<Setting> settings;
        settings.reserve(found.size());
        for (auto& [position, setting] : found)
        {
            settings.push_back(std::move(setting));
        }
        return settings;
    }
    catch (const toml::parse_error& error)
    {
        throw UsageError(placeOf(file, error.source()) + ": " + std::string(error.description()));
    }
}

} // namespace viewlib

#else

namespace viewlib
{

std::vector<Setting> readSettings(const std::string&)
{
    throw UsageError("--config: this viewlibd was built without toml++, so it reads no configuration file");
}

} // namespace viewlib

#endif
