// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// Forward declarations of the host's object types, for pointers in any header, including C headers.
///
/// On a host with Foundation these are Foundation's own classes; elsewhere `platform/portable/` defines
/// counterparts. Code outside `platform/` uses them only through the handles of
/// `ZSpace/platform/Foundation.h`.

#ifdef __OBJC__
#ifdef ZSPACE_ON_PORTABLE // set by an installed library's package
#error "ZSpace was built without Foundation: its NSString differs. Use ZSPACE_PLATFORM=foundation"
#endif
@class NSArray;
@class NSException;
@class NSFileHandle;
@class NSMutableString;
@class NSObject;
@class NSString;
@class NSTask;

/// Marks a pointer to a reference-counted object that ARC must not manage.
#define ZSPACE_COUNTED_BY_HAND __unsafe_unretained
#else
// NOLINTBEGIN(modernize-use-using): also compiled as C
typedef struct NSArray NSArray;
/// An exception.
typedef struct NSException NSException;
/// An open file.
typedef struct NSFileHandle NSFileHandle;
/// A string that can be changed.
typedef struct NSMutableString NSMutableString;
/// The root class.
typedef struct NSObject NSObject;
/// A string.
typedef struct NSString NSString;
/// A child process.
typedef struct NSTask NSTask;
// NOLINTEND(modernize-use-using)

#define ZSPACE_COUNTED_BY_HAND
#endif
