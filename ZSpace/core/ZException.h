// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <exception>

namespace ZSpace {

/// An error with a code, a message and the place that detected it.
///
///     throw ZException(1, "Index out of range", "ZMStr::at");
///
/// Throw by value, catch by reference. The strings are neither owned nor copied: use string literals, since
/// anything else must outlive every copy of the exception. Nothing here allocates or throws.
class ZException : public std::exception {
public:
    /// Code 0; all strings are null.
    ZException() noexcept = default;
    /// With a code and a message.
    ZException(unsigned int code, const char* what) noexcept;
    /// With a code, a message and the place that detected it.
    ZException(unsigned int code, const char* what, const char* where) noexcept;
    /// With a code, a message, a place and a reason.
    ZException(unsigned int code, const char* what, const char* where, const char* why) noexcept;
    /// Code 0.
    explicit ZException(const char* what) noexcept;
    /// With a message and a place.
    ZException(const char* what, const char* where) noexcept;
    /// With a message, a place and a reason.
    ZException(const char* what, const char* where, const char* why) noexcept;

    ZException(const ZException&) noexcept = default;
    ~ZException() override;

    /// Copies what the virtual `what()`, `where()` and `why()` of `other` return. Deliberately keeps its own
    /// code.
    ZException& operator=(const ZException& other) noexcept;

    // The order of the virtual functions is part of the interface.

    /// The message; may be null.
    [[nodiscard]] const char* what() const noexcept override;
    /// The error code.
    [[nodiscard]] virtual unsigned int code() noexcept;
    /// The class and method that detected the error; may be null.
    [[nodiscard]] virtual const char* where() const noexcept;
    /// A further reason; may be null.
    [[nodiscard]] virtual const char* why() const noexcept;

    /// The same for const objects; the virtual function cannot become const without a different signature.
    [[nodiscard]] unsigned int code() const noexcept
    {
        return const_cast<ZException*>(this)->code(); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }

private:
    unsigned int m_code = 0;
    const char* m_what = nullptr;
    const char* m_where = nullptr;
    const char* m_why = nullptr;
};

static_assert(sizeof(ZException) == 5 * sizeof(void*));

/// An operation that is not implemented: code 1025, "Not implemented".
class ZXCNotImplemented : public virtual ZException {
public:
    /// The code of every exception of this kind.
    static constexpr unsigned int s_code = 1025;

    /// With a place and a reason.
    ZXCNotImplemented(const char* where, const char* why) noexcept;
    ZXCNotImplemented(const ZXCNotImplemented&) noexcept = default;
    ~ZXCNotImplemented() override;
    ZXCNotImplemented& operator=(const ZXCNotImplemented&) noexcept = default;
};

/// An index out of range: code 1026, "Out of bounds".
class ZXCOutOfBounds : public virtual ZException {
public:
    /// The code of every exception of this kind.
    static constexpr unsigned int s_code = 1026;

    /// With a place and a reason.
    ZXCOutOfBounds(const char* where, const char* why) noexcept;
    ZXCOutOfBounds(const ZXCOutOfBounds&) noexcept = default;
    ~ZXCOutOfBounds() override;
    ZXCOutOfBounds& operator=(const ZXCOutOfBounds&) noexcept = default;
};

static_assert(sizeof(ZXCNotImplemented) == sizeof(void*) + sizeof(ZException));
static_assert(sizeof(ZXCOutOfBounds) == sizeof(void*) + sizeof(ZException));

/// Thrown when an object has no method of the requested name.
class ZInvalidOperationException { };

/// Thrown for an index outside a value array.
class ZOutOfBoundsException { };

} // namespace ZSpace
