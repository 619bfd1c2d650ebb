// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/layers/Sources.h"

#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <regex>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

/// Removes what follows `//`, unless something other than whitespace precedes it, as in a string that
/// contains `//`.
std::string withoutComments(const std::string& text)
{
    static const std::regex pattern("(^|[ \t\n])//[^\n]*");
    return std::regex_replace(text, pattern, "$1");
}

std::vector<std::string> matches(const std::string& text, const std::regex& pattern)
{
    std::vector<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it)
        found.push_back((*it)[1]);
    return found;
}

} // namespace

const std::vector<std::string> s_product{"ZSpace", "app"};
const std::vector<std::string> s_everything{
    "ZSpace", "app", "tests", "bench", "fuzz", "examples", "packaging"};

std::string projectRoot()
{
    return ZSPACE_SOURCE_DIR;
}

std::vector<Source> sourcesOf(const std::vector<std::string>& directories)
{
    std::vector<Source> sources;
    const fs::path root = projectRoot();
    for (const std::string& directory : directories) {
        for (const auto& entry : fs::recursive_directory_iterator(root / directory)) {
            const std::string extension = entry.path().extension().string();
            if (!entry.is_regular_file() || (extension != ".h" && extension != ".cpp" && extension != ".mm"))
                continue;
            const std::string text = contentOf(entry.path());
            sources.push_back({fs::relative(entry.path(), root).string(), text, withoutComments(text)});
        }
    }
    return sources;
}

std::vector<std::string> quotedIncludes(const Source& source)
{
    static const std::regex pattern("(?:^|\n)[ \t]*#[ \t]*(?:include|import)[ \t]*\"([^\"\n]+)\"");
    return matches(source.code, pattern);
}

std::vector<std::string> systemIncludes(const Source& source)
{
    static const std::regex pattern("(?:^|\n)[ \t]*#[ \t]*(?:include|import)[ \t]*<([^>\n]+)>");
    return matches(source.code, pattern);
}

} // namespace ZSpace::Testing
