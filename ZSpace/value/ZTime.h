// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"

#include <compare>
#include <concepts>
#include <cstddef>
#include <ctime>
#include <type_traits>

namespace ZSpace {

namespace detail {

/// A class that owns text of either width.
template <typename S>
concept StringClass = std::same_as<S, ZGStr<char>> || std::same_as<S, ZGStr<wchar_t>> || std::same_as<S,
    ZMStr<char>> || std::same_as<S, ZMStr<wchar_t>>;

} // namespace detail

/// A calendar time with milliseconds, held field by field in ten bytes.
///
///     ZTime now(true);
///     line << now.toCStringEx();  // 2024-03-05T07:08:09.042
///
/// No zone is stored. The clock and the seconds since 1970 fill the fields in UTC; texts and numbers are
/// taken as they come. All fields are zero in the cleared time. Everything else that is stored goes through
/// the same rules: a year outside 1600 to 3000 becomes 1970, a month outside 1 to 12 and a day outside 1 to
/// 31 become 1, an hour above 23, a minute or a second above 59 becomes 0, milliseconds above 999 become 999
/// (0 in their setter). Day and month are not compared: 31 February stays.
///
/// A plain value. Only the text forms that return a string allocate. Shifting asks the C library about the
/// local time zone, which nobody may change at that moment.
class ZTime {
public:
    /// The room that `writeText` and `writeTextEx` need for every possible time.
    static constexpr long s_textRoom = 32;

    /// The current time, or the cleared one.
    ZTime(bool now = false) noexcept
    {
        if (now)
            setNow();
    }
    ZTime(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
        unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept;
    /// The text form; the cleared time for a text that is none.
    ZTime(const char* text) noexcept;
    ZTime(const wchar_t* text) noexcept;
    template <detail::StringClass S>
    ZTime(const S& text) noexcept
    {
        *this = text;
    }
    /// Seconds since 1970-01-01T00:00:00 UTC.
    ZTime(const unsigned int& seconds) noexcept;
    /// The packed form.
    ZTime(const unsigned long long& packed) noexcept;
    ZTime(const unsigned long& packed) noexcept;

    /// A text that is not in the text form changes nothing. Wide text is narrowed first.
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

    /// The current time in UTC, from one look at the clock.
    void setNow() noexcept;
    void clear() noexcept;
    /// Whether all fields are zero, the weekday aside.
    [[nodiscard]] bool isCleared() const noexcept;

    void set(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
        unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept;
    void setDate(unsigned short year, unsigned char month, unsigned char day) noexcept;
    void setTime(
        unsigned char hour, unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept;

    [[nodiscard]] unsigned short Year() const noexcept { return m_year; }
    [[nodiscard]] unsigned char Month() const noexcept { return m_month; }
    [[nodiscard]] unsigned char Day() const noexcept { return m_day; }
    [[nodiscard]] unsigned char Hour() const noexcept { return m_hour; }
    [[nodiscard]] unsigned char Minute() const noexcept { return m_minute; }
    [[nodiscard]] unsigned char Second() const noexcept { return m_second; }
    [[nodiscard]] unsigned short MilliSeconds() const noexcept { return m_milliseconds; }

    /// Each stores what the rules make of the number and gives what it stored.
    unsigned short Year(unsigned short year) noexcept;
    unsigned char Month(unsigned char month) noexcept;
    unsigned char Day(unsigned char day) noexcept;
    unsigned char Hour(unsigned char hour) noexcept;
    unsigned char Minute(unsigned char minute) noexcept;
    unsigned char Second(unsigned char second) noexcept;
    /// Unlike everywhere else, a number above 999 becomes 0.
    unsigned short MilliSeconds(unsigned short milliseconds) noexcept;

    /// The packed form: year, month, day, hour, minute, second and milliseconds in 12, 4, 5, 5, 6, 6 and 10
    /// bits, the last one lowest. Orders like the time.
    operator unsigned long long() const noexcept;
    operator unsigned long() const noexcept { return static_cast<unsigned long long>(*this); }
    /// Seconds since 1970-01-01T00:00:00, modulo 2^32.
    operator unsigned int() const noexcept;

    /// `2024-03-05T07:08:09`; the Ex forms add the milliseconds: `2024-03-05T07:08:09.042`.
    [[nodiscard]] ZMStr<char> toCString() const;
    [[nodiscard]] ZMStr<char> toCStringEx() const;
    [[nodiscard]] ZMStr<wchar_t> toWString() const;
    [[nodiscard]] ZMStr<wchar_t> toWStringEx() const;
    operator ZGStr<char>() const;
    operator ZGStr<wchar_t>() const;

    /// The same texts, written to an array of `s_textRoom` characters without a terminator.
    /// @return the number of characters.
    template <detail::StrChar T>
    long writeText(T* to) const noexcept;
    template <detail::StrChar T>
    long writeTextEx(T* to) const noexcept;

    /// The whole seconds from `other` to this time, both read as times of one zone without daylight saving.
    long long operator-(const ZTime& other) const noexcept;

    /// Shifts by seconds, read as an unsigned 32-bit count. The fields are taken as local time and the result
    /// is written in UTC, so where the zone is another the time moves by the zone's offset, too: times have
    /// been stored that way. Milliseconds and weekday stay.
    ZTime& operator+=(unsigned int seconds) noexcept { return shift(static_cast<long long>(seconds)); }
    ZTime& operator-=(unsigned int seconds) noexcept { return shift(-static_cast<long long>(seconds)); }
    template <std::integral I>
    ZTime operator+(I seconds) const noexcept
    {
        return ZTime(*this) += static_cast<unsigned int>(seconds);
    }
    template <std::integral I>
    ZTime operator-(I seconds) const noexcept
    {
        return ZTime(*this) -= static_cast<unsigned int>(seconds);
    }

    /// Times compare by their packed forms, as they do with a text, which is parsed into a cleared time. With
    /// an `unsigned int` the seconds since 1970 are compared.
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
    [[nodiscard]] long long secondsAsUtc() const noexcept;
    int setSeconds(long long secondsSince1970) noexcept;
    void setPacked(unsigned long long packed) noexcept;
    static const char* charactersOf(const char* text) noexcept { return text; }
    static const wchar_t* charactersOf(const wchar_t* text) noexcept { return text; }
    void parse(ZStrToken<char> text) noexcept;
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

/// Fills the record of a calendar time, daylight saving off; fields that are not given become 0.
void fill_tm(std::tm& record, unsigned char second, unsigned char minute, unsigned char hour,
    unsigned char day, unsigned char month, unsigned short year) noexcept;

extern template long ZTime::writeText(char*) const noexcept;
extern template long ZTime::writeText(wchar_t*) const noexcept;
extern template long ZTime::writeTextEx(char*) const noexcept;
extern template long ZTime::writeTextEx(wchar_t*) const noexcept;

} // namespace ZSpace

/// Milliseconds since 1970.
unsigned long long GetSystemTimeMillis() noexcept;

/// Hundredths of a second, from the low 32 bits of the millisecond count: starts again from 0 about
/// every 49.7 days and stays below 429496730.
unsigned int GetTickCount() noexcept;

namespace ZSpace {

using ::GetSystemTimeMillis;
using ::GetTickCount;

} // namespace ZSpace
