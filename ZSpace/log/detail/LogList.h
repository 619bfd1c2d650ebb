// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"

#include <memory>
#include <utility>

namespace ZSpace::detail {

/// A list that passes the want of memory on when an element is added, where `ZList::add` ends the process: a
/// log must never do that for want of a few bytes. The list is then as it was.
template <typename T>
class LogList : public ZList<T> {
public:
    void append(T element)
    {
        auto stored = std::make_unique<T>(std::move(element));
        this->il_reserveOne();
        this->il_append(stored.release());
    }
};

} // namespace ZSpace::detail
