// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZStream.h"

#include "tests/support/LockTests.h"
#include "tests/support/Slots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

using Base = ZStreamBase<>;
using In = ZInStream<>;
using Out = ZOutStream<>;

static_assert(
    std::is_same_v<ZStream<>, ZStream<char, TZThreadSafeTransaction<ZThreadPseudoLock_T<pthread_mutex_t>>>>);
static_assert(std::is_base_of_v<ZStreamTransaction, Base>);
static_assert(std::has_virtual_destructor_v<Base> && std::is_abstract_v<ZStream<>>);
static_assert(!std::is_copy_constructible_v<In> && !std::is_copy_assignable_v<In>);

/// Records its arguments and returns preset results.
template <typename TX>
class RecordingStreamWith : public ZStream<char, TX> {
public:
    using ZInStream<char, TX>::read;
    using ZOutStream<char, TX>::write;

    int read(char* buffer, long count, long& got) override
    {
        m_buffer = buffer;
        m_count = count;
        if (m_answers)
            got = m_done;
        return m_status;
    }
    int write(char const* data, long count, long& written) override
    {
        m_text = data ? std::string(data, static_cast<std::size_t>(count)) : "(null)";
        m_count = count;
        m_preset = written;
        if (m_answers)
            written = m_done;
        return m_status;
    }
    long long Size() override { return 0; }
    bool BOS() override { return true; }
    bool EOS() override { return true; }
    long long Position() override { return 0; }
    int moveBegin() override { return 0; }
    int moveEnd() override { return 0; }
    int moveTo(long long) override { return 0; }
    int move(long long) override { return 0; }
    int State() const override { return 0; }
    int close() override { return 0; }

    int m_status = 0;
    long m_done = 0;
    bool m_answers = true;
    char* m_buffer = nullptr;
    long m_count = 0;
    long m_preset = -1;
    std::string m_text;
};

using RecordingStream = RecordingStreamWith<ZStreamTransaction>;

TEST(ZStreamTest, HalvesShareOneBase)
{
    RecordingStream stream;
    Base* throughIn = static_cast<In*>(&stream);
    Base* throughOut = static_cast<Out*>(&stream);
    EXPECT_EQ(throughIn, throughOut);
}

TEST(ZStreamTest, ItemsAreBytes)
{
    RecordingStream stream;
    Base& base = stream;
    EXPECT_EQ(base.ItemSize(), 1u);
    static_assert(std::is_same_v<decltype(base.ItemSize()), unsigned long long>);
    static_assert(std::is_same_v<decltype(base.Size()), long long>);
    static_assert(std::is_same_v<decltype(base.Position()), long long>);
}

TEST(ZStreamTest, ShortReadReturnsTheNumberOfItems)
{
    RecordingStream stream;
    char buffer[8];
    stream.m_done = 5;
    EXPECT_EQ(stream.read(buffer, 8), 5);
    EXPECT_EQ(stream.m_buffer, buffer);
    EXPECT_EQ(stream.m_count, 8);
}

TEST(ZStreamTest, ShortReadReturnsMinusOneForAnyStatus)
{
    RecordingStream stream;
    char buffer[8];
    stream.m_done = 5;
    for (int status : {1, -1, 32}) {
        stream.m_status = status;
        EXPECT_EQ(stream.read(buffer, 8), -1) << status;
    }
}

TEST(ZStreamTest, ShortReadReturnsZeroIfTheStreamSetsNoCount)
{
    RecordingStream stream;
    char buffer[8];
    stream.m_answers = false;
    EXPECT_EQ(stream.read(buffer, 8), 0);
}

TEST(ZStreamTest, ShortWriteReturnsTheNumberOfItems)
{
    RecordingStream stream;
    stream.m_done = 3;
    EXPECT_EQ(stream.write("abcdef", 4), 3);
    EXPECT_EQ(stream.m_text, "abcd");
    EXPECT_EQ(stream.m_preset, 0);
}

TEST(ZStreamTest, ShortWriteReturnsMinusOneForAnyStatus)
{
    RecordingStream stream;
    stream.m_done = 3;
    for (int status : {1, -1, 32}) {
        stream.m_status = status;
        EXPECT_EQ(stream.write("abcdef", 4), -1) << status;
    }
}

TEST(ZStreamTest, ShortWriteReturnsZeroIfTheStreamSetsNoCount)
{
    RecordingStream stream;
    stream.m_answers = false;
    EXPECT_EQ(stream.write("abc", 3), 0);
}

TEST(ZStreamTest, ShortWriteTakesTheLengthOfTheStringForANegativeCount)
{
    RecordingStream stream;
    for (long count : {-1L, -7L}) {
        stream.write("abcdef", count);
        EXPECT_EQ(stream.m_text, "abcdef");
        EXPECT_EQ(stream.m_count, 6);
    }
    stream.write("abcdef", 0);
    EXPECT_EQ(stream.m_count, 0);
    stream.write("", -1);
    EXPECT_EQ(stream.m_count, 0);
    stream.write(nullptr, -1);
    EXPECT_EQ(stream.m_text, "(null)");
    EXPECT_EQ(stream.m_count, 0);
}

TEST(ZStreamTest, TransactionsDoNothing)
{
    RecordingStream stream;
    Base& base = stream;
    base.beginTransaction();
    base.beginTransaction();
    base.endTransaction();
    base.endTransaction();
    EXPECT_EQ(stream.m_count, 0);
}

TEST(ZStreamTest, TransactionsHoldTheLockOfTheirPolicy)
{
    using Lock = ZThreadLock_T<pthread_mutex_t>;
    struct StreamAsLock : RecordingStreamWith<TZThreadSafeTransaction<Lock>> {
        void lock() { beginTransaction(); }
        void unlock() { endTransaction(); }
    };
    StreamAsLock stream;
    EXPECT_TRUE(waitsFor(stream, [&] {
        stream.beginTransaction();
        stream.endTransaction();
    }));
}

TEST(ZStreamTest, BaseOperationsAreInOrder)
{
    const std::vector<std::size_t> slots{slotOf(&Base::ItemSize), slotOf(&Base::Size), slotOf(&Base::BOS),
        slotOf(&Base::EOS), slotOf(&Base::Position), slotOf(&Base::moveBegin), slotOf(&Base::moveEnd),
        slotOf(&Base::moveTo), slotOf(&Base::move), slotOf(&Base::State), slotOf(&Base::close),
        slotOf(&Base::beginTransaction), slotOf(&Base::endTransaction)};
    EXPECT_THAT(slots, testing::ElementsAre(2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14)); // 0, 1: destructor
}

TEST(ZStreamTest, FullOperationsComeFirstInTheHalves)
{
    EXPECT_EQ(slotOf(static_cast<int (In::*)(char*, long, long&)>(&In::read)), 0u);
    EXPECT_EQ(slotOf(static_cast<long (In::*)(char*, long)>(&In::read)), 1u);
    EXPECT_EQ(slotOf(static_cast<int (Out::*)(char const*, long, long&)>(&Out::write)), 0u);
    EXPECT_EQ(slotOf(static_cast<long (Out::*)(char const*, long)>(&Out::write)), 1u);
}

} // namespace
} // namespace ZSpace::Testing
