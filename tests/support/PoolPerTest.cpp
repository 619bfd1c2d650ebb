// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Creates an autorelease pool for every test of a program that compiles this file, as every entry point of a
// program does.

#include "ZSpace/platform/Foundation.h"

#include <gtest/gtest.h>

#include <optional>

namespace ZSpace::Testing {
namespace {

class PoolPerTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { m_pool.emplace(); }
    void OnTestEnd(const testing::TestInfo&) override { m_pool.reset(); }

    std::optional<NS::AutoreleasePool> m_pool;
};

[[maybe_unused]] const bool s_isListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new PoolPerTest);
    return true;
}();

} // namespace
} // namespace ZSpace::Testing
