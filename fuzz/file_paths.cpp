// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Parent and name of a path, compared with a plain implementation and between the widths.

#include "ZSpace/system/TZSysFile.h"
#include "fuzz/FuzzText.h"

#include <string>

namespace {

using namespace ZSpace;
using ZSpaceFuzz::bytesOf;
using ZSpaceFuzz::Input;
using ZSpaceFuzz::require;

struct Parts {
    std::string parent;
    std::string name;
};

Parts plainPartsOf(std::string path)
{
    if (path.ends_with('/'))
        path.pop_back();
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {path, path};
    return {path.substr(0, slash), path.substr(slash + 1)};
}

template <typename T>
void check(const std::string& path)
{
    const std::basic_string<T> wide = [&] {
        std::basic_string<T> characters;
        for (char c : path)
            characters += static_cast<T>(static_cast<unsigned char>(c));
        return characters;
    }();
    const Parts expected = plainPartsOf(path);
    require(bytesOf<T>(TZSysFile<T>::getParentOf(wide.c_str())) == expected.parent, "the parent");
    require(bytesOf<T>(TZSysFile<T>::getNameOf(wide.c_str())) == expected.name, "the name");
    const TZSysFile<T> entry(wide.c_str(), ZTRISTATE::No, 0, -1, ZTime(), ZTime(), ZTime());
    require(bytesOf<T>(entry.Path()) == path, "the path of an entry");
    require(bytesOf<T>(entry.ParentPath()) == expected.parent, "the parent of an entry");
    require(bytesOf<T>(entry.Name()) == expected.name, "the name of an entry");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string path = Input(data, size).rest();
    path.resize(std::min(path.size(), path.find('\0')));
    check<char>(path);
    check<wchar_t>(path);
    return 0;
}
