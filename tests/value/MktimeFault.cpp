// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/value/MktimeFault.h"

#include <cerrno>
#include <climits>
#include <ctime>
#include <dlfcn.h>

namespace ZSpace::Testing {

namespace {

int s_firstYear = INT_MIN;
bool s_hasStruck = false;

} // namespace

MktimeFault::MktimeFault(int firstYear) noexcept
{
    s_firstYear = firstYear;
    s_hasStruck = false;
}

MktimeFault::~MktimeFault()
{
    s_firstYear = INT_MIN;
}

bool MktimeFault::hasStruck() noexcept
{
    return s_hasStruck;
}

} // namespace ZSpace::Testing

extern "C" std::time_t mktime(std::tm* record)
{
    using namespace ZSpace::Testing;
    if (record->tm_year + 1900LL < s_firstYear) {
        s_hasStruck = true;
        errno = EOVERFLOW;
        return -1;
    }
    using Function = std::time_t (*)(std::tm*);
    static const auto s_mktime = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "mktime"));
    return s_mktime(record);
}
