// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/value/TZValue.h"

#include <memory>

/// Keeps heap blocks of a thread's finished records for its next ones, since most records resemble the one before.
namespace ZSpace::detail {

using LogValue = TZValueBase<ZTypeId>;
using LogValues = ZList<ZRef<LogValue>>;

/// Adds to an empty list without capacity one value of the kind `type`, as `takeSpareValue` returns it. Returns false
/// if the thread's last record was not a single such value.
[[nodiscard]] bool takeSpareRecord(LogValues& values, ZTypeId type) noexcept;

/// An unnamed value of the kind `type`, to be overwritten, that nothing else refers to. Null if the thread has none.
[[nodiscard]] std::unique_ptr<ZRef<LogValue>> takeSpareValue(ZTypeId type) noexcept;

/// Transfers spare capacity of the thread, if any, to an empty list that has none.
void takeSpareCapacity(LogValues& values) noexcept;

/// Empties a list. Keeps its capacity, and each value of fixed size that nothing else refers to, for the next records.
void recycle(LogValues& values) noexcept;

} // namespace ZSpace::detail
