// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/TZValue.h"

namespace ZSpace {

/// A value that owns a list of values.
///
///     ZValueArrayBase numbers(ZTypeId_int);
///     numbers.ArrayAdd(TZValueBase<ZTypeId>(std::in_place, 42));
///
/// Each item is a heap object; the content is a null-terminated block of pointers to them. Counting walks the
/// block, and adding an item reallocates it, because arrays of values stay short. The kind of an item is not
/// checked against the array's.
///
/// Arrays may be nested to any depth: destroying, copying and comparing them does not recurse.
///
/// An index at or past the item count throws `ZOutOfBoundsException`. A failed allocation throws
/// `std::bad_alloc` and leaves the array unchanged.
class ZValueArrayBase : public TZValueBase<ZTypeId> {
    using Value = TZValueBase<ZTypeId>;

public:
    /// An empty array whose items have this type.
    explicit ZValueArrayBase(ZTypeId item);
    ZValueArrayBase(const ZValueArrayBase&) = default;
    ZValueArrayBase(ZValueArrayBase&&) noexcept = default;
    ~ZValueArrayBase() override;

    [[nodiscard]] ZValueArrayBase* clone() const override;

    ZValueArrayBase& operator=(const ZValueArrayBase&) = default;
    ZValueArrayBase& operator=(ZValueArrayBase&&) noexcept = default;

    /// The number of items.
    [[nodiscard]] unsigned int ArrayItemCount() const noexcept;
    /// The item at an index; throws if there is none.
    Value& ArrayItem(unsigned long long index) ZSPACE_LIFETIMEBOUND;
    /// The item at an index; throws if there is none.
    // NOLINTNEXTLINE(modernize-use-nodiscard): callers may want the range check alone
    const Value& ArrayItem(unsigned long long index) const ZSPACE_LIFETIMEBOUND;
    /// Replaces an item by a copy of `value`, which may be an item of this array.
    void ArrayItem(unsigned long long index, const Value& value);

    /// Adopts `value`, even if this throws. Null is ignored. If the array already owns `value`, or `value` is
    /// the array itself, adds a copy.
    void ArrayAdd(Value* value);
    /// Adds a copy; `value` may be an item of this array.
    void ArrayAdd(const Value& value);

    /// Removes the item at an index; throws if there is none.
    void ArrayRemove(unsigned long long index);
    /// Removes all items.
    void ArrayClear() noexcept;

    /// The kind of the items.
    [[nodiscard]] ZTypeId ArrayType() const noexcept { return m_type & ~ZTypeId_array; }
    /// The size of an item's content in bytes.
    [[nodiscard]] unsigned int ArrayItemSize() const noexcept { return m_size; }

    /// Compares the item counts and each pair of items.
    bool operator==(const ZValueArrayBase& other) const;
    using Value::operator==;

private:
    /// Null also if the value was cleared, or changed to another kind through its base.
    [[nodiscard]] Value** items() const noexcept
    {
        return m_type & ZTypeId_array ? static_cast<Value**>(m_content) : nullptr;
    }
    [[nodiscard]] Value*& slot(unsigned long long index) const;
};

static_assert(sizeof(ZValueArrayBase) == sizeof(TZValueBase<ZTypeId>));

} // namespace ZSpace
