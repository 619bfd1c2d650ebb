// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Sequences of operations on a file stream, compared with a model of the file in memory.

#include "ZSpace/stream/ZIOGFile.h"
#include "fuzz/FuzzDirectory.h"
#include "fuzz/FuzzText.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace {

using namespace ZSpace;
using ZSpaceFuzz::Input;
using ZSpaceFuzz::require;

using File = ZIOGFile<>;

const ZSpaceFuzz::PrivateDirectory s_directory;

/// A stream and what it must contain.
class Checked {
public:
    explicit Checked(std::string path)
        : m_path(std::move(path))
    {
    }
    Checked(const Checked&) = delete;
    Checked& operator=(const Checked&) = delete;
    ~Checked() { m_file.close(); }

    void open(int mode)
    {
        const bool mustExist = mode == File::ModeRead || mode == File::ModeReadWrite;
        const bool isValid = mustExist || mode == File::ModeWrite || mode == File::ModeAppend;
        const int result = m_file.open(m_path.c_str(), mode);
        require((result == 0) == (isValid && (m_exists || !mustExist)), "the result of open");
        m_state = 0;
        m_isAppending = mode == File::ModeAppend;
        m_hasHitEnd = false;
        m_position = 0;
        if (result != 0)
            return;
        m_exists = true;
        m_state = mode == File::ModeAppend ? 6 : mode;
        if (mode == File::ModeWrite)
            m_content.clear();
    }

    void close()
    {
        require(m_file.close() == 0, "the result of close");
        m_state = 0;
        std::ifstream stream(m_path, std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(stream), {}};
        require(content == m_content, "the content after close");
    }

    void read(long count)
    {
        if (!canSwitch())
            return;
        std::string buffer(static_cast<std::size_t>(std::max(count, 0L)) + 1, '?');
        long got = -7;
        const int status = m_file.read(buffer.data(), count, got);
        checkRead(status, count, buffer, got);
        switchDirection();
    }

    void readAsync(long count)
    {
        if (!canSwitch())
            return;
        std::string buffer;
        int status = -7;
        long got = -7;
        auto callback = zMakeDelegate<File::ReadCallback>(
            [&](ZStreamAsync<>*, int reported, long, char const* bytes, long length) {
                buffer.assign(bytes, bytes + length);
                status = reported;
                got = length;
            });
        require(m_file.readAsync(callback.release(), count), "a read after waiting is started");
        m_file.waitForRead();
        checkRead(status, count, buffer + '?', got);
        switchDirection();
    }

    void write(const std::string& data)
    {
        if (!canSwitch())
            return;
        long written = -7;
        const int status = m_file.write(data.data(), static_cast<long>(data.size()), written);
        checkWrite(status, data, written, -7);
        switchDirection();
    }

    void writeAsync(const std::string& data)
    {
        if (!canSwitch())
            return;
        int status = -7;
        long written = -7;
        const auto callback = zMakeDelegate<File::WriteCallback>(
            [&](ZStreamAsync<>*, int reported, const File::DataRef&, long length) {
                status = reported;
                written = length;
            });
        const File::DataRef shared(
            new ZArray<char, ZAllocation<char>>(data.data(), static_cast<long>(data.size())));
        require(m_file.writeAsync(callback.get(), shared), "a write after waiting is started");
        m_file.waitForWrite();
        checkWrite(status, data, written, 0);
        switchDirection();
    }

    void move(int kind, long long distance)
    {
        const long long size = static_cast<long long>(m_content.size());
        const long long target = kind == 0 ? 0
            : kind == 1                    ? size
            : kind == 2                    ? distance
                                           : m_position + distance;
        const int result = kind == 0 ? m_file.moveBegin()
            : kind == 1              ? m_file.moveEnd()
            : kind == 2              ? m_file.moveTo(distance)
                                     : m_file.move(distance);
        require((result == 0) == (m_state != 0 && target >= 0), "the result of a move");
        if (result != 0)
            return;
        m_position = target;
        m_hasHitEnd = false;
    }

    void flush() { require(m_file.flush() == (m_state == 0 ? -1 : 0), "the result of flush"); }

    void writeThrough() { require(m_file.writeThrough() == (m_state != 0), "the result of writeThrough"); }

