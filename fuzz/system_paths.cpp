// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The user's directories from an arbitrary environment, and log directories of arbitrary names.

#include "ZSpace/system/ZSysInfoPaths.h"
#include "fuzz/FuzzDirectory.h"
#include "fuzz/FuzzText.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using namespace ZSpace;
using ZSpaceFuzz::Input;
using ZSpaceFuzz::require;

const ZSpaceFuzz::PrivateDirectory s_directory;

std::string bytesOf(const ZGStr<char>& string)
{
    return string.isEmpty() ? "" : std::string(static_cast<const char*>(string));
}

std::string withSeparator(const std::string& directory)
{
    return directory.ends_with('/') ? directory : directory + '/';
}

void checkEnvironment(const std::string& home, const std::string& temporary)
{
    setenv("HOME", home.c_str(), 1);
    setenv("TMPDIR", temporary.c_str(), 1);
    require(bytesOf(ZSysInfoPaths::getHomeFolderA()) == withSeparator(home.empty() ? "./" : home), "home");
    require(bytesOf(ZSysInfoPaths::getTempFolderA()) == withSeparator(temporary.empty() ? "/tmp" : temporary),
        "temporary directory");
}

void checkLogDirectory(const std::string& name, const std::string& prefix)
{
    const std::string directory = s_directory / name;
    ZSysInfoPaths::setUserLogDirW(ZGStr<wchar_t>(directory.c_str()));
    const std::string found = bytesOf(ZGStr<char>(ZSysInfoPaths::getUserLogDirW()));
    require(found == withSeparator(directory), "the log directory");
    const std::string file = bytesOf(ZGStr<char>(ZSysInfoPaths::getNewLogFileNameW(prefix.c_str(), ".txt")));
    require(file.starts_with(found + prefix) && file.ends_with(".txt"), "the name of a log file");
    require(file.size() == found.size() + prefix.size() + std::string("2026-11-16T05-49-03.127.txt").size(),
        "the length of the name of a log file");
    ZSysInfoPaths::setUserLogDirW(nullptr);
    std::error_code ignored;
    if (!name.empty())
        std::filesystem::remove(directory, ignored);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    std::string home = input.text(200);
    std::string temporary = input.text(200);
    std::string prefix = input.text(20);
    std::string name = input.rest();
    for (std::string* each : {&home, &temporary, &prefix, &name})
        std::erase(*each, '\0');
    std::erase_if(name, [](char c) { return c == '/' || c == '.'; }); // stays in the private directory
    checkEnvironment(home, temporary);
    checkLogDirectory(name, prefix);
    return 0;
}
