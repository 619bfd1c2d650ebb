// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/ReportFile.h"

#include <cerrno>
#include <fcntl.h>

namespace ZSpace::Host {

int openReportDirectory(const char* path) noexcept
{
    int directory = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
#ifdef O_SEARCH // since the macOS 12 SDK; older kernels ignore it
    if (directory < 0 && errno == EACCES)
        directory = open(path, O_SEARCH | O_DIRECTORY | O_CLOEXEC);
#endif
    return directory < 0 ? -errno : directory;
}

} // namespace ZSpace::Host
