// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/guide/Pages.h"

#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace ZSpace::Testing {

namespace fs = std::filesystem;

namespace {

std::vector<Block> blocksOf(const std::string& text)
{
    static const std::regex comment("<!-- ([a-z]+): ([^ ]+)(?: ([^ ]+))? -->");
    std::vector<Block> blocks;
    std::istringstream lines(text);
    std::smatch match;
    Block next;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_match(line, match, comment)) {
            next.kind = match[1];
            next.name = match[2];
            next.path = match[3];
        } else if (line.starts_with("```")) {
            next.language = line.substr(3);
            while (std::getline(lines, line) && line != "```")
                next.text += line + '\n';
            blocks.push_back(next);
            next = Block();
        }
    }
    return blocks;
}

} // namespace

fs::path projectRoot()
{
    return ZSPACE_SOURCE_DIR;
}

Page readPage(const std::string& name)
{
    Page page{name, contentOf(projectRoot() / name), {}};
    page.blocks = blocksOf(page.text);
    return page;
}

std::vector<Page> guidePages()
{
    std::vector<Page> pages;
    for (const auto& entry : fs::directory_iterator(projectRoot() / "docs/guide"))
        pages.push_back(readPage(fs::relative(entry.path(), projectRoot()).string()));
    std::sort(pages.begin(), pages.end(), [](const Page& a, const Page& b) { return a.name < b.name; });
    return pages;
}

std::vector<std::string> linkedFiles(const Page& page)
{
    static const std::regex link("\\]\\(([^)#: ]+)(#[^)]*)?\\)");
    std::vector<std::string> files;
    const fs::path directory = fs::path(page.name).parent_path();
    for (std::sregex_iterator it(page.text.begin(), page.text.end(), link), end; it != end; ++it)
        files.push_back((directory / (*it)[1].str()).lexically_normal().string());
    return files;
}

} // namespace ZSpace::Testing
