// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// Reads that fail part way, for test programs that compile ReadFaults.cpp, which interposes `fread` and
/// `ferror` of the C library. Faults affect the calling thread only.
namespace ZSpace::Testing {

/// During its lifetime the `nth` call of `fread` (1: the next one) and all later ones read half of the
/// requested items, and `ferror` reports an error from then on.
class ReadFault {
public:
    explicit ReadFault(long nth) noexcept;
    ReadFault(const ReadFault&) = delete; // one at a time
    ReadFault& operator=(const ReadFault&) = delete;
    ~ReadFault();
};

/// During its lifetime `fread` reads nothing and returns `count`.
class ClaimedRead {
public:
    explicit ClaimedRead(long count) noexcept;
    ClaimedRead(const ClaimedRead&) = delete; // one at a time
    ClaimedRead& operator=(const ClaimedRead&) = delete;
    ~ClaimedRead();
};

} // namespace ZSpace::Testing
