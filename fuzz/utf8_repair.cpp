// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Repairs arbitrary bytes. The result must be UTF-8, and what was UTF-8 must not change.

#include "ZSpace/platform/foundation/Utf8Foundation.h"
#include "fuzz/FuzzText.h"

#include <algorithm>
#include <string>

namespace {

/// An independent decoder, which computes each code point.
bool isUtf8(const std::string& bytes)
{
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i++]);
        const int rest = lead < 0x80 ? 0
            : lead >> 5 == 6         ? 1
            : lead >> 4 == 14        ? 2
            : lead >> 3 == 30        ? 3
                                     : -1;
        if (rest < 0)
            return false;
        char32_t c = rest == 0 ? lead : lead & (0x3FU >> rest);
        for (int k = 0; k < rest; ++k) {
            const auto next = static_cast<unsigned char>(i < bytes.size() ? bytes[i++] : 0);
            if (next >> 6 != 2)
                return false;
            c = c << 6 | (next & 0x3F);
        }
        constexpr char32_t s_first[]{0, 0x80, 0x800, 0x10000};
        if (c < s_first[rest] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))
            return false;
    }
    return true;
}

long asciiCount(const std::string& bytes)
{
    return std::count_if(
        bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using ZSpaceFuzz::require;
    const std::string bytes(
        std::string(reinterpret_cast<const char*>(data), size).c_str()); // up to the first zero
    const std::string repaired = ZSpace::Host::repairedUtf8(bytes.c_str());
    require(isUtf8(repaired), "the result is UTF-8");
    require(isUtf8(bytes) == (repaired == bytes), "UTF-8 stays as it is");
    require(ZSpace::Host::repairedUtf8(repaired.c_str()) == repaired, "there is nothing more to repair");
    require(asciiCount(repaired) == asciiCount(bytes), "ASCII stays");
    return 0;
}
