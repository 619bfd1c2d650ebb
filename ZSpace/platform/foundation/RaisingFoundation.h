// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"
#include "ZSpace/platform/foundation/OwnershipFoundation.h"

#include <type_traits>

/// The border between Foundation's exceptions and C++: Foundation calls that may raise go through here.
///
/// C++ exceptions are thrown in these files and pass through them, and run the destructors on their way, but
/// none is caught in them: with gcc's runtime a C++ `catch` in an Objective-C++ file catches nothing.
namespace ZSpace::NS::detail {

/// Does `work`.
/// @return what it raised, counted for the caller; nil when it raised nothing. Anything but an `NSException`
/// passes through.
template <typename Work>
NSException* raisedBy(Work&& work)
{
    NSException* raised = nil;
    @try {
        work();
    } @catch (NSException* exception) {
        raised = shared(exception);
    }
    return raised;
}

/// Does `work` in a pool of its own, and throws what it raises as an `NS::Exception`. An object that `work`
/// returns must be counted for the caller.
template <typename Work>
auto raising(Work&& work)
{
    using Result = std::invoke_result_t<Work>;
    if constexpr (std::is_void_v<Result>) {
        const AutoreleasePool pool;
        if (NSException* const raised = raisedBy(work))
            throw Exception::adopt(raised);
    } else {
        Result result{};
        raising([&] { result = work(); });
        return result;
    }
}

} // namespace ZSpace::NS::detail
