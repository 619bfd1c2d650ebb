// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/FoundationTypes.h"

#include <cstdarg>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>

/// C++ handles on the host's objects: the same operations, under the same names, on every host.
///
///     const NS::String folder("/Library");
///     const NS::String file = folder.stringByAppendingPathComponent("a.txt");   // "/Library/a.txt"
///     NS::log(NS::String("made %@").native(), file.native());
///
/// Each entry into code that uses handles (`main`, a thread function, an exported function of a library)
/// opens an `AutoreleasePool` first.
///
/// A handle retains one object, or is empty ("nil"). As with the objects themselves, an operation on nil does
/// nothing and returns nil, zero or null. Handles may be copied and destroyed on any thread, but two threads
/// must not modify the same handle concurrently. Operations that fail throw `NS::Exception`; besides that
/// they throw only `std::bad_alloc`.
namespace ZSpace::NS {

namespace detail {
/// Adds or drops a reference to an object of the host; both ignore null. Every native class derives from
/// `NSObject` and begins with it.
void retain(NSObject* object) noexcept;
/// Releases one count of an object.
void release(NSObject* object) noexcept;
} // namespace detail

/// Owns one reference to a host object of the type `Native`.
template <typename Native>
class Handle {
public:
    Handle() noexcept = default;
    Handle(const Handle& other) noexcept
        : m_native(other.m_native)
    {
        retain(m_native);
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
    ~Handle() { detail::release(objectOf(m_native)); }

    /// The object, still owned by this handle; null for nil.
    [[nodiscard]] Native* native() const noexcept { return m_native; }
    /// True unless this is nil.
    [[nodiscard]] explicit operator bool() const noexcept { return m_native != nullptr; }

protected:
    /// Adopts a reference that the caller owns.
    explicit Handle(Native* adopted) noexcept
        : m_native(adopted)
    {
    }

    /// Adds a reference to `native`, for a handle to adopt.
    static Native* retain(Native* native) noexcept
    {
        detail::retain(objectOf(native));
        return native;
    }

private:
    // Where the native types are only declared, no other cast can express that they are objects.
    static NSObject* objectOf(Native* native) noexcept { return reinterpret_cast<NSObject*>(native); }

    Native* ZSPACE_COUNTED_BY_HAND m_native = nullptr;
};

/// Bounds the lifetime of what the host returns without transferring ownership, above all the strings of
/// `UTF8String`: they stay valid until the innermost pool of the calling thread is destroyed. Pools nest, and
/// live on the stack of one thread.
class AutoreleasePool {
public:
    AutoreleasePool() noexcept;
    AutoreleasePool(const AutoreleasePool&) = delete; // a pool is a scope
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool(); // NOLINT(performance-trivially-destructible): not where there are pools

private:
    [[maybe_unused]] void* m_pool = nullptr; // stays null on hosts without pools
};

/// Any object, where only its printed form matters.
class Object : public Handle<NSObject> {
public:
    using Handle::Handle;
    /// Takes over one count of an object.
    static Object adopt(NSObject* object) noexcept { return Object(object); }
};

/// An immutable string.
class String : public Handle<NSString> {
public:
    /// nil.
    String() noexcept = default;
    /// Copies a null-terminated UTF-8 string; null becomes nil. Bytes that are not valid UTF-8 are preserved
    /// as far as the host allows, and never lead to nil. Not explicit, so that literals convert.
    String(const char* utf8);
    /// From UTF-8 text.
    String(const std::string& utf8);

    /// Adopts a reference to `string`.
    static String adopt(NSString* string) noexcept { return String(string, Adopted::Yes); }
    /// Adds a reference to `string`.
    static String retain(NSString* string) noexcept { return adopt(Handle::retain(string)); }
    /// Formats with `%@` for objects and every printf conversion, including `*` and positions (`%1$@`). A
    /// null format yields the empty string. The length of the result is not limited.
    static String stringWithFormat(NSString* format, std::va_list arguments);

    /// The string as UTF-8, valid while both the object and the pool around the call exist; null for nil.
    [[nodiscard]] const char* UTF8String() const noexcept;
    /// Joins this path and `component` with exactly one separator; nil if either is nil.
    /// "/a" + "b/c" is "/a/b/c", "/a/" + "b" is "/a/b", "" + "b" is "b".
    [[nodiscard]] String stringByAppendingPathComponent(const String& component) const;

private:
    enum class Adopted { Yes };
    String(NSString* string, Adopted) noexcept
        : Handle(string)
    {
    }
};

/// A string that can be appended to.
class MutableString : public Handle<NSMutableString> {
public:
    /// nil.
    MutableString() noexcept = default;
    /// Like the constructor of `String`.
    explicit MutableString(const char* utf8);

    /// Adopts a reference to `string`.
    static MutableString adopt(NSMutableString* string) noexcept
    {
        return MutableString(string, Adopted::Yes);
    }
    /// Adds a reference to `string`; both then share the same object.
    static MutableString retain(NSMutableString* string) noexcept { return adopt(Handle::retain(string)); }
    /// Like `String::stringWithFormat`.
    static MutableString stringWithFormat(NSString* format, std::va_list arguments);

