// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/LogLine.h"

#include "ZSpace/platform/ThreadNumber.h"
#include "ZSpace/string/detail/StrDigits.h"
#include "ZSpace/value/TZBinary.h"
#include "ZSpace/value/ZTime.h"

#include <algorithm>
#include <ctime>

namespace ZSpace::detail {

namespace {

// The offsets of "2026-03-04T05:06:07.089 Thread[1a03]:".
constexpr long s_secondLength = 19; // the time without its milliseconds
constexpr long s_milliseconds = s_secondLength + 1;
constexpr long s_thread = s_milliseconds + 3 + 1;
constexpr long s_prefixCapacity = s_thread + 7 + 8 + 2; // "Thread[", 32 bits and "]:"

/// The beginning of one thread's lines, and the second and thread that it was formatted for.
struct Prefix {
    char text[s_prefixCapacity] = {};
    long length = 0; // with the colon
    unsigned int thread = 0;
    time_t second = 0;
    bool hasThread = false; // any number, including 0, may be a thread's
    bool hasSecond = false; // any second, including 0, may be the clock's
};
thread_local constinit Prefix t_prefix;

char* writeHex(char* to, unsigned int number) noexcept
{
    int shift = 28;
    while (shift > 0 && number >> shift == 0)
        shift -= 4;
    for (; shift >= 0; shift -= 4)
        *to++ = "0123456789abcdef"[number >> shift & 0xF];
    return to;
}

void formatThread(Prefix& prefix, unsigned int thread) noexcept
{
    char* to = std::copy_n("Thread[", 7, prefix.text + s_thread);
    to = writeHex(to, thread);
    *to++ = ']';
    *to++ = ':';
    prefix.length = to - prefix.text;
    prefix.thread = thread;
    prefix.hasThread = true;
}

void formatSecond(Prefix& prefix, time_t second) noexcept
{
    const ZTime time(static_cast<unsigned int>(second));
    char text[ZTime::s_textCapacity];
    time.writeText(text);
    std::memcpy(prefix.text, text, s_secondLength);
    prefix.text[s_milliseconds - 1] = '.';
    prefix.text[s_thread - 1] = ' ';
    prefix.second = second;
    prefix.hasSecond = true;
}

Prefix& prefixOfThread() noexcept
{
    Prefix& prefix = t_prefix;
    const unsigned int thread = Host::threadNumber(); // changes in a forked child
    if (!prefix.hasThread || prefix.thread != thread)
        formatThread(prefix, thread);
    return prefix;
}

/// The capacity that suffices for the text form of any value, except for the kinds of variable length.
constexpr long s_printedCapacity = 64;

long printedLength(const TZValueBase<ZTypeId>& value) noexcept
{
    if (value.Type() != ZTypeId_binary)
        return s_printedCapacity;
    const auto* bytes = static_cast<const TZBinary<unsigned char>*>(value.Content());
    return static_cast<long>(2 * std::max(bytes->Length(), 0LL)) + s_printedCapacity;
}

template <typename T>
const T& contentOf(const TZValueBase<ZTypeId>& value) noexcept
{
    return *static_cast<const T*>(value.Content());
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
    if (!prefix.hasSecond || prefix.second != now.tv_sec)
        formatSecond(prefix, now.tv_sec);
    const auto milliseconds = static_cast<unsigned int>(now.tv_nsec / 1'000'000);
    char* const to = prefix.text + s_milliseconds;
    to[0] = static_cast<char>('0' + milliseconds / 100);
    to[1] = static_cast<char>('0' + milliseconds / 10 % 10);
    to[2] = static_cast<char>('0' + milliseconds % 10);
    return {prefix.text, prefix.length};
}

void LogLine::append(const ZLogRecord::Item& item)
{
    const TZValueBase<ZTypeId>& value = *item.operator->(); // aborts with a report on an empty reference
    switch (value.Type()) {
    case ZTypeId_cstring:
        return append(ZStrToken<char>(contentOf<const char*>(value)));
    case ZTypeId_string:
        return append(ZStrToken<char>(contentOf<ZGStr<char>>(value)));
    case ZTypeId_wcstring:
        return appendNarrowed(contentOf<const wchar_t*>(value));
    case ZTypeId_wstring:
        return appendNarrowed(contentOf<ZGStr<wchar_t>>(value));
    case ZTypeId_int:
        return appendInteger(contentOf<int>(value));
    case ZTypeId_unsigned_int:
        return appendInteger(contentOf<unsigned int>(value));
    case ZTypeId_long_long:
        return appendInteger(contentOf<long long>(value));
    case ZTypeId_unsigned_long_long:
        return appendInteger(contentOf<unsigned long long>(value));
    default:
        return appendPrinted(value);
    }
}

void LogLine::appendRecord(const ZLogRecord& record)
{
    append(linePrefix());
    for (const ZLogRecord::Item& item : record) {
        append('\t');
        append(item);
    }
    append('\n');
}

/// Keeps the low 8 bits of each unit and stops at the first unit where those are 0, as narrow strings do.
void LogLine::appendNarrowed(const wchar_t* characters)
{
    for (; characters && static_cast<char>(*characters); ++characters)
        append(static_cast<char>(*characters));
}

template <typename Integer>
void LogLine::appendInteger(Integer number)
{
    char digits[s_maxDecimalLength];
    append(digits, writeDecimal(digits, Decimal(number)) - digits);
}

/// Appending to a string calls `std::terminate` if allocation fails, while its construction throws. So the
/// buffer is made large enough first.
void LogLine::appendPrinted(const TZValueBase<ZTypeId>& value)
{
    const long length = printedLength(value);
    if (m_printed.Capacity() <= length)
        m_printed = ZMStr<char>(length + 1);
    m_printed.remove(0);
    value.appendTo(m_printed);
    append(ZStrToken<char>(m_printed));
}

void LogLine::grow(long count)
{
    const long capacity = std::max(2 * m_capacity, m_length + count);
    std::unique_ptr<char[]> larger(new char[static_cast<std::size_t>(capacity)]);
    std::memcpy(larger.get(), m_characters, static_cast<std::size_t>(m_length));
    m_heap = std::move(larger);
    m_characters = m_heap.get();
    m_capacity = capacity;
}

} // namespace ZSpace::detail
