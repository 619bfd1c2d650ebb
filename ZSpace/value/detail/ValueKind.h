// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/value/ZTypeId.h"

namespace ZSpace::detail {

/// The content of a value and its size in bytes.
struct ValueContent {
    const void* data;
    unsigned int size;
};

/// The operations that differ from kind to kind.
struct ValueKind {
    /// The size in bytes of a cell that `create` allocates.
    unsigned int size;
    /// Allocates a cell with its initial value. Null for kinds whose tag alone does not describe a cell.
    void* (*create)();
    void* (*copy)(ValueContent content);
    void (*destroy)(void* content) noexcept;
    bool (*areEqual)(ValueContent a, ValueContent b);
    void (*print)(ZGStr<char>& text, const void* content) noexcept;
    void (*printTo)(ZMStr<char>& text, const void* content) noexcept;
};

/// Returns null for tag 0 and for unknown tags.
[[nodiscard]] const ValueKind* kindOf(ZTypeId tag) noexcept;

} // namespace ZSpace::detail
