// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#import <Foundation/Foundation.h>

/// Counts of Foundation objects, kept by hand.
///
/// The handles of `ZSpace/platform/Foundation.h` own every object that outlives an operation, so there is
/// nothing that ARC could do here, and the runtime of gcc, on which GNUstep stands, has no ARC. These files
/// are therefore built without it. They are right with it as well, should a program be built with it
/// throughout: this header is the only one that knows the difference.
namespace ZSpace::NS::detail {

#if __has_feature(objc_arc)

inline void countUp(id object)
{
    [[maybe_unused]] void* const counted = (__bridge_retained void*)object;
}

inline void countDown(id object)
{
    [[maybe_unused]] const id dropped = (__bridge_transfer id)(__bridge void*)object;
}

/// Hands out the count that `alloc` gave, for a handle to adopt.
template <typename Native>
Native* handedOut(Native* made)
{
    countUp(made); // the one from `alloc` is dropped by the compiler
    return made;
}

#else

inline void countUp(id object)
{
    [object retain];
}

inline void countDown(id object)
{
    [object release];
}

/// Hands out the count that `alloc` gave, for a handle to adopt.
template <typename Native>
Native* handedOut(Native* made)
{
    return made;
}

#endif

/// Takes a count of an object that others own, for a handle to adopt.
template <typename Native>
Native* shared(Native* object)
{
    countUp(object);
    return object;
}

} // namespace ZSpace::NS::detail
