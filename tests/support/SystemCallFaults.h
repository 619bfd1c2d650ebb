// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// System calls that fail, for test programs that compile the SystemCallFaults file of their kernel, which
/// interposes the calls below. Faults affect the calling thread only.
namespace ZSpace::Testing {

enum class SystemCall {
    Open,
    OpenStream, ///< fopen
    AttachStream, ///< fdopen
    Control, ///< fcntl
    Read,
    Write,
    CopyRange, ///< copy_file_range
    Truncate, ///< ftruncate
    Close,
    Status, ///< stat
    StatusOfDescriptor, ///< fstat
    StatusOfEntry, ///< fstatat
    Unlink,
    Rename,
    MakeDirectory,
    RemoveDirectory,
    ChangeDirectory,
    CurrentDirectory, ///< getcwd
    OpenDirectory,
    ReadDirectory,
};

/// During its lifetime one or all calls fail.
class SystemCallFault {
public:
    enum class Kind {
        Once, ///< only the `nth` call
        Lasting ///< the `nth` call and all later ones
    };

    /// Whether the host's calls can be interposed; otherwise tests skip themselves.
    [[nodiscard]] static bool isPossible() noexcept;

    SystemCallFault(SystemCall call, int error, Kind kind = Kind::Once, long nth = 1) noexcept;
    SystemCallFault(const SystemCallFault&) = delete; // one for each call at a time
    SystemCallFault& operator=(const SystemCallFault&) = delete;
    ~SystemCallFault();

    /// How many calls have failed.
    [[nodiscard]] long count() const noexcept;

private:
    SystemCall m_call;
};

/// During its lifetime `read`, `write` and `copy_file_range` transfer at most `most` bytes per call.
class ShortTransfers {
public:
    explicit ShortTransfers(long most) noexcept;
    /// With a limit of its own for `write`.
    ShortTransfers(long most, long mostWritten) noexcept;
    ShortTransfers(const ShortTransfers&) = delete; // one at a time
    ShortTransfers& operator=(const ShortTransfers&) = delete;
    ~ShortTransfers();
};

} // namespace ZSpace::Testing
