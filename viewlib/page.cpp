/* SPDX-License-Identifier: Apache-2.0 */
#include "page.h"

#include "embedded.h"

#include <algorithm>
#include <map>
#include <string>

namespace viewlib
{

namespace
{

const char* contentTypeOf(std::string_view name)
{
    const std::string_view suffix = name.substr(std::min(name.rfind('.'), name.size()));
    if (suffix == ".html")
    {
        return "text/html; charset=utf-8";
    }
    if (suffix == ".js")
    {
        return "text/javascript; charset=utf-8";
    }
    if (suffix == ".css")
    {
        return "text/css; charset=utf-8";
    }
    return suffix == ".svg" ? "image/svg+xml" : "application/octet-stream";
}

using Files = std::map<std::string, PageFile, std::less<>>;

Files readTable()
{
    Files files;
    for (std::size_t i = 0; i < embeddedFileCount; ++i)
    {
        const EmbeddedFile& file = embeddedFiles[i];
        const std::string path = std::string_view(file.name) == "index.html" ? "/" : std::string("/page/") + file.name;
        files[path] = {contentTypeOf(file.name), {reinterpret_cast<const char*>(file.bytes), file.length}};
    }
    return files;
}

} // namespace

const PageFile* pageFile(std::string_view path)
{
    static const Files files = readTable();
    const auto found = files.find(path);
    return found == files.end() ? nullptr : &found->second;
}

} // namespace viewlib
