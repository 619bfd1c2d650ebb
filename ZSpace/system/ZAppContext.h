// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"

#include <pthread.h>
#include <sys/types.h>

namespace ZSpace {

/// What there is to know about the running process: its program file, number, main thread and arguments.
///
///     int main(int argc, char** argv)
///     {
///         const ZAppContext context(argc, argv);
///         ...
///         return context;
///     }
///
/// Made once, on the main thread, and read afterwards; there is no lock. Text that the system gives is
/// widened byte by byte.
class ZAppContext {
public:
    ZAppContext();
    ZAppContext(int argc, const char* const* argv);
    ZAppContext(const ZAppContext&) = default;
    ZAppContext& operator=(const ZAppContext&) = default;
    virtual ~ZAppContext();

    /// Takes the calling thread for the main thread, appends the path of the program file to `Path()`, and
    /// sets the exit value to 0.
    void loadProcessData();
    /// Asks for the number of the process again: a child made by `fork` has another.
    void loadThreadData() noexcept;
    /// Adds the arguments behind the program's name.
    void initArguments(int argc, const char* const* argv);
    void initArguments(int argc, const wchar_t* const* argv);

    /// The exit value.
    operator int() const noexcept { return m_exitValue; }

    [[nodiscard]] long ArgCount() const noexcept { return m_arguments.Count(); }
    /// A negative index counts from the end; before the first means the first, past the last the last. Not to
    /// be asked for when there are no arguments; gives an empty text then.
    [[nodiscard]] ZMStr<wchar_t> Arg(long index) const;
    [[nodiscard]] ZGStr<wchar_t> ArgW(long index) const;

    /// The full path of the program file, empty where the system would not tell.
    [[nodiscard]] ZMStr<wchar_t> Path() const { return m_path; }
    [[nodiscard]] bool isMainThread() const noexcept;

    /// The value of an environment variable; empty for one that is not set.
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
