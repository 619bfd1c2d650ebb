// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// A run of trivially copyable elements, owned or borrowed.
///
///     TZBinary<unsigned char> packet(bytes, 12, false);
///
/// Owned elements come from array `new` and are copied with the object. Borrowed elements remain the
/// caller's, and all copies share them. A length of 0 or less means empty.
template <typename T>
class TZBinary {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    constexpr TZBinary() noexcept = default;
    /// If `owns` is true, takes ownership of `data`, which must come from array `new`.
    TZBinary(T* data, long long length, bool owns) noexcept
        : m_data(data)
        , m_length(length)
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

    [[nodiscard]] T* Data() const noexcept { return m_data; }
    [[nodiscard]] long long Length() const noexcept { return m_length; }
    [[nodiscard]] bool Owns() const noexcept { return m_owns; }

    /// Compares lengths and elements; ownership does not matter.
    bool operator==(const TZBinary& other) const noexcept
    {
        return m_length == other.m_length
            && std::equal(m_data, m_data + count(), other.m_data, other.m_data + other.count());
    }

private:
    [[nodiscard]] std::ptrdiff_t count() const noexcept { return m_data ? std::max(m_length, 0LL) : 0; }
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
    if (this != &other)
        TZBinary(other).swap(*this);
    return *this;
}

template <typename T>
TZBinary<T>& TZBinary<T>::operator=(TZBinary&& other) noexcept
{
    TZBinary(std::move(other)).swap(*this);
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

template <typename T>
void TZBinary<T>::swap(TZBinary& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_length, other.m_length);
    std::swap(m_owns, other.m_owns);
}

} // namespace ZSpace
