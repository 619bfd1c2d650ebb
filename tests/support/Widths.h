// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace ZSpace::Testing {

/// For suites that run over narrow and wide strings alike.
using Widths = testing::Types<char, wchar_t>;

struct WidthNames {
    template <typename T>
    static std::string GetName(int)
    {
        return std::is_same_v<T, char> ? "Narrow" : "Wide";
    }
};

/// The string with each byte as one wide character.
inline std::wstring widened(const std::string& bytes)
{
    std::wstring wide;
    for (char c : bytes)
        wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return wide;
}

} // namespace ZSpace::Testing
