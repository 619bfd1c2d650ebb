// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Where the links of the documents lead.

#include "tests/guide/Pages.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> allPages()
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(projectRoot())) {
        if (entry.path().extension() == ".md")
            names.push_back(entry.path().filename().string());
    }
    for (const auto& entry : fs::recursive_directory_iterator(projectRoot() / "docs")) {
        const std::string name = fs::relative(entry.path(), projectRoot()).string();
        if (entry.path().extension() == ".md" && !name.starts_with("docs/reference/"))
            names.push_back(name);
    }
    return names;
}

TEST(Links, LeadToFilesThatExist)
{
    for (const std::string& name : allPages()) {
        for (const std::string& file : linkedFiles(readPage(name)))
            EXPECT_TRUE(fs::exists(projectRoot() / file)) << name << " links to " << file;
    }
}

TEST(Links, LeadFromTheReadmeToEveryPageInTwoClicks)
{
    std::set<std::string> reached{"README.md"};
    for (int click = 0; click < 2; ++click) {
        const std::set<std::string> from = reached;
        for (const std::string& name : from) {
            if (name.ends_with(".md")) {
                for (const std::string& file : linkedFiles(readPage(name)))
                    reached.insert(file);
            }
        }
    }
    for (const std::string& name : allPages())
        EXPECT_TRUE(reached.contains(name)) << name;
}

TEST(Links, LeadFromTheReadmeToEveryPageOfTheGuideInOneClick)
{
    const std::vector<std::string> linked = linkedFiles(readPage("README.md"));
    for (const Page& page : guidePages())
        EXPECT_NE(std::find(linked.begin(), linked.end(), page.name), linked.end()) << page.name;
}

// scripts/pictures.sh puts the source of a picture at its end.
TEST(Pictures, AreMadeOfTheirSources)
{
    int count = 0;
    for (const auto& entry : fs::directory_iterator(projectRoot() / "docs")) {
        fs::path picture = entry.path();
        if (picture.extension() != ".dot")
            continue;
        ++count;
        EXPECT_TRUE(contentOf(picture.replace_extension(".svg"))
                        .ends_with("<!--\n" + contentOf(entry.path()) + "-->\n"))
            << picture << " is older than its source: ./scripts/pictures.sh";
    }
    EXPECT_EQ(count, 2);
}

} // namespace
} // namespace ZSpace::Testing
