// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/Probes.h"

#include <gtest/gtest.h>

namespace ZSpace::Testing {

/// A fixture for tests with `Counted` objects: resets their tally and expects each test to destroy them all.
class CountedTest : public testing::Test {
protected:
    void SetUp() override { Counted::reset(); }
    void TearDown() override
    {
        EXPECT_EQ(Counted::s_tally.alive, 0);
        Counted::reset();
    }
};

} // namespace ZSpace::Testing
