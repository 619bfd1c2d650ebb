// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZThreadLock.h"
#include "ZSpace/string/ZGStr.h"

namespace ZSpace {

/// What streams take for transactions unless told otherwise: spans that guard nothing and cost nothing.
using ZStreamTransaction = TZThreadSafeTransaction<ZThreadPseudoLock_T<pthread_mutex_t>>;

/// The part that both halves of a stream share: where it stands, how long it is, closing it.
///
/// No stream takes a lock: two threads may use one stream only where their owner keeps them apart. Nothing
/// throws; results are -1 where no file is open, and else what the C library says.
template <typename TX = ZStreamTransaction>
class ZStreamBase : public TX {
public:
    // The order of the virtual operations is part of the interface, here and in all classes above.

    ZStreamBase(const ZStreamBase&) = delete; // a stream is one place in one file
    ZStreamBase& operator=(const ZStreamBase&) = delete;
    virtual ~ZStreamBase() = default;

    /// The bytes of an item; all counts and positions are items.
    [[nodiscard]] virtual unsigned long long ItemSize() = 0;
    virtual long long Size() = 0;
    /// Whether the position is the beginning.
    [[nodiscard]] virtual bool BOS() = 0;
    /// Whether a read has run into the end; being at the end is not enough.
    [[nodiscard]] virtual bool EOS() = 0;
    [[nodiscard]] virtual long long Position() = 0;
    /// Moving gives 0, or what the C library says.
    virtual int moveBegin() = 0;
    virtual int moveEnd() = 0;
    virtual int moveTo(long long position) = 0;
    virtual int move(long long offset) = 0;
    /// 0 while closed; else 2 if it can be read, plus 4 if it can be written.
    [[nodiscard]] virtual int State() const = 0;
    virtual int close() = 0;
    /// Mark a span of operations that belong together.
    virtual void beginTransaction() { TX::beginTransaction(); }
    virtual void endTransaction() { TX::endTransaction(); }

protected:
    ZStreamBase() = default;

private:
    // With room of its own this part never merges with one of the classes above: what they override then has
    // its place in their own tables, in the order in which they declare it.
    [[maybe_unused]] char m_room = 0;
};

/// The half that is read.
template <typename T = char, typename TX = ZStreamTransaction>
class ZInStream : public virtual ZStreamBase<TX> {
public:
    /// Reads at most `count` items; `got` is how many they were.
    /// @return 0, or a status of the stream's own kind.
    virtual int read(T* buffer, long count, long& got) = 0;
    /// The same.
    /// @return the number of items, -1 when the status was not 0.
    virtual long read(T* buffer, long count);
};

/// The half that is written.
template <typename T = char, typename TX = ZStreamTransaction>
class ZOutStream : public virtual ZStreamBase<TX> {
public:
    /// Writes `count` items; `written` is how many they were.
    /// @return 0, or a status of the stream's own kind.
    virtual int write(T const* data, long count, long& written) = 0;
    /// The same; a negative `count` is the length of the text at `data`, for which null is the empty text.
    /// @return the number of items, -1 when the status was not 0.
    virtual long write(T const* data, long count);
};

/// Both halves, on one shared base.
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
