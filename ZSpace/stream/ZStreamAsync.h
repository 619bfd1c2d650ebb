// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/ZDelegate.h"
#include "ZSpace/core/ZInvokable.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZThread.h"
#include "ZSpace/stream/ZStream.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// A stream with operations that run in the background and report to a callback.
///
///     using Stream = ZStreamAsync<>;
///     auto show = zMakeDelegate<Stream::ReadCallback>(
///         [](Stream*, int status, long, char const* buffer, long got) { ... });
///     if (stream.readAsync(show.get(), 4096))
///         show.release(); // the worker thread now owns it
///
/// Each request returns whether it was started; a refused one changes neither callback nor stream. One read
/// and one write may be outstanding at the same time; do not use the stream in other ways until the callback
/// has returned.
template <typename T = char, typename TX = ZStreamTransaction>
class ZStreamAsync : public ZStream<T, TX> {
public:
    /// The data to write; shared, so that it lives until the write is done.
    using DataRef = ZRef<ZArray<T, ZAllocation<T>>, TZRefCounter<int>>;

    // The first argument of every callback is the stream.
    /// Receives a size or a position.
    using NumberCallback = ZDelegate2<void, ZStreamAsync*, long long>;
    /// Receives a yes or no.
    using FlagCallback = ZDelegate2<void, ZStreamAsync*, bool>;
    /// Receives a status.
    using StatusCallback = ZDelegate2<void, ZStreamAsync*, int>;
    /// Status, and the requested position or offset.
    using MoveCallback = ZDelegate3<void, ZStreamAsync*, int, long long>;
    /// Status, requested count, buffer (valid only during the call) and number of items in it.
    using ReadCallback = ZDelegate5<void, ZStreamAsync*, int, long, T const*, long>;
    /// Status, data and number of items written.
    using WriteCallback = ZDelegate4<void, ZStreamAsync*, int, DataRef, long>;

    /// A new stream of the same kind, or null if it cannot be cloned. The caller owns it.
    [[nodiscard]] virtual ZStreamAsync* clone() const { return nullptr; }

    /// Asks for the size.
    virtual bool SizeAsync(NumberCallback* callback) = 0;
    /// Asks whether the position is the beginning.
    virtual bool BOSAsync(FlagCallback* callback) = 0;
    /// Asks whether a read has reached the end.
    virtual bool EOSAsync(FlagCallback* callback) = 0;
    /// Asks for the position.
    virtual bool PositionAsync(NumberCallback* callback) = 0;
    /// Moves to the beginning.
    virtual bool moveBeginAsync(StatusCallback* callback) = 0;
    /// Moves to the end.
    virtual bool moveEndAsync(StatusCallback* callback) = 0;
    /// Moves to a position.
    virtual bool moveToAsync(MoveCallback* callback, long long position) = 0;
    /// Moves by an offset.
    virtual bool moveAsync(MoveCallback* callback, long long offset) = 0;
    /// Asks for the state.
    virtual bool StateAsync(StatusCallback* callback) = 0;
    /// Closes the stream.
    virtual bool closeAsync(StatusCallback* callback) = 0;
    /// Adopts the callback if the read is started: the worker thread destroys it after the call. The callback
    /// must not throw: an exception that escapes from it calls `std::terminate`.
    virtual bool readAsync(ReadCallback* callback, long count) = 0;
    /// The caller keeps the callback, which must live until it has been called. It must not throw either.
    virtual bool writeAsync(WriteCallback* callback, DataRef data) = 0;
};

/// Reads and writes, each on a thread of its own; refuses the other ten requests.
///
/// One read and one write may be outstanding; further ones are refused until the callback has returned. The
/// callback runs on the worker thread. If the system cannot create a thread, the request still returns true,
/// but does nothing: the callback is not called, and that of a read stays with its owner. If allocation
/// fails, the request throws `std::bad_alloc` before it starts anything.
///
/// Before a module that contains this library or a callback is unloaded (`dlclose`), wait for its outstanding
/// requests and close its streams: the threads run code of the module, and nothing else closes the files.
///
/// The destructor waits for an outstanding read, unless the callback of that read destroys the stream. An
/// outstanding write continues. When this destructor runs, the members of derived classes are already
/// destroyed: a class that implements `read` must call `waitForRead` in its own destructor, and one whose
/// `write` uses the object must call `waitForWrite`.
template <typename T = char, typename TX = ZStreamTransaction>
class ZStreamEx : public ZStreamAsync<T, TX> {
    using Async = ZStreamAsync<T, TX>;

public:
    using typename Async::DataRef;
    /// Receives a yes or no.
    using typename Async::FlagCallback;
    using typename Async::MoveCallback;
    /// Receives a size or a position.
    using typename Async::NumberCallback;
    using typename Async::ReadCallback;
    /// Receives a status.
    using typename Async::StatusCallback;
    using typename Async::WriteCallback;

