// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"
#include "tests/core/ListSupport.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/DeathTests.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace ZSpace::Testing {
namespace {

TEST(ZListDeathTest, AddTerminatesIfAnyAllocationFails)
{
    for (long nth = 1; nth <= 3; ++nth) {
        EXPECT_EXIT(
            {
                ZList<std::string> list;
                const std::string text(50, 'a');
                const AllocationFault fault(nth); // the element, its string, the slots
                list.add(text);
            },
            testing::KilledBySignal(SIGABRT), s_terminateMessage);
    }
}

TEST(ZListDeathTest, AddTerminatesIfCopyingTheElementThrows)
{
    EXPECT_EXIT(
        {
            ZList<Counted> list;
            Counted::s_copiesLeft = 0;
            list.add(Counted(1));
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

TEST(ZListDeathTest, AssignmentTerminatesIfCopyingAnElementThrows)
{
    EXPECT_EXIT(
        {
            const ZList<Counted> source = countedList(3);
            ZList<Counted> target;
            Counted::s_copiesLeft = 1;
            target = source;
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

struct Thrower {
    bool armed = false;
    ~Thrower() noexcept(false)
    {
        if (armed)
            throw std::runtime_error("from a destructor");
    }
};

TEST(ZListDeathTest, RemovalTerminatesIfADestructorThrows)
{
    ZList<Thrower> list;
    list.add(Thrower());
    EXPECT_EXIT(
        (list[0].armed = true, list.il_removeAt(0)), testing::KilledBySignal(SIGABRT), s_terminateMessage);
    EXPECT_EXIT(
        (list[0].armed = true, list.il_removeAll()), testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

} // namespace
} // namespace ZSpace::Testing
