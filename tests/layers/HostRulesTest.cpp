// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What only one kind of host has, and where it may be used.

#include "tests/layers/Sources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ZSpace::Testing {
namespace {

const std::string s_linuxDirectory = "ZSpace/platform/linux/";

/// Complete names.
const std::set<std::string_view> s_linuxOnlyNames{
    // descriptors, files and pipes
    "accept4",
    "close_range",
    "closefrom",
    "copy_file_range",
    "dup3",
    "fallocate",
    "fdatasync",
    "memfd_create",
    "openat2",
    "pipe2",
    "posix_fadvise",
    "posix_fallocate",
    "readahead",
    "renameat2",
    "splice",
    "statx",
    "sync_file_range",
    "syncfs",
    "tee",
    "vmsplice",
    "O_DIRECT",
    "O_NOATIME",
    "O_PATH",
    "O_TMPFILE",
    "AT_EMPTY_PATH",
    "RENAME_EXCHANGE",
    "RENAME_NOREPLACE",
    "SOCK_CLOEXEC",
    "SOCK_NONBLOCK",
    "MSG_NOSIGNAL",
    "st_atim",
    "st_ctim",
    "st_mtim",
    // processes and users
    "clone3",
    "execvpe",
    "fexecve",
    "get_nprocs",
    "getauxval",
    "gettid",
    "posix_spawn_file_actions_addclosefrom_np",
    "prctl",
    "program_invocation_name",
    "program_invocation_short_name",
    "secure_getenv",
    "setns",
    "syscall",
    "sysinfo",
    "tgkill",
    "unshare",
    "getresuid",
    "getresgid",
    "setresuid",
    "setresgid",
    // threads and locks
    "pthread_condattr_setclock",
    "pthread_getattr_np",
    "pthread_getaffinity_np",
    "pthread_mutex_clocklock",
    "pthread_mutex_consistent",
    "pthread_mutex_timedlock",
    "pthread_mutexattr_setrobust",
    "pthread_setaffinity_np",
    "pthread_setattr_default_np",
    "pthread_timedjoin_np",
    "pthread_tryjoin_np",
    "sched_getcpu",
    "sched_setaffinity",
    "sem_destroy",
    "sem_getvalue",
    "sem_init",
    "sem_timedwait",
    // signals, time and waiting
    "clock_nanosleep",
    "ppoll",
    "sigqueue",
    "sigtimedwait",
    "sigwaitinfo",
    "timer_create",
    "CLOCK_BOOTTIME",
    "SIGPWR",
    "SIGRTMAX",
    "SIGRTMIN",
    "SIGSTKFLT",
    // memory and strings
    "canonicalize_file_name",
    "explicit_bzero",
    "fputs_unlocked",
    "fread_unlocked",
    "fwrite_unlocked",
    "get_current_dir_name",
    "getrandom",
    "mallinfo",
    "mallinfo2",
    "malloc_trim",
    "malloc_usable_size",
    "memrchr",
    "mempcpy",
    "mremap",
    "rawmemchr",
    "strerrordesc_np",
    "strerrorname_np",
    "strverscmp",
    "wmempcpy",
    "MAP_POPULATE",
    // the dynamic loader
    "dl_iterate_phdr",
    "dladdr1",
    "dlinfo",
    "dlmopen",
    "gnu_get_libc_version",
};

/// Prefixes of names that come in families.
const std::vector<std::string_view> s_linuxOnlyFamilies{"epoll_", "eventfd", "fanotify_", "inotify_",
    "io_uring_", "pidfd_", "pthread_barrier_", "pthread_spin_", "signalfd", "timerfd_", "F_OFD_", "F_SEAL_",
    "F_SETPIPE_", "IN_CLOSE_", "PR_SET_", "__NR_", "SYS_"};

const std::vector<std::string_view> s_linuxOnlyHeaders{"asm/", "elf.h", "endian.h", "error.h", "features.h",
    "gnu/", "link.h", "linux/", "malloc.h", "sys/auxv.h", "sys/epoll.h", "sys/eventfd.h", "sys/inotify.h",
    "sys/prctl.h", "sys/random.h", "sys/sendfile.h", "sys/signalfd.h", "sys/syscall.h", "sys/sysinfo.h",
    "sys/sysmacros.h", "sys/timerfd.h", "sys/vfs.h", "sys/xattr.h", "values.h"};

bool isLinuxOnly(std::string_view name)
{
    const bool isCoarseClock = name.starts_with("CLOCK_") && name.ends_with("_COARSE");
    return isCoarseClock || s_linuxOnlyNames.contains(name)
        || std::any_of(s_linuxOnlyFamilies.begin(), s_linuxOnlyFamilies.end(),
            [&](std::string_view start) { return name.starts_with(start); });
}

/// Whether a source asks the preprocessor for a macro before it uses it.
bool hasAFallback(const Source& source, std::string_view macro)
{
    return source.code.find("#if defined(" + std::string(macro) + ")") != std::string::npos;
}

/// The identifiers, keywords and numbers of a source, those in string literals included.
std::vector<std::string_view> words(std::string_view code)
{
    const auto isPart = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; };
    std::vector<std::string_view> found;
    for (std::size_t start = 0; start < code.size();) {
        if (!isPart(code[start])) {
            ++start;
            continue;
        }
        std::size_t end = start;
        while (end < code.size() && isPart(code[end]))
            ++end;
        found.push_back(code.substr(start, end - start));
        start = end;
    }
    return found;
}

