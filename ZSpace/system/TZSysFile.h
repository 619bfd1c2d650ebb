// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/value/ZTime.h"

namespace ZSpace {

/// An answer that may still have to be found out. All numbers other than the first two mean the third.
enum class ZTRISTATE : int {
    No = 0,
    Yes = 1,
    Unknown = -1,
};

/// Files and folders: operations on paths, and an entry of a folder with what is known about it.
///
///     ZList<TZSysFile<char>> entries;
///     if (TZSysFile<char>::readDirectory("/var/log", entries) == 0)
///         for (const TZSysFile<char>& entry : entries)
///             total += entry.Size();
///
/// The wide twin makes each path narrow as strings do, by the low 8 bits of each unit, and then does the same
/// as the narrow one; text that comes from the system goes wide byte by byte. A null path is an empty one.
///
/// Errors are returned: the error number, unless an operation says otherwise. Nothing throws except for want
/// of memory, and adding to a list ends the process then. Calls do not depend on each other and may come from
/// any thread, `changeDirectory` aside, which moves the whole process. One object belongs to one thread at a
/// time, since questions about size and times keep the answers in it.
template <typename T>
class TZSysFile {
public:
    /// What `copyFile` gives where it does not succeed.
    static constexpr int s_copyFailed = 0x0F000000;
    static constexpr int s_sourceNotOpened = 0x0F000004;
    static constexpr int s_targetNotOpened = 0x0F000005;
    /// What operations give that do nothing.
    static constexpr int s_notImplemented = static_cast<int>(0x80000000);
    static constexpr int s_noPatterns = -1;

    // Folders

    /// Empty where the path has more than 1023 bytes or cannot be had.
    [[nodiscard]] static ZMStr<T> getCurrentDirectory();
    [[nodiscard]] static ZMStr<T> getCurrentVolume();
    /// Adds the one volume there is.
    static int getVolumes(ZList<ZMStr<T>>& out);
    static int changeDirectory(const T* path);
    /// @return 0 or -1.
    static int makeDirectory(const T* path);
    /// Removes an empty folder; never what is in it.
    /// @return 0 or -1.
    static int removeDirectory(const T* path, bool recursive = false);
    static int renameDirectory(const T* from, const T* to);
    static int moveDirectory(const T* from, const T* to);

    /// Adds the names in a folder, in the order of the system, without ".", ".." and ".DS_Store". The empty
    /// path is the root here and below.
    static int readDirectory(const T* path, ZList<ZMStr<T>>& names);
    /// Adds all entries of a folder, "." and ".." included, each with its path and whether it is a folder.
    static int readDirectory(const T* path, ZList<TZSysFile>& entries);
    /// Not implemented: there is no way to say which names are wanted.
    static int readDirectory(const T* path, const T* pattern, ZList<TZSysFile>& entries);

    // Files

    static int moveFile(const T* from, const T* to);
    static int removeFile(const T* path);
    /// Copies the content alone. A file copied onto itself stays as it is. Where reading or writing fails,
    /// the target is removed (unless it is a device).
    /// @return 0 or one of the three codes.
    static int copyFile(const T* from, const T* to);

    // What there is; links are followed

    [[nodiscard]] static bool exists(const T* path);
    /// Whether it is a regular file.
    [[nodiscard]] static bool isFile(const T* path);
    [[nodiscard]] static bool isDirectory(const T* path);
    /// In bytes, -1 if there is no such file.
    [[nodiscard]] static long long sizeOf(const T* path);
    /// Begin at 1970-01-01T00:00:00.000 and shift by whole seconds, in the way of `ZTime`. Where there is no
    /// such file, `time` stays as it is.
    /// @return 0 or -1.
    static int lastAccessTimeOf(const T* path, ZTime& time);
    static int lastChangeTimeOf(const T* path, ZTime& time);

    // Not implemented: they change nothing. `setCreationTimeOf` says that it has succeeded.

