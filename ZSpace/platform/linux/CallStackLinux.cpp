// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/CallStack.h"
#include "ZSpace/platform/Process.h"
#include "ZSpace/platform/linux/ElfSymbolsLinux.h"
#include "ZSpace/platform/portable/PrintablePortable.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <link.h>
#include <memory>
#include <unwind.h>

namespace ZSpace::Host {

namespace {

constexpr std::size_t s_maxFrames = 128;
constexpr const char* s_program = "/proc/self/exe";

struct Frames {
    std::array<std::uintptr_t, s_maxFrames> addresses{};
    std::size_t count = 0;
};

_Unwind_Reason_Code noteFrame(_Unwind_Context* context, void* target)
{
    auto& frames = *static_cast<Frames*>(target);
    const std::uintptr_t address = _Unwind_GetIP(context);
    if (address == 0 || frames.count == s_maxFrames)
        return _URC_END_OF_STACK;
    frames.addresses[frames.count++] = address;
    return _URC_NO_REASON;
}

/// The frames from the one with the return address `caller` outwards.
Frames framesFrom(const void* caller)
{
    Frames all;
    _Unwind_Backtrace(noteFrame, &all);
    const auto wanted = reinterpret_cast<std::uintptr_t>(caller);
    std::size_t first = 0;
    while (first < all.count && all.addresses[first] != wanted)
        ++first;
    if (first == all.count) {
        if (all.count == 0)
            all.addresses[all.count++] = wanted;
        return all;
    }
    Frames frames;
    for (std::size_t i = first; i < all.count; ++i)
        frames.addresses[frames.count++] = all.addresses[i];
    return frames;
}

/// A loaded program or library file.
struct Module {
    std::string path; // empty if the address is in no module
    std::uintptr_t bias = 0; // the address in memory minus the address in the file
};

/// Contains no string, because nothing may throw through `dl_iterate_phdr`, which holds the loader's lock.
struct ModuleSearch {
    std::uintptr_t address;
    const char* path = "";
    std::uintptr_t bias = 0;
};

int matchModule(dl_phdr_info* info, std::size_t, void* target) noexcept
{
    auto& search = *static_cast<ModuleSearch*>(target);
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto& segment = info->dlpi_phdr[i];
        const std::uintptr_t begin = info->dlpi_addr + segment.p_vaddr;
        if (segment.p_type == PT_LOAD && search.address - begin < segment.p_memsz) {
            const bool isProgram = !info->dlpi_name || !*info->dlpi_name;
            search.path = isProgram ? s_program : info->dlpi_name;
            search.bias = info->dlpi_addr;
            return 1;
        }
    }
    return 0;
}

Module moduleAt(std::uintptr_t address)
{
    ModuleSearch search{.address = address};
    dl_iterate_phdr(matchModule, &search);
    return {search.path, search.bias};
}

std::string displayName(const Module& module)
{
    if (module.path.empty())
        return "???";
    if (module.path == s_program)
        return printableName(programName());
    return printableName(module.path.c_str() + module.path.rfind('/') + 1);
}

std::string demangled(const char* name)
{
    if (!name)
        return "???";
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    return status == 0 && text ? text.get() : name;
}

std::string describeFrame(std::size_t number, std::uintptr_t address)
{
    // If the call is a function's last instruction, the return address is already outside the function.
    const std::uintptr_t call = address - 1;
    const Module module = moduleAt(call);
    const ElfSymbols symbols(module.path.c_str());
    const ElfSymbols::Function function = symbols.functionAt(call - module.bias);
    std::array<char, 128> head{};
    std::snprintf(head.data(), head.size(), "%-3zu %-35s 0x%016zx ", number, displayName(module).c_str(),
        static_cast<std::size_t>(address));
    return head.data() + demangled(function.name) + " + "
        + std::to_string(
            function.name ? function.offset + 1 : static_cast<std::size_t>(address - module.bias));
}

} // namespace

std::vector<std::string> callStackLines(const void* caller)
{
    const Frames frames = framesFrom(caller);
    std::vector<std::string> lines;
    lines.reserve(frames.count);
    for (std::size_t i = 0; i < frames.count; ++i)
        lines.push_back(describeFrame(i, frames.addresses[i]));
    return lines;
}

} // namespace ZSpace::Host
