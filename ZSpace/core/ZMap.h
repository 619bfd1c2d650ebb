// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZException.h"
#include "ZSpace/core/ZSet.h"
#include "ZSpace/core/detail/LifetimeBound.h"

#include <utility>

namespace ZSpace {

/// A key and its value. Two pairs are equal when their keys are.
template <typename K, typename V>
class ZPair {
public:
    ZPair()
        : first()
        , second()
    {
    }
    ZPair(const K& key, const V& value)
        : first(key)
        , second(value)
    {
    }
    ZPair(const ZPair& other)
        : ZPair(other.first, other.second)
    {
    }
    ~ZPair() = default;

    ZPair& operator=(const ZPair& other) // NOLINT(bugprone-unhandled-self-assignment): members handle it
    {
        first = other.first;
        second = other.second;
        return *this;
    }

    /// The key.
    [[nodiscard]] const K& key() const noexcept ZSPACE_LIFETIMEBOUND { return first; }

    [[nodiscard]] friend bool operator==(const ZPair& a, const ZPair& b) { return a.key() == b.key(); }

    /// The key.
    K first;
    /// The value.
    V second;

private:
    // Only for the layout; always `&first`, so `key()` reads `first` directly.
    [[maybe_unused]] const K* m_key = &first;
};

static_assert(sizeof(ZPair<void*, void*>) == 3 * sizeof(void*));

/// A map with linear search that keeps its pairs in the order in which their keys were first added.
///
///     ZMap<const wchar_t*, const wchar_t*> names;
///     names.add(s_key, L"Home folder");
///
/// Keys compare with `==`, so keys of type `const char*` compare as addresses. Meant for up to a few dozen
/// pairs. `add` calls `std::terminate` if allocation fails; copies behave like those of `ZList`.
template <typename K, typename V>
class ZMap : public ZSet<ZPair<K, V>> {
public:
    /// A key with its value.
    using Pair = ZPair<K, V>;

    ZMap() noexcept = default;
    ZMap(const ZMap& other);
    ZMap(ZMap&&) noexcept = default;
    ~ZMap() = default;
    ZMap& operator=(const ZMap&) = default;
    ZMap& operator=(ZMap&&) noexcept = default;

    /// Sets the value of `key`, appending a new pair if there is no such key.
    /// @return the stored pair.
    Pair& add(const K& key, const V& value) noexcept ZSPACE_LIFETIMEBOUND;

    /// Copies the value of `key` to `out`.
    /// @return false, with `out` unchanged, if there is no such key.
    bool get(const K& key, V& out) const;

    /// The value of `key`, null if there is no such key. The pointer stays valid until the pair is removed.
    [[nodiscard]] const V* find(const K& key) const ZSPACE_LIFETIMEBOUND;

    /// The value of `key`.
    /// @throws ZXCOutOfBounds if there is no such key.
    [[nodiscard]] const V& at(const K& key) const ZSPACE_LIFETIMEBOUND;
    /// The value of `key`.
    /// @throws ZXCOutOfBounds if there is no such key.
    [[nodiscard]] V& at(const K& key) ZSPACE_LIFETIMEBOUND
    {
        return const_cast<V&>(std::as_const(*this).at(key));
    }

    /// The pair at a POSITION, unchecked; not the value of a key, even if keys are integers. To access values by key,
    /// use `at`, `find` or `get`.
    [[nodiscard]] Pair& operator[](long position) noexcept ZSPACE_LIFETIMEBOUND
    {
        return ZSet<Pair>::operator[](position);
    }
    /// The pair at a POSITION, unchecked; not the value of a key.
    [[nodiscard]] const Pair& operator[](long position) const noexcept ZSPACE_LIFETIMEBOUND
    {
        return ZSet<Pair>::operator[](position);
    }

private:
    [[nodiscard]] const Pair* pairOf(const K& key) const;
};

template <typename K, typename V>
ZMap<K, V>::ZMap(const ZMap& other)
    : ZMap()
{
    this->il_reserve(other.Count());
    for (const Pair& pair : other)
        this->il_add(new Pair(pair.first, pair.second));
}

template <typename K, typename V>
ZPair<K, V>& ZMap<K, V>::add(const K& key, const V& value) noexcept
{
    auto* pair = const_cast<Pair*>(pairOf(key));
    if (!pair)
        return *this->il_append(new Pair(key, value)); // NOLINT(bugprone-unhandled-exception-at-new)
    pair->second = value;
    return *pair;
}

template <typename K, typename V>
bool ZMap<K, V>::get(const K& key, V& out) const
{
    const V* value = find(key);
    if (value)
        out = *value;
    return value;
}

template <typename K, typename V>
const V* ZMap<K, V>::find(const K& key) const
{
    const Pair* pair = pairOf(key);
    return pair ? &pair->second : nullptr;
}

template <typename K, typename V>
const V& ZMap<K, V>::at(const K& key) const
{
    const Pair* pair = pairOf(key);
    if (!pair)
        throw ZXCOutOfBounds("ZMap::at", nullptr);
    return pair->second;
}

template <typename K, typename V>
const ZPair<K, V>* ZMap<K, V>::pairOf(const K& key) const
{
    for (const Pair& pair : *this) {
        if (pair.key() == key)
            return &pair;
    }
    return nullptr;
}

} // namespace ZSpace
