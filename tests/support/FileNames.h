// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace ZSpace::Testing {

namespace detail {
inline bool canCreate(const std::filesystem::path& file)
{
    return static_cast<bool>(std::ofstream(file));
}
} // namespace detail

/// Whether the file system of temporary files takes names that are not UTF-8. That of macOS does not.
[[nodiscard]] inline bool takesNamesOfAnyBytes()
{
    const TemporaryFolder folder;
    return detail::canCreate(folder.path() / "\xE9\xFF");
}

/// Whether the file system of temporary files distinguishes "a" from "A". That of macOS usually does not.
[[nodiscard]] inline bool distinguishesCase()
{
    const TemporaryFolder folder;
    return detail::canCreate(folder.path() / "a") && !std::filesystem::exists(folder.path() / "A");
}

} // namespace ZSpace::Testing
