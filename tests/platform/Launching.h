// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"

#include <gtest/gtest.h>

#include <string>

namespace ZSpace::Testing {

/// The reason of the exception that starting `path` throws.
inline std::string launchFailure(const NS::String& path)
{
    NS::Task task;
    task.setLaunchPath(path);
    task.setArguments(NS::Array::arrayWithObjects({"x"}));
    try {
        task.launch();
    } catch (const NS::Exception& exception) {
        EXPECT_STREQ(exception.name().UTF8String(), "NSInvalidArgumentException");
        EXPECT_FALSE(exception.userInfo());
        EXPECT_GT(exception.callStackSymbols().count(), 0U);
        return exception.reason().UTF8String();
    }
    return "it started";
}

} // namespace ZSpace::Testing
