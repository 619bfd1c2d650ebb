// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/system/ZSysInfo.h"

namespace ZSpace {

/// The environment variable of the user's home directory.
inline constexpr const char* Z_SYS_ENV_HOMEDIR = "HOME";
/// The environment variable of the directory for temporary files.
inline constexpr const char* Z_SYS_ENV_TEMPDIR = "TMPDIR";
/// The separator of paths.
inline constexpr const char* Z_SYS_ENV_PATH_SEP = "/";
/// The separator of paths.
inline constexpr const wchar_t* Z_SYS_ENV_PATH_SEPW = L"/";
/// The current directory.
inline constexpr const char* Z_SYS_ENV_PATH_SELF = "./";
/// The current directory.
inline constexpr const wchar_t* Z_SYS_ENV_PATH_SELFW = L"./";
/// The home directory if HOME is empty.
inline constexpr const wchar_t* Z_SYS_ALT_HOMEDIR = L"./";

/// Keys and display names of the path facts. Maps compare keys by address, so look them up with these.
extern const wchar_t* const ZSysInfoPath_Paths;
/// The display name of the paths.
extern const wchar_t* const ZSysInfoPath_NPaths;
/// The key of the user's home directory.
extern const wchar_t* const ZSysInfoPath_Paths_HomeFolder;
/// The display name of the user's home directory.
extern const wchar_t* const ZSysInfoPath_NPaths_HomeFolder;
/// The key of the directory for temporary files.
extern const wchar_t* const ZSysInfoPath_Paths_TempFolder;
/// The display name of the directory for temporary files.
extern const wchar_t* const ZSysInfoPath_NPaths_TempFolder;

/// The provider of the user's directories; also names new log files.
///
///     const ZGStr<wchar_t> file = ZSysInfoPaths::getNewLogFileNameW("mine_", ".txt");
///     // /home/me/CdLogs/mine_2026-11-16T05-49-03.127.txt
///
/// Every directory ends with "/". The log directory is a process-wide setting without a lock: change it
/// during set-up only.
class ZSysInfoPaths : public ZSysInfoProvider {
public:
    /// `ZSysInfoPath_Paths`.
    [[nodiscard]] const wchar_t* Key() const override;
    /// `ZSysInfoPath_NPaths`.
    [[nodiscard]] const wchar_t* Name() const override;
    void refreshInfo() override;
    void releaseInfo() override;
    void getKeys(ZSysInfoKeyMap& keys) const override;
    /// Knows the keys of the two directories, and `ZSysInfoPath_Paths`, whose fact is a map of the two.
    /// Compares keys as strings.
    /// @return 0, or 0xFFFFFFFF for any other key; `out` is then unchanged.
    unsigned int getObject(const wchar_t* key, ZRef<ZSysInfoObject>& out) override;

    /// The environment variable HOME, or "./" if it is empty.
    static ZMStr<wchar_t> getHomeFolder();
    /// The user's home directory.
    static ZGStr<wchar_t> getHomeFolderW();
    /// The user's home directory.
    static ZGStr<char> getHomeFolderA();
    /// The environment variable TMPDIR, or "/tmp/" if it is empty.
    static ZMStr<wchar_t> getTempFolder();
    /// The directory for temporary files.
    static ZGStr<wchar_t> getTempFolderW();
    /// The directory for temporary files.
    static ZGStr<char> getTempFolderA();

    /// Sets the log directory. Creates a missing one with mode 0777; an existing one keeps its mode. Null or
    /// an empty string restores the default. Failures are not reported.
    static void setUserLogDirW(const wchar_t* dir);
    /// The directory that was set, or "CdLogs" in the home directory, which is created if it is missing.
    static ZGStr<wchar_t> getUserLogDirW();
    /// A path in the log directory: `prefix`, the current UTC time with milliseconds and "-" for ":", and
    /// `extension`, without separators. Two calls within one millisecond return the same name.
    static ZGStr<wchar_t> getNewLogFileNameW(const char* prefix, const char* extension);
};

} // namespace ZSpace
