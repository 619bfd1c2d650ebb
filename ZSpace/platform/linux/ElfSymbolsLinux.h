// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ZSpace::Host {

/// The functions of one program or library file, read from the file itself, so that functions without a
/// dynamic symbol have names, too: static ones, and all functions of a statically linked program.
///
/// Holds a read-only mapping of the file. A file that is missing, truncated or for another kind of machine
/// has no symbols. Every offset in the file is checked before use.
class ElfSymbols {
public:
    explicit ElfSymbols(const char* path) noexcept;
    ElfSymbols(ElfSymbols&& other) noexcept;
    ElfSymbols(const ElfSymbols&) = delete; // one owner per mapping
    ElfSymbols& operator=(const ElfSymbols&) = delete;
    ElfSymbols& operator=(ElfSymbols&&) = delete;
    ~ElfSymbols();

    struct Function {
        const char* name = nullptr; // mangled; null if no function contains the address
        std::size_t offset = 0; // from the function's start, in bytes
    };

    /// The function that contains `address`, an address in the file. Searches linearly.
    [[nodiscard]] Function functionAt(std::uintptr_t address) const noexcept;

private:
    const unsigned char* m_bytes = nullptr;
    std::size_t m_size = 0;
};

} // namespace ZSpace::Host
