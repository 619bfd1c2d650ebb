// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Entries of the trail and their text form.

#include "ZSpace/log/ZLogLastError.h"

#include "tests/support/Probes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <pthread.h>
#include <thread>
#include <type_traits>

namespace ZSpace::Testing {
namespace {

TEST(ZLogLastError, KeepsItsFiveArgumentsAndTheThread)
{
    const ZLogLastError error(7, "open", "fopen", -1, "no file");
    EXPECT_EQ(error.op(), 7);
    EXPECT_TRUE(error.caller() == "open");
    EXPECT_TRUE(error.callee() == "fopen");
    EXPECT_EQ(error.result(), -1);
    EXPECT_TRUE(error.text() == "no file");
    EXPECT_TRUE(pthread_equal(error.thread(), pthread_self()));
}

TEST(ZLogLastError, WithoutATextTheTextIsNull)
{
    const ZLogLastError narrow(7, "open", "fopen", -1, nullptr);
    EXPECT_EQ(static_cast<const char*>(narrow.text()), nullptr);
    const ZLogLastError wide(7, L"open", L"fopen", -1, static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(static_cast<const char*>(wide.text()), nullptr);
}

TEST(ZLogLastError, CopiesItsTexts)
{
    char caller[] = "open";
    const ZLogLastError error(0, caller, "stat", 0, nullptr);
    std::memset(caller, 'x', 4);
    EXPECT_TRUE(error.caller() == "open");
}

TEST(ZLogLastError, WideTextsAreNarrowed)
{
    const ZLogLastError error(7, L"op\u00E9n", L"fopen", -1, L"\u20AC");
    EXPECT_TRUE(error.caller() == "op\xE9n");
    EXPECT_TRUE(error.callee() == "fopen");
    EXPECT_TRUE(error.text() == "\xAC");
}

TEST(ZLogLastError, CopiesAllSixFields)
{
    ZLogLastError copy(1, "a", "b", 2, "c");
    std::thread([&copy] {
        const ZLogLastError other(7, "open", "fopen", -1, "no file");
        copy = other;
    }).join();
    const ZLogLastError constructed(copy);
    for (const ZLogLastError* error : std::initializer_list<const ZLogLastError*>{&copy, &constructed}) {
        EXPECT_EQ(error->op(), 7);
        EXPECT_TRUE(error->caller() == "open");
        EXPECT_TRUE(error->callee() == "fopen");
        EXPECT_EQ(error->result(), -1);
        EXPECT_TRUE(error->text() == "no file");
        EXPECT_FALSE(pthread_equal(error->thread(), pthread_self()));
    }
    EXPECT_NE(static_cast<const char*>(constructed.text()), static_cast<const char*>(copy.text()));
}

TEST(ZLogLastError, StoresItsFieldsInOrder)
{
    static_assert(sizeof(ZLogLastError) == 48 && !std::is_polymorphic_v<ZLogLastError>);
    const ZLogLastError error(7, "open", "fopen", -1, "no file");
    EXPECT_EQ(wordAt(&error, 0) & 0xFFFFFFFF, 7U);
    EXPECT_EQ(wordAt(&error, 1), asWord(static_cast<const char*>(error.caller())));
    EXPECT_EQ(wordAt(&error, 2), asWord(static_cast<const char*>(error.callee())));
    EXPECT_EQ(wordAt(&error, 3) & 0xFFFFFFFF, 0xFFFFFFFFU);
    EXPECT_EQ(wordAt(&error, 4), asWord(static_cast<const char*>(error.text())));
    const pthread_t self = pthread_self();
    EXPECT_EQ(wordAt(&error, 5), wordAt(&self, 0));
}

TEST(ZLogLastError, PrintsItself)
{
    EXPECT_TRUE(
        ZLogLastError(0, "open", "stat", -5, nullptr).toString() == "Error #-5 in [stat < open]  Thread=1");
    EXPECT_TRUE(ZLogLastError(3, "open", "stat", -5, "gone").toString()
        == "Error #-5[gone] in [stat < open]  Thread=1 Op=3");
    EXPECT_TRUE(ZLogLastError(-3, "", "", 0, "").toString() == "Error #0 in [ < ]  Thread=1 Op=-3");
    std::thread([] {
        EXPECT_TRUE(ZLogLastError(0, "a", "b", 1, nullptr).toString() == "Error #1 in [b < a]  Thread=1");
    }).join();
}

} // namespace
} // namespace ZSpace::Testing
