// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The transfer log: which book receives a line, and how books are exchanged.

#include "ZSpace/log/ZTransferLog.h"

#include "tests/log/RecordingBook.h"
#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TransferLog : public testing::Test {
protected:
    void TearDown() override { ZTransferLog::useLogBook(ZRef<ZLogBook>()); }
};

TEST_F(TransferLog, IsOffAtStart)
{
    EXPECT_EQ(theLog, nullptr);
    EXPECT_FALSE(ZTransferLog::isOn());
    EXPECT_FALSE(ZTransferLog::log("x"));
}

TEST_F(TransferLog, WritesALineAsOneTextValue)
{
    auto* const book = new RecordingBook;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(book));
    EXPECT_TRUE(ZTransferLog::isOn());
    EXPECT_FALSE(theLog->isInactive());
    EXPECT_TRUE(ZTransferLog::log("x"));
    EXPECT_THAT(book->records(), ElementsAre("x|"));
}

TEST_F(TransferLog, StoresOnlyThePointer)
{
    class Kind : public ZLogBookDummy {
    public:
        void add(const ZLogRecord& record) override
        {
            m_isPointer = static_cast<unsigned int>(record.itemAt(0)->Type()) == 0x40000
                && *static_cast<const char* const*>(record.itemAt(0)->Content()) == m_expected;
        }
        const char* m_expected = nullptr;
        bool m_isPointer = false;
    };
    auto* const book = new Kind;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(book));
    book->m_expected = "text";
    EXPECT_TRUE(ZTransferLog::log(book->m_expected));
    EXPECT_TRUE(book->m_isPointer);
}

TEST_F(TransferLog, ASecondBookReplacesTheFirst)
{
    const ZRef<ZLogBook> first(new RecordingBook);
    ZTransferLog::useLogBook(first);
    ZTransferLog* const log = theLog;
    auto* const second = new RecordingBook;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(second));
    EXPECT_EQ(theLog, log);
    EXPECT_EQ(first.RefCount(), 1);
    ZTransferLog::log("x");
    EXPECT_THAT(static_cast<const RecordingBook&>(*first).records(), IsEmpty());
    EXPECT_THAT(second->records(), ElementsAre("x|"));
}

TEST_F(TransferLog, AnEmptyReferenceTurnsItOff)
{
    const ZRef<ZLogBook> book(new RecordingBook);
    ZTransferLog::useLogBook(book);
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
    EXPECT_EQ(theLog, nullptr);
    EXPECT_EQ(book.RefCount(), 1);
    EXPECT_FALSE(ZTransferLog::isOn());
    EXPECT_FALSE(ZTransferLog::log("x"));
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
    EXPECT_EQ(theLog, nullptr);
}

TEST_F(TransferLog, IsCreatedAnewEachTimeItIsTurnedOn)
{
    const ZRef<ZLogBook> book(new RecordingBook);
    ZTransferLog::useLogBook(book);
    ZTransferLog* const first = theLog;
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
    first->addLogRecord(ZLogRecord() << "late"); // still allocated, without a book
    ZTransferLog::useLogBook(book);
    EXPECT_NE(theLog, first);
    first->addLogRecord(ZLogRecord() << "later");
    EXPECT_THAT(static_cast<const RecordingBook&>(*book).records(), IsEmpty());
}

TEST_F(TransferLog, MayBeTurnedOffWhileABookIsAttached)
{
    class ShortLived : public ZTransferLog {
    public:
        void onLogBookAttached(ZRef<ZLogBook>) override { useLogBook(ZRef<ZLogBook>()); }
    } log;
    theLog = &log;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(new RecordingBook));
    EXPECT_EQ(theLog, nullptr);
    EXPECT_FALSE(ZTransferLog::log("x"));
}

TEST_F(TransferLog, ALogThatIsTurnedOffKeepsNoBookThatIsAttachedAfterwards)
{
    class TurnedOff : public ZTransferLog {
    public:
        void onLogBookAttached(ZRef<ZLogBook> book) override
        {
            if (std::exchange(m_isOver, true))
                return;
            useLogBook(ZRef<ZLogBook>());
            attachLogBook(std::move(book)); // as a thread does that saw the log just before
        }

    private:
        bool m_isOver = false;
    } log;
    theLog = &log;
    const ZRef<ZLogBook> book(new RecordingBook);
    ZTransferLog::useLogBook(book);
    EXPECT_EQ(theLog, nullptr);
    EXPECT_EQ(book.RefCount(), 1);
}

TEST_F(TransferLog, AnInactiveBookReceivesNoLineAndStaysAttached)
{
    auto* const book = new RecordingBook;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(book));
    book->m_isInactive = true;
    EXPECT_FALSE(ZTransferLog::isOn());
    EXPECT_FALSE(ZTransferLog::log("x"));
    book->m_isInactive = false;
    EXPECT_TRUE(ZTransferLog::log("y"));
    EXPECT_THAT(book->records(), ElementsAre("y|"));
}

TEST_F(TransferLog, LinesMayComeFromManyThreads)
{
    auto* const book = new RecordingBook;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(book));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < 100; ++i)
                ZTransferLog::log("x");
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(book->records().size(), 400U);
}

TEST(TransferLogDeathTest, TheActivityCheckAbortsWithoutABook)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const Outcome outcome = runInChild([] {
        ZTransferLog log;
        log.detachLogBook();
        return log.isInactive() ? 1 : 2;
    });
    EXPECT_FALSE(outcome.hasExited);
    EXPECT_EQ(outcome.status, SIGABRT);
    EXPECT_EQ(outcome.standardOutput, "this->m_ptValue - File: ZTypeRef - Line: 534\n");
}

} // namespace
} // namespace ZSpace::Testing
