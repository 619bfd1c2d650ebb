// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Ownership of Foundation's objects, and the conversion of its exceptions to C++.

#include "ZSpace/platform/foundation/RaisingFoundation.h"
#include "tests/platform/Catching.h"

#include <gtest/gtest.h>

#include <stdexcept>

/// Counts its live instances.
@interface LifeProbe : NSObject
@end

namespace {
long s_alive = 0;
} // namespace

@implementation LifeProbe
- (id)init
{
    self = [super init];
    ++s_alive;
    return self;
}
- (void)dealloc
{
    --s_alive;
    [super dealloc];
}
@end

namespace ZSpace::Testing {
namespace {

/// Long enough to be a separate object on every host.
constexpr const char* s_text = "a text that no host keeps in a pointer or shares with an equal one";

template <typename Handle>
unsigned long countOf(const Handle& handle)
{
    return [handle.native() retainCount];
}

NS::String formatted(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const NS::String text = NS::String::stringWithFormat(NS::String(format).native(), arguments);
    va_end(arguments);
    return text;
}

TEST(OwnershipFoundation, ACopyHoldsACountAndTheLastOneFreesTheObject)
{
    NS::Object handle = NS::Object::adopt([[LifeProbe alloc] init]);
    {
        const NS::Object copy = handle;
        EXPECT_EQ(countOf(handle), 2U);
        const NS::Object moved = std::move(handle);
        EXPECT_EQ(countOf(copy), 2U);
        EXPECT_FALSE(handle); // NOLINT: a moved-from handle is nil
        EXPECT_EQ(s_alive, 1);
    }
    EXPECT_EQ(s_alive, 0);
}

TEST(OwnershipFoundation, EveryOperationLeavesOneCount)
{
    const NS::String text(s_text);
    EXPECT_EQ(countOf(text), 1U);
    EXPECT_EQ(countOf(NS::MutableString(s_text)), 1U);
    EXPECT_EQ(countOf(formatted("%s and %s", s_text, s_text)), 1U);
    EXPECT_EQ(countOf(text.stringByAppendingPathComponent(text)), 1U);
    EXPECT_EQ(countOf(NS::Task()), 1U);
    EXPECT_EQ(countOf(NS::Thread::callStackSymbols()), 1U);
    EXPECT_EQ(countOf(text), 1U);
    {
        const NS::Array array = NS::Array::arrayWithObjects({text});
        EXPECT_EQ(countOf(array), 1U);
        EXPECT_EQ(countOf(text), 2U);
        const NS::String item = array.firstObject();
        const NS::String same = array.objectAtIndex(0);
        EXPECT_EQ(countOf(text), 4U);
    }
    EXPECT_EQ(countOf(text), 1U);
    EXPECT_EQ(countOf(NS::String::retain(text.native())), 2U);
    EXPECT_EQ(countOf(text), 1U);
}

TEST(OwnershipFoundation, ATaskReleasesWhatItWasGiven)
{
    const NS::String path(s_text);
    const NS::Array arguments = NS::Array::arrayWithObjects({path});
    {
        NS::Task task;
        task.setLaunchPath(path);
        task.setArguments(arguments);
        EXPECT_STREQ(task.launchPath().UTF8String(), s_text);
        EXPECT_EQ(task.arguments().count(), 1U);
    }
    EXPECT_EQ(countOf(arguments), 1U);
}

TEST(OwnershipFoundation, APoolReleasesAutoreleasedObjects)
{
    {
        const NS::AutoreleasePool pool;
        [[[LifeProbe alloc] init] autorelease];
        EXPECT_EQ(s_alive, 1);
    }
    EXPECT_EQ(s_alive, 0);
}

/// Raises an exception that owns a probe, through frames with destructors to run.
void raiseProbe()
{
    NSDictionary* const details = [NSDictionary dictionaryWithObject:[[[LifeProbe alloc] init] autorelease]
                                                              forKey:@"probe"];
    NS::detail::raising([&] {
        const NS::String tidied(s_text);
        [[NSException exceptionWithName:@"Name" reason:@"Reason" userInfo:details] raise];
    });
}

TEST(RaisingFoundation, ARaisedExceptionIsThrownWithItsContents)
{
    {
        const NS::AutoreleasePool pool;
        const NS::Exception exception = thrownBy(raiseProbe);
        ASSERT_NE(exception.native(), nil);
        EXPECT_STREQ(exception.name().UTF8String(), "Name");
        EXPECT_STREQ(exception.reason().UTF8String(), "Reason");
        EXPECT_TRUE(exception.userInfo());
        EXPECT_GT(exception.callStackSymbols().count(), 0U);
        EXPECT_EQ(s_alive, 1);
    }
    EXPECT_EQ(s_alive, 0);
}

TEST(RaisingFoundation, AnExceptionOutlivesThePoolsThatItPasses)
{
    NS::Exception outer = NS::Exception::adopt(nil);
    {
        const NS::AutoreleasePool pool;
        outer = thrownBy(raiseProbe);
    }
    EXPECT_EQ(s_alive, 1);
    EXPECT_STREQ(outer.reason().UTF8String(), "Reason");
    outer = NS::Exception::adopt(nil);
    EXPECT_EQ(s_alive, 0);
}

TEST(RaisingFoundation, NothingIsThrownWhereNothingIsRaised)
{
    EXPECT_FALSE(thrownBy([] { NS::detail::raising([] {}); }));
    EXPECT_EQ(NS::detail::raising([] { return 5; }), 5);
}

TEST(RaisingFoundation, OtherExceptionsPassThrough)
{
    EXPECT_TRUE(throwsRuntimeError([] { NS::detail::raising([] { throw std::runtime_error("other"); }); }));
}

TEST(RaisingFoundation, AThrownHandleIsNotAFoundationException)
{
    EXPECT_TRUE(thrownBy([] { NS::detail::raising([] { NS::Exception::raise("a", "b"); }); }));
}

} // namespace
} // namespace ZSpace::Testing
