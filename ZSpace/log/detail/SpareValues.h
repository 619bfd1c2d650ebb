// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/value/TZValue.h"

#include <memory>

/// The heap blocks of a thread's finished records, kept for its next ones: most records look like the one before.
namespace ZSpace::detail {

using LogValue = TZValueBase<ZTypeId>;
using LogValues = ZList<ZRef<LogValue>>;

/// Fills an empty list that has no capacity with one value of the kind `type`, as `takeSpareValue` returns it, if the
/// thread's last record had just such a value.
[[nodiscard]] bool takeSpareRecord(LogValues& values, ZTypeId type) noexcept;

/// A value of the kind `type`, unnamed and referenced by nobody else, whose content is to be overwritten. Null if
/// the thread has none.
[[nodiscard]] std::unique_ptr<ZRef<LogValue>> takeSpareValue(ZTypeId type) noexcept;

/// Gives capacity to an empty list that has none, if the thread has some to spare.
void takeSpareCapacity(LogValues& values) noexcept;

/// Empties a list. Keeps what the next records can use: its capacity, and each value of fixed size that nobody else
/// refers to.
void recycle(LogValues& values) noexcept;

} // namespace ZSpace::detail
