// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"

#include "ZSpace/platform/FileCopy.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"

#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace ZSpace {

namespace {

/// A path as system calls need it: narrow and never null.
class SystemPath {
public:
    explicit SystemPath(const char* path) noexcept
        : m_path(path)
    {
    }
    explicit SystemPath(const wchar_t* path) noexcept
        : m_narrowed(path)
        , m_path(m_narrowed)
    {
    }
    SystemPath(const SystemPath&) = delete; // m_path may point into m_narrowed
    SystemPath& operator=(const SystemPath&) = delete;

    operator const char*() const noexcept { return m_path ? m_path : ""; }

private:
    ZGStr<char> m_narrowed;
    const char* m_path;
};

int errorOf(int result) noexcept
{
    return result == 0 ? 0 : errno;
}

int renamePath(const char* from, const char* to) noexcept
{
    return errorOf(::rename(from, to));
}

bool isKind(const char* path, mode_t kind) noexcept
{
    struct stat status;
    return stat(path, &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

/// Whether `stat` reports a directory. The type of most entries rules that out without a call. `stat` itself
/// may fail for a directory: without search permission, or for an unreachable mount point.
bool isReachableDirectory(DIR* directory, const dirent& entry) noexcept
{
    if (entry.d_type != DT_DIR && entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return false;
    struct stat status;
    return fstatat(dirfd(directory), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

ZStrToken<char> withoutLastSlash(ZStrToken<char> path) noexcept
{
    const long last = path.Length() - 1;
    return last >= 0 && path[last] == '/' ? path.left(last) : path;
}

ZStrToken<char> parentOf(ZStrToken<char> path) noexcept
{
    path = withoutLastSlash(path);
    const long slash = path.lastIndexOf('/');
    return slash < 0 ? path : path.left(slash);
}

ZStrToken<char> nameOf(ZStrToken<char> path) noexcept
{
    path = withoutLastSlash(path);
    return path.subString(path.lastIndexOf('/') + 1);
}

/// Calls `visit` with the open directory and each entry.
/// @return 0, or the error number if the directory cannot be opened.
template <typename Visit>
int readEntries(const char* path, Visit visit)
{
    struct Closer {
        void operator()(DIR* directory) const noexcept { closedir(directory); }
    };
    const std::unique_ptr<DIR, Closer> directory(opendir(*path ? path : "/"));
    if (!directory)
        return errno;
    while (const dirent* entry = readdir(directory.get()))
        visit(directory.get(), *entry);
    return 0;
}

bool isListed(const char* name) noexcept
{
    if (*name != '.')
        return true;
    const ZStrToken<char> token(name);
    return token != "." && token != ".." && token != ".DS_Store";
}

/// A file descriptor that closes itself.
class Descriptor {
public:
    Descriptor(const char* path, int flags) noexcept
    {
        constexpr mode_t mode = 0666;
        do {
            m_number = open(path, flags | O_CLOEXEC, mode);
        } while (m_number < 0 && errno == EINTR);
    }
    Descriptor(const Descriptor&) = delete; // one owner
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    explicit operator bool() const noexcept { return m_number >= 0; }
    [[nodiscard]] int number() const noexcept { return m_number; }

    /// Never repeated: the descriptor is free afterwards even if `close` reports an interruption.
    /// @return false if data that was written earlier is lost.
    bool close() noexcept
    {
        const int number = std::exchange(m_number, -1);
        return number < 0 || ::close(number) == 0 || errno == EINTR;
    }

private:
    int m_number = -1;
};

bool isSameFile(const struct stat& one, const struct stat& other) noexcept
{
    return S_ISREG(one.st_mode) && one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Truncates a regular file. If it is empty, only the modification time needs that, and writing sets it
/// anyway.
bool truncate(const Descriptor& target, const struct stat& status, bool willBeWritten) noexcept
{
    if (!S_ISREG(status.st_mode) || (status.st_size == 0 && willBeWritten))
        return true;
    while (ftruncate(target.number(), 0) != 0) {
        if (errno != EINTR)
            return false;
    }
    return true;
}

int shiftFrom1970(ZTime& time, time_t seconds) noexcept
{
    time.set(1970, 1, 1, 0, 0, 0, 0);
    time += static_cast<unsigned int>(seconds);
    return 0;
}

} // namespace

// Directories

template <typename T>
ZMStr<T> TZSysFile<T>::getCurrentDirectory()
{
    char path[1024];
    const char* found = getcwd(path, sizeof path);
    return ZMStr<T>(found ? found : "");
}

template <typename T>
ZMStr<T> TZSysFile<T>::getCurrentVolume()
{
    return ZMStr<T>("/");
}

template <typename T>
int TZSysFile<T>::getVolumes(ZList<ZMStr<T>>& out)
{
    out.add(getCurrentVolume());
    return 0;
}

template <typename T>
int TZSysFile<T>::changeDirectory(const T* path)
{
    return errorOf(chdir(SystemPath(path)));
}

template <typename T>
int TZSysFile<T>::makeDirectory(const T* path)
{
    return mkdir(SystemPath(path), 0777);
}

template <typename T>
int TZSysFile<T>::removeDirectory(const T* path, bool)
{
    return rmdir(SystemPath(path));
}

template <typename T>
int TZSysFile<T>::renameDirectory(const T* from, const T* to)
{
    return renamePath(SystemPath(from), SystemPath(to));
}

template <typename T>
int TZSysFile<T>::moveDirectory(const T* from, const T* to)
{
    return renamePath(SystemPath(from), SystemPath(to));
}

template <typename T>
int TZSysFile<T>::readDirectory(const T* path, ZList<ZMStr<T>>& names)
{
    ZMStr<T> listed;
    return readEntries(SystemPath(path), [&](DIR*, const dirent& entry) {
        if (!isListed(entry.d_name))
            return;
        listed.remove(0);
        listed << static_cast<const char*>(entry.d_name);
        names.add(listed);
    });
}

template <typename T>
int TZSysFile<T>::readDirectory(const T* path, ZList<TZSysFile>& entries)
{
    return list(path, Wanted::All, entries);
}

template <typename T>
int TZSysFile<T>::readDirectory(const T*, const T*, ZList<TZSysFile>&)
{
    return s_noPatterns;
}

template <typename T>
int TZSysFile<T>::list(const T* path, Wanted wanted, ZList<TZSysFile>& entries)
{
    TZSysFile entry(path, ZTRISTATE::No, 0, -1, ZTime(), ZTime(), ZTime());
    ZMStr<T>& entryPath = entry.m_path;
    if (entryPath.isEmpty() || entryPath.at(-1) != '/')
        entryPath.append(T('/'));
    const long directoryLength = entryPath.Length();
    return readEntries(SystemPath(path), [&](DIR* directory, const dirent& found) {
        const bool isDirectory = isReachableDirectory(directory, found);
        if (wanted != Wanted::All && isDirectory != (wanted == Wanted::Directories))
            return;
        entry.m_isDirectory = isDirectory;
        entryPath.remove(directoryLength);
        entryPath << static_cast<const char*>(found.d_name);
        entries.add(entry);
    });
}

// Files

template <typename T>
int TZSysFile<T>::moveFile(const T* from, const T* to)
{
    return renamePath(SystemPath(from), SystemPath(to));
}

template <typename T>
int TZSysFile<T>::removeFile(const T* path)
{
    return errorOf(unlink(SystemPath(path)));
}

template <typename T>
int TZSysFile<T>::copyFile(const T* from, const T* to)
{
    const SystemPath targetPath(to);
    const Descriptor source(SystemPath(from), O_RDONLY);
    struct stat ofSource;
    if (!source || fstat(source.number(), &ofSource) != 0)
        return s_sourceNotOpened;
    // Opened without O_TRUNC, because it may be the source. A check before opening could be outdated by then.
    Descriptor target(targetPath, O_WRONLY | O_CREAT);
    struct stat ofTarget;
    if (!target) // perhaps a read-only file that is copied onto itself
        return stat(targetPath, &ofTarget) == 0 && isSameFile(ofSource, ofTarget) ? 0 : s_targetNotOpened;
    if (fstat(target.number(), &ofTarget) != 0)
        return s_targetNotOpened;
    if (isSameFile(ofSource, ofTarget))
        return 0;
    if (!truncate(target, ofTarget, ofSource.st_size > 0))
        return s_targetNotOpened;
    const bool isCopied = Host::copyContents(source.number(), target.number()) == 0;
    if (target.close() && isCopied)
        return 0;
    if (S_ISREG(ofTarget.st_mode)) // devices, fifos and the like keep no partial copy
        unlink(targetPath);
    return s_copyFailed;
}

// Queries

template <typename T>
bool TZSysFile<T>::exists(const T* path)
{
    struct stat status;
    return stat(SystemPath(path), &status) == 0;
}

template <typename T>
bool TZSysFile<T>::isFile(const T* path)
{
    return isKind(SystemPath(path), S_IFREG);
}

template <typename T>
bool TZSysFile<T>::isDirectory(const T* path)
{
    return isKind(SystemPath(path), S_IFDIR);
}

template <typename T>
long long TZSysFile<T>::sizeOf(const T* path)
{
    struct stat status;
    return stat(SystemPath(path), &status) == 0 ? status.st_size : -1;
}

template <typename T>
int TZSysFile<T>::lastAccessTimeOf(const T* path, ZTime& time)
{
    struct stat status;
    const int result = stat(SystemPath(path), &status);
    return result == 0 ? shiftFrom1970(time, status.st_atime) : result;
}

template <typename T>
int TZSysFile<T>::lastChangeTimeOf(const T* path, ZTime& time)
{
    struct stat status;
    const int result = stat(SystemPath(path), &status);
    return result == 0 ? shiftFrom1970(time, status.st_mtime) : result;
}

template <typename T>
int TZSysFile<T>::getAttributes(const T*, unsigned long long&)
{
    return s_notImplemented;
}

template <typename T>
int TZSysFile<T>::setAttributes(const T*, unsigned long long)
{
    return s_notImplemented;
}

template <typename T>
int TZSysFile<T>::creationTimeOf(const T*, ZTime&)
{
    return s_notImplemented;
}

template <typename T>
int TZSysFile<T>::setCreationTimeOf(const T*, const ZTime&)
{
    return 0;
}

template <typename T>
int TZSysFile<T>::setLastAccessTimeOf(const T*, const ZTime&)
{
    return s_notImplemented;
}

template <typename T>
int TZSysFile<T>::setLastChangeTimeOf(const T*, const ZTime&)
{
    return s_notImplemented;
}

template <typename T>
ZMStr<T> TZSysFile<T>::getParentOf(const T* path)
{
    return ZMStr<T>(parentOf(static_cast<const char*>(SystemPath(path))));
}

template <typename T>
ZMStr<T> TZSysFile<T>::getNameOf(const T* path)
{
    return ZMStr<T>(nameOf(static_cast<const char*>(SystemPath(path))));
}

// Directory entries

template <typename T>
void TZSysFile<T>::pinLayout() noexcept
{
    static_assert(offsetof(TZSysFile, m_path) == 0);
    static_assert(offsetof(TZSysFile, m_isDirectory) == 24);
    static_assert(offsetof(TZSysFile, m_attributes) == 32);
    static_assert(offsetof(TZSysFile, m_size) == 40);
    static_assert(offsetof(TZSysFile, m_created) == 48);
    static_assert(offsetof(TZSysFile, m_accessed) == 58);
    static_assert(offsetof(TZSysFile, m_modified) == 68);
}

template <typename T>
TZSysFile<T>::TZSysFile(ZStrToken<T> path, ZTRISTATE directory, unsigned long long attributes, long long size,
    const ZTime& created, const ZTime& accessed, const ZTime& modified)
    : m_path(path)
    , m_attributes(attributes)
    , m_size(size)
    , m_created(created)
    , m_accessed(accessed)
    , m_modified(modified)
{
    const bool isKnown = directory == ZTRISTATE::No || directory == ZTRISTATE::Yes;
    m_isDirectory = isKnown ? directory == ZTRISTATE::Yes : isDirectory(m_path);
}

template <typename T>
TZSysFile<T> TZSysFile<T>::Parent() const
{
    return TZSysFile(ParentPath(), ZTRISTATE::Unknown, 0, -1, ZTime(), ZTime(), ZTime());
}

template <typename T>
long long TZSysFile<T>::Size() const
{
    if (m_size <= 0)
        m_size = sizeOf(m_path);
    return m_size;
}

template <typename T>
ZTime TZSysFile<T>::TimeAccessed() const
{
    if (m_accessed.isCleared())
        lastAccessTimeOf(m_path, m_accessed);
    return m_accessed;
}

template <typename T>
ZTime TZSysFile<T>::TimeModified() const
{
    if (m_modified.isCleared())
        lastChangeTimeOf(m_path, m_modified);
    return m_modified;
}

template <typename T>
int TZSysFile<T>::renameTo(const T* name) const
{
    ZMStr<T> target = ParentPath();
    target << '/' << name;
    return moveFile(m_path, target);
}

template <typename T>
ZList<TZSysFile<T>> TZSysFile<T>::listed(Wanted wanted) const
{
    ZList<TZSysFile> entries;
    list(m_path, wanted, entries);
    return entries;
}

template <typename T>
ZList<ZMStr<T>> TZSysFile<T>::namesOf(const ZList<TZSysFile>& entries)
{
    ZList<ZMStr<T>> names;
    for (const TZSysFile& entry : entries)
        names.add(entry.Name());
    return names;
}

template <typename T>
ZList<TZSysFile<T>> TZSysFile<T>::Files() const
{
    return listed(Wanted::Files);
}

template <typename T>
ZList<TZSysFile<T>> TZSysFile<T>::SubDirectories() const
{
    return listed(Wanted::Directories);
}

template <typename T>
ZList<ZMStr<T>> TZSysFile<T>::FileNames() const
{
    return namesOf(Files());
}

template <typename T>
ZList<ZMStr<T>> TZSysFile<T>::SubDirNames() const
{
    return namesOf(SubDirectories());
}

template class TZSysFile<char>;
template class TZSysFile<wchar_t>;

} // namespace ZSpace
