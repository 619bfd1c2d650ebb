// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/portable/ObjectsPortable.h"

#include "ZSpace/platform/CallStack.h"
#include "ZSpace/platform/portable/FormatPortable.h"

NSObject::~NSObject() = default;

namespace {

bool printsWithoutQuotes(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$'
        || c == '/' || c == ':' || c == '.';
}

bool printsWithoutQuotes(const std::string& string)
{
    for (const char c : string) {
        if (!printsWithoutQuotes(c))
            return false;
    }
    return !string.empty();
}

/// Escapes quotes and backslashes, and line feeds, since an array prints on one line.
std::string quoted(const std::string& string)
{
    std::string result = "\"";
    for (const char c : string) {
        if (c == '\n') {
            result += "\\n";
            continue;
        }
        if (c == '"' || c == '\\')
            result += '\\';
        result += c;
    }
    return result += '"';
}

std::string printed(const ZSpace::NS::String& string)
{
    return string ? string.native()->m_utf8 : std::string("(null)");
}

} // namespace

std::string NSArray::description() const
{
    std::string result = "(";
    for (const ZSpace::NS::String& item : m_items) {
        if (result.size() > 1)
            result += ", ";
        const std::string& string = item.native()->m_utf8;
        result += printsWithoutQuotes(string) ? string : quoted(string);
    }
    return result += ')';
}

std::string NSException::description() const
{
    return printed(m_name) + ": " + printed(m_reason);
}

std::string NSTask::description() const
{
    return printed(m_launchPath);
}

namespace ZSpace::NS {

namespace detail {

void retain(NSObject* object) noexcept
{
    if (object)
        object->retain();
}

void release(NSObject* object) noexcept
{
    if (object)
        object->release();
}

} // namespace detail

namespace {

constexpr const char* s_invalidArgument = "NSInvalidArgumentException";

Exception exceptionOf(const String& name, const String& reason, const Array& callStackSymbols)
{
    Exception exception = Exception::adopt(new NSException);
    exception.native()->m_name = name;
    exception.native()->m_reason = reason;
    exception.native()->m_callStackSymbols = callStackSymbols;
    return exception;
}

std::string formatted(NSString* format, std::va_list arguments)
{
    return format ? ZSpace::Host::formatWithObjects(format->m_utf8.c_str(), arguments) : std::string();
}

} // namespace

// Objects own their strings here, so there is nothing to bound.
AutoreleasePool::AutoreleasePool() noexcept = default;
AutoreleasePool::~AutoreleasePool() = default;

String::String(const char* utf8)
    : Handle(utf8 ? new NSString(utf8) : nullptr)
{
}

String::String(const std::string& utf8)
    : Handle(new NSString(utf8))
{
}

String String::stringWithFormat(NSString* format, std::va_list arguments)
{
    return adopt(new NSString(formatted(format, arguments)));
}

const char* String::UTF8String() const noexcept
{
    return native() ? native()->m_utf8.c_str() : nullptr;
}

String String::stringByAppendingPathComponent(const String& component) const
{
    if (!native() || !component)
        return {};
    std::string path = native()->m_utf8;
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    const std::string& tail = component.native()->m_utf8;
    const std::size_t begin = tail.find_first_not_of('/');
    if (begin == std::string::npos)
        return path;
    if (!path.empty() && path.back() != '/')
        path += '/';
    // The component keeps its leading separator only if this path is empty.
    path += path.empty() ? tail : tail.substr(begin);
    return path;
}

MutableString::MutableString(const char* utf8)
    : Handle(utf8 ? new NSMutableString(utf8) : nullptr)
{
}

MutableString MutableString::stringWithFormat(NSString* format, std::va_list arguments)
{
    return adopt(new NSMutableString(formatted(format, arguments)));
}

const char* MutableString::UTF8String() const noexcept
{
    return native() ? native()->m_utf8.c_str() : nullptr;
}

void MutableString::appendString(const String& string)
{
    if (native() && string)
        native()->m_utf8 += string.native()->m_utf8;
}

Array Array::arrayWithObjects(const String* items, std::size_t count)
{
    Array array = adopt(new NSArray);
    for (std::size_t i = 0; i < count; ++i) {
        if (!items[i])
            Exception::raise(s_invalidArgument, "a list was to be made of items of which one is nil");
        array.native()->m_items.push_back(items[i]);
    }
    return array;
}

std::size_t Array::count() const noexcept
{
    return native() ? native()->m_items.size() : 0;
}

String Array::objectAtIndex(std::size_t index) const
{
    if (!native())
        return {};
    if (index >= count())
        Exception::raise("NSRangeException",
            "item " + std::to_string(index) + " was asked of a list of " + std::to_string(count())
                + " items");
    return native()->m_items[index];
}

String Array::firstObject() const
{
    return count() > 0 ? native()->m_items.front() : String();
}

void Exception::raise(const String& name, const String& reason)
{
    throw exceptionOf(name, reason, Thread::callStackSymbols());
}

String Exception::name() const
{
    return native() ? native()->m_name : String();
}

String Exception::reason() const
{
    return native() ? native()->m_reason : String();
}

Object Exception::userInfo() const
{
    return native() ? native()->m_userInfo : Object();
}

Array Exception::callStackSymbols() const
{
    return native() ? native()->m_callStackSymbols : Array();
}

FileHandle FileHandle::fileHandleWithNullDevice()
{
    return adopt(new NSFileHandle("/dev/null"));
}

Array Thread::callStackSymbols()
{
    Array symbols = Array::arrayWithObjects({});
    for (const std::string& line : ZSpace::Host::callStackLines(__builtin_return_address(0)))
        symbols.native()->m_items.emplace_back(line);
    return symbols;
}

} // namespace ZSpace::NS
