// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/ZDelegate.h"
#include "ZSpace/core/ZInvokable.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZThread.h"
#include "ZSpace/stream/ZStream.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// A stream that can be asked to do its work later and to report to a callback.
///
///     using Stream = ZStreamAsync<>;
///     auto show = zMakeDelegate<Stream::ReadCallback>(
///         [](Stream*, int status, long, char const* buffer, long got) { ... });
///     if (stream.readAsync(show.get(), 4096))
///         show.release(); // the worker destroys it
///
/// A request gives whether it was taken; one that was refused leaves the callback and the stream alone. Until
/// the callback has returned, the stream must not be used in other ways, except that a read and a write may
/// be under way at once.
template <typename T = char, typename TX = ZStreamTransaction>
class ZStreamAsync : public ZStream<T, TX> {
public:
    /// What is written: shared, so that it lives as long as anybody needs it.
    using DataRef = ZRef<ZArray<T, ZAllocation<T>>, TZRefCounter<int>>;

    // All callbacks get the stream first and return nothing.
    using NumberCallback = ZDelegate2<void, ZStreamAsync*, long long>;
    using FlagCallback = ZDelegate2<void, ZStreamAsync*, bool>;
    using StatusCallback = ZDelegate2<void, ZStreamAsync*, int>;
    /// Status, and the position or offset asked for.
    using MoveCallback = ZDelegate3<void, ZStreamAsync*, int, long long>;
    /// Status, the count asked for, the buffer (good during the call only) and the number of items in it.
    using ReadCallback = ZDelegate5<void, ZStreamAsync*, int, long, T const*, long>;
    /// Status, the data and the number of items written.
    using WriteCallback = ZDelegate4<void, ZStreamAsync*, int, DataRef, long>;

    /// A new stream of the same kind, null where this kind or this stream cannot have one. The caller owns
    /// it.
    [[nodiscard]] virtual ZStreamAsync* clone() const { return nullptr; }

    virtual bool SizeAsync(NumberCallback* callback) = 0;
    virtual bool BOSAsync(FlagCallback* callback) = 0;
    virtual bool EOSAsync(FlagCallback* callback) = 0;
    virtual bool PositionAsync(NumberCallback* callback) = 0;
    virtual bool moveBeginAsync(StatusCallback* callback) = 0;
    virtual bool moveEndAsync(StatusCallback* callback) = 0;
    virtual bool moveToAsync(MoveCallback* callback, long long position) = 0;
    virtual bool moveAsync(MoveCallback* callback, long long offset) = 0;
    virtual bool StateAsync(StatusCallback* callback) = 0;
    virtual bool closeAsync(StatusCallback* callback) = 0;
    /// Takes the callback over once the read is under way.
    virtual bool readAsync(ReadCallback* callback, long count) = 0;
    /// The callback stays its owner's, who keeps it until it has been called.
    virtual bool writeAsync(WriteCallback* callback, DataRef data) = 0;
};

/// Reads and writes on threads of their own; the other ten requests are refused.
///
/// One read and one write may be under way; further ones are refused until the callback has returned. The
/// callback runs on the worker's thread. Should the system have no thread left, the request counts as taken,
/// but nothing is done, nobody is called, and the callback of a read stays with its owner. Want of memory
/// passes on before anything is begun.
///
/// Destruction waits for a read, unless the read's callback is what destroys the stream, and lets a write go
/// on by itself. This class comes too late for the parts above it, so each class that implements `read` calls
/// `waitForRead` first thing in its destructor; and one whose `write` needs the object calls `waitForWrite`
/// or provides otherwise.
template <typename T = char, typename TX = ZStreamTransaction>
class ZStreamEx : public ZStreamAsync<T, TX> {
    using Async = ZStreamAsync<T, TX>;

public:
    using typename Async::DataRef;
    using typename Async::FlagCallback;
    using typename Async::MoveCallback;
    using typename Async::NumberCallback;
    using typename Async::ReadCallback;
    using typename Async::StatusCallback;
    using typename Async::WriteCallback;

    ~ZStreamEx() override { waitForRead(); }

