// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// Marks functions whose result points into their object, and parameters that a result views: clang then warns if the
/// result outlives a temporary.
#if defined(__clang__) && __has_cpp_attribute(clang::lifetimebound)
#define ZSPACE_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#define ZSPACE_LIFETIMEBOUND
#endif
