// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace {

namespace {

/// A path as system calls take it: narrow and never null.
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

bool isDirectoryIn(DIR* directory, const char* name) noexcept
{
    struct stat status;
    return fstatat(dirfd(directory), name, &status, 0) == 0 && S_ISDIR(status.st_mode);
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

/// Calls `visit` with the open directory and the name of each entry.
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
        visit(directory.get(), static_cast<const char*>(entry->d_name));
    return 0;
}

bool isListed(const char* name) noexcept
{
    if (*name != '.')
        return true;
    const ZStrToken<char> token(name);
    return token != "." && token != ".." && token != ".DS_Store";
}

/// An open file of the C library that closes itself. It has no buffer: chunks go from one to another as they
/// are.
class OpenFile {
public:
    OpenFile(const char* path, const char* mode) noexcept
        : m_file(fopen(path, mode))
    {
        if (m_file)
            setvbuf(m_file, nullptr, _IONBF, 0);
    }
    OpenFile(const OpenFile&) = delete; // one owner of a file
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { close(); }

    operator FILE*() const noexcept { return m_file; }

    /// Whether all that was written has reached the system.
    bool close() noexcept
    {
        FILE* file = m_file;
        m_file = nullptr;
        return !file || fclose(file) == 0;
    }

private:
    FILE* m_file;
};

bool isSameFile(FILE* file, const char* path) noexcept
{
    struct stat ofFile;
    struct stat ofPath;
    return stat(path, &ofPath) == 0 && S_ISREG(ofPath.st_mode) && fstat(fileno(file), &ofFile) == 0
        && ofFile.st_dev == ofPath.st_dev && ofFile.st_ino == ofPath.st_ino;
}

bool copyContent(FILE* source, FILE* target) noexcept
{
    char chunk[4096];
    while (!feof(source)) {
        const std::size_t got = fread(chunk, 1, sizeof chunk, source);
        if (got < sizeof chunk && ferror(source))
            return false;
        if (fwrite(chunk, 1, got, target) < got)
            return false;
    }
    return true;
}

/// Removes what a failed copy has left. A device holds nothing and is not the copy's to take away.
void removeCopy(const char* path) noexcept
{
    struct stat status;
    if (lstat(path, &status) == 0 && !S_ISCHR(status.st_mode) && !S_ISBLK(status.st_mode))
        unlink(path);
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
    return readEntries(SystemPath(path), [&](DIR*, const char* name) {
        if (!isListed(name))
            return;
        listed.remove(0);
        listed << name;
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
        entryPath.append('/');
    const long directoryLength = entryPath.Length();
    return readEntries(SystemPath(path), [&](DIR* directory, const char* name) {
        const bool isDirectory = isDirectoryIn(directory, name);
        if (wanted != Wanted::All && isDirectory != (wanted == Wanted::Directories))
            return;
        entry.m_isDirectory = isDirectory;
        entryPath.remove(directoryLength);
        entryPath << name;
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
    const OpenFile source(SystemPath(from), "rbe");
    if (!source)
        return s_sourceNotOpened;
    if (isSameFile(source, targetPath))
        return 0;
    OpenFile target(targetPath, "wbe");
    if (!target)
        return s_targetNotOpened;
    const bool isCopied = copyContent(source, target);
    if (target.close() && isCopied)
        return 0;
    removeCopy(targetPath);
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
