// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/ReportFile.h"

#include <cerrno>
#include <fcntl.h>

namespace ZSpace::Host {

int openReportDirectory(const char* path) noexcept
{
#ifdef O_SEARCH
    constexpr int access = O_SEARCH;
#else
    constexpr int access = O_RDONLY; // SDKs before that of macOS 12
#endif
    const int directory = open(path, access | O_DIRECTORY | O_CLOEXEC);
    return directory < 0 ? -errno : directory;
}

} // namespace ZSpace::Host
