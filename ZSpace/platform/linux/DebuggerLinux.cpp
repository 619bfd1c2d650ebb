// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Debugger.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace ZSpace::Host {

bool isDebuggerAttached() noexcept
{
    const int file = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    std::array<char, 4096> text{}; // the line is among the first ten
    const ssize_t length = read(file, text.data(), text.size() - 1);
    close(file);
    if (length <= 0)
        return false;
    constexpr const char* key = "\nTracerPid:\t";
    const char* const line = std::strstr(text.data(), key);
    return line && line[std::strlen(key)] != '0';
}

} // namespace ZSpace::Host
