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

/// All that a value does differently from one kind to the next.
struct ValueKind {
    /// The size of a cell that `create` makes.
    unsigned int size;
    /// A cell with its first value. Null for kinds that cannot be made without being told more.
    void* (*create)();
    void* (*copy)(ValueContent content);
    void (*destroy)(void* content) noexcept;
    bool (*areEqual)(ValueContent a, ValueContent b);
    void (*print)(ZGStr<char>& text, const void* content) noexcept;
    void (*printTo)(ZMStr<char>& text, const void* content) noexcept;
};

/// The kind of a tag; null for the tag of no value and for tags that are unknown.
[[nodiscard]] const ValueKind* kindOf(ZTypeId tag) noexcept;

} // namespace ZSpace::detail
