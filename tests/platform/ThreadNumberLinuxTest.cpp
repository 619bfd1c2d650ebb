// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What the thread's number costs.

#include "ZSpace/platform/ThreadNumber.h"
#include "tests/support/SystemCallsLinux.h"

#include <gtest/gtest.h>

namespace ZSpace::Testing {
namespace {

TEST(ThreadNumber, TheKernelIsAskedOncePerThread)
{
#ifdef ZSPACE_SANITIZED
    GTEST_SKIP() << "the sanitizers make system calls of their own";
#endif
    EXPECT_EQ(systemCallsOf([] {
        for (int i = 0; i < 100; ++i)
            (void)Host::threadNumber();
    }),
        1);
}

} // namespace
} // namespace ZSpace::Testing
