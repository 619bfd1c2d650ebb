// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The trail of last errors, the dummy book and the hoster.

#include "ZSpace/log/ZLogBook.h"

#include "ZSpace/log/ZLogBookHoster.h"
#include "tests/log/RecordingBook.h"
#include "tests/support/AllocationFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <new>
#include <pthread.h>
#include <string>
#include <thread>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const pthread_t s_anyThread{};

TEST(ZLogBook, AnErrorIsReportedInOneRecord)
{
    RecordingBook book;
    book.setLastError(7, "open", "fopen", -1, nullptr);
    book.setLastError(7, "open", "fopen", -1, "no file");
    book.setLastError(-7, "a", "b", 0, "");
    EXPECT_THAT(book.records(),
        ElementsAre("SetLastError(7): [open] has invoked [fopen] which returned: -1|",
            "SetLastError(7): [open] has invoked [fopen] which returned: -1 - no file|",
            "SetLastError(-7): [a] has invoked [b] which returned: 0 - |"));
}

TEST(ZLogBook, TheMessageIsOneStringValue)
{
    class KindBook : public ZLogBookDummy {
    public:
        void add(const ZLogRecord& record) override
        {
            m_count = record.Count();
            m_type = static_cast<unsigned int>(record.itemAt(0)->Type());
        }
        long m_count = 0;
        unsigned int m_type = 0;
    } book;
    book.setLastError(1, "a", "b", 2, nullptr);
    EXPECT_EQ(book.m_count, 1);
    EXPECT_EQ(book.m_type, 0x100000U);
}

/// Whoever logs may wait for the trail's lock.
TEST(ZLogBook, ClearingTakesNoLongerThanFilling)
{
    using Clock = std::chrono::steady_clock;
    constexpr int count = 200'000;
    ZLogBookDummy book;
    const auto start = Clock::now();
    for (int i = 0; i < count; ++i)
        book.setLastError(1 + i % 2, "caller", "callee", i, nullptr);
    const auto filled = Clock::now();
    book.clearLastError(1, s_anyThread);
    const auto cleared = Clock::now();
    const ZLogBook::Errors rest = book.getLastErrors();
    ASSERT_EQ(rest.Count(), count / 2);
    for (int i = 0; i < count / 2; ++i)
        ASSERT_EQ(rest[i]->result(), 2 * i + 1);
    EXPECT_LT((cleared - filled).count(), 2 * (filled - start).count());
}

TEST(ZLogBook, FindsTheNewestEntryThatMatches)
{
    RecordingBook book;
    pthread_t other{};
    book.setLastError(1, "a", "first", 1, nullptr);
    std::thread([&] {
        other = pthread_self();
        book.setLastError(1, "a", "second", 2, nullptr);
        book.setLastError(2, "a", "third", 3, nullptr);
    }).join();
    book.setLastError(2, "a", "fourth", 4, nullptr);

    const auto found = [&book](int op, pthread_t thread) {
        ZRef<ZLogLastError> error;
        EXPECT_EQ(book.getLastError(error, op, thread), book.hasLastError(op, thread));
        return error ? error->result() : 0;
    };
    EXPECT_EQ(found(0, s_anyThread), 4);
    EXPECT_EQ(found(1, s_anyThread), 2);
    EXPECT_EQ(found(2, s_anyThread), 4);
    EXPECT_EQ(found(0, other), 3);
    EXPECT_EQ(found(1, other), 2);
    EXPECT_EQ(found(1, pthread_self()), 1);
    EXPECT_EQ(found(3, s_anyThread), 0);
}

TEST(ZLogBook, WithoutAMatchTheArgumentIsUnchanged)
{
    RecordingBook book;
    const ZRef<ZLogLastError> before(new ZLogLastError(0, "a", "b", 0, nullptr));
    ZRef<ZLogLastError> out = before;
    EXPECT_FALSE(book.getLastError(out, 0, s_anyThread));
    EXPECT_FALSE(book.hasLastError(0, s_anyThread));
    book.setLastError(1, "a", "b", 0, nullptr);
    EXPECT_FALSE(book.getLastError(out, 2, s_anyThread));
    EXPECT_EQ(out.get(), before.get());
}

