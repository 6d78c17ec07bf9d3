/* SPDX-License-Identifier: Apache-2.0 */
/* What the README shows or points at is in the tree. */
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace
{

std::string contentOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string readme()
{
    return contentOf(fs::path(SOURCE_FOLDER) / "README.md");
}

/* The texts between a line "```language" and the next "```". */
std::vector<std::string> blocks(const std::string& page, const std::string& language)
{
    std::vector<std::string> found;
    std::istringstream lines(page);
    bool inside = false;
    for (std::string line; std::getline(lines, line);)
    {
        if (inside && line == "```")
        {
            inside = false;
        }
        else if (inside)
        {
            found.back() += line + '\n';
        }
        else if (line == "```" + language)
        {
            inside = true;
            found.emplace_back();
        }
    }
    return found;
}

std::string allExamples()
{
    std::string all;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(SOURCE_FOLDER) / "examples"))
    {
        all += entry.is_regular_file() ? contentOf(entry.path()) : std::string();
    }
    return all;
}

/* Targets of links that are neither on the web nor on the page itself. */
std::vector<std::string> links(const std::string& page)
{
    std::vector<std::string> found;
    for (std::size_t at = page.find("]("); at != std::string::npos; at = page.find("](", at + 2))
    {
        const std::string target = page.substr(at + 2, page.find_first_of(")#", at + 2) - at - 2);
        if (!target.empty() && target.find("://") == std::string::npos)
        {
            found.push_back(target);
        }
    }
    return found;
}

} // namespace

TEST(Readme, CodeIsPartOfAnExample)
{
    const std::vector<std::string> snippets = blocks(readme(), "c");
    const std::string examples = allExamples();
    ASSERT_FALSE(snippets.empty());
    for (const std::string& snippet : snippets)
    {
        EXPECT_NE(examples.find(snippet), std::string::npos) << snippet;
    }
}

TEST(Readme, LinksLeadSomewhere)
{
    const std::vector<std::string> targets = links(readme());
    ASSERT_FALSE(targets.empty());
    for (const std::string& target : targets)
    {
        EXPECT_TRUE(fs::exists(fs::path(SOURCE_FOLDER) / target)) << target;
    }
}
