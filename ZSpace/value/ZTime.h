// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/ZStrToken.h"

#include <chrono>
#include <compare>
#include <cstddef>
#include <ctime>
#include <iosfwd>
#include <string_view>
#include <type_traits>

namespace ZSpace {

namespace detail {

/// A string class of either width that owns its characters.
template <typename S>
concept StringClass = std::disjunction_v<std::is_same<S, ZGStr<char>>, std::is_same<S, ZGStr<wchar_t>>,
    std::is_same<S, ZMStr<char>>, std::is_same<S, ZMStr<wchar_t>>>;

/// An integer or an unscoped enumeration.
template <typename T>
concept Countable = std::is_integral_v<T> ||(std::is_enum_v<T>&& std::is_convertible_v<T, long long>);

} // namespace detail

/// A calendar time with milliseconds, stored as separate fields in ten bytes.
///
///     ZTime now(true);
///     line << now.toCStringEx();  // 2024-03-05T07:08:09.042
///
/// The time zone is not stored. The clock and seconds since 1970 set the fields in UTC; strings and numbers
/// set them as given. In the cleared time all fields are zero. All other input is validated: a year outside
/// 1600 to 3000 becomes 1970, a month outside 1 to 12 or a day outside 1 to 31 becomes 1, an hour above 23 or
/// a minute or second above 59 becomes 0, and milliseconds above 999 become 999 (but 0 in their setter). The
/// day is not checked against the month: 31 February is accepted.
///
/// Trivially copyable. Only the functions that return a string allocate. Shifting uses the local time zone of
/// the C library, which must not change at the same time.
class ZTime {
public:
    /// The buffer size in characters that suffices for `writeText` and `writeTextEx`.
    static constexpr long s_textCapacity = 32;

