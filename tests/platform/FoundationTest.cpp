// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The handles of strings, arrays and exceptions.

#include "ZSpace/platform/Foundation.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/Host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(FoundationString, ReturnsWhatItWasMadeFrom)
{
    EXPECT_STREQ(NS::String("h\xC3\xA9").UTF8String(), "h\xC3\xA9");
    EXPECT_STREQ(NS::String(std::string("std")).UTF8String(), "std");
    EXPECT_STREQ(NS::String("").UTF8String(), "");
    EXPECT_STREQ(NS::MutableString("grows").UTF8String(), "grows");
}

TEST(FoundationString, InvalidUtf8IsNotLost)
{
    EXPECT_THAT(NS::String("kept \xC3").UTF8String(), StartsWith("kept "));
    EXPECT_THAT(NS::MutableString("kept \xFF too").UTF8String(), EndsWith(" too"));
}

TEST(FoundationString, OperationsOnNilReturnNil)
{
    const NS::String nil;
    EXPECT_FALSE(nil);
    EXPECT_EQ(nil.native(), nullptr);
    EXPECT_EQ(nil.UTF8String(), nullptr);
    EXPECT_FALSE(nil.stringByAppendingPathComponent("a"));
    EXPECT_FALSE(NS::String("a").stringByAppendingPathComponent(nil));
    EXPECT_FALSE(NS::String(nullptr));
    EXPECT_FALSE(NS::MutableString(nullptr));
    EXPECT_EQ(NS::MutableString().UTF8String(), nullptr);
    EXPECT_EQ(NS::Array().count(), 0U);
    EXPECT_FALSE(NS::Array().firstObject());
    EXPECT_FALSE(NS::Array().objectAtIndex(0));
    NS::MutableString nothing;
    nothing.appendString("x");
    EXPECT_FALSE(nothing);
}

TEST(FoundationString, JoinsPathsWithExactlyOneSeparator)
{
    const struct {
        const char* path;
        const char* component;
        const char* joined;
    } rows[] = {
        {"/a", "b", "/a/b"},
        {"/a/", "b", "/a/b"},
        {"/a//", "b", "/a/b"},
        {"/a", "/b", "/a/b"},
        {"/a", "b/c d", "/a/b/c d"},
        {"/", "b", "/b"},
        {"", "b", "b"},
        {"", "/b", "/b"},
        {"a", "", "a"},
        {"/a/", "", "/a"},
        {"/", "", "/"},
        {"/Library/Application Support", "com.coraldesk.remote",
            "/Library/Application Support/com.coraldesk.remote"},
    };
    for (const auto& row : rows)
        EXPECT_STREQ(
            NS::String(row.path).stringByAppendingPathComponent(row.component).UTF8String(), row.joined);
}

TEST(FoundationString, HandlesShareOneObject)
{
    NS::MutableString text("a");
    const NS::MutableString same = NS::MutableString::retain(text.native());
    const NS::MutableString copy = text;
    text.appendString("b");
    EXPECT_STREQ(same.UTF8String(), "ab");
    EXPECT_STREQ(copy.UTF8String(), "ab");
    NS::String moved("x");
    const NS::String target = std::move(moved);
    EXPECT_STREQ(target.UTF8String(), "x");
    NS::String assigned("old");
    assigned = target;
    EXPECT_EQ(assigned.native(), target.native());
    const NS::String& self = assigned;
    assigned = self;
    EXPECT_STREQ(assigned.UTF8String(), "x");
    EXPECT_STREQ(NS::String::retain(assigned.native()).UTF8String(), "x");
}

