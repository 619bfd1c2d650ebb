// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace ZSpace::Testing {

/// A line of code, what it printed, and what it should print.
struct Use {
    const char* code;
    std::string result;
    std::string expected;
};

inline void expectResults(std::initializer_list<Use> uses)
{
    for (const Use& use : uses)
        EXPECT_EQ(use.result, use.expected) << use.code;
}

} // namespace ZSpace::Testing
