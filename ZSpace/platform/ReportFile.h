// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// Creates the directory `path` and lets every user write to it (mode 0777, whatever the process's mask says).
/// Only a directory that this very call created gets that mode: the change goes through a descriptor, so nothing
/// that another user puts at `path` in the meantime is affected.
/// @return 0, or the error number; EEXIST when there is anything at `path`, which then stays as it is.
[[nodiscard]] int makeDirectoryOpenToAll(const char* path) noexcept;

/// Opens the directory `path` for use as the first argument of `openReportFile`. Links on the way are followed.
/// Search permission is enough where the host can open a directory for nothing else.
/// @return a close-on-exec descriptor, or the error number negated.
[[nodiscard]] int openReportDirectory(const char* path) noexcept;

/// Opens the report file `name` of an open directory, for reading and for writing at its end, and creates it (mode
/// 0666, narrowed by the process's mask) when it is missing.
///
/// Other users may be able to create files in that directory and can guess the names of reports. So nothing that they
/// planted is opened: no link is followed, and an existing file is taken only if it is a regular file that belongs to
/// the effective user and has no second name. Never waits for another process, whatever `name` is.
/// @return a close-on-exec descriptor, or the error number negated: ELOOP for a symbolic link, EPERM for a file that
/// the rule above refuses.
[[nodiscard]] int openReportFile(int directory, const char* name) noexcept;

} // namespace ZSpace::Host
