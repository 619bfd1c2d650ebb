// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/system/ZSysInfo.h"

namespace ZSpace {

inline constexpr const char* Z_SYS_ENV_HOMEDIR = "HOME";
inline constexpr const char* Z_SYS_ENV_TEMPDIR = "TMPDIR";
inline constexpr const char* Z_SYS_ENV_PATH_SEP = "/";
inline constexpr const wchar_t* Z_SYS_ENV_PATH_SEPW = L"/";
inline constexpr const char* Z_SYS_ENV_PATH_SELF = "./";
inline constexpr const wchar_t* Z_SYS_ENV_PATH_SELFW = L"./";
inline constexpr const wchar_t* Z_SYS_ALT_HOMEDIR = L"./";

/// Keys and names of the facts about paths. Maps compare them by address, so these are the ones to ask with.
extern const wchar_t* const ZSysInfoPath_Paths;
extern const wchar_t* const ZSysInfoPath_NPaths;
extern const wchar_t* const ZSysInfoPath_Paths_HomeFolder;
extern const wchar_t* const ZSysInfoPath_NPaths_HomeFolder;
extern const wchar_t* const ZSysInfoPath_Paths_TempFolder;
extern const wchar_t* const ZSysInfoPath_NPaths_TempFolder;

/// The provider that knows the user's folders; its static operations also make the names of new log files.
///
///     const ZGStr<wchar_t> file = ZSysInfoPaths::getNewLogFileNameW("mine_", ".txt");
///     // /home/me/CdLogs/mine_2026-11-16T05-49-03.127.txt
///
/// Every folder ends with "/". The log folder is a plain process-wide setting: to be changed during set-up
/// only.
class ZSysInfoPaths : public ZSysInfoProvider {
public:
    [[nodiscard]] const wchar_t* Key() const override;
    [[nodiscard]] const wchar_t* Name() const override;
    void refreshInfo() override;
    void releaseInfo() override;
    void getKeys(ZSysInfoKeyMap& keys) const override;
    /// Knows the key of the family itself, which gives a map of its members, and those of its members. Keys
    /// are compared as texts.
    /// @return 0xFFFFFFFF, with `out` unchanged, for any other key.
    unsigned int getObject(const wchar_t* key, ZRef<ZSysInfoObject>& out) override;

    /// The environment's "HOME"; "./" when it is empty.
    static ZMStr<wchar_t> getHomeFolder();
    static ZGStr<wchar_t> getHomeFolderW();
    static ZGStr<char> getHomeFolderA();
    /// The environment's "TMPDIR"; "/tmp/" when it is empty.
    static ZMStr<wchar_t> getTempFolder();
    static ZGStr<wchar_t> getTempFolderW();
    static ZGStr<char> getTempFolderA();

    /// Makes `dir` the log folder. A missing one is made, open to every user; one that exists keeps its mode.
    /// Null or the empty text goes back to the default. Failures are not reported.
    static void setUserLogDirW(const wchar_t* dir);
    /// The log folder that was set, or "CdLogs" in the home folder, which is made when it is missing.
    static ZGStr<wchar_t> getUserLogDirW();
    /// A path in the log folder: `prefix`, the current time in UTC with milliseconds and without colons,
    /// `extension`. Nothing is put between them, and two calls within a millisecond give the same name.
    static ZGStr<wchar_t> getNewLogFileNameW(const char* prefix, const char* extension);
};

} // namespace ZSpace
