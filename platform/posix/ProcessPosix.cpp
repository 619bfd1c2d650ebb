// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "platform/posix/ProcessPosix.h"

#include "platform/Process.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

sigset_t g_shieldedSignals{}; // empty on every host as zeros, like all sets before `sigemptyset`

/// Writing to a terminal that is gone or to a file at its size limit must fail, not kill.
void ignoreOutputSignals() noexcept
{
    sigemptyset(&g_shieldedSignals);
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        struct sigaction ignore { };
        struct sigaction before { };
        ignore.sa_handler = SIG_IGN;
        if (sigaction(signal, &ignore, &before) == 0 && before.sa_handler == SIG_DFL)
            sigaddset(&g_shieldedSignals, signal);
    }
}

/// Occupies `descriptor`, the lowest free one. Without a null device the root folder does: writing to it
/// fails as writing to a closed descriptor would, and no child inherits it.
void occupy(int descriptor) noexcept
{
    int file = open("/dev/null", O_RDWR);
    if (file < 0)
        file = open("/", O_RDONLY | O_CLOEXEC);
    if (file > descriptor)
        close(file);
}

} // namespace

const sigset_t& shieldedSignals() noexcept
{
    return g_shieldedSignals;
}

void shieldStandardStreams() noexcept
{
    for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
            occupy(descriptor);
    }
    ignoreOutputSignals();
}

} // namespace ZSpace::Host
