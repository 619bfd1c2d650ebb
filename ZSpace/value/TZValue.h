// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZReference.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/value/TZBinary.h"
#include "ZSpace/value/ZBitField.h"
#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"
#include "ZSpace/value/ZTypeId.h"
#include "ZSpace/value/detail/ValueCells.h"

#include <type_traits>
#include <utility>

namespace ZSpace {

template <typename Id>
class TZValueBase;

namespace detail {
struct ValueNesting;
} // namespace detail

/// A cell that holds one value of any kind: a tag for the kind and separately allocated content.
///
/// The cell owns its content, including the characters of a string, the bytes of an owning binary, the
/// members of a structure and the items of an array. What C strings, addresses and borrowing binaries point
/// to remains the caller's. Copies are deep and throw `std::bad_alloc` if allocation fails. A value may be
/// used by one thread at a time.
template <typename Id>
class TZType {
public:
    /// No value: tag 0, no content, size 0.
    constexpr TZType() noexcept = default;
    /// A reference to an object.
    explicit TZType(ZReference<ZObject> object);
    TZType(const TZType& other);
    TZType(TZType&& other) noexcept { swap(other); }
    virtual ~TZType();

    /// Returns a heap copy of the same class.
    [[nodiscard]] virtual TZType* clone() const;

    /// Strong guarantee: the target is unchanged if copying throws.
    TZType& operator=(const TZType& other);
    TZType& operator=(TZType&& other) noexcept;

    /// Frees the content as the kind `tag`, which must be the value's own, and leaves no value. For an
    /// unknown tag, frees nothing.
    void clear(Id tag) noexcept;

    /// The type's tag.
    [[nodiscard]] Id Type() const noexcept { return m_type; }
    /// The size of the content in bytes.
    [[nodiscard]] unsigned int Size() const noexcept { return m_size; }
    /// The content, an object of the kind's type; null where there is none.
    [[nodiscard]] const void* Content() const noexcept ZSPACE_LIFETIMEBOUND { return m_content; }

protected:
    /// Adopts a content of this type.
    TZType(Id type, unsigned int size, void* content) noexcept
        : m_content(content)
        , m_type(type)
        , m_size(size)
    {
    }
    /// Exchanges two values.
    void swap(TZType& other) noexcept;

    friend detail::ValueNesting;

    /// The content, owned.
    void* m_content = nullptr;
    /// The type's tag.
    Id m_type = 0;
    /// The size of the content in bytes.
    unsigned int m_size = 0;
};

static_assert(sizeof(TZType<ZTypeId>) == 24);

/// The header of a structure of values: its name and member count.
template <typename Char>
class TZStructuralBase {
public:
    TZStructuralBase(const TZStructuralBase&) = delete; // the members follow it in the same block
    TZStructuralBase& operator=(const TZStructuralBase&) = delete;

    /// The structure's name.
    [[nodiscard]] const ZGStr<Char>& Name() const noexcept ZSPACE_LIFETIMEBOUND { return m_name; }
    /// The number of members.
    [[nodiscard]] unsigned int Count() const noexcept { return m_count; }

protected:
    /// A structure without members.
    explicit TZStructuralBase(ZGStr<Char>&& name) noexcept
        : m_name(std::move(name))
    {
    }
    ~TZStructuralBase() = default;

    /// The structure's name.
    ZGStr<Char> m_name;
    /// The number of members.
    unsigned int m_count = 0;
};

/// A structure of values in one heap block: the header, the members side by side, and two zero bytes.
///
///     auto* point = TZValueStructureBase<ZTypeId, char>::create("point", members, 2);
///     const TZValueBase<ZTypeId> value(*point);
///     TZValueStructureBase<ZTypeId, char>::release(point);
template <typename Id, typename Char>
class TZValueStructureBase : public TZStructuralBase<Char> {
public:
    /// Allocates a block with copies of the name and of `count` members. The caller frees it with `release`.
    static TZValueStructureBase* create(
        const ZGStr<Char>& name, const TZValueBase<Id>* members, unsigned int count);
    /// Destroys the members from the last to the first and frees the block. Null is ignored.
    static void release(TZValueStructureBase* structure) noexcept;

    /// Returns a deep copy in a new block, which the caller frees with `release`.
    [[nodiscard]] TZValueStructureBase* StructCopy() const;

    /// The size of the block in bytes.
    [[nodiscard]] unsigned int BlockSize() const noexcept;

    /// Undefined behavior if `index` is not below `Count()`.
    [[nodiscard]] TZValueBase<Id>& Member(unsigned int index) noexcept ZSPACE_LIFETIMEBOUND;
    [[nodiscard]] const TZValueBase<Id>& Member(unsigned int index) const noexcept ZSPACE_LIFETIMEBOUND;

