// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/detail/DebugReport.h"
#include "ZSpace/core/detail/DecimalDigits.h"

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <unistd.h>

namespace ZSpace::detail {

namespace {

/// @return false if standard output does not take all of it.
bool write(std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            return false;
    }
    return true;
}

bool write(const char* string) noexcept
{
    return string && write(std::string_view(string));
}

} // namespace

void reportToStandardOutput(const char* expression, const char* file, unsigned int line)
{
    static_cast<void>(write(expression) && write(" - File: ") && write(file) && write(" - Line: ")
        && write(DecimalDigits(line).view()) && write("\n"));
}

} // namespace ZSpace::detail
