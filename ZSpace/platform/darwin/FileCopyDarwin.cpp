// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/FileCopy.h"
#include "ZSpace/platform/posix/FileCopyPosix.h"

namespace ZSpace::Host {

// fcopyfile(3) copies contents with the same two calls.
int copyContents(int from, int to) noexcept
{
    return copyByReadingAndWriting(from, to);
}

} // namespace ZSpace::Host
