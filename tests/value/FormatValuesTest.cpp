// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/interop/StdFormat.h"

#include <gtest/gtest.h>

#include <string>

#if __has_include(<fmt/xchar.h>)
#include "ZSpace/interop/Fmt.h"

#include <fmt/xchar.h>
#endif

namespace ZSpace::Testing {
namespace {

[[maybe_unused]] const ZTime s_time(2024, 3, 5, 7, 8, 9, 42);
[[maybe_unused]] const ZGUID s_guid(
    0x00112233, 0x4455, 0x6677, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF);

TEST(FormatValuesTest, FmtFormatsTimesAndGuids)
{
#ifdef FMT_VERSION
    EXPECT_EQ(fmt::format("{}", s_time), "2024-03-05T07:08:09");
    EXPECT_EQ(fmt::format("{:>21}|{:*<20}", s_time, s_time), "  2024-03-05T07:08:09|2024-03-05T07:08:09*");
    EXPECT_EQ(fmt::format("{}", s_guid), "{00112233-4455-6677-8899-aabbccddeeff}");
    EXPECT_EQ(fmt::format("{:.9}", s_guid), "{00112233");
    EXPECT_EQ(
        fmt::format(L"{} {}", s_time, s_guid), L"2024-03-05T07:08:09 {00112233-4455-6677-8899-aabbccddeeff}");
#else
    GTEST_SKIP() << "built without {fmt}";
#endif
}

TEST(FormatValuesTest, StdFormatFormatsTimesAndGuids)
{
#ifdef __cpp_lib_format
    EXPECT_EQ(std::format("{} {:>21}", s_time, s_time), "2024-03-05T07:08:09   2024-03-05T07:08:09");
    EXPECT_EQ(std::format("{}", s_guid), "{00112233-4455-6677-8899-aabbccddeeff}");
    EXPECT_EQ(
        std::format(L"{} {}", s_time, s_guid), L"2024-03-05T07:08:09 {00112233-4455-6677-8899-aabbccddeeff}");
#else
    GTEST_SKIP() << "the standard library has no std::format";
#endif
}

} // namespace
} // namespace ZSpace::Testing
