// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/ThreadFaults.h"

#include <pthread.h>

namespace ZSpace::Testing {

namespace {

/// Sets the stack size of threads that are made without attributes.
/// @return what it was before, 0 on hosts where it cannot be set.
template <typename Attributes>
std::size_t exchangeUsualStackSize(std::size_t size)
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

constexpr std::size_t s_beyondAllRoom = std::size_t(1) << 47;

} // namespace

bool ThreadFault::isPossible()
{
    return ThreadFault().m_usualStackSize != 0;
}

ThreadFault::ThreadFault()
    : m_usualStackSize(exchangeUsualStackSize<pthread_attr_t>(s_beyondAllRoom))
{
}

ThreadFault::~ThreadFault()
{
    exchangeUsualStackSize<pthread_attr_t>(m_usualStackSize);
}

} // namespace ZSpace::Testing
