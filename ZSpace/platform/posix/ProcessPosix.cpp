// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

void doNothing(int) { }

/// Writing to a terminal that is gone or to a file at its size limit must fail, not kill. A handler does that
/// as well as ignoring does, and unlike an ignored signal a handled one is back at its default in the
/// programs that this process starts.
void outliveOutputSignals() noexcept
{
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        struct sigaction now { };
        if (sigaction(signal, nullptr, &now) != 0 || now.sa_handler != SIG_DFL)
            continue;
        struct sigaction handled { };
        handled.sa_handler = doNothing;
        handled.sa_flags = SA_RESTART;
        sigemptyset(&handled.sa_mask);
        sigaction(signal, &handled, nullptr);
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

void shieldStandardStreams() noexcept
{
    for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
            occupy(descriptor);
    }
    outliveOutputSignals();
}

} // namespace ZSpace::Host
