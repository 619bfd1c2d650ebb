// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace {

class ZLogBook;
class ZLoggable;

namespace detail {

/// The destination of the calling thread's next record through `borrower`, even if another book is attached by then: a
/// line of the front end goes to the book that was attached when it began. Null pointers if there is no such line.
struct LentBook {
    const ZLoggable* borrower = nullptr;
    ZLogBook* book = nullptr;
};
extern thread_local constinit LentBook t_lentBook;

} // namespace detail
} // namespace ZSpace