    /// The string as UTF-8; null for nil. Valid until the string is modified or freed, or the pool around the
    /// call is destroyed.
    [[nodiscard]] const char* UTF8String() const noexcept;
    /// Appends `string`; nil appends nothing.
    void appendString(const String& string);

private:
    enum class Adopted { Yes };
    MutableString(NSMutableString* string, Adopted) noexcept
        : Handle(string)
    {
    }
};

/// An immutable array of strings.
class Array : public Handle<NSArray> {
public:
    /// nil.
    Array() noexcept = default;
    /// The strings in the given order. Throws if one of them is nil.
    static Array arrayWithObjects(const String* items, std::size_t count);
    static Array arrayWithObjects(std::initializer_list<String> items)
    {
        return arrayWithObjects(items.begin(), items.size());
    }
    /// Adopts a reference to `array`.
    static Array adopt(NSArray* array) noexcept { return Array(array, Adopted::Yes); }
    /// Adds a reference to `array`.
    static Array retain(NSArray* array) noexcept { return adopt(Handle::retain(array)); }

    /// The number of objects.
    [[nodiscard]] std::size_t count() const noexcept;
    /// The item at `index`. Throws if `index` is at or past the end.
    [[nodiscard]] String objectAtIndex(std::size_t index) const;
    /// The first item; nil if the array is empty.
    [[nodiscard]] String firstObject() const;

private:
    enum class Adopted { Yes };
    Array(NSArray* array, Adopted) noexcept
        : Handle(array)
    {
    }
};

/// What an operation throws when it fails. Thrown by value, caught by reference.
class Exception : public Handle<NSException> {
public:
    /// Adopts a reference to `exception`.
    static Exception adopt(NSException* exception) noexcept { return Exception(exception); }
    /// Throws an exception with the caller's call stack and without user information.
    [[noreturn]] static void raise(const String& name, const String& reason);

    /// The kind of failure, for example "NSInvalidArgumentException".
    [[nodiscard]] String name() const;
    /// What failed and why, in words.
    [[nodiscard]] String reason() const;
    /// Further details; nil if there are none.
    [[nodiscard]] Object userInfo() const;
    /// Where it was thrown, innermost frame first; nil if the host did not record it.
    [[nodiscard]] Array callStackSymbols() const;

private:
    using Handle::Handle;
};

/// A destination for a child process's output.
class FileHandle : public Handle<NSFileHandle> {
public:
    /// nil.
    FileHandle() noexcept = default;
    /// The null device, which discards all output. It is opened for the child when a task starts.
    static FileHandle fileHandleWithNullDevice();
    /// Adopts a reference to `file`.
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
/// The child gets the launch path as argument 0, followed by the arguments, and inherits the environment, the
/// working directory and the descriptors 0, 1 and 2, and no others. No shell is involved. The child is never
/// waited for and may outlive this process. It gets the process group, signal mask and dispositions that this
/// process was itself started with, unless Foundation decides otherwise.
class Task : public Handle<NSTask> {
public:
    Task();

    /// Sets the file to start.
    void setLaunchPath(const String& path);
    /// Sets the arguments after the file's own name.
    void setArguments(const Array& arguments);
    /// Redirects the child's standard output; with nil it is inherited.
    void setStandardOutput(const FileHandle& file);
    /// Redirects the child's standard error; with nil it is inherited.
    void setStandardError(const FileHandle& file);
    /// The file to start.
    [[nodiscard]] String launchPath() const;
    /// The arguments.
    [[nodiscard]] Array arguments() const;

    /// Starts the child and returns at once. If the child cannot be started, throws an exception named
    /// "NSInvalidArgumentException" whose reason names the launch path and the system's error.
    void launch();
};

/// The calling thread.
class Thread {
public:
    /// One line per frame of the calling thread, innermost first, in the host's own format. Without
    /// Foundation the first frame is the caller of this function, and each line has the frame's number,
    /// module and address, and the demangled name with the offset into it if the module has a symbol for it;
    /// never empty. Slow: reads the modules' files.
    static Array callStackSymbols();
};

/// The arguments of `searchPathForDirectoriesInDomains`, with Foundation's own numbers.
enum class SearchPathDirectory : unsigned long { ApplicationSupport = 14 };
/// Where to look for directories.
enum class SearchPathDomainMask : unsigned long { MachineWide = 8 };
/// Whether a leading "~" is replaced by the home directory.
enum class ExpandTilde : bool { No, Yes };

/// The directories of a kind in the given domains, in order of preference; empty if the host has none.
Array searchPathForDirectoriesInDomains(
    SearchPathDirectory directory, SearchPathDomainMask domains, ExpandTilde expandTilde);

/// Writes one line to standard error: local date and time with milliseconds, program name, process and thread
/// id, and the formatted string (`%@` and printf conversions). Ignores failures. With Foundation this is
/// Foundation's own `NSLog`; elsewhere a single `write` takes the whole line.
void log(NSString* format, ...);

} // namespace ZSpace::NS
