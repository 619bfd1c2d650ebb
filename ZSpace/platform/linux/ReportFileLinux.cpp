// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/ReportFile.h"

#include <cerrno>
#include <fcntl.h>

namespace ZSpace::Host {

int openReportDirectory(const char* path) noexcept
{
    // O_PATH does not open what is there, so it neither blocks nor needs read permission.
    const int directory = open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
    return directory < 0 ? -errno : directory;
}

} // namespace ZSpace::Host