    ~ZStreamEx() override { waitForRead(); }

    /// Refused: only reading and writing run in the background.
    bool SizeAsync(NumberCallback*) override { return refuse(Operation::Size); }
    /// Refused, as `SizeAsync`.
    bool BOSAsync(FlagCallback*) override { return refuse(Operation::BOS); }
    /// Refused, as `SizeAsync`.
    bool EOSAsync(FlagCallback*) override { return refuse(Operation::EOS); }
    /// Refused, as `SizeAsync`.
    bool PositionAsync(NumberCallback*) override { return refuse(Operation::Position); }
    /// Refused, as `SizeAsync`.
    bool moveBeginAsync(StatusCallback*) override { return refuse(Operation::MoveBegin); }
    /// Refused, as `SizeAsync`.
    bool moveEndAsync(StatusCallback*) override { return refuse(Operation::MoveEnd); }
    /// Refused, as `SizeAsync`.
    bool moveToAsync(MoveCallback*, long long) override { return refuse(Operation::MoveTo); }
    /// Refused, as `SizeAsync`.
    bool moveAsync(MoveCallback*, long long) override { return refuse(Operation::Move); }
    /// Refused, as `SizeAsync`.
    bool StateAsync(StatusCallback*) override { return refuse(Operation::State); }
    /// Refused, as `SizeAsync`.
    bool closeAsync(StatusCallback*) override { return refuse(Operation::Close); }

    /// Reads up to `count` items into a buffer of that size. If it cannot be allocated, the callback receives
    /// the status ENOMEM, a null buffer and no items.
    bool readAsync(ReadCallback* callback, long count) override;
    /// Writes until everything is written or a write fails; the callback receives the status and the number
    /// of items written. An empty handle aborts after a report through `z_dbg_error`.
    bool writeAsync(WriteCallback* callback, DataRef data) override;

    /// Waits until no read is outstanding; the next `readAsync` is then not refused. Returns at once in the
    /// callback of that read. Only one thread may wait at a time, and no other may request a read meanwhile.
    ///
    ///     while (!file.EOS() && file.readAsync(callback->clone(), 4096))
    ///         file.waitForRead();
    void waitForRead() noexcept { worker(Operation::Read).join(); }
    /// The same for a write.
    void waitForWrite() noexcept { worker(Operation::Write).join(); }

protected:
    ZStreamEx() = default;

    /// Whether a read is outstanding.
    [[nodiscard]] bool isReading() noexcept { return worker(Operation::Read).isRunning(); }
    /// Whether a write is outstanding.
    [[nodiscard]] bool isWriting() noexcept { return worker(Operation::Write).isRunning(); }

    /// Runs a read on its thread.
    using ReadBinder = ZDelegate2<void, ReadCallback*, long>;
    /// The body of a read, on the worker thread.
    void executeRead(std::unique_ptr<ReadBinder> binder, ReadCallback* callback, long count)
    {
        execute<ReadCallback*, long>(Operation::Read, std::move(binder), callback, count);
    }
    /// Runs a write on its thread.
    using WriteBinder = ZDelegate2<void, WriteCallback*, DataRef>;
    /// The body of a write, on the worker thread.
    void executeWrite(std::unique_ptr<WriteBinder> binder, WriteCallback* callback, DataRef data);

    /// Calls `read`, a function like the stream's operation, and then `callback`, which it destroys. Passes
    /// `stream` on without using it.
    template <typename Read>
    static void readOnce(Read read, ZStreamEx* stream, ReadCallback* callback, long count);
    /// Calls `write`, a function like the stream's operation, until everything is written or it fails, and
    /// then `callback`. Passes `stream` on without using it.
    template <typename Write>
    static void writeAll(Write write, ZStreamEx* stream, WriteCallback* callback, const DataRef& data);

private:
    /// In the order of the requests.
    enum class Operation : std::size_t {
        Size,
        BOS,
        EOS,
        Position,
        MoveBegin,
        MoveEnd,
        MoveTo,
        Move,
        State,
        Close,
        Read,
        Write,
    };
    using Worker = ZThread_T<pthread_t*>;

