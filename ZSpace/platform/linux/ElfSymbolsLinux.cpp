// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/linux/ElfSymbolsLinux.h"

#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace ZSpace::Host {

namespace {

using FileHeader = ElfW(Ehdr);
using SectionHeader = ElfW(Shdr);
using Symbol = ElfW(Sym);

/// Bounds-checked read access to a mapped file.
class Image {
public:
    Image(const unsigned char* bytes, std::size_t size) noexcept
        : m_bytes(bytes)
        , m_size(size)
    {
    }

    /// Copies the `T` at `offset`; false if the file is too short.
    template <typename T>
    bool read(std::size_t offset, T& out) const noexcept
    {
        if (offset > m_size || m_size - offset < sizeof(T))
            return false;
        std::memcpy(&out, m_bytes + offset, sizeof(T));
        return true;
    }

    /// The null-terminated string at `offset`; null if there is none.
    [[nodiscard]] const char* string(std::size_t offset) const noexcept
    {
        if (offset >= m_size || !std::memchr(m_bytes + offset, 0, m_size - offset))
            return nullptr;
        return reinterpret_cast<const char*>(m_bytes + offset);
    }

private:
    const unsigned char* m_bytes;
    std::size_t m_size;
};

/// The best symbol table of a file: the full one unless the file is stripped, else the dynamic one.
struct SymbolTable {
    SectionHeader symbols{};
    SectionHeader names{};
    bool isFound = false;
};

bool isReadable(const FileHeader& header) noexcept
{
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0
        && header.e_ident[EI_CLASS] == (sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32)
        && header.e_shentsize == sizeof(SectionHeader);
}

SymbolTable findSymbolTable(const Image& image) noexcept
{
    SymbolTable table;
    FileHeader header;
    if (!image.read(0, header) || !isReadable(header))
        return table;
    const auto sectionAt = [&](std::size_t index, SectionHeader& section) {
        return index < header.e_shnum && image.read(header.e_shoff + index * sizeof section, section);
    };
    SectionHeader section;
    for (std::size_t i = 0; i < header.e_shnum && sectionAt(i, section); ++i) {
        const bool isWanted =
            section.sh_type == SHT_SYMTAB || (section.sh_type == SHT_DYNSYM && !table.isFound);
        SectionHeader names;
        if (isWanted && sectionAt(section.sh_link, names))
            table = {section, names, true};
    }
    return table;
}

} // namespace

ElfSymbols::ElfSymbols(const char* path) noexcept
{
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return;
    struct stat status { };
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
        const auto size = static_cast<std::size_t>(status.st_size);
        void* const bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
        if (bytes != MAP_FAILED) {
            m_bytes = static_cast<const unsigned char*>(bytes);
            m_size = size;
        }
    }
    close(file);
}

ElfSymbols::ElfSymbols(ElfSymbols&& other) noexcept
    : m_bytes(std::exchange(other.m_bytes, nullptr))
    , m_size(std::exchange(other.m_size, 0))
{
}

ElfSymbols::~ElfSymbols()
{
    if (m_bytes)
        munmap(const_cast<unsigned char*>(m_bytes), m_size);
}

ElfSymbols::Function ElfSymbols::functionAt(std::uintptr_t address) const noexcept
{
    const Image image(m_bytes, m_size);
    const SymbolTable table = findSymbolTable(image);
    Function best;
    const std::size_t count = table.isFound ? table.symbols.sh_size / sizeof(Symbol) : 0;
    Symbol symbol;
    for (std::size_t i = 0; i < count && image.read(table.symbols.sh_offset + i * sizeof symbol, symbol);
         ++i) {
        const bool isFunction = (symbol.st_info & 0xF) == STT_FUNC && symbol.st_shndx != SHN_UNDEF;
        if (isFunction && address >= symbol.st_value && address - symbol.st_value < symbol.st_size) {
            best = {image.string(table.names.sh_offset + symbol.st_name), address - symbol.st_value};
            if (best.name)
                return best;
        }
    }
    return best;
}

} // namespace ZSpace::Host
