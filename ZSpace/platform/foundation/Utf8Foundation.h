// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace ZSpace::Host {

/// Returns `bytes` with U+FFFD for everything that is not UTF-8, since Foundation accepts nothing else. A byte that
/// cannot begin a character, or begins one whose rest is missing or wrong, is replaced together with the continuation
/// bytes after it: "a\xC3" becomes "a\uFFFD", "\xE2\x82!" becomes "\uFFFD!".
std::string repairedUtf8(const char* bytes);

} // namespace ZSpace::Host
