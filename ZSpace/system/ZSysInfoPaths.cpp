// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/ZSysInfoPaths.h"

#include "ZSpace/platform/ReportFile.h"
#include "ZSpace/system/TZSysFile.h"
#include "ZSpace/system/ZAppContext.h"
#include "ZSpace/value/ZTime.h"

#include <algorithm>

namespace ZSpace {

const wchar_t* const ZSysInfoPath_Paths = L"system.paths";
const wchar_t* const ZSysInfoPath_NPaths = L"System paths";
const wchar_t* const ZSysInfoPath_Paths_HomeFolder = L"system.paths.homefolder";
const wchar_t* const ZSysInfoPath_NPaths_HomeFolder = L"Home folder";
const wchar_t* const ZSysInfoPath_Paths_TempFolder = L"system.paths.tempfolder";
const wchar_t* const ZSysInfoPath_NPaths_TempFolder = L"Temp folder";

/// The log directory with its trailing "/"; empty for the default.
constinit ZGStr<wchar_t> customLogDirW;

namespace {

constexpr const wchar_t* s_defaultTempDirectory = L"/tmp";
constexpr const wchar_t* s_logDirectoryName = L"CdLogs";
constexpr unsigned int s_unknownKey = 0xFFFFFFFF;

// An append that fails to allocate calls `std::terminate`, while a constructor throws. Setting up logging must not end a
// program, so strings are appended to large enough buffers, each with one spare character: an append that fills a buffer
// completely reallocates it.

/// A copy of `path` that ends with a separator, with the capacity for `extra` more characters.
ZMStr<wchar_t> withSeparator(const ZStrToken<wchar_t>& path, long extra = 0)
{
    ZMStr<wchar_t> result(path.Length() + extra + 2);
    result << path;
    if (!path.right(1).isLike(Z_SYS_ENV_PATH_SEPW))
        result << Z_SYS_ENV_PATH_SEPW;
    return result;
}

/// The directory that an environment variable names, or `alternative` if it is empty.
ZMStr<wchar_t> directoryFrom(const char* variable, const wchar_t* alternative)
{
    const ZMStr<wchar_t> directory = ZAppContext::getEnv(variable);
    return withSeparator(
        directory.isEmpty() ? ZStrToken<wchar_t>(alternative) : ZStrToken<wchar_t>(directory));
}

ZMStr<char> narrowed(const ZStrToken<wchar_t>& string)
{
    ZMStr<char> result(string.Length() + 1);
    result.appendValueOf(static_cast<const wchar_t*>(string), string.Length());
    return result;
}

ZRef<TZValueBase<ZTypeId>> valueOf(const ZGStr<wchar_t>& string)
{
    return ZRef<TZValueBase<ZTypeId>>(new TZValueBase<ZTypeId>(string));
}

void addMembers(ZSysInfoKeyMap& keys)
{
    keys.add(ZSysInfoPath_Paths_HomeFolder, ZSysInfoPath_NPaths_HomeFolder);
    keys.add(ZSysInfoPath_Paths_TempFolder, ZSysInfoPath_NPaths_TempFolder);
}

} // namespace

const wchar_t* ZSysInfoPaths::Key() const
{
    return ZSysInfoPath_Paths;
}

const wchar_t* ZSysInfoPaths::Name() const
{
    return ZSysInfoPath_NPaths;
}

void ZSysInfoPaths::refreshInfo() { }

void ZSysInfoPaths::releaseInfo() { }

void ZSysInfoPaths::getKeys(ZSysInfoKeyMap& keys) const
{
    keys.add(ZSysInfoPath_Paths, ZSysInfoPath_NPaths);
    addMembers(keys);
}

unsigned int ZSysInfoPaths::getObject(const wchar_t* key, ZRef<ZSysInfoObject>& out)
{
    const ZStrToken<wchar_t> wanted(key);
    if (wanted.isLike(ZSysInfoPath_Paths_HomeFolder)) {
        out = createObject(
            ZSysInfoPath_Paths_HomeFolder, ZSysInfoPath_NPaths_HomeFolder, valueOf(getHomeFolderW()));
    } else if (wanted.isLike(ZSysInfoPath_Paths_TempFolder)) {
        out = createObject(
            ZSysInfoPath_Paths_TempFolder, ZSysInfoPath_NPaths_TempFolder, valueOf(getTempFolderW()));
    } else if (wanted.isLike(ZSysInfoPath_Paths)) {
        ZSysInfoKeyMap members;
        addMembers(members);
        out = createObject(ZSysInfoPath_Paths, ZSysInfoPath_NPaths, members);
    } else {
        return s_unknownKey;
    }
    return 0;
}

ZMStr<wchar_t> ZSysInfoPaths::getHomeFolder()
{
    return directoryFrom(Z_SYS_ENV_HOMEDIR, Z_SYS_ALT_HOMEDIR);
}

ZGStr<wchar_t> ZSysInfoPaths::getHomeFolderW()
{
    return ZGStr<wchar_t>(getHomeFolder());
}

ZGStr<char> ZSysInfoPaths::getHomeFolderA()
{
    return narrowed(getHomeFolder());
}

ZMStr<wchar_t> ZSysInfoPaths::getTempFolder()
{
    return directoryFrom(Z_SYS_ENV_TEMPDIR, s_defaultTempDirectory);
}

ZGStr<wchar_t> ZSysInfoPaths::getTempFolderW()
{
    return ZGStr<wchar_t>(getTempFolder());
}

ZGStr<char> ZSysInfoPaths::getTempFolderA()
{
    return narrowed(getTempFolder());
}

void ZSysInfoPaths::setUserLogDirW(const wchar_t* dir)
{
    customLogDirW.remove(0); // empties without freeing: `dir` may be this very string
    const ZStrToken<wchar_t> directory(dir);
    if (directory.isEmpty())
        return;
    const ZMStr<char> path = narrowed(directory);
    if (!TZSysFile<char>::exists(path))
        static_cast<void>(Host::makeDirectoryOpenToAll(path));
    customLogDirW = withSeparator(directory);
}

ZGStr<wchar_t> ZSysInfoPaths::getUserLogDirW()
{
    if (!customLogDirW.isEmpty())
        return customLogDirW;
    const ZStrToken<wchar_t> name(s_logDirectoryName);
    ZMStr<wchar_t> directory = withSeparator(getHomeFolder(), name.Length() + 1);
    directory << name;
    const ZMStr<char> path = narrowed(directory);
    if (!TZSysFile<char>::exists(path))
        TZSysFile<char>::makeDirectory(path);
    directory << Z_SYS_ENV_PATH_SEPW;
    return ZGStr<wchar_t>(directory);
}

ZGStr<wchar_t> ZSysInfoPaths::getNewLogFileNameW(const char* prefix, const char* extension)
{
    char time[ZTime::s_textCapacity];
    const long timeLength = ZTime(true).writeTextEx(time);
    std::replace(time, time + timeLength, ':', '-');
    const ZGStr<wchar_t> directory = getUserLogDirW();
    const ZStrToken<char> parts[]{prefix, {time, timeLength}, extension};
    long length = directory.length();
    for (const ZStrToken<char>& part : parts)
        length += part.Length();
    ZMStr<wchar_t> path(length + 1);
    path << directory;
    for (const ZStrToken<char>& part : parts)
        path.appendValueOf(static_cast<const char*>(part), part.Length());
    return ZGStr<wchar_t>(path);
}

} // namespace ZSpace
