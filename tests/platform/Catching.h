// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"

#include <functional>

namespace ZSpace::Testing {

/// What `work` throws; nil if it throws nothing. Not inline, since a C++ `catch` does not work in an
/// Objective-C++ file.
NS::Exception thrownBy(const std::function<void()>& work);

/// Whether `work` throws a `std::runtime_error`.
bool throwsRuntimeError(const std::function<void()>& work);

} // namespace ZSpace::Testing
