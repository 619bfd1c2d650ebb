// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Reads "name = value" lines, skips comments, and prints the settings:
//
//     configuration_reader FILE

#include "ZSpace/core/ZMap.h"
#include "ZSpace/stream/ZIOGFile.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

using namespace ZSpace;

using Settings = ZMap<ZGStr<char>, ZGStr<char>>;

/// @return 0, or the error number.
int readAll(const char* path, ZMStr<char>& content)
{
    ZIOGFile<> file;
    if (const int error = file.open(path, ZIOGFile<>::ModeRead))
        return error;
    std::array<char, 4096> block;
    long got = 0;
    while ((got = file.read(block.data(), static_cast<long>(block.size()))) > 0)
        content.append(block.data(), got);
    file.close();
    return got < 0 ? EIO : 0;
}

Settings settingsOf(const ZMStr<char>& content)
{
    Settings settings;
    int number = 0;
    for (ZMStr<char>& line : content.split('\n')) {
        ++number;
        line.trim();
        if (line.isEmpty() || line.at(0) == '#')
            continue;
        const long equals = line.indexOf('=');
        if (equals < 1) {
            std::printf("line %d is no setting: %s\n", number, static_cast<const char*>(line));
            continue;
        }
        ZGStr<char> name(line.left(equals));
        ZGStr<char> value(line.subString(equals + 1));
        name.trim();
        value.trim();
        settings.add(name, value); // a later line overrides an earlier one
    }
    return settings;
}

int numberOf(const Settings& settings, const char* name, int otherwise)
{
    const ZGStr<char>* const value = settings.find(name);
    return value && value->isNumeric() ? value->toInt32() : otherwise;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::printf("usage: configuration_reader FILE\n");
        return 2;
    }
    ZMStr<char> content;
    if (const int error = readAll(argv[1], content)) {
        std::printf("cannot read %s: %s\n", argv[1], std::strerror(error));
        return 1;
    }
    const Settings settings = settingsOf(content);
    for (const auto& setting : settings)
        std::printf("%s: \"%s\"\n", static_cast<const char*>(setting.first),
            static_cast<const char*>(setting.second));
    std::printf("port %d, %d retries\n", numberOf(settings, "port", 80), numberOf(settings, "retries", 3));
    return 0;
}
