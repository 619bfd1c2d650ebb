// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Process.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "ZSpace/platform/portable/FormatPortable.h"
#include "ZSpace/platform/portable/ObjectsPortable.h"

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
    tm local{};
    localtime_r(&now.tv_sec, &local);
    std::array<char, 64> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%d %H:%M:%S", &local);
    std::array<char, 64> rest{};
    std::snprintf(rest.data(), rest.size(), "[%d:%u] ", static_cast<int>(getpid()), Host::threadNumber());
    std::array<char, 8> milliseconds{};
    std::snprintf(
        milliseconds.data(), milliseconds.size(), ".%03d ", static_cast<int>(now.tv_nsec / 1'000'000));
    return std::string(date.data()) + milliseconds.data() + Host::programName() + rest.data();
}

/// Writes the line at once, so that lines of several processes do not mix. What a full or closed standard
/// error does not take is lost.
void writeToStandardError(const std::string& line)
{
    ssize_t written = 0;
    do {
        written = write(STDERR_FILENO, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
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
