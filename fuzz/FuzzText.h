// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZMStr.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// Helpers that the fuzz targets of the strings share.
namespace ZSpaceFuzz {

/// Aborts the run after a message if a condition does not hold.
inline void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// Reads numbers and strings from the front of the input; past its end, returns zeros and empty strings.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_left(size)
    {
    }

    std::uint8_t byte()
    {
        if (m_left == 0)
            return 0;
        --m_left;
        return *m_data++;
    }

    /// A string of up to `longest` characters, preceded by its length.
    std::string text(std::size_t longest)
    {
        std::string taken(byte() % (longest + 1), '\0');
        for (char& c : taken)
            c = static_cast<char>(byte());
        return taken;
    }

    std::string rest()
    {
        std::string taken(m_left, '\0');
        for (char& c : taken)
            c = static_cast<char>(byte());
        return taken;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_left;
};

/// A string of either width in an array without a terminator, so that sanitizers detect reads past its end.
template <typename T>
class Characters {
public:
    explicit Characters(const std::string& text)
        : m_length(static_cast<long>(text.size()))
        , m_characters(new T[text.size()])
    {
        for (std::size_t i = 0; i < text.size(); ++i)
            m_characters[i] = static_cast<T>(static_cast<unsigned char>(text[i]));
    }
    Characters(const Characters&) = delete;
    Characters& operator=(const Characters&) = delete;
    ~Characters() { delete[] m_characters; }

    [[nodiscard]] ZSpace::ZStrToken<T> view() const { return {m_characters, m_length}; }

private:
    long m_length;
    T* m_characters;
};

/// The characters as bytes; each must fit into one.
template <typename T>
std::string bytesOf(ZSpace::ZStrToken<T> text)
{
    std::string bytes;
    for (long i = 0; i < text.Length(); ++i)
        bytes.push_back(static_cast<char>(text[i]));
    return bytes;
}

} // namespace ZSpaceFuzz
