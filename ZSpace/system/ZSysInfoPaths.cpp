// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/ZSysInfoPaths.h"

#include "ZSpace/platform/ReportFile.h"
#include "ZSpace/system/TZSysFile.h"
#include "ZSpace/system/ZAppContext.h"
#include "ZSpace/value/ZTime.h"

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

template <typename String>
void endWithSeparator(String& path)
{
    if (!path.right(1).isLike(Z_SYS_ENV_PATH_SEPW))
        path += Z_SYS_ENV_PATH_SEPW;
}

/// The directory that an environment variable names, or `alternative` if it is empty.
ZMStr<wchar_t> directoryFrom(const char* variable, const wchar_t* alternative)
{
    ZMStr<wchar_t> directory = ZAppContext::getEnv(variable);
    if (directory.isEmpty())
        directory = alternative;
    endWithSeparator(directory);
    return directory;
}

ZGStr<char> narrowed(const ZGStr<wchar_t>& string)
{
    ZGStr<char> result;
    result.appendValueOf(static_cast<const wchar_t*>(string));
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
    return narrowed(getHomeFolderW());
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
    return narrowed(getTempFolderW());
}

void ZSysInfoPaths::setUserLogDirW(const wchar_t* dir)
{
    customLogDirW.remove(0); // empties without freeing: `dir` may be this very string
    ZGStr<wchar_t> directory(dir);
    if (directory.isEmpty())
        return;
    const ZGStr<char> path = narrowed(directory);
    if (!TZSysFile<char>::exists(path))
        static_cast<void>(Host::makeDirectoryOpenToAll(path));
    endWithSeparator(directory);
    customLogDirW = directory;
}

ZGStr<wchar_t> ZSysInfoPaths::getUserLogDirW()
{
    if (!customLogDirW.isEmpty())
        return customLogDirW;
    ZMStr<wchar_t> directory = getHomeFolder();
    directory += s_logDirectoryName;
    const ZGStr<char> path = narrowed(ZGStr<wchar_t>(directory));
    if (!TZSysFile<char>::exists(path))
        TZSysFile<char>::makeDirectory(path);
    endWithSeparator(directory);
    return ZGStr<wchar_t>(directory);
}

ZGStr<wchar_t> ZSysInfoPaths::getNewLogFileNameW(const char* prefix, const char* extension)
{
    ZMStr<wchar_t> time = ZTime(true).toWStringEx();
    time.replace(L':', L'-');
    ZMStr<wchar_t> path(getUserLogDirW());
    path << prefix << time << extension;
    return ZGStr<wchar_t>(path);
}

} // namespace ZSpace
