// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/ZTime.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <ostream>
#include <random>
#include <string>

namespace ZSpace {

/// For messages of failing tests.
inline void PrintTo(const ZTime& time, std::ostream* out)
{
    *out << static_cast<const char*>(time.toCStringEx());
}

} // namespace ZSpace

namespace ZSpace::Testing {

/// The process's time zone while it lives, given as in the environment variable.
class TimeZone {
public:
    explicit TimeZone(const char* zone)
    {
        if (const char* old = std::getenv("TZ"))
            m_old = old;
        setenv("TZ", zone, 1);
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone()
    {
        if (m_old)
            setenv("TZ", m_old->c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

private:
    std::optional<std::string> m_old;
};

/// Valid times from all over the range, the same ones in every run.
class RandomTimes {
public:
    ZSpace::ZTime next()
    {
        return {static_cast<unsigned short>(within(1600, 3000)), byte(1, 12), byte(1, 31), byte(0, 23),
            byte(0, 59), byte(0, 59), static_cast<unsigned short>(within(0, 999))};
    }

private:
    int within(int first, int last) { return std::uniform_int_distribution<int>(first, last)(m_random); }
    unsigned char byte(int first, int last) { return static_cast<unsigned char>(within(first, last)); }

    std::mt19937 m_random{20240305};
};

/// The fields of a time as the C library's record, daylight saving off.
[[nodiscard]] inline std::tm recordOf(const ZSpace::ZTime& time)
{
    std::tm record{};
    record.tm_year = time.Year() - 1900;
    record.tm_mon = time.Month() - 1;
    record.tm_mday = time.Day();
    record.tm_hour = time.Hour();
    record.tm_min = time.Minute();
    record.tm_sec = time.Second();
    return record;
}

/// The C library's seconds since 1970 for the fields of a time read as UTC.
[[nodiscard]] inline long long utcSecondsOf(const ZSpace::ZTime& time)
{
    std::tm record = recordOf(time);
    return timegm(&record);
}

} // namespace ZSpace::Testing
