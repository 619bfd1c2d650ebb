// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/value/MktimeFault.h"

#include <cerrno>
#include <ctime>
#include <dlfcn.h>

namespace ZSpace::Testing {

namespace {

bool s_isActive = false;
bool s_hasStruck = false;

} // namespace

MktimeFault::MktimeFault() noexcept
{
    s_isActive = true;
    s_hasStruck = false;
}

MktimeFault::~MktimeFault()
{
    s_isActive = false;
}

bool MktimeFault::hasStruck() noexcept
{
    return s_hasStruck;
}

} // namespace ZSpace::Testing

extern "C" std::time_t mktime(std::tm* record)
{
    using namespace ZSpace::Testing;
    if (s_isActive && record->tm_year < 0) {
        s_hasStruck = true;
        errno = EOVERFLOW;
        return -1;
    }
    using Function = std::time_t (*)(std::tm*);
    static const auto s_mktime = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "mktime"));
    return s_mktime(record);
}
