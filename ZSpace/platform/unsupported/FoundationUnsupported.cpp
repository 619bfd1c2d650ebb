// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The handles for a host without objects. Each is nil, whatever it is constructed from, and operations behave
// as they do for nil. Only starting a task fails.

#include "ZSpace/platform/Foundation.h"

namespace ZSpace::NS {

namespace detail {

void retain(NSObject*) noexcept { }
void release(NSObject*) noexcept { }

} // namespace detail

// NOLINTBEGIN(readability-convert-member-functions-to-static): a real host needs the object
AutoreleasePool::AutoreleasePool() noexcept = default;
AutoreleasePool::~AutoreleasePool() = default;

String::String(const char*) { }
String::String(const std::string&) { }

String String::stringWithFormat(NSString*, std::va_list)
{
    return {};
}

const char* String::UTF8String() const noexcept
{
    return nullptr;
}

String String::stringByAppendingPathComponent(const String&) const
{
    return {};
}

MutableString::MutableString(const char*) { }

MutableString MutableString::stringWithFormat(NSString*, std::va_list)
{
    return {};
}

const char* MutableString::UTF8String() const noexcept
{
    return nullptr;
}

void MutableString::appendString(const String&) { }

Array Array::arrayWithObjects(const String*, std::size_t)
{
    return {};
}

std::size_t Array::count() const noexcept
{
    return 0;
}

String Array::objectAtIndex(std::size_t) const
{
    return {};
}

String Array::firstObject() const
{
    return {};
}

// Throws all the same, because callers rely on this not returning.
void Exception::raise(const String&, const String&)
{
    throw adopt(nullptr);
}

String Exception::name() const
{
    return {};
}

String Exception::reason() const
{
    return {};
}

Object Exception::userInfo() const
{
    return {};
}

Array Exception::callStackSymbols() const
{
    return {};
}

FileHandle FileHandle::fileHandleWithNullDevice()
{
    return {};
}

Task::Task() = default;

void Task::setLaunchPath(const String&) { }

void Task::setArguments(const Array&) { }

void Task::setStandardOutput(const FileHandle&) { }

void Task::setStandardError(const FileHandle&) { }

String Task::launchPath() const
{
    return {};
}

Array Task::arguments() const
{
    return {};
}

void Task::launch()
{
    Exception::raise("NSInvalidArgumentException", "this host starts no tasks");
}
// NOLINTEND(readability-convert-member-functions-to-static)

Array Thread::callStackSymbols()
{
    return {};
}

Array searchPathForDirectoriesInDomains(SearchPathDirectory, SearchPathDomainMask, ExpandTilde)
{
    return {};
}

void log(NSString*, ...) { }

} // namespace ZSpace::NS
