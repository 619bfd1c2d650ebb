// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/TZValue.h"

#include <cstddef>

namespace ZSpace::detail {

/// The content of an array of values: a block of pointers to its items, ended by a null pointer. Null is an
/// array without items.
using ValueItem = TZValueBase<ZTypeId>*;

[[nodiscard]] std::size_t countItems(const ValueItem* items) noexcept;
/// A block with a clone of each item; null for no items.
[[nodiscard]] ValueItem* copyItems(const ValueItem* items);
void freeItems(ValueItem* items) noexcept;
[[nodiscard]] bool areEqualItems(const ValueItem* a, const ValueItem* b);

} // namespace ZSpace::detail