TEST(FoundationString, MayBeSharedBetweenThreads)
{
    const NS::String shared("shared");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = shared] {
            const NS::AutoreleasePool pool;
            for (int n = 0; n < 1000; ++n)
                EXPECT_STREQ(NS::String(copy).UTF8String(), "shared"); // NOLINT: the copy is the point
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(FoundationArray, HoldsItsItemsInOrder)
{
    const NS::Array array = NS::Array::arrayWithObjects({"a", "b"});
    EXPECT_EQ(array.count(), 2U);
    EXPECT_STREQ(array.firstObject().UTF8String(), "a");
    EXPECT_STREQ(array.objectAtIndex(1).UTF8String(), "b");
    EXPECT_FALSE(NS::Array::arrayWithObjects({}).firstObject());
    EXPECT_EQ(NS::Array::retain(array.native()).count(), 2U);
}

std::string raisedBy(const std::function<void()>& work)
{
    try {
        work();
    } catch (const NS::Exception& exception) {
        return std::string(exception.name().UTF8String()) + ": " + exception.reason().UTF8String();
    }
    return "nothing";
}

TEST(FoundationArray, ThrowsForANilItemAndForAnIndexPastTheEnd)
{
    EXPECT_THAT(raisedBy([] {
        NS::Array::arrayWithObjects({"a", NS::String()});
    }),
        HasSubstr("NSInvalidArgumentException: "));
    EXPECT_THAT(raisedBy([] { (void)NS::Array::arrayWithObjects({"a"}).objectAtIndex(1); }),
        StartsWith("NSRangeException: "));
}

TEST(FoundationException, HasNameReasonAndCallStackButNoUserInformation)
{
    try {
        NS::Exception::raise("Name", "Reason");
    } catch (const NS::Exception& exception) {
        EXPECT_STREQ(exception.name().UTF8String(), "Name");
        EXPECT_STREQ(exception.reason().UTF8String(), "Reason");
        EXPECT_FALSE(exception.userInfo());
        EXPECT_GT(exception.callStackSymbols().count(), 0U);
    }
    EXPECT_FALSE(NS::Exception().name());
    EXPECT_FALSE(NS::Exception().reason());
    EXPECT_FALSE(NS::Exception().userInfo());
    EXPECT_FALSE(NS::Exception().callStackSymbols());
}

TEST(FoundationPaths, FindsTheMachineWideApplicationSupportDirectory)
{
    const NS::Array folders = NS::searchPathForDirectoriesInDomains(static_cast<NS::SearchPathDirectory>(14),
        static_cast<NS::SearchPathDomainMask>(8), NS::ExpandTilde::No);
    EXPECT_THAT(folders.firstObject().UTF8String(), EndsWith(fs::path(host().applicationSupport).filename()));
    const NS::Array others = NS::searchPathForDirectoriesInDomains(
        static_cast<NS::SearchPathDirectory>(99), NS::SearchPathDomainMask::MachineWide, NS::ExpandTilde::No);
    EXPECT_TRUE(others);
    EXPECT_FALSE(others.firstObject());
}

std::string consoleOf(const std::function<void()>& work)
{
    return runInChild([&] {
        work();
        return 0;
    }).standardError;
}

TEST(Console, WritesDateProgramProcessThreadAndMessage)
{
    EXPECT_THAT(consoleOf([] { NS::log(NS::String("%@ %d").native(), NS::String("x").native(), 5); }),
        MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} "
                     "platform_tests\\[[0-9]+:[0-9]+\\] x 5\n"));
}

TEST(Console, NamesItsOwnProcessAndThread)
{
    const std::string line = consoleOf([] {
        std::fprintf(stderr, "%d\n", static_cast<int>(getpid()));
        NS::log(NS::String("x").native());
    });
    const std::string pid = line.substr(0, line.find('\n'));
    EXPECT_THAT(line, HasSubstr("[" + pid + ":" + pid + "] x")); // the first thread has the process's number
}

TEST(Console, AppendsALineFeedOnlyIfThereIsNone)
{
    EXPECT_THAT(consoleOf([] { NS::log(NS::String("a\n").native()); }), EndsWith("] a\n"));
    EXPECT_THAT(consoleOf([] { NS::log(NS::String("a\n\n").native()); }), EndsWith("] a\n\n"));
    EXPECT_THAT(consoleOf([] { NS::log(NS::String("").native()); }), EndsWith("] \n"));
}

} // namespace
} // namespace ZSpace::Testing
