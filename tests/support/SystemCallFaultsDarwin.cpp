// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/SystemCallFaults.h"

// The C library exports several variants of these calls under different symbols, and each version of the
// system exports a different set.

namespace ZSpace::Testing {

bool SystemCallFault::isPossible() noexcept
{
    return false;
}

SystemCallFault::SystemCallFault(SystemCall call, int, Kind, long) noexcept
    : m_call(call)
{
}

SystemCallFault::~SystemCallFault() = default;

long SystemCallFault::count() const noexcept
{
    static_cast<void>(m_call);
    return 0;
}

ShortTransfers::ShortTransfers(long) noexcept { }

ShortTransfers::ShortTransfers(long, long) noexcept { }

ShortTransfers::~ShortTransfers() = default;

} // namespace ZSpace::Testing
