// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/FoundationTypes.h"

#include <cstdarg>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>

/// C++ handles over the host's objects: the same operations, under the same names, on every host.
///
///     const NS::String folder("/Library");
///     const NS::String file = folder.stringByAppendingPathComponent("a.txt");   // "/Library/a.txt"
///     NS::log(NS::String("made %@").native(), file.native());
///
/// Each way into code that uses handles (`main`, a thread's function, an entry point of a library) opens an
/// `AutoreleasePool` first.
///
/// A handle holds one retained object, or nothing ("nil"). As with the objects themselves, an operation on
/// nil does nothing and answers nil, zero or null. Handles may be copied and dropped on any thread; one
/// handle is not to be changed by two threads at once. Operations that fail raise `NS::Exception` and nothing
/// else besides `std::bad_alloc`.
namespace ZSpace::NS {

namespace detail {
/// Raises and lowers the count of a host object; both ignore null. Defined by each host for each native type.
template <typename Native>
void retain(Native* object) noexcept;
template <typename Native>
void release(Native* object) noexcept;
} // namespace detail

/// Owner of one count of a host object of the type `Native`.
template <typename Native>
class Handle {
public:
    Handle() noexcept = default;
    Handle(const Handle& other) noexcept
        : m_native(other.m_native)
    {
        detail::retain(m_native);
    }
    Handle(Handle&& other) noexcept
        : m_native(std::exchange(other.m_native, nullptr))
    {
    }
    Handle& operator=(Handle other) noexcept
    {
        std::swap(m_native, other.m_native);
        return *this;
    }
    ~Handle() { detail::release(m_native); }

    /// The object, still owned by this handle; null for nil.
    [[nodiscard]] Native* native() const noexcept { return m_native; }
    /// True unless this is nil.
    [[nodiscard]] explicit operator bool() const noexcept { return m_native != nullptr; }

protected:
    /// Takes over a count that the caller holds.
    explicit Handle(Native* adopted) noexcept
        : m_native(adopted)
    {
    }

private:
    Native* ZSPACE_COUNTED_BY_HAND m_native = nullptr;
};

/// Bounds the life of what the host's operations hand out without a count: the texts of `UTF8String`
/// foremost. They are valid until the calling thread's innermost pool ends. Pools nest, and live on the stack
/// of one thread.
class AutoreleasePool {
public:
    AutoreleasePool() noexcept;
    AutoreleasePool(const AutoreleasePool&) = delete; // a pool is a scope
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool(); // NOLINT(performance-trivially-destructible): not where there are pools

private:
    [[maybe_unused]] void* m_pool = nullptr; // the host's own; hosts without pools have none
};

/// Any object, where only its printed form matters.
class Object : public Handle<NSObject> {
public:
    using Handle::Handle;
    static Object adopt(NSObject* object) noexcept { return Object(object); }
};

/// Text that does not change.
class String : public Handle<NSString> {
public:
    /// nil.
    String() noexcept = default;
    /// A copy of the UTF-8 text; null gives nil. Text that is no UTF-8 is kept as far as the host can: it
    /// never gives nil. Not explicit: a literal may stand wherever a string is taken.
    String(const char* utf8);
    String(const std::string& utf8);

    /// Takes over a count of `text`.
    static String adopt(NSString* text) noexcept { return String(text, Adopted::Yes); }
    /// Takes a count of its own of `text`.
    static String retain(NSString* text) noexcept;
    /// The text of `format` with `%@` for objects and all printf conversions, widths by `*` and positions
    /// (`%1$@`) included. A null format gives the empty text. The result has no length limit.
    static String stringWithFormat(NSString* format, std::va_list arguments);

    /// The text as UTF-8, valid as long as both the object and the pool around the call; null for nil.
    [[nodiscard]] const char* UTF8String() const noexcept;
    /// This path and `component` with exactly one separator between them; nil when this or `component` is
    /// nil.
    /// "/a" and "b/c" give "/a/b/c"; "/a/" and "b" give "/a/b"; "" and "b" give "b".
    [[nodiscard]] String stringByAppendingPathComponent(const String& component) const;

private:
    enum class Adopted { Yes };
    String(NSString* text, Adopted) noexcept
        : Handle(text)
    {
    }
};

/// Text that can grow.
class MutableString : public Handle<NSMutableString> {
public:
    /// nil.
    MutableString() noexcept = default;
    /// As the constructor of `String`.
    explicit MutableString(const char* utf8);

    /// Takes over a count of `text`.
    static MutableString adopt(NSMutableString* text) noexcept { return MutableString(text, Adopted::Yes); }
    /// Takes a count of its own of `text`; both then refer to the same text.
    static MutableString retain(NSMutableString* text) noexcept;
    /// As `String::stringWithFormat`.
    static MutableString stringWithFormat(NSString* format, std::va_list arguments);

