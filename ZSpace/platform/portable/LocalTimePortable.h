// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <ctime>

namespace ZSpace::Host {

/// The local date and time at `seconds` since 1970, in the zone that the variable TZ names. Like
/// `localtime_r`, with one difference: TZ comes from whoever starts the process and may name any file, and
/// `localtime_r` waits for the other end of a fifo. This function reads regular files only. UTC if the zone
/// is unknown. Sets the fields from `tm_sec` to `tm_year` only.
std::tm localTime(std::time_t seconds);

} // namespace ZSpace::Host
