// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"

#include "ZSpace/platform/FileStream.h"
#include "ZSpace/string/ZGStr.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <unistd.h>
#include <utility>

namespace ZSpace {

namespace {

/// The mode string of `fopen`, null for an unknown mode.
const char* nameOfMode(int mode)
{
    switch (mode) {
    case ZIOGFile<>::ModeRead:
        return "r";
    case ZIOGFile<>::ModeWrite:
        return "w";
    case ZIOGFile<>::ModeReadWrite:
        return "r+";
    case ZIOGFile<>::ModeAppend:
        return "a+";
    default:
        return nullptr;
    }
}

/// A stream on a close-on-exec duplicate of `descriptor`; null on failure.
FILE* openDuplicate(int descriptor, const char* mode)
{
    const int duplicate = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (duplicate < 0)
        return nullptr;
    FILE* file = fdopen(duplicate, mode);
    if (!file)
        ::close(duplicate);
    return file;
}

/// The function that a call of the virtual `member` on `object` runs. C++ cannot tell, but the ABI that all
/// hosts share can: `object` begins with a pointer to its vtable, and a pointer to a virtual member begins
/// with the offset of its entry there. (Where code may have odd addresses, the lowest bit is a flag.)
template <typename Class, typename Member>
const void* finalOverrider(const Class& object, Member Class::*member) noexcept
{
    std::uintptr_t offset = 0;
    const char* vtable = nullptr;
    const void* function = nullptr;
    std::memcpy(&offset, &member, sizeof offset);
    std::memcpy(&vtable, static_cast<const void*>(&object), sizeof vtable);
    std::memcpy(&function, vtable + (offset & ~std::uintptr_t{1}), sizeof function);
    return function;
}

} // namespace

template <typename File, typename T, typename TX>
ZIOGFile<File, T, TX>* ZIOGFile<File, T, TX>::clone() const
{
    if (!m_file)
        return new (std::nothrow) ZIOGFile;
    if (!m_readable && !m_writable)
        return nullptr;
    File file = openDuplicate(fileno(m_file), !m_writable ? "r" : m_readable ? "r+" : "w");
    if (!file)
        return nullptr;
    auto* copy = new (std::nothrow) ZIOGFile;
    if (!copy) {
        fclose(file);
        return nullptr;
    }
    copy->m_file = file;
    copy->m_readable = m_readable;
    copy->m_writable = m_writable;
    return copy;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::State() const
{
    return (m_readable ? ModeRead : 0) | (m_writable ? ModeWrite : 0);
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::open(wchar_t const* path, int mode)
{
    return open(static_cast<const char*>(ZGStr<char>(path)), mode);
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::open(char const* path, int mode)
{
    close();
    const char* name = nameOfMode(mode);
    if (!name)
        return EINVAL;
    return start(Host::openFileStream(path ? path : "", name), mode);
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::adopt(int descriptor, int mode)
{
    close();
    const char* name = nameOfMode(mode);
    const int error = name ? start(fdopen(descriptor, name), mode) : EINVAL;
    if (error != 0 && descriptor >= 0)
        ::close(descriptor);
    return error;
}

/// @param file what the C library returned, with `errno` if that is null.
template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::start(File file, int mode)
{
    if (!file)
        return errno;
    m_file = file;
    m_readable = mode != ModeWrite;
    m_writable = mode != ModeRead;
    return 0;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::close()
{
    if (m_file)
        fclose(m_file);
    m_file = nullptr;
    m_readable = false;
    m_writable = false;
    return 0;
}

template <typename File, typename T, typename TX>
long long ZIOGFile<File, T, TX>::Size()
{
    const long long position = Position();
    moveEnd();
    const long long size = Position();
    moveTo(position);
    return size;
}

template <typename File, typename T, typename TX>
bool ZIOGFile<File, T, TX>::BOS()
{
    return Position() == 0;
}

template <typename File, typename T, typename TX>
bool ZIOGFile<File, T, TX>::EOS()
{
    return !m_file || feof(m_file);
}

template <typename File, typename T, typename TX>
long long ZIOGFile<File, T, TX>::Position()
{
    return m_file ? ftell(m_file) : -1;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::moveBegin()
{
    return m_file ? fseek(m_file, 0, SEEK_SET) : -1;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::moveEnd()
{
    return m_file ? fseek(m_file, 0, SEEK_END) : -1;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::moveTo(long long position)
{
    return m_file ? fseek(m_file, position, SEEK_SET) : -1;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::move(long long offset)
{
    return m_file ? fseek(m_file, offset, SEEK_CUR) : -1;
}

template <typename File, typename T, typename TX>
void ZIOGFile<File, T, TX>::beginTransaction()
{
    TX::beginTransaction();
}

template <typename File, typename T, typename TX>
void ZIOGFile<File, T, TX>::endTransaction()
{
    TX::endTransaction();
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::write(T const* data, long count, long& written)
{
    return writeTo(m_file, data, count, written);
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::writeTo(File file, T const* data, long count, long& written)
{
    if (!file)
        return -1;
    if (count < 0)
        count = ZGStr<T>::length(data);
    if (count == 0)
        return 0;
    written = static_cast<long>(fwrite(data, 1, static_cast<std::size_t>(count), file));
    return written > 0 ? 0 : ferror(file);
}

template <typename File, typename T, typename TX>
bool ZIOGFile<File, T, TX>::writeAsync(WriteCallback* callback, DataRef data)
{
    if (isOverridden<int(T const*, long, long&)>(&ZIOGFile::write))
        return Ex::writeAsync(callback, std::move(data));
    if (this->isWriting())
        return false;
    // The stream may be destroyed before the thread starts. The file stays open, because no destructor closes
    // it.
    const auto work = [stream = this, file = m_file](WriteCallback* toCall, const DataRef& toWrite) {
        const auto write = [file](T const* items, long count, long& written) {
            return writeTo(file, items, count, written);
        };
        Ex::writeAll(write, stream, toCall, toWrite);
    };
    this->executeWrite(zMakeDelegate<typename Ex::WriteBinder>(work), callback, std::move(data));
    return true;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::flush()
{
    return m_file ? fflush(m_file) : -1;
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::read(T* buffer, long count, long& got)
{
    return readFrom(m_file, buffer, count, got);
}

template <typename File, typename T, typename TX>
int ZIOGFile<File, T, TX>::readFrom(File file, T* buffer, long count, long& got)
{
    if (!file)
        return -1;
    // The count is defined as a signed 32-bit value, so it wraps beyond 2 GiB.
    got = count > 0 ? static_cast<int>(fread(buffer, 1, static_cast<std::size_t>(count), file)) : 0;
    return ferror(file);
}

template <typename File, typename T, typename TX>
bool ZIOGFile<File, T, TX>::readAsync(ReadCallback* callback, long count)
{
    if (isOverridden<int(T*, long, long&)>(&ZIOGFile::read))
        return Ex::readAsync(callback, count);
    if (this->isReading())
        return false;
    // Calls no virtual function: the destructors of derived classes may run before the one that waits.
    const auto work = [stream = this, file = m_file](ReadCallback* toCall, long toRead) {
        const auto read = [file](
                              T* buffer, long size, long& got) { return readFrom(file, buffer, size, got); };
        Ex::readOnce(read, stream, toCall, toRead);
    };
    this->executeRead(zMakeDelegate<typename Ex::ReadBinder>(work), callback, count);
    return true;
}

template <typename File, typename T, typename TX>
template <typename Function>
bool ZIOGFile<File, T, TX>::isOverridden(Function ZIOGFile::*member) const
{
    static const void* const own = finalOverrider(ZIOGFile(), member);
    return finalOverrider(*this, member) != own;
}

template <typename File, typename T, typename TX>
bool ZIOGFile<File, T, TX>::writeThrough()
{
    return m_file && setvbuf(m_file, nullptr, _IONBF, 0) == 0;
}

template <typename File, typename T, typename TX>
long ZIOGFile<File, T, TX>::writeAtOnce(T const* data, long count) noexcept
{
    if (!m_file || count <= 0)
        return 0;
    const auto size = static_cast<std::size_t>(count);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written = ::write(fileno(m_file), data + done, size - done);
        if (written > 0)
            done += static_cast<std::size_t>(written);
        else if (written == 0 || errno != EINTR)
            return static_cast<long>(
                done + fwrite(data + done, 1, size - done, m_file)); // sets the error indicator
    }
    return count;
}

template class ZIOGFile<FILE*, char, ZStreamTransaction>;

} // namespace ZSpace
