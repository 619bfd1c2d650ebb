// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <string>

namespace ZSpace::detail {

/// A printf format in which each `%n` is replaced by a conversion that takes the same argument but neither
/// stores nor prints anything: a format must not be able to write to memory.
class StorelessFormat {
public:
    /// Allocates only for a format that contains `%n`. Throws `std::bad_alloc` if that fails.
    explicit StorelessFormat(const char* format);
    StorelessFormat(const StorelessFormat&) = delete; // may refer to itself
    StorelessFormat& operator=(const StorelessFormat&) = delete;
    ~StorelessFormat() = default;

    /// The caller's format unless it contains `%n`.
    [[nodiscard]] const char* get() const noexcept { return m_format; }

private:
    const char* m_format;
    std::string m_rewritten; // empty if the caller's format is used
};

/// Formats into an array of `size` bytes and truncates the output to fit. A null format counts as empty. If formatting
/// fails, the array holds the output up to the failure.
void formatBounded(char* to, std::size_t size, const char* format, std::va_list arguments);

/// A formatted string on the stack, cut to its first `size` - 1 bytes.
template <std::size_t size>
class BoundedText {
public:
    BoundedText(const char* format, std::va_list arguments)
    {
        if (format && std::strcmp(format, "%s") == 0)
            takeString(arguments);
        else
            formatBounded(m_buffer, size, format, arguments);
    }
    BoundedText(const BoundedText&) = delete; // points into itself
    BoundedText& operator=(const BoundedText&) = delete;
    ~BoundedText() = default;

    /// Valid as long as this object and the arguments are.
    [[nodiscard]] const char* get() const noexcept { return m_text; }

private:
    /// The most frequent format, a string alone, bypasses the formatter; a string that fits is not even
    /// copied.
    void takeString(std::va_list arguments) noexcept
    {
        std::va_list copy;
        va_copy(copy, arguments);
        const char* const argument = va_arg(copy, const char*);
        va_end(copy);
        const char* const text = argument ? argument : "(null)";
        if (strnlen(text, size) < size) {
            m_text = text;
        } else {
            std::memcpy(m_buffer, text, size - 1);
            m_buffer[size - 1] = '\0';
        }
    }

    char m_buffer[size]; // uninitialized unless used
    const char* m_text = m_buffer;
};

} // namespace ZSpace::detail
