// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/portable/LocalTimePortable.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

using Seconds = std::int64_t;

constexpr Seconds s_minute = 60;
constexpr Seconds s_hour = 60 * s_minute;
constexpr Seconds s_day = 24 * s_hour;

// Calendar

struct Date {
    std::int64_t year;
    int month; // 1 to 12
    int day;
};

Seconds dayOf(Seconds seconds)
{
    return (seconds >= 0 ? seconds : seconds - s_day + 1) / s_day;
}

/// The days from 1970 to the first of March of `year`. Counting from March puts the leap day at the end.
std::int64_t daysToMarch(std::int64_t year)
{
    const std::int64_t century = (year >= 0 ? year : year - 99) / 100;
    const std::int64_t fourYears = (year >= 0 ? year : year - 3) / 4;
    const std::int64_t fourCenturies = (year >= 0 ? year : year - 399) / 400;
    return 365 * year + fourYears - century + fourCenturies - 719'468;
}

/// The days from the first of March to the first of the month that is `months` (0 to 11) later.
int daysAfterMarch(int months)
{
    return (153 * months + 2) / 5;
}

std::int64_t daysTo(const Date& date)
{
    const bool isAfterFebruary = date.month > 2;
    const int months = isAfterFebruary ? date.month - 3 : date.month + 9;
    return daysToMarch(isAfterFebruary ? date.year : date.year - 1) + daysAfterMarch(months) + date.day - 1;
}

Date dateOf(std::int64_t days)
{
    std::int64_t year = 1970 + days / 365; // an estimate, which the loops correct
    while (daysToMarch(year) > days)
        --year;
    while (daysToMarch(year + 1) <= days)
        ++year;
    const auto rest = static_cast<int>(days - daysToMarch(year));
    const int months = (5 * rest + 2) / 153;
    const bool isNextYear = months >= 10;
    return {isNextYear ? year + 1 : year, isNextYear ? months - 9 : months + 3,
        rest - daysAfterMarch(months) + 1};
}

