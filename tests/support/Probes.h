// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

/// Element types for tests of ownership, copying and order.
namespace ZSpace::Testing {

/// The pointer-sized word at position `index` of an object's representation.
[[nodiscard]] inline std::uintptr_t wordAt(const void* object, std::size_t index)
{
    std::uintptr_t word;
    std::memcpy(&word, static_cast<const unsigned char*>(object) + index * sizeof word, sizeof word);
    return word;
}

[[nodiscard]] inline std::uintptr_t asWord(const void* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

/// Records what happened to all `Counted` objects since the last reset.
struct Tally {
    long alive = 0;
    long made = 0;
    long copied = 0;
    long assigned = 0;
    std::vector<int> destroyed; ///< the numbers, in order of destruction
};

/// A number that counts its special member functions. The default is 0.
///
/// Call `reset()` at the start of a test; single-threaded.
class Counted {
public:
    static inline Tally s_tally;
    /// How many copies, by construction or assignment, still succeed; negative: all.
    static inline long s_copiesLeft = -1;

    static void reset()
    {
        s_tally = Tally();
        s_copiesLeft = -1;
    }

    Counted()
        : Counted(0)
    {
    }
    Counted(int number) // NOLINT(google-explicit-constructor): for readable tests
        : m_number(number)
    {
        ++s_tally.alive;
        ++s_tally.made;
    }
    Counted(const Counted& other)
        : m_number(other.m_number)
    {
        spendCopy();
        ++s_tally.alive;
        ++s_tally.copied;
    }
    Counted& operator=(const Counted& other)
    {
        spendCopy();
        m_number = other.m_number;
        ++s_tally.assigned;
        return *this;
    }
    ~Counted()
    {
        --s_tally.alive;
        s_tally.destroyed.push_back(m_number);
    }

    [[nodiscard]] int number() const { return m_number; }
    friend bool operator==(const Counted& a, const Counted& b) { return a.m_number == b.m_number; }

private:
    static void spendCopy()
    {
        if (s_copiesLeft == 0)
            throw std::runtime_error("no copies left");
        if (s_copiesLeft > 0)
            --s_copiesLeft;
    }

    int m_number;
};

} // namespace ZSpace::Testing
