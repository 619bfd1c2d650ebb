// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"
#include "ZSpace/platform/foundation/OwnershipFoundation.h"

#include <type_traits>

/// Converts Foundation's exceptions to C++: every Foundation call that may raise goes through here.
///
/// Objective-C++ files throw C++ exceptions and let them pass, which runs destructors, but contain no C++ `catch`: with
/// gcc's runtime it catches nothing there.
namespace ZSpace::NS::detail {

/// Runs `work`.
/// @return the exception that it raised, retained for the caller; nil if it raised none. Anything but an `NSException`
/// propagates.
template <typename Work>
NSException* raisedBy(Work&& work)
{
    NSException* raised = nil;
    @try {
        work();
    } @catch (NSException* exception) {
        raised = retained(exception);
    }
    return raised;
}

/// Runs `work` in a pool of its own and throws what it raises as an `NS::Exception`. An object that `work` returns must
/// be retained for the caller.
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
