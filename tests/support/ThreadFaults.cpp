// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/ThreadFaults.h"

#include <pthread.h>

namespace ZSpace::Testing {

namespace {

<<<<<<< HEAD
/// Sets the default stack size of threads.
/// @return the previous size, or 0 on hosts where it cannot be changed.
=======
/// Sets the stack size of threads that are created without attributes.
/// @return the previous one; 0 on hosts where it cannot be set.
>>>>>>> a9a694a (Describe the hosts in plain terms, and add one that provides nothing to prove the seam complete)
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

<<<<<<< HEAD
constexpr std::size_t s_beyondAddressSpace = std::size_t(1) << 47;
=======
constexpr std::size_t s_largerThanAddressSpace = std::size_t(1) << 47;
>>>>>>> a9a694a (Describe the hosts in plain terms, and add one that provides nothing to prove the seam complete)

} // namespace

bool ThreadFault::isPossible()
{
    return ThreadFault().m_defaultStackSize != 0;
}

ThreadFault::ThreadFault()
<<<<<<< HEAD
    : m_defaultStackSize(exchangeDefaultStackSize<pthread_attr_t>(s_beyondAddressSpace))
=======
    : m_defaultStackSize(exchangeDefaultStackSize<pthread_attr_t>(s_largerThanAddressSpace))
>>>>>>> a9a694a (Describe the hosts in plain terms, and add one that provides nothing to prove the seam complete)
{
}

ThreadFault::~ThreadFault()
{
    exchangeDefaultStackSize<pthread_attr_t>(m_defaultStackSize);
}

} // namespace ZSpace::Testing
