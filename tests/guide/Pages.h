// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ZSpace::Testing {

/// A fenced block of a page. The comment before it says what it shows:
///
///     <!-- file: examples/guide/Strings.cpp -->     that source, without its license
///     <!-- output: Strings -->                      what the program prints
///     <!-- left: Logging logs -->                   the file that it leaves, or the one file in a directory
///     <!-- journal: LoggingSystem -->               what it sends to the socket that is its argument
struct Block {
    std::string kind; ///< empty without such a comment
    std::string name;
    std::string path; ///< of what is left
    std::string language;
    std::string text;
};

struct Page {
    std::string name; ///< relative to the project's root
    std::string text;
    std::vector<Block> blocks;
};

std::filesystem::path projectRoot();

/// The page of this name.
Page readPage(const std::string& name);

/// Every page in docs/guide.
std::vector<Page> guidePages();

/// The targets of the links of a page that lead to other files, relative to the project's root.
std::vector<std::string> linkedFiles(const Page& page);

} // namespace ZSpace::Testing
