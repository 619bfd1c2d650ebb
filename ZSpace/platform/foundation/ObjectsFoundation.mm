// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/foundation/RaisingFoundation.h"
#include "ZSpace/platform/foundation/Utf8Foundation.h"

#include <memory>
#include <new>
#include <vector>

namespace ZSpace::NS {

namespace detail {

void retain(NSObject* object) noexcept
{
    retainNative(object);
}

void release(NSObject* object) noexcept
{
    releaseNative(object);
}

} // namespace detail

namespace {

/// A new string of the class `StringType`. Repairs bytes that are not UTF-8, since Foundation refuses them.
template <typename StringType>
StringType* stringFrom(const char* utf8)
{
    if (!utf8)
        return nil;
    return detail::raising([&] {
        StringType* string = [[StringType alloc] initWithUTF8String:utf8];
        if (!string)
            string = [[StringType alloc] initWithUTF8String:ZSpace::Host::repairedUtf8(utf8).c_str()];
        return detail::leaked(string);
    });
}

constexpr unichar s_replacementCharacter = 0xFFFD;

bool isLeadSurrogate(unichar unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool isTrailSurrogate(unichar unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

/// An autoreleased copy of `string` with U+FFFD for each lone surrogate; nil if allocation fails. Made from code units,
/// since GNUstep does not copy strings with lone surrogates.
NSString* withoutLoneSurrogates(NSString* string)
{
    const NSUInteger length = [string length];
    const std::unique_ptr<unichar[]> units(new (std::nothrow) unichar[length]);
    if (!units)
        return nil;
    [string getCharacters:units.get() range:NSMakeRange(0, length)];
    for (NSUInteger i = 0; i < length; ++i) {
        if (isLeadSurrogate(units[i]) && i + 1 < length && isTrailSurrogate(units[i + 1]))
            ++i;
        else if (isLeadSurrogate(units[i]) || isTrailSurrogate(units[i]))
            units[i] = s_replacementCharacter;
    }
    return detail::autoreleased([[NSString alloc] initWithCharacters:units.get() length:length]);
}

/// The string as UTF-8, in the caller's pool; null for nil, and if allocation fails.
const char* utf8Of(NSString* string) noexcept
{
    const char* utf8 = nullptr;
    detail::releaseNative(detail::raisedBy([&] { utf8 = [string UTF8String]; }));
    if (string && !utf8) // lone surrogates have no such form
        detail::releaseNative(detail::raisedBy([&] { utf8 = [withoutLoneSurrogates(string) UTF8String]; }));
    return utf8;
}

template <typename StringType>
StringType* formatted(NSString* format, std::va_list arguments)
{
    return detail::raising([&] {
        return detail::leaked([[StringType alloc] initWithFormat:format ? format : [NSString string]
                                                       arguments:arguments]);
    });
}

} // namespace

#if __has_feature(objc_arc)

// What compilers generate for `@autoreleasepool`.
extern "C" void* objc_autoreleasePoolPush();
extern "C" void objc_autoreleasePoolPop(void* pool);

AutoreleasePool::AutoreleasePool() noexcept
    : m_pool(objc_autoreleasePoolPush())
{
}

AutoreleasePool::~AutoreleasePool()
{
    objc_autoreleasePoolPop(m_pool);
}

#else

AutoreleasePool::AutoreleasePool() noexcept
    : m_pool([[NSAutoreleasePool alloc] init])
{
}

AutoreleasePool::~AutoreleasePool()
{
    [static_cast<NSAutoreleasePool*>(m_pool) drain];
}

#endif

String::String(const char* utf8)
    : Handle(stringFrom<NSString>(utf8))
{
}

String::String(const std::string& utf8)
    : String(utf8.c_str())
{
}

String String::stringWithFormat(NSString* format, std::va_list arguments)
{
    return adopt(formatted<NSString>(format, arguments));
}

const char* String::UTF8String() const noexcept
{
    return utf8Of(native());
}

String String::stringByAppendingPathComponent(const String& component) const
{
    if (!component)
        return {};
    return adopt(detail::raising(
        [&] { return detail::retained([native() stringByAppendingPathComponent:component.native()]); }));
}

MutableString::MutableString(const char* utf8)
    : Handle(stringFrom<NSMutableString>(utf8))
{
}

MutableString MutableString::stringWithFormat(NSString* format, std::va_list arguments)
{
    return adopt(formatted<NSMutableString>(format, arguments));
}

const char* MutableString::UTF8String() const noexcept
{
    return utf8Of(native());
}

void MutableString::appendString(const String& string)
{
    if (string)
        detail::raising([&] { [native() appendString:string.native()]; });
}

Array Array::arrayWithObjects(const String* items, std::size_t count)
{
    std::vector<NSString*> natives;
    for (std::size_t i = 0; i < count; ++i)
        natives.push_back(items[i].native());
    return adopt(detail::raising(
        [&] { return detail::retained([NSArray arrayWithObjects:natives.data() count:natives.size()]); }));
}

std::size_t Array::count() const noexcept
{
    return [native() count];
}

String Array::objectAtIndex(std::size_t index) const
{
    return String::adopt(
        detail::raising([&] { return detail::retained<NSString>([native() objectAtIndex:index]); }));
}

String Array::firstObject() const
{
    return String::adopt(detail::raising([&] { return detail::retained<NSString>([native() firstObject]); }));
}

} // namespace ZSpace::NS
