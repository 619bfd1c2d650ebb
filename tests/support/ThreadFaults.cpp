// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/ThreadFaults.h"

#include <pthread.h>

namespace ZSpaceTest {

namespace {

void setStackSize(std::size_t size)
{
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    pthread_attr_setstacksize(&attributes, size);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
}

std::size_t stackSize()
{
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    std::size_t size = 0;
    pthread_attr_getstacksize(&attributes, &size);
    pthread_attr_destroy(&attributes);
    return size;
}

} // namespace

ThreadFault::ThreadFault()
    : m_usualStackSize(stackSize())
{
    setStackSize(std::size_t(1) << 47);
}

ThreadFault::~ThreadFault()
{
    setStackSize(m_usualStackSize);
}

} // namespace ZSpaceTest
