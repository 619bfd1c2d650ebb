// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Looks up addresses in arbitrary files. Whatever is found must lie within the file.

#include "ZSpace/platform/linux/ElfSymbolsLinux.h"
#include "fuzz/FuzzDirectory.h"
#include "fuzz/FuzzText.h"

#include <cstring>
#include <fstream>

namespace {

using namespace ZSpace::Host;

const ZSpaceFuzz::PrivateDirectory s_directory;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string file = s_directory / "program";
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const ElfSymbols symbols(file.c_str());
    for (const std::uintptr_t address : {std::uintptr_t{0}, std::uintptr_t{1}, std::uintptr_t{0x1000},
             std::uintptr_t{0x1008}, std::uintptr_t{0x401000}, ~std::uintptr_t{0}}) {
        const ElfSymbols::Function function = symbols.functionAt(address);
        ZSpaceFuzz::require(!function.name || std::strlen(function.name) < size, "the name is in the file");
    }
    return 0;
}
