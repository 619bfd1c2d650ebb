// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The `main` of every test program. Lists tests by their names alone; GoogleTest's own list includes the types and
// values of the parameters, which CMake would make part of the names in ctest.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

namespace {

void listTests()
{
    const testing::UnitTest& program = *testing::UnitTest::GetInstance();
    for (int i = 0; i < program.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *program.GetTestSuite(i);
        std::printf("%s.\n", suite.name());
        for (int j = 0; j < suite.total_test_count(); ++j) {
            std::printf("  %s\n", suite.GetTestInfo(j)->name());
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    if (GTEST_FLAG_GET(list_tests) && GTEST_FLAG_GET(filter) == "*") {
        listTests();
        return 0;
    }
    return RUN_ALL_TESTS();
}
