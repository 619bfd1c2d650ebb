// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Levels and the filter.

#include "ZSpace/log/ZLogBookFilter.h"

#include "tests/log/RecordingBook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

TEST(ZLogLevel, IsTheNameBeforeTheValues)
{
    RecordingBook book;
    book.add(ZLogRecord() << ZLogLevel::Warning << "disk almost full" << 97);
    ZLogRecord record;
    record << ZLogLevel::Debug << 1;
    book.add(record);
    EXPECT_THAT(book.records(), ElementsAre("WARNING|disk almost full|97|", "DEBUG|1|"));
}

TEST(ZLogLevel, IsFoundInTheFirstValueOnly)
{
    ZLogLevel level = ZLogLevel::Notice;
    EXPECT_FALSE(getLevel(ZLogRecord(), level));
    EXPECT_FALSE(getLevel(ZLogRecord() << 1 << ZLogLevel::Error, level));
    EXPECT_FALSE(getLevel(ZLogRecord() << "ERRORS", level));
    EXPECT_FALSE(getLevel(ZLogRecord() << static_cast<const char*>(nullptr), level));
    EXPECT_EQ(level, ZLogLevel::Notice);
    for (const ZLogLevel each : {ZLogLevel::Debug, ZLogLevel::Info, ZLogLevel::Notice, ZLogLevel::Warning,
             ZLogLevel::Error, ZLogLevel::Critical}) {
        EXPECT_TRUE(getLevel(ZLogRecord() << each << "text", level));
        EXPECT_EQ(level, each);
    }
}

TEST(ZLogBookFilter, PassesRecordsOfALevelAndAbove)
{
    auto* const book = new RecordingBook;
    ZLogBookFilter filter(ZRef<ZLogBook>(book), ZLogLevel::Notice);
    filter.add(ZLogRecord() << ZLogLevel::Info << 1);
    filter.add(ZLogRecord() << ZLogLevel::Notice << 2);
    filter.add(ZLogRecord() << ZLogLevel::Critical << 3);
    filter.add(ZLogRecord() << "no level");
    EXPECT_THAT(book->records(), ElementsAre("NOTICE|2|", "CRITICAL|3|"));
}

TEST(ZLogBookFilter, CountsARecordWithoutALevelAsInfo)
{
    auto* const book = new RecordingBook;
    ZLogBookFilter filter(ZRef<ZLogBook>(book), ZLogLevel::Info);
    filter.add(ZLogRecord() << "no level");
    filter.add(ZLogRecord() << ZLogLevel::Debug);
    EXPECT_THAT(book->records(), ElementsAre("no level|"));
}

TEST(ZLogBookFilter, CallsAPredicate)
{
    auto* const book = new RecordingBook;
    ZLogBookFilter filter(ZRef<ZLogBook>(book), [](const ZLogRecord& record) {
        if (record.Count() == 0)
            throw std::runtime_error("empty");
        return record.Count() == 2;
    });
    filter.add(ZLogRecord() << 1);
    filter.add(ZLogRecord() << 1 << 2);
    EXPECT_THROW(filter.add(ZLogRecord()), std::runtime_error);
    EXPECT_THAT(book->records(), ElementsAre("1|2|"));
}

TEST(ZLogBookFilter, ForwardsEverythingElse)
{
    auto* const book = new RecordingBook;
    ZLogBookFilter filter(ZRef<ZLogBook>(book), ZLogLevel::Critical);
    filter.setLastError(5, "caller", "callee", -1, "text");
    EXPECT_THAT(book->records(),
        ElementsAre("SetLastError(5): [caller] has invoked [callee] which returned: -1 - text|"));
    const pthread_t anyThread{};
    ZRef<ZLogLastError> error;
    EXPECT_TRUE(filter.getLastError(error, 5, anyThread));
    EXPECT_EQ(error.get(), book->getLastErrors()[0].get());
    EXPECT_TRUE(filter.hasLastError(5, anyThread));
    EXPECT_EQ(filter.getLastErrors().Count(), 1);
    EXPECT_EQ(filter.getLastOpErrors(5).Count(), 1);
    EXPECT_EQ(filter.getLastThreadErrors(pthread_self()).Count(), 1);
    filter.clearLastError(5, anyThread);
    EXPECT_FALSE(book->hasLastError(0, anyThread));
    filter.writeStream(1, 2, "abc", 3);
    EXPECT_THAT(book->m_blocks, ElementsAre("1,2,abc"));
    book->m_isInactive = true;
    EXPECT_TRUE(filter.isInactive());
    ZGStr<wchar_t> session;
    EXPECT_TRUE(filter.getSessionTransferLog(session));
    EXPECT_TRUE(session == L"session");
}

} // namespace
} // namespace ZSpace::Testing
