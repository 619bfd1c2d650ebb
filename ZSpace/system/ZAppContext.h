// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"

#include <pthread.h>
#include <sys/types.h>

namespace ZSpace {

/// The running process: its executable, process id, main thread and arguments.
///
///     int main(int argc, char** argv)
///     {
///         const ZAppContext context(argc, argv);
///         ...
///         return context;
///     }
///
/// Construct it once, on the main thread, and only read it afterwards; there is no lock. Strings from the
/// system are widened byte by byte.
class ZAppContext {
public:
    ZAppContext();
    ZAppContext(int argc, const char* const* argv);
    ZAppContext(const ZAppContext&) = default;
    ZAppContext& operator=(const ZAppContext&) = default;
    virtual ~ZAppContext();

    /// Records the calling thread as the main thread, appends the executable's path to `Path()`, and sets the
    /// exit value to 0.
    void loadProcessData();
    /// Updates the process id, which changes in a child created by `fork`.
    void loadThreadData() noexcept;
    /// Appends the arguments after the program's name.
    void initArguments(int argc, const char* const* argv);
    void initArguments(int argc, const wchar_t* const* argv);

    /// The exit value.
    operator int() const noexcept { return m_exitValue; }

    /// The number of arguments.
    [[nodiscard]] long ArgCount() const noexcept { return m_arguments.Count(); }
    /// A negative index counts from the end; an index out of range is clamped to the first or last argument.
    /// Returns an empty string if there are no arguments.
    [[nodiscard]] ZMStr<wchar_t> Arg(long index) const;
    /// As `Arg`.
    [[nodiscard]] ZGStr<wchar_t> ArgW(long index) const;

    /// The full path of the executable; empty if it cannot be determined.
    [[nodiscard]] ZMStr<wchar_t> Path() const { return m_path; }
    /// Whether the calling thread is the recorded main thread.
    [[nodiscard]] bool isMainThread() const noexcept;

    /// The value of an environment variable; empty if it is not set.
    [[nodiscard]] static ZMStr<wchar_t> getEnv(const char* name);
    [[nodiscard]] static ZMStr<wchar_t> getEnv(const wchar_t* name);
    [[nodiscard]] static ZMStr<wchar_t> getEnv(ZMStr<wchar_t>& name);

private:
    template <typename T>
    void addArguments(int argc, const T* const* argv);

    int m_exitValue = 0;
    pthread_t m_mainThread{};
    pid_t m_processId = 0;
    ZList<ZMStr<wchar_t>> m_arguments;
    ZMStr<wchar_t> m_path;
};

} // namespace ZSpace
