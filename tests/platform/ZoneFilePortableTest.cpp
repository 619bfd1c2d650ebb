// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Local time by files of compiled zones that this test makes: their two blocks, their rule, and what is wrong with some.

#include "ZSpace/platform/portable/LocalTimePortable.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace ZSpace::Testing {
namespace {

constexpr std::int32_t s_hour = 3600;

std::string bigEndian(std::int64_t value, std::size_t size)
{
    std::string bytes;
    for (std::size_t i = size; i-- > 0;)
        bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

/// One block of a zone file (RFC 8536), with some of everything that the reader must skip.
struct Block {
    std::vector<std::pair<std::int64_t, int>> changes; // the time, and the number of the offset from then on
    std::vector<std::int32_t> offsets;

    [[nodiscard]] std::string bytes(char version, std::size_t timeSize) const
    {
        const std::size_t utcCount = offsets.size();
        constexpr std::size_t standardCount = 0;
        constexpr std::size_t leapCount = 3;
        constexpr std::size_t nameLength = 4;
        std::string out = "TZif";
        out += version;
        out.append(15, '\0');
        for (const std::size_t count :
            {utcCount, standardCount, leapCount, changes.size(), offsets.size(), nameLength})
            out += bigEndian(static_cast<std::int64_t>(count), 4);
        for (const auto& change : changes)
            out += bigEndian(change.first, timeSize);
        for (const auto& change : changes)
            out += static_cast<char>(change.second);
        for (const std::int32_t offset : offsets)
            out += bigEndian(offset, 4) + std::string(2, '\0');
        out += std::string("ABC\0", nameLength);
        out.append(leapCount * (timeSize + 4), '\x11');
        out.append(utcCount + standardCount, '\0');
        return out;
    }
};

/// A file of the second version, with a narrow block that must not be used.
std::string zone(const Block& block, const std::string& rule)
{
    const Block narrow{{{0, 0}}, {11 * s_hour}};
    return narrow.bytes('2', 4) + block.bytes('2', 8) + "\n" + rule + "\n";
}

/// The offset from UTC at `seconds` by a zone file with this content, of which a read returns `most` bytes.
std::int64_t offsetBy(const std::string& content, std::int64_t seconds, long most = LONG_MAX)
{
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "zone").string();
    writeFile(file, content);
    const Outcome outcome = runInChild([&] {
        setenv("TZ", file.c_str(), 1);
        const ShortTransfers transfers(most);
        std::tm local = Host::localTime(seconds);
        std::printf("%lld", static_cast<long long>(timegm(&local)) - static_cast<long long>(seconds));
        return 0;
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardError;
    return std::stoll(outcome.standardOutput);
}

const Block s_block{{{1000, 1}, {2000, 2}, {3000, 1}}, {s_hour, -2 * s_hour, 3 * s_hour}};

TEST(ZoneFile, EachChangeHoldsUntilTheNextOne)
{
    const std::string file = zone(s_block, "");
    EXPECT_EQ(offsetBy(file, -5'000'000'000), s_hour); // the first offset, before the first change
    EXPECT_EQ(offsetBy(file, 999), s_hour);
    EXPECT_EQ(offsetBy(file, 1000), -2 * s_hour);
    EXPECT_EQ(offsetBy(file, 1999), -2 * s_hour);
    EXPECT_EQ(offsetBy(file, 2000), 3 * s_hour);
    EXPECT_EQ(offsetBy(file, 2999), 3 * s_hour);
}

TEST(ZoneFile, TheRuleHoldsFromTheLastChangeOn)
{
    const std::string file = zone(s_block, "AAA-5");
    EXPECT_EQ(offsetBy(file, 2999), 3 * s_hour);
    EXPECT_EQ(offsetBy(file, 3000), 5 * s_hour);
    EXPECT_EQ(offsetBy(file, 5'000'000'000), 5 * s_hour);
    EXPECT_EQ(offsetBy(zone({{}, {s_hour}}, "AAA-5"), -1), 5 * s_hour); // no change at all
}

TEST(ZoneFile, WithoutARuleTheLastChangeHolds)
{
    for (const char* rule : {"", "no rule", "AA1"})
        EXPECT_EQ(offsetBy(zone(s_block, rule), 4000), -2 * s_hour) << rule;
    const std::string file = zone(s_block, "");
    EXPECT_EQ(offsetBy(file.substr(0, file.size() - 2), 4000), -2 * s_hour); // no line feeds either
}

TEST(ZoneFile, TimesAndOffsetsMayBeNegative)
{
    const Block block{{{-6'000'000'000, 0}, {-1000, 1}}, {-s_hour, 2 * s_hour}};
    EXPECT_EQ(offsetBy(zone(block, ""), -1001), -s_hour);
    EXPECT_EQ(offsetBy(zone(block, ""), -1000), 2 * s_hour);
    EXPECT_EQ(offsetBy(Block{{{-1000, 1}}, {-s_hour, 2 * s_hour}}.bytes('\0', 4), -1001), -s_hour);
    EXPECT_EQ(offsetBy(Block{{{-1000, 1}}, {-s_hour, 2 * s_hour}}.bytes('\0', 4), -1000), 2 * s_hour);
}

TEST(ZoneFile, AFileOfTheFirstVersionHasOneBlockAndNoRule)
{
    const std::string file = s_block.bytes('\0', 4) + "\nAAA-5\n";
    EXPECT_EQ(offsetBy(file, 999), s_hour);
    EXPECT_EQ(offsetBy(file, 2500), 3 * s_hour);
    EXPECT_EQ(offsetBy(file, 4000), -2 * s_hour);
}

TEST(ZoneFile, AFileThatIsCutIsUtc)
{
    const std::string first = s_block.bytes('\0', 4);
    EXPECT_EQ(offsetBy(first, 2500), 3 * s_hour);
    EXPECT_EQ(offsetBy(first.substr(0, first.size() - 1), 2500), 0);
    const std::string second = s_block.bytes('2', 4) + s_block.bytes('2', 8);
    EXPECT_EQ(offsetBy(second, 2500), 3 * s_hour);
    EXPECT_EQ(offsetBy(second.substr(0, second.size() - 1), 2500), 0);
    EXPECT_EQ(offsetBy(s_block.bytes('2', 4), 2500), 0);
}

TEST(ZoneFile, AFileWithoutItsMarkOrWithoutOffsetsIsUtc)
{
    std::string unmarked = zone(s_block, "AAA-5");
    unmarked[3] = 'g';
    EXPECT_EQ(offsetBy(unmarked, 2500), 0);
    std::string secondUnmarked = zone(s_block, "AAA-5");
    secondUnmarked[secondUnmarked.rfind("TZif")] = 'X';
    EXPECT_EQ(offsetBy(secondUnmarked, 2500), 0);
    EXPECT_EQ(offsetBy(zone({{}, {}}, "AAA-5"), 2500), 0);
}

TEST(ZoneFile, AnOffsetThatIsNotThereIsUtc)
{
    EXPECT_EQ(offsetBy(zone({{{1000, 1}, {2000, 0}}, {s_hour}}, ""), 1500), 0);
    EXPECT_EQ(offsetBy(zone({{{1000, 1}, {2000, 0}}, {s_hour}}, ""), 2500), s_hour);
}

TEST(ZoneFile, AFileLargerThanAnyZoneIsUtc)
{
    std::string file = zone(s_block, "AAA-5");
    file.resize(256UL * 1024, ' ');
    EXPECT_EQ(offsetBy(file, 4000), 5 * s_hour);
    EXPECT_EQ(offsetBy(file + ' ', 4000), 0);
}

TEST(ZoneFile, AFileThatIsReadInPartIsUtc)
{
    const std::string file = s_block.bytes('\0', 4);
    const auto size = static_cast<long>(file.size());
    EXPECT_EQ(offsetBy(file, 2500, size), 3 * s_hour);
    EXPECT_EQ(offsetBy(file, 2500, size - 1), 0);
}

TEST(ZoneFile, IsClosedAgain)
{
    const Outcome outcome = runInChild([] {
        const TemporaryFolder folder;
        writeFile(folder.path() / "zone", zone(s_block, "AAA-5"));
        setenv("TZ", (folder.path() / "zone").c_str(), 1);
        const int next = nextDescriptor();
        return Host::localTime(4000).tm_hour == 6 && nextDescriptor() == next ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST(ZoneFile, ATerminalDoesNotBecomeTheControllingOne)
{
    const Outcome outcome = runInChild([] {
        setsid(); // without a controlling terminal
        const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
        if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0)
            return 77;
        setenv("TZ", ptsname(terminal), 1);
        const std::tm time = Host::localTime(0);
        return time.tm_hour == 0 && open("/dev/tty", O_RDWR) < 0 ? 0 : 1;
    });
    if (outcome.status == 77)
        GTEST_SKIP() << "there are no terminals here";
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
} // namespace ZSpace::Testing
