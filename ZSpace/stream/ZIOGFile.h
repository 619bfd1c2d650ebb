// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/stream/ZStreamAsync.h"

#include <cstdio>

namespace ZSpace {

/// A file of the C library as a stream.
///
///     ZIOGFile<> file;
///     if (file.open("/tmp/report.txt", ZIOGFile<>::ModeAppend) == 0)
///         file.write("done\n", -1);
///     file.close();
///
/// Destruction leaves the file open: whoever opens it closes it. It waits for a read that is under way; a
/// write goes on and needs the stream no more, only the file, which must then stay open. Buffering,
/// end-of-file and error marks, and what must stand between reading and writing, are those of the C library.
/// The descriptor is not passed on to programs that the process starts, where the host can arrange that on
/// opening.
///
/// A closed stream answers true for `EOS`, false for `BOS`, 0 for `State` and `close`, and -1 for all else,
/// whatever the arguments.
template <typename File = FILE*, typename T = char, typename TX = ZStreamTransaction>
class ZIOGFile : public ZStreamEx<T, TX> {
    using Ex = ZStreamEx<T, TX>;
    static_assert(sizeof(T) == 1, "counts go to the C library as bytes");

public:
    using typename Ex::DataRef;
    using typename Ex::WriteCallback;

    /// The modes of `open`. `State()` is made of the first two as flags.
    enum Mode : int {
        ModeRead = 2, ///< there must be a file
        ModeWrite = 4, ///< creates the file or empties it
        ModeReadWrite = 6, ///< there must be a file
        ModeAppend = 8 ///< creates the file or keeps what is there; reads anywhere, writes at the end
    };

    ZIOGFile() = default;
    ~ZIOGFile() override { this->waitForRead(); }

    using ZInStream<T, TX>::read;
    using ZOutStream<T, TX>::write;

    /// A stream of its own on the same open file: both move one offset, and what either has buffered is
    /// its own. Closed if this one is.
    /// @return null if the file cannot be shared. The caller owns the stream.
    [[nodiscard]] ZIOGFile* clone() const override;

    [[nodiscard]] int State() const override;

    /// Closes the stream first.
    /// @return 0, or the error number (EINVAL for a mode that is none); the stream is then closed. The name
    /// goes narrow as strings do: the low 8 bits of each unit.
    virtual int open(wchar_t const* path, int mode);
    virtual int open(char const* path, int mode);

    /// @return 0, also when the C library fails to write the rest.
    int close() override;
    /// Measures by going to the end and back.
    long long Size() override;
    [[nodiscard]] bool BOS() override;
    [[nodiscard]] bool EOS() override;
    [[nodiscard]] long long Position() override;
    int moveBegin() override;
    int moveEnd() override;
    int moveTo(long long position) override;
    int move(long long offset) override;
    void beginTransaction() override;
    void endTransaction() override;

    /// A negative `count` is the length of the text at `data`. Where there is nothing to write, `written`
    /// stays as it is.
    /// @return 0 if anything was written, else the error mark of the file.
    int write(T const* data, long count, long& written) override;
    /// Hands what is buffered to the system.
    virtual int flush();

    /// @return the error mark of the file; at its end that is 0 with `got` below `count`.
    int read(T* buffer, long count, long& got) override;

    /// Needs only the file, not this object, once begun; a derived class, whose `write` may be another, gets
    /// `ZStreamEx`'s own way.
    bool writeAsync(WriteCallback* callback, DataRef data) override;

    /// From now on each `write` reaches the system at once and whole, in a single call whatever its length
    /// (what a full disk or pipe takes only a part of is gone on with). For lines that several processes
    /// append to one file. To be asked for after `open`, before anything else.
    /// @return false if the stream is closed.
    bool writeThrough();

    /// Hands `count` items to the system past the C library, which is then needed only for what the system
    /// does not take at first: that goes on, or fails and sets the error mark, as in `write`. The cheapest
    /// way to write at the end of a file of which nobody asks the position, as the C library does not learn
    /// of it. Only after `writeThrough`.
    /// @return the number of items that were taken; 0 for a closed stream.
    long writeAtOnce(T const* data, long count) noexcept;

    /// Whether something has failed since the file was opened or the mark was cleared; false for a closed
    /// stream.
    [[nodiscard]] bool hasError() const noexcept { return m_file && ferror(m_file); }
    void clearError() noexcept
    {
        if (m_file)
            clearerr(m_file);
    }

private:
    static int writeTo(File file, T const* data, long count, long& written);

    File m_file = nullptr; // null while closed
    bool m_readable = false;
    bool m_writable = false;
};

extern template class ZIOGFile<FILE*, char, ZStreamTransaction>;

} // namespace ZSpace
