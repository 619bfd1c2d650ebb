// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#import <Foundation/Foundation.h>

/// Manual reference counting of Foundation objects.
///
/// The handles of `ZSpace/platform/Foundation.h` own every object that outlives an operation, so ARC has nothing to do
/// here, and gcc's runtime, which GNUstep uses, has no ARC. These files are therefore built without it. With it they
/// are correct as well, for a program that is built with ARC throughout: only this header depends on it.
namespace ZSpace::NS::detail {

#if __has_feature(objc_arc)

inline void retainNative(id object)
{
    [[maybe_unused]] void* const counted = (__bridge_retained void*)object;
}

inline void releaseNative(id object)
{
    [[maybe_unused]] const id released = (__bridge_transfer id)(__bridge void*)object;
}

/// Returns `made` with the reference of its `alloc`, for a handle to adopt.
template <typename Native>
Native* leaked(Native* made)
{
    retainNative(made); // ARC releases the reference of `alloc`
    return made;
}

/// Leaves the reference of `made`'s `alloc` to the current pool.
template <typename Native>
Native* autoreleased(Native* made)
{
    Native* __autoreleasing const left = made;
    return left;
}

#else

inline void retainNative(id object)
{
    [object retain];
}

inline void releaseNative(id object)
{
    [object release];
}

/// Returns `made` with the reference of its `alloc`, for a handle to adopt.
template <typename Native>
Native* leaked(Native* made)
{
    return made;
}

/// Leaves the reference of `made`'s `alloc` to the current pool.
template <typename Native>
Native* autoreleased(Native* made)
{
    return [made autorelease];
}

#endif

/// Retains an object that others own, for a handle to adopt.
template <typename Native>
Native* retained(Native* object)
{
    retainNative(object);
    return object;
}

} // namespace ZSpace::NS::detail
