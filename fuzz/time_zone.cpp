// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Local times in arbitrary zones: the input is the rule in TZ, and the content of the file that TZ names.

#include "ZSpace/platform/portable/LocalTimePortable.h"
#include "fuzz/FuzzDirectory.h"
#include "fuzz/FuzzText.h"

#include <cstdlib>
#include <fstream>

namespace {

using ZSpaceFuzz::require;

const ZSpaceFuzz::PrivateDirectory s_directory;

/// Every offset is below a week, and every field within its range.
void checkTimes()
{
    for (const std::time_t seconds :
        {std::time_t{0}, std::time_t{-1}, std::time_t{1'767'225'599}, std::time_t{1'782'864'000},
            std::time_t{2'147'483'648}, std::time_t{-62'000'000'000}, std::time_t{250'000'000'000}}) {
        std::tm fields = ZSpace::Host::localTime(seconds);
        require(fields.tm_mon >= 0 && fields.tm_mon < 12 && fields.tm_mday >= 1 && fields.tm_mday <= 31,
            "the date");
        require(fields.tm_hour >= 0 && fields.tm_hour < 24 && fields.tm_min >= 0 && fields.tm_min < 60
                && fields.tm_sec >= 0 && fields.tm_sec < 60,
            "the time");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    setenv("TZDIR", "/nonexistent", 1); // no files of the host
    std::string rule = bytes.c_str();
    rule.erase(0, rule.find_first_not_of(":/"));
    setenv("TZ", rule.c_str(), 1);
    checkTimes();

    const std::string file = s_directory / "zone";
    std::ofstream(file, std::ios::binary) << bytes;
    setenv("TZ", (':' + file).c_str(), 1);
    checkTimes();
    return 0;
}
