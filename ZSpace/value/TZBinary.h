// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// A run of trivially copyable elements, owned or borrowed.
///
///     TZBinary<unsigned char> packet(bytes, 12, false);
///
/// Owned elements come from array `new` and are copied with the object. Borrowed elements remain the caller's
/// and are shared by all copies. A negative length counts as 0. Assigning a borrowed part of the object's own
/// elements keeps just that part.
template <typename T>
class TZBinary {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    constexpr TZBinary() noexcept = default;
    /// If `owns` is true, takes ownership of `data`, which must come from array `new`.
    TZBinary(T* data, long long length, bool owns) noexcept
        : m_data(data)
        , m_length(std::max(length, 0LL))
        , m_owns(owns)
    {
    }
    TZBinary(const TZBinary& other);
    TZBinary(TZBinary&& other) noexcept { swap(other); }
    ~TZBinary() { clear(); }

    TZBinary& operator=(const TZBinary& other);
    TZBinary& operator=(TZBinary&& other) noexcept;

    /// Frees owned elements and leaves the object empty.
    void clear() noexcept;

    /// The first byte.
    [[nodiscard]] T* Data() const noexcept { return m_data; }
    /// The number of bytes.
    [[nodiscard]] long long Length() const noexcept { return m_length; }
    /// Whether the bytes are freed with this object.
    [[nodiscard]] bool Owns() const noexcept { return m_owns; }

    /// Compares lengths and elements; ownership does not matter.
    bool operator==(const TZBinary& other) const noexcept
    {
        return m_length == other.m_length
            && std::equal(m_data, m_data + count(), other.m_data, other.m_data + other.count());
    }

private:
    [[nodiscard]] std::ptrdiff_t count() const noexcept { return m_data ? m_length : 0; }
    [[nodiscard]] bool isPartOf(const TZBinary& owner) const noexcept;
    void keepOnly(const TZBinary& part) noexcept;
    void swap(TZBinary& other) noexcept;

    T* m_data = nullptr;
    long long m_length = 0;
    bool m_owns = false;
};

static_assert(sizeof(TZBinary<unsigned char>) == 24);

template <typename T>
TZBinary<T>::TZBinary(const TZBinary& other)
    : TZBinary(other.m_data, other.m_length, other.m_owns)
{
    if (!m_owns)
        return;
    m_data =
        nullptr; // the destructor runs if the allocation throws, and must not free the elements of `other`
    if (other.count() > 0) {
        m_data = new T[static_cast<std::size_t>(other.count())];
        std::copy_n(other.m_data, other.count(), m_data);
    }
}

template <typename T>
TZBinary<T>& TZBinary<T>::operator=(const TZBinary& other)
{
    if (this == &other)
        return *this;
    if (other.isPartOf(*this))
        keepOnly(other);
    else
        TZBinary(other).swap(*this);
    return *this;
}

template <typename T>
TZBinary<T>& TZBinary<T>::operator=(TZBinary&& other) noexcept
{
    TZBinary taken(std::move(other)); // leaves `other` empty
    if (taken.isPartOf(*this))
        keepOnly(taken);
    else
        taken.swap(*this);
    return *this;
}

template <typename T>
void TZBinary<T>::clear() noexcept
{
    if (m_owns)
        delete[] m_data;
    m_data = nullptr;
    m_length = 0;
    m_owns = false;
}

/// Whether this object borrows elements that `owner` would free.
template <typename T>
bool TZBinary<T>::isPartOf(const TZBinary& owner) const noexcept
{
    constexpr std::less<const T*> isBefore;
    return owner.m_owns && !m_owns && count() > 0 && !isBefore(m_data, owner.m_data)
        && isBefore(m_data, owner.m_data + owner.count());
}

template <typename T>
void TZBinary<T>::keepOnly(const TZBinary& part) noexcept
{
    const long long length = std::min<long long>(part.m_length, m_data + m_length - part.m_data);
    std::copy_n(part.m_data, length, m_data); // to lower addresses, so overlapping is fine
    m_length = length;
}

template <typename T>
void TZBinary<T>::swap(TZBinary& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_length, other.m_length);
    std::swap(m_owns, other.m_owns);
}

} // namespace ZSpace