std::vector<int> resultsOf(const ZLogBook::Errors& errors)
{
    std::vector<int> results;
    for (const ZRef<ZLogLastError>& error : errors)
        results.push_back(error->result());
    return results;
}

TEST(ZLogBook, ListsSelectExactlyAndOldestFirst)
{
    RecordingBook book;
    book.setLastError(0, "a", "b", 1, nullptr);
    book.setLastError(5, "a", "b", 2, nullptr);
    book.setLastError(0, "a", "b", 3, nullptr);
    EXPECT_THAT(resultsOf(book.getLastErrors()), ElementsAre(1, 2, 3));
    EXPECT_THAT(resultsOf(book.getLastOpErrors(0)), ElementsAre(1, 3));
    EXPECT_THAT(resultsOf(book.getLastOpErrors(5)), ElementsAre(2));
    EXPECT_THAT(resultsOf(book.getLastOpErrors(6)), IsEmpty());
    EXPECT_THAT(resultsOf(book.getLastThreadErrors(pthread_self())), ElementsAre(1, 2, 3));
    EXPECT_THAT(resultsOf(book.getLastThreadErrors(s_anyThread)), IsEmpty());
}

TEST(ZLogBook, ListsShareTheEntries)
{
    RecordingBook book;
    book.setLastError(1, "a", "b", 1, nullptr);
    EXPECT_EQ(book.getLastErrors()[0].get(), book.getLastErrors()[0].get());
}

TEST(ZLogBook, ClearingRemovesMatchesAndReportsOnlyTheOperation)
{
    RecordingBook book;
    const auto fill = [&book] {
        book.setLastError(1, "a", "b", 1, nullptr);
        book.setLastError(2, "a", "b", 2, nullptr);
        std::thread([&book] { book.setLastError(1, "a", "b", 3, nullptr); }).join();
    };
    const auto last = [&book] { return book.records().back(); };

    fill();
    book.clearLastError(1, s_anyThread);
    EXPECT_EQ(last(), "ClearLastError(1)|");
    EXPECT_THAT(resultsOf(book.getLastErrors()), ElementsAre(2));
    book.clearLastError(0, s_anyThread);
    EXPECT_EQ(last(), "ClearLastError(0)|");
    EXPECT_THAT(resultsOf(book.getLastErrors()), IsEmpty());

    fill();
    book.clearLastError(1, pthread_self());
    EXPECT_EQ(last(), "ClearLastError(1)|");
    EXPECT_THAT(resultsOf(book.getLastErrors()), ElementsAre(2, 3));
    book.clearLastError(0, pthread_self());
    EXPECT_EQ(last(), "ClearLastError(0)|");
    EXPECT_THAT(resultsOf(book.getLastErrors()), ElementsAre(3));
}

TEST(ZLogBook, ClearingNothingReportsNothing)
{
    RecordingBook book;
    book.clearLastError(0, s_anyThread);
    EXPECT_THAT(book.records(), IsEmpty());
    book.setLastError(1, "a", "b", 1, nullptr);
    book.clearLastError(2, s_anyThread);
    EXPECT_EQ(book.records().size(), 1U);
}

TEST(ZLogBook, TheErrorStringHasALineForEachText)
{
    RecordingBook book;
    ZGStr<wchar_t> out(L"before ");
    EXPECT_FALSE(book.getLastErrorString(out));
    EXPECT_TRUE(out == L"before ");
    book.setLastError(1, "a", "b", 1, "one");
    book.setLastError(1, "a", "b", 1, nullptr);
    book.setLastError(1, "a", "b", 1, "tw\xE9");
    EXPECT_TRUE(book.getLastErrorString(out));
    EXPECT_TRUE(out == L"before one\r\n\r\ntw\u00E9\r\n");
}

TEST(ZLogBook, TheShiftOperatorWritesNothing)
{
    RecordingBook book;
    ZLogRecord record;
    record << 1;
    EXPECT_EQ(&(book << record), &book);
    EXPECT_THAT(book.records(), IsEmpty());
}

TEST(ZLogBook, CreatesEmptyRecords)
{
    EXPECT_EQ(ZLogBook::create().Count(), 0);
}

TEST(ZLogBook, IsActiveByDefault)
{
    EXPECT_FALSE(ZLogBookDummy().isInactive());
}

