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

/// Writing to a closed pipe or beyond the file-size limit must fail, not kill. An empty handler achieves that
/// as well as SIG_IGN does, and unlike SIG_IGN it is reset to the default in the programs that this process
/// starts.
void handleOutputSignals() noexcept
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

/// Opens the null device on `descriptor`, the lowest closed one. If there is no null device, opens the root
/// directory: writing to it fails as it would on a closed descriptor, and no child inherits it.
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
    handleOutputSignals();
}

} // namespace ZSpace::Host
