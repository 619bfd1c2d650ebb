// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/foundation/RaisingFoundation.h"

#include <cstdlib>

namespace ZSpace::NS {

void Exception::raise(const String& name, const String& reason)
{
    detail::raising(
        [&] { [[NSException exceptionWithName:name.native() reason:reason.native() userInfo:nil] raise]; });
    std::abort(); // `raise` does not return
}

String Exception::name() const
{
    return String::adopt(detail::raising([&] { return detail::retained([native() name]); }));
}

String Exception::reason() const
{
    return String::adopt(detail::raising([&] { return detail::retained([native() reason]); }));
}

Object Exception::userInfo() const
{
    return Object::adopt(detail::raising([&] { return detail::retained<NSObject>([native() userInfo]); }));
}

Array Exception::callStackSymbols() const
{
    return Array::adopt(detail::raising([&] { return detail::retained([native() callStackSymbols]); }));
}

Array Thread::callStackSymbols()
{
    return Array::adopt(detail::raising([] { return detail::retained([NSThread callStackSymbols]); }));
}

} // namespace ZSpace::NS
