// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace ZSpace::Host {

/// `text` with each character that is no UTF-8 replaced by U+FFFD, since Foundation takes no other text. A
/// byte that no character begins with, and one that begins a character of which the rest is missing or wrong,
/// is replaced together with the continuation bytes behind it. "a\xC3" gives "a\uFFFD", "\xE2\x82!" gives
/// "\uFFFD!".
std::string repairedUtf8(const char* text);

} // namespace ZSpace::Host
