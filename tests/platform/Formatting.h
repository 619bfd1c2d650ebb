// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace ZSpace::Testing {

inline std::string format(const char* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    const NS::String result = NS::String::stringWithFormat(NS::String(pattern).native(), arguments);
    va_end(arguments);
    return result.UTF8String();
}

/// Both must agree wherever the C library knows the format.
#define EXPECT_AS_PRINTF(...)                                                                                \
    do {                                                                                                     \
        char expected[512];                                                                                  \
        std::snprintf(expected, sizeof expected, __VA_ARGS__);                                               \
        EXPECT_EQ(format(__VA_ARGS__), expected);                                                            \
    } while (false)

} // namespace ZSpace::Testing