    /// The text as UTF-8; null for nil. Valid until the text is changed or freed, or the pool around the call
    /// ends.
    [[nodiscard]] const char* UTF8String() const noexcept;
    /// Adds `text` at the end; nil adds nothing.
    void appendString(const String& text);

private:
    enum class Adopted { Yes };
    MutableString(NSMutableString* text, Adopted) noexcept
        : Handle(text)
    {
    }
};

/// An ordered, unchanging list of strings.
class Array : public Handle<NSArray> {
public:
    /// nil.
    Array() noexcept = default;
    /// The strings in the given order. A nil item raises, since a list cannot hold nothing.
    static Array arrayWithObjects(std::initializer_list<String> items);
    static Array arrayWithObjects(const String* items, std::size_t count);
    /// Takes over a count of `array`.
    static Array adopt(NSArray* array) noexcept { return Array(array, Adopted::Yes); }
    /// Takes a count of its own of `array`.
    static Array retain(NSArray* array) noexcept;

    [[nodiscard]] std::size_t count() const noexcept;
    /// The item at `index`; an index at or past the end raises.
    [[nodiscard]] String objectAtIndex(std::size_t index) const;
    /// The first item; nil when there is none.
    [[nodiscard]] String firstObject() const;

private:
    enum class Adopted { Yes };
    Array(NSArray* array, Adopted) noexcept
        : Handle(array)
    {
    }
};

/// What an operation raises when it fails. Thrown by value, caught by reference.
class Exception : public Handle<NSException> {
public:
    /// Takes over a count of `exception`.
    static Exception adopt(NSException* exception) noexcept { return Exception(exception); }
    /// Throws an exception with the call stack of the caller. Has no user information.
    [[noreturn]] static void raise(const String& name, const String& reason);

    /// The kind of failure, for example "NSInvalidArgumentException".
    [[nodiscard]] String name() const;
    /// What failed and why, for a person to read.
    [[nodiscard]] String reason() const;
    /// Further details; nil when there are none.
    [[nodiscard]] Object userInfo() const;
    /// Where it was raised, innermost frame first; nil where the host did not note it.
    [[nodiscard]] Array callStackSymbols() const;

private:
    using Handle::Handle;
};

/// An end for a child's input or output.
class FileHandle : public Handle<NSFileHandle> {
public:
    /// nil.
    FileHandle() noexcept = default;
    /// The device that swallows all output and has no input. It is opened for the child when a task starts.
    static FileHandle fileHandleWithNullDevice();
    /// Takes over a count of `file`.
    static FileHandle adopt(NSFileHandle* file) noexcept { return FileHandle(file, Adopted::Yes); }

private:
    enum class Adopted { Yes };
    FileHandle(NSFileHandle* file, Adopted) noexcept
        : Handle(file)
    {
    }
};

/// A child process: described first, then started once.
///
/// The child gets the launch path as its argument 0, the arguments behind it, this process's environment and
/// folder, and the descriptors 0, 1 and 2 only. No shell takes part. The child is never waited for and
/// outlives this process. Process group, signal mask and dispositions are as this process was itself started
/// with, unless Foundation decides otherwise.
class Task : public Handle<NSTask> {
public:
    Task();

    void setLaunchPath(const String& path);
    void setArguments(const Array& arguments);
    /// Where the child's standard output goes; nil leaves it as inherited.
    void setStandardOutput(const FileHandle& file);
    /// Where the child's standard error goes; nil leaves it as inherited.
    void setStandardError(const FileHandle& file);
    [[nodiscard]] String launchPath() const;
    [[nodiscard]] Array arguments() const;

    /// Starts the child and returns at once. Raises "NSInvalidArgumentException", before it returns, when the
    /// child cannot be started; the reason names the launch path and says what is wrong, in the host's words.
    void launch();
};

/// The calling thread.
class Thread {
public:
    /// One line for each frame of the calling thread, innermost first, in the host's own form. Without
    /// Foundation: the caller of this function first, and for each frame its number, the module, the address
    /// and, where the module's symbols tell, the demangled name with the offset into it; never empty. Reads
    /// the symbols from the modules' files, so it is meant for the rare line, not for every line.
    static Array callStackSymbols();
};

/// The kinds of folder and the domains to ask `searchPathForDirectoriesInDomains` for, with the host's own
/// numbers.
enum class SearchPathDirectory : unsigned long { ApplicationSupport = 14 };
enum class SearchPathDomainMask : unsigned long { MachineWide = 8 };
enum class ExpandTilde : bool { No, Yes };

/// The folders of a kind in the given domains, nearest first; empty when the host has none.
Array searchPathForDirectoriesInDomains(
    SearchPathDirectory directory, SearchPathDomainMask domains, ExpandTilde expandTilde);

/// Writes one line to standard error: local date and time with milliseconds, program, process and thread
/// numbers, and the formatted text (`%@` and printf conversions). Ignores failures. With Foundation it is
/// Foundation's own `NSLog`; elsewhere a single `write` takes the whole line.
void log(NSString* format, ...);

} // namespace ZSpace::NS
