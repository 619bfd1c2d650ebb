// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/z_dbg.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/DeathTests.h"
#include "tests/support/LockTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <locale>
#include <sstream>
#include <thread>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

static_assert(std::is_same_v<decltype(g_eventregistrations), ZArray<void*, ZAllocationBuf<void*>>>);
static_assert(std::is_same_v<decltype(g_eventreg_cs), ZThreadLock_T<pthread_mutex_t>>);

long registrationsOf(const void* p)
{
    return std::count(g_eventregistrations.begin(), g_eventregistrations.end(), p);
}

/// Captures `std::cout`. Restores its buffer, state and format on destruction.
class Output {
public:
    Output()
        : m_format(nullptr)
        , m_buffer(std::cout.rdbuf(m_text.rdbuf()))
    {
        m_format.copyfmt(std::cout);
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output()
    {
        std::cout.rdbuf(m_buffer); // clears the state too
        std::cout.copyfmt(m_format);
    }
    [[nodiscard]] std::string text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::ios m_format;
    std::streambuf* m_buffer;
};

TEST(z_dbgRegistryTest, CountsEachRegistrationOfAnAddress)
{
    int a = 0;
    const long count = g_eventregistrations.Count();
    z_dbg_add_eventreg(&a);
    z_dbg_add_eventreg(&a);
    EXPECT_EQ(g_eventregistrations.Count(), count + 2);
    z_dbg_rem_eventreg(&a);
    EXPECT_EQ(registrationsOf(&a), 1);
    EXPECT_THROW(z_dbg_check_eventreg(&a), int);
    z_dbg_rem_eventreg(&a);
    EXPECT_NO_THROW(z_dbg_check_eventreg(&a));
    EXPECT_EQ(g_eventregistrations.Count(), count);
}

TEST(z_dbgRegistryTest, RemovesTheFirstOfEqualEntries)
{
    int a = 0;
    int b = 0;
    const long first = g_eventregistrations.Count();
    for (void* p : {static_cast<void*>(&a), static_cast<void*>(&b), static_cast<void*>(&a)})
        z_dbg_add_eventreg(p);
    z_dbg_rem_eventreg(&a);
    EXPECT_EQ(g_eventregistrations[first], &b);
    EXPECT_EQ(g_eventregistrations[first + 1], &a);
    z_dbg_rem_eventreg(&a);
    z_dbg_rem_eventreg(&b);
}

TEST(z_dbgRegistryTest, RemovingAnUnknownAddressThrowsAndChangesNothing)
{
    int a = 0;
    int b = 0;
    z_dbg_add_eventreg(&a);
    const std::vector<void*> before(g_eventregistrations.begin(), g_eventregistrations.end());
    try {
        z_dbg_rem_eventreg(&b);
        FAIL();
    } catch (int error) {
        EXPECT_EQ(error, -1);
    }
    EXPECT_THAT(g_eventregistrations, testing::ElementsAreArray(before));
    z_dbg_rem_eventreg(&a);
}

TEST(z_dbgRegistryTest, CheckThrowsMinusOneForARegisteredAddress)
{
    int a = 0;
    z_dbg_add_eventreg(&a);
    try {
        z_dbg_check_eventreg(&a);
        FAIL();
    } catch (int error) {
        EXPECT_EQ(error, -1);
    }
    z_dbg_rem_eventreg(&a);
}

TEST(z_dbgRegistryTest, EveryThrowReleasesTheLock)
{
    int a = 0;
    z_dbg_add_eventreg(&a);
    EXPECT_THROW(z_dbg_check_eventreg(&a), int);
    z_dbg_rem_eventreg(&a);
    EXPECT_THROW(z_dbg_rem_eventreg(&a), int);
    std::thread([&] {
        g_eventreg_cs.lock();
        g_eventreg_cs.unlock();
    }).join();
}

TEST(z_dbgRegistryTest, EachFunctionWaitsForTheLock)
{
    int a = 0;
    EXPECT_TRUE(waitsFor(g_eventreg_cs, [&] { z_dbg_add_eventreg(&a); }));
    EXPECT_EQ(registrationsOf(&a), 1);
    EXPECT_TRUE(waitsFor(g_eventreg_cs, [&] { z_dbg_rem_eventreg(&a); }));
    EXPECT_TRUE(waitsFor(g_eventreg_cs, [&] { z_dbg_check_eventreg(&a); }));
}

TEST(z_dbgRegistryTest, ThreadsRegisterConcurrently)
{
    const long count = g_eventregistrations.Count();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            int own[50];
            for (int& i : own)
                z_dbg_add_eventreg(&i);
            for (int& i : own) {
                EXPECT_THROW(z_dbg_check_eventreg(&i), int);
                z_dbg_rem_eventreg(&i);
                z_dbg_check_eventreg(&i);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(g_eventregistrations.Count(), count);
}

TEST(z_dbgRegistryTest, WorksInStaticObjectsBeforeAndAfterMain)
{
    // A separate program, whose static object uses all globals in its constructor and destructor.
    FILE* program = popen(ZSPACE_BINARY_DIR "/tests/core/core_static_user", "r");
    ASSERT_TRUE(program);
    std::string said(1000, '\0');
    said.resize(std::fread(said.data(), 1, said.size(), program));
    EXPECT_EQ(pclose(program), 0);
    EXPECT_EQ(said,
        "before main - File: f - Line: 1\nin main - File: f - Line: 2\nafter main - File: f - Line: 3\n");
}

TEST(z_dbgRegistryDeathTest, TerminatesIfAllocationFails)
{
    EXPECT_EXIT(
        {
            const AllocationFault fault(1);
            for (int i = 0; i < 1000; ++i)
                z_dbg_add_eventreg(&i);
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

TEST(z_dbg_errorTest, WritesOneLine)
{
    testing::internal::CaptureStdout();
    z_dbg_error("p", "f", 12, false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "p - File: f - Line: 12\n");
}

TEST(z_dbg_errorTest, WritesEveryLineNumberInDecimal)
{
    const Output output;
    std::cout << std::hex << std::showbase << std::setw(30) << std::setfill('*');
    z_dbg_error("", "", 0, false);
    z_dbg_error("a", "b", 4294967295u, false);
    EXPECT_EQ(output.text(), " - File:  - Line: 0\na - File: b - Line: 4294967295\n");
}

TEST(z_dbg_errorTest, LeavesTheNumberUngrouped)
{
    struct Grouping : std::numpunct<char> {
        [[nodiscard]] std::string do_grouping() const override { return "\3"; }
    };
    const Output output;
    const std::locale before = std::cout.imbue(std::locale(std::locale::classic(), new Grouping));
    z_dbg_error("p", "f", 1234567, false);
    std::cout.imbue(before);
    EXPECT_EQ(output.text(), "p - File: f - Line: 1234567\n");
}

TEST(z_dbg_errorTest, NullExpressionWritesNothingAndSetsBadbit)
{
    const Output output;
    z_dbg_error(nullptr, "f", 12, false);
    EXPECT_TRUE(std::cout.fail());
    std::cout.clear();
    EXPECT_EQ(output.text(), "");
}

TEST(z_dbg_errorTest, NullFileTruncatesTheLineAndSetsBadbit)
{
    const Output output;
    z_dbg_error("p", nullptr, 12, false);
    EXPECT_TRUE(std::cout.fail());
    std::cout.clear();
    EXPECT_EQ(output.text(), "p - File: ");
}

TEST(z_dbg_errorTest, LeavesTheStreamGood)
{
    const Output output;
    z_dbg_error("p", "f", 12, false);
    EXPECT_TRUE(std::cout.good());
}

TEST(z_dbg_errorTest, PropagatesExceptionsOfTheStream)
{
    const Output output;
    std::cout.exceptions(std::ios_base::badbit);
    EXPECT_THROW(z_dbg_error(nullptr, "f", 12, false), std::ios_base::failure);
    std::cout.exceptions(std::ios_base::goodbit);
}

TEST(z_dbg_errorDeathTest, AbortsAfterTheReport)
{
    EXPECT_EXIT((sendOutputToError(), z_dbg_error("p", "f", 12, true)), testing::KilledBySignal(SIGABRT),
        "^p - File: f - Line: 12\n$");
}

TEST(z_dbg_errorDeathTest, AbortsEvenIfTheStreamFails)
{
    EXPECT_EXIT((sendOutputToError(), z_dbg_error(nullptr, nullptr, 12, true)),
        testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT(
        {
            sendOutputToError();
            std::cout.exceptions(std::ios_base::badbit);
            z_dbg_error(nullptr, nullptr, 12, true);
        },
        testing::KilledBySignal(SIGABRT), "^$");
}

TEST(z_dbgTest, BreakpointAndTraceDoNothing)
{
    z_dbg_breakpoint();
    z_dbg_trace("text");
    z_dbg_trace(nullptr);
}

} // namespace
} // namespace ZSpace::Testing
