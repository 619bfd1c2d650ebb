// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Allocations that fail while a record is written: books throw, and the front end drops the line.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZTransferLog.h"
#include "tests/log/RecordingBook.h"
#include "tests/log/ReportFile.h"
#include "tests/support/AllocationFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>

namespace ZSpace::Testing {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

TEST_F(ReportFile, ThrowsBadAllocIfALineCannotBeAllocated)
{
    const ZRef<ZLogBook> book = openBook();
    const std::string text(3000, 'x');
    const std::wstring wide(3000, L'w');
    unsigned char bytes[500]{};
    ZLogRecord record;
    record << true << 1.5 << -2.5F << static_cast<short>(3) << L"wide" << text.c_str() << wide.c_str()
           << ZTime(true) << ZGUID()
           << TZValueBase<ZTypeId>(std::in_place, TZBinary<unsigned char>(bytes, 500, false));
    EXPECT_GE(failEachAllocation([&] { book->add(record); }), 3);
    EXPECT_THAT(content(), EndsWith(std::string(1000, '0') + "\n"));
    EXPECT_EQ(linesOf(content()).size(), 1U);
}

TEST_F(ReportFile, IntegersAndStringsNeedNoAllocation)
{
    const ZRef<ZLogBook> book = openBook();
    ZLogRecord record;
    record << 1 << 2U << -3LL << 4ULL << "text" << ZGStr<char>("text") << L"wide" << ZGStr<wchar_t>(L"wide");
    EXPECT_EQ(failEachAllocation([&] { book->add(record); }), 0);
    EXPECT_THAT(content(), EndsWith("\t1\t2\t-3\t4\ttext\ttext\twide\twide\n"));
}

TEST_F(ReportFile, ALineThatCannotBeAllocatedIsDropped)
{
    ZTransferLog::useLogBook(openBook());
    const std::string text(3000, 'x');
    int stored = 0;
    for (long nth = 1; nth < 20; ++nth) {
        const AllocationFault fault(nth, AllocationFault::Kind::Lasting);
        CNSLogMsg(text.c_str());
        CNSLog("%s%n", text.c_str(), &stored);
    }
    CNSLog("last");
    EXPECT_THAT(content(), EndsWith("\tlast\n"));
    EXPECT_THAT(content(), HasSubstr(text));
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
}

TEST(FrontEnd, DropsALineWhoseBookThrows)
{
    struct Throwing : RecordingBook {
        void add(const ZLogRecord& record) override
        {
            RecordingBook::add(record);
            throw std::bad_alloc();
        }
    };
    auto* const book = new Throwing;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(book));
    CNSLog("line %d", 1);
    CNSLogMsg("line 2");
    EXPECT_THAT(book->records(), testing::ElementsAre("line 1|", "line 2|"));
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
}

} // namespace
} // namespace ZSpace::Testing