    /// The current time or the cleared time.
    ZTime(bool now = false) noexcept
    {
        if (now)
            setNow();
    }
    /// From its fields, as `set` takes them.
    ZTime(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
        unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept;
    /// Parses the text form; other strings yield the cleared time.
    ZTime(const char* text) noexcept;
    /// As from a narrow string.
    ZTime(const wchar_t* text) noexcept;
    /// As from a null-terminated string.
    template <detail::StringClass S>
    ZTime(const S& text) noexcept
    {
        *this = text;
    }
    /// Seconds since 1970-01-01T00:00:00 UTC.
    ZTime(const unsigned int& seconds) noexcept;
    /// The packed form.
    ZTime(const unsigned long long& packed) noexcept;
    /// The packed form.
    ZTime(const unsigned long& packed) noexcept;
    /// A time of the system clock, in UTC. Times outside the years 1600 to 3000 yield the cleared time.
    explicit ZTime(std::chrono::sys_time<std::chrono::milliseconds> time) noexcept;
    /// The same, rounded down: `ZTime(std::chrono::system_clock::now())`.
    template <typename Duration>
    requires(!std::is_convertible_v<Duration, std::chrono::milliseconds>) explicit ZTime(
        std::chrono::sys_time<Duration> time) noexcept
        : ZTime(std::chrono::floor<std::chrono::milliseconds>(time))
    {
    }

    /// Parses the text form; other strings leave the time unchanged. Wide strings are narrowed first.
    ZTime& operator=(const char* text) noexcept;
    ZTime& operator=(const wchar_t* text) noexcept;
    template <detail::StringClass S>
    ZTime& operator=(const S& text) noexcept
    {
        *this = charactersOf(text);
        return *this;
    }
    /// Seconds since 1970; the milliseconds become 0.
    ZTime& operator=(const unsigned int& seconds) noexcept;
    /// The packed form.
    ZTime& operator=(const unsigned long long& packed) noexcept;
    ZTime& operator=(const unsigned long& packed) noexcept;

    /// Sets the current time in UTC.
    void setNow() noexcept;
    /// Sets all fields to zero.
    void clear() noexcept;
    /// Whether all fields except the weekday are zero.
    [[nodiscard]] bool isCleared() const noexcept;

    /// Sets all fields, each as its own setter does.
    void set(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
        unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept;
    /// Sets the date; the time of day stays.
    void setDate(unsigned short year, unsigned char month, unsigned char day) noexcept;
    /// Sets the time of day; the date stays.
    void setTime(
        unsigned char hour, unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept;

    /// The year.
    [[nodiscard]] unsigned short Year() const noexcept { return m_year; }
    /// The month, from 1.
    [[nodiscard]] unsigned char Month() const noexcept { return m_month; }
    /// The day of the month, from 1.
    [[nodiscard]] unsigned char Day() const noexcept { return m_day; }
    /// The hour.
    [[nodiscard]] unsigned char Hour() const noexcept { return m_hour; }
    /// The minute.
    [[nodiscard]] unsigned char Minute() const noexcept { return m_minute; }
    /// The second.
    [[nodiscard]] unsigned char Second() const noexcept { return m_second; }
    /// The milliseconds.
    [[nodiscard]] unsigned short MilliSeconds() const noexcept { return m_milliseconds; }

    /// Stores a validated year and returns it. The other setters do the same.
    unsigned short Year(unsigned short year) noexcept;
    /// Stores and returns a validated month.
    unsigned char Month(unsigned char month) noexcept;
    /// Stores and returns a validated day.
    unsigned char Day(unsigned char day) noexcept;
    /// Stores and returns a validated hour.
    unsigned char Hour(unsigned char hour) noexcept;
    /// Stores and returns a validated minute.
    unsigned char Minute(unsigned char minute) noexcept;
    /// Stores and returns a validated second.
    unsigned char Second(unsigned char second) noexcept;
    /// Unlike everywhere else, milliseconds above 999 become 0.
    unsigned short MilliSeconds(unsigned short milliseconds) noexcept;

    /// The packed form: the year in bits 36 to 47, month in 32 to 35, day in 27 to 31, hour in 22 to 26,
    /// minute in 16 to 21, second in 10 to 15, milliseconds in 0 to 9. Packed forms order like times.
    operator unsigned long long() const noexcept;
    operator unsigned long() const noexcept { return static_cast<unsigned long long>(*this); }
    /// Seconds since 1970-01-01T00:00:00, modulo 2^32.
    operator unsigned int() const noexcept;
    /// The fields read as UTC.
    explicit operator std::chrono::sys_time<std::chrono::milliseconds>() const noexcept;

    /// `2024-03-05T07:08:09`; the Ex functions append the milliseconds: `2024-03-05T07:08:09.042`.
    [[nodiscard]] ZMStr<char> toCString() const;
    /// The text form with milliseconds.
    [[nodiscard]] ZMStr<char> toCStringEx() const;
    /// The text form.
    [[nodiscard]] ZMStr<wchar_t> toWString() const;
    /// The text form with milliseconds.
    [[nodiscard]] ZMStr<wchar_t> toWStringEx() const;
    operator ZGStr<char>() const;
    operator ZGStr<wchar_t>() const;

    /// Writes the text form to a buffer of `s_textCapacity` characters, `char` or `wchar_t`, without a terminator.
    /// @return the number of characters.
    template <typename T>
    long writeText(T* to) const noexcept;
    /// As `writeText`, with the milliseconds.
    template <typename T>
    long writeTextEx(T* to) const noexcept;

    /// Whole seconds from `other` to this time, both interpreted as UTC.
    long long operator-(const ZTime& other) const noexcept;

    /// Shift by seconds, taken modulo 2^32. The fields are read as local time and written in UTC, so the time
    /// also moves by the offset of the local zone; stored times depend on that. Milliseconds and weekday do
    /// not change.
    ZTime& operator+=(unsigned int seconds) noexcept { return shift(static_cast<long long>(seconds)); }
    ZTime& operator-=(unsigned int seconds) noexcept { return shift(-static_cast<long long>(seconds)); }
    template <detail::Countable I>
    ZTime operator+(I seconds) const noexcept
    {
        return ZTime(*this) += static_cast<unsigned int>(seconds);
    }
    template <detail::Countable I>
    ZTime operator-(I seconds) const noexcept
    {
        return ZTime(*this) -= static_cast<unsigned int>(seconds);
    }

    /// Comparisons use the packed forms; a string is parsed first and compares as the cleared time if it is
    /// not a time. Comparisons with `unsigned int` use the seconds since 1970.
    bool operator==(const ZTime& other) const noexcept { return packed() == other.packed(); }
    bool operator==(const unsigned long long& other) const noexcept { return packed() == other; }
    bool operator==(const unsigned long& other) const noexcept { return packed() == other; }
    bool operator==(const unsigned int& other) const noexcept { return seconds() == other; }
    bool operator==(const char* other) const noexcept { return *this == ZTime(other); }
    bool operator==(const wchar_t* other) const noexcept { return *this == ZTime(other); }
    template <detail::StringClass S>
    bool operator==(const S& other) const noexcept
    {
        return *this == ZTime(other);
    }
    std::strong_ordering operator<=>(const ZTime& other) const noexcept
    {
        return packed() <=> other.packed();
    }
    std::strong_ordering operator<=>(const unsigned long long& other) const noexcept
    {
        return packed() <=> other;
    }
    std::strong_ordering operator<=>(const unsigned long& other) const noexcept { return packed() <=> other; }
    std::strong_ordering operator<=>(const unsigned int& other) const noexcept { return seconds() <=> other; }
    std::strong_ordering operator<=>(const char* other) const noexcept { return *this <=> ZTime(other); }
    std::strong_ordering operator<=>(const wchar_t* other) const noexcept { return *this <=> ZTime(other); }
    template <detail::StringClass S>
    std::strong_ordering operator<=>(const S& other) const noexcept
    {
        return *this <=> ZTime(other);
    }

private:
    [[nodiscard]] unsigned long long packed() const noexcept
    {
        return static_cast<unsigned long long>(*this);
    }
    [[nodiscard]] unsigned int seconds() const noexcept { return static_cast<unsigned int>(*this); }
    [[nodiscard]] std::tm record() const noexcept;
    [[nodiscard]] long long secondsAsUtc() const noexcept;
    [[nodiscard]] long long secondsAsLocal() const noexcept;
    int setSeconds(long long secondsSince1970) noexcept;
    void setPacked(unsigned long long packed) noexcept;
    static const char* charactersOf(const char* string) noexcept { return string; }
    static const wchar_t* charactersOf(const wchar_t* string) noexcept { return string; }
    bool parseUsualForm(ZStrToken<char> text) noexcept;
    void parse(ZStrToken<char> text) noexcept;
    [[nodiscard]] bool hasUsualWidth() const noexcept;
    template <detail::StrChar T>
    long writeWideFields(T* to) const noexcept;
    ZTime& shift(long long seconds) noexcept;

    struct Layout;

    unsigned short m_milliseconds = 0;
    unsigned char m_second = 0;
    unsigned char m_minute = 0;
    unsigned char m_hour = 0;
    unsigned char m_day = 0;
    unsigned char m_weekday = 0; // 0 is Sunday; only the clock sets it
    unsigned char m_month = 0;
    unsigned short m_year = 0;
};

static_assert(sizeof(ZTime) == 10 && alignof(ZTime) == 2);
static_assert(std::is_trivially_copyable_v<ZTime> && std::is_standard_layout_v<ZTime>);

/// Sets the given fields of a C library record; the others become 0, so daylight saving is off.
void fill_tm(std::tm& record, unsigned char second, unsigned char minute, unsigned char hour,
    unsigned char day, unsigned char month, unsigned short year) noexcept;

extern template long ZTime::writeText(char*) const noexcept;
extern template long ZTime::writeText(wchar_t*) const noexcept;
extern template long ZTime::writeTextEx(char*) const noexcept;
extern template long ZTime::writeTextEx(wchar_t*) const noexcept;

/// Writes the text form without milliseconds; width and fill of the stream apply.
template <detail::StrChar T, typename Traits>
std::basic_ostream<T, Traits>& operator<<(std::basic_ostream<T, Traits>& stream, const ZTime& time)
{
    T text[ZTime::s_textCapacity];
    return stream << std::basic_string_view<T, Traits>(text, static_cast<std::size_t>(time.writeText(text)));
}

} // namespace ZSpace

/// Milliseconds since 1970.
unsigned long long GetSystemTimeMillis() noexcept;

/// Hundredths of a second, from the low 32 bits of the millisecond count: wraps to 0 about every 49.7 days
/// and never exceeds 429496729.
unsigned int GetTickCount() noexcept;

namespace ZSpace {

using ::GetSystemTimeMillis;
using ::GetTickCount;

} // namespace ZSpace
