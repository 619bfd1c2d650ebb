// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/detail/DebugReport.h"

#include <charconv>
#include <cstring>
#include <iostream>
#include <iterator>
#include <limits>

namespace ZSpace::detail {

namespace {

// Unformatted output, so that the stream's base, width and locale do not affect the report.

void write(std::ostream& out, const char* string)
{
    if (string)
        out.write(string, static_cast<std::streamsize>(std::strlen(string)));
    else
        out.setstate(std::ios_base::badbit);
}

void write(std::ostream& out, unsigned int number)
{
    char digits[std::numeric_limits<unsigned int>::digits10 + 1];
    const char* end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    out.write(digits, end - digits);
}

} // namespace

void reportToStandardOutput(const char* expression, const char* file, unsigned int line)
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

} // namespace ZSpace::detail
