// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// Creates the directory `path` with mode 0777, regardless of the process's umask. The mode is set through a
/// descriptor, so it affects nothing that another user puts at `path` in the meantime.
/// @return 0, or the error number. EEXIST if `path` exists; it is then left unchanged.
[[nodiscard]] int makeDirectoryOpenToAll(const char* path) noexcept;

/// Opens the directory `path` for `openReportFile`. Follows links. Needs only search permission on hosts that
/// can open a directory without reading it.
/// @return a close-on-exec descriptor, or the negated error number.
[[nodiscard]] int openReportDirectory(const char* path) noexcept;

/// Opens the report file `name` in an open directory for reading and appending, and creates it (mode 0666,
/// subject to the umask) if it does not exist.
///
/// Other users may be able to create files in that directory, and report names are predictable. Therefore no
/// link is followed, and an existing file is opened only if it is a regular file, belongs to the effective
/// user and has a single hard link. Never blocks, whatever `name` is.
/// @return a close-on-exec descriptor, or the negated error number: ELOOP for a symbolic link, EPERM for any
/// other file that is refused.
[[nodiscard]] int openReportFile(int directory, const char* name) noexcept;

} // namespace ZSpace::Host
