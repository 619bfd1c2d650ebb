// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/detail/DebugReport.h"
#include "ZSpace/core/detail/DecimalDigits.h"

#include <iostream>
#include <string_view>

namespace ZSpace::detail {

namespace {

// Unformatted output, so that the stream's base, width and locale do not affect the report.

void write(std::ostream& out, std::string_view string)
{
    out.write(string.data(), static_cast<std::streamsize>(string.size()));
}

void write(std::ostream& out, const char* string)
{
    if (string)
        write(out, std::string_view(string));
    else
        out.setstate(std::ios_base::badbit);
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
    write(out, DecimalDigits(line).view());
    out.put('\n').flush();
}

} // namespace ZSpace::detail
