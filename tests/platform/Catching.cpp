// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/platform/Catching.h"

#include <stdexcept>

namespace ZSpace::Testing {

NS::Exception thrownBy(const std::function<void()>& work)
{
    try {
        work();
    } catch (const NS::Exception& exception) {
        return exception;
    }
    return NS::Exception::adopt(nullptr);
}

bool throwsRuntimeError(const std::function<void()>& work)
{
    try {
        work();
    } catch (const std::runtime_error&) {
        return true;
    }
    return false;
}

} // namespace ZSpace::Testing