    static int getAttributes(const T* path, unsigned long long& attributes);
    static int setAttributes(const T* path, unsigned long long attributes);
    static int creationTimeOf(const T* path, ZTime& time);
    static int setCreationTimeOf(const T* path, const ZTime& time);
    static int setLastAccessTimeOf(const T* path, const ZTime& time);
    static int setLastChangeTimeOf(const T* path, const ZTime& time);

    // Paths as text

    /// What stands before and after the last "/", one "/" at the very end aside: `/a/b/` gives `/a` and `b`,
    /// `/a` an empty text and `a`, `a/` twice `a`, `/` two empty texts.
    [[nodiscard]] static ZMStr<T> getParentOf(const T* path);
    [[nodiscard]] static ZMStr<T> getNameOf(const T* path);

    // An entry of a folder

    /// Nothing is looked up, except for a `directory` that is unknown. A size below 1 and cleared times are
    /// not known yet.
    TZSysFile(ZStrToken<T> path, ZTRISTATE directory, unsigned long long attributes, long long size,
        const ZTime& created, const ZTime& accessed, const ZTime& modified);

    [[nodiscard]] ZMStr<T> Name() const { return getNameOf(m_path); }
    [[nodiscard]] const ZMStr<T>& Path() const { return m_path; }
    [[nodiscard]] ZMStr<T> ParentPath() const { return getParentOf(m_path); }
    [[nodiscard]] TZSysFile Parent() const;

    /// Asks the disk each time.
    [[nodiscard]] bool exists() const { return exists(m_path); }
    /// As found out when the entry was made; all that is no folder is a file.
    [[nodiscard]] bool isFile() const { return !isDirectory(); }
    [[nodiscard]] bool isDirectory() const { return m_isDirectory != 0; }

    /// Asks the disk until that gives a size above 0, which is kept.
    long long Size() const;
    [[nodiscard]] unsigned long long Attributes() const { return m_attributes; }
    /// Never asks the disk.
    [[nodiscard]] ZTime TimeCreated() const { return m_created; }
    /// Ask the disk until that gives a time, which is kept.
    ZTime TimeAccessed() const;
    ZTime TimeModified() const;
    void TimeCreated(const ZTime& time) { m_created = time; }
    void TimeAccessed(const ZTime& time) { m_accessed = time; }
    void TimeModified(const ZTime& time) { m_modified = time; }

    /// The disk changes, the entry does not: it goes on naming the old path.
    int moveTo(const T* to) const { return moveFile(m_path, to); }
    /// Within the folder.
    int renameTo(const T* name) const;
    int remove() const { return removeFile(m_path); }

    /// What is in this folder: all but the folders, or the folders alone ("." and ".." among them). Empty
    /// where it cannot be read.
    [[nodiscard]] ZList<TZSysFile> Files() const;
    [[nodiscard]] ZList<TZSysFile> SubDirectories() const;
    [[nodiscard]] ZList<ZMStr<T>> FileNames() const;
    [[nodiscard]] ZList<ZMStr<T>> SubDirNames() const;

private:
    enum class Wanted { All, Files, Directories };

    static int list(const T* path, Wanted wanted, ZList<TZSysFile>& entries);
    [[nodiscard]] ZList<TZSysFile> listed(Wanted wanted) const;
    static ZList<ZMStr<T>> namesOf(const ZList<TZSysFile>& entries);

    static void pinLayout() noexcept;

    ZMStr<T> m_path;
    unsigned char m_isDirectory = 0;
    unsigned long long m_attributes = 0;
    mutable long long m_size = -1;
    ZTime m_created;
    mutable ZTime m_accessed;
    mutable ZTime m_modified;
};

static_assert(sizeof(TZSysFile<char>) == 80 && sizeof(TZSysFile<wchar_t>) == 80);

extern template class TZSysFile<char>;
extern template class TZSysFile<wchar_t>;

} // namespace ZSpace
