// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ZSpace::Host {

/// The functions of one program or library file, read from the file itself, so that names are known for
/// functions that no dynamic symbol table lists: static ones, and all of a statically linked program.
///
/// Holds a read-only mapping of the file. A file that is missing, cut short or not of this machine's kind
/// simply has no symbols; no offset in it is trusted.
class ElfSymbols {
public:
    explicit ElfSymbols(const char* path) noexcept;
    ElfSymbols(ElfSymbols&& other) noexcept;
    ElfSymbols(const ElfSymbols&) = delete; // one owner per mapping
    ElfSymbols& operator=(const ElfSymbols&) = delete;
    ElfSymbols& operator=(ElfSymbols&&) = delete;
    ~ElfSymbols();

    struct Function {
        const char* name = nullptr; // as the linker knows it; null when no function holds the address
        std::size_t offset = 0; // from the function's start, in bytes
    };

    /// The function that holds `address`, counted from where the file says it is to be loaded. Looks at every
    /// symbol.
    [[nodiscard]] Function functionAt(std::uintptr_t address) const noexcept;

private:
    const unsigned char* m_bytes = nullptr;
    std::size_t m_size = 0;
};

} // namespace ZSpace::Host
