// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/z_dbg.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>

namespace ZSpace {

namespace {

/// The first registration of `p`, -1 if there is none. The caller holds the lock.
long indexOfRegistration(const void* p) noexcept
{
    const auto* found = std::find(g_eventregistrations.begin(), g_eventregistrations.end(), p);
    return found == g_eventregistrations.end() ? -1 : found - g_eventregistrations.begin();
}

// Unformatted output throughout: whatever base, width or locale the stream is set to, the report looks the
// same.

void write(std::ostream& out, const char* text)
{
    if (text)
        out.write(text, static_cast<std::streamsize>(std::strlen(text)));
    else
        out.setstate(std::ios_base::badbit);
}

void write(std::ostream& out, unsigned int number)
{
    char digits[std::numeric_limits<unsigned int>::digits10 + 1];
    const char* end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    out.write(digits, end - digits);
}

void report(const char* expression, const char* file, unsigned int line)
{
    static const std::ios_base::Init usableBeforeMain;
    std::ostream& out = std::cout;
    write(out, expression);
    write(out, " - File: ");
    write(out, file);
    write(out, " - Line: ");
    write(out, line);
    out.put('\n').flush();
}

} // namespace

void z_dbg_add_eventreg(void* p) noexcept
{
    g_eventreg_cs.lock();
    g_eventregistrations.add(p);
    g_eventreg_cs.unlock();
}

void z_dbg_rem_eventreg(void* p)
{
    g_eventreg_cs.lock();
    const long index = indexOfRegistration(p);
    if (index >= 0)
        g_eventregistrations.remove(index, 1);
    g_eventreg_cs.unlock();
    if (index < 0)
        throw -1;
}

void z_dbg_check_eventreg(void* p)
{
    g_eventreg_cs.lock();
    const long index = indexOfRegistration(p);
    g_eventreg_cs.unlock();
    if (index >= 0)
        throw -1;
}

void z_dbg_breakpoint() noexcept { }

void z_dbg_trace(const char*) noexcept { }

void z_dbg_error(const char* expression, const char* file, unsigned int line, bool abortNow)
{
    if (!abortNow)
        return report(expression, file, line);
    try {
        report(expression, file, line);
    } catch (...) { // NOLINT(bugprone-empty-catch): a stream set to throw must not keep the process alive
    }
    std::abort();
}

} // namespace ZSpace
