// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/ZTime.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <ostream>
#include <random>
#include <string>

namespace ZSpace {

/// For failure messages.
inline void PrintTo(const ZTime& time, std::ostream* out)
{
    *out << static_cast<const char*>(time.toCStringEx());
}

} // namespace ZSpace

namespace ZSpace::Testing {

/// Sets the time zone of the process, in the format of `TZ`, during its lifetime.
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

/// Generates valid times over the whole range, the same sequence in every run.
class RandomTimes {
public:
    explicit RandomTimes(int firstYear = 1600)
        : m_firstYear(firstYear)
    {
    }

    ZTime next()
    {
        return {static_cast<unsigned short>(within(m_firstYear, 3000)), byte(1, 12), byte(1, 31), byte(0, 23),
            byte(0, 59), byte(0, 59), static_cast<unsigned short>(within(0, 999))};
    }

private:
    int within(int first, int last) { return std::uniform_int_distribution<int>(first, last)(m_random); }
    unsigned char byte(int first, int last) { return static_cast<unsigned char>(within(first, last)); }

    int m_firstYear;
    std::mt19937 m_random{20240305};
};

/// The fields of a time as a C library record, with daylight saving off.
[[nodiscard]] inline std::tm recordOf(const ZTime& time)
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

/// Seconds since 1970 of a time read as UTC, as the C library computes them.
[[nodiscard]] inline long long utcSecondsOf(const ZTime& time)
{
    constexpr long long secondsIn400Years = 146'097LL * 86'400;
    std::tm record = recordOf(time);
    long long seconds = 0;
    for (; record.tm_year < 0; record.tm_year += 400) // some C libraries refuse years before 1900
        seconds -= secondsIn400Years;
    return seconds + timegm(&record);
}

/// The representation of a time.
using TimeBytes = std::array<unsigned char, 10>;

[[nodiscard]] inline TimeBytes bytesOf(const ZTime& time)
{
    TimeBytes bytes;
    std::memcpy(bytes.data(), &time, bytes.size());
    return bytes;
}

[[nodiscard]] inline ZTime timeOf(const TimeBytes& bytes)
{
    ZTime time(false);
    std::memcpy(&time, bytes.data(), bytes.size());
    return time;
}

[[nodiscard]] inline std::string textOf(const ZTime& time)
{
    return static_cast<const char*>(time.toCStringEx());
}

inline const ZTime s_sampleTime(2024, 3, 5, 7, 8, 9, 42);

} // namespace ZSpace::Testing
