// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZThreadLock.h"
#include "ZSpace/string/ZGStr.h"

namespace ZSpace {

/// The transaction policy of all streams by default: it takes no lock and costs nothing.
using ZStreamTransaction = TZThreadSafeTransaction<ZThreadPseudoLock_T<pthread_mutex_t>>;

/// The common base of both halves of a stream: position, size, state and closing.
///
/// Streams take no lock: threads that share one need a lock of their own, for example
/// `std::lock_guard guard(lock)` with a `ZThreadLock_T<pthread_mutex_t>` around each span of operations.
/// Nothing throws. Results are -1 when no file is open, otherwise those of the C library.
template <typename TX = ZStreamTransaction>
class ZStreamBase : public TX {
public:
    // The order of the virtual operations is part of the interface, here and in all derived classes.

    ZStreamBase(const ZStreamBase&) = delete; // a stream has one position
    ZStreamBase& operator=(const ZStreamBase&) = delete;
    virtual ~ZStreamBase() = default;

    /// The size of an item in bytes; all counts and positions are in items.
    [[nodiscard]] virtual unsigned long long ItemSize() = 0;
    /// In items.
    virtual long long Size() = 0;
    /// Whether the position is the beginning.
    [[nodiscard]] virtual bool BOS() = 0;
    /// Whether a read has reached the end; a position at the end is not enough.
    [[nodiscard]] virtual bool EOS() = 0;
    /// The position in items; -1 on failure.
    [[nodiscard]] virtual long long Position() = 0;
    /// The move operations return 0, or the C library's error result.
    virtual int moveBegin() = 0;
    /// Moves to the end.
    virtual int moveEnd() = 0;
    /// Moves to a position.
    virtual int moveTo(long long position) = 0;
    /// Moves by an offset from the position.
    virtual int move(long long offset) = 0;
    /// 0 while closed; otherwise 2 if it can be read, plus 4 if it can be written.
    [[nodiscard]] virtual int State() const = 0;
    /// Closes the stream.
    virtual int close() = 0;
    /// Mark a span of operations that belong together; locks nothing with the default policy.
    virtual void beginTransaction() { TX::beginTransaction(); }
    virtual void endTransaction() { TX::endTransaction(); }

protected:
    ZStreamBase() = default;

private:
    // Non-empty, so the ABI cannot choose it as primary base of a derived class and merge their vtables.
    [[maybe_unused]] char m_padding = 0;
};

/// The input half of a stream.
template <typename T = char, typename TX = ZStreamTransaction>
class ZInStream : public virtual ZStreamBase<TX> {
public:
    /// Reads at most `count` items and sets `got` to their number.
    /// @return 0, or a status that the stream defines.
    virtual int read(T* buffer, long count, long& got) = 0;
    /// Reads at most `count` items.
    /// @return the number of items read, or -1 if the three-argument form fails.
    virtual long read(T* buffer, long count);
};

/// The output half of a stream.
template <typename T = char, typename TX = ZStreamTransaction>
class ZOutStream : public virtual ZStreamBase<TX> {
public:
    /// Writes `count` items and sets `written` to the number of items written.
    /// @return 0, or a status that the stream defines.
    virtual int write(T const* data, long count, long& written) = 0;
    /// Writes `count` items; a negative `count` means the length of the null-terminated string `data` (0 for
    /// null).
    /// @return the number of items written, or -1 if the three-argument form fails.
    virtual long write(T const* data, long count);
};

/// Both halves on one shared base.
///
///     void addLine(ZStream<>& stream, const char* line)
///     {
///         stream.moveEnd();
///         stream.write(line, -1);
///         stream.write("\n", 1);
///     }
template <typename T = char, typename TX = ZStreamTransaction>
class ZStream : public virtual ZInStream<T, TX>, public virtual ZOutStream<T, TX> {
public:
    /// The size of an item in bytes.
    [[nodiscard]] unsigned long long ItemSize() override { return sizeof(T); }
};

template <typename T, typename TX>
long ZInStream<T, TX>::read(T* buffer, long count)
{
    long got = 0;
    return read(buffer, count, got) == 0 ? got : -1;
}

template <typename T, typename TX>
long ZOutStream<T, TX>::write(T const* data, long count)
{
    long written = 0;
    return write(data, count < 0 ? ZGStr<T>::length(data) : count, written) == 0 ? written : -1;
}

extern template class ZStreamBase<ZStreamTransaction>;
extern template class ZInStream<char, ZStreamTransaction>;
extern template class ZOutStream<char, ZStreamTransaction>;
extern template class ZStream<char, ZStreamTransaction>;

} // namespace ZSpace
