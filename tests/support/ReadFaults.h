// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// Reads that fail half-way, for test programs that have ReadFaults.cpp among their sources: it stands in for
/// `fread` and `ferror` of the C library. Faults are those of the calling thread.
namespace ZSpace::Testing {

/// While it lives, the `nth` `fread` from then on (1: the next one) and all that follow read half of what
/// they are asked for, and leave the stream with its error mark set.
class ReadFault {
public:
    explicit ReadFault(long nth) noexcept;
    ReadFault(const ReadFault&) = delete; // one at a time
    ReadFault& operator=(const ReadFault&) = delete;
    ~ReadFault();
};

/// While it lives, each `fread` says that it has read `count` items and reads nothing.
class ClaimedRead {
public:
    explicit ClaimedRead(long count) noexcept;
    ClaimedRead(const ClaimedRead&) = delete; // one at a time
    ClaimedRead& operator=(const ClaimedRead&) = delete;
    ~ClaimedRead();
};

} // namespace ZSpace::Testing
