// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"

#include <functional>

namespace ZSpace::Testing {

/// What `work` throws; nil when it throws nothing. In a file of its own, since no C++ `catch` may stand in an
/// Objective-C++ file.
NS::Exception thrownBy(const std::function<void()>& work);

/// True when `work` throws a `std::runtime_error`.
bool throwsRuntimeError(const std::function<void()>& work);

} // namespace ZSpace::Testing
