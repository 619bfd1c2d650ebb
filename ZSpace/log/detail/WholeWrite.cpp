// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/WholeWrite.h"

#include <cerrno>
#include <cstddef>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace::detail {

namespace {

constexpr int s_shielded[]{SIGPIPE, SIGXFSZ};

sigset_t pendingSignals() noexcept
{
    sigset_t signals;
    sigemptyset(&signals);
    sigpending(&signals);
    return signals;
}

/// Precondition: the signal is pending, and the calling thread blocks it.
void discard(int signal) noexcept
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    int received = 0;
    sigwait(&signals, &received);
}

long writeContinuing(int descriptor, const char* bytes, long count) noexcept
{
    long written = 0;
    while (written < count) {
        const ssize_t n = write(descriptor, bytes + written, static_cast<std::size_t>(count - written));
        if (n > 0)
            written += static_cast<long>(n);
        else if (n == 0 || errno != EINTR)
            break;
    }
    return written;
}

} // namespace

SignalRisk signalRiskOf(int descriptor) noexcept
{
    struct stat status { };
    rlimit limit{};
    const bool isSafe = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur == RLIM_INFINITY;
    return isSafe ? SignalRisk::No : SignalRisk::Yes;
}

SignalShield::SignalShield() noexcept
    : m_pending(pendingSignals())
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : s_shielded)
        sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, &m_mask);
}

SignalShield::~SignalShield()
{
    const int error = errno;
    const sigset_t pending = pendingSignals();
    for (const int signal : s_shielded) {
        if (sigismember(&pending, signal) == 1 && sigismember(&m_pending, signal) != 1)
            discard(signal);
    }
    pthread_sigmask(SIG_SETMASK, &m_mask, nullptr);
    errno = error;
}

long writeWhole(int descriptor, const char* bytes, long count, SignalRisk risk) noexcept
{
    if (risk == SignalRisk::No)
        return writeContinuing(descriptor, bytes, count);
    const SignalShield shield;
    return writeContinuing(descriptor, bytes, count);
}

void appendLine(int descriptor, const char* line, long length, SignalRisk risk, bool& isLastLineCut) noexcept
{
    if (isLastLineCut && writeWhole(descriptor, "\n", 1, risk) == 0)
        return; // still no space on the disk, so this line is lost, too
    const long written = writeWhole(descriptor, line, length, risk);
    isLastLineCut = written > 0 && written < length;
}

} // namespace ZSpace::detail
