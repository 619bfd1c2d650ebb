// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/ThreadFaults.h"

#include <pthread.h>

namespace ZSpace::Testing {

namespace {

/// Sets the default stack size of threads.
/// @return the previous size, or 0 on hosts where it cannot be changed.
template <typename Attributes>
std::size_t exchangeDefaultStackSize(std::size_t size)
{
    std::size_t before = 0;
    if constexpr (requires(Attributes * attributes) { pthread_setattr_default_np(attributes); }) {
        Attributes attributes;
        pthread_getattr_default_np(&attributes);
        pthread_attr_getstacksize(&attributes, &before);
        pthread_attr_setstacksize(&attributes, size);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }
    return before;
}

constexpr std::size_t s_beyondAddressSpace = std::size_t(1) << 47;

} // namespace

bool ThreadFault::isPossible()
{
    return ThreadFault().m_defaultStackSize != 0;
}

ThreadFault::ThreadFault()
    : m_defaultStackSize(exchangeDefaultStackSize<pthread_attr_t>(s_beyondAddressSpace))
{
}

ThreadFault::~ThreadFault()
{
    exchangeDefaultStackSize<pthread_attr_t>(m_defaultStackSize);
}

} // namespace ZSpace::Testing
