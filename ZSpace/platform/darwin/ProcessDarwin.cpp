// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Process.h"

#include <array>
#include <cstdlib>
#include <libproc.h>
#include <sys/param.h>
#include <unistd.h>

namespace ZSpace::Host {

std::string executablePath()
{
    std::array<char, MAXPATHLEN> path{};
    const int length = proc_pidpath(getpid(), path.data(), path.size());
    return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

const char* programName() noexcept
{
    return getprogname();
}

} // namespace ZSpace::Host
