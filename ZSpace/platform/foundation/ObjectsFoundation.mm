// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/foundation/RaisingFoundation.h"
#include "ZSpace/platform/foundation/Utf8Foundation.h"

#include <vector>

namespace ZSpace::NS {

namespace detail {

void retain(NSObject* object) noexcept
{
    countUp(object);
}

void release(NSObject* object) noexcept
{
    countDown(object);
}

} // namespace detail

namespace {

/// A new text of the class `Text`. Foundation refuses text that is no UTF-8, which then is repaired.
template <typename Text>
Text* textFrom(const char* utf8)
{
    if (!utf8)
        return nil;
    return detail::raising([&] {
        Text* text = [[Text alloc] initWithUTF8String:utf8];
        if (!text)
            text = [[Text alloc] initWithUTF8String:ZSpace::Host::repairedUtf8(utf8).c_str()];
        return detail::handedOut(text);
    });
}

/// The text as UTF-8, in the caller's pool; null for what has no such form (half of a surrogate pair).
const char* utf8Of(NSString* text) noexcept
{
    const char* utf8 = nullptr;
    detail::countDown(detail::raisedBy([&] { utf8 = [text UTF8String]; }));
    return utf8;
}

template <typename Text>
Text* formatted(NSString* format, std::va_list arguments)
{
    return detail::raising([&] {
        return detail::handedOut([[Text alloc] initWithFormat:format ? format : [NSString string]
                                                    arguments:arguments]);
    });
}

} // namespace

#if __has_feature(objc_arc)

// What `@autoreleasepool` becomes.
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
    : Handle(textFrom<NSString>(utf8))
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
        [&] { return detail::shared([native() stringByAppendingPathComponent:component.native()]); }));
}

MutableString::MutableString(const char* utf8)
    : Handle(textFrom<NSMutableString>(utf8))
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

void MutableString::appendString(const String& text)
{
    if (text)
        detail::raising([&] { [native() appendString:text.native()]; });
}

Array Array::arrayWithObjects(const String* items, std::size_t count)
{
    std::vector<NSString*> natives;
    for (std::size_t i = 0; i < count; ++i)
        natives.push_back(items[i].native());
    return adopt(detail::raising(
        [&] { return detail::shared([NSArray arrayWithObjects:natives.data() count:natives.size()]); }));
}

std::size_t Array::count() const noexcept
{
    return [native() count];
}

String Array::objectAtIndex(std::size_t index) const
{
    return String::adopt(
        detail::raising([&] { return detail::shared<NSString>([native() objectAtIndex:index]); }));
}

String Array::firstObject() const
{
    return String::adopt(detail::raising([&] { return detail::shared<NSString>([native() firstObject]); }));
}

} // namespace ZSpace::NS
