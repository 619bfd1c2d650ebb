// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/stream/ZStreamAsync.h"

#include <cstdio>

namespace ZSpace {

/// A stdio file as a stream.
///
///     ZIOGFile<> file;
///     if (file.open("/tmp/report.txt", ZIOGFile<>::ModeAppend) == 0)
///         file.write("done\n", -1);
///     file.close();
///
/// The destructor does not close the file; call `close` first. It waits for an outstanding asynchronous read.
/// An outstanding write continues without the stream: the file must stay open, and the callback must not use
/// the stream pointer after the destruction. The same holds for derived classes that do not override `write`.
///
/// Buffering, the end-of-file and error indicators, and the rule to flush or to set the position between
/// reading and writing are those of the C library. Child processes do not inherit the descriptor.
///
/// On a closed stream `EOS` returns true, `BOS` false, `State` and `close` 0, and everything else -1.
template <typename File = FILE*, typename T = char, typename TX = ZStreamTransaction>
class ZIOGFile : public ZStreamEx<T, TX> {
    using Ex = ZStreamEx<T, TX>;
    static_assert(sizeof(T) == 1, "counts are passed to the C library as bytes");

public:
    using typename Ex::DataRef;
    using typename Ex::ReadCallback;
    using typename Ex::WriteCallback;

    /// The modes of `open`; `State` combines the first two as flags.
    enum Mode : int {
        ModeRead = 2, ///< the file must exist
        ModeWrite = 4, ///< creates or truncates the file
        ModeReadWrite = 6, ///< the file must exist
        /// Creates the file or keeps its content; reads anywhere, writes at the end. Starts at position 0.
        ModeAppend = 8
    };

    ZIOGFile() = default;
    ~ZIOGFile() override { this->waitForRead(); }

    using ZInStream<T, TX>::read;
    using ZOutStream<T, TX>::write;

    /// A new stream on a duplicate of the descriptor: both share one file offset, each has its own buffer.
    /// The clone of a closed stream is closed.
    /// @return null on failure. The caller owns the stream.
    [[nodiscard]] ZIOGFile* clone() const override;

    [[nodiscard]] int State() const override;

    /// Closes the stream, then opens the file. A wide path is narrowed to the low 8 bits of each unit.
    /// @return 0, or the error number (EINVAL for an unknown mode); the stream is then closed.
    virtual int open(wchar_t const* path, int mode);
    virtual int open(char const* path, int mode);
    /// Closes the stream, then adopts an open descriptor: closes it with the stream, and on failure. The file is
    /// neither created nor truncated.
    /// @return 0, or the error number (EINVAL for a mode that is unknown or does not suit the descriptor).
    int adopt(int descriptor, int mode);
    /// The descriptor, still owned by the stream; -1 if closed.
    [[nodiscard]] int descriptor() const noexcept { return m_file ? fileno(m_file) : -1; }

    /// @return 0, even if buffered data cannot be written: call `flush` first to find out.
    int close() override;
    /// Moves to the end and back.
    long long Size() override;
    [[nodiscard]] bool BOS() override;
    [[nodiscard]] bool EOS() override;
    /// The position in items; -1 on failure.
    [[nodiscard]] long long Position() override;
    int moveBegin() override;
    /// Moves to the end.
    int moveEnd() override;
    /// Moves to a position.
    int moveTo(long long position) override;
    /// Moves by an offset from the position.
    int move(long long offset) override;
    void beginTransaction() override;
    void endTransaction() override;

    /// A negative `count` means the length of the null-terminated string `data`. If there is nothing to
    /// write, `written` does not change.
    /// @return 0 if anything was written, otherwise the file's error indicator.
    int write(T const* data, long count, long& written) override;
    /// Writes the buffered data to the file.
    /// @return 0, or EOF on failure.
    virtual int flush();

    /// @return the file's error indicator. At the end of the file this is 0, with `got` below `count`.
    int read(T* buffer, long count, long& got) override;

    /// For a derived class that overrides `read` this is `ZStreamEx::readAsync`: such a class must call
    /// `waitForRead` in its destructor.
    bool readAsync(ReadCallback* callback, long count) override;
    /// Once started, the write needs only the file, not this object. For a derived class that overrides
    /// `write` this is `ZStreamEx::writeAsync`: such a class must call `waitForWrite` in its destructor.
    bool writeAsync(WriteCallback* callback, DataRef data) override;

    /// Turns buffering off: each `write` becomes one system call, whatever its length, and partial writes are
    /// continued. For lines that several processes append to one file. Call it right after `open`.
    /// @return false if the stream is closed.
    bool writeThrough();

    /// Writes `count` items with a system call that bypasses the C library. Interrupted calls are repeated
    /// and partial writes continued; failure sets the error indicator. The fastest way to append, but the C
    /// library does not learn of the new position. Only after `writeThrough`.
    /// @return the number of items written; 0 for a closed stream or a `count` below 1.
    long writeAtOnce(T const* data, long count) noexcept;

    /// Whether an operation has failed since the file was opened or the error indicator cleared. False for a
    /// closed stream.
    [[nodiscard]] bool hasError() const noexcept { return m_file && ferror(m_file); }
    /// Clears the error and end-of-file indicators.
    void clearError() noexcept
    {
        if (m_file)
            clearerr(m_file);
    }

private:
    int start(File file, int mode);
    /// Whether a derived class overrides the virtual `member`.
    template <typename Function>
    [[nodiscard]] bool isOverridden(Function ZIOGFile::*member) const;
    static int readFrom(File file, T* buffer, long count, long& got);
    static int writeTo(File file, T const* data, long count, long& written);

    File m_file = nullptr; // null while closed
    bool m_readable = false;
    bool m_writable = false;
};

extern template class ZIOGFile<FILE*, char, ZStreamTransaction>;

} // namespace ZSpace
