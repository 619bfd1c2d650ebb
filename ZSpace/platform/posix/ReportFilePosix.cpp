// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/ReportFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

constexpr mode_t s_openToAll = 0777;
constexpr mode_t s_reportMode = 0666;
constexpr int s_reportFlags = O_RDWR | O_APPEND | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY;
constexpr int s_directoryFlags = O_DIRECTORY | O_CLOEXEC;

/// Repeats `open` while signals interrupt it.
/// @return the descriptor, or the negated error number.
template <typename Open>
int withoutInterruption(Open open) noexcept
{
    int descriptor = -1;
    do {
        descriptor = open();
    } while (descriptor < 0 && errno == EINTR);
    return descriptor < 0 ? -errno : descriptor;
}

int closeAndReturn(int descriptor, int result) noexcept
{
    close(descriptor);
    return result;
}

/// Whether only the effective user can have put the file there.
bool isTrustworthy(const struct stat& file) noexcept
{
    return S_ISREG(file.st_mode) && file.st_uid == geteuid() && file.st_nlink == 1;
}

/// Opens an existing file. Without O_NONBLOCK the call would wait for the other end of a fifo, or for the
/// holder of a lease.
int openExisting(int directory, const char* name) noexcept
{
    const int file = withoutInterruption([=] { return openat(directory, name, s_reportFlags | O_NONBLOCK); });
    if (file < 0)
        return file;
    struct stat status { };
    if (fstat(file, &status) != 0)
        return closeAndReturn(file, -errno);
    if (!isTrustworthy(status))
        return closeAndReturn(file, -EPERM);
    if (fcntl(file, F_SETFL, O_APPEND) != 0) // no longer non-blocking
        return closeAndReturn(file, -errno);
    return file;
}

} // namespace

int makeDirectoryOpenToAll(const char* path) noexcept
{
    if (mkdir(path, s_openToAll) != 0)
        return errno;
    const int directory = withoutInterruption(
        [=] { return open(path, O_RDONLY | s_directoryFlags | O_NOFOLLOW | O_NONBLOCK); });
    if (directory < 0)
        return -directory;
    struct stat status { };
    if (fstat(directory, &status) != 0)
        return closeAndReturn(directory, errno);
    if (status.st_uid != geteuid())
        return closeAndReturn(directory, EPERM); // the new directory has been replaced already
    return closeAndReturn(directory, fchmod(directory, s_openToAll) == 0 ? 0 : errno);
}

int openReportFile(int directory, const char* name) noexcept
{
    // A file that is removed between the two calls is created in the next round.
    constexpr int rounds = 8;
    int file = -ENOENT;
    for (int round = 0; round < rounds && file == -ENOENT; ++round) {
        // Exclusive creation follows no links and opens nothing that exists, so it cannot block.
        file = withoutInterruption(
            [=] { return openat(directory, name, s_reportFlags | O_CREAT | O_EXCL, s_reportMode); });
        if (file == -EEXIST)
            file = openExisting(directory, name);
        else if (file == -ENOENT)
            break; // the directory itself is gone
    }
    return file;
}

} // namespace ZSpace::Host