    bool SizeAsync(NumberCallback*) override { return refuse(Operation::Size); }
    bool BOSAsync(FlagCallback*) override { return refuse(Operation::BOS); }
    bool EOSAsync(FlagCallback*) override { return refuse(Operation::EOS); }
    bool PositionAsync(NumberCallback*) override { return refuse(Operation::Position); }
    bool moveBeginAsync(StatusCallback*) override { return refuse(Operation::MoveBegin); }
    bool moveEndAsync(StatusCallback*) override { return refuse(Operation::MoveEnd); }
    bool moveToAsync(MoveCallback*, long long) override { return refuse(Operation::MoveTo); }
    bool moveAsync(MoveCallback*, long long) override { return refuse(Operation::Move); }
    bool StateAsync(StatusCallback*) override { return refuse(Operation::State); }
    bool closeAsync(StatusCallback*) override { return refuse(Operation::Close); }

    /// Reads `count` items into a buffer of that size. Where there is no memory for it, the callback gets the
    /// status ENOMEM, a null buffer and no items.
    bool readAsync(ReadCallback* callback, long count) override;
    /// Writes until all is written or a write gives a status other than 0, which the callback gets with what
    /// was written before. An empty handle ends the process with a report.
    bool writeAsync(WriteCallback* callback, DataRef data) override;

protected:
    ZStreamEx() = default;

    /// Returns once no read is under way; at once in the callback of that read.
    void waitForRead() noexcept { worker(Operation::Read).join(); }
    void waitForWrite() noexcept { worker(Operation::Write).join(); }

    [[nodiscard]] bool isWriting() noexcept { return worker(Operation::Write).isRunning(); }

    /// What does a write on its thread.
    using WriteBinder = ZDelegate2<void, WriteCallback*, DataRef>;
    void executeWrite(std::unique_ptr<WriteBinder> binder, WriteCallback* callback, DataRef data);

    /// Calls `write`, which is like the stream's operation, as often as it takes, and then `callback` with
    /// `stream`. Leaves the stream itself alone.
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
    if (worker(Operation::Read).isRunning())
        return false;
    using Binder = ZDelegator2V<ZStreamEx, ReadCallback*, long>;
    execute<ReadCallback*, long>(
        Operation::Read, std::make_unique<Binder>(this, &ZStreamEx::thread_ReadAsync), callback, count);
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
    static_cast<void>(data->Count()); // an empty handle is reported here, where the mistake is
    execute<WriteCallback*, DataRef>(Operation::Write, std::move(binder), callback, std::move(data));
}

template <typename T, typename TX>
template <typename D, typename A>
void ZStreamEx<T, TX>::execute(
    Operation operation, std::unique_ptr<ZDelegate2<void, D, A>> binder, D first, A second)
{
    // The binder has one owner at every moment: nothing fails once the executor has it.
    static_assert(std::is_nothrow_move_constructible_v<D> && std::is_nothrow_move_constructible_v<A>);
    auto executor = std::make_unique<ZExecutor2V<D, A>>(binder.get(), std::move(first), std::move(second));
    static_cast<void>(binder.release());
    worker(operation).execute(executor.release());
}

template <typename T, typename TX>
void ZStreamEx<T, TX>::thread_ReadAsync(ReadCallback* callback, long count)
{
    const std::unique_ptr<ReadCallback> owned(callback);
    // Not cleared first: only the items that were read are anybody's business.
    const std::unique_ptr<T[]> buffer(
        count < 0 ? nullptr : new (std::nothrow) T[static_cast<std::size_t>(count)]);
    long got = 0;
    const int status = buffer ? this->read(buffer.get(), count, got) : ENOMEM;
    if (callback)
        (*callback)(this, status, count, buffer.get(), got);
    // The callback may have destroyed this stream.
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
        total += written;
    } while (remaining > written);
    if (callback)
        (*callback)(stream, status, data, total);
}

extern template class ZStreamAsync<char, ZStreamTransaction>;
extern template class ZStreamEx<char, ZStreamTransaction>;

} // namespace ZSpace
