// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/value/ZTime.h"

namespace ZSpace {

/// A flag that may be unknown. All other numbers mean unknown as well.
enum class ZTRISTATE : int {
    No = 0,
    Yes = 1,
    Unknown = -1,
};

/// File-system operations on paths; an object is a directory entry that caches what it looks up.
///
///     ZList<TZSysFile<char>> entries;
///     if (TZSysFile<char>::readDirectory("/var/log", entries) == 0)
///         for (const TZSysFile<char>& entry : entries)
///             total += entry.Size();
///
/// The wide class narrows each path to the low 8 bits of each unit and then does the same as the narrow one;
/// strings from the system are widened byte by byte. A null path counts as empty.
///
/// Operations return 0 or an error number unless stated otherwise, and throw nothing but `std::bad_alloc`. If
/// allocation fails while a string is converted or appended to, they call `std::terminate` like the string
/// classes. They may be called from any thread; `changeDirectory` affects the whole process. An object must
/// be used by one thread at a time, even if const, because it caches size and times.
template <typename T>
class TZSysFile {
public:
    /// The errors of `copyFile`.
    static constexpr int s_copyFailed = 0x0F000000;
    /// `copyFile`: the source cannot be opened.
    static constexpr int s_sourceNotOpened = 0x0F000004;
    /// `copyFile`: the target cannot be opened.
    static constexpr int s_targetNotOpened = 0x0F000005;
    /// What operations return that are not implemented.
    static constexpr int s_notImplemented = static_cast<int>(0x80000000);
    /// What listing by pattern returns, which is not implemented.
    static constexpr int s_noPatterns = -1;

    // Directories

    /// Empty if the path has more than 1023 bytes or is unknown.
    [[nodiscard]] static ZMStr<T> getCurrentDirectory();
    /// The only volume, "/".
    [[nodiscard]] static ZMStr<T> getCurrentVolume();
    /// Adds the only volume.
    static int getVolumes(ZList<ZMStr<T>>& out);
    /// Changes the current directory of the process.
    /// @return 0 or an error number.
    static int changeDirectory(const T* path);
    /// Creates a directory with mode 0777, less the process's mask.
    /// @return 0 or -1.
    static int makeDirectory(const T* path);
    /// Removes an empty directory; ignores `recursive`.
    /// @return 0 or -1.
    static int removeDirectory(const T* path, bool recursive = false);
    /// Renames a directory. Returns 0 or `errno`.
    static int renameDirectory(const T* from, const T* to);
    /// As `renameDirectory`.
    static int moveDirectory(const T* from, const T* to);

    /// Adds the names in a directory, in the order of the system, without ".", ".." and ".DS_Store". Here and
    /// below, an empty path means the root.
    static int readDirectory(const T* path, ZList<ZMStr<T>>& names);
    /// Adds all entries of a directory, including "." and "..", each with its path and kind.
    static int readDirectory(const T* path, ZList<TZSysFile>& entries);
    /// Not implemented: returns `s_noPatterns`.
    static int readDirectory(const T* path, const T* pattern, ZList<TZSysFile>& entries);

    // Files

    /// Renames a file.
    static int moveFile(const T* from, const T* to);
    /// Removes a file.
    /// @return 0 or an error number.
    static int removeFile(const T* path);
    /// Copies the content only. A file copied onto itself does not change. If reading or writing fails, the
    /// target is removed.
    /// @return 0 or one of the three error codes above.
    static int copyFile(const T* from, const T* to);

    // Queries; they follow links

    /// Whether anything has this name.
    [[nodiscard]] static bool exists(const T* path);
    /// Whether the path names a regular file.
    [[nodiscard]] static bool isFile(const T* path);
    /// Whether this is a directory.
    [[nodiscard]] static bool isDirectory(const T* path);
    /// In bytes; -1 on failure.
    [[nodiscard]] static long long sizeOf(const T* path);
    /// Set `time` to 1970-01-01T00:00:00.000 plus whole seconds, added as `ZTime` does. On failure, `time`
    /// does not change.
    /// @return 0 or -1.
    static int lastAccessTimeOf(const T* path, ZTime& time);
    /// As `lastAccessTimeOf`, for the last change of the content.
    static int lastChangeTimeOf(const T* path, ZTime& time);