    [[nodiscard]] Worker& worker(Operation operation) noexcept
    {
        return m_workers[static_cast<std::size_t>(operation)];
    }
    bool refuse(Operation operation) noexcept
    {
        static_cast<void>(worker(operation).isRunning());
        return false;
    }
    template <typename D, typename A>
    void execute(Operation operation, std::unique_ptr<ZDelegate2<void, D, A>> binder, D first, A second);

    void thread_ReadAsync(ReadCallback* callback, long count);
    void thread_WriteAsync(WriteCallback* callback, DataRef data);

    std::array<Worker, 12> m_workers;
};

template <typename T, typename TX>
bool ZStreamEx<T, TX>::readAsync(ReadCallback* callback, long count)
{
    if (isReading())
        return false;
    using Binder = ZDelegator2V<ZStreamEx, ReadCallback*, long>;
    executeRead(std::make_unique<Binder>(this, &ZStreamEx::thread_ReadAsync), callback, count);
    return true;
}

template <typename T, typename TX>
bool ZStreamEx<T, TX>::writeAsync(WriteCallback* callback, DataRef data)
{
    if (isWriting())
        return false;
    using Binder = ZDelegator2V<ZStreamEx, WriteCallback*, DataRef>;
    executeWrite(std::make_unique<Binder>(this, &ZStreamEx::thread_WriteAsync), callback, std::move(data));
    return true;
}

template <typename T, typename TX>
void ZStreamEx<T, TX>::executeWrite(
    std::unique_ptr<WriteBinder> binder, WriteCallback* callback, DataRef data)
{
    static_cast<void>(data->Count()); // reports an empty handle in the call that passed it
    execute<WriteCallback*, DataRef>(Operation::Write, std::move(binder), callback, std::move(data));
}

template <typename T, typename TX>
template <typename D, typename A>
void ZStreamEx<T, TX>::execute(
    Operation operation, std::unique_ptr<ZDelegate2<void, D, A>> binder, D first, A second)
{
    // The executor adopts the binder; nothing throws between its construction and the release below.
    static_assert(std::is_nothrow_move_constructible_v<D> && std::is_nothrow_move_constructible_v<A>);
    auto executor = std::make_unique<ZExecutor2V<D, A>>(binder.get(), std::move(first), std::move(second));
    static_cast<void>(binder.release());
    worker(operation).execute(executor.release());
}

template <typename T, typename TX>
void ZStreamEx<T, TX>::thread_ReadAsync(ReadCallback* callback, long count)
{
    const auto read = [this](T* buffer, long size, long& got) { return this->read(buffer, size, got); };
    readOnce(read, this, callback, count);
}

template <typename T, typename TX>
template <typename Read>
void ZStreamEx<T, TX>::readOnce(Read read, ZStreamEx* stream, ReadCallback* callback, long count)
{
    const std::unique_ptr<ReadCallback> owned(callback);
    // Uninitialized: only the items that were read are valid.
    const std::unique_ptr<T[]> buffer(
        count < 0 ? nullptr : new (std::nothrow) T[static_cast<std::size_t>(count)]);
    long got = 0;
    const int status = buffer ? read(buffer.get(), count, got) : ENOMEM;
    if (callback)
        (*callback)(stream, status, count, buffer.get(), got); // may destroy the stream
}

template <typename T, typename TX>
void ZStreamEx<T, TX>::thread_WriteAsync(WriteCallback* callback, DataRef data)
{
    const auto write = [this](T const* items, long count, long& written) {
        return this->write(items, count, written);
    };
    writeAll(write, this, callback, data);
}

template <typename T, typename TX>
template <typename Write>
void ZStreamEx<T, TX>::writeAll(Write write, ZStreamEx* stream, WriteCallback* callback, const DataRef& data)
{
    long total = 0;
    long remaining = data->Count();
    long written = 0;
    int status = 0;
    do {
        remaining -= written;
        written = 0;
        status = write(data->begin() + total, remaining, written);
        if (status != 0)
            break;
        written = std::clamp(written, 0L, std::numeric_limits<long>::max() - total);
        total += written;
    } while (remaining > written);
    if (callback)
        (*callback)(stream, status, data, total);
}

extern template class ZStreamAsync<char, ZStreamTransaction>;
extern template class ZStreamEx<char, ZStreamTransaction>;

} // namespace ZSpace