bool isLeapYear(std::int64_t year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

// Rules, such as "CET-1CEST,M3.5.0,M10.5.0/3"

/// The day of a year, and the time of that day, at which the clock changes.
struct Change {
    char kind =
        'M'; // 'M': weekday in a month; 'J': day from 1 on that never counts a leap day; 'N': day from 0 on
    int month = 0;
    int week = 0; // 5 is the last one
    int day = 0;
    Seconds time = 2 * s_hour;

    /// In seconds since 1970 of the local clock.
    [[nodiscard]] Seconds inYear(std::int64_t year) const { return dayInYear(year) * s_day + time; }

private:
    [[nodiscard]] std::int64_t dayInYear(std::int64_t year) const
    {
        const std::int64_t january = daysTo({year, 1, 1});
        if (kind == 'N')
            return january + day;
        if (kind == 'J')
            return january + day - 1 + (isLeapYear(year) && day >= 60);
        const std::int64_t first = daysTo({year, month, 1});
        const std::int64_t next = month == 12 ? daysTo({year + 1, 1, 1}) : daysTo({year, month + 1, 1});
        const std::int64_t weekday = (first + 4) % 7; // 1970 began on a Thursday; negative before
        std::int64_t date = first + (day - weekday + 7) % 7 + 7 * (std::int64_t{week} - 1);
        while (date >= next)
            date -= 7;
        return date;
    }
};

class RuleParser {
public:
    explicit RuleParser(const char* rule)
        : m_next(rule)
    {
    }

    /// The offset from UTC at `seconds`; nothing if this is not a rule.
    std::optional<Seconds> offsetAt(Seconds seconds)
    {
        Seconds standard = 0;
        if (!skipName() || !readTime(standard))
            return {};
        standard = -standard; // rules count west of UTC as positive
        if (!*m_next)
            return standard;
        Seconds summer = standard + s_hour;
        if (!skipName() || !readSummer(summer) || !readChanges())
            return {};
        const std::int64_t year = dateOf(dayOf(seconds + standard)).year;
        const Seconds begin = m_begin.inYear(year) - standard;
        const Seconds end = m_end.inYear(year) - summer;
        const bool isSummer =
            begin < end ? seconds >= begin && seconds < end : !(seconds >= end && seconds < begin);
        return isSummer ? summer : standard;
    }

private:
    bool take(char c)
    {
        if (*m_next != c)
            return false;
        ++m_next;
        return true;
    }

    /// At least three letters, or anything between angle brackets.
    bool skipName()
    {
        if (take('<')) {
            m_next += std::strcspn(m_next, ">");
            return take('>');
        }
        const char* const begin = m_next;
        while ((*m_next >= 'A' && *m_next <= 'Z') || (*m_next >= 'a' && *m_next <= 'z'))
            ++m_next;
        return m_next - begin >= 3;
    }

    bool readNumber(int& number, int min, int max)
    {
        const char* const begin = m_next;
        for (number = 0; *m_next >= '0' && *m_next <= '9' && m_next - begin < 4; ++m_next)
            number = number * 10 + (*m_next - '0');
        return m_next > begin && number >= min && number <= max;
    }

    /// "-1:30" and the like.
    bool readTime(Seconds& time)
    {
        const bool isNegative = take('-');
        if (!isNegative)
            take('+');
        int hours = 0;
        int minutes = 0;
        int seconds = 0;
        constexpr int maxHours = 167; // one week, so that a rule can name another day than that of the change
        if (!readNumber(hours, 0, maxHours) || (take(':') && !readNumber(minutes, 0, 59))
            || (take(':') && !readNumber(seconds, 0, 59)))
            return false;
        time = hours * s_hour + minutes * s_minute + seconds;
        if (isNegative)
            time = -time;
        return true;
    }

    bool readSummer(Seconds& summer)
    {
        if (!*m_next || *m_next == ',')
            return true;
        if (!readTime(summer))
            return false;
        summer = -summer;
        return true;
    }

    bool readChanges()
    {
        if (!*m_next)
            m_next = ",M3.2.0,M11.1.0"; // what the C library assumes without a zone file "posixrules"
        return take(',') && readChange(m_begin) && take(',') && readChange(m_end) && !*m_next;
    }

    bool readChange(Change& change)
    {
        const bool isRead = take('M') ? readWeekday(change) : readDay(change);
        return isRead && (!take('/') || readTime(change.time));
    }

    bool readWeekday(Change& change)
    {
        return readNumber(change.month, 1, 12) && take('.') && readNumber(change.week, 1, 5) && take('.')
            && readNumber(change.day, 0, 6);
    }

    bool readDay(Change& change)
    {
        change.kind = take('J') ? 'J' : 'N';
        return change.kind == 'J' ? readNumber(change.day, 1, 365) : readNumber(change.day, 0, 365);
    }

    const char* m_next;
    Change m_begin;
    Change m_end;
};

// Files of compiled zones (RFC 8536)

/// One of the two blocks of such a file: the times at which the offset changes, and the new offsets.
class ZoneBlock {
public:
    ZoneBlock(const std::string& file, std::size_t header, std::size_t timeSize)
        : m_file(file)
        , m_times(header + s_headerSize)
        , m_timeSize(timeSize)
    {
        if (file.size() < m_times || file.compare(header, 4, "TZif") != 0)
            return;
        m_changeCount = count(header, 3);
        m_typeCount = count(header, 4);
        const std::size_t leapCount = count(header, 2);
        m_types = m_times + m_changeCount * (m_timeSize + 1);
        m_end = m_types + m_typeCount * s_typeSize + count(header, 5) + leapCount * (m_timeSize + 4)
            + count(header, 1) + count(header, 0);
        m_isWhole = m_typeCount > 0 && m_end <= file.size();
    }

    [[nodiscard]] bool isWhole() const { return m_isWhole; }
    [[nodiscard]] std::size_t end() const { return m_end; }

    /// Whether `seconds` is after the last change, where the rule after the block applies.
    [[nodiscard]] bool isPast(Seconds seconds) const
    {
        return m_changeCount == 0 || seconds >= time(m_changeCount - 1);
    }

    [[nodiscard]] std::optional<Seconds> offsetAt(Seconds seconds) const
    {
        std::size_t type = 0; // before the first change
        for (std::size_t i = m_changeCount; i-- > 0;) {
            if (seconds >= time(i)) {
                type = byte(m_times + m_changeCount * m_timeSize + i);
                break;
            }
        }
        if (type >= m_typeCount)
            return {};
        return static_cast<std::int32_t>(bigEndian(m_types + type * s_typeSize, 4));
    }

private:
    [[nodiscard]] unsigned char byte(std::size_t at) const { return static_cast<unsigned char>(m_file[at]); }

    [[nodiscard]] std::uint64_t bigEndian(std::size_t at, std::size_t size) const
    {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value = value << 8 | byte(at + i);
        return value;
    }

    /// The counts of a header; none is large enough for sums to overflow.
    [[nodiscard]] std::size_t count(std::size_t header, std::size_t index) const
    {
        return bigEndian(header + s_headerSize - 24 + index * 4, 4);
    }

    [[nodiscard]] Seconds time(std::size_t index) const
    {
        const std::uint64_t bits = bigEndian(m_times + index * m_timeSize, m_timeSize);
        return m_timeSize == 4 ? static_cast<std::int32_t>(bits) : static_cast<Seconds>(bits);
    }

    static constexpr std::size_t s_headerSize = 44;
    static constexpr std::size_t s_typeSize = 6;

    const std::string& m_file;
    std::size_t m_times;
    std::size_t m_timeSize;
    std::size_t m_changeCount = 0;
    std::size_t m_types = 0;
    std::size_t m_typeCount = 0;
    std::size_t m_end = 0;
    bool m_isWhole = false;
};

std::optional<Seconds> offsetByFile(const std::string& file, Seconds seconds)
{
    const ZoneBlock narrow(file, 0, 4);
    if (!narrow.isWhole())
        return {};
    constexpr std::size_t versionAt = 4;
    if (file[versionAt] < '2')
        return narrow.offsetAt(seconds);
    const ZoneBlock wide(file, narrow.end(), 8);
    if (!wide.isWhole())
        return {};
    if (wide.isPast(seconds) && wide.end() < file.size()) {
        const std::size_t begin = wide.end() + 1; // between two line feeds
        const std::size_t length = file.find('\n', begin) - begin;
        if (const auto offset = RuleParser(file.substr(begin, length).c_str()).offsetAt(seconds))
            return offset;
    }
    return wide.offsetAt(seconds);
}

/// The content of a regular file of moderate size; empty if it is anything else.
std::string contentOf(const std::string& path)
{
    constexpr std::size_t maxSize = 256UL * 1024; // the largest zones have a few KiB
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return {};
    std::string content;
    struct stat status { };
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0
        && static_cast<std::size_t>(status.st_size) <= maxSize) {
        content.resize(static_cast<std::size_t>(status.st_size));
        const ssize_t size = read(file, content.data(), content.size());
        content.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    }
    close(file);
    return content;
}

