// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Arrays, directories, exceptions and the console on hosts without Foundation.

#include "ZSpace/platform/Foundation.h"
#include "tests/platform/Formatting.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCallFaults.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

std::string printed(const NS::Array& array)
{
    return format("%@", array.native());
}

TEST(FoundationArrayPortable, PrintsOnOneLineWithQuotesWhereNeeded)
{
    EXPECT_EQ(printed(NS::Array::arrayWithObjects({"-uninstall", "YES"})), "(\"-uninstall\", YES)");
    EXPECT_EQ(printed(NS::Array::arrayWithObjects({})), "()");
    EXPECT_EQ(printed(NS::Array::arrayWithObjects({"aZ09_$/:."})), "(aZ09_$/:.)");
    EXPECT_EQ(printed(NS::Array::arrayWithObjects({"", "a b", "a\"b\\", "a\nb", "\xC3\xA9"})),
        "(\"\", \"a b\", \"a\\\"b\\\\\", \"a\\nb\", \"\xC3\xA9\")");
    for (const char* item : {"a-b", "a,b", "a(b", "a)b", "a=b", "a@b", "a+b"})
        EXPECT_EQ(printed(NS::Array::arrayWithObjects({item})), std::string("(\"") + item + "\")");
}

TEST(FoundationPortable, FreesItsObjects)
{
    const long before = blocksAlive();
    {
        NS::String string("a string that needs a block of its own");
        const NS::String copy = string;
        string = NS::String("another one");
        const NS::Array array = NS::Array::arrayWithObjects({string, copy});
        EXPECT_EQ(array.count(), 2U);
        EXPECT_GT(blocksAlive(), before);
    }
    EXPECT_EQ(blocksAlive(), before);
}

TEST(FoundationArrayPortable, AnIndexPastTheEndIsNamed)
{
    try {
        (void)NS::Array::arrayWithObjects({"a"}).objectAtIndex(1);
        FAIL() << "nothing was raised";
    } catch (const NS::Exception& exception) {
        EXPECT_STREQ(exception.reason().UTF8String(), "item 1 was asked of a list of 1 items");
    }
}

TEST(FoundationPathsPortable, ApplicationSupportIsWhereItIsOnMacos)
{
    const NS::Array folders =
        NS::searchPathForDirectoriesInDomains(NS::SearchPathDirectory::ApplicationSupport,
            NS::SearchPathDomainMask::MachineWide, NS::ExpandTilde::No);
    EXPECT_EQ(folders.count(), 1U);
    EXPECT_STREQ(folders.firstObject().UTF8String(), "/Library/Application Support");
}

TEST(ConsolePortable, ANullFormatIsEmpty)
{
    const std::string console = runInChild([] {
        NS::log(nullptr);
        return 0;
    }).standardError;
    EXPECT_THAT(console, testing::EndsWith("] \n"));
}

TEST(ConsolePortable, WritesLocalTime)
{
    const std::string kiritimati = runInChild([] {
        setenv("TZ", "XXX-14", 1);
        tzset();
        const time_t now = time(nullptr) + 14 * 3600;
        char date[32];
        strftime(date, sizeof date, "%Y-%m-%d %H", gmtime(&now));
        std::fprintf(stderr, "%s\n", date);
        NS::log(NS::String("x").native());
        return 0;
    }).standardError;
    EXPECT_THAT(kiritimati.substr(kiritimati.find('\n') + 1), testing::StartsWith(kiritimati.substr(0, 13)));
}

TEST(ConsolePortable, WritesALineOnce)
{
    const std::string console = runInChild([] {
        errno = EINTR; // of an earlier call
        NS::log(NS::String("line").native());
        return 0;
    }).standardError;
    EXPECT_EQ(console.find("] line\n"), console.size() - 7);
}

TEST(ConsolePortable, RepeatsAnInterruptedWrite)
{
    const std::string console = runInChild([] {
        const SystemCallFault fault(SystemCall::Write, EINTR);
        NS::log(NS::String("line").native());
        return 0;
    }).standardError;
    EXPECT_THAT(console, testing::EndsWith("] line\n"));
}

TEST(ConsolePortable, DoesNotRepeatAWriteThatTakesNothing)
{
    const Outcome outcome = runInChild([] {
        alarm(20);
        const ShortTransfers transfers(0);
        errno = EINTR; // of an earlier call
        NS::log(NS::String("line").native());
        return 0;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.standardError, "");
}

TEST(ConsolePortable, IgnoresAClosedStandardError)
{
    const Outcome outcome = runInChild([] {
        alarm(20);
        close(STDERR_FILENO);
        errno = EINTR;
        NS::log(NS::String("line").native());
        return 0;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
} // namespace ZSpace::Testing
