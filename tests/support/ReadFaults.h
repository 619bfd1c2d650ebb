// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

<<<<<<< HEAD
/// Reads that fail part way, for test programs that compile ReadFaults.cpp, which interposes `fread` and
/// `ferror` of the C library. Faults affect the calling thread only.
namespace ZSpace::Testing {

/// During its lifetime the `nth` call of `fread` (1: the next one) and all later ones read half of the
/// requested items, and `ferror` reports an error from then on.
=======
/// Makes reads fail halfway, in test programs that compile ReadFaults.cpp: it replaces `fread` and `ferror`
/// of the C library. Faults are per thread.
namespace ZSpace::Testing {

/// During its lifetime, the `nth` `fread` (1: the next one) and every later one read half of what they are
/// asked for and set the stream's error indicator.
>>>>>>> a9a694a (Describe the hosts in plain terms, and add one that provides nothing to prove the seam complete)
class ReadFault {
public:
    explicit ReadFault(long nth) noexcept;
    ReadFault(const ReadFault&) = delete; // one at a time
    ReadFault& operator=(const ReadFault&) = delete;
    ~ReadFault();
};

<<<<<<< HEAD
/// During its lifetime `fread` reads nothing and returns `count`.
=======
/// During its lifetime, each `fread` reads nothing and returns `count`.
>>>>>>> a9a694a (Describe the hosts in plain terms, and add one that provides nothing to prove the seam complete)
class ClaimedRead {
public:
    explicit ClaimedRead(long count) noexcept;
    ClaimedRead(const ClaimedRead&) = delete; // one at a time
    ClaimedRead& operator=(const ClaimedRead&) = delete;
    ~ClaimedRead();
};

} // namespace ZSpace::Testing
