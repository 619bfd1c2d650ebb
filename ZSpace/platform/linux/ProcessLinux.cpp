// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Process.h"

#include <array>
#include <cerrno>
#include <climits>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

constexpr const char* s_ownExecutable = "/proc/self/exe";

/// Whether `path` names the file that this process runs.
bool isOwnExecutable(const std::string& path) noexcept
{
    struct stat own { };
    struct stat other { };
    return stat(s_ownExecutable, &own) == 0 && stat(path.c_str(), &other) == 0 && own.st_dev == other.st_dev
        && own.st_ino == other.st_ino;
}

} // namespace

std::string executablePath()
{
    constexpr std::string_view deleted =
        " (deleted)"; // what the kernel appends to the path of a removed file
    std::array<char, PATH_MAX> link{};
    const ssize_t length = readlink(s_ownExecutable, link.data(), link.size());
    std::string path(link.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    if (path.ends_with(deleted) && !isOwnExecutable(path))
        path.resize(path.size() - deleted.size());
    return path;
}

const char* programName() noexcept
{
    return program_invocation_short_name;
}

} // namespace ZSpace::Host