    void clone()
    {
        m_file.flush();
        const std::unique_ptr<File> copy(m_file.clone());
        require(copy && copy->State() == m_state, "a clone has the same state");
        copy->close();
        if (m_state != 0)
            move(2, m_position); // the clone has moved the shared offset without this stream's buffer
    }

    void check()
    {
        require(m_file.State() == m_state, "the state");
        require(m_file.Position() == (m_state == 0 ? -1 : m_position), "the position");
        require(m_file.BOS() == (m_state != 0 && m_position == 0), "the beginning");
        require(m_file.EOS() == (m_state == 0 || m_hasHitEnd), "the end");
    }

    void checkSize()
    {
        require(m_file.Size() == (m_state == 0 ? -1 : static_cast<long long>(m_content.size())), "the size");
    }

private:
    /// The C library requires a move between reading and writing.
    void switchDirection()
    {
        check();
        move(2, m_position);
    }
    [[nodiscard]] bool canSwitch() const { return m_position <= s_mostBytes; }

    void checkRead(int status, long count, const std::string& buffer, long got)
    {
        if (m_state == 0) {
            require(status == -1, "reading a closed stream");
            return;
        }
        if (m_state == File::ModeWrite) {
            require(count <= 0 || (status != 0 && got == 0), "reading a stream that is open for writing");
            m_file.clearError();
            return;
        }
        const auto size = static_cast<long long>(m_content.size());
        const long long left = std::max(size - m_position, 0LL);
        const long long expected = std::min<long long>(std::max(count, 0L), left);
        require(status == 0 && got == expected, "the number of bytes read");
        require(buffer.compare(0, static_cast<std::size_t>(got), m_content,
                    static_cast<std::size_t>(std::min(m_position, size)), static_cast<std::size_t>(got))
                == 0,
            "the bytes read");
        require(buffer[static_cast<std::size_t>(got)] == '?', "no byte more");
        m_hasHitEnd = m_hasHitEnd || count > left;
        m_position += got;
    }

    void checkWrite(int status, const std::string& data, long written, long ifNothing)
    {
        if (m_state == 0) {
            require(status == -1, "writing to a closed stream");
            return;
        }
        if (data.empty()) {
            require(status == 0 && written == ifNothing, "writing nothing");
            return;
        }
        if (m_state == File::ModeRead) {
            require(status != 0, "writing to a stream that is open for reading");
            m_file.clearError();
            return;
        }
        require(status == 0 && written == static_cast<long>(data.size()), "the number of bytes written");
        if (m_isAppending)
            m_position = static_cast<long long>(m_content.size());
        const auto end = static_cast<std::size_t>(m_position) + data.size();
        m_content.resize(std::max(m_content.size(), end));
        m_content.replace(static_cast<std::size_t>(m_position), data.size(), data);
        m_position = static_cast<long long>(end);
        if (m_isAppending)
            m_file.flush(); // only then does the library know the end
    }

    static constexpr long long s_mostBytes = 100'000;

    std::string m_path;
    File m_file;
    std::string m_content;
    bool m_exists = false;
    bool m_isAppending = false;
    bool m_hasHitEnd = false;
    int m_state = 0;
    long long m_position = 0;
};

void run(Checked& file, Input& input)
{
    constexpr int most = 200; // operations
    for (int i = 0; i < most; ++i) {
        const int operation = input.byte() % 16;
        const int size = input.byte();
        switch (operation) {
        case 0:
            return;
        case 1:
        case 2:
            file.open(size % 5 * 2);
            break;
        case 3:
            file.close();
            break;
        case 4:
        case 5:
            file.read(size * 40 - 40);
            break;
        case 6:
            file.readAsync(size * 40);
            break;
        case 7:
        case 8:
            file.write(std::string(static_cast<std::size_t>(size * 40), static_cast<char>('a' + i % 26)));
            break;
        case 9:
            file.writeAsync(std::string(static_cast<std::size_t>(size), static_cast<char>('A' + i % 26)));
            break;
        case 10:
        case 11:
            file.move(size % 4, (input.byte() - 128) * 50);
            break;
        case 12:
            file.flush();
            break;
        case 13:
            file.open(size % 5 * 2);
            file.writeThrough();
            break;
        case 14:
            file.clone();
            break;
        default:
            file.checkSize();
        }
        file.check();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = s_directory / "file";
    std::filesystem::remove(path);
    Input input(data, size);
    Checked file(path);
    run(file, input);
    return 0;
}
