// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <ctime>

namespace ZSpace::Host {

/// The local date and time at `seconds` since 1970, in the zone that the variable TZ names. Like
/// `localtime_r`, but reads regular files only: TZ is set by whoever starts the process and may name a fifo,
/// on which `localtime_r` would block. UTC if the zone is unknown. Sets the fields from `tm_sec` to `tm_year`
/// only.
std::tm localTime(std::time_t seconds);

} // namespace ZSpace::Host
