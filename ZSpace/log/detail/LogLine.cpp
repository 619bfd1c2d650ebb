// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/LogLine.h"

#include "ZSpace/platform/ThreadNumber.h"
#include "ZSpace/value/ZTime.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <ctime>

namespace ZSpace::detail {

namespace {

// "\n2026-03-04T05:06:07.089 Thread[1a03]:" by its places.
constexpr long s_time = 1;
constexpr long s_timeLength = 19; // without milliseconds
constexpr long s_milliseconds = s_time + s_timeLength + 1;
constexpr long s_thread = s_milliseconds + 3 + 1;
constexpr long s_room = s_thread + 7 + 8 + 2; // of "Thread[", 32 bits and "]:"

/// The beginning of a thread's lines, and what it was made for.
struct Prefix {
    char text[s_room] = "\n";
    long length = 0; // with the colon; 0 before the first use
    unsigned int thread = 0;
    time_t second = 0;
};
thread_local constinit Prefix t_prefix;

void writeThread(Prefix& prefix, unsigned int thread) noexcept
{
    char* to = prefix.text + s_thread;
    to = std::copy_n("Thread[", 7, to);
    to = std::to_chars(to, prefix.text + s_room, thread, 16).ptr;
    *to++ = ']';
    *to++ = ':';
    prefix.length = to - prefix.text;
    prefix.thread = thread;
}

void writeSecond(Prefix& prefix, time_t second) noexcept
{
    const ZTime time(static_cast<unsigned int>(second));
    char text[ZTime::s_textCapacity];
    time.writeText(text);
    std::memcpy(prefix.text + s_time, text, s_timeLength);
    prefix.text[s_milliseconds - 1] = '.';
    prefix.text[s_thread - 1] = ' ';
    prefix.second = second;
}

Prefix& prefixOfThread() noexcept
{
    Prefix& prefix = t_prefix;
    const unsigned int thread = Host::threadNumber(); // a forked child has another one
    if (prefix.thread != thread)
        writeThread(prefix, thread);
    return prefix;
}

} // namespace

ZStrToken<char> threadId() noexcept
{
    const Prefix& prefix = prefixOfThread();
    return {prefix.text + s_thread, prefix.length - s_thread - 1};
}

ZStrToken<char> linePrefix() noexcept
{
    Prefix& prefix = prefixOfThread();
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (prefix.second != now.tv_sec)
        writeSecond(prefix, now.tv_sec);
    const auto milliseconds = static_cast<unsigned int>(now.tv_nsec / 1'000'000);
    char* const to = prefix.text + s_milliseconds;
    to[0] = static_cast<char>('0' + milliseconds / 100);
    to[1] = static_cast<char>('0' + milliseconds / 10 % 10);
    to[2] = static_cast<char>('0' + milliseconds % 10);
    return {prefix.text, prefix.length};
}

void LogLine::append(const ZLogRecord::Item& item) noexcept
{
    if (item->Type() == ZTypeId_cstring)
        return append(ZStrToken<char>(*static_cast<const char* const*>(item->Content())));
    if (item->Type() == ZTypeId_string)
        return append(ZStrToken<char>(*static_cast<const ZGStr<char>*>(item->Content())));
    m_printed.remove(0);
    item->appendTo(m_printed);
    append(ZStrToken<char>(m_printed));
}

void LogLine::appendLong(const ZStrToken<char>& text) noexcept
{
    if (m_long.isEmpty())
        m_long.append(m_short, m_length);
    m_long.append(text);
}

} // namespace ZSpace::detail