    /// Compares the member counts and each pair of members; names do not matter.
    bool operator==(const TZValueStructureBase& other) const;

private:
    explicit TZValueStructureBase(ZGStr<Char>&& name) noexcept
        : TZStructuralBase<Char>(std::move(name))
    {
    }
    ~TZValueStructureBase() = default;
    void* addressOf(unsigned int index) noexcept;
};

/// A value with an optional name: the element of log records, invocation arguments and system information.
///
///     const TZValueBase<ZTypeId> greeting(ZGStr<char>("hello"));
///     const TZValueBase<ZTypeId> answer(std::in_place, 42);
///     line << answer.toCString();
///
/// Comparison ignores the name, and assignment keeps the target's.
template <typename Id>
class TZValueBase : public TZType<Id> {
public:
    constexpr TZValueBase() noexcept = default;
    /// A string value. An empty string is stored as a null string.
    TZValueBase(const ZGStr<char>& string)
        : TZValueBase(std::in_place, string)
    {
    }
    /// A wide string.
    TZValueBase(const ZGStr<wchar_t>& string)
        : TZValueBase(std::in_place, string)
    {
    }
    /// A reference value.
    TZValueBase(ZReference<ZObject> object)
        : TZValueBase(std::in_place, std::move(object))
    {
    }
    /// A value of the kind whose cell has exactly the type of `value`: `char`, `signed char` and `unsigned
    /// char` differ, as do numbers of each width and sign. `long` counts as `long long` and an unscoped
    /// enumeration as `int`. Character pointers and arrays are stored as C strings, by pointer. Allocates
    /// only the cell, unless copying `value` allocates.
    template <typename T>
    requires detail::HasCell<T>
    explicit TZValueBase(std::in_place_t, T&& value)
        : TZType<Id>(detail::s_typeIdOf<detail::CellFor<T>>, sizeof(detail::CellFor<T>),
            detail::newCell<detail::CellFor<T>>(std::forward<T>(value)))
    {
    }
    /// A structure value that holds a deep copy of `structure`.
    explicit TZValueBase(const TZValueStructureBase<Id, char>& structure);
    /// A memory block that holds a copy of `size` bytes; zeros if `bytes` is null.
    TZValueBase(const void* bytes, unsigned int size);
    TZValueBase(const TZValueBase& other);
    TZValueBase(TZValueBase&& other) noexcept = default;
    ~TZValueBase() override;

    [[nodiscard]] TZValueBase* clone() const override;

    /// Replaces the content and keeps the name. Strong guarantee.
    TZValueBase& operator=(const TZValueBase& other);
    TZValueBase& operator=(TZValueBase&& other) noexcept;

    /// Allocates a value of a kind that holds zero, null, the current time, or an empty string or object. Bit
    /// fields, structures, memory blocks, arrays and unknown tags yield a value of tag 0.
    static TZValueBase* createType(Id type);

    /// The value's name; empty if it has none.
    [[nodiscard]] const ZGStr<char>& Name() const noexcept ZSPACE_LIFETIMEBOUND { return m_name; }
    /// Sets the value's name.
    void Name(const ZGStr<char>& name) { m_name = detail::copyOfString(name); }

    /// Values of different kinds are never equal. Numbers, strings, times, GUIDs and bytes compare by value,
    /// C strings and addresses as pointers, references by object identity, structures and arrays item by
    /// item. A bit field never equals anything, not even itself.
    bool operator==(const TZValueBase& other) const;

    /// Returns the value in text form; empty for bit fields, structures, references, memory blocks, arrays
    /// and tag 0.
    [[nodiscard]] ZGStr<char> toCString() const;
    /// Appends `toCString()` to `string`, without an allocation if the capacity suffices.
    void appendTo(ZMStr<char>& string) const noexcept;

    /// Does nothing: every content is freed with its value. Kept for callers that release values member by
    /// member.
    static void ReleaseContentOfValue(TZValueBase&) noexcept { }
    /// Does nothing: a structure's members are freed with it.
    static void ReleaseContentOfStructure(TZStructuralBase<char>&) noexcept { }

protected:
    /// Adopts a content of this type.
    TZValueBase(Id type, unsigned int size, void* content) noexcept
        : TZType<Id>(type, size, content)
    {
    }

private:
    ZGStr<char> m_name;
};

static_assert(sizeof(TZValueBase<ZTypeId>) == 32);
static_assert(sizeof(TZValueStructureBase<ZTypeId, char>) == 16);

extern template class TZType<ZTypeId>;
extern template class TZValueBase<ZTypeId>;
extern template class TZValueStructureBase<ZTypeId, char>;

} // namespace ZSpace