    // Not implemented: these change nothing and return `s_notImplemented`, except that `setCreationTimeOf`
    // returns 0.

    /// Not implemented.
    static int getAttributes(const T* path, unsigned long long& attributes);
    /// Not implemented.
    static int setAttributes(const T* path, unsigned long long attributes);
    /// Not implemented.
    static int creationTimeOf(const T* path, ZTime& time);
    /// Not implemented; returns 0.
    static int setCreationTimeOf(const T* path, const ZTime& time);
    /// Not implemented.
    static int setLastAccessTimeOf(const T* path, const ZTime& time);
    /// Not implemented.
    static int setLastChangeTimeOf(const T* path, const ZTime& time);

    // Path strings

    /// The strings before and after the last "/", after one trailing "/" is dropped: "/a" and "b" for
    /// "/a/b/", "" and "a" for "/a", "a" and "a" for "a/", "" and "" for "/".
    [[nodiscard]] static ZMStr<T> getParentOf(const T* path);
    /// The part of a path after the last separator.
    [[nodiscard]] static ZMStr<T> getNameOf(const T* path);

    // Directory entries

    /// Looks up the kind if `directory` is unknown, and nothing else. A size below 1 and cleared times mean
    /// that they are not yet known.
    TZSysFile(ZStrToken<T> path, ZTRISTATE directory, unsigned long long attributes, long long size,
        const ZTime& created, const ZTime& accessed, const ZTime& modified);

    /// The last part of the path.
    [[nodiscard]] ZMStr<T> Name() const { return getNameOf(m_path); }
    /// The whole path.
    [[nodiscard]] const ZMStr<T>& Path() const ZSPACE_LIFETIMEBOUND { return m_path; }
    /// The path of the directory that contains this entry.
    [[nodiscard]] ZMStr<T> ParentPath() const { return getParentOf(m_path); }
    /// The entry of the directory that contains this one, of unknown kind.
    [[nodiscard]] TZSysFile Parent() const;

    /// Looks it up each time.
    [[nodiscard]] bool exists() const { return exists(m_path); }
    /// As determined at construction; everything but a directory counts as a file.
    [[nodiscard]] bool isFile() const { return !isDirectory(); }
    /// Whether this entry is a directory, as far as it is known.
    [[nodiscard]] bool isDirectory() const { return m_isDirectory != 0; }

    /// Looks up the size until it is above 0, then caches it.
    long long Size() const;
    /// As given at construction; never looked up.
    [[nodiscard]] unsigned long long Attributes() const { return m_attributes; }
    /// Never looked up.
    [[nodiscard]] ZTime TimeCreated() const { return m_created; }
    /// Looks up the time until that succeeds, then caches it.
    ZTime TimeAccessed() const;
    /// The time of the last change of the content.
    ZTime TimeModified() const;
    /// Sets the cached creation time; does not change the file.
    void TimeCreated(const ZTime& time) { m_created = time; }
    /// Sets the cached access time; does not change the file.
    void TimeAccessed(const ZTime& time) { m_accessed = time; }
    /// Sets the cached modification time; does not change the file.
    void TimeModified(const ZTime& time) { m_modified = time; }

    /// Moves the file; this object keeps the old path.
    int moveTo(const T* to) const { return moveFile(m_path, to); }
    /// Renames the file within its directory; this object keeps the old path.
    int renameTo(const T* name) const;
    /// As the static `removeFile`.
    int remove() const { return removeFile(m_path); }

    /// The entries of this directory that are not directories, or those that are (including "." and "..").
    /// Empty if the directory cannot be read.
    [[nodiscard]] ZList<TZSysFile> Files() const;
    /// The directories in this directory, as entries.
    [[nodiscard]] ZList<TZSysFile> SubDirectories() const;
    /// The names of the files in this directory.
    [[nodiscard]] ZList<ZMStr<T>> FileNames() const;
    /// The names of the directories in this directory.
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
