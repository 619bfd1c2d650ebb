// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The binary interface of the classes that log: slots of virtual functions, and sizes.

#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/log/ZLogBookHoster.h"
#include "ZSpace/log/ZTransferLog.h"
#include "tests/support/Slots.h"

#include <gtest/gtest.h>

#include <pthread.h>

namespace ZSpace::Testing {
namespace {

template <typename Class>
using WriteStream = void (Class::*)(unsigned char, int, const void*, long);

TEST(VirtualTables, ABookHasItsSlotsInOrder)
{
    // The destructor has the slots 0 and 1.
    EXPECT_EQ(slotOf(&ZLogBook::add), 2U);
    EXPECT_EQ(slotOf(static_cast<WriteStream<ZLogBook>>(&ZLogBook::writeStream)), 3U);
    EXPECT_EQ(slotOf(&ZLogBook::setLastError), 4U);
    EXPECT_EQ(slotOf(&ZLogBook::getLastError), 5U);
    EXPECT_EQ(slotOf(&ZLogBook::getLastThreadErrors), 6U);
    EXPECT_EQ(slotOf(&ZLogBook::getLastOpErrors), 7U);
    EXPECT_EQ(slotOf(&ZLogBook::getLastErrors), 8U);
    EXPECT_EQ(slotOf(&ZLogBook::hasLastError), 9U);
    EXPECT_EQ(slotOf(&ZLogBook::clearLastError), 10U);
    EXPECT_EQ(slotOf(&ZLogBook::isInactive), 11U);
    EXPECT_EQ(slotOf(&ZLogBook::getSessionTransferLog), 12U);
}

TEST(VirtualTables, AReportFileHasItsSlotsInOrder)
{
    // A table of its own, because its base is virtual. The destructor has the slots 0 and 1.
    EXPECT_EQ(slotOf(&ZLogBookFile::add), 2U);
    EXPECT_EQ(slotOf(static_cast<WriteStream<ZLogBookFile>>(&ZLogBookFile::writeStream)), 3U);
    EXPECT_EQ(slotOf(&ZLogBookFile::setLastError), 4U);
    EXPECT_EQ(slotOf(&ZLogBookFile::getSessionTransferLog), 5U);
}

TEST(VirtualTables, ALoggableHasItsSlotsInOrder)
{
    EXPECT_EQ(slotOf(&ZLoggable::onLogBookAttached), 0U);
    EXPECT_EQ(slotOf(&ZLoggable::onLogBookDetached), 1U);
    EXPECT_EQ(slotOf(static_cast<WriteStream<ZLoggable>>(&ZLoggable::writeStream)), 2U);
    // The destructor has the slots 3 and 4.
    EXPECT_EQ(slotOf(&ZLoggable::attachLogBook), 5U);
    EXPECT_EQ(slotOf(&ZLoggable::detachLogBook), 6U);
    EXPECT_EQ(slotOf(&ZLoggable::addLogRecord), 7U);
}

TEST(VirtualTables, NoClassHasHiddenMembers)
{
    static_assert(sizeof(ZLogBook) == sizeof(void*) + sizeof(pthread_mutex_t) + sizeof(ZList<int>));
    static_assert(sizeof(ZLogBookHoster) == sizeof(ZLogBook) + sizeof(ZList<int>));
    static_assert(sizeof(ZLogBookFile) == sizeof(void*) + 2 * sizeof(ZIOGFile<>) + sizeof(ZLogBook));
    static_assert(sizeof(ZLoggable) == 32 && sizeof(ZTransferLog) == sizeof(ZLoggable));
}

} // namespace
} // namespace ZSpace::Testing
