// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "value/ZTime.h"

#include <climits>
#include <cstddef>
#include <sys/time.h>

namespace ZSpace {

namespace {

constexpr long long s_secondsPerDay = 86400;
/// The calendar repeats after so many days.
constexpr long long s_daysPer400Years = 146097;
/// From 1 March of the year 0, where the arithmetic starts, to 1 January 1970.
constexpr long long s_daysUntil1970 = 719468;

constexpr long long floorDiv(long long n, long long divisor) noexcept
{
    return n / divisor - (n % divisor < 0);
}

/// Days since 1970-01-01. The year starts in March here, so that the leap day comes last. The month and the
/// day of a cleared time, 0 both, are December of the year before and the day before the first.
constexpr long long daysSince1970(int year, int month, int day) noexcept
{
    const long long y = month <= 2 ? year - 1 : year;
    const long long cycle = floorDiv(y, 400);
    const long long yearOfCycle = y - cycle * 400;
    const long long monthFromMarch = month <= 2 ? month + 9 : month - 3;
    const long long dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
    const long long dayOfCycle = yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 + dayOfYear;
    return cycle * s_daysPer400Years + dayOfCycle - s_daysUntil1970;
}

static_assert(daysSince1970(1970, 1, 1) == 0);
static_assert(daysSince1970(2000, 3, 1) == 11017);
static_assert(daysSince1970(0, 0, 0) == daysSince1970(-1, 11, 30));

struct Date {
    int year;
    int month;
    int day;
};

/// The way back.
constexpr Date dateOf(long long days) noexcept
{
    const long long shifted = days + s_daysUntil1970;
    const long long cycle = floorDiv(shifted, s_daysPer400Years);
    const auto dayOfCycle = static_cast<unsigned>(shifted - cycle * s_daysPer400Years);
    const unsigned yearOfCycle =
        (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
    const unsigned dayOfYear = dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
    const unsigned monthFromMarch = (5 * dayOfYear + 2) / 153;
    const auto day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    const auto month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    const long long year = static_cast<long long>(yearOfCycle) + cycle * 400 + (month <= 2);
    return {static_cast<int>(year), month, day};
}

static_assert(dateOf(0).year == 1970 && dateOf(0).month == 1 && dateOf(0).day == 1);
static_assert(dateOf(11016).month == 2 && dateOf(11016).day == 29);

// What the fields may hold.

constexpr unsigned short validYear(unsigned short year) noexcept
{
    return year < 1600 || year > 3000 ? 1970 : year;
}

constexpr unsigned char validMonth(unsigned char month) noexcept
{
    return month < 1 || month > 12 ? 1 : month;
}

constexpr unsigned char validDay(unsigned char day) noexcept
{
    return day < 1 || day > 31 ? 1 : day;
}

constexpr unsigned char validHour(unsigned char hour) noexcept
{
    return hour > 23 ? 0 : hour;
}

constexpr unsigned char validMinuteOrSecond(unsigned char number) noexcept
{
    return number > 59 ? 0 : number;
}

constexpr unsigned short validMilliseconds(unsigned short milliseconds) noexcept
{
    return milliseconds > 999 ? 999 : milliseconds;
}

/// The packed form: where each field starts and how many bits it has.
struct PackedField {
    [[nodiscard]] constexpr unsigned long long pack(unsigned number) const noexcept
    {
        return static_cast<unsigned long long>(number) << shift;
    }
    template <typename Number>
    [[nodiscard]] constexpr Number unpack(unsigned long long packed) const noexcept
    {
        return static_cast<Number>(packed >> shift & ((1ULL << bits) - 1));
    }

    int shift;
    int bits;
};

constexpr PackedField s_packedYear{36, 12};
constexpr PackedField s_packedMonth{32, 4};
constexpr PackedField s_packedDay{27, 5};
constexpr PackedField s_packedHour{22, 5};
constexpr PackedField s_packedMinute{16, 6};
constexpr PackedField s_packedSecond{10, 6};
constexpr PackedField s_packedMilliseconds{0, 10};

/// The wall clock.
timeval clockTime() noexcept
{
    timeval now{};
    gettimeofday(&now, nullptr);
    return now;
}

/// Writes a number with leading zeros, whole where it is wider.
template <typename T>
T* writePadded(T* to, unsigned number, long width) noexcept
{
    const detail::Decimal decimal(number);
    const long zeros = width - decimal.length();
    detail::fillChars(to, T('0'), zeros);
    to += zeros > 0 ? zeros : 0;
    detail::writeDecimal(to, decimal);
    return to + decimal.length();
}

template <typename T>
T* writeTwoDigits(T* to, unsigned number) noexcept
{
    if (number > 99)
        return writePadded(to, number, 2);
    to[0] = static_cast<T>('0' + number / 10);
    to[1] = static_cast<T>('0' + number % 10);
    return to + 2;
}

/// The three parts of a text with two separators in it.
struct ThreePieces {
    ThreePieces(ZStrToken<char> text, char separator) noexcept
        : areAll(text.count(separator) == 2)
    {
        if (!areAll)
            return;
        const long firstCut = text.indexOf(separator);
        const long secondCut = text.indexOf(separator, firstCut + 1);
        first = text.left(firstCut);
        second = text.subString(firstCut + 1, secondCut - firstCut - 1);
        third = text.subString(secondCut + 1);
    }

    bool areAll; ///< whether there are exactly three
    ZStrToken<char> first;
    ZStrToken<char> second;
    ZStrToken<char> third;
};

} // namespace

void ZTime::pinLayout() noexcept
{
    static_assert(offsetof(ZTime, m_milliseconds) == 0);
    static_assert(offsetof(ZTime, m_second) == 2);
    static_assert(offsetof(ZTime, m_minute) == 3);
    static_assert(offsetof(ZTime, m_hour) == 4);
    static_assert(offsetof(ZTime, m_day) == 5);
    static_assert(offsetof(ZTime, m_weekday) == 6);
    static_assert(offsetof(ZTime, m_month) == 7);
    static_assert(offsetof(ZTime, m_year) == 8);
}

ZTime::ZTime(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
    unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept
{
    set(year, month, day, hour, minute, second, milliseconds);
}

ZTime::ZTime(const char* text) noexcept
{
    *this = text;
}

ZTime::ZTime(const wchar_t* text) noexcept
{
    *this = text;
}

ZTime::ZTime(const unsigned int& seconds) noexcept
{
    *this = seconds;
}

ZTime::ZTime(const unsigned long long& packed) noexcept
{
    setPacked(packed);
}

ZTime::ZTime(const unsigned long& packed) noexcept
{
    setPacked(packed);
}

ZTime& ZTime::operator=(const char* text) noexcept
{
    parse(text);
    return *this;
}

ZTime& ZTime::operator=(const wchar_t* text) noexcept
{
    return *this = ZGStr<char>(text);
}

ZTime& ZTime::operator=(const ZGStr<char>& text) noexcept
{
    parse(text);
    return *this;
}

ZTime& ZTime::operator=(const ZGStr<wchar_t>& text) noexcept
{
    return *this = ZGStr<char>(text);
}

ZTime& ZTime::operator=(const unsigned int& seconds) noexcept
{
    setSeconds(seconds);
    m_milliseconds = 0;
    return *this;
}

ZTime& ZTime::operator=(const unsigned long long& packed) noexcept
{
    setPacked(packed);
    return *this;
}

ZTime& ZTime::operator=(const unsigned long& packed) noexcept
{
    setPacked(packed);
    return *this;
}

void ZTime::setNow() noexcept
{
    const timeval now = clockTime();
    setSeconds(now.tv_sec);
    m_milliseconds = static_cast<unsigned short>(now.tv_usec / 1000);
    // 1970-01-01 was a Thursday.
    const long long days = floorDiv(now.tv_sec, s_secondsPerDay);
    m_weekday = static_cast<unsigned char>(days + 4 - floorDiv(days + 4, 7) * 7);
}

void ZTime::clear() noexcept
{
    *this = ZTime(false);
}

bool ZTime::isCleared() const noexcept
{
    return m_milliseconds + m_second + m_minute + m_hour + m_day + m_month + m_year == 0;
}

void ZTime::set(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
    unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept
{
    setDate(year, month, day);
    setTime(hour, minute, second, milliseconds);
}

void ZTime::setDate(unsigned short year, unsigned char month, unsigned char day) noexcept
{
    Year(year);
    Month(month);
    Day(day);
}

void ZTime::setTime(
    unsigned char hour, unsigned char minute, unsigned char second, unsigned short milliseconds) noexcept
{
    Hour(hour);
    Minute(minute);
    Second(second);
    m_milliseconds = validMilliseconds(milliseconds);
}

unsigned short ZTime::Year(unsigned short year) noexcept
{
    return m_year = validYear(year);
}

unsigned char ZTime::Month(unsigned char month) noexcept
{
    return m_month = validMonth(month);
}

unsigned char ZTime::Day(unsigned char day) noexcept
{
    return m_day = validDay(day);
}

unsigned char ZTime::Hour(unsigned char hour) noexcept
{
    return m_hour = validHour(hour);
}

unsigned char ZTime::Minute(unsigned char minute) noexcept
{
    return m_minute = validMinuteOrSecond(minute);
}

unsigned char ZTime::Second(unsigned char second) noexcept
{
    return m_second = validMinuteOrSecond(second);
}

unsigned short ZTime::MilliSeconds(unsigned short milliseconds) noexcept
{
    return m_milliseconds = milliseconds > 999 ? 0 : milliseconds;
}

ZTime::operator unsigned long long() const noexcept
{
    return s_packedYear.pack(m_year) | s_packedMonth.pack(m_month) | s_packedDay.pack(m_day)
        | s_packedHour.pack(m_hour) | s_packedMinute.pack(m_minute) | s_packedSecond.pack(m_second)
        | s_packedMilliseconds.pack(m_milliseconds);
}

void ZTime::setPacked(unsigned long long packed) noexcept
{
    set(s_packedYear.unpack<unsigned short>(packed), s_packedMonth.unpack<unsigned char>(packed),
        s_packedDay.unpack<unsigned char>(packed), s_packedHour.unpack<unsigned char>(packed),
        s_packedMinute.unpack<unsigned char>(packed), s_packedSecond.unpack<unsigned char>(packed),
        s_packedMilliseconds.unpack<unsigned short>(packed));
}

ZTime::operator unsigned int() const noexcept
{
    return static_cast<unsigned int>(secondsAsUtc());
}

/// Leaves milliseconds and weekday alone.
void ZTime::setSeconds(long long secondsSince1970) noexcept
{
    const long long days = floorDiv(secondsSince1970, s_secondsPerDay);
    const auto ofDay = static_cast<unsigned>(secondsSince1970 - days * s_secondsPerDay);
    const Date date = dateOf(days);
    m_year = static_cast<unsigned short>(date.year);
    m_month = static_cast<unsigned char>(date.month);
    m_day = static_cast<unsigned char>(date.day);
    m_hour = static_cast<unsigned char>(ofDay / 3600);
    m_minute = static_cast<unsigned char>(ofDay / 60 % 60);
    m_second = static_cast<unsigned char>(ofDay % 60);
}

long long ZTime::secondsAsUtc() const noexcept
{
    return daysSince1970(m_year, m_month, m_day) * s_secondsPerDay + m_hour * 3600 + m_minute * 60 + m_second;
}

long long ZTime::operator-(const ZTime& other) const noexcept
{
    return secondsAsUtc() - other.secondsAsUtc();
}

ZTime& ZTime::shift(long long seconds) noexcept
{
    std::tm local;
    fill_tm(local, m_second, m_minute, m_hour, m_day, m_month, m_year);
    setSeconds(std::mktime(&local) + seconds);
    return *this;
}

void ZTime::parse(ZStrToken<char> text) noexcept
{
    if (text.count('T') != 1)
        return;
    const long cut = text.indexOf('T');
    const ThreePieces date(text.left(cut), '-');
    const ThreePieces time(text.subString(cut + 1), ':');
    if (!date.areAll || !time.areAll)
        return;
    set(date.first.toUInt16(), date.second.toUInt8(), date.third.toUInt8(), time.first.toUInt8(),
        time.second.toUInt8(), time.third.toUInt8(), 0);
}

template <detail::StrChar T>
long ZTime::writeText(T* to) const noexcept
{
    T* end = writePadded(to, m_year, 4);
    *end++ = '-';
    end = writeTwoDigits(end, m_month);
    *end++ = '-';
    end = writeTwoDigits(end, m_day);
    *end++ = 'T';
    end = writeTwoDigits(end, m_hour);
    *end++ = ':';
    end = writeTwoDigits(end, m_minute);
    *end++ = ':';
    end = writeTwoDigits(end, m_second);
    return end - to;
}

template <detail::StrChar T>
long ZTime::writeTextEx(T* to) const noexcept
{
    T* end = to + writeText(to);
    *end++ = '.';
    return writePadded(end, m_milliseconds, 3) - to;
}

template long ZTime::writeText(char*) const noexcept;
template long ZTime::writeText(wchar_t*) const noexcept;
template long ZTime::writeTextEx(char*) const noexcept;
template long ZTime::writeTextEx(wchar_t*) const noexcept;

namespace {

/// The characters that a text form's string has room for at first; both forms fit.
constexpr long s_builderRoom = 24;

template <typename T>
ZMStr<T> textOf(const ZTime& time)
{
    T text[ZTime::s_textRoom];
    ZMStr<T> built(s_builderRoom);
    built.append(text, time.writeText(text));
    return built;
}

template <typename T>
ZMStr<T> textExOf(const ZTime& time)
{
    T text[ZTime::s_textRoom];
    ZMStr<T> built(s_builderRoom);
    built.append(text, time.writeTextEx(text));
    return built;
}

} // namespace

ZMStr<char> ZTime::toCString() const
{
    return textOf<char>(*this);
}

ZMStr<char> ZTime::toCStringEx() const
{
    return textExOf<char>(*this);
}

ZMStr<wchar_t> ZTime::toWString() const
{
    return textOf<wchar_t>(*this);
}

ZMStr<wchar_t> ZTime::toWStringEx() const
{
    return textExOf<wchar_t>(*this);
}

ZTime::operator ZGStr<char>() const
{
    char text[s_textRoom];
    return ZGStr<char>(text, writeText(text));
}

ZTime::operator ZGStr<wchar_t>() const
{
    wchar_t text[s_textRoom];
    return ZGStr<wchar_t>(text, writeText(text));
}

void fill_tm(std::tm& record, unsigned char second, unsigned char minute, unsigned char hour,
    unsigned char day, unsigned char month, unsigned short year) noexcept
{
    record = {};
    record.tm_sec = second;
    record.tm_min = minute;
    record.tm_hour = hour;
    record.tm_mday = day;
    record.tm_mon = month - 1;
    record.tm_year = year - 1900;
}

} // namespace ZSpace

unsigned long long GetSystemTimeMillis() noexcept
{
    const timeval now = ZSpace::clockTime();
    return static_cast<unsigned long long>(now.tv_sec) * 1000
        + static_cast<unsigned long long>(now.tv_usec) / 1000;
}

unsigned int GetTickCount() noexcept
{
    return static_cast<unsigned int>(GetSystemTimeMillis()) / 10;
}
