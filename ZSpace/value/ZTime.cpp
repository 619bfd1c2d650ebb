// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZTime.h"

#include "ZSpace/string/detail/StrDigits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sys/time.h>
#include <tuple>

namespace ZSpace {

namespace {

// Validation

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

/// The first bit and the width of a field in the packed form.
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

/// Writes a number padded with zeros to `width`, or all its digits if it is wider.
template <typename T>
T* writePadded(T* to, unsigned number, long width) noexcept
{
    const detail::Decimal decimal(number);
    const long zeros = width - decimal.length();
    detail::fillChars(to, T('0'), zeros);
    return detail::writeDecimal(to + std::max(zeros, 0L), decimal);
}

/// Writes a number below 100.
template <typename T>
void writeTwoDigits(T* to, unsigned number) noexcept
{
    detail::writePair(to, detail::s_decimalPairs[number]);
}

/// The length of the text form of every valid time.
constexpr long s_usualLength = 19;

using Pieces = std::array<ZStrToken<char>, 6>;

/// Eight characters, matched and converted at once: each byte of a word is a digit or a separator.
class DigitGroup {
public:
    /// `pattern` has a "0" where `text` must have a digit. Other characters must be the same.
    DigitGroup(const char* text, const char* pattern) noexcept
        : m_digits(wordAt(text) ^ wordAt(pattern))
        , m_excess(m_digits + complementOf(pattern))
    {
    }

    [[nodiscard]] bool matches() const noexcept
    {
        constexpr std::uint64_t topBits = 0x8080'8080'8080'8080;
        return ((m_digits | m_excess) & topBits) == 0;
    }
    /// The number whose two digits start at `index`.
    [[nodiscard]] unsigned at(int index) const noexcept
    {
        const std::uint64_t pairs = m_digits * 10 + (m_digits >> 8);
        return pairs >> (8 * index) & 0xFF;
    }

private:
    static std::uint64_t wordAt(const char* text) noexcept
    {
        std::uint64_t word;
        std::memcpy(&word, text, sizeof word);
        return word;
    }

    /// What sets the top bit of a byte if it is added to more than the largest value allowed.
    static std::uint64_t complementOf(const char* pattern) noexcept
    {
        std::uint64_t word = 0;
        for (int i = 7; i >= 0; --i)
            word = word << 8 | (pattern[i] == '0' ? 0x7F - 9 : 0x7F);
        return word;
    }

