// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Process.h"

#include <array>
#include <cerrno>
#include <climits>
#include <unistd.h>

namespace ZSpace::Host {

std::string executablePath()
{
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

const char* programName() noexcept
{
    return program_invocation_short_name;
}

} // namespace ZSpace::Host
