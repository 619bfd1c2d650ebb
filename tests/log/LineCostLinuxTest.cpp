// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What a line costs, in numbers that do not depend on the machine: system calls and heap allocations.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZTransferLog.h"
#include "tests/log/ReportFile.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/SystemCallsLinux.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

namespace ZSpace::Testing {
namespace {

constexpr int s_lineCount = 100;

class LineCost : public ReportFile {
protected:
    void SetUp() override
    {
        m_book = openBook();
        ZTransferLog::useLogBook(m_book);
        CNSLog("%s", "the first line of a thread pays for the next");
        m_book->add(ZLogRecord() << "text" << 1);
    }
    void TearDown() override { ZTransferLog::useLogBook(ZRef<ZLogBook>()); }

    ZRef<ZLogBook> m_book;
    const std::string m_text = std::string(60, 'x');
};

TEST_F(LineCost, ALineIsOneSystemCall)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer makes system calls of its own";
#endif
    const auto frontEnd = [this] {
        for (int i = 0; i < s_lineCount; ++i)
            CNSLog("%s", m_text.c_str());
    };
    const auto formatted = [this] {
        for (int i = 0; i < s_lineCount; ++i)
            CNSLog("%s %d", m_text.c_str(), i);
    };
    const auto book = [this] {
        for (int i = 0; i < s_lineCount; ++i)
            m_book->add(ZLogRecord() << m_text.c_str() << i);
    };
    for (const std::function<void()>& work : {std::function<void()>(frontEnd), {formatted}, {book}}) {
        const long calls = systemCallsOf(work);
        EXPECT_GE(calls, s_lineCount);
        EXPECT_LE(calls, s_lineCount + 3); // the child's thread number, and what the C library does once
    }
}

TEST_F(LineCost, ALineNeedsNoAllocation)
{
    const long before = allocationsMade();
    for (int i = 0; i < s_lineCount; ++i) {
        CNSLog("%s", m_text.c_str());
        CNSLog("%s %d", m_text.c_str(), i);
        CNSLogMsg(m_text.c_str());
        m_book->add(ZLogRecord() << m_text.c_str() << i);
    }
    EXPECT_EQ(allocationsMade(), before);
}

TEST_F(LineCost, AValueThatABookKeepsIsNotReused)
{
    ZLogRecord kept;
    {
        ZLogRecord record;
        record << 1 << "one";
        kept = record;
    }
    ZLogRecord next;
    next << 2 << "two";
    EXPECT_TRUE(kept.itemAt(0)->toCString() == "1" && kept.itemAt(1)->toCString() == "one");
    EXPECT_TRUE(next.itemAt(0)->toCString() == "2" && next.itemAt(1)->toCString() == "two");
    EXPECT_NE(kept.itemAt(0).get(), next.itemAt(0).get());
}

TEST_F(LineCost, AValueThatWasChangedIsNotReused)
{
    {
        ZLogRecord record;
        record << 1 << 2;
        record.itemAt(0)->Name(ZGStr<char>("name"));
        *record.itemAt(1) = TZValueBase<ZTypeId>(ZGStr<char>("text"));
    }
    ZLogRecord next;
    next << 3 << 4;
    for (const ZLogRecord::Item& item : next) {
        EXPECT_TRUE(item->Name().isEmpty());
        EXPECT_EQ(item->Type(), ZTypeId_int);
    }
    EXPECT_TRUE(next.itemAt(0)->toCString() == "3" && next.itemAt(1)->toCString() == "4");
}

/// The values of a finished record are freed with the thread; leak checkers watch the rest.
TEST_F(LineCost, RecordsMayBeDestroyedWhileTheThreadEnds)
{
    struct AtEnd {
        ~AtEnd() { CNSLog("from a destructor at the thread's end"); }
    };
    std::thread([] {
        static thread_local AtEnd s_early; // destroyed after the blocks that the thread keeps
        static_cast<void>(&s_early);
        CNSLog("line");
        static thread_local AtEnd s_late; // destroyed before
        static_cast<void>(&s_late);
    }).join();
    EXPECT_TRUE(content().ends_with("from a destructor at the thread's end\n"));
}

} // namespace
} // namespace ZSpace::Testing