TEST(ZLogBook, ForwardsABinaryValueAsItsBytes)
{
    RecordingBook book;
    unsigned char bytes[]{'a', 'b', 'c'};
    const TZBinary<unsigned char> data(bytes, 3, false);
    static_cast<ZLogBook&>(book).writeStream(9, -1, data);
    EXPECT_THAT(book.m_blocks, ElementsAre("9,-1,abc"));
}

TEST(ZLogBookDummy, DiscardsRecordsAndKeepsErrors)
{
    ZLogBookDummy book;
    book.add(ZLogRecord() << 1);
    book.writeStream(1, 2, "abc", 3);
    ZGStr<wchar_t> out(L"x");
    EXPECT_FALSE(book.getSessionTransferLog(out));
    EXPECT_TRUE(out == L"x");
    book.setLastError(1, "a", "b", 1, nullptr);
    EXPECT_TRUE(book.hasLastError(1, s_anyThread));
}

TEST(ZLogBook, TheTrailMayBeUsedByManyThreads)
{
    RecordingBook book;
    constexpr int threadCount = 4;
    constexpr int errorCount = 50;
    std::vector<std::thread> threads;
    for (int t = 1; t <= threadCount; ++t) {
        threads.emplace_back([&book, t] {
            for (int i = 0; i < errorCount; ++i) {
                book.setLastError(t, "a", "b", i, nullptr);
                ZRef<ZLogLastError> error;
                EXPECT_TRUE(book.getLastError(error, t, pthread_self()));
                EXPECT_EQ(error->result(), i);
                (void)book.getLastErrors();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(book.getLastErrors().Count(), threadCount * errorCount);
    EXPECT_EQ(book.records().size(), static_cast<std::size_t>(threadCount * errorCount));
}

class Hoster : public ZLogBookHoster {
public:
    using ZLogBookHoster::ZLogBookHoster;
    bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
};

TEST(ZLogBookHoster, ForwardsRecordsAndBlocksInOrder)
{
    static std::vector<std::string> order;
    order.clear();
    class Named : public ZLogBookDummy {
    public:
        explicit Named(const char* name)
            : m_name(name)
        {
        }
        void add(const ZLogRecord& record) override { order.push_back(m_name + ":" + textsOf(record)); }
        using ZLogBook::writeStream;
        void writeStream(unsigned char tag, int, const void*, long) override
        {
            order.push_back(m_name + "#" + std::to_string(tag));
        }
        std::string m_name;
    };
    Hoster hoster(
        new Named("a"), nullptr, new Named("b"), nullptr, nullptr, nullptr, nullptr, new Named("c"));
    hoster.add(ZLogRecord() << 1);
    hoster.writeStream(200, 5, "x", 1);
    EXPECT_THAT(order, ElementsAre("a:1|", "b:1|", "c:1|", "a#200", "b#200", "c#200"));
}

TEST(ZLogBookHoster, AnErrorIsAddedToThreeTrails)
{
    auto* const a = new RecordingBook;
    auto* const b = new RecordingBook;
    Hoster hoster(a, b);
    hoster.setLastError(7, "open", "fopen", -1, "no file");

    const std::string without = "SetLastError(7): [open] has invoked [fopen] which returned: -1|";
    const std::string with = "SetLastError(7): [open] has invoked [fopen] which returned: -1 - no file|";
    EXPECT_THAT(a->records(), ElementsAre(without, with));
    EXPECT_THAT(b->records(), ElementsAre(without, with));
    for (ZLogBook* book : std::initializer_list<ZLogBook*>{&hoster, a, b}) {
        ASSERT_EQ(book->getLastErrors().Count(), 1);
    }
    EXPECT_EQ(static_cast<const char*>(hoster.getLastErrors()[0]->text()), nullptr);
    EXPECT_TRUE(a->getLastErrors()[0]->text() == "no file");
}

TEST(ZLogBookHoster, ClearsItsOwnTrailAndThoseOfItsBooks)
{
    auto* const a = new RecordingBook;
    Hoster hoster(a);
    hoster.setLastError(1, "x", "y", 1, nullptr);
    a->setLastError(1, "x", "y", 2, nullptr);
    hoster.clearLastError(1, s_anyThread);
    EXPECT_EQ(hoster.getLastErrors().Count(), 0);
    EXPECT_EQ(a->getLastErrors().Count(), 0);
    const std::vector<std::string> records = a->records();
    ASSERT_EQ(records.size(), 5U);
    EXPECT_EQ(records[3], "ClearLastError(1)|"); // the hoster's message
    EXPECT_EQ(records[4], "ClearLastError(1)|"); // the book's own
}

TEST(ZLogBookHoster, TheGettersReadItsOwnTrail)
{
    auto* const a = new RecordingBook;
    Hoster hoster(a);
    a->setLastError(1, "x", "y", 1, nullptr);
    EXPECT_FALSE(hoster.hasLastError(0, s_anyThread));
    EXPECT_EQ(hoster.getLastErrors().Count(), 0);
}

TEST(ZLogBookHoster, ABookThatThrowsDoesNotStopTheOthers)
{
    class Failing : public ZLogBookDummy {
    public:
        explicit Failing(int number)
            : m_number(number)
        {
        }
        void add(const ZLogRecord&) override { throw m_number; }
        using ZLogBook::writeStream;
        void writeStream(unsigned char, int, const void*, long) override { throw m_number; }

    private:
        int m_number;
    };
    auto* const a = new RecordingBook;
    auto* const b = new RecordingBook;
    Hoster hoster(a, new Failing(1), new Failing(2), b);
    const auto thrownBy = [](const auto& call) {
        try {
            call();
        } catch (int number) {
            return number;
        }
        return 0;
    };
    EXPECT_EQ(thrownBy([&] { hoster.add(ZLogRecord() << "x"); }), 1);
    EXPECT_EQ(thrownBy([&] { hoster.writeStream(1, 2, "abc", 3); }), 1);
    EXPECT_THAT(a->records(), ElementsAre("x|"));
    EXPECT_THAT(b->records(), ElementsAre("x|"));
    EXPECT_THAT(b->m_blocks, ElementsAre("1,2,abc"));
}

TEST(ZLogBookHoster, DestroysItsBooks)
{
    static int living = 0;
    class Counted : public ZLogBookDummy {
    public:
        Counted() { ++living; }
        ~Counted() override { --living; }
    };
    {
        const Hoster hoster(
            new Counted, new Counted, nullptr, new Counted, nullptr, nullptr, nullptr, new Counted);
        EXPECT_EQ(living, 4);
    }
    EXPECT_EQ(living, 0);
}

// Failed allocations

TEST(ZLogBook, AListOfErrorsThrowsBadAllocIfAllocationFails)
{
    ZLogBookDummy book;
    for (int op : {1, 2, 1, 1})
        book.setLastError(op, "a", "b", op, nullptr);
    EXPECT_GT(failEachAllocation([&] { EXPECT_EQ(book.getLastOpErrors(1).Count(), 3); }), 3);
    EXPECT_GT(failEachAllocation([&] { EXPECT_EQ(book.getLastThreadErrors(pthread_self()).Count(), 4); }), 4);
    EXPECT_GT(failEachAllocation([&] { EXPECT_EQ(book.getLastErrors().Count(), 4); }), 4);
}

TEST(ZLogBook, AnErrorThatCannotBeAllocatedIsNotInTheTrail)
{
    ZLogBookDummy book;
    for (long nth = 1;; ++nth) {
        const AllocationFault fault(nth);
        try {
            book.setLastError(1, "a", "b", 2, nullptr);
        } catch (const std::bad_alloc&) {
            if (book.hasLastError(1, s_anyThread))
                return; // from here on the record cannot be allocated
            continue;
        }
        FAIL() << "no allocation failed";
    }
}

TEST(ZLogBookHoster, AFailedAllocationDestroysEveryBook)
{
    class Both : public ZLogBookHoster {
    public:
        using ZLogBookHoster::ZLogBookHoster;
        bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
    };
    const auto dummy = [] { return std::make_unique<ZLogBookDummy>(); };
    EXPECT_GT(failEachAllocation([&] {
        auto first = dummy();
        auto second = dummy();
        const Both both(first.release(), second.release());
    }),
        7);
}

} // namespace
} // namespace ZSpace::Testing
