// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Local time without Foundation, compared with the C library's, and zones that the C library must not read.

#include "ZSpace/platform/portable/LocalTimePortable.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

std::string printed(const std::tm& time)
{
    char line[64];
    std::snprintf(line, sizeof line, "%d-%02d-%02d %02d:%02d:%02d", time.tm_year + 1900, time.tm_mon + 1,
        time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    return line;
}

std::string byCLibrary(std::time_t seconds)
{
    std::tm time{};
    localtime_r(&seconds, &time);
    return printed(time);
}

/// Times over two centuries, and around the hours at which clocks change.
std::vector<std::time_t> someTimes()
{
    std::vector<std::time_t> times{
        0, -1, 1, 951'782'400, 1'078'099'200, 2'147'483'647, 2'147'483'648, 4'102'444'800};
    for (std::time_t time = -3'000'000'000; time < 6'000'000'000; time += 9'999'991)
        times.push_back(time);
    for (std::time_t hour = 1'767'225'600; hour < 1'798'761'600; hour += 3599) // the year 2026
        times.push_back(hour);
    return times;
}

const std::vector<std::time_t> s_times = someTimes();

/// Compares the two in a child process with the given zone, from `first` on.
void expectAgreement(
    const std::string& zone, std::time_t first, const std::vector<std::time_t>& times = s_times)
{
    const Outcome outcome = runInChild([&] {
        setenv("TZ", zone.c_str(), 1);
        tzset();
        for (const std::time_t time : times) {
            if (time < first)
                continue;
            const std::string expected = byCLibrary(time);
            const std::string actual = printed(Host::localTime(time));
            if (actual != expected) {
                std::fprintf(stderr, "%lld: %s instead of %s\n", static_cast<long long>(time), actual.c_str(),
                    expected.c_str());
                return 1;
            }
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0) << zone << ": " << outcome.standardError;
}

TEST(LocalTime, AgreesWithTheCLibraryInZonesOfEveryShape)
{
    if (!fs::exists("/usr/share/zoneinfo/Europe/Berlin"))
        GTEST_SKIP() << "no zones are installed here";
    for (const char* zone :
        {"Europe/Berlin", ":Europe/Berlin", "/usr/share/zoneinfo/Europe/Berlin", "America/New_York",
            "Asia/Kolkata", "Australia/Lord_Howe", "Africa/Casablanca", "Europe/Dublin", "America/St_Johns",
            "Pacific/Apia", "Asia/Gaza", "America/Nuuk", "Antarctica/Troll", "UTC", "Etc/GMT-14"})
        expectAgreement(zone, s_times.front());
}

// Rules describe the present; for times before 1970 the C library applies them differently.
TEST(LocalTime, AgreesWithTheCLibraryForRules)
{
    for (const char* zone :
        {"XXX-14", "CET-1CEST,M3.5.0,M10.5.0/3", "NZST-12NZDT,M9.5.0,M4.1.0/3", "<+0330>-3:30",
            "<-03>3<-02>,M3.5.0/-2,M10.5.0/-1", "AAA1:30:15BBB,J60/0,J300", "AAA0BBB,59,299/1:30", ":EST5",
            "", ":", "UTC0", "AAA24", "AAA0BBB,M1.5.0,M2.1.0", "AAA0BBB,M2.5.6,M3.1.0"})
        expectAgreement(zone, 0);
}

// Not compared with the C library: it reads older rules from the zone file "posixrules" if there is one, and then ends
// summer time an hour early.
TEST(LocalTime, AZoneWithoutDatesChangesAsTheUnitedStatesHaveSince2007)
{
    for (const char* zone : {"EST5EDT", "AAA5BBB"})
        EXPECT_EQ(runInChild([=] {
            setenv("TZ", zone, 1);
            for (const std::time_t change : {1'205'046'000, 1'225'605'600}) { // in March and November 2008
                std::puts(printed(Host::localTime(change - 1)).c_str());
                std::puts(printed(Host::localTime(change)).c_str());
            }
            return 0;
        }).standardOutput,
            "2008-03-09 01:59:59\n2008-03-09 03:00:00\n2008-11-02 01:59:59\n2008-11-02 01:00:00\n")
            << zone;
}

TEST(LocalTime, AgreesWithTheCLibraryForDaysOfTheYearInTheLastYearsOfCenturies)
{
    constexpr std::time_t quarter = 6 * 3600;
    std::vector<std::time_t> times;
    for (const std::time_t year : {946'684'800L, 4'102'444'800L}) { // 2000, which is a leap year, and 2100
        for (std::time_t time = year; time < year + 366 * 4 * quarter; time += quarter)
            times.push_back(time);
    }
    for (const char* zone : {"AAA0BBB,J60,J300", "AAA0BBB,J59,J61", "AAA0BBB,59,299"})
        expectAgreement(zone, 0, times);
}

TEST(LocalTime, ChangesToTheSecondThatTheCLibraryDoes)
{
    std::vector<std::time_t> times;
    for (std::time_t hour = 1'767'225'600; hour < 1'798'761'600; hour += 3600) { // the year 2026
        times.push_back(hour - 1);
        times.push_back(hour);
    }
    for (const char* zone : {"CET-1CEST,M3.5.0,M10.5.0/3", "NZST-12NZDT,M9.5.0,M4.1.0/3", "AZaz0BBB,0,J365",
             "AAA0BBB,M12.5.4,M6.1.0"}) // the last Thursday is the last day of the year
        expectAgreement(zone, 0, times);
}

TEST(LocalTime, AgreesWithTheCLibraryAroundTheYearZero)
{
    constexpr std::time_t zero = -62'167'219'200;
    constexpr std::time_t quarterOfAYear = 7'889'238;
    std::vector<std::time_t> times;
    for (std::time_t i = -420 * 4; i < 420 * 4; ++i)
        times.push_back(zero + i * quarterOfAYear);
    expectAgreement("UTC0", times.front(), times);
}

TEST(LocalTime, AnUnknownZoneIsUtc)
{
    for (const char* zone :
        {"No/Such/Zone", "A", "AAA", "<AAA", "AAA-1BBB,M13.1.0,M1.1.0", "AAA5BBB,", "\xFF\n"})
        EXPECT_EQ(runInChild([=] {
            setenv("TZ", zone, 1);
            return printed(Host::localTime(86'400)) == "1970-01-02 00:00:00" ? 0 : 1;
        }).status,
            0)
            << zone;
}

TEST(LocalTime, ARuleWithANumberOutOfItsRangeIsUtc)
{
    const auto localTimeIn = [](const std::string& zone) {
        return runInChild([&] {
            setenv("TZ", zone.c_str(), 1);
            std::fputs(printed(Host::localTime(86'400)).c_str(), stdout);
            return 0;
        }).standardOutput;
    };
    const std::string utc = "1970-01-02 00:00:00";
    EXPECT_EQ(localTimeIn("AAA167"), "1969-12-26 01:00:00");
    EXPECT_EQ(localTimeIn("AAA1:59:59"), "1970-01-01 22:00:01");
    EXPECT_EQ(localTimeIn("AAA1:00:00"), "1970-01-01 23:00:00");
    EXPECT_EQ(localTimeIn("AAA+1:00"), "1970-01-01 23:00:00");
    for (const char* zone : {"AAA168", "AAA-+1", "AAA+-1", "AAA1:60", "AAA1:00:60", "AAA-168"})
        EXPECT_EQ(localTimeIn(zone), utc) << zone;
    for (const char* day :
        {"M1.1.0", "M12.1.0", "M6.5.0", "M6.1.6", "J1", "J365", "0", "365", "J100/0", "J100/-167:59:59"}) {
        EXPECT_NE(localTimeIn(std::string("AAA3BBB,") + day + ",J200"), utc) << day;
        EXPECT_NE(localTimeIn(std::string("AAA3BBB,J200,") + day), utc) << day;
    }
    for (const char* day : {"M0.1.0", "M13.1.0", "M6.0.0", "M6.6.0", "M6.1.7", "M6.1", "M6", "J0", "J366",
             "366", "J100/168", "J100/", "J100/1:60", "J", ""}) {
        EXPECT_EQ(localTimeIn(std::string("AAA3BBB,") + day + ",J200"), utc) << day;
        EXPECT_EQ(localTimeIn(std::string("AAA3BBB,J200,") + day), utc) << day;
    }
}

TEST(LocalTime, AFifoAsZoneDoesNotBlock)
{
    const TemporaryFolder folder;
    const std::string fifo = (folder.path() / "fifo").string();
    ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
    const struct {
        std::string zone;
        std::string directory;
    } rows[] = {
        {":" + fifo, ""},
        {fifo, ""},
        {"fifo", folder.path().string()},
        {folder.path().string(), ""},
        {"/dev/zero", ""},
    };
    for (const auto& row : rows) {
        const Outcome outcome = runInChild([&] {
            alarm(20);
            setenv("TZ", row.zone.c_str(), 1);
            setenv("TZDIR", row.directory.c_str(), 1);
            return printed(Host::localTime(0)) == "1970-01-01 00:00:00" ? 0 : 1;
        });
        EXPECT_TRUE(outcome.hasExited) << row.zone;
        EXPECT_EQ(outcome.status, 0) << row.zone;
    }
}

TEST(LocalTime, ADamagedZoneFileIsHarmless)
{
    const std::string good = contentOf("/usr/share/zoneinfo/Europe/Berlin");
    if (good.empty())
        GTEST_SKIP() << "no zones are installed here";
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "zone").string();
    const Outcome outcome = runInChild([&] {
        setenv("TZ", file.c_str(), 1);
        for (std::size_t length = 0; length < good.size(); length += length < 200 ? 1 : 37) {
            writeFile(file, good.substr(0, length));
            (void)Host::localTime(1'767'225'600);
        }
        for (std::size_t at = 0; at < 200; ++at) {
            for (const char byte : {'\0', '\x7F', '\xFF'}) {
                std::string damaged = good;
                damaged[at] = byte;
                writeFile(file, damaged);
                (void)Host::localTime(1'767'225'600);
            }
        }
        return 0;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0) << outcome.standardError;
}

} // namespace
} // namespace ZSpace::Testing
