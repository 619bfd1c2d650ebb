// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/LineFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace::detail {

bool LineFile::open(const char* path) noexcept
{
    close();
    constexpr mode_t mode = 0666;
    do {
        m_descriptor = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, mode);
    } while (m_descriptor < 0 && errno == EINTR);
    if (m_descriptor < 0)
        return false;
    m_signalRisk = signalRiskOf(m_descriptor);
    m_isLastLineCut = false;
    return true;
}

void LineFile::close() noexcept
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

long long LineFile::size() const noexcept
{
    struct stat status { };
    return m_descriptor >= 0 && fstat(m_descriptor, &status) == 0 ? status.st_size : 0;
}

void LineFile::append(const char* line, long length) noexcept
{
    if (m_descriptor >= 0)
        appendLine(m_descriptor, line, length, m_signalRisk, m_isLastLineCut);
}

} // namespace ZSpace::detail
