// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Process.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "ZSpace/platform/portable/FormatPortable.h"
#include "ZSpace/platform/portable/LocalTimePortable.h"
#include "ZSpace/platform/portable/ObjectsPortable.h"
#include "ZSpace/platform/portable/PrintablePortable.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace ZSpace::NS {

namespace {

/// "2026-03-04 05:06:07.089 program[812:813] "
std::string consolePrefix()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const std::tm local = Host::localTime(now.tv_sec);
    std::array<char, 160> date{};
    std::snprintf(date.data(), date.size(), "%04d-%02d-%02d %02d:%02d:%02d.%03d ", local.tm_year + 1900,
        local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec,
        static_cast<int>(now.tv_nsec / 1'000'000));
    std::array<char, 64> numbers{};
    std::snprintf(
        numbers.data(), numbers.size(), "[%d:%u] ", static_cast<int>(getpid()), Host::threadNumber());
    return date.data() + Host::printableName(Host::programName()) + numbers.data();
}

/// Writes the line with one call, so that lines of several processes do not mix. Ignores failures.
void writeToStandardError(const std::string& line)
{
    while (write(STDERR_FILENO, line.data(), line.size()) < 0 && errno == EINTR) { }
}

} // namespace

void log(NSString* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string line = consolePrefix();
    if (format)
        line += Host::formatWithObjects(format->m_utf8.c_str(), arguments);
    va_end(arguments);
    if (line.back() != '\n')
        line += '\n';
    writeToStandardError(line);
}

} // namespace ZSpace::NS
