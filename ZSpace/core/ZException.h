// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <exception>

namespace ZSpace {

/// An error with a number, a message and the place it was found at.
///
///     throw ZException(1, "Index out of range", "ZMStr::at");
///
/// Thrown by value and caught by reference. The texts are neither owned nor copied: string literals serve
/// best, and whatever else is given must outlive every copy of the exception. Nothing here allocates or
/// throws.
class ZException : public std::exception {
public:
    /// Number 0 and no texts.
    ZException() noexcept = default;
    ZException(unsigned int code, const char* what) noexcept;
    ZException(unsigned int code, const char* what, const char* where) noexcept;
    ZException(unsigned int code, const char* what, const char* where, const char* why) noexcept;
    /// Without a number of its own; `code()` then gives 0.
    explicit ZException(const char* what) noexcept;
    ZException(const char* what, const char* where) noexcept;
    ZException(const char* what, const char* where, const char* why) noexcept;

    ZException(const ZException&) noexcept = default;
    ~ZException() override;

    /// Takes over the three texts, asked for through the virtual accessors of `other`. The number stays what
    /// it was: it names the error this object was made for.
    ZException& operator=(const ZException& other) noexcept;

    // The order of the virtual operations is part of the interface.

    /// The message; may be null.
    [[nodiscard]] const char* what() const noexcept override;
    /// The error number.
    [[nodiscard]] virtual unsigned int code() noexcept;
    /// The class and method that found the error; may be null.
    [[nodiscard]] virtual const char* where() const noexcept;
    /// A further reason; may be null.
    [[nodiscard]] virtual const char* why() const noexcept;

    /// The error number, for handlers that catch by reference to constant.
    [[nodiscard]] unsigned int code() const noexcept { return m_code; }

private:
    unsigned int m_code = 0;
    const char* m_what = nullptr;
    const char* m_where = nullptr;
    const char* m_why = nullptr;
};

static_assert(sizeof(ZException) == 5 * sizeof(void*));

/// An operation that exists only by name: number 1025, "Not implemented".
class ZXCNotImplemented : public virtual ZException {
public:
    static constexpr unsigned int s_code = 1025;

    ZXCNotImplemented(const char* where, const char* why) noexcept;
    ZXCNotImplemented(const ZXCNotImplemented&) noexcept = default;
    ~ZXCNotImplemented() override;
    ZXCNotImplemented& operator=(const ZXCNotImplemented&) noexcept = default;
};

/// An index outside of what it points into: number 1026, "Out of bounds".
class ZXCOutOfBounds : public virtual ZException {
public:
    static constexpr unsigned int s_code = 1026;

    ZXCOutOfBounds(const char* where, const char* why) noexcept;
    ZXCOutOfBounds(const ZXCOutOfBounds&) noexcept = default;
    ~ZXCOutOfBounds() override;
    ZXCOutOfBounds& operator=(const ZXCOutOfBounds&) noexcept = default;
};

static_assert(sizeof(ZXCNotImplemented) == sizeof(void*) + sizeof(ZException));
static_assert(sizeof(ZXCOutOfBounds) == sizeof(void*) + sizeof(ZException));

/// Marks a call of a method that no object answers to. Carries nothing.
class ZInvalidOperationException { };

/// Marks an index outside of a value array. Carries nothing.
class ZOutOfBoundsException { };

} // namespace ZSpace
