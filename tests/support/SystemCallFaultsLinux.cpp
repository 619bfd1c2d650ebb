// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/SystemCallFaults.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using ZSpace::Testing::SystemCall;

struct Fault {
    long untilFault = 0; ///< 0: no fault
    bool isLasting = false;
    int error = 0;
    long count = 0;
};

constinit thread_local std::array<Fault, 32> t_faults{};
constinit thread_local long t_mostPerTransfer = LONG_MAX;
constinit thread_local long t_mostPerWrite = LONG_MAX;

Fault& faultOf(SystemCall call) noexcept
{
    return t_faults[static_cast<std::size_t>(call)];
}

/// Whether this call must fail; `errno` is set then.
bool fails(SystemCall call) noexcept
{
    Fault& fault = faultOf(call);
    if (fault.untilFault == 0 || --fault.untilFault > 0)
        return false;
    fault.untilFault = fault.isLasting ? 1 : 0;
    ++fault.count;
    errno = fault.error;
    return true;
}

template <typename Function>
Function* libraryFunction(const char* name) noexcept
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::size_t shortened(std::size_t size, long most = t_mostPerTransfer) noexcept
{
    return std::min(size, static_cast<std::size_t>(most));
}

} // namespace

// A program's own definitions take precedence over those of the C library. The library's headers call those
// that end with "_chk" instead where they check buffer sizes.

extern "C" {

int open(const char* path, int flags, ...)
{
    static auto* const library = libraryFunction<int(const char*, int, ...)>("open");
    va_list arguments;
    va_start(arguments, flags);
    const unsigned int mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(arguments, unsigned int) : 0;
    va_end(arguments);
    return fails(SystemCall::Open) ? -1 : library(path, flags, mode);
}

FILE* fopen(const char* path, const char* mode)
{
    static auto* const library = libraryFunction<FILE*(const char*, const char*)>("fopen");
    return fails(SystemCall::OpenStream) ? nullptr : library(path, mode);
}

FILE* fdopen(int descriptor, const char* mode) noexcept
{
    static auto* const library = libraryFunction<FILE*(int, const char*)>("fdopen");
    return fails(SystemCall::AttachStream) ? nullptr : library(descriptor, mode);
}

int fcntl(int descriptor, int command, ...)
{
    static auto* const library = libraryFunction<int(int, int, ...)>("fcntl");
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*); // numbers arrive in the same register
    va_end(arguments);
    return fails(SystemCall::Control) ? -1 : library(descriptor, command, argument);
}

ssize_t read(int descriptor, void* buffer, std::size_t size)
{
    static auto* const library = libraryFunction<ssize_t(int, void*, std::size_t)>("read");
    return fails(SystemCall::Read) ? -1 : library(descriptor, buffer, shortened(size));
}

ssize_t __read_chk(int descriptor, void* buffer, std::size_t size, std::size_t)
{
    return read(descriptor, buffer, size);
}

ssize_t write(int descriptor, const void* data, std::size_t size)
{
    static auto* const library = libraryFunction<ssize_t(int, const void*, std::size_t)>("write");
    return fails(SystemCall::Write) ? -1 : library(descriptor, data, shortened(size, t_mostPerWrite));
}

ssize_t copy_file_range(
    int from, off64_t* fromOffset, int to, off64_t* toOffset, std::size_t size, unsigned int flags)
{
    static auto* const library =
        libraryFunction<ssize_t(int, off64_t*, int, off64_t*, std::size_t, unsigned int)>("copy_file_range");
    return fails(SystemCall::CopyRange) ? -1
                                        : library(from, fromOffset, to, toOffset, shortened(size), flags);
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static auto* const library = libraryFunction<int(int, off_t)>("ftruncate");
    return fails(SystemCall::Truncate) ? -1 : library(descriptor, size);
}

int close(int descriptor)
{
    static auto* const library = libraryFunction<int(int)>("close");
    const int result = library(descriptor); // the descriptor is free after an error, too
    return fails(SystemCall::Close) ? -1 : result;
}

int stat(const char* path, struct stat* status) noexcept
{
    static auto* const library = libraryFunction<int(const char*, struct stat*)>("stat");
    return fails(SystemCall::Status) ? -1 : library(path, status);
}

int fstat(int descriptor, struct stat* status) noexcept
{
    static auto* const library = libraryFunction<int(int, struct stat*)>("fstat");
    return fails(SystemCall::StatusOfDescriptor) ? -1 : library(descriptor, status);
}

int fstatat(int directory, const char* path, struct stat* status, int flags) noexcept
{
    static auto* const library = libraryFunction<int(int, const char*, struct stat*, int)>("fstatat");
    return fails(SystemCall::StatusOfEntry) ? -1 : library(directory, path, status, flags);
}

int unlink(const char* path) noexcept
{
    static auto* const library = libraryFunction<int(const char*)>("unlink");
    return fails(SystemCall::Unlink) ? -1 : library(path);
}

int rename(const char* from, const char* to) noexcept
{
    static auto* const library = libraryFunction<int(const char*, const char*)>("rename");
    return fails(SystemCall::Rename) ? -1 : library(from, to);
}

int mkdir(const char* path, mode_t mode) noexcept
{
    static auto* const library = libraryFunction<int(const char*, mode_t)>("mkdir");
    return fails(SystemCall::MakeDirectory) ? -1 : library(path, mode);
}

int rmdir(const char* path) noexcept
{
    static auto* const library = libraryFunction<int(const char*)>("rmdir");
    return fails(SystemCall::RemoveDirectory) ? -1 : library(path);
}

int chdir(const char* path) noexcept
{
    static auto* const library = libraryFunction<int(const char*)>("chdir");
    return fails(SystemCall::ChangeDirectory) ? -1 : library(path);
}

char* getcwd(char* buffer, std::size_t size) noexcept
{
    static auto* const library = libraryFunction<char*(char*, std::size_t)>("getcwd");
    return fails(SystemCall::CurrentDirectory) ? nullptr : library(buffer, size);
}

char* __getcwd_chk(char* buffer, std::size_t size, std::size_t) noexcept
{
    return getcwd(buffer, size);
}

DIR* opendir(const char* path)
{
    static auto* const library = libraryFunction<DIR*(const char*)>("opendir");
    return fails(SystemCall::OpenDirectory) ? nullptr : library(path);
}

dirent* readdir(DIR* directory)
{
    static auto* const library = libraryFunction<dirent*(DIR*)>("readdir");
    return fails(SystemCall::ReadDirectory) ? nullptr : library(directory);
}

} // extern "C"

namespace ZSpace::Testing {

bool SystemCallFault::isPossible() noexcept
{
    return true;
}

SystemCallFault::SystemCallFault(SystemCall call, int error, Kind kind, long nth) noexcept
    : m_call(call)
{
    faultOf(call) = Fault{nth, kind == Kind::Lasting, error, 0};
}

SystemCallFault::~SystemCallFault()
{
    faultOf(m_call) = Fault{};
}

long SystemCallFault::count() const noexcept
{
    return faultOf(m_call).count;
}

ShortTransfers::ShortTransfers(long most) noexcept
    : ShortTransfers(most, most)
{
}

ShortTransfers::ShortTransfers(long most, long mostWritten) noexcept
{
    t_mostPerTransfer = most;
    t_mostPerWrite = mostWritten;
}

ShortTransfers::~ShortTransfers()
{
    t_mostPerTransfer = LONG_MAX;
    t_mostPerWrite = LONG_MAX;
}

} // namespace ZSpace::Testing
