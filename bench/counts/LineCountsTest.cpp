// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What a line costs, in numbers that do not depend on the machine. Change a limit only together with
// docs/performance.md.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZTransferLog.h"
#include "bench/counts/SteppedProcess.h"
#include "tests/log/ReportFile.h"
#include "tests/support/AllocationFaults.h"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <string>
#include <sys/resource.h>

namespace ZSpace::Testing {
namespace {

constexpr int s_lineCount = 20;

long pageFaults()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_minflt + usage.ru_majflt;
}

class LineCounts : public ReportFile {
protected:
    void SetUp() override
    {
        m_book = openBook();
        ZTransferLog::useLogBook(m_book);
    }
    void TearDown() override { ZTransferLog::useLogBook(ZRef<ZLogBook>()); }

    /// The steps of one line that begins in the same second as the line before.
    static Steps stepsPerLine(const std::function<void()>& line)
    {
        Steps least = stepsOf(line, line); // the first line pays for what later ones reuse
        for (int attempt = 0; attempt < 4; ++attempt) {
            const Steps steps = stepsOf(line, line);
            if (steps.instructions < least.instructions)
                least = steps;
        }
        return least;
    }

    ZRef<ZLogBook> m_book;
    const std::string m_text = std::string(60, 'x');

    // With 60 characters.
    const std::function<void()> m_formatted = [this] { CNSLog("%s", m_text.c_str()); };
    const std::function<void()> m_finished = [this] { CNSLogMsg(m_text.c_str()); };
    const std::function<void()> m_record = [this] { m_book->add(ZLogRecord() << m_text.c_str()); };
    const std::function<void()> m_recordWithNumber = [this] {
        m_book->add(ZLogRecord() << m_text.c_str() << 42);
    };
};

TEST_F(LineCounts, ALineIsOneSystemCallAndFewInstructions)
{
    const struct {
        const char* name;
        const std::function<void()>& line;
        long instructions; // at most
    } cases[] = {
        {"formatted line", m_formatted, 1'050},
        {"finished line", m_finished, 920},
        {"record", m_record, 820},
        {"record with a number", m_recordWithNumber, 1'250},
    };
    for (const auto& [name, line, instructions] : cases) {
        const Steps steps = stepsPerLine(line);
        std::cout << name << ": " << steps.instructions << " instructions\n";
        EXPECT_EQ(steps.systemCalls, 1) << name;
        EXPECT_GT(steps.instructions, 0) << name;
        EXPECT_LE(steps.instructions, instructions) << name;
    }
}

TEST_F(LineCounts, ALineNeedsNoAllocation)
{
    for (const auto& line : {m_formatted, m_finished, m_record, m_recordWithNumber}) {
        line();
        const long before = allocationsMade();
        for (int i = 0; i < s_lineCount; ++i)
            line();
        EXPECT_EQ(allocationsMade(), before);
    }
}

TEST_F(LineCounts, LinesCauseNoPageFaults)
{
    for (const auto& line : {m_formatted, m_finished, m_record, m_recordWithNumber}) {
        line();
        const long before = pageFaults();
        for (int i = 0; i < 1000; ++i)
            line();
        EXPECT_EQ(pageFaults(), before);
    }
}

} // namespace
} // namespace ZSpace::Testing
