// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// The version of the library, for the preprocessor and for code. Plain C may include this header.
///
///     static_assert(ZSPACE_VERSION_MAJOR == 2);
///     std::puts(ZSpace::VersionString);
///
/// The numbers are those of `project()` in CMakeLists.txt; configuring fails when the two differ.

/// Incremented by incompatible changes.
#define ZSPACE_VERSION_MAJOR 2
/// Incremented by compatible additions.
#define ZSPACE_VERSION_MINOR 0
/// Incremented by releases that only fix bugs.
#define ZSPACE_VERSION_PATCH 0
/// All three, with periods between them.
#define ZSPACE_VERSION_STRING "2.0.0"

#ifdef __cplusplus
namespace ZSpace {

/// ZSPACE_VERSION_MAJOR.
inline constexpr int VersionMajor = ZSPACE_VERSION_MAJOR;
/// ZSPACE_VERSION_MINOR.
inline constexpr int VersionMinor = ZSPACE_VERSION_MINOR;
/// ZSPACE_VERSION_PATCH.
inline constexpr int VersionPatch = ZSPACE_VERSION_PATCH;
/// ZSPACE_VERSION_STRING.
inline constexpr const char* VersionString = ZSPACE_VERSION_STRING;

} // namespace ZSpace
#endif