TEST(HostRules, HostSwitchesAreInPlatformOnly)
{
    const std::regex pattern(
        "__APPLE__|__linux__|__OBJC__|__GNUSTEP__|__FreeBSD__|_WIN32|__has_include|__GLIBC__");
    for (const Source& source : sourcesOf(s_product)) {
        const bool mayAsk = source.name.starts_with("ZSpace/platform/");
        EXPECT_TRUE(mayAsk || !std::regex_search(source.code, pattern))
            << source.name << " asks for the host";
    }
}

TEST(HostRules, LinuxOnlyNamesAreUsedInLinuxFilesOnly)
{
    const std::regex files("\"/proc\\b|\"/sys/|\"/dev/full\"|\"/dev/shm");
    for (const Source& source : sourcesOf(s_product)) {
        if (source.name.starts_with(s_linuxDirectory))
            continue;
        for (const std::string_view word : words(source.code))
            EXPECT_TRUE(!isLinuxOnly(word) || hasAFallback(source, word))
                << source.name << " uses " << word << ", which only Linux has";
        for (const std::string& header : systemIncludes(source)) {
            for (const std::string_view start : s_linuxOnlyHeaders)
                EXPECT_FALSE(header.starts_with(start)) << source.name << " includes <" << header << ">";
        }
        EXPECT_FALSE(std::regex_search(source.code, files))
            << source.name << " names a file that only Linux has";
    }
}

TEST(HostRules, CallsNewerThanMacOS1013AreInLinuxFilesOnly)
{
    const std::regex pattern("\\b(aligned_alloc|timespec_get|preadv|pwritev|mkfifoat|mknodat|strchrnul|"
                             "posix_spawn_file_actions_add(f?)chdir\\w*)\\b");
    for (const Source& source : sourcesOf(s_product)) {
        const bool mayCall = source.name.starts_with(s_linuxDirectory);
        EXPECT_TRUE(mayCall || !std::regex_search(source.code, pattern))
            << source.name << " calls what the oldest supported macOS lacks";
    }
}

TEST(HostRules, TheProductUsesNoLibraryFeatureThatOldSystemsLack)
{
    const std::set<std::string> late{"charconv", "filesystem", "format", "print", "latch", "semaphore",
        "barrier", "stop_token", "source_location", "syncstream", "memory_resource"};
    const std::regex pattern("std::jthread|\\.notify_(one|all)\\(|std::(from|to)_chars");
    for (const Source& source : sourcesOf(s_product)) {
        const bool isBridge = source.name.starts_with("ZSpace/interop/"); // included by its users alone
        for (const std::string& header : systemIncludes(source))
            EXPECT_TRUE(isBridge || !late.contains(header)) << source.name << " includes <" << header << ">";
        EXPECT_FALSE(std::regex_search(source.code, pattern))
            << source.name << " uses a part of the library that came late";
    }
}

// The tests use std::filesystem, which requires macOS 10.15, and nothing newer.
TEST(HostRules, TheTestsUseNoLibraryFeatureNewerThanTheFileSystem)
{
    const std::set<std::string> late{"format", "print", "latch", "semaphore", "barrier", "stop_token",
        "source_location", "syncstream", "memory_resource"};
    for (const Source& source : sourcesOf({"tests", "fuzz", "examples"})) {
        for (const std::string& header : systemIncludes(source))
            EXPECT_FALSE(late.contains(header)) << source.name << " includes <" << header << ">";
    }
}

} // namespace
} // namespace ZSpace::Testing
