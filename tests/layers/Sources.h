// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace ZSpace::Testing {

struct Source {
    std::string name; // relative to the project's root
    std::string text;
    std::string code; // the text without comments
};

/// The sources of the library and the program, and those of everything that is compiled.
extern const std::vector<std::string> s_product;
extern const std::vector<std::string> s_everything;

/// Every header and source file below these directories of the project's root.
std::vector<Source> sourcesOf(const std::vector<std::string>& directories);

/// The project's root.
std::string projectRoot();

/// The paths in quotes that a source includes or imports.
std::vector<std::string> quotedIncludes(const Source& source);

/// The headers in angle brackets that a source includes or imports.
std::vector<std::string> systemIncludes(const Source& source);

} // namespace ZSpace::Testing