std::string zoneFile(const char* zone)
{
    if (!zone)
        return "/etc/localtime";
    if (*zone == '/')
        return zone;
    const char* const directory = std::getenv("TZDIR");
    return std::string(directory && *directory ? directory : "/usr/share/zoneinfo") + '/' + zone;
}

Seconds offsetAt(Seconds seconds)
{
    const char* zone = std::getenv("TZ");
    if (zone && *zone == ':')
        ++zone;
    if (zone && !*zone)
        return 0;
    if (const auto offset = offsetByFile(contentOf(zoneFile(zone)), seconds))
        return *offset;
    return zone ? RuleParser(zone).offsetAt(seconds).value_or(0) : 0;
}

} // namespace

std::tm localTime(std::time_t seconds)
{
    const Seconds local = seconds + offsetAt(seconds);
    const std::int64_t day = dayOf(local);
    const Date date = dateOf(day);
    const auto time = static_cast<int>(local - day * s_day);
    std::tm fields{};
    fields.tm_year = static_cast<int>(date.year - 1900);
    fields.tm_mon = date.month - 1;
    fields.tm_mday = date.day;
    fields.tm_hour = static_cast<int>(time / s_hour);
    fields.tm_min = static_cast<int>(time / s_minute % 60);
    fields.tm_sec = static_cast<int>(time % s_minute);
    return fields;
}

} // namespace ZSpace::Host