    std::uint64_t m_digits; // a digit becomes its value and a separator 0
    std::uint64_t m_excess; // has the top bit of every byte that exceeds the largest value allowed
};

/// Splits a string at two "-", one "T" and two ":". A ":" before the "T" and a "-" after it do not count as
/// separators.
/// @return false if there are more or fewer separators.
bool split(ZStrToken<char> text, Pieces& pieces) noexcept
{
    constexpr std::size_t middle = 2;
    constexpr std::size_t last = std::tuple_size_v<Pieces> - 1;
    const char* start = text;
    const char* const end = start + text.Length();
    char separator = '-';
    std::size_t n = 0;
    for (const char* c = start; c != end; ++c) {
        const bool isMiddle = *c == 'T';
        if (!isMiddle && *c != separator)
            continue;
        if (isMiddle != (n == middle) || n == last)
            return false;
        pieces[n++] = ZStrToken<char>(start, c - start);
        start = c + 1;
        if (isMiddle)
            separator = ':';
    }
    pieces[n] = ZStrToken<char>(start, end - start);
    return n == last;
}

} // namespace

/// Stored times are copied byte by byte, so the offsets are fixed.
struct ZTime::Layout {
    static_assert(offsetof(ZTime, m_milliseconds) == 0);
    static_assert(offsetof(ZTime, m_second) == 2);
    static_assert(offsetof(ZTime, m_minute) == 3);
    static_assert(offsetof(ZTime, m_hour) == 4);
    static_assert(offsetof(ZTime, m_day) == 5);
    static_assert(offsetof(ZTime, m_weekday) == 6);
    static_assert(offsetof(ZTime, m_month) == 7);
    static_assert(offsetof(ZTime, m_year) == 8);
};

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

ZTime::ZTime(std::chrono::sys_time<std::chrono::milliseconds> time) noexcept
{
    using namespace std::chrono;
    constexpr sys_days first = year(1600) / January / 1;
    constexpr sys_days afterLast = year(3001) / January / 1;
    if (time < first || time >= afterLast)
        return;
    const auto seconds = floor<std::chrono::seconds>(time);
    setSeconds(seconds.time_since_epoch().count());
    m_milliseconds = static_cast<unsigned short>((time - seconds).count());
}

ZTime::operator std::chrono::sys_time<std::chrono::milliseconds>() const noexcept
{
    using namespace std::chrono;
    return sys_seconds(std::chrono::seconds(secondsAsUtc())) + milliseconds(m_milliseconds);
}

ZTime& ZTime::operator=(const char* text) noexcept
{
    parse(text);
    return *this;
}

ZTime& ZTime::operator=(const wchar_t* text) noexcept
{
    const ZGStr<char> narrowed(text);
    parse(narrowed);
    return *this;
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
    const int days = setSeconds(now.tv_sec);
    m_milliseconds = static_cast<unsigned short>(now.tv_usec / 1000);
    const std::chrono::weekday weekday{std::chrono::sys_days(std::chrono::days(days))};
    m_weekday = static_cast<unsigned char>(weekday.c_encoding());
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

/// Keeps the milliseconds and the weekday.
/// @return the days since 1970, from which the weekday follows.
int ZTime::setSeconds(long long secondsSince1970) noexcept
{
    const std::chrono::sys_seconds time{std::chrono::seconds(secondsSince1970)};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const auto ofDay = static_cast<unsigned>((time - day).count());
    m_year = static_cast<unsigned short>(static_cast<int>(date.year()));
    m_month = static_cast<unsigned char>(static_cast<unsigned>(date.month()));
    m_day = static_cast<unsigned char>(static_cast<unsigned>(date.day()));
    m_hour = static_cast<unsigned char>(ofDay / 3600);
    m_minute = static_cast<unsigned char>(ofDay / 60 % 60);
    m_second = static_cast<unsigned char>(ofDay % 60);
    return static_cast<int>(day.time_since_epoch().count());
}

namespace {

/// Seconds since 1970 of a record read as UTC.
long long utcSecondsOf(const std::tm& record) noexcept
{
    using namespace std::chrono;
    // Added up, because month and day are out of range in the cleared time.
    const year_month month = year(record.tm_year + 1900) / January + months(record.tm_mon);
    const sys_days day = sys_days(month / 1) + days(record.tm_mday - 1);
    return sys_seconds(day).time_since_epoch().count() + record.tm_hour * 3600L + record.tm_min * 60L
        + record.tm_sec;
}

long long offsetOf(const std::tm& local, std::time_t moment) noexcept
{
    return utcSecondsOf(local) - moment;
}

/// Offset of standard local time from UTC at or near a moment.
long long standardOffsetNear(std::time_t moment) noexcept
{
    constexpr std::time_t step = 30L * 86400; // daylight saving rarely lasts a whole year
    std::tm local{};
    for (std::time_t distance = 0; distance <= 12 * step; distance += step) {
        for (const std::time_t near : {moment - distance, moment + distance}) {
            if (localtime_r(&near, &local) && local.tm_isdst == 0)
                return offsetOf(local, near);
        }
    }
    constexpr long long usualDaylightSaving = 3600;
    return localtime_r(&moment, &local) ? offsetOf(local, moment) - usualDaylightSaving : 0;
}

} // namespace

std::tm ZTime::record() const noexcept
{
    std::tm record;
    fill_tm(record, m_second, m_minute, m_hour, m_day, m_month, m_year);
    return record;
}

long long ZTime::secondsAsUtc() const noexcept
{
    std::tm fields = record();
    // Years above the signed range result from shifting to before the year 0.
    fields.tm_year = static_cast<short>(m_year) - 1900;
    return utcSecondsOf(fields);
}

/// Read without daylight saving, which `fill_tm` switches off.
long long ZTime::secondsAsLocal() const noexcept
{
    std::tm fields = record();
    fields.tm_wday = -1;
    const std::time_t seconds = std::mktime(&fields);
    if (fields.tm_wday >= 0) // set on success only; a result of -1 may be a valid one
        return seconds;
    // Some C libraries refuse years before 1900.
    const long long utc = secondsAsUtc();
    const long long guess = utc - standardOffsetNear(static_cast<std::time_t>(utc));
    return utc - standardOffsetNear(static_cast<std::time_t>(guess));
}

long long ZTime::operator-(const ZTime& other) const noexcept
{
    return secondsAsUtc() - other.secondsAsUtc();
}

ZTime& ZTime::shift(long long seconds) noexcept
{
    setSeconds(secondsAsLocal() + seconds);
    return *this;
}

/// Reads the form that `writeText` writes, with the digits in their usual places.
/// @return false if `text` has another form; the time is then unchanged.
bool ZTime::parseUsualForm(ZStrToken<char> text) noexcept
{
    if (std::endian::native != std::endian::little || text.Length() != s_usualLength)
        return false;
    const char* start = text;
    const DigitGroup years(start, "0000-00-");
    const DigitGroup days(start + 3, "0-00-00T");
    const DigitGroup times(start + 11, "00:00:00");
    if (!years.matches() || !days.matches() || !times.matches())
        return false;
    set(static_cast<unsigned short>(years.at(0) * 100 + years.at(2)), static_cast<unsigned char>(days.at(2)),
        static_cast<unsigned char>(days.at(5)), static_cast<unsigned char>(times.at(0)),
        static_cast<unsigned char>(times.at(3)), static_cast<unsigned char>(times.at(6)), 0);
    return true;
}

void ZTime::parse(ZStrToken<char> text) noexcept
{
    if (parseUsualForm(text))
        return;
    Pieces pieces;
    if (split(text, pieces))
        set(pieces[0].toUInt16(), pieces[1].toUInt8(), pieces[2].toUInt8(), pieces[3].toUInt8(),
            pieces[4].toUInt8(), pieces[5].toUInt8(), 0);
}

/// Whether each field has the number of digits that the text form reserves for it.
bool ZTime::hasUsualWidth() const noexcept
{
    return m_year < 10000 && m_month < 100 && m_day < 100 && m_hour < 100 && m_minute < 100 && m_second < 100;
}

template <typename T>
long ZTime::writeText(T* to) const noexcept
{
    if (!hasUsualWidth())
        return writeWideFields(to);
    writeTwoDigits(to, m_year / 100);
    writeTwoDigits(to + 2, m_year % 100);
    to[4] = '-';
    writeTwoDigits(to + 5, m_month);
    to[7] = '-';
    writeTwoDigits(to + 8, m_day);
    to[10] = 'T';
    writeTwoDigits(to + 11, m_hour);
    to[13] = ':';
    writeTwoDigits(to + 14, m_minute);
    to[16] = ':';
    writeTwoDigits(to + 17, m_second);
    return s_usualLength;
}

template <typename T>
long ZTime::writeTextEx(T* to) const noexcept
{
    T* end = to + writeText(to);
    *end++ = '.';
    if (m_milliseconds > 999)
        return writePadded(end, m_milliseconds, 3) - to;
    *end = static_cast<T>('0' + m_milliseconds / 100);
    writeTwoDigits(end + 1, m_milliseconds % 100);
    return end + 3 - to;
}

/// `writeText` for any fields.
template <detail::StrChar T>
long ZTime::writeWideFields(T* to) const noexcept
{
    T* end = writePadded(to, m_year, 4);
    *end++ = '-';
    end = writePadded(end, m_month, 2);
    *end++ = '-';
    end = writePadded(end, m_day, 2);
    *end++ = 'T';
    end = writePadded(end, m_hour, 2);
    *end++ = ':';
    end = writePadded(end, m_minute, 2);
    *end++ = ':';
    return writePadded(end, m_second, 2) - to;
}

template long ZTime::writeText(char*) const noexcept;
template long ZTime::writeText(wchar_t*) const noexcept;
template long ZTime::writeTextEx(char*) const noexcept;
template long ZTime::writeTextEx(wchar_t*) const noexcept;

namespace {

/// The initial capacity of a returned string; both text forms fit.
constexpr long s_builderCapacity = 24;

template <typename T>
ZMStr<T> textOf(const ZTime& time)
{
    T text[ZTime::s_textCapacity];
    ZMStr<T> built(s_builderCapacity);
    built.append(text, time.writeText(text));
    return built;
}

template <typename T>
ZMStr<T> textExOf(const ZTime& time)
{
    T text[ZTime::s_textCapacity];
    ZMStr<T> built(s_builderCapacity);
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
    char text[s_textCapacity];
    return ZGStr<char>(text, writeText(text));
}

ZTime::operator ZGStr<wchar_t>() const
{
    wchar_t text[s_textCapacity];
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
