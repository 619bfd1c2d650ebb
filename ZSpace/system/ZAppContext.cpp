// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/ZAppContext.h"

#include "ZSpace/platform/Process.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

namespace ZSpace {

static_assert(sizeof(pid_t) == 4);

ZAppContext::ZAppContext()
{
    loadProcessData();
    loadThreadData();
}

ZAppContext::ZAppContext(int argc, const char* const* argv)
    : ZAppContext()
{
    initArguments(argc, argv);
}

ZAppContext::~ZAppContext() = default;

void ZAppContext::loadProcessData()
{
    m_mainThread = pthread_self();
    m_path << Host::executablePath().c_str();
    m_exitValue = 0;
}

void ZAppContext::loadThreadData() noexcept
{
    m_processId = getpid();
}

template <typename T>
void ZAppContext::addArguments(int argc, const T* const* argv)
{
    for (int i = 1; i < argc; ++i)
        m_arguments.add(ZMStr<wchar_t>(argv[i]));
}

void ZAppContext::initArguments(int argc, const char* const* argv)
{
    addArguments(argc, argv);
}

void ZAppContext::initArguments(int argc, const wchar_t* const* argv)
{
    addArguments(argc, argv);
}

ZMStr<wchar_t> ZAppContext::Arg(long index) const
{
    const long count = ArgCount();
    if (count == 0)
        return {};
    const long fromStart = index < 0 ? index + count : index;
    return m_arguments[std::clamp(fromStart, 0L, count - 1)];
}

ZGStr<wchar_t> ZAppContext::ArgW(long index) const
{
    return Arg(index);
}

bool ZAppContext::isMainThread() const noexcept
{
    return pthread_equal(pthread_self(), m_mainThread);
}

ZMStr<wchar_t> ZAppContext::getEnv(const char* name)
{
    const ZStrToken<char> value(name ? std::getenv(name) : nullptr);
    if (value.isEmpty())
        return {};
    ZMStr<wchar_t> result(value.Length() + 1); // throws if allocation fails; a conversion would terminate
    result.appendValueOf(static_cast<const char*>(value), value.Length());
    return result;
}

ZMStr<wchar_t> ZAppContext::getEnv(const wchar_t* name)
{
    return getEnv(static_cast<const char*>(ZGStr<char>(name)));
}

ZMStr<wchar_t> ZAppContext::getEnv(ZMStr<wchar_t>& name)
{
    return getEnv(static_cast<const wchar_t*>(name));
}

} // namespace ZSpace
