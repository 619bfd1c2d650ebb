// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Objects that log: forwarding, hooks and the echo.

#include "ZSpace/log/ZLoggable.h"

#include "ZSpace/log/detail/DebugLog.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "tests/log/RecordingBook.h"
#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

const pthread_t s_anyThread{};

class Logger : public ZLoggable {
public:
    void onLogBookAttached(ZRef<ZLogBook> book) override
    {
        m_calls.push_back(book.get() == m_logBook.get() ? "attached" : "attached too early");
    }
    void onLogBookDetached() override { m_calls.push_back(m_logBook ? "detached too early" : "detached"); }
    using ZLoggable::m_logBook;
    using ZLoggable::m_logOp;

    std::vector<std::string> m_calls;
};

TEST(ZLoggable, StartsWithADummyBookAndNoOperation)
{
    Logger logger;
    EXPECT_NE(dynamic_cast<ZLogBookDummy*>(logger.m_logBook.get()), nullptr);
    EXPECT_EQ(logger.m_logOp, 0);
    logger.addLogRecord(ZLogRecord() << 1);
}

TEST(ZLoggable, CallsItsHooksAfterTheChange)
{
    Logger logger;
    logger.attachLogBook(ZRef<ZLogBook>(new RecordingBook));
    logger.detachLogBook();
    EXPECT_THAT(logger.m_calls, ElementsAre("attached", "detached"));
}

TEST(ZLoggable, ForwardsToItsBook)
{
    auto* const book = new RecordingBook;
    Logger logger;
    logger.attachLogBook(ZRef<ZLogBook>(book));
    logger.addLogRecord(ZLogRecord() << "a" << 1);
    logger.writeStream(255, 7, "xyz", 3);
    unsigned char bytes[]{'b'};
    static_cast<ZLoggable&>(logger).writeStream(1, 2, TZBinary<unsigned char>(bytes, 1, false));
    logger.setLastError(5, "caller", "callee", -1, "text");
    EXPECT_THAT(book->records(),
        ElementsAre("a|1|", "SetLastError(5): [caller] has invoked [callee] which returned: -1 - text|"));
    EXPECT_THAT(book->m_blocks, ElementsAre("255,7,xyz", "1,2,b"));

    ZRef<ZLogLastError> error;
    EXPECT_TRUE(logger.getLastError(error, 5, s_anyThread));
    EXPECT_EQ(error->result(), -1);
    EXPECT_TRUE(logger.hasLastError(5, s_anyThread));
    EXPECT_EQ(logger.getLastErrors().Count(), 1);
    EXPECT_EQ(logger.getLastOpErrors(5).Count(), 1);
    EXPECT_EQ(logger.getLastThreadErrors(pthread_self()).Count(), 1);
    logger.clearLastError(5, s_anyThread);
    EXPECT_FALSE(logger.hasLastError(0, s_anyThread));
}

TEST(ZLoggable, TheShortFormNeedsAnOperation)
{
    auto* const book = new RecordingBook;
    Logger logger;
    logger.attachLogBook(ZRef<ZLogBook>(book));
    logger.setLastError("caller", "callee", 1, nullptr);
    EXPECT_THAT(book->records(), IsEmpty());
    logger.m_logOp = 9;
    logger.setLastError("caller", "callee", 1, nullptr);
    EXPECT_EQ(book->getLastErrors()[0]->op(), 9);
}

TEST(ZLoggable, WithoutABookNothingHappens)
{
    Logger logger;
    logger.detachLogBook();
    logger.m_logOp = 9;
    logger.addLogRecord(ZLogRecord() << 1);
    logger.writeStream(1, 2, "x", 1);
    static_cast<ZLoggable&>(logger).writeStream(1, 2, TZBinary<unsigned char>());
    logger.setLastError(1, "a", "b", 1, nullptr);
    logger.setLastError("a", "b", 1, nullptr);
    logger.clearLastError(0, s_anyThread);
    ZRef<ZLogLastError> error;
    EXPECT_FALSE(logger.getLastError(error, 0, s_anyThread));
    EXPECT_FALSE(logger.hasLastError(0, s_anyThread));
    EXPECT_EQ(logger.getLastErrors().Count(), 0);
    EXPECT_EQ(logger.getLastOpErrors(0).Count(), 0);
    EXPECT_EQ(logger.getLastThreadErrors(s_anyThread).Count(), 0);
}

TEST(ZLoggable, AReplacedBookIsReleased)
{
    const ZRef<ZLogBook> book(new RecordingBook);
    Logger logger;
    logger.attachLogBook(book);
    EXPECT_EQ(book.RefCount(), 2);
    logger.attachLogBook(ZRef<ZLogBook>(new RecordingBook));
    EXPECT_EQ(book.RefCount(), 1);
}

TEST(ZLoggable, NamesTheThread)
{
    char expected[32];
    std::snprintf(expected, sizeof expected, "Thread[%x]", Host::threadNumber());
    EXPECT_STREQ(ZLoggable::getLogThreadId(), expected);
    std::thread([&] { EXPECT_STRNE(ZLoggable::getLogThreadId(), expected); }).join();
}

TEST(ZLoggable, CreatesEmptyRecords)
{
    EXPECT_EQ(ZLoggable::createLogRecord().Count(), 0);
}

std::string echoOf(const ZLogRecord& record, bool isDebugOn)
{
    return runInChild([&] {
        debugLogEnabled = isDebugOn;
        Logger logger;
        logger.addLogRecord(record);
        logger.detachLogBook();
        logger.addLogRecord(record);
        return 0;
    }).standardError;
}

const std::string s_prefix =
    "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} Thread\\[[0-9a-f]+\\]: ";

TEST(ZLoggable, EchoesRecordsWhenDebugLinesAreOn)
{
    ZLogRecord record;
    record << "text"
           << "" << 42 << ZGStr<char>() << true;
    const std::string line = s_prefix + "text\t42\t1\t\n";
    EXPECT_THAT(echoOf(record, true), MatchesRegex(line + line)); // with a book and without
    EXPECT_THAT(echoOf(ZLogRecord(), true), MatchesRegex(s_prefix + "\n" + s_prefix + "\n"));
    EXPECT_EQ(echoOf(record, false), "");
}

TEST(ZLoggable, EchoesALongRecordCompletely)
{
    const std::string text(100'000, 'x');
    ZLogRecord record;
    record << text.c_str();
    EXPECT_THAT(echoOf(record, true), testing::HasSubstr(": " + text + "\t\n"));
}

TEST(LoggableDeathTest, EchoingAnEmptyItemAborts)
{
    ZLogRecord record;
    record << 1;
    const_cast<ZLogRecord::Item&>(*record.begin()) = nullptr;
    const Outcome outcome = runInChild([&] {
        debugLogEnabled = 1;
        Logger().addLogRecord(record);
        return 1;
    });
    EXPECT_EQ(outcome.status, SIGABRT);
    EXPECT_THAT(outcome.standardOutput, testing::EndsWith("this->m_ptValue - File: ZTypeRef - Line: 534\n"));
}

} // namespace
} // namespace ZSpace::Testing
