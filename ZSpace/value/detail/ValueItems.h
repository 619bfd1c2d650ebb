// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/TZValue.h"

#include <cstddef>

namespace ZSpace::detail {

/// The content of an array of values is a null-terminated block of these; null if the array is empty.
using ValueItem = TZValueBase<ZTypeId>*;

[[nodiscard]] std::size_t countItems(const ValueItem* items) noexcept;
/// Allocates a block with a clone of each item; null if there are none.
[[nodiscard]] ValueItem* copyItems(const ValueItem* items);
void freeItems(ValueItem* items) noexcept;
[[nodiscard]] bool areEqualItems(const ValueItem* a, const ValueItem* b);

} // namespace ZSpace::detail
